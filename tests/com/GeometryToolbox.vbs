' The geometry toolbox of the Geometry class from a script: the analyses with their optional
' outputs and descriptions, circles, interpolation, point sets and transformations.
Dim gt, res, area, nrm, txt, dist, foot, param, betw, crossing, angl, p1, p2, near, apart, lpt, ldir
Dim cntr, rad, lo, hi, idx, pts, hull, sorted, moved, m, halfPi
Set gt = Library("Geometry")
halfPi = 1.5707963267949

' Three points
res = gt.Analyse_TriPoints(Array(0, 0, 0), Array(4, 0, 0), Array(0, 3, 0), area, nrm, txt)
Check "Analyse_TriPoints of a triangle", res, 0
Check "Analyse_TriPoints area", area, 6
CheckPoint "Analyse_TriPoints normal", nrm, Array(0, 0, 1)
Check "Analyse_TriPoints Desc", txt, "The three points form a triangle"
Check "Analyse_TriPoints collinear", gt.Analyse_TriPoints(Array(0, 0), Array(1, 1), Array(2, 2)), 1
Check "Analyse_TriPoints two coincide", gt.Analyse_TriPoints(Array(1, 1), Array(1, 1), Array(2, 2)), 2
res = gt.Analyse_TriPoints(Array(5, 5), Array(5, 5), Array(5, 5), , , txt)
Check "Analyse_TriPoints all coincide", res, 3
Check "Analyse_TriPoints all coincide Desc", txt, "The three points coincide"

' A point and a line
res = gt.Analyse_Point_Line(Array(3, 1), Array(0, 0), Array(2, 0), dist, foot, param, betw, txt)
Check "Analyse_Point_Line off the line", res, False
Check "Analyse_Point_Line distance", dist, 1
CheckPoint "Analyse_Point_Line foot", foot, Array(3, 0, 0)
Check "Analyse_Point_Line parameter", param, 1.5
Check "Analyse_Point_Line between", betw, False
Check "Analyse_Point_Line Desc", txt, "The point lies off the line; its foot lies outside the two points"
Check "Analyse_Point_Line on the line", gt.Analyse_Point_Line(Array(1, 0), Array(0, 0), Array(2, 0)), True
res = gt.Analyse_Point_Line(Array(1, 1), Array(2, 2), Array(2, 2))
CheckError "Analyse_Point_Line of a line without length", 2411, "Analyse_Point_Line fails: the line's two points coincide"

' A point and a plane (the member Volume_4Points relies on)
res = gt.Analyse_Point_Plane(Array(1, 2, 3), Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0), dist, foot, txt)
Check "Analyse_Point_Plane in front", res, 1
Check "Analyse_Point_Plane distance", dist, 3
CheckPoint "Analyse_Point_Plane foot", foot, Array(1, 2, 0)
Check "Analyse_Point_Plane Desc", txt, "The point lies in front of the plane"
res = gt.Analyse_Point_Plane(Array(1, 2, -3), Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0), dist)
Check "Analyse_Point_Plane behind", res, 2
Check "Analyse_Point_Plane distance is never negative", dist, 3
Check "Analyse_Point_Plane on", gt.Analyse_Point_Plane(Array(7, 7, 0), Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0)), 0
res = gt.Analyse_Point_Plane(Array(7, 7, 0), Array(0, 0, 0), Array(1, 0, 0), Array(2, 0, 0))
CheckError "Analyse_Point_Plane of collinear plane points", 2411, "Vector unitvec(u) = u = 0"
Dim typedDistance
typedDistance = CDbl(0)
res = gt.Analyse_Point_Plane(Array(0, 0, 5), Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0), typedDistance)
Check "Analyse_Point_Plane writes into a Double variable", typedDistance, 5

' A line and a plane
res = gt.Analyse_Line_Plane(Array(0, 0, 1), Array(1, 0, 2), Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0), crossing, param, angl, txt)
Check "Analyse_Line_Plane crossing", res, 3
CheckPoint "Analyse_Line_Plane crossing point", crossing, Array(-1, 0, 0)
Check "Analyse_Line_Plane parameter", param, -1
CheckNear "Analyse_Line_Plane angle", angl, halfPi / 2, 0.000000000001
Check "Analyse_Line_Plane Desc", txt, "The line crosses the plane"
crossing = Array(9, 9, 9)
res = gt.Analyse_Line_Plane(Array(0, 0, 1), Array(1, 0, 1), Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0), crossing)
Check "Analyse_Line_Plane parallel", res, 4
Check "Analyse_Line_Plane parallel leaves no crossing point", IsEmpty(crossing), True
Check "Analyse_Line_Plane in the plane", gt.Analyse_Line_Plane(Array(0, 0), Array(1, 1), Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0)), 5

