' The global Vector class through the COM runtime: point arrays as scripts send them, results,
' in-place members and errors.
Dim v, p, q, r, f, sp, ep, nested, halfPi
Set v = Library("Vector")
halfPi = 3.14159265358979 / 2

CheckPoint "vplusv of two points", v.vplusv(Array(1, 2, 3), Array(1, 1)), Array(2, 3, 0)
CheckPoint "vplusv of three points", v.vplusv(Array(1, 1), Array(2, 2), Array(3, 3)), Array(6, 6)
r = v.vplusv()
CheckError "vplusv of nothing", 9, "Subscript out of range"
CheckPoint "vminusv", v.vminusv(Array(5, 5, 5), Array(1, 2, 3)), Array(4, 3, 2)
CheckPoint "vxr", v.vxr(Array(1, 2, 3), 2), Array(2, 4, 6)
CheckPoint "vxr with a text factor", v.vxr(Array(1, 2), "0.5"), Array(0.5, 1)
nested = v.vxr(Array(Array(1, 2), Array(3, 4)), 2)
CheckPoint "vxr of a list of points, second point", nested(1), Array(6, 8)
CheckNear "vAngle of (0, 1)", v.vAngle(Array(0, 1)), halfPi, 1E-12
CheckNear "vAngle from (1, 0) to (0, 1)", v.vAngle(Array(1, 0), Array(0, 1)), halfPi, 1E-12
Check "vLength of (3, 4)", v.vLength(Array(3, 4)), 5
Check "vLength between two points", v.vLength(Array(1, 1), Array(4, 5)), 5
Check "vLength of an empty array", v.vLength(Array()), 0
Check "vLength of Empty", v.vLength(Empty), 0
Check "vLength of Empty with a second point", v.vLength(Empty, Array(3, 4)), 0
f = halfPi
r = v.vRotate(Array(2, 0), f)
CheckNear "vRotate x (Variant array)", r(0), 0, 1E-12
CheckNear "vRotate y (Variant array)", r(1), 2, 1E-12
Check "vRotate leaves its angle variable", f, halfPi
CheckPoint "vxv", v.vxv(Array(1, 0, 0), Array(0, 1, 0)), Array(0, 0, 1)
r = v.vxv(Array(1, 0), Array(0, 1))
CheckError "vxv of two-element arrays", 9, "Subscript out of range"
Check "vxxv", v.vxxv(Array(1, 2, 3), Array(4, 5, 6)), 32
r = v.vProjectTo(Array(3, 4, 0), Array(2, 0, 0))
Check "vProjectTo x (Variant array)", r(0), 3
Check "vProjectTo y (Variant array)", r(1), 0
r = v.vProjectTo(Array(3, 4, 0), Array(0, 0, 0))
CheckErrorNumber "vProjectTo onto a zero vector", 2411
CheckNear "vAngle3D about z", v.vAngle3D(Array(0, 1, 0), Array(1, 0, 0), Array(0, 0, 1)), halfPi, 1E-12
CheckPoint "UnitVec", v.UnitVec(Array(3, 4, 0)), Array(0.6, 0.8, 0)
CheckPoint "UnitVec towards PointB", v.UnitVec(Array(1, 1, 0), Array(4, 5, 0)), Array(0.6, 0.8, 0)
r = v.UnitVec(Array(0, 0, 0))
CheckError "UnitVec of a zero vector", 2411, "Vector unitvec(u) = u = 0"

p = Array(1, 1E-09, -1E-07)
v.RoundZeroVector p
Check "RoundZeroVector keeps 1", p(0), 1
Check "RoundZeroVector zeroes 1E-09", p(1), 0
Check "RoundZeroVector zeroes -1E-07", p(2), 0
p = Array(1, 0.001)
f = 0
v.RoundZeroVector p, f
Check "RoundZeroVector writes the default fuzz back", f, 0.000001
Check "RoundZeroVector with default fuzz keeps 0.001", p(1), 0.001
f = 0.01
v.RoundZeroVector p, f
Check "RoundZeroVector with fuzz 0.01", p(1), 0
' Only the zeroed elements change; the others keep their own type.
p = Array(1E-09, 2, 2.5)
v.RoundZeroVector p
Check "RoundZeroVector leaves an Integer element an Integer", VarType(p(1)), vbInteger
Check "RoundZeroVector leaves a Double element a Double", VarType(p(2)), vbDouble
Check "RoundZeroVector zeroes an element in place", p(0), 0
Check "RoundZeroVector keeps a Variant array", VarType(p), vbArray + vbVariant

