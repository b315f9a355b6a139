' Composite sections through the automation boundary: Loop7s as a collection (default member, For
' Each, objects in and out, an array of collections from Split), its errors, and InertiaBlock's
' Join, Union and text form. The arrangement and the values are the native suites'.
Dim all, outer, hole, apart, loopItem, n, parts, part, blk, other, joined, text, copy

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
Check "Item is the default member", all(2) Is outer, True
n = 0
For Each loopItem In all
    n = n + 1
Next
Check "For Each visits every loop", n, 3
Check "the hole has depth 1", all.Depth(1), 1
Check "the hole's parent is the outer loop", all.Parent(1) Is outer, True
Check "composite Area", all.Area, 200 * 100 - 180 * 80 + 100
Set blk = all.InertiaBlock

parts = all.Split
Check "Split gives one collection per outermost loop", UBound(parts) - LBound(parts) + 1, 2
n = 0
For Each part In parts
    n = n + part.Count
Next
Check "every loop in one part", n, 3

all.Sort 0, True
Check "Sort by area, descending", all(1) Is outer, True
Set loopItem = all(0)
CheckError "Item(0)", 9, "Subscript out of range"
all.Add Nothing
CheckError "Add Nothing", 424, "Object required"
all.Add Library("DLength")
CheckError "Add a quantity", 13, "Type mismatch"

' InertiaBlock: Join, Union and the text form.
Set blk = outer.InertiaBlock.Copy
If blk.Area.Millimetres < 0 Then blk.Inverse
Set other = hole.InertiaBlock.Copy
If other.Area.Millimetres > 0 Then other.Inverse
Set joined = blk.Union(other)
CheckNear "Union of a plate and its void", joined.Area.Millimetres, 200 * 100 - 180 * 80, 1E-12
blk.Join other
text = blk.SaveToText
Check "the text form starts with its version", Left(text, 15), "InertiaBlock/1 "
Set copy = Library("InertiaBlock")
copy.InitFromText text
Check "a round trip gives the same text", copy.SaveToText, text
blk.Join Nothing
CheckError "Join Nothing", 424, "Object required"

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
Check "its parent is the plate", plate.Parent(10001) Is plate(1), True
