' A rectangular hollow section drawn as two CAD polylines, as one composite section, in centimetres.
' Windows: cscript //nologo examples\SectionProperties.vbs   Linux: scripts/wine-run examples/SectionProperties.vbs
Option Explicit
Dim outer, hole, section, block, units, text, copy

Set outer = CreateObject("Tessary_Geometry_Pro.Loop7")
outer.InitFromCoordinates Array(0, 0, 100, 0, 100, 200, 0, 200), Array(0, 0, 0, 0)
Set hole = CreateObject("Tessary_Geometry_Pro.Loop7")
hole.InitFromCoordinates Array(10, 10, 90, 10, 90, 190, 10, 190), Array(0, 0, 0, 0)

' The collection finds that the second loop lies inside the first: it is a hole, and subtracts.
Set section = CreateObject("Tessary_Geometry_Pro.Loop7s")
section.Add outer
section.Add hole
WScript.Echo "depth of the hole: " & section.Depth(2) & ", a hole: " & section.IsHole(2)

Set units = CreateObject("Tessary_Geometry_Pro.UnitSetting")
units.UnitID(4) = 1   ' second moments of area in cm4
units.UnitID(2) = 1   ' areas in cm2

Set block = section.InertiaBlock
WScript.Echo "hollow section A  = " & block.Area.ValueToString(units, 2)
WScript.Echo "hollow section Ix = " & block.MomentOfInertiaX.ValueToString(units, 1)
WScript.Echo "hollow section Iy = " & block.MomentOfInertiaY.ValueToString(units, 1)

' A block keeps as one line of text and reads back exactly.
text = block.SaveToText
Set copy = CreateObject("Tessary_Geometry_Pro.InertiaBlock")
copy.InitFromText text
WScript.Echo text
WScript.Echo "read back: " & (copy.SaveToText = text)
