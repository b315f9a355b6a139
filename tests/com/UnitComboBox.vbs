' UnitComboBox from a script, bound to a combo box written in the script itself (a class with the
' four members a form's combo box answers, and no events: a script object has no event source).
' The events are checked by the C++ client, with test-side form controls.
Dim binder, box, setting, length

' A drop-down list: setting ListIndex, or a Text that is one of its entries, selects that entry.
Class ScriptCombo
    Public Items
    Public Index
    Private Sub Class_Initialize()
        Items = ""
        Index = -1
    End Sub
    Public Sub Clear()
        Items = ""
        Index = -1
    End Sub
    Public Sub AddItem(item)
        Items = Items & item & "|"
    End Sub
    Public Property Let ListIndex(i)
        Index = i
    End Property
    Public Property Get ListIndex()
        ListIndex = Index
    End Property
    Public Property Get Text()
        Dim entries
        Text = ""
        entries = Split(Items, "|")
        If Index >= 0 Then Text = entries(Index)
    End Property
    Public Property Let Text(value)
        Dim entries, i
        entries = Split(Items, "|")
        Index = -1
        For i = 0 To UBound(entries) - 1
            If entries(i) = value Then Index = i
        Next
    End Property
End Class

' An object that looks like a box but cannot list entries.
Class NotACombo
    Public Sub Clear()
    End Sub
    Public Property Get Text()
        Text = ""
    End Property
End Class

Set binder = Library("UnitComboBox")
Set box = New ScriptCombo
box.Items = "left over|"
binder.Init box, 8
Check "Init fills a force moment box with its six units", box.Items, "KNmm|KGm|ton.m|lb.in|kip.in|KNm|"
Check "without a setting the first entry is selected", binder.UnitString, "KNmm"
Check "Combo is the script's box", binder.Combo, box

Set setting = Library("UnitSetting")
setting.UnitID(1) = 3
binder.Init box, 1, setting
Check "Init with a setting shows its unit", binder.UnitString, "m"
Check "and takes its id", binder.UnitID, 3

binder.Init New NotACombo, 1
CheckError "an object without AddItem and ListIndex", 13, "Type mismatch"
Set length = Library("DLength")
Set binder.UnitSetting = length
CheckErrorNumber "a quantity set as the setting", 13
