Attribute VB_Name = "Quantities"
' VBA module (import into any Office or CAD host with VBA) using the library early bound:
' Tools > References > "Tessary Geometry Pro" (the registered type library Tessary_Geometry_Pro).
Option Explicit

Public Sub ShowQuantities()
    Dim length As New Tessary_Geometry_Pro.DLength
    Dim service As New Tessary_Geometry_Pro.Geometry_EXE
    Dim geo As New Tessary_Geometry_Pro.Geometry
    Dim angle As Double
    Dim force As Tessary_Geometry_Pro.DForce

    length.Feet = 1
    Debug.Print length.ValueToString(mm_UnitID)            ' 304.8 (mm)

    Set force = service.GetDForce(1, kip_unitID)
    Debug.Print force.KN                                    ' 4.44974115

    ' By-reference arguments change typed variables in place.
    angle = -geo.pi / 2
    geo.FixAngle360 angle
    Debug.Print angle                                       ' about 4.712389 (3 pi / 2)

    ' Errors carry the published numbers.
    On Error Resume Next
    Debug.Print length.Value(7)
    Debug.Print Err.Number, Err.Description                 ' 24111  7 is an invalid UnitID for Length
End Sub
