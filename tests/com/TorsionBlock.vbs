' Torsion through the automation boundary: TorsionBlock from a Loop7 and from a Loop7s, its quantities
' in the library's units, its optional arguments, its errors and what a failed Init keeps. The
' solutions themselves are the native suites'.
Dim torsion, plate, tube, outer, inner, units, at, n, v

Function LoopOf(coordinates, bulges)
    Set LoopOf = Library("Loop7")
    LoopOf.InitFromCoordinates coordinates, bulges
End Function

' A 100 x 50 rectangle: J = 2,858,520.96 mm4 (Saint-Venant's series), shear centre at the centroid.
Set plate = LoopOf(Array(0, 0, 100, 0, 100, 50, 0, 50), Array(0, 0, 0, 0))
Set torsion = Library("TorsionBlock")
n = torsion.ErrorEstimate
CheckError "nothing to read before Init", 2411, "TorsionBlock: no section yet: call Init with a Loop7 or a Loop7s"
torsion.Init plate
CheckNear "J of a Loop7", torsion.TorsionConstant.Millimetres, 2858520.96, 1E-8
Set units = Library("UnitSetting")
units.UnitID(4) = 1
CheckNear "J in cm4", torsion.TorsionConstant.Value(units), 285.852096, 1E-8
CheckNear "shear centre x", torsion.ShearCentreX.Millimetres, 50, 1E-9
at = torsion.MaximumShearStressAt   ' an array of Double: measured through the library
Set v = Library("Vector")
Check "the largest stress acts in the middle of a long side", _
    v.vLength(v.vminusv(at, Array(50, 0, 0))) < 0.001 Or v.vLength(v.vminusv(at, Array(50, 50, 0))) < 0.001, True
' Poisson's ratio is 0.3 unless given; with 0 a rectangle's shear areas are 5/6 of its area.
CheckNear "the default Poisson's ratio", torsion.Poisson, 0.3, 0
torsion.Init plate, 0.000001, 0
CheckNear "shear area along x, nu 0", torsion.ShearAreaX.Millimetres, 5000 * 5 / 6, 1E-8
torsion.Init plate, 0.000001, 0.7
CheckError "a Poisson's ratio above 0.5", 5, "Invalid procedure call or argument"
CheckNear "a refused Poisson's ratio keeps the last solution", torsion.Poisson, 0, 0

' A ring from a Loop7s: J = pi (20^4 - 12^4) / 32.
Set outer = LoopOf(Array(-10, 0, 10, 0), Array(1, 1))
Set inner = LoopOf(Array(-6, 0, 6, 0), Array(1, 1))
Set tube = Library("Loop7s")
tube.Add outer
tube.Add inner
torsion.Init tube, 0.0001
CheckNear "J of a ring", torsion.TorsionConstant.Millimetres, 3.14159265358979 * (160000 - 20736) / 32, 1E-9

torsion.Init Nothing
CheckError "Init needs a section", 424, "Object required"
torsion.Init units
CheckError "Init needs a Loop7 or a Loop7s", 13, "Type mismatch"
CheckNear "a failed Init keeps the last solution", torsion.TorsionConstant.Millimetres, 3.14159265358979 * (160000 - 20736) / 32, 1E-9
