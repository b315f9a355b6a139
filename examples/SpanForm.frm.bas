Attribute VB_Name = "SpanForm"
' VBA user form code (insert a UserForm named SpanForm with a TextBox txtSpan, a ComboBox cboUnit
' whose Style is fmStyleDropDownList, and a CommandButton cmdOK; paste from "Option Explicit" on).
' The combo box lists the length units and keeps the project's unit setting in step; the text box
' shows the span in the chosen unit and is converted, not changed, when the user picks another.
' Tools > References > Tessary Geometry Pro.
'
'   SpanForm.Show
Option Explicit

Private WithEvents Units As Tessary_Geometry_Pro.UnitComboBox
Private Setting As Tessary_Geometry_Pro.UnitSetting
Private Span As Tessary_Geometry_Pro.DLength

Private Sub UserForm_Initialize()
    Set Setting = New Tessary_Geometry_Pro.UnitSetting
    Setting.UnitID(DLengthObject) = m_UnitID
    Set Span = New Tessary_Geometry_Pro.DLength
    Span.Millimetres = 7200
    Set Units = New Tessary_Geometry_Pro.UnitComboBox
    Units.Init cboUnit, DLengthObject, Setting        ' fills mm, cm, dm, m, in, ft and selects m
    txtSpan.Text = Span.Value(Units.UnitID)            ' 7.2
End Sub

' The user picked another unit: show the same span in it. A handler may also refuse a unit by
' writing another id into newUnitID; that one is kept and written into Setting.
Private Sub Units_Change(oldUnitID As Integer, newUnitID As Integer)
    Span.Value(oldUnitID) = CDbl(txtSpan.Text)
    If newUnitID = in_UnitID Then newUnitID = ft_UnitID   ' this project works in feet, not inches
    txtSpan.Text = Span.Value(newUnitID)
End Sub

Private Sub cmdOK_Click()
    Span.Value(Units.UnitID) = CDbl(txtSpan.Text)
    Debug.Print Span.ValueToString(Setting)           ' e.g. 7.2 (m)
    Unload Me
End Sub
