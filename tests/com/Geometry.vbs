' The global Geometry class through the automation boundary: angles changed in the caller's
' variables (a script variable arrives by reference), flags written into optional ones (Empty
' included), snapped arguments written back, results into variables of any type, and errors. The
' numbers themselves are the native suites'.
Dim g, a, rot, mirror, x, ret, unsetFlag
Set g = Library("Geometry")

Check "pi is a Double", TypeName(g.pi), "Double"
a = 180
Check "DegToRad leaves its argument", g.DegToRad(a) > 3 And a = 180, True
a = 7
g.FixAngle360 a
CheckNear "FixAngle360 changes the variable", a, 7 - 6.28318530717958, 1E-12
Check "FixAngle360 gives the variable a Double", TypeName(a), "Double"
a = 4
g.FixAngle180 a, unsetFlag
Check "FixAngle180 writes Rotate180 into an Empty variable", unsetFlag, True
a = 2
mirror = True
g.FixAngle9090 a, , mirror
Check "FixAngle9090 with an argument skipped: XMirror is always False", mirror, False
g.FixAngle360 "abc"
CheckError "FixAngle360 of a text", 13, "Type mismatch"
x = 1.0000001
a = g.ASin(x)
Check "ASin writes the snapped value back", x, 1
a = g.ACos(-3)
CheckError "ACos(-3)", 713, "ACos(X): X must smaller than 1."
CheckPoint "NormalVector", g.NormalVector(Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0)), Array(0, 0, 1)

' RotatePoint's result variable receives an array of Double whatever it held before.
a = 3.14159265358979 / 2
ret = Empty
g.RotatePoint Array(1, 0, 0), Array(0, 0, 0), Array(0, 0, 1), a, ret
CheckPoint "RotatePoint into an Empty variable", ret, Array(0, 1, 0)
ret = "text"
g.RotatePoint Array(1, 0, 0), Array(0, 0, 0), Array(0, 0, 1), a, ret
Check "RotatePoint turns a text variable into an array of Double", VarType(ret), vbArray + vbDouble
g.RotatePoint 5, Array(0, 0, 0), Array(0, 0, 1), a, ret
CheckError "RotatePoint of a point that is no array", 713, "Method RotatePoint of Geometry module fails"
g.RotatePoint Array(1, 0, 0), Array(0, 0, 0), Array(0, 0, 1), "quarter", ret
CheckError "RotatePoint by an unreadable rotation is past the trap", 13, "Type mismatch"
