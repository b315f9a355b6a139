' Hostile calls through the real runtime: every published class given values a careless or hostile
' script sends (Empty, Null, Nothing, text, 100,000-character strings, 16-bit overflows, huge
' numbers, empty, nested, multi-dimensional and text arrays, objects of the wrong class). Each call
' must end with a clean automation error (a runtime or library number with a readable description)
' or a sensible result; never a crash, a hang or an "Automation error". Then the faults found by
' earlier hostile runs, each with its expected outcome. (NaN, infinities and the process's memory
' are driven by the C++ client, which can make and measure them.)
Dim hL, hP, hUS, hUS2, hGX, hV, hG, hM, hU, hLp, hIB, hostile, labels, k, big, swept
Dim twoD(1, 1), threeD(1, 1, 1)

Set hL = Library("DLength")
Set hP = Library("DPressure")
Set hUS = Library("UnitSetting")
Set hUS2 = Library("UnitSetting")
Set hGX = Library("Geometry_EXE")
Set hV = Library("Vector")
Set hG = Library("Geometry")
Set hM = Library("Matrix")
Set hU = Library("UCS")
Set hLp = Library("Loop7")
Set hIB = Library("InertiaBlock")
big = 2 ^ 1023 * 1.5
twoD(0, 0) = 1: twoD(0, 1) = 2: twoD(1, 0) = 3: twoD(1, 1) = 4

hostile = Array(Empty, Null, Nothing, True, "abc", "", String(100000, "x"), -32769, 32768, big, -big, 2 ^ -1060, _
                Array(), Array(Array(1, 2), Array(3)), Array("a", "b", "c"), twoD, threeD, hL, hUS)
labels = Array("Empty", "Null", "Nothing", "True", "text", "empty text", "100000 characters", "-32769", "32768", _
               "1.3E+308", "-1.3E+308", "a denormal", "Array()", "nested arrays", "text array", "2-D array", _
               "3-D array", "a DLength", "a UnitSetting")

