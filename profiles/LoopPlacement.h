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
// BoundariesMeet, when given, tells whether the boundaries have a common point (touching counts),
// as first.IntersectWithLoop(second) would.
Placement PlaceLoops(const Loop7& first, const Loop7& second, bool* BoundariesMeet = nullptr);

// The box around a loop (empty for a loop without segments), and whether two boxes come within the
// on-line tolerance of each other: loops whose boxes do not meet are apart.
SegmentBox BoxOf(const Loop7& loop);
bool BoxesMeet(const SegmentBox& a, const SegmentBox& b);

}  // namespace tgp
