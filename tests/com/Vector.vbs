' The global Vector class through the automation boundary: point arrays as scripts send them (any
' element type, text included), results as arrays, members that change the caller's variables in
' place, and errors. The vector arithmetic itself is the native suites'.
Dim v, p, r, f, sp, ep, nested, unset
Set v = Library("Vector")

CheckPoint "vplusv takes any number of points (a parameter array)", v.vplusv(Array(1, 1), Array(2, 2), Array(3, 3)), Array(6, 6)
r = v.vplusv()
CheckError "vplusv of nothing", 9, "Subscript out of range"
CheckPoint "vxr with a text factor", v.vxr(Array(1, 2), "0.5"), Array(0.5, 1)
nested = v.vxr(Array(Array(1, 2), Array(3, 4)), 2)
CheckPoint "vxr of a list of points gives a list", nested(1), Array(6, 8)
Check "vLength of Empty", v.vLength(Empty), 0
Check "vLength of an empty array", v.vLength(Array()), 0
f = 1.5707963267949
r = v.vRotate(Array(2, 0), f)
CheckNear "vRotate answers a Variant array", r(1), 2, 1E-12
Check "vRotate leaves its angle variable", f, 1.5707963267949
r = v.vxv(Array(1, 0), Array(0, 1))
CheckError "vxv of two-element arrays", 9, "Subscript out of range"
r = v.vProjectTo(Array(3, 4, 0), Array(2, 0, 0))
Check "vProjectTo answers a Variant array", r(0), 3
r = v.UnitVec(Array(0, 0, 0))
CheckError "UnitVec of a zero vector", 2411, "Vector unitvec(u) = u = 0"
CheckPoint "ConvertVariantToArray of text elements", v.ConvertVariantToArray(Array("1", 2.5)), Array(1, 2.5)

' In place: only the zeroed elements change, the others keep their own type; the default tolerance
' is written back into the caller's variable, an Empty one included.
p = Array(1E-09, 2, 2.5)
v.RoundZeroVector p, unset
Check "RoundZeroVector zeroes an element in place", p(0), 0
Check "RoundZeroVector leaves an Integer element an Integer", VarType(p(1)), vbInteger
Check "RoundZeroVector keeps a Variant array", VarType(p), vbArray + vbVariant
Check "RoundZeroVector writes the default fuzz into an Empty variable", unset, 0.000001
' The exchange trades the two variables' contents, elements and their types with them.
sp = Array(0, 0, 7)
ep = Array(-0.5, -1, 2.5)
Check "Fix_NegativeVector exchanges a downward pair", v.Fix_NegativeVector(sp, ep), True
Check "Fix_NegativeVector SP takes EP's Double", VarType(sp(0)) & " " & sp(2), vbDouble & " 2.5"
Check "Fix_NegativeVector EP takes SP's Integer", VarType(ep(2)) & " " & ep(2), vbInteger & " 7"
Check "Fix_NegativeVector leaves a rightward pair", v.Fix_NegativeVector(sp, ep), False

' Hostile arguments raise errors, never crash.
r = v.vLength("abc")
CheckError "vLength of a text", 13, "Type mismatch"
r = v.vLength(Nothing)
CheckError "vLength of Nothing", 13, "Type mismatch"
r = v.vLength(Array(1, Null))
CheckError "vLength of a Null element", 13, "Type mismatch"
r = v.vLength(Array(2 ^ 1000, 2 ^ 1000))
CheckError "vLength beyond the double range", 6, "Overflow"
