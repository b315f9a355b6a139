' UCS through the automation boundary: what Origin holds (the caller's own Variant until the system
' moves it), translations in place, errors part way, the identity of the parent and of copies.
Dim u, w, p, c, o
Set u = Library("UCS")
Set w = Library("UCS")
u.Label = "Column A"
Check "Label", u.Label, "Column A"
CheckPoint "Origin on creation", u.Origin, Array(0, 0, 0)
' Origin is a public Variant: it reads back what was put there until the system moves it.
o = u.Origin
Check "a new system's Origin is an array of Variants", VarType(o), vbArray + vbVariant
Check "a new system's Origin holds Integer zeros", VarType(o(2)), vbInteger
u.SetUCS Array(1, "2", 3), Array(1, 0, 0), Array(0, 1, 0)
o = u.Origin
Check "Origin after SetUCS is the caller's own Variant", VarType(o(1)), vbString
u.Move Array(0, 0, 0), Array(1, 0, 0)
Check "Origin after Move is an array of Double", VarType(u.Origin), vbArray + vbDouble
CheckPoint "Origin after Move", u.Origin, Array(2, 2, 3)
u.Origin = 5
Check "Origin = 5 is accepted", u.Origin, 5
p = Array(1, 0, 0)
u.TranslateFromUCS p, w
CheckError "a translation with Origin = 5", 13, "Type mismatch"
u.Move Array(0, 0, 0), Array(1, 0, 0)
CheckError "Move with Origin = 5", 13, "Type mismatch"
u.SetUCS Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0)
' A failing unit conversion comes after the point was already re-expressed: the caller sees it so.
u.Origin = Array(10, 0, 0)
u.UnitID = -1
p = Array(1, 2, 3)
u.TranslateFromUCS p, w
CheckError "TranslateFromUCS into a system of an invalid unit", 24111, "-1 is an invalid UnitID for Length"
CheckPoint "the point is left as far as the translation got", p, Array(-9, 2, 3)
p = Array(1, 2, 3)
w.TranslateToUCS p, u
CheckError "TranslateToUCS into a system of an invalid unit", 24111, "-1 is an invalid UnitID for Length"
CheckPoint "TranslateToUCS leaves the point as far as it got", p, Array(-9, 2, 3)
u.UnitID = 0
u.SetUCS Array(10, 0, 0), Array(0, 1, 0), Array(-1, 0, 0)
CheckPoint "SetUCS Uz = Ux x Uy", u.Uz, Array(0, 0, 1)
u.SetUCS Array(10, 0, 0), Array(0, 1, 0), Array(-1, 0, 0)

p = Array(1, 0, 0)
w.TranslateFromUCS p, u
CheckNear "TranslateFromUCS x", p(0), 10, 1E-12
p = Array(1, 0, 0)
w.TranslateFromUCS p, u, True
CheckNear "TranslateFromUCS as a vector ignores the origin", p(0), 0, 1E-12
w.TranslateFromUCS p, Nothing
CheckError "TranslateFromUCS with Nothing", 424, "Object required"

Check "Parent when none is stored is a new system", u.Parent Is u.Parent, False
Set u.Parent = w
Check "Parent returns the stored object itself", u.Parent Is w, True
Check "Matrix is a new copy each time", u.Matrix Is u.Matrix, False

Set c = u.Copy
Check "Copy is a new object", c Is u, False
c.Move Array(0, 0, 0), Array(1, 0, 0)
CheckPoint "Copy is independent", u.Origin, Array(10, 0, 0)
u.ParallelTo Library("Matrix")
CheckErrorNumber "ParallelTo a Matrix", 13
