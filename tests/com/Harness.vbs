' The checks shared by the automation suite; scripts/test-com puts this file in front of every
' tests/com/*.vbs before running it under Wine.
'
' Wine's cscript stops silently on an unhandled error, so everything runs under On Error Resume Next.
' A statement that raises is skipped, so every check first looks for an error left behind by the
' statements before it and counts it as a failure; CheckError consumes the error it expects.
' Finish prints the sentinel line the runner requires and quits with the failure count.
Option Explicit
On Error Resume Next

Dim passed, failed
passed = 0
failed = 0

Sub Pass()
    passed = passed + 1
End Sub

Sub Fail(name, detail)
    failed = failed + 1
    WScript.Echo "FAIL " & name & ": " & detail
End Sub

' An error no check expected: reported once, then cleared.
Sub TakeStrayError(name)
    If Err.Number <> 0 Then
        Fail name, "unexpected error " & Err.Number & " """ & Err.Description & """ before this check"
        Err.Clear
    End If
End Sub

Function Show(value)
    If IsObject(value) Then
        Show = "<" & TypeName(value) & ">"
    ElseIf IsArray(value) Then
        Show = "<array>"
    ElseIf IsNull(value) Then
        Show = "Null"
    Else
        Show = TypeName(value) & " " & CStr(value)
    End If
End Function

Sub Check(name, actual, expected)
    TakeStrayError name
    If IsObject(actual) Or IsObject(expected) Then
        If actual Is expected Then Pass Else Fail name, "objects differ"
    ElseIf IsNull(expected) Then
        If IsNull(actual) Then Pass Else Fail name, "expected Null, got " & Show(actual)
    ElseIf IsEmpty(expected) Then
        If IsEmpty(actual) Then Pass Else Fail name, "expected Empty, got " & Show(actual)
    ElseIf actual = expected Then
        Pass
    Else
        Fail name, "expected " & Show(expected) & ", got " & Show(actual)
    End If
End Sub

' Relative tolerance for values that went through floating arithmetic.
Sub CheckNear(name, actual, expected, tolerance)
    TakeStrayError name
    If Not IsNumeric(actual) Then
        Fail name, "expected a number near " & expected & ", got " & Show(actual)
    ElseIf Abs(actual - expected) <= tolerance * (1 + Abs(expected)) Then
        Pass
    Else
        Fail name, "expected " & expected & " within " & tolerance & ", got " & Show(actual)
    End If
End Sub

' The statement just before must have raised exactly this error (number and description).
Sub CheckError(name, number, description)
    If Err.Number = number And (description = "*" Or Err.Description = description) Then
        Pass
    ElseIf Err.Number = 0 Then
        Fail name, "expected error " & number & " """ & description & """, none raised"
    Else
        Fail name, "expected error " & number & " """ & description & """, got " & Err.Number & " """ & Err.Description & """"
    End If
    Err.Clear
End Sub

' The statement just before must have raised some error with this number (any description).
Sub CheckErrorNumber(name, number)
    CheckError name, number, "*"
End Sub

Sub CheckTypeName(name, value, expected)
    TakeStrayError name
    If TypeName(value) = expected Then Pass Else Fail name, "expected type " & expected & ", got " & TypeName(value)
End Sub

' Elements of a Variant array (scripts cannot index arrays of Double; see the C++ client).
Sub CheckArray(name, actual, expected)
    Dim i
    TakeStrayError name
    If Not IsArray(actual) Then
        Fail name, "expected an array, got " & Show(actual)
        Exit Sub
    End If
    If UBound(actual) - LBound(actual) <> UBound(expected) - LBound(expected) Then
        Fail name, "expected " & (UBound(expected) + 1) & " elements, got " & (UBound(actual) - LBound(actual) + 1)
        Exit Sub
    End If
    For i = 0 To UBound(expected)
        If Abs(actual(LBound(actual) + i) - expected(i)) > 0.000000001 * (1 + Abs(expected(i))) Then
            Fail name, "element " & i & ": expected " & expected(i) & ", got " & actual(LBound(actual) + i)
            Exit Sub
        End If
    Next
    Pass
End Sub

' A point the library returned as an array of Double, which Wine's script engine cannot index:
' compared through the library itself (the distance to the expected point must vanish).
Dim harnessVector
Sub CheckPoint(name, actual, expected)
    Dim distance
    TakeStrayError name
    If IsEmpty(harnessVector) Then Set harnessVector = Library("Vector")
    distance = harnessVector.vLength(harnessVector.vminusv(actual, expected))
    If Err.Number <> 0 Then
        Fail name, "not a point: error " & Err.Number & " " & Err.Description
        Err.Clear
    ElseIf distance <= 0.000000001 * (1 + harnessVector.vLength(expected)) Then
        Pass
    Else
        Fail name, "off the expected point by " & distance
    End If
End Sub

Function Library(className)
    Set Library = CreateObject("Tessary_Geometry_Pro." & className)
End Function
