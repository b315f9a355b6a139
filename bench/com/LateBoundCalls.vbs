' Late-bound calls per second from VBScript: DLength.Value(3) and Vector.vLength next to
' Scripting.Dictionary.Item (Wine's scrrun) as the reference cost of one script-to-COM call, and
' each one's ratio to it. The three loops take turns for five rounds and the best round of each
' counts, so that a busy moment of a shared machine does not decide a ratio.
' Run: scripts/wine-run bench/com/LateBoundCalls.vbs [calls per round]
Option Explicit
On Error Resume Next
Dim calls, length, vector, dictionary, point, i, x, round, started, best(2), names(2), k

calls = 100000
If WScript.Arguments.Count > 0 Then calls = CLng(WScript.Arguments(0))

Set length = CreateObject("Tessary_Geometry_Pro.DLength")
length.Millimetres = 1234.5
Set vector = CreateObject("Tessary_Geometry_Pro.Vector")
point = Array(3, 4, 12)
Set dictionary = CreateObject("Scripting.Dictionary")
dictionary.Add "key", 1
names(0) = "Scripting.Dictionary.Item"
names(1) = "DLength.Value(3)"
names(2) = "Vector.vLength"
For k = 0 To 2
    best(k) = 1000000
Next

Function Elapsed(since)
    Elapsed = Timer - since
    If Elapsed <= 0 Then Elapsed = 0.001
End Function

For round = 1 To 5
    started = Timer
    For i = 1 To calls
        x = dictionary.Item("key")
    Next
    If Elapsed(started) < best(0) Then best(0) = Elapsed(started)
    started = Timer
    For i = 1 To calls
        x = length.Value(3)
    Next
    If Elapsed(started) < best(1) Then best(1) = Elapsed(started)
    started = Timer
    For i = 1 To calls
        x = vector.vLength(point)
    Next
    If Elapsed(started) < best(2) Then best(2) = Elapsed(started)
Next

For k = 0 To 2
    WScript.Echo names(k) & ": " & FormatNumber(calls / best(k), 0) & " calls/s, ratio to Dictionary.Item " & _
        FormatNumber(best(0) / best(k), 2)
Next

If Err.Number <> 0 Then WScript.Echo "error " & Err.Number & ": " & Err.Description
WScript.Echo "END-OF-SCRIPT"
WScript.Quit Err.Number
