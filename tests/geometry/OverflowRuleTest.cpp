// One rule for the whole kernel: finite input never gives an infinity or a NaN. An overflowing
// result raises 6 "Overflow" and leaves the object as it was; nonsense arguments are refused.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "PointTestSupport.h"
#include "geometry/Geometry.h"
#include "geometry/Matrix.h"
#include "geometry/UCS.h"
#include "geometry/Vector.h"

namespace tgp {
namespace {

using test::RaisesError;

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
        {"vRotate",
         [&] {
             Vector::vRotate({1e308, 1e308}, 0.5);
         }},
        {"DegFromRad", [&] { Geometry::DegFromRad(1e308); }},
        {"DegToRad of an infinity", [&] { Geometry::DegToRad(HUGE_VAL); }},
        {"Area_3Distances", [&] { Geometry::Area_3Distances(1e200, 1e200, 1e200); }},
        {"Area_3Points",
         [&] {
             Geometry::Area_3Points({0, 0, 0}, {1e200, 0, 0}, {0, 1e200, 0});
         }},
        {"Volume_4Points",
         [&] {
             Geometry::Volume_4Points({0, 0, 1e200}, {0, 0, 0}, {1e200, 0, 0}, {0, 1e200, 0});
         }},
        {"MultiplyWithNumber", [&] { hugeMatrix.MultiplyWithNumber(10); }},
        {"PlusWithNumber", [&] { hugeMatrix.PlusWithNumber(1e308); }},
        {"PlusWithMatrix", [&] { hugeMatrix.PlusWithMatrix(hugeMatrix); }},
        {"Product", [&] { hugeMatrix.Product(hugeMatrix); }},
        {"MultiplyWithVector",
         [&] {
             hugeMatrix.MultiplyWithVector({1e308, 1e308});
         }},
        {"Det", [&] { hugeMatrix.Det(); }},
        {"Inverse of diag(1E200, 1E200)", [&] { diagonal.Inverse(); }},
        {"Solve",
         [&] {
             diagonal.Solve({1e308, 1e308});
         }},
    };
    for (const OverflowCase& c : cases) EXPECT_TRUE(RaisesError(c.action, 6, "Overflow")) << c.name;
    // A determinant that overflowed is not cached as one: the next call raises again.
    EXPECT_TRUE(RaisesError([&] { hugeMatrix.Det(); }, 6, "Overflow"));
}

TEST(OverflowRule, RefusedMovesLeaveTheSystemAsItWas) {
    UCS system;
    system.SetUCS({1, 2, 3}, {1, 0, 0}, {0, 1, 0});
    EXPECT_TRUE(RaisesError([&] { system.Move({-1e308, 0, 0}, {1e308, 0, 0}); }, 6, "Overflow"));
    EXPECT_EQ(system.Origin(), (Point{1, 2, 3}));
    Point p{1e308, 0, 0};
    UCS far;
    far.SetUCS({1e308, 0, 0}, {1, 0, 0}, {0, 1, 0});
    EXPECT_TRUE(RaisesError([&] { system.TranslateFromUCS(p, far); }, 6, "Overflow"));
}

TEST(NonsenseRefused, ParallelOrHugeAxesOriginsAndNegativeSides) {
    UCS system;
    const std::string zero = "Vector unitvec(u) = u = 0";
    EXPECT_TRUE(RaisesError([&] { system.SetUCS({0, 0, 0}, {1, 0, 0}, {2, 0, 0}); }, 2411, zero));
    EXPECT_TRUE(RaisesError([&] { system.SetUCS({0, 0, 0}, {1, 0, 0}, {-3, 0, 0}); }, 2411, zero));
    EXPECT_TRUE(RaisesError([&] { system.SetUCS({0, 0, 0}, {1e308, 1e308, 0}, {0, 1, 0}); }, 2411, zero));
    EXPECT_EQ(system.Uz(), (Point{0, 0, 1}));  // refused before anything was stored
    // An origin that is not a point is kept as given, and refused where it is used.
    system.Origin({});
    Point p{1, 2, 3};
    EXPECT_TRUE(RaisesError([&] { system.TranslateFromUCS(p, UCS{}); }, 9, "Subscript out of range"));
    system.Origin({5});
    EXPECT_TRUE(RaisesError([&] { system.Move({0, 0, 0}, {1, 1, 1}); }, 9, "Subscript out of range"));
    const std::string noTriangle = "Function Area_3Distances fails: the given lengths do not form a triangle";
    EXPECT_TRUE(RaisesError([] { Geometry::Area_3Distances(-1, -1, -1); }, 2411, noTriangle));
    EXPECT_TRUE(RaisesError([] { Geometry::Area_3Distances(-3, 4, 5); }, 2411, noTriangle));
    EXPECT_EQ(Geometry::Area_3Distances(0, 0, 0), 0);
}

TEST(NonsenseRefused, RoundingToANegativeDigitCountIsAnInvalidCall) {
    Matrix m;
    m.Array2D({{1.25, 2}, {3, 4}});
    EXPECT_TRUE(RaisesError([&] { m.RoundUp(-32768); }, 5, "Invalid procedure call or argument"));
    EXPECT_TRUE(RaisesError([&] { m.RoundUp(-1); }, 5, "Invalid procedure call or argument"));
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
