' Second moment of area of a rectangular hollow section drawn as two CAD polylines, in centimetres.
' Windows: cscript //nologo examples\SectionProperties.vbs   Linux: scripts/wine-run examples/SectionProperties.vbs
Option Explicit
Dim outer, hole, blockOuter, blockHole, ix, units

Set outer = CreateObject("Tessary_Geometry_Pro.Loop7")
outer.InitFromCoordinates Array(0, 0, 100, 0, 100, 200, 0, 200), Array(0, 0, 0, 0)
Set hole = CreateObject("Tessary_Geometry_Pro.Loop7")
hole.InitFromCoordinates Array(10, 10, 90, 10, 90, 190, 10, 190), Array(0, 0, 0, 0)

' The hole lies inside the outer boundary.
WScript.Echo "hole inside the outline: " & hole.IsChildOF(outer)

Set units = CreateObject("Tessary_Geometry_Pro.UnitSetting")
units.UnitID(4) = 1   ' second moments of area in cm4

Set blockOuter = outer.InertiaBlock
Set blockHole = hole.InertiaBlock
ix = Abs(blockOuter.MomentOfInertiaX.Value(units)) - Abs(blockHole.MomentOfInertiaX.Value(units))
WScript.Echo "outline Ix (signed: counter-clockwise) = " & blockOuter.MomentOfInertiaX.ValueToString(units, 1)
WScript.Echo "hollow section Ix = " & FormatNumber(ix, 1) & " cm4"
WScript.Echo "area = " & (outer.AreaAbs - hole.AreaAbs) & " mm2"
