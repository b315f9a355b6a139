#pragma once

#include "profiles/Loop7.h"

namespace tgp {

// How two simple closed loops lie: apart (touching allowed: plates drawn side by side share edges
// and points), one inside the other (touching its boundary from inside allowed), or overlapping
// (their interiors partly cross, or they are the same loop twice).
enum class Placement { Apart, FirstInsideSecond, SecondInsideFirst, Overlap };

// Decided from the boundaries themselves: each loop's boundary is cut where it meets the other's,
// and one point of each piece that starts at a meeting point (and of the loop when they never meet)
// is placed against the other loop. Pieces on the other loop's boundary decide nothing.
Placement PlaceLoops(const Loop7& first, const Loop7& second);

}  // namespace tgp
