#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "units/UnitIds.h"

namespace tgp {

// How a quantity holds its amount. Most kinds keep one number in their storage unit (`raw`; `factor`
// unused). Volumes and second moments of area keep a raw value and the unit factor it was written
// with (mm³ or mm⁴ per unit of raw): the amount in the base unit is raw × factor.
struct StoredAmount {
    double raw = 0;
    double factor = 0;
};

// The kind's name as used in its messages ("Length", "ForcePerArea"); empty for an unknown kind.
std::string_view KindName(DimensionObjectType kind);

// Whether the id is a unit of the kind, and the kind's units in ascending id order.
bool IsValidUnit(DimensionObjectType kind, int id);
std::vector<int16_t> ValidUnitIds(DimensionObjectType kind);
// Raises 24111 "<id> is an invalid UnitID for <kind>" unless the id is a unit of the kind.
void RequireValidUnit(DimensionObjectType kind, int id);

// The amount read in, or written from, the given unit, with the catalogue's exact sequence of
// operations. An id that is not a unit of the kind fails with 24111 "<id> is an invalid UnitID for
// <kind>"; a result that overflows the double range fails with 6 "Overflow".
double ReadAmount(DimensionObjectType kind, int id, const StoredAmount& amount);
StoredAmount WriteAmount(DimensionObjectType kind, int id, double value);

}  // namespace tgp
