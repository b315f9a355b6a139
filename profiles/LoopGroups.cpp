#include "profiles/LoopGroups.h"

#include <cmath>
#include <cstdint>

#include "profiles/LoopArrangement.h"
#include "profiles/UnionFind.h"

namespace tgp {

namespace {

// Overlapping pairs in order, each while both loops are still in play: a repeat loses its later
// copy, any other pair both loops. Returns which loops are kept.
std::vector<bool> SetAsideOverlaps(const std::vector<std::shared_ptr<Loop7>>& loops,
                                   const LoopArrangement& placed, LoopGroups& groups) {
    std::vector<bool> kept(loops.size(), true);
    for (const auto& [first, second] : placed.Overlaps()) {
        if (!kept[first] || !kept[second]) continue;
        kept[second] = false;
        if (SameRegion(*loops[first], *loops[second])) {
            groups.repeats.push_back(second);
            continue;
        }
        kept[first] = false;
        groups.overlaps.emplace_back(first, second);
    }
    return kept;
}

}  // namespace

LoopGroups GroupByContainment(const std::vector<std::shared_ptr<Loop7>>& loops) {
    LoopGroups groups;
    const LoopArrangement placed(loops);
    const std::vector<bool> kept = SetAsideOverlaps(loops, placed, groups);
    std::vector<double> size(loops.size());
    for (std::size_t i = 0; i < loops.size(); ++i) size[i] = loops[i]->AreaAbs();
    const auto parents = placed.Parents(size, kept);
    groups.depths = LoopArrangement::Depths(parents);
    const auto roots = LoopArrangement::Roots(parents, groups.depths);
    UnionFind unions(loops.size());  // outermost loops whose boundaries meet share a group
    for (const auto& [i, j] : placed.Meetings()) {
        if (kept[i] && kept[j] && roots[i] == i && roots[j] == j) unions.Join(i, j);
    }
    std::vector<std::int64_t> sectionOf(loops.size(), -1);
    for (std::size_t i = 0; i < loops.size(); ++i) {
        if (!kept[i]) continue;
        const std::size_t g = unions.Find(roots[i]);
        if (sectionOf[g] < 0) {
            sectionOf[g] = static_cast<std::int64_t>(groups.sections.size());
            groups.sections.emplace_back();
        }
        groups.sections[static_cast<std::size_t>(sectionOf[g])].push_back(i);
    }
    return groups;
}

bool SameRegion(Loop7& a, Loop7& b) {
    const double area = a.AreaAbs();
    auto near = [](double x, double y, double scale) {
        return std::fabs(std::fabs(x) - std::fabs(y)) <= 1e-9 * scale;
    };
    const Point ca = a.Centroid(), cb = b.Centroid();
    const double moments = std::fabs(a.MomentOfInertiaX()) + std::fabs(a.MomentOfInertiaY());
    return near(area, b.AreaAbs(), area) &&
           std::hypot(ca[0] - cb[0], ca[1] - cb[1]) <= 1e-9 * std::sqrt(area) &&
           near(a.MomentOfInertiaX(), b.MomentOfInertiaX(), moments) &&
           near(a.MomentOfInertiaY(), b.MomentOfInertiaY(), moments);
}

}  // namespace tgp
