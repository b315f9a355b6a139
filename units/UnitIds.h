#pragma once

#include <cstdint>

namespace tgp {

// The quantity kinds, as published in the type library (the value of a quantity's DimensionType).
// The lower-case "a" of DForcePerareaObject is the published spelling.
enum DimensionObjectType : int32_t {
    DAngleObject = 0,
    DLengthObject,
    DAreaObject,
    DVolumeObject,
    DMomentOfInertiaObject,
    DForceObject,
    DPressureObject,
    DForcePerareaObject,
    DForceMomentObject,
    DForcePerLineObject,
    DForceDensityObject,
};

inline constexpr int kKindCount = 11;

// Whether a value received as a DimensionObjectType is one of the eleven kinds.
inline constexpr bool IsKnownKind(int kind) {
    return kind >= 0 && kind < kKindCount;
}

// Unit ids of angles.
enum UnitIDAngle : int32_t { Radian_UnitID = 0, Degree_UnitID };

// Unit ids of lengths, areas, volumes and second moments of area (the id names the length unit).
enum UnitIDLength : int32_t { mm_UnitID = 0, cm_UnitID, dm_UnitID, m_UnitID, in_UnitID, ft_UnitID };

// Unit ids of forces.
enum UnitIDForce : int32_t {
    KN_unitID = 0,
    daN_unitID,
    KG_unitID,
    ton_unitID,
    lb_unitID,
    kip_unitID,
    N_unitID
};

// Unit ids of the force-and-length kinds (moments, pressures, line loads, densities): the id names
// the force and the length unit together; the power of the length follows from the kind.
enum UnitIDForceLength : int32_t {
    KN_mm_unitID = 0,
    daN_cm_unitID,
    KG_m_unitID,
    ton_m_unitID,
    lb_in_unitID,
    kip_in_unitID,
    N_mm_unitID,
    KN_m_unitID,
    KN_cm_unitID,
    kG_cm_unitID,
    atm_unitID,
    Pa_unitID,
    KPa_unitID,
    MPa_unitID,
};

// Ids run from 0 to 13 across all kinds; which of them a kind accepts is in the unit catalogue.
inline constexpr int kUnitIdCount = 14;

}  // namespace tgp
