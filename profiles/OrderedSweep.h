#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "profiles/LoopDLine.h"

namespace tgp {

// Shamos and Hoey's sweep: the segments (arcs split into pieces that run one way in x) are kept in
// their order along a vertical line moving left to right, and a piece is compared only with the
// pieces next to it in that order, when it comes, when it goes, and when its neighbour goes. The
// first two segments that cross are next to each other before they cross, so a search that stops at
// the first crossing takes n log n on any outline, however far each segment reaches in x (a star,
// a gear): where a sweep over boxes compares every pair of overlapping boxes, this compares a
// segment with two others at a time.
//
// `crosses(i, j)` decides a pair of segment indices (i < j never assumed) and returns true to
// stop; it is asked only about segments whose pieces become neighbours, never about two pieces of
// one arc. Returns whether it stopped.
bool SweepNeighbours(std::span<const LoopDLine> segments,
                     const std::function<bool(std::uint32_t, std::uint32_t)>& crosses);

}  // namespace tgp
