#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "geometry/Point.h"
#include "profiles/InertiaBlock.h"
#include "profiles/Loop7.h"

namespace tgp {

// What Loop7s.Sort orders by.
enum Loop7sSortKey : std::int32_t {
    SortByArea = 0,       // the loop's own area, unsigned
    SortByCentroidX = 1,  // its centroid's x
    SortByCentroidY = 2,  // its centroid's y
    SortByDepth = 3,      // its depth in the containment hierarchy
};

// A collection of closed loops that make up sections: each loop's parent is the smallest loop that
// contains it, loops of depth 0, 2, ... are boundaries of material and loops of depth 1, 3, ...
// holes, whatever each loop's own direction. The composite section property block adds the
// boundaries and subtracts the holes; loops that only touch (plates drawn side by side) are
// separate solids and are summed; loops whose interiors partly overlap are an error.
//
// Items are numbered from 1, as in the automation runtime's collections. The arrangement is worked
// out when first needed and kept until a loop is added, removed or changed (each loop tells its
// revision); working it out sets each loop's IsVoid flag to whether it is a hole.
class Loop7s {
  public:
    static std::shared_ptr<Loop7s> Create() { return std::make_shared<Loop7s>(); }

    // A missing loop raises 424 "Object required".
    void Add(std::shared_ptr<Loop7> Loop);
    // Index from 1 to Count; anything else raises 9 "Subscript out of range".
    const std::shared_ptr<Loop7>& Item(std::size_t Index) const;
    std::size_t Count() const { return loops_.size(); }
    void Remove(std::size_t Index);
    void Clear();
    const std::vector<std::shared_ptr<Loop7>>& Loops() const { return loops_; }

    // The containment hierarchy: the smallest loop containing the item (null for an outermost
    // one), the number of loops around it, and whether it is a hole (an odd depth). A loop that cuts
    // itself raises 5, two loops whose interiors overlap raise 2411 naming both.
    std::shared_ptr<Loop7> Parent(std::size_t Index);
    // The first two items (from 1) whose interiors overlap, or nothing when none do: what the
    // members above raise 2411 for, for a caller that would rather leave them out.
    std::optional<std::pair<std::size_t, std::size_t>> FirstOverlap();
    int Depth(std::size_t Index);
    bool IsHole(std::size_t Index);

    // The composite section: a new block each time, boundaries added and holes subtracted, with the
    // world axes. An empty collection raises 2411.
    std::shared_ptr<tgp::InertiaBlock> InertiaBlock();
    double Area();
    double Length();
    Point Centroid();
    double MomentOfInertiaX();
    double MomentOfInertiaY();
    double ProductOfInertiaXY();

    // One new collection per outermost loop, holding it, its holes and the islands inside them, in
    // this collection's order (the loops themselves are shared, not copied).
    std::vector<std::shared_ptr<Loop7s>> Split();
    // Reorders the items, stably, by the key; ties keep their order.
    void Sort(Loop7sSortKey Key, bool Descending = false);

  private:
    struct Arrangement {
        std::vector<std::uint64_t> revisions;  // of each loop when worked out
        std::uint64_t anyRevision = 0;         // Loop7::AnyRevision when last found valid
        std::vector<std::int64_t> parent;      // index into loops_, -1 for none
        std::vector<int> depth;
        std::shared_ptr<tgp::InertiaBlock> composite;
    };
    const Arrangement& Arranged();
    // Works the arrangement out, or names the first overlapping pair (0-based) and keeps nothing.
    std::optional<std::pair<std::size_t, std::size_t>> TryArrange();
    bool ArrangementValid() const;
    std::size_t Position(std::size_t Index) const;
    void Changed() { arrangement_.reset(); }

    std::vector<std::shared_ptr<Loop7>> loops_;
    std::unique_ptr<Arrangement> arrangement_;
};

}  // namespace tgp
