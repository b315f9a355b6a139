'' The faults earlier hostile runs found through the real runtime, each with its expected outcome:
' surplus arguments, objects where numbers belong, an entity that refuses, errors through the
' runtime. (Every member given every hostile value, by value and in a variable, is the C++ client's
' sweep, which also makes NaN, infinities and odd Variant types and measures the memory.)
Dim hL, hUS, hUS2, hGX, hV, hG, hM, hU, hLp, hIB, big

Set hL = Library("DLength")
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
hM.Reset 2, 2
Set m2 = hM.RoundUp(-32768)
CheckError "RoundUp to a negative digit count", 5, "Invalid procedure call or argument"
Dim sq
hU.SetUCS Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0)
hU.Origin = Array()
Check "an empty Origin is accepted as the public variable accepts it", UBound(hU.Origin), -1
sq = Array(1, 2, 3)
hU.TranslateFromUCS sq, Library("UCS")
CheckError "a translation with an empty Origin", 9, "Subscript out of range"
