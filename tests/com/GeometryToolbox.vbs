' The geometry toolbox through the automation boundary: optional outputs written into the caller's
' variables (Variant or typed) or left out, Empty where a result does not exist, a point in giving a
' point out and a list a list, and the library's errors. The geometry itself is the native suites'.
Dim gt, res, area, nrm, txt, dist, foot, param, betw, crossing, p1, p2, near, lpt, ldir, angl, apart
Dim cntr, rad, lo, hi, idx, pts, moved, m, typedDistance
Set gt = Library("Geometry")

res = gt.Analyse_TriPoints(Array(0, 0, 0), Array(4, 0, 0), Array(0, 3, 0), area, nrm, txt)
Check "Analyse_TriPoints: result, area, normal and text written", res & " " & area & " " & txt, "0 6 The three points form a triangle"
CheckPoint "Analyse_TriPoints normal", nrm, Array(0, 0, 1)
Check "Analyse_TriPoints with outputs left out", gt.Analyse_TriPoints(Array(0, 0), Array(1, 1), Array(2, 2)), 1
res = gt.Analyse_Point_Line(Array(3, 1), Array(0, 0), Array(2, 0), dist, foot, param, betw, txt)
Check "Analyse_Point_Line outputs", res & " " & dist & " " & param & " " & betw, "False 1 1.5 False"
CheckPoint "Analyse_Point_Line foot", foot, Array(3, 0, 0)
typedDistance = CDbl(0)
res = gt.Analyse_Point_Plane(Array(0, 0, 5), Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0), typedDistance, foot, txt)
Check "Analyse_Point_Plane writes into a Double variable", typedDistance & " " & res & " " & txt, "5 1 The point lies in front of the plane"
res = gt.Analyse_Point_Plane(Array(7, 7, 0), Array(0, 0, 0), Array(1, 0, 0), Array(2, 0, 0))
CheckError "an error raised inside another class reaches the script", 2411, "Vector unitvec(u) = u = 0"
crossing = Array(9, 9, 9)
res = gt.Analyse_Line_Plane(Array(0, 0, 1), Array(1, 0, 1), Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0), crossing)
Check "Analyse_Line_Plane: a crossing that does not exist is Empty", res & " " & IsEmpty(crossing), "4 True"
res = gt.Analyse_Line_Line(Array(0, 0), Array(2, 2), Array(0, 2), Array(2, 0), , , , near)
Check "Analyse_Line_Line with outputs skipped by position", res, 0
CheckPoint "Analyse_Line_Line intersection", near, Array(1, 1, 0)
res = gt.Analyse_Plane_Plane(Array(0, 0, 0), Array(1, 0, 0), Array(0, 1, 0), Array(0, 0, 2), Array(1, 0, 2), Array(0, 1, 2), lpt, ldir, angl, apart)
Check "Analyse_Plane_Plane parallel: distance written, no line", res & " " & apart & " " & IsEmpty(lpt), "7 2 True"

p2 = Array(9, 9)
res = gt.Intersect_Line_Circle(Array(0, 6), Array(1, 6), Array(1, 1), 5, p1, p2)
Check "Intersect_Line_Circle tangent: one point, the second Empty", res & " " & IsEmpty(p2), "1 True"
CheckPoint "Intersect_Line_Circle touching point", p1, Array(1, 6, 0)
res = gt.Intersect_Circle_Circle(Array(0, 0), 5, Array(6, 0), 5, p1, p2)
CheckPoint "Intersect_Circle_Circle second point", p2, Array(3, -4, 0)
Check "Circle_3Points of collinear points empties the centre", gt.Circle_3Points(Array(0, 0), Array(1, 1), Array(2, 2), cntr, rad) & " " & IsEmpty(cntr), "False True"
CheckPoint "Interpolate_Point", gt.Interpolate_Point(Array(0, 0, 0), Array(10, 20, 30), 0.25), Array(2.5, 5, 7.5)
Check "Interpolate_Table with its optional flag", gt.Interpolate_Table(4, Array(0, 1, 3), Array(10, 20, 0), True), -10

pts = Array(Array(3, 1), Array(-1, 4, 2), Array(0, 0, -5), Array(2, 2), Array(1, 1))
gt.Points_BoundingBox pts, lo, hi
CheckPoint "Points_BoundingBox writes both corners", hi, Array(3, 4, 2)
near = gt.Points_Nearest(pts, Array(2.1, 1.8), idx)
Check "Points_Nearest index written", idx, 3
Check "Points_ConvexHull gives a list", UBound(gt.Points_ConvexHull(pts)), 3
CheckPoint "a point in gives a point out", gt.Move_Points(Array(1, 2), Array(1, 1, 1)), Array(2, 3, 1)
moved = gt.Move_Points(pts, Array(1, 0))
CheckPoint "a list in gives a list out", moved(1), Array(0, 4, 2)
Check "an empty list gives an empty list", UBound(gt.Move_Points(Array(), Array(1, 1))), -1
Set m = Library("Matrix")
m.Reset 4, 4
m.LetItem 0, 0, 1: m.LetItem 1, 1, 1: m.LetItem 2, 2, 1: m.LetItem 3, 3, 1: m.LetItem 0, 3, 10
CheckPoint "Transform_Points takes the library's Matrix", gt.Transform_Points(Array(1, 2, 3), m), Array(11, 2, 3)
res = gt.Transform_Points(Array(1, 2, 3), Nothing)
CheckError "Transform_Points by Nothing", 424, "Object required"
