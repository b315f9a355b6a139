// Collections of loops: the containment hierarchy, composite properties, split, sort and overlaps;
// the arrangement and the ordered sweep against every pair.

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "profiles/Loop7.h"
#include "profiles/Loop7s.h"
#include "profiles/LoopArrangement.h"
#include "profiles/LoopPlacement.h"
#include "profiles/OrderedSweep.h"
#include "profiles/SegmentSweep.h"
#include "support/ProfileTestShapes.h"

namespace tgp {
namespace {

// Collections of loops: the containment hierarchy, composite properties, split, sort and overlaps.
using test::Circle;
using test::ExpectError;
using test::LoopOf;
using test::Outline;
using test::Rectangle;

Outline Square(double cx, double cy, double side, bool clockwise = true) {
    Outline o = Rectangle(cx - side / 2, cy - side / 2, side, side);
    return clockwise ? o : o.Reversed();
}

// A square plate with a square hole holding a square island with a hole of its own, and a plate
// apart; the loops run either way and are added in no particular order.
struct Nested {
    std::shared_ptr<Loop7> plate = LoopOf(Square(0, 0, 100, false));
    std::shared_ptr<Loop7> hole = LoopOf(Square(0, 0, 80));
    std::shared_ptr<Loop7> island = LoopOf(Square(5, 0, 40, false));
    std::shared_ptr<Loop7> islandHole = LoopOf(Square(5, 0, 10, false));
    std::shared_ptr<Loop7> apart = LoopOf(Square(200, 50, 20));
    std::shared_ptr<Loop7s> all = Loop7s::Create();
    Nested() {
        for (const auto& loop : {islandHole, plate, apart, hole, island}) all->Add(loop);
    }
};

TEST(Loop7s, HierarchyOfNestedIslandsWhateverTheDirections) {
    Nested n;
    struct Row {
        std::size_t index;
        std::shared_ptr<Loop7> parent;
        int depth;
    };
    for (const Row& r : {Row{1, n.island, 3}, Row{2, nullptr, 0}, Row{3, nullptr, 0}, Row{4, n.plate, 1},
                         Row{5, n.hole, 2}}) {
        EXPECT_EQ(n.all->Parent(r.index), r.parent) << r.index;
        EXPECT_EQ(n.all->Depth(r.index), r.depth) << r.index;
        EXPECT_EQ(n.all->IsHole(r.index), r.depth % 2 == 1) << r.index;
        EXPECT_EQ(n.all->Item(r.index)->IsVoid(), r.depth % 2 == 1) << "the loops carry the hole flag";
    }
}

TEST(Loop7s, CompositePropertiesAddBoundariesAndSubtractHoles) {
    Nested n;
    const double area = 100 * 100 - 80 * 80 + 40 * 40 - 10 * 10 + 20 * 20;
    EXPECT_NEAR(n.all->Area(), area, 1e-9);
    EXPECT_NEAR(n.all->Length(), 4 * (100 + 80 + 40 + 10 + 20), 1e-9);
    // Centroid: the nested part's moments about x = 0 come from the island (centred on x = 5) only.
    const double mx = (40 * 40 - 10 * 10) * 5.0 + 20 * 20 * 200.0, my = 20 * 20 * 50.0;
    const Point c = n.all->Centroid();
    EXPECT_NEAR(c[0], mx / area, 1e-9);
    EXPECT_NEAR(c[1], my / area, 1e-9);
    auto square = [](double side) { return std::pow(side, 4) / 12; };
    const double ixOrigin =
        square(100) - square(80) + square(40) - square(10) + square(20) + 400 * 50.0 * 50.0;
    EXPECT_NEAR(n.all->MomentOfInertiaX(), ixOrigin - area * c[1] * c[1], 1e-6);
    auto block = n.all->InertiaBlock();
    block->Inverse();
    EXPECT_NEAR(n.all->Area(), area, 1e-9) << "the composite handed out is a copy";
}

TEST(Loop7s, SplitGivesOneCollectionPerOutermostLoop) {
    Nested n;
    const auto parts = n.all->Split();
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_EQ(parts[0]->Loops(),
              (std::vector<std::shared_ptr<Loop7>>{n.islandHole, n.plate, n.hole, n.island}));
    EXPECT_EQ(parts[1]->Loops(), (std::vector<std::shared_ptr<Loop7>>{n.apart}));
    EXPECT_NEAR(parts[0]->Area(), 100 * 100 - 80 * 80 + 40 * 40 - 10 * 10, 1e-9);
}

TEST(Loop7s, SortByEachKeyStably) {
    struct Case {
        Loop7sSortKey key;
        bool descending;
        std::vector<double> sizes;  // the side of each square, in the sorted order
    };
    // Sides and centres: 10 at (5, 0), 100 at (0, 0), 20 at (200, 50), 80 at (0, 0), 40 at (5, 0).
    const Case cases[] = {
        {SortByArea, false, {10, 20, 40, 80, 100}},      {SortByArea, true, {100, 80, 40, 20, 10}},
        {SortByCentroidX, false, {100, 80, 10, 40, 20}}, {SortByCentroidY, false, {10, 100, 80, 40, 20}},
        {SortByDepth, false, {100, 20, 80, 40, 10}},     {SortByDepth, true, {10, 40, 80, 100, 20}},
    };
    for (const Case& c : cases) {
        Nested n;
        n.all->Sort(c.key, c.descending);
        std::vector<double> sizes;
        for (const auto& loop : n.all->Loops()) sizes.push_back(std::sqrt(loop->AreaAbs()));
        for (double& s : sizes) s = std::round(s);
        EXPECT_EQ(sizes, c.sizes) << c.key << (c.descending ? " descending" : "");
    }
    Nested n;
    ExpectError(5, "Invalid procedure call or argument", [&] { n.all->Sort(static_cast<Loop7sSortKey>(7)); });
}

TEST(Loop7s, OverlappingLoopsAreAnErrorNamingBoth) {
    struct Case {
        Outline first, second;
    };
    const Case cases[] = {
        {Square(0, 0, 10), Square(5, 5, 10)},          // corners crossing
        {Square(0, 0, 10), Square(0, 0, 10)},          // the same loop twice
        {Square(0, 0, 10), Circle(5, 0, 3)},           // a circle across an edge
        {Square(0, 0, 10), Rectangle(-5, -2, 12, 4)},  // sharing an edge, crossing another
    };
    for (const Case& c : cases) {
        auto all = Loop7s::Create();
        all->Add(LoopOf(c.first));
        auto second = LoopOf(c.second);
        second->Handle("2F");
        all->Add(second);
        ExpectError(
            2411,
            "Loop7s: loop 1 and loop 2 (handle 2F) overlap (their interiors cross); draw touching parts "
            "side by side, or a hole inside its boundary",
            [&] { all->Depth(1); });
    }
}

// A plate girder drawn as three touching plates is three solids summed: the I-section as one loop.
TEST(Loop7s, TouchingPlatesAreSummed) {
    auto girder = Loop7s::Create();
    girder->Add(LoopOf(Rectangle(-150, 580, 300, 20)));  // top flange
    girder->Add(LoopOf(Rectangle(-6, 20, 12, 560)));     // web
    girder->Add(LoopOf(Rectangle(-200, 0, 400, 20)));    // bottom flange, wider
    const Outline one = Outline::Polygon({-200, 0,   -200, 20,  -6, 20,  -6, 580, -150, 580, -150, 600,
                                          150,  600, 150,  580, 6,  580, 6,  20,  200,  20,  200,  0});
    auto single = LoopOf(one);
    for (std::size_t i = 1; i <= 3; ++i) EXPECT_EQ(girder->Depth(i), 0);
    EXPECT_NEAR(girder->Area(), single->AreaAbs(), 1e-9);
    EXPECT_NEAR(girder->MomentOfInertiaX(), std::fabs(single->MomentOfInertiaX()),
                1e-12 * std::fabs(single->MomentOfInertiaX()));
    EXPECT_NEAR(girder->Centroid()[1], single->Centroid()[1], 1e-12);
}

TEST(Loop7s, AHoleTouchingItsBoundaryIsStillAHoleAndAChangedLoopIsArrangedAgain) {
    auto section = Loop7s::Create();
    section->Add(LoopOf(Rectangle(0, 0, 100, 50)));
    section->Add(LoopOf(Rectangle(0, 10, 30, 20)));  // a notch sharing the left edge
    section->Add(LoopOf(Circle(70, 50 - 10, 10)));   // a hole touching the top edge at one point
    EXPECT_EQ(section->Depth(2), 1);
    EXPECT_EQ(section->Depth(3), 1);
    EXPECT_NEAR(section->Area(), 5000 - 600 - M_PI * 100, 1e-9);
    section = Loop7s::Create();  // a changed loop is arranged again
    auto outer = LoopOf(Square(0, 0, 100));
    auto inner = LoopOf(Square(0, 0, 20));
    section->Add(outer);
    section->Add(inner);
    EXPECT_EQ(section->Depth(2), 1);
    inner->Move({500, 0, 0});
    EXPECT_EQ(section->Depth(2), 0) << "moved out of the plate, it is a plate of its own";
    EXPECT_NEAR(section->Area(), 100 * 100 + 20 * 20, 1e-9);
    section->Remove(1);
    EXPECT_EQ(section->Count(), 1u);
    EXPECT_NEAR(section->Area(), 400, 1e-9);
}

TEST(Loop7s, IndicesAndArguments) {
    auto section = Loop7s::Create();
    ExpectError(2411, "Loop7s: the collection is empty, so it has no section properties",
                [&] { section->InertiaBlock(); });
    ExpectError(424, "Object required", [&] { section->Add(nullptr); });
    section->Add(LoopOf(Square(0, 0, 1)));
    for (std::size_t bad : {0, 2}) {
        ExpectError(9, "Subscript out of range", [&] { section->Item(bad); });
        ExpectError(9, "Subscript out of range", [&] { section->Remove(bad); });
    }
    auto bow = Loop7::Create();
    bow->InitFromCoordinates(std::vector<double>{0, 0, 10, 10, 10, 0, 0, 10},
                             std::vector<double>{0, 0, 0, 0});
    section->Add(bow);
    ExpectError(5, "Invalid Loop to generate Inertia Properties: Loop should not cut itself",
                [&] { section->Depth(1); });
    section->Clear();
    EXPECT_EQ(section->Count(), 0u);
}

// Loops arranged through the index against every pair placed in order (how a collection was
// arranged before it had an index): the same overlaps in the same order, the same boundaries that
// meet, the same parents, on random sets of squares and circles that nest, touch, overlap and repeat.
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

// The ordered sweep finds a crossing wherever comparing every pair of segments finds one, on
// outlines built to be awkward: vertices on a small integer grid (shared vertices, collinear and
// touching edges, vertical edges), arcs of every size, stars whose teeth each reach far in x.
// The pair rule of the tests: any common point but the joint of neighbours.
bool Crossing(std::span<const LoopDLine> s, std::uint32_t i, std::uint32_t j) {
    std::vector<Point3> points;
    if (!s[i].IntersectWithDline(s[j], &points)) return false;
    const std::size_t n = s.size(), lo = std::min(i, j), hi = std::max(i, j);
    for (const Point3& p : points) {
        const bool joint = (hi == lo + 1 && Distance2(p, s[lo].EndPoint()) < 1e-9) ||
                           (lo == 0 && hi == n - 1 && Distance2(p, s[hi].EndPoint()) < 1e-9);
        if (!joint) return true;
    }
    return false;
}

bool AllPairsCross(std::span<const LoopDLine> s) {
    for (std::uint32_t i = 0; i < s.size(); ++i) {
        for (std::uint32_t j = i + 1; j < s.size(); ++j) {
            if (Crossing(s, i, j)) return true;
        }
    }
    return false;
}

// n vertices on a grid of the given size; every third outline has arcs.
Outline RandomOutline(std::mt19937& rng, int n, int grid, bool arcs) {
    std::uniform_int_distribution<int> coordinate(0, grid);
    std::uniform_real_distribution<double> bulge(-1.5, 1.5);
    Outline o;
    for (int i = 0; i < n; ++i) o.Add(coordinate(rng), coordinate(rng), arcs && i % 2 ? bulge(rng) : 0.0);
    return o;
}

// Teeth between radii 5 and 10; `fold` swaps two neighbouring teeth tips, which makes it cross.
Outline Star(int teeth, int fold, double bulge) {
    Outline o;
    for (int i = 0; i < 2 * teeth; ++i) {
        const int k = (fold >= 0 && i == 2 * fold) ? i + 2 : (fold >= 0 && i == 2 * fold + 2) ? i - 2 : i;
        const double a = M_PI * k / teeth, r = k % 2 ? 5 : 10;
        o.Add(r * std::cos(a), r * std::sin(a), i % 3 == 0 ? bulge : 0.0);
    }
    return o;
}

TEST(OrderedSweep, FindsACrossingWhereAllPairsDo) {
    std::mt19937 rng(20261124);
    int crossing = 0, simple = 0;
    for (int trial = 0; trial < 20000; ++trial) {
        const Outline o = trial % 50 == 0 ? Star(3 + trial % 40, trial % 7 ? -1 : 1, trial % 3 ? 0.0 : 0.05)
                                          : RandomOutline(rng, 3 + trial % 24, 2 + trial % 9, trial % 3 == 0);
        auto loop = LoopOf(o);
        const auto s = loop->Segments();
        if (s.size() < 3) continue;
        const bool expected = AllPairsCross(s);
        (expected ? crossing : simple) += 1;
        const bool found =
            SweepNeighbours(s, [&](std::uint32_t i, std::uint32_t j) { return Crossing(s, i, j); });
        ASSERT_EQ(found, expected) << "trial " << trial;
    }
    EXPECT_GT(crossing, 5000);  // both outcomes are exercised
    EXPECT_GT(simple, 1000);
}

// An arc that turns back in x starts no run of segments that advance one way (within such a run no
// pair is compared): here it reaches past the next segment and is crossed by the one after, in a
// loop of a few segments (compared pair by pair) and in one of many (swept).
TEST(OrderedSweep, AnArcThatTurnsBackInXIsComparedWithItsRun) {
    for (const int extra : {0, 8}) {
        Outline o;
        o.Add(0, 0, 2);  // a three-quarter circle below the chord, reaching to x = 1.125
        for (const auto& [x, y] : {std::pair{1.0, 0.0}, {1.05, 5.0}, {1.1, -5.0}, {-3.0, -5.0}}) o.Add(x, y);
        for (int k = 1; k <= extra; ++k) o.Add(-3, -5 + 5.0 * k / (extra + 1));
        o.Add(-3, 0);
        auto loop = LoopOf(o);
        std::vector<Point> crossings;
        ASSERT_TRUE(loop->IsSelfIntersect(&crossings)) << extra;
        ASSERT_EQ(crossings.size(), 2u);
        EXPECT_NEAR(crossings[0][0], 1.078, 1e-3);
        EXPECT_TRUE(FirstSelfIntersection(loop->Segments(), true).has_value());
    }
}

// Stars large enough that the box sweep hands over to the ordered sweep, through the loop's own
// members: the properties of a simple one, and the crossing of a folded one.
TEST(OrderedSweep, DecidesLargeStars) {
    struct Case {
        int fold;
        double bulge;
    };
    for (const Case c : {Case{-1, 0.0}, Case{-1, 0.0002}, Case{700, 0.0}, Case{1200, 0.0002}}) {
        auto loop = LoopOf(Star(4000, c.fold, c.bulge));
        EXPECT_EQ(loop->IsSelfIntersect(), c.fold >= 0) << c.fold;
        const auto first = FirstSelfIntersection(loop->Segments(), true);
        ASSERT_EQ(first.has_value(), c.fold >= 0);
        if (!first) {
            EXPECT_GT(loop->AreaAbs(), M_PI * 25);
            continue;
        }
        bool on = false;
        loop->PointIsInside(ToPoint(*first), &on);
        EXPECT_TRUE(on);
    }
}

}  // namespace
}  // namespace tgp
