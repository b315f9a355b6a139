#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "units/UnitArg.h"
#include "units/UnitIds.h"

namespace tgp {

// The symbol of a unit of a kind, from the unit symbol table (UTF-8: "º", "²", "³"). The unit
// argument is resolved for that kind (so a UnitSetting names its unit of that kind). A kind that is
// not in the table, or an id without a symbol in the kind's column, fails with 2411
// "GetUnitString no found".
std::string GetUnitString(DimensionObjectType DimensionType, const UnitArg& Unit);

// The unit named in a text for a kind: the first id, in ascending order, whose symbol pattern
// matches the upper-cased text; -1 when none does. The patterns are containment tests, so the first
// match wins in ways that are kept on purpose: "5 kPa" reads as Pa (11), "NEWTONS" as tons (3).
int16_t RecogniseUnit(std::string_view text, DimensionObjectType kind);

// The wildcard pattern of a symbol: without "(", ")", "³", "3", "²" and "2", between two "*",
// in upper case. The fourth-power "4" stays.
std::string UnitPattern(std::string_view symbol);

// Whether the text matches the pattern, "*" standing for any run of characters and every other
// character for itself (case-sensitive).
bool MatchesPattern(std::string_view text, std::string_view pattern);

}  // namespace tgp
