#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "geometry/Matrix.h"
#include "geometry/UCS.h"
#include "support/Expectations.h"
#include "support/PointsNear.h"
#include "units/UnitIds.h"

namespace tgp {
namespace {

using test::ExpectError;
using test::PointsNear;

constexpr double kShortPi = 3.14159265358979;
const std::string kInvalidAxes = "The Ux, Uy, Uz set to the UCS object are invalid";

// A system turned by angle about z (so its axes are known in closed form), shifted to origin.
std::shared_ptr<UCS> TurnedSystem(double angle, const Point& origin, std::int16_t unit = mm_UnitID) {
    auto system = UCS::Create();
    system->SetUCS(origin, {std::cos(angle), std::sin(angle), 0}, {-std::sin(angle), std::cos(angle), 0});
    system->UnitID(unit);
    return system;
}

// A system with all three axes slanted.
std::shared_ptr<UCS> SlantedSystem(const Point& origin, std::int16_t unit = mm_UnitID) {
    const double s = 1 / std::sqrt(2.0), t = 1 / std::sqrt(6.0), r = 1 / std::sqrt(3.0);
    auto system = UCS::Create();
    const Point ux{s, s, 0}, uy{-t, t, 2 * t}, uz{r, -r, r};
    system->SetUCS(origin, ux, uy, &uz);
    system->UnitID(unit);
    return system;
}

Point Translated(const UCS& target, Point p, const UCS& source, bool asVector = false,
                 std::int16_t parentUnit = 0) {
    target.TranslateFromUCS(p, source, asVector, parentUnit);
    return p;
}

void ExpectAxes(const UCS& system, const Point& ux, const Point& uy, const Point& uz, double tolerance) {
    EXPECT_TRUE(PointsNear(system.Ux(), ux, tolerance));
    EXPECT_TRUE(PointsNear(system.Uy(), uy, tolerance));
    EXPECT_TRUE(PointsNear(system.Uz(), uz, tolerance));
}

TEST(UCSState, FreshSystemParentAndCopies) {
    const auto system = UCS::Create();
    EXPECT_EQ(system->Label(), "");
    EXPECT_EQ(system->Origin(), (Point{0, 0, 0}));
    ExpectAxes(*system, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, 0);
    EXPECT_EQ(system->UnitID(), mm_UnitID);
    const auto identity = system->Matrix();
    ASSERT_EQ(identity->RowCount(), 3);
    ASSERT_EQ(identity->ColumnCount(), 3);
    for (int i = 0; i < 9; ++i) EXPECT_EQ(identity->Item(i / 3, i % 3), i / 3 == i % 3 ? 1 : 0);
    // Without a parent each read makes a new default that is not stored.
    const auto first = system->Parent();
    ASSERT_NE(first, nullptr);
    EXPECT_NE(first, system->Parent());
    const auto parent = UCS::Create();
    system->Parent(parent);
    system->SetUCS({0, 0, 0}, {1, 0, 0}, {0, 1, 0});  // no parent given: the stored one stays
    EXPECT_EQ(system->Parent(), parent);
    const auto other = UCS::Create();
    system->SetUCS({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, nullptr, other);
    EXPECT_EQ(system->Parent(), other);

    const auto slanted = SlantedSystem({1, 2, 3});
    EXPECT_EQ(slanted->U1(), slanted->Ux());
    EXPECT_EQ(slanted->U2(), slanted->Uy());
    EXPECT_EQ(slanted->Normal(), slanted->Uz());
    EXPECT_EQ(slanted->U3(), slanted->Uz());
    slanted->Matrix()->LetItem(0, 0, 42);  // a copy
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(slanted->Matrix()->Item(i, 0), slanted->Ux()[i]);
        EXPECT_EQ(slanted->Matrix()->Item(i, 2), slanted->Uz()[i]);
    }
}

TEST(UCSSet, NormalisesAxesDerivesUzAndTestsTheCallersUz) {
    auto system = UCS::Create();
    system->SetUCS({5, 6}, {2, 2}, {-1, 1});  // plane axes get z = 0; the origin is kept as given
    EXPECT_EQ(system->Origin(), (Point{5, 6}));
    const double s = 1 / std::sqrt(2.0);
    ExpectAxes(*system, {s, s, 0}, {-s, s, 0}, {0, 0, 1}, 1e-15);
    system->SetUCS({0, 0, 0}, {1, 0, 0}, {1, 1, 0});  // Uy is not made perpendicular
    EXPECT_TRUE(PointsNear(system->Uy(), {s, s, 0}, 1e-15));
    const Point unitUz{0, 0, 1};
    system->SetUCS({0, 0, 0}, {2, 0, 0}, {0, 3, 0}, &unitUz);
    for (const Point& uz : {Point{0, 0, 2}, Point{0, 0, -1}, Point{0, 0.1, 1}, Point{1, 1}}) {
        auto fresh = UCS::Create();
        ExpectError(2411, kInvalidAxes, [&] { fresh->SetUCS({0, 0, 0}, {2, 0, 0}, {0, 3, 0}, &uz); });
    }
    ExpectError(2411, "Vector unitvec(u) = u = 0", [&] { system->SetUCS({0, 0, 0}, {0, 0, 0}, {0, 1, 0}); });
}

TEST(UCSSet, FailedRightHandTestLeavesAPartialUpdate) {
    auto system = UCS::Create();
    const auto parent = UCS::Create();
    system->Parent(parent);
    const Point badUz{0, 0, 2};
    ExpectError(2411, kInvalidAxes, [&] {
        system->SetUCS({7, 8, 9}, {0, 1, 0}, {-1, 0, 0}, &badUz, UCS::Create());
    });
    ExpectAxes(*system, {0, 1, 0}, {-1, 0, 0}, {0, 0, 1}, 0);  // the axes are new
    EXPECT_EQ(system->Origin(), (Point{0, 0, 0}));             // origin, matrix and parent are not
    EXPECT_EQ(system->Matrix()->Item(0, 0), 1);
    EXPECT_EQ(system->Parent(), parent);
}

TEST(UCSTranslate, PointsVectorsAndUnitsThroughTheParentUnit) {
    const auto world = UCS::Create();
    const auto source = TurnedSystem(kShortPi / 2, {10, 0, 0});
    // Local (0, 2, 5): two units along the turned y-axis, which points along world -x.
    EXPECT_TRUE(PointsNear(Translated(*world, {0, 2, 5}, *source), {8, 0, 5}, 1e-12));
    EXPECT_TRUE(PointsNear(Translated(*source, {0, 0, 0}, *world), {0, 10, 0}, 1e-12));
    EXPECT_TRUE(PointsNear(Translated(*world, {1, 0, 0}, *source, true), {0, 1, 0}, 1e-12));  // no origins
    EXPECT_TRUE(PointsNear(Translated(*source, {0, 1, 0}, *world, true), {1, 0, 0}, 1e-12));
    // The origin is in the parent unit: a metre system at (500, 0, 0) mm.
    const auto metres = TurnedSystem(0, {500, 0, 0}, m_UnitID);
    EXPECT_TRUE(PointsNear(Translated(*world, {1, 2, 0}, *metres, false, mm_UnitID), {1500, 2000, 0}, 1e-9));
    const auto target = TurnedSystem(0, {0, 0, 0}, m_UnitID);  // parent frame in centimetres
    EXPECT_TRUE(PointsNear(Translated(*target, {250, 0, 0}, *world, false, cm_UnitID), {0.25, 0, 0}, 1e-12));
}

TEST(UCSTranslate, RoundTripReturnsThePoint) {
    const std::vector<std::shared_ptr<UCS>> systems = {
        UCS::Create(), TurnedSystem(-2.5, {0, 0, 100}, cm_UnitID), SlantedSystem({4, 5, 6}),
        SlantedSystem({-1, 0, 2}, in_UnitID)};
    for (const auto& a : systems) {
        for (const auto& b : systems) {
            for (bool asVector : {false, true}) {
                const Point p{-7.5, 0.25, 1e3};
                Point q = p;
                a->TranslateToUCS(q, *b, asVector, ft_UnitID);
                a->TranslateFromUCS(q, *b, asVector, ft_UnitID);
                EXPECT_TRUE(PointsNear(q, p, 1e-9 * 1e3));
            }
        }
    }
}

TEST(UCSTranslate, Failures) {
    const auto world = UCS::Create();
    Point shortPoint{1, 2};
    // With a conversion the coordinates are read one by one; without, the matrix rejects the length.
    ExpectError(9, "Subscript out of range", [&] {
        world->TranslateFromUCS(shortPoint, *TurnedSystem(0, {0, 0, 0}, m_UnitID));
    });
    shortPoint = {1, 2};
    ExpectError(
        2411, "The MultiplyWithVector routine fails: vectorU doesnot have the same dimension with the Matrix",
        [&] { world->TranslateFromUCS(shortPoint, *world); });
    Point p{1, 2, 3};
    ExpectError(24111, "9 is an invalid UnitID for Length",
                [&] { world->TranslateFromUCS(p, *world, false, 9); });  // 9 is no length unit
    const auto shifted = TurnedSystem(0, {10, 0, 0});
    shifted->UnitID(-1);  // kept; it fails where it converts
    EXPECT_EQ(shifted->UnitID(), -1);
    p = {1, 2, 3};
    ExpectError(24111, "-1 is an invalid UnitID for Length", [&] { shifted->TranslateFromUCS(p, *world); });
    EXPECT_EQ(p, (Point{-9, 2, 3}));  // into the system, not yet into its unit
}

TEST(UCSEdits, ReverseMoveRotateAndCopy) {
    struct Case {
        bool x, y, z;
        Point ux, uy, uz;
    };
    const Case reversals[] = {{true, true, true, {-1, 0, 0}, {0, -1, 0}, {0, 0, 1}},  // the first flag acts
                              {false, true, true, {1, 0, 0}, {0, -1, 0}, {0, 0, 1}},
                              {false, false, true, {-1, 0, 0}, {0, 1, 0}, {0, 0, -1}},
                              {false, false, false, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    for (const Case& c : reversals) {
        auto system = UCS::Create();
        system->Reverse(c.x, c.y, c.z);
        ExpectAxes(*system, c.ux, c.uy, c.uz, 0);
        EXPECT_EQ(Translated(*system, {1, 2, 3}, *UCS::Create()), (Point{1, 2, 3}));  // the matrix stays
    }
    auto leftHanded = UCS::Create();
    leftHanded->Reverse(false, true);
    ExpectError(2411, kInvalidAxes, [&] { leftHanded->Copy(); });
    ExpectError(2411, kInvalidAxes, [&] { leftHanded->Rotate(0.5, false, false, true); });

    const Case rotations[] = {{false, false, true, {0, 1, 0}, {-1, 0, 0}, {0, 0, 1}},
                              {true, false, false, {1, 0, 0}, {0, 0, 1}, {0, -1, 0}},
                              {false, true, false, {0, 0, -1}, {0, 1, 0}, {1, 0, 0}},
                              {false, false, false, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
                              {true, true, true, {1, 0, 0}, {0, 0, 1}, {0, -1, 0}}};
    for (const Case& c : rotations) {
        auto system = UCS::Create();
        system->Move({5, 5, 5}, {6, 7, 8});
        system->Rotate(kShortPi / 2, c.x, c.y, c.z);
        ExpectAxes(*system, c.ux, c.uy, c.uz, 1e-12);
        EXPECT_EQ(system->Origin(), (Point{1, 2, 3}));
        for (int i = 0; i < 3; ++i) EXPECT_NEAR(system->Matrix()->Item(i, 0), c.ux[i], 1e-12);  // rebuilt
    }

    auto system = SlantedSystem({1, 2, 3}, cm_UnitID);
    system->Label("frame");
    const auto parent = UCS::Create();
    system->Parent(parent);
    const auto copy = system->Copy();
    ASSERT_NE(copy, system);
    EXPECT_EQ(copy->Label(), "frame");
    EXPECT_EQ(copy->UnitID(), cm_UnitID);
    EXPECT_EQ(copy->Origin(), system->Origin());
    ExpectAxes(*copy, system->Ux(), system->Uy(), system->Uz(), 1e-15);
    EXPECT_EQ(copy->Parent(), parent);
    copy->Move({0, 0, 0}, {1, 0, 0});
    EXPECT_EQ(system->Origin(), (Point{1, 2, 3}));
}

TEST(UCSParallel, ComparesTheNormalsEitherWay) {
    auto flipped = UCS::Create();
    const Point down{0, 0, -1};
    flipped->SetUCS({0, 0, 0}, {0, 1, 0}, {1, 0, 0}, &down);
    EXPECT_TRUE(flipped->ParallelTo(*UCS::Create()));
    EXPECT_TRUE(TurnedSystem(1.0, {5, 5, 5})->ParallelTo(*UCS::Create()));
    EXPECT_FALSE(SlantedSystem({0, 0, 0})->ParallelTo(*UCS::Create()));
}

TEST(UCSNested, SeeMeAsThenBackToTheWorld) {
    const auto me = SlantedSystem({4, -2, 7});
    me->Label("me");
    const auto viewer = TurnedSystem(0.9, {1, 2, 3});
    const auto image = UCS::Create();
    me->RetrieveUCS_SeeMeAs(*viewer, *image);
    EXPECT_EQ(image->Parent(), viewer);
    EXPECT_EQ(image->Label(), "me");
    // A point of mine, expressed through the image inside the viewer, lands where it should.
    const Point local{1, 2, 3};
    EXPECT_TRUE(
        PointsNear(Translated(*UCS::Create(), local, *image), Translated(*viewer, local, *me), 1e-12));
    // Back into the world: the viewer re-expresses the image in its own frame, which gives me again.
    viewer->TranslateMyUCSToWorld(*image);
    EXPECT_TRUE(PointsNear(image->Origin(), me->Origin(), 1e-12));
    ExpectAxes(*image, me->Ux(), me->Uy(), me->Uz(), 1e-12);

    const auto parent = TurnedSystem(kShortPi / 2, {10, 0, 0});
    const auto grandparent = UCS::Create();
    parent->Parent(grandparent);
    auto child = UCS::Create();  // given in its parent's coordinates
    child->SetUCS({1, 0, 0}, {1, 0, 0}, {0, 1, 0}, nullptr, parent);
    parent->TranslateMyUCSToWorld(*child);
    EXPECT_EQ(child->Parent(), grandparent);
    EXPECT_TRUE(PointsNear(child->Origin(), {10, 1, 0}, 1e-12));
    ExpectAxes(*child, {0, 1, 0}, {-1, 0, 0}, {0, 0, 1}, 1e-12);
}

}  // namespace
}  // namespace tgp
