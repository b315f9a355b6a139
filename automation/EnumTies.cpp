// The type library's enumerations and the library's own are written twice (the IDL for scripts,
// the C++ headers for the native API): every value is tied here, so that a value changed on one
// side alone does not compile.
#include "Tessary_Geometry_Pro.h"
#include "geometry/Analysis.h"
#include "profiles/Loop7.h"
#include "profiles/Loop7s.h"
#include "units/UnitIds.h"

#define TGP_SAME_VALUE(name)                                                           \
    static_assert(static_cast<long long>(::name) == static_cast<long long>(tgp::name), \
                  #name " differs from the type library")

// DimensionObjectType
TGP_SAME_VALUE(DAngleObject);
TGP_SAME_VALUE(DLengthObject);
TGP_SAME_VALUE(DAreaObject);
TGP_SAME_VALUE(DVolumeObject);
TGP_SAME_VALUE(DMomentOfInertiaObject);
TGP_SAME_VALUE(DForceObject);
TGP_SAME_VALUE(DPressureObject);
TGP_SAME_VALUE(DForcePerareaObject);
TGP_SAME_VALUE(DForceMomentObject);
TGP_SAME_VALUE(DForcePerLineObject);
TGP_SAME_VALUE(DForceDensityObject);
// UnitIDAngle
TGP_SAME_VALUE(Radian_UnitID);
TGP_SAME_VALUE(Degree_UnitID);
// UnitIDLength
TGP_SAME_VALUE(mm_UnitID);
TGP_SAME_VALUE(cm_UnitID);
TGP_SAME_VALUE(dm_UnitID);
TGP_SAME_VALUE(m_UnitID);
TGP_SAME_VALUE(in_UnitID);
TGP_SAME_VALUE(ft_UnitID);
// UnitIDForce
TGP_SAME_VALUE(KN_unitID);
TGP_SAME_VALUE(daN_unitID);
TGP_SAME_VALUE(KG_unitID);
TGP_SAME_VALUE(ton_unitID);
TGP_SAME_VALUE(lb_unitID);
TGP_SAME_VALUE(kip_unitID);
TGP_SAME_VALUE(N_unitID);
// UnitIDForceLength
TGP_SAME_VALUE(KN_mm_unitID);
TGP_SAME_VALUE(daN_cm_unitID);
TGP_SAME_VALUE(KG_m_unitID);
TGP_SAME_VALUE(ton_m_unitID);
TGP_SAME_VALUE(lb_in_unitID);
TGP_SAME_VALUE(kip_in_unitID);
TGP_SAME_VALUE(N_mm_unitID);
TGP_SAME_VALUE(KN_m_unitID);
TGP_SAME_VALUE(KN_cm_unitID);
TGP_SAME_VALUE(kG_cm_unitID);
TGP_SAME_VALUE(atm_unitID);
TGP_SAME_VALUE(Pa_unitID);
TGP_SAME_VALUE(KPa_unitID);
TGP_SAME_VALUE(MPa_unitID);
// LoopRelationShip
TGP_SAME_VALUE(FriendLoop);
TGP_SAME_VALUE(ChildLoop);
TGP_SAME_VALUE(SiblingLoop);
TGP_SAME_VALUE(ParentLoop);
// A3P_Result
TGP_SAME_VALUE(A3P_Triangle);
TGP_SAME_VALUE(A3P_Collinear);
TGP_SAME_VALUE(A3P_TwoCoincident);
TGP_SAME_VALUE(A3P_AllCoincident);
// A2L_Result
TGP_SAME_VALUE(A2L_Intersecting);
TGP_SAME_VALUE(A2L_Parallel);
TGP_SAME_VALUE(A2L_SameLine);
TGP_SAME_VALUE(A2L_Skew);
// APlane_Result
TGP_SAME_VALUE(APlane_PointOnPlane);
TGP_SAME_VALUE(APlane_PointInFront);
TGP_SAME_VALUE(APlane_PointBehind);
TGP_SAME_VALUE(APlane_LineCrossing);
TGP_SAME_VALUE(APlane_LineParallel);
TGP_SAME_VALUE(APlane_LineInPlane);
TGP_SAME_VALUE(APlane_PlanesCrossing);
TGP_SAME_VALUE(APlane_PlanesParallel);
TGP_SAME_VALUE(APlane_PlanesSame);
// Loop7sSortKey
TGP_SAME_VALUE(SortByArea);
TGP_SAME_VALUE(SortByCentroidX);
TGP_SAME_VALUE(SortByCentroidY);
TGP_SAME_VALUE(SortByDepth);
