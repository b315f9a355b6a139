#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "profiles/Loop7.h"

namespace tgp {

// How the loops of a set lie among one another, every pair of them decided as PlaceLoops decides
// it, but only the pairs that can meet are looked at: the loops' boxes go into an R-tree and each
// loop is placed against the loops whose boxes meet its own. A drawing of n separate outlines costs
// n log n, not n² placements; a plate costs one placement per hole.
class LoopArrangement {
  public:
    using Pair = std::pair<std::size_t, std::size_t>;  // positions, first < second

    explicit LoopArrangement(std::span<const std::shared_ptr<Loop7>> loops);

    // The pairs whose interiors overlap (or that are the same loop twice), in order of first, then
    // second: the first of them is the pair that a search over every pair in order finds first.
    const std::vector<Pair>& Overlaps() const { return overlaps_; }
    // The pairs whose boundaries meet (touch or overlap), in the same order.
    const std::vector<Pair>& Meetings() const { return meetings_; }
    // Each loop's parent among the loops still in play (kept, or all when empty): the smallest by
    // `size` of the loops it lies inside, the first of equal ones; -1 for an outermost loop.
    std::vector<std::int64_t> Parents(std::span<const double> size, const std::vector<bool>& kept = {}) const;
    // The number of loops around each loop, from its parents.
    static std::vector<int> Depths(std::span<const std::int64_t> parents);
    // The outermost loop around each loop (itself when it has no parent), from parents and depths.
    static std::vector<std::size_t> Roots(std::span<const std::int64_t> parents, std::span<const int> depths);

  private:
    std::size_t count_;
    std::vector<Pair> overlaps_;
    std::vector<Pair> meetings_;
    std::vector<Pair> inside_;  // (child, parent), in order of child, then parent
};

// Every pair (i < j) of boxes that meet (BoxesMeet), found through an R-tree of the boxes (bulk
// loaded, so n log n with well-filled nodes); an empty box meets nothing.
std::vector<std::pair<std::size_t, std::size_t>> BoxesThatMeet(std::span<const SegmentBox> boxes);

}  // namespace tgp
