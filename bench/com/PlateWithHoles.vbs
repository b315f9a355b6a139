' Loop7s from VBScript: the composite InertiaBlock of a plate with 10,000 square holes (5 x 5 on a
' 10 grid), the loops built and added first; prints the seconds each step takes, best of three.
' Run: scripts/wine-run bench/com/PlateWithHoles.vbs [holes per side]
Option Explicit
On Error Resume Next
Dim side, plate, row, column, lp, started, built, arranged, best, attempt, area

side = 100
If WScript.Arguments.Count > 0 Then side = CLng(WScript.Arguments(0))
best = 1000000

For attempt = 1 To 3
    started = Timer
    Set plate = CreateObject("Tessary_Geometry_Pro.Loop7s")
    Set lp = CreateObject("Tessary_Geometry_Pro.Loop7")
    lp.InitFromCoordinates Array(-5, -5, 10 * side, -5, 10 * side, 10 * side, -5, 10 * side), Array(0, 0, 0, 0)
    plate.Add lp
    For row = 0 To side - 1
        For column = 0 To side - 1
            Set lp = CreateObject("Tessary_Geometry_Pro.Loop7")
            lp.InitFromCoordinates Array(10 * column, 10 * row, 10 * column + 5, 10 * row, 10 * column + 5, 10 * row + 5, 10 * column, 10 * row + 5), Array(0, 0, 0, 0)
            plate.Add lp
        Next
    Next
    built = Timer - started
    started = Timer
    area = plate.InertiaBlock.Area.Millimetres
    arranged = Timer - started
    If arranged < best Then best = arranged
    WScript.Echo "loops built and added: " & FormatNumber(built, 2) & " s, InertiaBlock: " & FormatNumber(arranged, 3) & " s"
Next
WScript.Echo side * side & " holes: InertiaBlock best of three " & FormatNumber(best, 3) & " s (area " & area & " mm2)"

If Err.Number <> 0 Then WScript.Echo "error " & Err.Number & ": " & Err.Description
WScript.Echo "END-OF-SCRIPT"
WScript.Quit Err.Number
