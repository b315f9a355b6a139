' The sections of a drawing exported from CAD, read through the library: each section's name, area and
' second moments in centimetres, and what the drawing held besides.
' Windows: cscript //nologo examples\DrawingSections.vbs [drawing.dxf]
' Linux:   scripts/wine-run examples/DrawingSections.vbs
Option Explicit
Dim fso, drawing, sections, units, block, i

Set fso = CreateObject("Scripting.FileSystemObject")
If WScript.Arguments.Count > 0 Then
    drawing = WScript.Arguments(0)
Else
    drawing = fso.BuildPath(fso.GetParentFolderName(WScript.ScriptFullName), "rhs200x100x8.dxf")
End If

Set sections = CreateObject("Tessary_Geometry_Pro.DrawingSections")
sections.Read drawing   ' an unreadable file raises 2411 naming it

Set units = CreateObject("Tessary_Geometry_Pro.UnitSetting")
units.UnitID(2) = 1   ' areas in cm2
units.UnitID(4) = 1   ' second moments of area in cm4

For i = 1 To sections.Count
    Set block = sections.Item(i).InertiaBlock   ' holes subtract
    WScript.Echo sections.Name(i) & ": A = " & block.Area.ValueToString(units, 2) & _
        ", Ix = " & block.MomentOfInertiaX.ValueToString(units, 1) & _
        ", Iy = " & block.MomentOfInertiaY.ValueToString(units, 1)
Next
For i = 1 To sections.RejectedCount
    WScript.Echo sections.RejectedName(i) & " " & sections.RejectedReason(i)
Next
If sections.SkipSummary <> "" Then WScript.Echo "skipped: " & sections.SkipSummary
