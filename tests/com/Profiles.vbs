' Loop7 and InertiaBlock through the automation boundary: arrays in and out, quantities out, the
' same block each time, by-reference outputs created or filled, the attached CAD entity (a script
' object), errors and the 16-bit limits. The geometry itself is the native suites'.
Dim lp, inner, bow, blk, pts, isOn, d, h, t, top, bottom, ent, c, b, i, ib, ix0, iy0, rot, u, big, bigBulges, bigPoints

Class FakeEntity
    Public moves
    Public lastCount
    Public Sub Move(fromPoint, toPoint)
        moves = moves + 1
        lastCount = IsArray(fromPoint) And IsArray(toPoint)
    End Sub
End Class

' A 100 x 200 rectangle, counter-clockwise (so its area is negative).
Set lp = Library("Loop7")
lp.InitFromCoordinates Array(0, 0, 100, 0, 100, 200, 0, 200), Array(0, 0, 0, 0)
Check "InitInertiaDone before any property", lp.InitInertiaDone, False
Check "Area of a counter-clockwise loop is negative", lp.Area, -20000
CheckNear "MomentOfInertiaX is b h^3 / 12", Abs(lp.MomentOfInertiaX), 100 * 200 ^ 3 / 12, 1E-12
Check "InertiaBlock is the same object each time", lp.InertiaBlock Is lp.InertiaBlock, True
Check "InitInertiaDone after", lp.InitInertiaDone, True
Set blk = lp.InertiaBlock
CheckNear "block MomentOfInertiaX in cm4", Abs(blk.MomentOfInertiaX.Centimetres), 100 * 200 ^ 3 / 12 / 10000, 1E-12
Check "block Area is a DArea", blk.Area.DimensionType, 2
CheckPoint "Vertex(1)", lp.Vertex(1), Array(100, 0)
c = lp.Vertex(9)
CheckError "Vertex past the end", 9, "Subscript out of range"
c = lp.Vertex(40000)
CheckError "Vertex index beyond 16 bits", 6, "Overflow"

isOn = False
Check "a boundary point is not inside", lp.PointIsInside(Array(100, 50), isOn), False
Check "PointIsOn is set for a boundary point", isOn, True
Check "IntersectWithLine", lp.IntersectWithLine(Array(-10, 50), Array(0, 50), pts), True
Check "IntersectWithLine gives two points", UBound(pts) - LBound(pts), 1

d = 0
h = Empty
t = 0
lp.PointAnalysis Array(50, -10), d, h, t
CheckNear "PointAnalysis distance", d, 10, 1E-12
lp.GetTopBottomPoints Array(0, 1), top, bottom
CheckNear "GetTopBottomPoints top", harnessVector.vxxv(Array(0, 1), top), 200, 1E-12

' Relationships between loops.
Set inner = Library("Loop7")
inner.InitFromPoints Array(Array(10, 10), Array(20, 10), Array(20, 20), Array(10, 20))
Check "InitFromPoints Count", inner.Count, 4
Check "IsChildOF a surrounding loop", inner.IsChildOF(lp), True
Check "IsChildOF otherwise is Empty", IsEmpty(lp.IsChildOF(inner)), True
Check "RelationshipTo: child", inner.RelationshipTo(lp), 1
t = lp.RelationshipTo(Nothing)
CheckError "RelationshipTo Nothing", 424, "Object required"

' Reverse, Copy, IsVoid.
Set c = lp.Copy
c.Reverse
Check "Reverse flips the sign of the area", c.Area, 20000
lp.IsVoid = True
Check "IsVoid", lp.IsVoid, True

' Failures.
Set bow = Library("Loop7")
bow.InitFromCoordinates Array(0, 0, 10, 10, 10, 0, 0, 10), Array(0, 0, 0, 0)
Check "IsSelfIntersect", bow.IsSelfIntersect(pts), True
t = bow.Area
CheckError "Area of a self-intersecting loop", 5, "Invalid Loop to generate Inertia Properties: Loop should not cut itself"

' The attached CAD entity: an object of the script engine itself, which some engines let answer
' only IDispatchEx. (Wine's engine cannot index the arrays of Double it receives: the C++ client
' checks the points.)
Set ent = New FakeEntity
ent.moves = 0
Set lp.AcadEntity = ent
Check "AcadEntity returns the object set", lp.AcadEntity Is ent, True
lp.Move Array(1, 0, 0)
Check "Move without MoveAcad leaves the entity", ent.moves, 0
CheckPoint "Move moves the loop", lp.Vertex(0), Array(1, 0)
lp.Move Array(1, 0, 0), True
Check "Move with MoveAcad calls the script entity's Move", ent.moves, 1
Check "the entity receives two point arrays", ent.lastCount, True
CheckPoint "Move with MoveAcad moves the loop too", lp.Vertex(0), Array(2, 0)
Set lp.AcadEntity = Nothing
Check "AcadEntity cleared", lp.AcadEntity Is Nothing, True

' The published vertex count is a 16-bit Integer.
ReDim big(79999)
ReDim bigBulges(39999)
For i = 0 To 39999
    big(2 * i) = i
    big(2 * i + 1) = (i Mod 2)
    bigBulges(i) = 0
Next
Set c = Library("Loop7")
c.InitFromCoordinates big, bigBulges, True
CheckError "InitFromCoordinates with more vertices than a 16-bit counter", 6, "Overflow"
ReDim big(65533)
ReDim bigBulges(32766)
For i = 0 To 32766
    big(2 * i) = i
    big(2 * i + 1) = (i Mod 2)
    bigBulges(i) = 0
Next
c.InitFromCoordinates big, bigBulges, True
Check "32767 vertices still count", c.Count, 32766
ReDim bigPoints(32768)
For i = 0 To 32768
    bigPoints(i) = Array(i, i Mod 2)
Next
c.InitFromPoints bigPoints
CheckError "InitFromPoints with more vertices than a 16-bit counter", 6, "Overflow"

' InertiaBlock on its own.
Set ib = Library("InertiaBlock")
ib.Init 1000, 2000, 500, Array(10, 20, 0), 50
Check "Init MomentOfInertiaX", ib.MomentOfInertiaX.Millimetres, 1000
Check "missing Perimeter is 0", ib.Perimeter.Millimetres, 0
Check "OCS is the block's own system", ib.OCS Is ib.OCS, True
ix0 = Empty
iy0 = Empty
rot = Empty
ib.GetPrincipalIP ix0, iy0, rot
CheckNear "GetPrincipalIP creates the results", ix0.Millimetres + iy0.Millimetres, 3000, 1E-12
Check "GetPrincipalIP angle is a DAngle", rot.DimensionType, 0
Set ix0 = Library("DMomentOfInertia")
Set b = ix0
ib.GetPrincipalIP ix0
Check "GetPrincipalIP fills the caller's object", ix0 Is b, True
CheckNear "GetPrincipalIP filled value", ix0.Millimetres, ib.PMomentOfInertiaX.Millimetres, 1E-12
Set u = Library("UCS")
u.Origin = Array(10, 10, 0)
CheckNear "MomentOfInertiaX about a parallel system 10 below", ib.MomentOfInertiaX(u).Millimetres, 1000 + 50 * 10 ^ 2, 1E-12
t = ib.MomentOfInertiaX(Library("Matrix"))
CheckErrorNumber "MomentOfInertiaX about a Matrix", 13
Set c = ib.Copy
c.Inverse
Check "Inverse turns a solid into a void", c.Area.Millimetres, -50
