// Collections of loops: the containment hierarchy, composite properties, split, sort and overlaps.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "profiles/Loop7s.h"
#include "support/ProfileTestShapes.h"

namespace tgp {
namespace {

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

}  // namespace
}  // namespace tgp
