' Composite sections through the COM runtime: Loop7s (collection, For Each, hierarchy, composite
' block, Split, Sort, errors) and InertiaBlock's Join, Union, Transformation and text form.
Dim all, outer, hole, apart, loopItem, n, parts, part, blk, other, joined, text, copy, e, bad, steel

Function LoopFrom(coordinates)
    Dim lp, bulges, i
    bulges = Array(0, 0, 0, 0)
    Set lp = Library("Loop7")
    lp.InitFromCoordinates coordinates, bulges
    Set LoopFrom = lp
End Function

' A 200 x 100 plate with a 180 x 80 hole (a hollow section drawn as two loops, either direction),
' and a 10 x 10 plate apart.
Set outer = LoopFrom(Array(0, 0, 200, 0, 200, 100, 0, 100))
Set hole = LoopFrom(Array(10, 10, 10, 90, 190, 90, 190, 10))
Set apart = LoopFrom(Array(300, 0, 310, 0, 310, 10, 300, 10))
Set all = Library("Loop7s")
all.Add hole
all.Add outer
all.Add apart
Check "Count", all.Count, 3
Check "Item is the default member", all(2) Is outer, True
Check "Item", all.Item(1) Is hole, True
n = 0
For Each loopItem In all
    n = n + 1
Next
Check "For Each visits every loop", n, 3
Check "the outer loop has depth 0", all.Depth(2), 0
Check "the hole has depth 1", all.Depth(1), 1
Check "IsHole", all.IsHole(1), True
Check "the hole's parent is the outer loop", all.Parent(1) Is outer, True
Check "an outermost loop has no parent", all.Parent(3) Is Nothing, True
Check "the loops carry the hole flag", hole.IsVoid, True
Check "composite Area", all.Area, 200 * 100 - 180 * 80 + 100
Check "composite Length", all.Length, 600 + 520 + 40
n = Library("Loop7s").Area
CheckError "an empty collection has no properties", 2411, "Loop7s: the collection is empty, so it has no section properties"
Set blk = all.InertiaBlock
CheckNear "composite block area", blk.Area.Millimetres, 200 * 100 - 180 * 80 + 100, 1E-12

parts = all.Split
Check "Split gives one collection per outermost loop", UBound(parts) - LBound(parts) + 1, 2
n = 0
For Each part In parts
    n = n + part.Count
Next
Check "every loop in one part", n, 3
CheckNear "the hollow part's Ix", parts(0).MomentOfInertiaX, (200 * 100 ^ 3 - 180 * 80 ^ 3) / 12, 1E-12

all.Sort 0, True
Check "Sort by area, descending", all(1) Is outer, True
all.Sort 3
Check "Sort by depth", all(3) Is hole, True
all.Sort 9
CheckError "an unknown sort key", 5, "Invalid procedure call or argument"
Set loopItem = all(0)
CheckError "Item(0)", 9, "Subscript out of range"
Set loopItem = all(4)
CheckError "Item past the end", 9, "Subscript out of range"
all.Add Nothing
CheckError "Add Nothing", 424, "Object required"
all.Add Library("DLength")
CheckError "Add a quantity", 13, "Type mismatch"

all.Add LoopFrom(Array(150, 50, 250, 50, 250, 60, 150, 60))
n = all.Depth(1)
CheckError "a loop across another's edge", 2411, "Loop7s: loop 1 and loop 4 overlap (their interiors cross); draw touching parts side by side, or a hole inside its boundary"
all.Remove 4
Check "Remove", all.Count, 3
all.Clear
Check "Clear", all.Count, 0

' InertiaBlock: Join, Union, the text form and Transformation.
Set blk = outer.InertiaBlock.Copy
If blk.Area.Millimetres < 0 Then blk.Inverse
Set other = hole.InertiaBlock.Copy
If other.Area.Millimetres > 0 Then other.Inverse
Set joined = blk.Union(other)
CheckNear "Union of a plate and its void", joined.Area.Millimetres, 200 * 100 - 180 * 80, 1E-12
Check "Union leaves this block", blk.Area.Millimetres, 20000
blk.Join other
CheckNear "Join in place", blk.MomentOfInertiaX.Millimetres, (200 * 100 ^ 3 - 180 * 80 ^ 3) / 12, 1E-12
text = blk.SaveToText
Check "the text form starts with its version", Left(text, 15), "InertiaBlock/1 "
Set copy = Library("InertiaBlock")
copy.InitFromText text
Check "a round trip gives the same text", copy.SaveToText, text
Check "and the same area", copy.Area.Millimetres, blk.Area.Millimetres
copy.InitFromText "InertiaBlock/2 A=1"
CheckError "another version", 2411, "InitFromText: version 2 is not known (this library reads version 1)"
copy.InitFromText "InertiaBlock/1 A=1 P=2 Iy=4 Ixy=5 C=6,7,0 Ux=1,0,0 Uy=0,1,0 E=0"
CheckError "a missing field", 2411, "InitFromText: 'Ix' is missing"
Check "bad text leaves the block", copy.SaveToText, text
Set steel = blk.Copy
steel.ElasticModulus = 210000
blk.Join steel
CheckError "joining a block without material to one with", 2411, "Join: a block without material cannot be joined to a block with material (set ElasticModulus on both blocks or on neither)"
blk.Join Nothing
CheckError "Join Nothing", 424, "Object required"
e = Array(5, 0, 0)
blk.Transformation e, 0, 2, 2, Array(0, 0, 0)
CheckNear "Transformation scales the area", blk.Area.Millimetres, 4 * (200 * 100 - 180 * 80), 1E-12
blk.Transformation e, 0, 0, 1, Array(0, 0, 0)
CheckError "a scale factor of 0", 2411, "Cannot Transformation InertiaBlock with a scale factor of 0: the section would collapse onto a line"

' A plate with 10,000 square holes (5 x 5 on a 10 grid): the collection arranges them through its
' index (the time it takes is measured in bench/com/PlateWithHoles.vbs, not here).
Dim plate, row, column
Set plate = Library("Loop7s")
plate.Add LoopFrom(Array(-5, -5, 1000, -5, 1000, 1000, -5, 1000))
For row = 0 To 99
    For column = 0 To 99
        plate.Add LoopFrom(Array(10 * column, 10 * row, 10 * column + 5, 10 * row, 10 * column + 5, 10 * row + 5, 10 * column, 10 * row + 5))
    Next
Next
Check "a plate and 10,000 holes", plate.Count, 10001
CheckNear "their composite area", plate.InertiaBlock.Area.Millimetres, 1005 * 1005 - 10000 * 25, 1E-12
Check "the last hole lies in the plate", plate.Depth(10001), 1
Check "its parent is the plate", plate.Parent(10001) Is plate(1), True
