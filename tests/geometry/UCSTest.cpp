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

// ---- state and defaults ----------------------------------------------------------------------

TEST(UCSState, FreshSystemIsTheWorldInMillimetres) {
    const auto system = UCS::Create();
    EXPECT_EQ(system->Label(), "");
    EXPECT_EQ(system->Origin(), (Point{0, 0, 0}));
    EXPECT_EQ(system->Ux(), (Point{1, 0, 0}));
    EXPECT_EQ(system->Uy(), (Point{0, 1, 0}));
    EXPECT_EQ(system->Uz(), (Point{0, 0, 1}));
    EXPECT_EQ(system->UnitID(), mm_UnitID);
    const auto matrix = system->Matrix();
    ASSERT_EQ(matrix->RowCount(), 3);
    ASSERT_EQ(matrix->ColumnCount(), 3);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) EXPECT_EQ(matrix->Item(i, j), i == j ? 1 : 0);
    for (const Point& p : {Point{1, 2, 3}, Point{-4.5, 0, 1e6}})
        EXPECT_EQ(Translated(*system, p, *UCS::Create()), p);
}

TEST(UCSState, ParentWithoutOneIsANewDefaultThatIsNotStored) {
    const auto system = UCS::Create();
    const auto first = system->Parent();
    ASSERT_NE(first, nullptr);
    EXPECT_NE(first, system->Parent());
    first->Label("changed");
    EXPECT_EQ(system->Parent()->Label(), "");

    const auto parent = UCS::Create();
    system->Parent(parent);
    EXPECT_EQ(system->Parent(), parent);
    system->SetUCS({0, 0, 0}, {1, 0, 0}, {0, 1, 0});  // no parent given: the stored one stays
    EXPECT_EQ(system->Parent(), parent);
    const auto other = UCS::Create();
    system->SetUCS({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, nullptr, other);
    EXPECT_EQ(system->Parent(), other);
}

TEST(UCSState, AxisGettersAndMatrixAreCopies) {
    const auto system = SlantedSystem({1, 2, 3});
    EXPECT_EQ(system->U1(), system->Ux());
    EXPECT_EQ(system->U2(), system->Uy());
    EXPECT_EQ(system->U3(), system->Uz());
    EXPECT_EQ(system->Normal(), system->Uz());
    const auto matrix = system->Matrix();
    matrix->LetItem(0, 0, 42);
    EXPECT_NE(system->Matrix()->Item(0, 0), 42);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(system->Matrix()->Item(i, 0), system->Ux()[i]);
        EXPECT_EQ(system->Matrix()->Item(i, 2), system->Uz()[i]);
    }
}

// ---- SetUCS ----------------------------------------------------------------------------------

TEST(UCSSet, NormalisesAxesAndDerivesUz) {
    auto system = UCS::Create();
    system->SetUCS({0, 0, 0}, {2, 0, 0}, {0, 3, 0});
    EXPECT_EQ(system->Ux(), (Point{1, 0, 0}));
    EXPECT_EQ(system->Uy(), (Point{0, 1, 0}));
    EXPECT_EQ(system->Uz(), (Point{0, 0, 1}));

    system->SetUCS({5, 6}, {1, 1}, {-1, 1});  // plane axes get z = 0; the origin is kept as given
    EXPECT_EQ(system->Origin(), (Point{5, 6}));
    EXPECT_TRUE(PointsNear(system->Uz(), {0, 0, 1}, 1e-15));
    EXPECT_EQ(system->Ux().size(), 3u);

    system->SetUCS({0, 0, 0}, {1, 0, 0}, {1, 1, 0});  // Uy is not made perpendicular
    EXPECT_TRUE(PointsNear(system->Uy(), {1 / std::sqrt(2.0), 1 / std::sqrt(2.0), 0}, 1e-15));
}

TEST(UCSSet, RightHandTestAgainstTheCallersUz) {
    auto system = UCS::Create();
    const Point unitUz{0, 0, 1};
    system->SetUCS({0, 0, 0}, {2, 0, 0}, {0, 3, 0}, &unitUz);
    EXPECT_EQ(system->Uz(), unitUz);
    for (const Point& uz : {Point{0, 0, 2}, Point{0, 0, -1}, Point{0, 0.1, 1}, Point{1, 1}}) {
        auto fresh = UCS::Create();
        ExpectError(2411, kInvalidAxes, [&] { fresh->SetUCS({0, 0, 0}, {2, 0, 0}, {0, 3, 0}, &uz); });
    }
}

