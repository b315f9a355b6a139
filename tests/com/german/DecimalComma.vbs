' Run under a German locale, as a macro runs on a Windows set to a decimal comma: the runtime writes
' 2.5 as "2,5", and the library reads such text, never cutting it, while it writes a point.
Dim q, v
Check "the runtime writes a decimal comma", CStr(2.5), "2,5"
Set q = Library("DLength")
q.ValueFromString CStr(2.5) & " m"
Check "ValueFromString of the runtime's text", q.Millimetres, 2500
Check "ValueToString writes a point", q.ValueToString(3, -2, True), "2.5 m"
q.ValueFromString "1.000,5 m"
CheckError "ValueFromString of a grouped number", 13, "Type mismatch"
Check "a refused text leaves the amount", q.Millimetres, 2500
Set v = Library("Vector")
CheckPoint "a number argument as the runtime's text", v.vxr(Array(1, 2), CStr(0.5)), Array(0.5, 1)
CheckNear "points of texts", v.vLength(Array(CStr(1.5), "2")), 2.5, 0.000000001
