' The eleven quantity classes through the automation boundary: creation by ProgID, the unit argument
' in every form a script sends, the 24111 errors, default members, Copy and the text form.
Dim rows, row, q, c, us, before

' Class, DimensionType, unit id written, value written, unit id read, amount read (from the unit
' tables), an id invalid for the kind, the kind's name in the error text.
rows = Array( _
    Array("DAngle", 0, 1, 180, 0, 3.14159265358979, 2, "Angle"), _
    Array("DLength", 1, 5, 1, 0, 304.8, 7, "Length"), _
    Array("DArea", 2, 4, 1, 0, 645.16, 6, "Area"), _
    Array("DVolume", 3, 2, 1, 0, 1000000, 6, "Volume"), _
    Array("DMomentOfInertia", 4, 3, 1, 0, 1E+12, 6, "MomentOfInertia"), _
    Array("DForce", 5, 5, 1, 0, 4.44974115, 7, "Force"), _
    Array("DPressure", 6, 7, 1000, 0, 0.001, 14, "Pressure"), _
    Array("DForcePerArea", 7, 6, 1, 7, 1000, 14, "ForcePerArea"), _
    Array("DForceMoment", 8, 7, 1, 0, 1000, 1, "ForceMoment"), _
    Array("DForcePerLine", 9, 7, 1, 0, 0.001, 6, "ForcePerLine"), _
    Array("DForceDensity", 10, 7, 1, 0, 1E-09, 8, "ForceDensity"))

For Each row In rows
    Set q = Library(row(0))
    Check row(0) & " created by ProgID", IsObject(q), True
    Check row(0) & ".DimensionType", q.DimensionType, row(1)
    q.Value(row(2)) = row(3)
    CheckNear row(0) & " write unit " & row(2) & ", read unit " & row(4), q.Value(row(4)), row(5), 1E-12
    ' The default member is the first unit property, unit id 0.
    CheckNear row(0) & " default member", q + 0, q.Value(0), 1E-15

    before = q.Value(0)
    Check row(0) & ".Value(bad) get", q.Value(row(6)), Empty
    CheckError row(0) & ".Value(bad) get error", 24111, row(6) & " is an invalid UnitID for " & row(7)
    q.Value(row(6)) = 42
    CheckError row(0) & ".Value(bad) let error", 24111, row(6) & " is an invalid UnitID for " & row(7)
    Check row(0) & " failed let keeps the amount", q.Value(0), before

    Set c = q.Copy
    Check row(0) & ".Copy is a new object", c Is q, False
Next

' The unit argument: omitted, Nothing, numbers, numeric text, a UnitSetting, any object with UnitID.
Class FixedUnits
    Public Property Get UnitID(kind)
        UnitID = 3
    End Property
End Class

Set q = Library("DLength")
q.Metres = 2
Check "Value() omitted is unit 0", q.Value(), 2000
Check "Value(Nothing) is unit 0", q.Value(Nothing), 2000
Check "Value(""3"") is metres", q.Value("3"), 2
Check "Value(""&H3"") reads the hexadecimal id as the runtime does", q.Value("&H3"), 2
q.Value("&H3") = 5
Check "Value(""&H3"") let", q.Millimetres, 5000
q.Metres = 2
Check "Value(""1,000"") reads the thousands separator as the runtime does", q.Value("1,000"), Empty
CheckError "Value(""1,000"") is unit 1000, not a unit of length", 24111, "1000 is an invalid UnitID for Length"
Check "ValueToString(""&H1"")", q.ValueToString("&H1"), "200 (cm)"
Check "GetUnitString with ""&H2""", Library("Geometry_EXE").GetUnitString(1, "&H2"), "dm"
Check "Value(2.5) rounds half to even", q.Value(2.5), 20
Check "Value(True) is -1", q.Value(True), Empty
CheckError "Value(True) error", 24111, "-1 is an invalid UnitID for Length"
Check "Value(""abc"")", q.Value("abc"), Empty
CheckError "Value(""abc"") error", 13, "Type mismatch"
Check "Value(40000)", q.Value(40000), Empty
CheckError "Value(40000) error", 6, "Overflow"
Check "Value(foreign object with UnitID)", q.Value(New FixedUnits), 2
Check "Value(object without UnitID)", q.Value(Library("DArea")), Empty
CheckErrorNumber "Value(object without UnitID) error", 438

Set us = Library("UnitSetting")
us.UnitID(1) = 3
us.UnitID(5) = 6
Check "Value(UnitSetting) on a length uses its length unit", q.Value(us), 2
Set q = Library("DForce")
q.KN = 2
Check "Value(UnitSetting) on a force uses its force unit", q.Value(us), 2000
q.Value(us) = 500
Check "Value(UnitSetting) let", q.KN, 0.5

' Named unit properties, in their published spellings (each class's first unit is checked above).
Set q = Library("DVolume")
q.Litres = 1
Check "DVolume.Litres -> Centimetres", q.Centimetres, 1000
Set q = Library("DForceDensity")
q.kci = 1
CheckNear "DForceDensity.kci -> KN_m3", q.KN_m3, 271539.8652, 1E-12

' Text form.
Set q = Library("DLength")
q.Millimetres = 1234.5
Check "ValueToString(0)", q.ValueToString(0), "1234.5 (mm)"
Check "ValueToString(0, , True)", q.ValueToString(0, , True), "1234.5 mm"
Check "ValueToString(7)", q.ValueToString(7), Empty
CheckError "ValueToString(7) error", 24111, "7 is an invalid UnitID for Length"
Set q = Library("DAngle")
q.Degrees = 90
' The degree sign itself is checked by the C++ client (Wine's script engine has no ChrW).
Check "DAngle.ValueToString(1, 0, True)", Left(q.ValueToString(1, 0, True), 3), "90 "
Check "DAngle.ValueToString(1, 0, True) length", Len(q.ValueToString(1, 0, True)), 4
Set q = Library("DPressure")
q.ValueFromString "5 kPa"
Check "ValueFromString ""5 kPa"" reads Pa", q.PA, 5
q.ValueFromString "7"
Check "ValueFromString without unit uses unit 0", q.KN_mm2, 7
q.ValueFromString "abc"
CheckError "ValueFromString ""abc""", 13, "Type mismatch"
Set q = Library("DVolume")
q.ValueToString 0
CheckErrorNumber "DVolume has no ValueToString", 438
