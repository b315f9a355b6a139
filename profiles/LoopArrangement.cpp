#include "profiles/LoopArrangement.h"

#include <algorithm>
#include <boost/geometry.hpp>
#include <boost/geometry/index/rtree.hpp>
#include <boost/iterator/function_output_iterator.hpp>
#include <numeric>

#include "profiles/LoopPlacement.h"

namespace tgp {

namespace {

namespace bg = boost::geometry;
namespace bgi = boost::geometry::index;
using BoxPoint = bg::model::point<double, 2, bg::cs::cartesian>;
using Box = bg::model::box<BoxPoint>;
using Entry = std::pair<Box, std::size_t>;

// Boxes grow by twice the tolerance PlaceLoops allows, so that the index offers every pair that
// BoxesMeet could accept, whatever the rounding; BoxesMeet then decides.
Box Grown(const SegmentBox& b, double margin) {
    return {{b.xmin - margin, b.ymin - margin}, {b.xmax + margin, b.ymax + margin}};
}

}  // namespace

std::vector<std::pair<std::size_t, std::size_t>> BoxesThatMeet(std::span<const SegmentBox> boxes) {
    std::vector<Entry> entries;
    entries.reserve(boxes.size());
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        if (boxes[i].xmin <= boxes[i].xmax)
            entries.emplace_back(Grown(boxes[i], 0), i);  // a loop without segments has no box
    }
    // Bulk loading (sort-tile-recursive packing) builds the tree in n log n with well-filled nodes.
    std::vector<std::pair<std::size_t, std::size_t>> pairs;
    if (entries.size() < 2) return pairs;
    const bgi::rtree<Entry, bgi::rstar<16>> tree(entries.begin(), entries.end());
    for (const Entry& e : entries) {
        const std::size_t i = e.second;
        tree.query(bgi::intersects(Grown(boxes[i], 2 * LoopDLine::kOnLineTolerance)),
                   boost::make_function_output_iterator([&](const Entry& other) {
                       if (other.second > i && BoxesMeet(boxes[i], boxes[other.second]))
                           pairs.emplace_back(i, other.second);
                   }));
    }
    std::sort(pairs.begin(), pairs.end());
    return pairs;
}

LoopArrangement::LoopArrangement(std::span<const std::shared_ptr<Loop7>> loops) : count_(loops.size()) {
    if (loops.size() < 2) return;  // a single loop stands alone
    std::vector<SegmentBox> boxes;
    boxes.reserve(loops.size());
    for (const auto& loop : loops) boxes.push_back(BoxOf(*loop));
    for (const auto& [i, j] : BoxesThatMeet(boxes)) {
        bool meet = false;
        switch (PlaceLoops(*loops[i], *loops[j], &meet)) {
            case Placement::Overlap: overlaps_.emplace_back(i, j); break;
            case Placement::FirstInsideSecond: inside_.emplace_back(i, j); break;
            case Placement::SecondInsideFirst: inside_.emplace_back(j, i); break;
            case Placement::Apart: break;
        }
        if (meet) meetings_.emplace_back(i, j);
    }
    std::sort(inside_.begin(), inside_.end());
}

std::vector<std::int64_t> LoopArrangement::Parents(std::span<const double> size,
                                                   const std::vector<bool>& kept) const {
    const auto inPlay = [&](std::size_t i) { return kept.empty() || kept[i]; };
    std::vector<std::int64_t> parent(count_, -1);
    for (const auto& [child, candidate] : inside_) {
        if (!inPlay(child) || !inPlay(candidate)) continue;
        std::int64_t& current = parent[child];
        if (current < 0 || size[candidate] < size[static_cast<std::size_t>(current)])
            current = static_cast<std::int64_t>(candidate);
    }
    return parent;
}

std::vector<int> LoopArrangement::Depths(std::span<const std::int64_t> parents) {
    constexpr int kUnknown = -1, kOnTheWay = -2;
    std::vector<int> depth(parents.size(), kUnknown);
    std::vector<std::size_t> chain;
    for (std::size_t i = 0; i < parents.size(); ++i) {
        // Up to the first loop whose depth is known, or the top, then down again. (A ring of
        // parents, which rounding alone could make, ends where it closes.)
        std::size_t at = i;
        while (depth[at] == kUnknown && parents[at] >= 0) {
            depth[at] = kOnTheWay;
            chain.push_back(at);
            at = static_cast<std::size_t>(parents[at]);
        }
        int d = depth[at] >= 0 ? depth[at] : 0;
        if (depth[at] == kUnknown) depth[at] = 0;
        for (auto k = chain.rbegin(); k != chain.rend(); ++k) depth[*k] = (*k == at) ? 0 : ++d;
        chain.clear();
    }
    return depth;
}

std::vector<std::size_t> LoopArrangement::Roots(std::span<const std::int64_t> parents,
                                                std::span<const int> depths) {
    // Shallower loops first, so that a parent's root is known before its children ask for it.
    std::vector<std::size_t> order(parents.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return depths[a] < depths[b]; });
    std::vector<std::size_t> root(parents.size());
    for (const std::size_t i : order) {
        const std::int64_t p = parents[i];
        root[i] =
            p < 0 || depths[static_cast<std::size_t>(p)] >= depths[i] ? i : root[static_cast<std::size_t>(p)];
    }
    return root;
}

}  // namespace tgp
