' Run after the installer, with nothing but what it registered: every class by its ProgID, then a
' section computed through them.
Dim names, name, made, plate, block, torsion
names = Array("DAngle", "DLength", "DArea", "DVolume", "DMomentOfInertia", "DForce", "DPressure", _
    "DForcePerArea", "DForceMoment", "DForcePerLine", "DForceDensity", "UnitSetting", "Geometry_EXE", _
    "Vector", "Geometry", "Matrix", "UCS", "Loop7", "InertiaBlock", "Loop7s", "UnitComboBox", _
    "HostBridge", "DrawingSections", "TorsionBlock")
For Each name In names
    Set made = Nothing
    Set made = Library(name)
    Check "CreateObject of " & name, TypeName(made), "_" & name  ' the name of its interface
Next

' A 200 x 100 rectangle: A = 20000 mm2, Ix = 200 * 100^3 / 12, J by Saint-Venant's series.
Set plate = Library("Loop7")
plate.InitFromCoordinates Array(0, 0, 0, 100, 200, 100, 200, 0), Array(0, 0, 0, 0)
Set block = plate.InertiaBlock
Check "area of the rectangle", block.Area.Millimetres, 20000
CheckNear "Ix of the rectangle", block.MomentOfInertiaX.Millimetres, 200 * 100 ^ 3 / 12, 0.000000001
Set torsion = Library("TorsionBlock")
torsion.Init plate
' J = k b t^3 with k = 0.2287 for b / t = 2 (Timoshenko & Goodier, Theory of Elasticity, table 6)
CheckNear "J of the rectangle", torsion.TorsionConstant.Millimetres, 0.2287 * 200 * 100 ^ 3, 0.001
