' UnitSetting through the COM runtime: defaults, UnitID let and get, symbols, Copy and CopyTo.
' (UnitIDs is an array of Integers and Modified an event: both are checked by the C++ client.)
Dim us, other, copy, kind, defaults, symbols, lengths, flag

' Default unit id and its symbol per DimensionObjectType.
defaults = Array(0, 0, 0, 0, 0, 0, 6, 7, 7, 7, 7)
' Symbols up to their superscript (Wine's script engine has no ChrW to spell it) and their length.
symbols = Array("rad", "mm", "mm", "mm", "mm4", "KN", "N/mm", "KN/m", "KNm", "KN/m", "KN/m")
lengths = Array(3, 2, 3, 3, 3, 2, 5, 5, 3, 4, 5)
Set us = Library("UnitSetting")
For kind = 0 To 10
    Check "default UnitID(" & kind & ")", us.UnitID(kind), defaults(kind)
    Check "default UnitString(" & kind & ")", Left(us.UnitString(kind), Len(symbols(kind))), symbols(kind)
    Check "default UnitString(" & kind & ") length", Len(us.UnitString(kind)), lengths(kind)
Next

us.UnitID(1) = 5
Check "UnitID let", us.UnitID(1), 5
Check "UnitString follows UnitID", us.UnitString(1), "ft"
us.UnitID(99) = 3
Check "UnitID let of an unknown kind is ignored", us.UnitID(99), 0
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
Check "FreezeEvents with a literal", Err.Number, 0

Set copy = us.Copy
Check "Copy is a new object", copy Is us, False
For kind = 0 To 10
    Check "Copy UnitID(" & kind & ")", copy.UnitID(kind), us.UnitID(kind)
Next
copy.UnitID(1) = 0
Check "Copy is independent", us.UnitID(1), 5

Set other = Library("UnitSetting")
us.CopyTo other
For kind = 0 To 10
    Check "CopyTo UnitID(" & kind & ")", other.UnitID(kind), us.UnitID(kind)
Next
us.CopyTo Nothing
CheckError "CopyTo Nothing", 424, "Object required"
us.CopyTo Library("DLength")
CheckErrorNumber "CopyTo a quantity", 13

us.UnitIDs = Array(1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1)
Check "UnitIDs let from an array of Variants (storage order)", us.UnitID(8), 1
Check "UnitIDs let: ForcePerArea is the tenth", us.UnitID(7), 1
us.UnitIDs = Array(0, 1, 2)
CheckError "UnitIDs let with three elements", 9, "Subscript out of range"
us.UnitIDs = 5
CheckError "UnitIDs let with a number", 13, "Type mismatch"
' Elements are read and stored one at a time: a failure keeps what came before it.
us.UnitIDs = Array(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)
us.UnitIDs = Array(1, 2, 3, 4, 5, 1E+20, 1, 1, 1, 1, 1)
CheckError "UnitIDs let with an element beyond a Long", 6, "Overflow"
Check "the elements before the failing one are stored (Length)", us.UnitID(1), 2
Check "the elements before the failing one are stored (MomentOfInertia)", us.UnitID(4), 5
Check "the failing element and those after it are not (Force)", us.UnitID(5), 0
us.UnitIDs = Array(0, 3, 0, 0, 0, 0, 6, 7, 7, 7, 7, "x")
Check "UnitIDs let reads elements 0 to 10 only", us.UnitID(1), 3
us.UnitIDs = Array("&H2", 1, 0, 0, 0, 0, 6, 7, 7, 7, 7)
Check "UnitIDs let converts text as the runtime does", us.UnitID(0), 2
