' Matrix through the automation boundary: a script's two-dimensional array in, the default member,
' matrices handed to each other, arrays and Null or Empty results out, by-reference outputs and
' errors. The linear algebra itself is the native suites'.
Dim m, inv, p, a(1, 1), g, t, x
Set m = Library("Matrix")
m.Reset 2, 2
a(0, 0) = 4: a(0, 1) = 7: a(1, 0) = 2: a(1, 1) = 6
m.Array2D = a
Check "Item is the default member", m(1, 0), 2
t = -1
Set inv = m.Inverse(t)
Check "Inverse writes the elapsed seconds back as a Double", TypeName(t) & " " & (t >= 0), "Double True"
Set p = m.Product(inv)
CheckNear "a Matrix handed to another", p(0, 0), 1, 1E-12
CheckPoint "Solve answers an array", m.Solve(Array(1, 2)), Array(-0.8, 0.6)
CheckPoint "Row answers an array", m.Row(1), Array(2, 6)
Check "Copy is a new object", m.Copy Is m, False
g = Empty
m.Det , g
Check "Det fills GaussMatrix with a two-dimensional array", IsArray(g), True
g = Empty
m.Det , g
Check "Det from the cache leaves GaussMatrix unassigned", IsEmpty(g), True

' Singular systems: Null from the Gauss solver, Empty from Solve.
m.LetRow Array(2, 4), 0
m.LetRow Array(1, 2), 1
x = m.SolveWithGaussMethod(Array(1, 1))
Check "SolveWithGaussMethod of a singular system is Null", IsNull(x), True
x = m.Solve(Array(1, 1))
Check "Solve of a singular system is Empty", IsEmpty(x), True
Check "InverseWithExcelMethod returns Nothing", m.InverseWithExcelMethod Is Nothing, True

x = m.Item(40000, 0)
CheckError "Item index beyond 16 bits", 6, "Overflow"
Set p = m.Product(Nothing)
CheckError "Product with Nothing", 424, "Object required"
Set p = m.Product(Library("DLength"))
CheckErrorNumber "Product with a quantity", 13
m.Array2D = Array(1, 2)
CheckError "Array2D let of a one-dimensional array", 13, "Type mismatch"