TEST(UCSSet, FailedRightHandTestLeavesAPartialUpdate) {
    auto system = UCS::Create();
    const auto parent = UCS::Create();
    system->Parent(parent);
    const Point badUz{0, 0, 2};
    ExpectError(2411, kInvalidAxes, [&] {
        system->SetUCS({7, 8, 9}, {0, 1, 0}, {-1, 0, 0}, &badUz, UCS::Create());
    });
    EXPECT_EQ(system->Ux(), (Point{0, 1, 0}));  // the axes are new
    EXPECT_EQ(system->Uy(), (Point{-1, 0, 0}));
    EXPECT_EQ(system->Uz(), (Point{0, 0, 1}));
    EXPECT_EQ(system->Origin(), (Point{0, 0, 0}));  // origin, matrix and parent are not
    EXPECT_EQ(system->Matrix()->Item(0, 0), 1);
    EXPECT_EQ(system->Parent(), parent);
}

TEST(UCSSet, ZeroAxisFailsInUnitVec) {
    auto system = UCS::Create();
    ExpectError(2411, "Vector unitvec(u) = u = 0", [&] { system->SetUCS({0, 0, 0}, {0, 0, 0}, {0, 1, 0}); });
}

// ---- translation ---------------------------------------------------------------------------

TEST(UCSTranslate, SourcePointIntoTheWorld) {
    const auto world = UCS::Create();
    const auto source = TurnedSystem(kShortPi / 2, {10, 0, 0});
    // Local (1, 0, 0) lies one unit along the turned x-axis, which points along world y.
    EXPECT_TRUE(PointsNear(Translated(*world, {1, 0, 0}, *source), {10, 1, 0}, 1e-12));
    EXPECT_TRUE(PointsNear(Translated(*world, {0, 2, 5}, *source), {8, 0, 5}, 1e-12));
    // Into the turned system: the world origin is 10 units along its -y.
    EXPECT_TRUE(PointsNear(Translated(*source, {0, 0, 0}, *world), {0, 10, 0}, 1e-12));
}

TEST(UCSTranslate, VectorsIgnoreBothOrigins) {
    const auto shifted = TurnedSystem(0, {10, 0, 0});
    const auto world = UCS::Create();
    EXPECT_EQ(Translated(*world, {1, 0, 0}, *shifted, true), (Point{1, 0, 0}));
    EXPECT_EQ(Translated(*shifted, {1, 0, 0}, *world, true), (Point{1, 0, 0}));
    const auto turned = TurnedSystem(kShortPi / 2, {3, 4, 5});
    EXPECT_TRUE(PointsNear(Translated(*world, {1, 0, 0}, *turned, true), {0, 1, 0}, 1e-12));
}

TEST(UCSTranslate, ConvertsUnitsThroughTheParentUnit) {
    const auto metres = TurnedSystem(0, {0, 0, 0}, m_UnitID);
    const auto millimetres = UCS::Create();
    EXPECT_TRUE(
        PointsNear(Translated(*millimetres, {1, 0, 0}, *metres, false, mm_UnitID), {1000, 0, 0}, 1e-9));
    // The origin is in the parent unit: a metre system at (500, 0, 0) mm.
    const auto shifted = TurnedSystem(0, {500, 0, 0}, m_UnitID);
    EXPECT_TRUE(
        PointsNear(Translated(*millimetres, {1, 2, 0}, *shifted, false, mm_UnitID), {1500, 2000, 0}, 1e-9));
    // Parent frame in centimetres, target in metres.
    const auto target = TurnedSystem(0, {0, 0, 0}, m_UnitID);
    EXPECT_TRUE(
        PointsNear(Translated(*target, {250, 0, 0}, *millimetres, false, cm_UnitID), {0.25, 0, 0}, 1e-12));
}

TEST(UCSTranslate, RoundTripReturnsThePoint) {
    const std::vector<std::shared_ptr<UCS>> systems = {
        UCS::Create(), TurnedSystem(0.7, {1, -2, 3}), TurnedSystem(-2.5, {0, 0, 100}, cm_UnitID),
        SlantedSystem({4, 5, 6}), SlantedSystem({-1, 0, 2}, in_UnitID)};
    const std::vector<Point> points = {{0, 0, 0}, {1, 2, 3}, {-7.5, 0.25, 1e3}};
    for (std::size_t a = 0; a < systems.size(); ++a) {
        for (std::size_t b = 0; b < systems.size(); ++b) {
            for (const auto& p : points) {
                for (bool asVector : {false, true}) {
                    Point q = p;
                    systems[a]->TranslateToUCS(q, *systems[b], asVector, ft_UnitID);
                    systems[a]->TranslateFromUCS(q, *systems[b], asVector, ft_UnitID);
                    EXPECT_TRUE(PointsNear(q, p, 1e-9 * (1 + std::fabs(p[2])))) << a << " " << b;
                }
            }
        }
    }
}

