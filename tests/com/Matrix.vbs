' Matrix through the COM runtime: filling, reading, arithmetic, the solvers and their Null and
' Empty results, by-reference outputs and errors.
Dim m, inv, p, a(1, 1), g, t, x, s
Set m = Library("Matrix")
m.Reset 2, 2
Check "RowCount", m.RowCount, 2
Check "ColumnCount", m.ColumnCount, 2
Check "IsSquareMatrix", m.IsSquareMatrix, True
a(0, 0) = 4
a(0, 1) = 7
a(1, 0) = 2
a(1, 1) = 6
m.Array2D = a
Check "Item(0, 1) after Array2D let", m.Item(0, 1), 7
Check "Item is the default member", m(1, 0), 2
Check "Det", m.Det, 10
m.LetItem 1, 1, 8
Check "LetItem then Det", m.Det, 18
Set inv = m.Inverse
CheckNear "Inverse(0, 0)", inv(0, 0), 8 / 18, 1E-12
CheckNear "Inverse(0, 1)", inv(0, 1), -7 / 18, 1E-12
Set p = m.Product(inv)
CheckNear "A * inverse (0, 0)", p(0, 0), 1, 1E-12
CheckNear "A * inverse (0, 1)", p(0, 1), 0, 1E-12
CheckPoint "Solve", m.Solve(Array(1, 2)), Array(-1 / 3, 1 / 3)
CheckPoint "SolveWithGaussMethod", m.SolveWithGaussMethod(Array(1, 2)), Array(-1 / 3, 1 / 3)
CheckPoint "MultiplyWithVector", m.MultiplyWithVector(Array(1, 1)), Array(11, 10)
CheckPoint "Row(1)", m.Row(1), Array(2, 8)
CheckPoint "Column(1)", m.Column(1), Array(7, 8)
Set p = m.Transpose
Check "Transpose", p(0, 1), 2
Set p = m.MultiplyWithNumber(2)
Check "MultiplyWithNumber", p(1, 1), 16
Set p = m.PlusWithNumber(1)
Check "PlusWithNumber", p(0, 0), 5
Set p = m.PlusWithMatrix(m, True)
Check "PlusWithMatrix subtracting", p(1, 1), 0
Set p = m.GetSubMatrix(1, 1, 0, 1)
Check "GetSubMatrix", p(0, 1), 8
Check "Copy is a new object", m.Copy Is m, False
Set p = inv.RoundUp(2)
Check "RoundUp", p(0, 0), 0.44

t = -1
Set inv = m.Inverse(t)
Check "Inverse writes the elapsed seconds back", t >= 0, True
Check "elapsed seconds are a Double", TypeName(t), "Double"
g = Empty
m.Det , g
Check "Det from the cache leaves GaussMatrix unassigned", IsEmpty(g), True
m.LetItem 1, 1, 8
m.Det , g
Check "Det fills GaussMatrix with a two-dimensional array", IsArray(g), True

' Singular systems: Null from the Gauss solver, Empty from Solve.
m.LetRow Array(2, 4), 0
m.LetRow Array(1, 2), 1
Check "singular Det", m.Det, 0
x = m.SolveWithGaussMethod(Array(1, 1))
Check "SolveWithGaussMethod of a singular system is Null", IsNull(x), True
x = m.Solve(Array(1, 1))
Check "Solve of a singular system is Empty", IsEmpty(x), True

' Placeholders only show their message (printed in tests).
m.DisplayOnExcelWorksheet
Check "DisplayOnExcelWorksheet runs", Err.Number, 0
Check "InverseWithExcelMethod returns Nothing", m.InverseWithExcelMethod Is Nothing, True

' Errors.
x = m.Item(5, 5)
CheckError "Item out of range", 2411, "Matrix Get Item property fails: the given Index i, j are out of range"
x = m.Item(40000, 0)
CheckError "Item index beyond 16 bits", 6, "Overflow"
m.Reset 0, 2
CheckError "Reset to no rows", 2411, "Matrix Reset fail: RowCount and ColumnCount must be greater than 0"
Set p = m.Product(Nothing)
CheckError "Product with Nothing", 424, "Object required"
Set p = m.Product(Library("DLength"))
CheckErrorNumber "Product with a quantity", 13
m.Array2D = Array(1, 2)
CheckError "Array2D let of a one-dimensional array", 13, "Type mismatch"
m.LetRow Array(1, 2, 3), 0
CheckError "LetRow too long", 2411, "Matrix LetRow procedure fails: the given new Row does not fit"