CheckPoint "AssocVector in the standard basis", v.AssocVector(Array(1, 2, 3), Array(1, 0, 0), Array(0, 1, 0), Array(0, 0, 1)), Array(1, 2, 3)
CheckPoint "AssocVector in a scaled basis", v.AssocVector(Array(2, 4, 6), Array(2, 0, 0), Array(0, 2, 0), Array(0, 0, 2)), Array(1, 2, 3)
r = v.AssocVector(Array(1, 2, 3), Array(1, 0, 0), Array(2, 0, 0), Array(0, 0, 1))
CheckError "AssocVector with a flat basis", 2411, "AssocVector fails: The Inverse Matrix method return Null"
r = v.AssocVector(Array(1, 2, 3), 5, Array(0, 1, 0), Array(0, 0, 1))
CheckError "AssocVector with an axis that is no array", 2411, "AssocVector fails: The Inverse Matrix method return Null"
r = v.AssocVector("point", Array(1, 0, 0), Array(0, 1, 0), Array(0, 0, 1))
CheckError "AssocVector of a vector that is no array", 2411, "AssocVector fails: The Inverse Matrix method return Null"
CheckPoint "VectorAB", v.VectorAB(Array(1, 1), Array(4, 5)), Array(3, 4)
CheckPoint "ConvertVariantToArray", v.ConvertVariantToArray(Array("1", 2.5)), Array(1, 2.5)
Check "IsParallel of opposite directions", v.IsParallel(Array(1, 0, 0), Array(-2, 0, 0)), True
Check "IsParallel of crossing directions", v.IsParallel(Array(1, 0, 0), Array(0, 1, 0)), False
Check "IsVertical", v.IsVertical(Array(1, 0, 0), Array(0, 3, 0)), True
Check "IsVertical of parallel directions", v.IsVertical(Array(1, 0, 0), Array(1, 0, 0)), False

sp = Array(1, 0)
ep = Array(0, 0)
Check "Fix_NegativeVector exchanges a leftward pair", v.Fix_NegativeVector(sp, ep), True
Check "Fix_NegativeVector new SP", sp(0), 0
Check "Fix_NegativeVector new EP", ep(0), 1
Check "Fix_NegativeVector leaves a rightward pair", v.Fix_NegativeVector(sp, ep), False
' The exchange trades the two variables' contents, elements and their types with them.
sp = Array(0, 0, 7)
ep = Array(-0.5, -1, 2.5)
Check "Fix_NegativeVector exchanges a downward pair", v.Fix_NegativeVector(sp, ep), True
Check "Fix_NegativeVector SP takes EP's Double", VarType(sp(0)), vbDouble
Check "Fix_NegativeVector SP takes EP's z", sp(2), 2.5
Check "Fix_NegativeVector EP takes SP's Integer", VarType(ep(2)), vbInteger
Check "Fix_NegativeVector EP takes SP's z", ep(2), 7

' Hostile arguments raise errors, never crash.
r = v.vLength("abc")
CheckError "vLength of a text", 13, "Type mismatch"
r = v.vLength(5)
CheckError "vLength of a number", 13, "Type mismatch"
r = v.vLength(Nothing)
CheckError "vLength of Nothing", 13, "Type mismatch"
r = v.vLength(Array(1, "x"))
CheckError "vLength of a non-numeric element", 13, "Type mismatch"
r = v.vLength(Array(1, Null))
CheckError "vLength of a Null element", 13, "Type mismatch"
r = v.vLength(Array(2 ^ 1000, 2 ^ 1000))
CheckError "vLength beyond the double range", 6, "Overflow"
Err.Clear

' An Empty variable passed for an optional by-reference argument still receives the result.
Dim unset
p = Array(1, 1E-09)
v.RoundZeroVector p, unset
Check "RoundZeroVector writes the default fuzz into an Empty variable", unset, 0.000001
