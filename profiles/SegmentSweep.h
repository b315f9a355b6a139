#pragma once

#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "profiles/LoopDLine.h"

namespace tgp {

// Crossings among segments found with a sweep along x. Consecutive segments that advance the same
// way in x form a chain (segments of one chain cannot cross one another); the chains are sorted by
// the left edge of their boxes and swept with an active list, two chains whose boxes overlap are
// walked together in x order, and only segment pairs whose boxes overlap get the exact intersection
// test. Near-linear for profiles, whatever their size. Where the boxes of many chains overlap (a
// star's teeth each reach far in x and in y), the search for a crossing gives up after a few
// box steps a segment and the ordered sweep (OrderedSweep.h) decides instead, in n log n.

// Crossings of a loop with itself. Neighbouring segments (and the last with the first when the loop
// is closed) share an end point: meeting there is not a crossing, any other common point is.
// Without Points the search stops at the first crossing.
// `visit`, when given, sees every segment once, in order, while the sweep reads it anyway: a caller
// that needs a pass over millions of segments (their integrals) rides along instead of reading
// them from memory a second time.
bool FindSelfIntersections(std::span<const LoopDLine> segments, bool closed, std::vector<Point3>* Points,
                           const std::function<void(const LoopDLine&)>& visit = {});

// The first crossing of a loop with itself, as FindSelfIntersections would list it first (on any
// outline, without listing the others).
std::optional<Point3> FirstSelfIntersection(std::span<const LoopDLine> segments, bool closed);

// Common points of two loops (touching counts). Without Points the search stops at the first one.
bool FindIntersections(std::span<const LoopDLine> first, std::span<const LoopDLine> second,
                       std::vector<Point3>* Points);

// The same points in no particular order: small loops are compared pair by pair, without a sweep.
bool CommonPoints(std::span<const LoopDLine> first, std::span<const LoopDLine> second,
                  std::vector<Point3>* Points);

}  // namespace tgp
