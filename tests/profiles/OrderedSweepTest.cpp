// The ordered sweep finds a crossing wherever comparing every pair of segments finds one, on
// outlines built to be awkward: vertices on a small integer grid (shared vertices, collinear and
// touching edges, vertical edges), arcs of every size, stars whose teeth each reach far in x.

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "profiles/Loop7.h"
#include "profiles/OrderedSweep.h"
#include "profiles/SegmentSweep.h"
#include "support/ProfileTestShapes.h"

namespace tgp {
namespace {

using test::LoopOf;
using test::Outline;

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
