#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "profiles/Loop7.h"

namespace tgp {

// Loops gathered into sections by containment and touch: each outermost loop with everything inside
// it, and outermost loops that touch one another together (plates drawn side by side). A pair whose
// interiors overlap is left out (both loops) until none does; a loop that repeats another one (the
// same outline drawn twice, a hatch on its own outline) loses its later copy only.
struct LoopGroups {
    std::vector<std::vector<std::size_t>> sections;  // loop positions, in order, by first loop
    std::vector<std::pair<std::size_t, std::size_t>> overlaps;
    std::vector<std::size_t> repeats;
    std::vector<int> depths;  // of every loop kept: the loops around it
};

LoopGroups GroupByContainment(const std::vector<std::shared_ptr<Loop7>>& loops);

// Two loops that cover the same region: the same area, centroid and moments up to rounding.
bool SameRegion(Loop7& a, Loop7& b);

}  // namespace tgp
