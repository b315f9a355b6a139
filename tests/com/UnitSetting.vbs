' UnitSetting through the COM runtime: what crosses the boundary (ids from text and numbers as the
' runtime converts them, objects of the wrong class, arrays of Variants, errors). The defaults, the
' storage order and the events are the native suite's; UnitIDs as Integers and Modified the C++ client's.
Dim us, other, flag

Set us = Library("UnitSetting")
Check "a default symbol", us.UnitString(0), "rad"
us.UnitID(1) = 5
Check "UnitString follows UnitID", us.UnitString(1), "ft"
us.UnitID(8) = 1
Check "UnitString of an id without symbol", us.UnitString(8), Empty
CheckError "UnitString error", 2411, "GetUnitString no found"
us.UnitID(5) = "3"
Check "UnitID let from a numeric text", us.UnitID(5), 3
us.UnitID(5) = 70000
CheckError "UnitID let beyond 16 bits", 6, "Overflow"
flag = True
us.FreezeEvents flag
Check "FreezeEvents with a variable", Err.Number, 0
us.FreezeEvents False

Set other = us.Copy
Check "Copy is a new object", other Is us, False
Check "Copy has the ids", other.UnitID(1), 5
us.UnitID(3) = 2
us.CopyTo other
Check "CopyTo", other.UnitID(3), 2
us.CopyTo Nothing
CheckError "CopyTo Nothing", 424, "Object required"
us.CopyTo Library("DLength")
CheckErrorNumber "CopyTo a quantity", 13

us.UnitIDs = Array(1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1)
Check "UnitIDs let from an array of Variants", us.UnitID(8), 1
us.UnitIDs = Array(0, 1, 2)
CheckError "UnitIDs let with three elements", 9, "Subscript out of range"
us.UnitIDs = 5
CheckError "UnitIDs let with a number", 13, "Type mismatch"
' Elements are read and stored one at a time: a failure keeps what came before it.
us.UnitIDs = Array(1, 2, 3, 4, 5, 1E+20, 1, 1, 1, 1, 1)
CheckError "UnitIDs let with an element beyond a Long", 6, "Overflow"
Check "the elements before the failing one are stored", us.UnitID(4), 5
us.UnitIDs = Array("&H2", 3, 0, 0, 0, 0, 6, 7, 7, 7, 7, "x")
Check "UnitIDs let converts text as the runtime does", us.UnitID(0), 2
Check "and reads elements 0 to 10 only", us.UnitID(1), 3