' Two lines
res = gt.Analyse_Line_Line(Array(0, 0, 0), Array(1, 0, 0), Array(3, 0, 1), Array(3, 1, 1), p1, p2, dist, near, angl, txt)
Check "Analyse_Line_Line skew", res, 3
CheckPoint "Analyse_Line_Line point on the first", p1, Array(3, 0, 0)
CheckPoint "Analyse_Line_Line point on the second", p2, Array(3, 0, 1)
Check "Analyse_Line_Line distance", dist, 1
Check "Analyse_Line_Line skew has no intersection", IsEmpty(near), True
CheckNear "Analyse_Line_Line angle", angl, halfPi, 0.000000000001
Check "Analyse_Line_Line Desc", txt, "The two lines are skew"
res = gt.Analyse_Line_Line(Array(0, 0), Array(2, 2), Array(0, 2), Array(2, 0), , , , near)
Check "Analyse_Line_Line intersecting", res, 0
CheckPoint "Analyse_Line_Line intersection", near, Array(1, 1, 0)
Check "Analyse_Line_Line parallel", gt.Analyse_Line_Line(Array(0, 0), Array(1, 0), Array(0, 1), Array(1, 1)), 1
Check "Analyse_Line_Line the same line", gt.Analyse_Line_Line(Array(0, 0), Array(1, 0), Array(5, 0), Array(7, 0)), 2

' Two planes
res = gt.Analyse_Plane_Plane(Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0), Array(0, 0, 0), Array(0, 1, 0), Array(0, 0, 1), lpt, ldir, angl, apart, txt)
Check "Analyse_Plane_Plane crossing", res, 6
CheckPoint "Analyse_Plane_Plane line point", lpt, Array(0, 0, 0)
Check "Analyse_Plane_Plane line direction is along y", Abs(gt.Analyse_Point_Line(ldir, Array(0, 0, 0), Array(0, 1, 0))), 1
CheckNear "Analyse_Plane_Plane angle", angl, halfPi, 0.000000000001
Check "Analyse_Plane_Plane Desc", txt, "The two planes cross in a line"
res = gt.Analyse_Plane_Plane(Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0), Array(0, 0, 2), Array(1, 0, 2), Array(0, 1, 2), , , , apart)
Check "Analyse_Plane_Plane parallel", res, 7
Check "Analyse_Plane_Plane distance", apart, 2
Check "Analyse_Plane_Plane same", gt.Analyse_Plane_Plane(Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0), Array(3, 3, 0), Array(5, 1, 0), Array(-2, 4, 0)), 8

' Circles
res = gt.Intersect_Line_Circle(Array(0, 5), Array(1, 5), Array(1, 1), 5, p1, p2)
Check "Intersect_Line_Circle two points", res, 2
CheckPoint "Intersect_Line_Circle first along the line", p1, Array(-2, 5, 0)
CheckPoint "Intersect_Line_Circle second", p2, Array(4, 5, 0)
p2 = Array(9, 9)
res = gt.Intersect_Line_Circle(Array(0, 6), Array(1, 6), Array(1, 1), 5, p1, p2)
Check "Intersect_Line_Circle tangent", res, 1
CheckPoint "Intersect_Line_Circle touching point", p1, Array(1, 6, 0)
Check "Intersect_Line_Circle tangent leaves no second point", IsEmpty(p2), True
res = gt.Intersect_Line_Circle(Array(0, 0), Array(1, 0), Array(0, 0), -1)
CheckError "Intersect_Line_Circle of a negative radius", 2411, "Intersect_Line_Circle fails: the radius must be positive"
res = gt.Intersect_Circle_Circle(Array(0, 0), 5, Array(6, 0), 5, p1, p2)
Check "Intersect_Circle_Circle two points", res, 2
CheckPoint "Intersect_Circle_Circle left point", p1, Array(3, 4, 0)
CheckPoint "Intersect_Circle_Circle right point", p2, Array(3, -4, 0)
Check "Intersect_Circle_Circle concentric", gt.Intersect_Circle_Circle(Array(0, 0), 5, Array(0, 0), 3), 0
Check "Intersect_Circle_Circle the same circle", gt.Intersect_Circle_Circle(Array(1, 1), 2, Array(1, 1), 2), -1
Check "Circle_3Points", gt.Circle_3Points(Array(6, 1), Array(1, 6), Array(-4, 1), cntr, rad), True
CheckPoint "Circle_3Points centre", cntr, Array(1, 1, 0)
CheckNear "Circle_3Points radius", rad, 5, 0.000000000001
Check "Circle_3Points of collinear points", gt.Circle_3Points(Array(0, 0), Array(1, 1), Array(2, 2), cntr, rad), False
Check "Circle_3Points of collinear points empties the centre", IsEmpty(cntr), True