TEST(UCSTranslate, Failures) {
    const auto world = UCS::Create();
    const auto metres = TurnedSystem(0, {0, 0, 0}, m_UnitID);
    Point shortPoint{1, 2};
    // With a conversion the coordinates are read one by one; without, the matrix rejects the length.
    ExpectError(9, "Subscript out of range", [&] { world->TranslateFromUCS(shortPoint, *metres); });
    shortPoint = {1, 2};
    ExpectError(
        2411, "The MultiplyWithVector routine fails: vectorU doesnot have the same dimension with the Matrix",
        [&] { world->TranslateFromUCS(shortPoint, *world); });
    Point p{1, 2, 3};
    try {
        world->TranslateFromUCS(p, *world, false, 9);  // 9 is no length unit
        ADD_FAILURE() << "no error";
    } catch (const Error& e) {
        EXPECT_EQ(e.number(), 24111);
        EXPECT_EQ(e.description().rfind("9 is an invalid UnitID", 0), 0u) << e.description();
    }
}

TEST(UCSTranslate, AnInvalidSystemUnitFailsAfterThePointWasMoved) {
    const auto shifted = TurnedSystem(0, {10, 0, 0});
    shifted->UnitID(-1);  // kept; it fails where it converts
    EXPECT_EQ(shifted->UnitID(), -1);
    Point p{1, 2, 3};
    ExpectError(24111, "-1 is an invalid UnitID for Length",
                [&] { shifted->TranslateFromUCS(p, *UCS::Create()); });
    EXPECT_EQ(p, (Point{-9, 2, 3}));  // into the system, not yet into its unit
}

// ---- moving, turning, flipping --------------------------------------------------------------

