' Geometry_EXE (the quantity service) through the COM runtime: symbols, unit recognition, factories.
Dim exe, q, us, rows, row

Set exe = Library("Geometry_EXE")

' Kind, unit, symbol up to any superscript (Wine's script engine has no ChrW), symbol length.
rows = Array(Array(1, 5, "ft", 2), Array(2, 1, "cm", 3), Array(8, 3, "ton.m", 5))  ' cm² is three characters
For Each row In rows
    Check "GetUnitString(" & row(0) & ", " & row(1) & ")", Left(exe.GetUnitString(row(0), row(1)), Len(row(2))), row(2)
    Check "GetUnitString(" & row(0) & ", " & row(1) & ") length", Len(exe.GetUnitString(row(0), row(1))), row(3)
Next
Check "GetUnitString(DAngleObject, 1) is one character", Len(exe.GetUnitString(0, 1)), 1
Check "GetUnitString(8, 1)", exe.GetUnitString(8, 1), Empty
CheckError "GetUnitString(8, 1) error", 2411, "GetUnitString no found"
Set us = Library("UnitSetting")
us.UnitID(6) = 11
Check "GetUnitString with a UnitSetting", exe.GetUnitString(6, us), "Pa"
Check "GetUnitString with a numeric text", exe.GetUnitString(1, "3"), "m"

Set q = Library("DAngle")
Check "GetUnitID(""12 deg"", DAngle)", exe.GetUnitID("12 deg", q), -1
Check "GetUnitID(""5 kPa"", DPressure)", exe.GetUnitID("5 kPa", Library("DPressure")), 11
Check "GetUnitID(""NEWTONS"", DForce)", exe.GetUnitID("NEWTONS", Library("DForce")), 3
exe.GetUnitID "5 mm", Nothing
CheckError "GetUnitID with Nothing", 424, "Object required"
exe.GetUnitID "5 mm", us
CheckErrorNumber "GetUnitID with a UnitSetting", 13

Check "GetDLength(1, ft_UnitID)", exe.GetDLength(1, 5).Millimetres, 304.8
Check "GetDPressure(5) is KN/mm2", exe.GetDPressure(5).KN_m2, 5000000
Check "GetDAngle(180, 1)", exe.GetDAngle(180, 1).Radians, 3.14159265358979
Check "GetDArea(1, 3)", exe.GetDArea(1, 3).Millimetres, 1000000
Check "GetDVolume(1, 2)", exe.GetDVolume(1, 2).Litres, 1
Check "GetDForce(1, 6)", exe.GetDForce(1, 6).KN, 0.001
Check "GetDForceDensity(1, 7)", exe.GetDForceDensity(1, 7).KN_m3, 1
Check "GetDForceMoment(1, 7)", exe.GetDForceMoment(1, 7).KNmm, 1000
Check "GetDForcePerArea(1, 7)", exe.GetDForcePerArea(1, 7).KN_m2, 1
Check "GetDForcePerLine(1, 7)", exe.GetDForcePerLine(1, 7).KN_m, 1
Check "GetDMomentOfInertia(1, 1)", exe.GetDMomentOfInertia(1, 1).Millimetres, 10000
Check "factory DimensionType", exe.GetDForcePerLine(1).DimensionType, 9
Set q = Nothing
Set q = exe.GetDForceMoment(1, 1)
CheckError "GetDForceMoment(1, daN_cm_unitID)", 24111, "1 is an invalid UnitID for ForceMoment"
Check "failed factory returns nothing", q Is Nothing, True
exe.GetDLength "abc"
CheckErrorNumber "GetDLength(""abc"")", 13

