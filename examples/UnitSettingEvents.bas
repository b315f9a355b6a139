Attribute VB_Name = "UnitSettingEvents"
' VBA class module body (create a class module named UnitSettingWatcher and paste from
' "Private WithEvents" on): counts the Modified events of a UnitSetting.
'
'   Dim watcher As New UnitSettingWatcher
'   watcher.Watch
Option Explicit

Private WithEvents Setting As Tessary_Geometry_Pro.UnitSetting
Public Changes As Long

Public Sub Watch()
    Dim frozen As Boolean
    Set Setting = New Tessary_Geometry_Pro.UnitSetting
    Setting.UnitID(DLengthObject) = cm_UnitID       ' one Modified
    frozen = True
    Setting.FreezeEvents frozen                     ' batch changes...
    Setting.UnitID(DForceObject) = N_unitID
    Setting.UnitID(DAreaObject) = m_UnitID
    frozen = False
    Setting.FreezeEvents frozen                     ' ...and one Modified when unfrozen
    Debug.Print Changes                             ' 2
End Sub

Private Sub Setting_Modified()
    Changes = Changes + 1
End Sub