TEST(UCSReverse, FirstFlagActsAndTheMatrixStays) {
    struct Case {
        bool x, y, z;
        Point ux, uy, uz;
    };
    const std::vector<Case> cases = {
        {true, true, true, {-1, 0, 0}, {0, -1, 0}, {0, 0, 1}},
        {false, true, true, {1, 0, 0}, {0, -1, 0}, {0, 0, 1}},
        {false, false, true, {-1, 0, 0}, {0, 1, 0}, {0, 0, -1}},
        {false, false, false, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
    };
    for (const auto& c : cases) {
        auto system = UCS::Create();
        system->Reverse(c.x, c.y, c.z);
        EXPECT_EQ(system->Ux(), c.ux);
        EXPECT_EQ(system->Uy(), c.uy);
        EXPECT_EQ(system->Uz(), c.uz);
        EXPECT_EQ(Translated(*system, {1, 2, 3}, *UCS::Create()), (Point{1, 2, 3}));  // old axes still used
    }
}

TEST(UCSReverse, ALeftHandedSystemCannotBeCopiedOrTurned) {
    auto system = UCS::Create();
    system->Reverse(false, true);
    ExpectError(2411, kInvalidAxes, [&] { system->Copy(); });
    ExpectError(2411, kInvalidAxes, [&] { system->Rotate(0.5, false, false, true); });
}

TEST(UCSMove, ShiftsTheOriginOnly) {
    auto system = UCS::Create();
    system->Move({0, 0, 0}, {1, 2, 3});
    EXPECT_EQ(system->Origin(), (Point{1, 2, 3}));
    system->Move({5, 5, 5}, {4, 5, 7});
    EXPECT_EQ(system->Origin(), (Point{0, 2, 5}));
    EXPECT_EQ(system->Ux(), (Point{1, 0, 0}));
}

TEST(UCSRotate, TurnsTheOtherTwoAxes) {
    struct Case {
        bool x, y, z;
        Point ux, uy, uz;
    };
    const std::vector<Case> cases = {
        {false, false, true, {0, 1, 0}, {-1, 0, 0}, {0, 0, 1}},
        {true, false, false, {1, 0, 0}, {0, 0, 1}, {0, -1, 0}},
        {false, true, false, {0, 0, -1}, {0, 1, 0}, {1, 0, 0}},
        {false, false, false, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
        {true, true, true, {1, 0, 0}, {0, 0, 1}, {0, -1, 0}},
    };
    for (const auto& c : cases) {
        auto system = UCS::Create();
        system->Move({0, 0, 0}, {1, 2, 3});
        system->Rotate(kShortPi / 2, c.x, c.y, c.z);
        EXPECT_TRUE(PointsNear(system->Ux(), c.ux, 1e-12));
        EXPECT_TRUE(PointsNear(system->Uy(), c.uy, 1e-12));
        EXPECT_TRUE(PointsNear(system->Uz(), c.uz, 1e-12));
        EXPECT_EQ(system->Origin(), (Point{1, 2, 3}));
        for (int i = 0; i < 3; ++i) EXPECT_NEAR(system->Matrix()->Item(i, 0), c.ux[i], 1e-12);  // rebuilt
    }
}

TEST(UCSRotate, ThereAndBackAgain) {
    auto system = SlantedSystem({1, 1, 1});
    const Point ux = system->Ux(), uy = system->Uy(), uz = system->Uz();
    for (double angle : {0.3, -2.0, kShortPi}) {
        system->Rotate(angle, false, true);
        system->Rotate(-angle, false, true);
        EXPECT_TRUE(PointsNear(system->Ux(), ux, 1e-12));
        EXPECT_TRUE(PointsNear(system->Uy(), uy, 1e-12));
        EXPECT_TRUE(PointsNear(system->Uz(), uz, 1e-12));
    }
}

TEST(UCSCopy, IndependentWithTheSameState) {
    auto system = SlantedSystem({1, 2, 3}, cm_UnitID);
    system->Label("frame");
    const auto parent = UCS::Create();
    system->Parent(parent);
    const auto copy = system->Copy();
    ASSERT_NE(copy, system);
    EXPECT_EQ(copy->Label(), "frame");
    EXPECT_EQ(copy->UnitID(), cm_UnitID);
    EXPECT_EQ(copy->Origin(), system->Origin());
    EXPECT_TRUE(PointsNear(copy->Ux(), system->Ux(), 1e-15));
    EXPECT_TRUE(PointsNear(copy->Uz(), system->Uz(), 1e-15));
    EXPECT_EQ(copy->Parent(), parent);
    copy->Move({0, 0, 0}, {1, 0, 0});
    copy->Label("other");
    EXPECT_EQ(system->Origin(), (Point{1, 2, 3}));
    EXPECT_EQ(system->Label(), "frame");
}

TEST(UCSParallel, ComparesTheNormalsEitherWay) {
    auto flipped = UCS::Create();
    const Point down{0, 0, -1};
    flipped->SetUCS({0, 0, 0}, {0, 1, 0}, {1, 0, 0}, &down);
    EXPECT_TRUE(flipped->ParallelTo(*UCS::Create()));
    EXPECT_TRUE(TurnedSystem(1.0, {5, 5, 5})->ParallelTo(*UCS::Create()));
    EXPECT_FALSE(SlantedSystem({0, 0, 0})->ParallelTo(*UCS::Create()));
}

// ---- systems within systems ------------------------------------------------------------------

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
    const Point inViewer = Translated(*UCS::Create(), local, *image);
    const Point expected = Translated(*viewer, local, *me);
    EXPECT_TRUE(PointsNear(inViewer, expected, 1e-12));

    // Back into the world: the viewer re-expresses the image in its own frame, which gives me again.
    viewer->TranslateMyUCSToWorld(*image);
    EXPECT_TRUE(PointsNear(image->Origin(), me->Origin(), 1e-12));
    EXPECT_TRUE(PointsNear(image->Ux(), me->Ux(), 1e-12));
    EXPECT_TRUE(PointsNear(image->Uy(), me->Uy(), 1e-12));
    EXPECT_TRUE(PointsNear(image->Uz(), me->Uz(), 1e-12));
}

TEST(UCSNested, ChildGivenInItsParentsCoordinates) {
    const auto parent = TurnedSystem(kShortPi / 2, {10, 0, 0});
    const auto grandparent = UCS::Create();
    parent->Parent(grandparent);
    auto child = UCS::Create();
    child->SetUCS({1, 0, 0}, {1, 0, 0}, {0, 1, 0}, nullptr, parent);
    parent->TranslateMyUCSToWorld(*child);
    EXPECT_EQ(child->Parent(), grandparent);
    EXPECT_TRUE(PointsNear(child->Origin(), {10, 1, 0}, 1e-12));
    EXPECT_TRUE(PointsNear(child->Ux(), {0, 1, 0}, 1e-12));
    EXPECT_TRUE(PointsNear(child->Uy(), {-1, 0, 0}, 1e-12));
}

}  // namespace
}  // namespace tgp
