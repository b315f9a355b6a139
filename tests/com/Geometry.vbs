' The global Geometry class through the COM runtime: angle members with by-reference arguments,
' measurement, inverse trigonometry and RotatePoint.
Dim g, a, rot, mirror, x, ret, pi
Set g = Library("Geometry")
pi = 3.14159265358979

Check "pi is the shortened literal", g.pi, 3.14159265358979
Check "pi is a Double", TypeName(g.pi), "Double"
a = 180
Check "DegToRad(180)", g.DegToRad(a), pi
Check "DegToRad leaves its argument", a, 180
CheckNear "DegFromRad", g.DegFromRad(pi / 2), 90, 1E-12

' FixAngle* change the caller's variable (a script variable arrives by reference).
a = -pi / 2
g.FixAngle360 a
CheckNear "FixAngle360(-pi/2)", a, 2 * pi - pi / 2, 1E-12
a = 7
g.FixAngle360 a
CheckNear "FixAngle360(7)", a, 7 - 6.28318530717958, 1E-12
Check "FixAngle360 gives the variable a Double", TypeName(a), "Double"
a = 4
rot = False
g.FixAngle180 a, rot
CheckNear "FixAngle180(4)", a, 4 - pi, 1E-12
Check "FixAngle180 sets Rotate180", rot, True
a = 4
g.FixAngle180180 a
CheckNear "FixAngle180180(4)", a, 4 - 2 * pi, 1E-12
a = 2
rot = False
mirror = True
g.FixAngle90 a, rot, mirror
CheckNear "FixAngle90(2)", a, 2 - pi, 1E-12
a = 2
mirror = True
g.FixAngle9090 a, , mirror
Check "FixAngle9090 XMirror is always False", mirror, False
g.FixAngle360 "abc"
CheckError "FixAngle360 of a text", 13, "Type mismatch"
' Far from zero the turns are still taken one at a time, each subtraction rounding as it does.
a = 7000000
g.FixAngle360 a
Check "FixAngle360(7000000) is the turn-by-turn result", a, 3.7802735708596904
a = -7000000
g.FixAngle360 a
Check "FixAngle360(-7000000) is the turn-by-turn result", a, 2.5029117363198896

x = 1.0000001
CheckNear "ASin snaps near 1", g.ASin(x), pi / 2, 1E-12
Check "ASin writes the snapped value back", x, 1
x = 0.5
CheckNear "ACos(0.5)", g.ACos(x), 1.0471975511966, 1E-12
x = 2
a = g.ASin(x)
CheckError "ASin(2)", 713, "ASin(X): X must smaller than 1."
a = g.ACos(-3)
CheckError "ACos(-3)", 713, "ACos(X): X must smaller than 1."

Check "Area_3Distances(3, 4, 5)", g.Area_3Distances(3, 4, 5), 6
a = g.Area_3Distances(1, 1, 3)
CheckError "Area_3Distances of no triangle", 2411, "Function Area_3Distances fails: the given lengths do not form a triangle"
CheckNear "Area_3Points", g.Area_3Points(Array(0, 0, 0), Array(4, 0, 0), Array(0, 3, 0)), 6, 1E-12
CheckPoint "NormalVector", g.NormalVector(Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0)), Array(0, 0, 1)
CheckNear "Volume_4Points", g.Volume_4Points(Array(0, 0, 1), Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0)), 1 / 6, 1E-08

a = pi / 2
ret = Empty
g.RotatePoint Array(1, 0, 0), Array(0, 0, 0), Array(0, 0, 1), a, ret
CheckPoint "RotatePoint into an Empty variable", ret, Array(0, 1, 0)
ret = Array(9, 9, 9)
g.RotatePoint Array(2, 0, 5), Array(1, 0, 0), Array(0, 0, 1), a, ret
CheckNear "RotatePoint into a Variant array x", ret(0), 1, 1E-12
CheckNear "RotatePoint into a Variant array y", ret(1), 1, 1E-12
Check "RotatePoint into a Variant array z", ret(2), 5
g.RotatePoint Array(1, 0, 0), Array(0, 0, 0), Array(0, 0, 0), a, ret
CheckError "RotatePoint about a zero axis", 713, "Method RotatePoint of Geometry module fails"
g.RotatePoint 5, Array(0, 0, 0), Array(0, 0, 1), a, ret
CheckError "RotatePoint of a point that is no array", 713, "Method RotatePoint of Geometry module fails"
g.RotatePoint Array(1, 0, 0), "origin", Array(0, 0, 1), a, ret
CheckError "RotatePoint about an origin that is no array", 713, "Method RotatePoint of Geometry module fails"
g.RotatePoint Array(1, 0, 0), Array(0, 0, 0), Array(0, 0, 1), "quarter", ret
CheckError "RotatePoint by an unreadable rotation is past the trap", 13, "Type mismatch"
' The result variable receives an array of Double whatever it held before.
ret = Array(9, 9, 9)
g.RotatePoint Array(1, 0, 0), Array(0, 0, 0), Array(0, 0, 1), a, ret
Check "RotatePoint turns a Variant array into an array of Double", VarType(ret), vbArray + vbDouble
ret = "text"
g.RotatePoint Array(1, 0, 0), Array(0, 0, 0), Array(0, 0, 1), a, ret
Check "RotatePoint turns a text variable into an array of Double", VarType(ret), vbArray + vbDouble
CheckPoint "RotatePoint into a text variable", ret, Array(0, 1, 0)

Dim unsetFlag
a = 4
g.FixAngle180 a, unsetFlag
Check "FixAngle180 writes Rotate180 into an Empty variable", unsetFlag, True
