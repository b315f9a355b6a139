' Run without any display (as a service or a scheduled task runs): the editors refuse a value they
' cannot edit with 2411 before a window is needed, where making one would fail otherwise.
Dim exe, v, picked
Set exe = Library("Geometry_EXE")
v = 100000
picked = exe.EditQuantity(v)
CheckError "EditQuantity of a Long", 2411, "Invalid datatype"
v = Array(1, 2)
picked = exe.EditQuantity(v)
CheckError "EditQuantity of an array", 2411, "Invalid datatype"
v = Array(1, 2)
picked = exe.EditEnum(v, "a,b")
CheckError "EditEnum of an array", 2411, "Invalid datatype"
Set v = Library("Matrix")
picked = exe.EditQuantity(v)
CheckError "EditQuantity of a Matrix", 2411, "Invalid datatype"
Check "a refused value is left as it was", IsObject(v), True
Set v = Library("UCS")
picked = exe.EditEnum(v, "a,b")
CheckError "EditEnum of an object without a text", 2411, "Invalid datatype"