' Interpolation
CheckPoint "Interpolate_Point", gt.Interpolate_Point(Array(0, 0, 0), Array(10, 20, 30), 0.25), Array(2.5, 5, 7.5)
Check "Interpolate_Table inside", gt.Interpolate_Table(2, Array(0, 1, 3), Array(10, 20, 0)), 10
Check "Interpolate_Table extended", gt.Interpolate_Table(4, Array(0, 1, 3), Array(10, 20, 0), True), -10
res = gt.Interpolate_Table(4, Array(0, 1, 3), Array(10, 20, 0))
CheckError "Interpolate_Table outside", 2411, "Interpolate_Table fails: X lies outside the table"
res = gt.Interpolate_Table(1, Array(0, 2, 1), Array(1, 2, 3))
CheckError "Interpolate_Table unsorted", 2411, "Interpolate_Table fails: the abscissae do not increase"

' Point sets
pts = Array(Array(3, 1), Array(-1, 4, 2), Array(0, 0, -5), Array(2, 2), Array(1, 1))
gt.Points_BoundingBox pts, lo, hi
CheckPoint "Points_BoundingBox minimum", lo, Array(-1, 0, -5)
CheckPoint "Points_BoundingBox maximum", hi, Array(3, 4, 2)
CheckPoint "Points_Centroid", gt.Points_Centroid(pts), Array(1, 1.6, -0.6)
hull = gt.Points_ConvexHull(pts)
Check "Points_ConvexHull corners", UBound(hull), 3
CheckPoint "Points_ConvexHull starts at the least x", hull(0), Array(-1, 4, 0)
CheckPoint "Points_ConvexHull runs counter-clockwise", hull(1), Array(0, 0, 0)
near = gt.Points_Nearest(pts, Array(2.1, 1.8), idx)
CheckPoint "Points_Nearest", near, Array(2, 2, 0)
Check "Points_Nearest index", idx, 3
sorted = gt.Points_SortAlong(pts, Array(0, 1))
CheckPoint "Points_SortAlong first", sorted(0), Array(0, 0, -5)
CheckPoint "Points_SortAlong last", sorted(4), Array(-1, 4, 2)
res = gt.Points_Centroid(Array())
CheckError "Points_Centroid of no points", 2411, "Points_Centroid fails: the list holds no points"

' Transformations: a point gives a point, a list gives a list
CheckPoint "Move_Points of a point", gt.Move_Points(Array(1, 2), Array(1, 1, 1)), Array(2, 3, 1)
moved = gt.Move_Points(pts, Array(1, 0))
Check "Move_Points of a list keeps the count", UBound(moved), 4
CheckPoint "Move_Points of a list", moved(1), Array(0, 4, 2)
CheckPoint "Scale_Points", gt.Scale_Points(Array(4, 4, 4), Array(2, 2, 2), 0.5), Array(3, 3, 3)
CheckPoint "Mirror_Points", gt.Mirror_Points(Array(1, 5, 9), Array(0, 0), Array(0, 1)), Array(-1, 5, 9)
CheckPoint "Rotate_Points", gt.Rotate_Points(Array(2, 0, 5), Array(1, 0), halfPi), Array(1, 1, 5)
Set m = Library("Matrix")
m.Reset 4, 4
m.LetItem 0, 0, 1
m.LetItem 1, 1, 1
m.LetItem 2, 2, 1
m.LetItem 3, 3, 1
m.LetItem 0, 3, 10
CheckPoint "Transform_Points by a 4x4 matrix", gt.Transform_Points(Array(1, 2, 3), m), Array(11, 2, 3)
m.Reset 2, 2
res = gt.Transform_Points(Array(1, 2, 3), m)
CheckError "Transform_Points by a 2x2 matrix", 2411, "Transform_Points fails: the matrix must be 3x3 or 4x4"
res = gt.Transform_Points(Array(1, 2, 3), Nothing)
CheckError "Transform_Points by Nothing", 424, "Object required"
moved = gt.Move_Points(Array(), Array(1, 1))
Check "Move_Points of an empty list is an empty list", UBound(moved), -1
