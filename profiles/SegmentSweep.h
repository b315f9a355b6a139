#pragma once

#include <span>
#include <vector>

#include "profiles/LoopDLine.h"

namespace tgp {

// Crossings among segments found with a sweep along x: the segments' boxes sorted by their left
// edge, an active list of the boxes that still reach the sweep position, and an exact intersection
// test only for pairs whose boxes overlap. Near-linear for profiles, whatever their size.

// Crossings of a loop with itself. Neighbouring segments (and the last with the first when the loop
// is closed) share an end point: meeting there is not a crossing, any other common point is.
// Without Points the search stops at the first crossing.
bool FindSelfIntersections(std::span<const LoopDLine> segments, bool closed, std::vector<PlanePoint>* Points);

// Common points of two loops (touching counts). Without Points the search stops at the first one.
bool FindIntersections(std::span<const LoopDLine> first, std::span<const LoopDLine> second,
                       std::vector<PlanePoint>* Points);

}  // namespace tgp