' A clean outcome: no error, or a known number with a readable description.
Sub CheckClean(name)
    Dim n
    n = Err.Number
    If n = 0 Then
        Pass
    ElseIf (n = 5 Or n = 6 Or n = 7 Or n = 9 Or n = 11 Or n = 13 Or n = 91 Or n = 94 Or n = 424 Or n = 438 _
            Or n = 450 Or n = 713 Or n = 2411 Or n = 24111) And Len(Err.Description) > 0 _
            And Left(Err.Description, 16) <> "Automation error" Then
        Pass
    Else
        Fail name, "unclean error " & n & " """ & Err.Description & """"
    End If
    Err.Clear
End Sub

' Every published class given one hostile value h in every argument position that takes data.
Sub Sweep(h, label)
    On Error Resume Next
    Dim x, a, r
    If IsObject(h) Then Set a = h Else a = h
    x = hL.Value(h): CheckClean label & ": DLength.Value get"
    hL.Value(h) = 5: CheckClean label & ": DLength.Value let"
    hL.Millimetres = h: CheckClean label & ": DLength.Millimetres let"
    x = hL.ValueToString(h): CheckClean label & ": DLength.ValueToString unit"
    x = hP.ValueToString(0, h): CheckClean label & ": DPressure.ValueToString digits"
    x = hP.ValueToString(0, 2, h): CheckClean label & ": DPressure.ValueToString NoBracket"
    hP.ValueFromString h: CheckClean label & ": DPressure.ValueFromString"
    x = hUS.UnitID(h): CheckClean label & ": UnitSetting.UnitID get"
    hUS.UnitID(h) = 1: CheckClean label & ": UnitSetting.UnitID let"
    hUS.UnitID(1) = h: CheckClean label & ": UnitSetting.UnitID value"
    hUS.UnitIDs = h: CheckClean label & ": UnitSetting.UnitIDs let"
    x = hUS.UnitString(h): CheckClean label & ": UnitSetting.UnitString"
    hUS.CopyTo h: CheckClean label & ": UnitSetting.CopyTo"
    hUS.FreezeEvents a: CheckClean label & ": UnitSetting.FreezeEvents"
    x = hGX.GetUnitString(h, 0): CheckClean label & ": GetUnitString kind"
    x = hGX.GetUnitString(1, h): CheckClean label & ": GetUnitString unit"
    x = hGX.GetUnitID(h, hL): CheckClean label & ": GetUnitID text"
    x = hGX.GetUnitID("5 mm", h): CheckClean label & ": GetUnitID object"
    Set x = hGX.GetDLength(h): CheckClean label & ": GetDLength value"
    Set x = hGX.GetDForce(1, h): CheckClean label & ": GetDForce unit"
    x = hV.vLength(h): CheckClean label & ": vLength"
    x = hV.vplusv(h, h): CheckClean label & ": vplusv"
    x = hV.vxr(h, 2): CheckClean label & ": vxr vector"
    x = hV.vxr(Array(1, 2), h): CheckClean label & ": vxr factor"
    x = hV.vxv(h, Array(1, 0, 0)): CheckClean label & ": vxv"
    x = hV.UnitVec(h): CheckClean label & ": UnitVec"
    x = hV.vAngle(h): CheckClean label & ": vAngle"
    x = hV.IsParallel(h, Array(1, 0, 0)): CheckClean label & ": IsParallel"
    x = hV.AssocVector(h, Array(1, 0, 0), Array(0, 1, 0), Array(0, 0, 1)): CheckClean label & ": AssocVector"
    x = hG.DegToRad(a): CheckClean label & ": DegToRad"
    hG.FixAngle360 a: CheckClean label & ": FixAngle360"
    If IsObject(h) Then Set a = h Else a = h
    x = hG.ASin(a): CheckClean label & ": ASin"
    If IsObject(h) Then Set a = h Else a = h
    x = hG.Area_3Distances(a, 1, 1): CheckClean label & ": Area_3Distances"
    x = hG.Area_3Points(h, Array(1, 0, 0), Array(0, 1, 0)): CheckClean label & ": Area_3Points"
    hG.RotatePoint h, Array(0, 0, 0), Array(0, 0, 1), 1, r: CheckClean label & ": RotatePoint point"
    hG.RotatePoint Array(1, 0, 0), Array(0, 0, 0), h, 1, r: CheckClean label & ": RotatePoint axis"
    hM.Reset h, 2: CheckClean label & ": Matrix.Reset"
    hM.Reset 2, 2
    x = hM.Item(h, 0): CheckClean label & ": Matrix.Item"
    hM.LetItem 0, 0, h: CheckClean label & ": Matrix.LetItem"
    hM.LetRow h, 0: CheckClean label & ": Matrix.LetRow"
    hM.Array2D = h: CheckClean label & ": Matrix.Array2D let"
    hM.Reset 2, 2
    x = hM.MultiplyWithVector(h): CheckClean label & ": Matrix.MultiplyWithVector"
    x = hM.SolveWithGaussMethod(h): CheckClean label & ": Matrix.SolveWithGaussMethod"
    Set x = hM.RoundUp(h): CheckClean label & ": Matrix.RoundUp"
    Set x = hM.MultiplyWithNumber(h): CheckClean label & ": Matrix.MultiplyWithNumber"
    hU.SetUCS h, Array(1, 0, 0), Array(0, 1, 0): CheckClean label & ": UCS.SetUCS origin"
    hU.SetUCS Array(0, 0, 0), h, Array(0, 1, 0): CheckClean label & ": UCS.SetUCS axis"
    hU.SetUCS Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0)
    hU.UnitID = h: CheckClean label & ": UCS.UnitID let"
    hU.Move h, Array(1, 1, 1): CheckClean label & ": UCS.Move"
    hU.Rotate h, True: CheckClean label & ": UCS.Rotate"
    If IsObject(h) Then Set a = h Else a = h
    hU.TranslateFromUCS a, hU: CheckClean label & ": UCS.TranslateFromUCS"
    hLp.InitFromCoordinates h, h: CheckClean label & ": Loop7.InitFromCoordinates"
    hLp.InitFromPoints h: CheckClean label & ": Loop7.InitFromPoints"
    hLp.InitFromCoordinates Array(0, 0, 10, 0, 10, 10, 0, 10), Array(0, 0, 0, 0)
    x = hLp.PointIsInside(h): CheckClean label & ": Loop7.PointIsInside"
    x = hLp.Vertex(h): CheckClean label & ": Loop7.Vertex"
    hLp.Move h: CheckClean label & ": Loop7.Move"
    x = hLp.RelationshipTo(h): CheckClean label & ": Loop7.RelationshipTo"
    x = hLp.IntersectWithLine(h, Array(1, 1)): CheckClean label & ": Loop7.IntersectWithLine"
    hLp.Transformation h, 0, 1, 1, Array(0, 0, 0): CheckClean label & ": Loop7.Transformation"
    hIB.Init h, 1, 0, Array(0, 0, 0), 1: CheckClean label & ": InertiaBlock.Init number"
    hIB.Init 1, 1, 0, h, 1: CheckClean label & ": InertiaBlock.Init centroid"
    hIB.Init 1, 1, 0, Array(0, 0, 0), 1, 4, h: CheckClean label & ": InertiaBlock.Init axis"
    Set x = hIB.MomentOfInertiaX(h): CheckClean label & ": InertiaBlock.MomentOfInertiaX target"
    hIB.Centroid = h: CheckClean label & ": InertiaBlock.Centroid let"
    hIB.Move h: CheckClean label & ": InertiaBlock.Move"
    hIB.RotateAll h, Array(0, 0, 0): CheckClean label & ": InertiaBlock.RotateAll"
    hIB.ElasticModulus = h: CheckClean label & ": InertiaBlock.ElasticModulus"
End Sub

swept = 0
For k = 0 To UBound(hostile)
    Sweep hostile(k), labels(k)
    swept = swept + 1
Next
Check "every hostile value swept", swept, UBound(labels) + 1
' The objects are still whole after the sweep.
hL.Millimetres = 7
Check "DLength still works", hL.Value(0), 7
hLp.InitFromCoordinates Array(0, 0, 10, 0, 10, 10, 0, 10), Array(0, 0, 0, 0)
Check "Loop7 still works", hLp.AreaAbs, 100

' ---- surplus arguments: 450 on lets and subs as on functions, and nothing stored ---------------
Dim a1, o
hL.Millimetres = 0
hL.Value(3, 1) = 7
CheckError "a let with a surplus argument", 450, "Wrong number of arguments or invalid property assignment"
Check "the surplus let stored nothing", hL.Millimetres, 0
hL.Millimetres(1) = 7
CheckErrorNumber "a property without arguments given one", 450
hLp.Reverse 5
CheckErrorNumber "Loop7.Reverse 5", 450
a1 = 1
hG.FixAngle360 a1, 5
CheckErrorNumber "FixAngle360 a, 5", 450
hM.Reset 2, 2, 2
CheckErrorNumber "Matrix.Reset 2, 2, 2", 450
hUS.CopyTo hUS2, hUS2
CheckErrorNumber "UnitSetting.CopyTo u2, u2", 450
hIB.Init 1, 1, 0, Array(0, 0, 0), 1, 4, Array(1, 0, 0), Array(0, 1, 0), 9
CheckErrorNumber "InertiaBlock.Init with nine arguments", 450
hU.Label("x") = "y"
CheckErrorNumber "UCS.Label let with an argument", 450

' ---- an object where a by-reference number or Boolean belongs: 13, and the caller keeps it -----
Set o = hL
a1 = hG.DegToRad(o)
CheckError "DegToRad of an object", 13, "Type mismatch"
Check "the caller's object survives DegToRad", IsObject(o), True
a1 = hG.Area_3Distances(o, 1, 1)
CheckErrorNumber "Area_3Distances of an object", 13
Check "the caller's object survives Area_3Distances", IsObject(o), True
a1 = hM.Item(o, o)
CheckErrorNumber "Matrix.Item of objects", 13
Check "the caller's object survives Matrix.Item", IsObject(o), True
a1 = hV.vRotate(Array(1, 0), o)
CheckErrorNumber "vRotate by an object", 13
Check "the caller's object survives vRotate", IsObject(o), True
hUS.FreezeEvents o
CheckErrorNumber "FreezeEvents with an object", 13
Check "the caller's object survives FreezeEvents", IsObject(o), True

' Overflows, refused nonsense and the library's own errors are the native suites' (the same rules),
' the largest matrix and 10,000 objects the C++ client's: here one error of each kind crosses the runtime.
Dim m2
' ---- failed calls change nothing ----------------------------------------------------------------
Class RefusingEntity
    Public Sub Move(fromPoint, toPoint)
        Err.Raise 1234, "entity", "the entity is locked"
    End Sub
End Class
hLp.InitFromCoordinates Array(0, 0, 10, 0, 10, 10, 0, 10), Array(0, 0, 0, 0)
Set hLp.AcadEntity = New RefusingEntity
hLp.Move Array(5, 5, 0), True
CheckErrorNumber "an entity that refuses Move", 1234
CheckPoint "the loop stays where it was when its entity refuses", hLp.Vertex(0), Array(0, 0)
Set hLp.AcadEntity = Nothing

' ---- a library error and a refused overflow through the runtime ---------------------------------
Set m2 = hGX.GetDForceMoment(1, -1)
CheckError "a negative unit id for a quantity", 24111, "-1 is an invalid UnitID for ForceMoment"
a1 = hV.vplusv(Array(big, big), Array(big, big))
CheckError "vplusv overflowing", 6, "Overflow"
hLp.InitFromCoordinates Array(0, 0, 10, 0, 10, 10, 0, 10), Array(0, 0, 0, 0)
hLp.Transformation Array(0, 0, 0), 0, big, 1, Array(0, 0, 0)
CheckErrorNumber "Loop7.Transformation overflowing", 6
Check "the refused Transformation left the loop", hLp.AreaAbs, 100
Set m2 = hM.RoundUp(-32768)
CheckError "RoundUp to a negative digit count", 5, "Invalid procedure call or argument"
Dim sq
hU.SetUCS Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0)
hU.Origin = Array()
Check "an empty Origin is accepted as the public variable accepts it", UBound(hU.Origin), -1
sq = Array(1, 2, 3)
hU.TranslateFromUCS sq, Library("UCS")
CheckError "a translation with an empty Origin", 9, "Subscript out of range"
