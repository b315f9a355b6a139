// Loops arranged through the index against every pair placed in order (how a collection was
// arranged before it had an index): the same overlaps in the same order, the same boundaries that
// meet, the same parents, on random sets of squares and circles that nest, touch, overlap and repeat.

#include <gtest/gtest.h>

#include <random>

#include "profiles/Loop7s.h"
#include "profiles/LoopArrangement.h"
#include "profiles/LoopPlacement.h"
#include "support/ProfileTestShapes.h"

namespace tgp {
namespace {

using test::Circle;
using test::LoopOf;
using test::Rectangle;

struct Reference {
    std::vector<LoopArrangement::Pair> overlaps, meetings;
    std::vector<std::int64_t> parents;
};

Reference EveryPair(const std::vector<std::shared_ptr<Loop7>>& loops) {
    Reference r;
    r.parents.assign(loops.size(), -1);
    auto adopt = [&](std::size_t child, std::size_t parent) {
        std::int64_t& current = r.parents[child];
        if (current < 0 || loops[parent]->AreaAbs() < loops[static_cast<std::size_t>(current)]->AreaAbs()) {
            current = static_cast<std::int64_t>(parent);
        }
    };
    for (std::size_t i = 0; i < loops.size(); ++i) {
        for (std::size_t j = i + 1; j < loops.size(); ++j) {
            bool meet = false;
            const Placement placement = PlaceLoops(*loops[i], *loops[j], &meet);
            if (meet) r.meetings.emplace_back(i, j);
            if (placement == Placement::Overlap) r.overlaps.emplace_back(i, j);
            if (placement == Placement::FirstInsideSecond) adopt(i, j);
            if (placement == Placement::SecondInsideFirst) adopt(j, i);
        }
    }
    return r;
}

// Squares and circles on a coarse grid of sizes and places, so that many share edges, points or
// the whole outline; a few run the other way.
std::vector<std::shared_ptr<Loop7>> RandomLoops(std::mt19937& rng, int count) {
    std::uniform_int_distribution<int> place(0, 8), size(1, 6), kind(0, 3);
    std::vector<std::shared_ptr<Loop7>> loops;
    for (int k = 0; k < count; ++k) {
        const double x = 2.0 * place(rng), y = 2.0 * place(rng), s = 2.0 * size(rng);
        auto outline = kind(rng) == 0 ? Circle(x, y, s / 2) : Rectangle(x, y, s, s);
        loops.push_back(LoopOf(k % 5 == 0 ? outline.Reversed() : outline));
    }
    return loops;
}

TEST(LoopArrangement, AgreesWithEveryPairOnRandomSets) {
    std::mt19937 rng(20261124);
    int overlapping = 0, nested = 0, arranged = 0;
    for (int trial = 0; trial < 150; ++trial) {
        const auto loops = RandomLoops(rng, 2 + trial % 8);
        const Reference expected = EveryPair(loops);
        const LoopArrangement placed(loops);
        std::vector<double> size;
        for (const auto& loop : loops) size.push_back(loop->AreaAbs());
        ASSERT_EQ(placed.Overlaps(), expected.overlaps) << trial;
        ASSERT_EQ(placed.Meetings(), expected.meetings) << trial;
        ASSERT_EQ(placed.Parents(size), expected.parents) << trial;
        for (const std::int64_t p : expected.parents) nested += p >= 0;

        auto collection = Loop7s::Create();
        for (const auto& loop : loops) collection->Add(loop);
        const auto first = collection->FirstOverlap();
        ASSERT_EQ(first.has_value(), !expected.overlaps.empty()) << trial;
        if (first) {
            EXPECT_EQ(*first, (LoopArrangement::Pair{expected.overlaps[0].first + 1,
                                                     expected.overlaps[0].second + 1}));
            ++overlapping;
            continue;
        }
        ++arranged;
        for (std::size_t i = 0; i < loops.size(); ++i) {
            const std::int64_t p = expected.parents[i];
            EXPECT_EQ(collection->Parent(i + 1), p < 0 ? nullptr : loops[static_cast<std::size_t>(p)])
                << trial;
        }
    }
    EXPECT_GT(overlapping, 20);  // every outcome is exercised
    EXPECT_GE(arranged, 20);
    EXPECT_GT(nested, 100);
}

// Depths and roots from parents, with a ring of parents (rounding alone could make one) ending.
TEST(LoopArrangement, DepthsAndRootsFromParents) {
    const std::vector<std::int64_t> parents{-1, 0, 1, -1, 2, 3};
    const auto depths = LoopArrangement::Depths(parents);
    EXPECT_EQ(depths, (std::vector<int>{0, 1, 2, 0, 3, 1}));
    EXPECT_EQ(LoopArrangement::Roots(parents, depths), (std::vector<std::size_t>{0, 0, 0, 3, 0, 3}));
    const std::vector<std::int64_t> ring{1, 2, 0};
    EXPECT_EQ(LoopArrangement::Roots(ring, LoopArrangement::Depths(ring)),
              (std::vector<std::size_t>{0, 0, 0}))
        << "a ring ends in one group";
}

TEST(LoopArrangement, BoxesThatMeetWithinTheTolerance) {
    const double t = LoopDLine::kOnLineTolerance;
    const std::vector<SegmentBox> boxes{
        {0, 0, 1, 1}, {1 + t / 2, 0, 2, 1}, {2 + 3 * t, 0, 3, 1}, SegmentBox::Empty(), {0.5, 0.5, 0.6, 0.6}};
    EXPECT_EQ(BoxesThatMeet(boxes), (std::vector<std::pair<std::size_t, std::size_t>>{{0, 1}, {0, 4}}));
}

}  // namespace
}  // namespace tgp
