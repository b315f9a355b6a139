' Drawings read through the COM runtime: DrawingSections (Read, Item, For Each, names, rejected
' outlines, what was skipped, options, errors naming the file).
Dim fso, drawingFile, sections, section, n, missing

Function Polyline(handle, layer, coordinates)
    Dim text, i
    text = "0|LWPOLYLINE|5|" & handle & "|8|" & layer & "|90|" & ((UBound(coordinates) + 1) / 2) & "|70|1|"
    For i = 0 To UBound(coordinates) Step 2
        text = text & "10|" & coordinates(i) & "|20|" & coordinates(i + 1) & "|"
    Next
    Polyline = text
End Function

' A plate with a hole in centimetres, a bow that cuts itself and a text.
Function WriteDrawing(name)
    Dim text, stream
    text = "0|SECTION|2|HEADER|9|$INSUNITS|70|5|0|ENDSEC|0|SECTION|2|ENTITIES|" & _
        Polyline("2F", "PLATE", Array(0, 0, 10, 0, 10, 5, 0, 5)) & _
        Polyline("30", "PLATE", Array(1, 1, 3, 1, 3, 3, 1, 3)) & _
        Polyline("31", "BOW", Array(20, 0, 21, 1, 21, 0, 20, 1)) & _
        "0|TEXT|5|32|8|NOTES|1|label|0|ENDSEC|0|EOF|"
    WriteDrawing = fso.BuildPath(fso.GetSpecialFolder(2), name)
    Set stream = fso.CreateTextFile(WriteDrawing, True)
    stream.Write Replace(text, "|", vbCrLf)
    stream.Close
End Function

Set fso = CreateObject("Scripting.FileSystemObject")
drawingFile = WriteDrawing("tgp_plate.dxf")
Set sections = Library("DrawingSections")
Check "nothing read yet", sections.Count, 0
Check "no file yet", sections.FileName, ""
Check "the drawing's own unit by default", sections.DrawingUnit, -1
sections.Read drawingFile
Check "FileName", sections.FileName, drawingFile
Check "Count", sections.Count, 1
Check "Name", sections.Name(1), "LWPOLYLINE handle 2F on layer PLATE with 1 hole"
Check "Handle", sections.Handle(1), "2F"
Check "EntityLayer", sections.EntityLayer(1), "PLATE"
Set section = sections.Item(1)
Check "its loops", section.Count, 2
Check "the inner loop is a hole", section.IsHole(2), True
CheckNear "area in square millimetres from centimetres", section.Area, (50 - 4) * 100, 1E-12
n = 0
For Each section In sections
    n = n + 1
Next
Check "For Each visits every section", n, 1
Check "RejectedCount", sections.RejectedCount, 1
Check "RejectedName", sections.RejectedName(1), "LWPOLYLINE handle 31 on layer BOW"
Check "RejectedReason", sections.RejectedReason(1), "cuts itself at (205, 5)"
Check "SkipSummary", sections.SkipSummary, "1 TEXT"

sections.DrawingUnit = 0
sections.EachOutline = True
sections.Layer = "plate"
sections.Read drawingFile
Check "EachOutline: the hole is a section of its own", sections.Count, 2
CheckNear "DrawingUnit: millimetres", sections.Item(2).Area, 4, 1E-12
Check "Layer: the bow is not read", sections.RejectedCount, 0
Check "Layer reads back", sections.Layer, "plate"

Set section = sections.Item(3)
CheckError "a section past Count", 9, "Subscript out of range"
n = sections.RejectedName(0)
CheckError "a rejected outline before 1", 9, "Subscript out of range"
sections.DrawingUnit = 99
CheckError "a unit outside the catalogue", 5, "Invalid procedure call or argument"
missing = fso.BuildPath(fso.GetSpecialFolder(2), "tgp_missing.dxf")
sections.Read missing
CheckError "a missing file is named", 2411, missing & ": cannot open the file"
Check "a failed Read keeps what was read", sections.Count, 2
fso.DeleteFile drawingFile
