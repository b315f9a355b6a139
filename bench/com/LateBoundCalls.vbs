' Late-bound calls per second from VBScript: DLength.Value(3) and Vector.vLength next to
' Scripting.Dictionary.Item (Wine's scrrun) as the reference cost of one script-to-COM call.
' Run: scripts/wine-run bench/com/LateBoundCalls.vbs [calls]
Option Explicit
On Error Resume Next
Dim calls, length, vector, dictionary, point, i, x, started, elapsed

calls = 200000
If WScript.Arguments.Count > 0 Then calls = CLng(WScript.Arguments(0))

Set length = CreateObject("Tessary_Geometry_Pro.DLength")
length.Millimetres = 1234.5
Set vector = CreateObject("Tessary_Geometry_Pro.Vector")
point = Array(3, 4, 12)
Set dictionary = CreateObject("Scripting.Dictionary")
dictionary.Add "key", 1

Sub Report(name, seconds)
    If seconds <= 0 Then seconds = 0.001
    WScript.Echo name & ": " & calls & " calls in " & FormatNumber(seconds, 3) & " s = " & _
        FormatNumber(calls / seconds, 0) & " calls/s"
End Sub

started = Timer
For i = 1 To calls
    x = dictionary.Item("key")
Next
Report "Scripting.Dictionary.Item", Timer - started

started = Timer
For i = 1 To calls
    x = length.Value(3)
Next
Report "DLength.Value(3)", Timer - started

started = Timer
For i = 1 To calls
    x = vector.vLength(point)
Next
Report "Vector.vLength", Timer - started

If Err.Number <> 0 Then WScript.Echo "error " & Err.Number & ": " & Err.Description
WScript.Echo "END-OF-SCRIPT"
WScript.Quit Err.Number
