// One rule for the whole kernel: finite input never gives an infinity or a NaN. An overflowing
// result raises 6 "Overflow" and leaves the object as it was; nonsense arguments are refused.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "geometry/Geometry.h"
#include "geometry/Matrix.h"
#include "geometry/UCS.h"
#include "geometry/Vector.h"
#include "support/Expectations.h"
#include "support/PointsNear.h"

namespace tgp {
namespace {

using test::ExpectError;

struct OverflowCase {
    const char* name;
    std::function<void()> action;
};

TEST(OverflowRule, FiniteInputThatOverflowsRaises6) {
    const Point huge{1e308, 1e308, 1e308}, big{1e200, 1e200, 1e200};
    Matrix hugeMatrix;
    hugeMatrix.Array2D({{1e308, 1}, {1, 1e308}});
    Matrix diagonal;
    diagonal.Array2D({{1e200, 0}, {0, 1e200}});
    const Point l{1e308, 1e308};
    const OverflowCase cases[] = {
        {"vplusv", [&] { Vector::vplusv(huge, huge); }},
        {"vminusv", [&] { Vector::vminusv(huge, Vector::vxr(huge, -1)); }},
        {"vxr", [&] { Vector::vxr(huge, 10); }},
        {"vLength",
         [&] {
             Vector::vLength({1e200, 1e200});
         }},
        {"vLength of two points", [&] { Vector::vLength(Vector::vxr(huge, -1), huge); }},
        {"vxv",
         [&] {
             Vector::vxv(big, Point{-1e200, 1e200, 3});
         }},
        {"vxxv", [&] { Vector::vxxv(big, big); }},
        {"vRotate", [&] { Vector::vRotate(l, 0.5); }},
        {"DegFromRad", [&] { Geometry::DegFromRad(1e308); }},
        {"DegToRad of an infinity", [&] { Geometry::DegToRad(HUGE_VAL); }},
        {"Area_3Distances", [&] { Geometry::Area_3Distances(1e200, 1e200, 1e200); }},
        {"Area_3Points",
         [&] {
             Geometry::Area_3Points({0, 0, 0}, {1e200, 0, 0}, {0, 1e200, 0});
         }},
        {"Volume_4Points",
         [&] {
             Geometry::Volume_4Points({0, 0, 1e200}, {0, 0, 0}, {1e200, 0, 0}, {0, 1e200});
         }},
        {"MultiplyWithNumber", [&] { hugeMatrix.MultiplyWithNumber(10); }},
        {"PlusWithNumber", [&] { hugeMatrix.PlusWithNumber(1e308); }},
        {"PlusWithMatrix", [&] { hugeMatrix.PlusWithMatrix(hugeMatrix); }},
        {"Product", [&] { hugeMatrix.Product(hugeMatrix); }},
        {"MultiplyWithVector", [&] { hugeMatrix.MultiplyWithVector(l); }},
        {"Det", [&] { hugeMatrix.Det(); }},
        {"Inverse of diag(1E200, 1E200)", [&] { diagonal.Inverse(); }},
        {"Solve", [&] { diagonal.Solve(l); }},
    };
    for (const OverflowCase& c : cases) ExpectError(6, "Overflow", c.name, c.action);
    // A determinant that overflowed is not cached as one: the next call raises again.
    ExpectError(6, "Overflow", [&] { hugeMatrix.Det(); });
}

TEST(OverflowRule, RefusedMovesLeaveTheSystemAsItWas) {
    UCS system;
    system.SetUCS({1, 2, 3}, {1, 0, 0}, {0, 1, 0});
    ExpectError(6, "Overflow", [&] { system.Move({-1e308, 0, 0}, {1e308, 0, 0}); });
    EXPECT_EQ(system.Origin(), (Point{1, 2, 3}));
    Point p{1e308, 0, 0};
    UCS far;
    far.SetUCS({1e308, 0, 0}, {1, 0, 0}, {0, 1, 0});
    ExpectError(6, "Overflow", [&] { system.TranslateFromUCS(p, far); });
}

TEST(NonsenseRefused, ParallelOrHugeAxesOriginsAndNegativeSides) {
    UCS system;
    const std::string zero = "Vector unitvec(u) = u = 0";
    ExpectError(2411, zero, [&] { system.SetUCS({0, 0, 0}, {1, 0, 0}, {2, 0, 0}); });
    ExpectError(2411, zero, [&] { system.SetUCS({0, 0, 0}, {1, 0, 0}, {-3, 0, 0}); });
    ExpectError(2411, zero, [&] { system.SetUCS({0, 0, 0}, {1e308, 1e308, 0}, {0, 1, 0}); });
    EXPECT_EQ(system.Uz(), (Point{0, 0, 1}));  // refused before anything was stored
    // An origin that is not a point is kept as given, and refused where it is used.
    system.Origin({});
    Point p{1, 2, 3};
    ExpectError(9, "Subscript out of range", [&] { system.TranslateFromUCS(p, UCS{}); });
    system.Origin({5});
    ExpectError(9, "Subscript out of range", [&] { system.Move({0, 0, 0}, {1, 1, 1}); });
    const std::string noTriangle = "Function Area_3Distances fails: the given lengths do not form a triangle";
    ExpectError(2411, noTriangle, [] { Geometry::Area_3Distances(-1, -1, -1); });
    ExpectError(2411, noTriangle, [] { Geometry::Area_3Distances(-3, 4, 5); });
    EXPECT_EQ(Geometry::Area_3Distances(0, 0, 0), 0);
}

TEST(NonsenseRefused, RoundingToANegativeDigitCountIsAnInvalidCall) {
    Matrix m;
    m.Array2D({{1.25, 2}, {3, 4}});
    ExpectError(5, "Invalid procedure call or argument", [&] { m.RoundUp(-32768); });
    ExpectError(5, "Invalid procedure call or argument", [&] { m.RoundUp(-1); });
    EXPECT_EQ(m.RoundUp(400)->Item(0, 0), 1.25);  // more digits than a double has change nothing
}

TEST(MatrixMemory, ShrinkingGivesTheStorageBack) {
    Matrix m;
    // The largest matrix (8 GB) is promised by the system or refused with 7, and costs nothing
    // until its elements are written.
    try {
        m.Reset(32767, 32767);
        EXPECT_EQ(m.Item(32766, 32766), 0);
    } catch (const Error& e) {
        EXPECT_EQ(e.number(), 7);
    }
    m.Reset(2000, 2000);
    m.Reset(1, 1);
    EXPECT_EQ(m.RowCount(), 1);
    EXPECT_LE(m.StorageCapacity(), 1u);
}

}  // namespace
}  // namespace tgp
