#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "geometry/PointTransforms.h"
#include "support/Expectations.h"
#include "support/PointsNear.h"

namespace tgp {
namespace {

using test::ExpectError;
using test::PointsNear;

Matrix Make(const Array2DData& data) {
    Matrix m;
    m.Array2D(data);
    return m;
}

// Homogeneous 4x4 matrices of the plane transformations.
Matrix Translation(double x, double y, double z) {
    return Make({{1, 0, 0, x}, {0, 1, 0, y}, {0, 0, 1, z}, {0, 0, 0, 1}});
}
Matrix Turn(double angle) {
    const double c = std::cos(angle), s = std::sin(angle);
    return Make({{c, -s, 0, 0}, {s, c, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}});
}
Matrix Scaling(double k) {
    return Make({{k, 0, 0, 0}, {0, k, 0, 0}, {0, 0, k, 0}, {0, 0, 0, 1}});
}
Matrix MirrorX() {
    return Make({{1, 0, 0, 0}, {0, -1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}});
}

// T(c) * A * T(-c): A about the point c.
Matrix About(const Point& c, const Matrix& a) {
    return *Translation(c[0], c[1], c[2]).Product(*a.Product(Translation(-c[0], -c[1], -c[2])));
}

::testing::AssertionResult ListsNear(const PointList& actual, const PointList& expected, double tolerance) {
    if (actual.size() != expected.size()) return ::testing::AssertionFailure() << "count " << actual.size();
    for (std::size_t i = 0; i < actual.size(); ++i) {
        auto near = PointsNear(actual[i], expected[i], tolerance);
        if (!near) return near << " at point " << i;
    }
    return ::testing::AssertionSuccess();
}

TEST(PointTransforms, AgreeWithMatrixProducts) {
    std::mt19937 random(23);
    std::uniform_real_distribution<double> coordinate(-100, 100);
    PointList points;
    for (int i = 0; i < 50; ++i)
        points.push_back({coordinate(random), coordinate(random), coordinate(random)});
    const Point base{3, -7, 2};
    const double angle = 0.7;

    EXPECT_TRUE(ListsNear(PointTransforms::Move(points, {1, 2, 3}),
                          PointTransforms::Transform(points, Translation(1, 2, 3)), 1E-12));
    EXPECT_TRUE(ListsNear(PointTransforms::Scale(points, base, -2.5),
                          PointTransforms::Transform(points, About(base, Scaling(-2.5))), 1E-12));
    EXPECT_TRUE(ListsNear(PointTransforms::Rotate(points, base, angle),
                          PointTransforms::Transform(points, About(base, Turn(angle))), 1E-12));
    // The mirror line through base at the angle: turn it onto x, mirror, turn back.
    const Matrix mirror = About(base, *Turn(angle).Product(*MirrorX().Product(Turn(-angle))));
    const Point onLine{base[0] + std::cos(angle), base[1] + std::sin(angle)};
    EXPECT_TRUE(ListsNear(PointTransforms::Mirror(points, base, onLine),
                          PointTransforms::Transform(points, mirror), 1E-11));
    // A 3x3 matrix is the linear map; the same as its 4x4 embedding.
    const Matrix linear = Make({{1, 2, 3}, {0, 1, 4}, {5, 6, 0}});
    const Matrix embedded = Make({{1, 2, 3, 0}, {0, 1, 4, 0}, {5, 6, 0, 0}, {0, 0, 0, 1}});
    EXPECT_TRUE(ListsNear(PointTransforms::Transform(points, linear),
                          PointTransforms::Transform(points, embedded), 0));
}

TEST(PointTransforms, PlanePointsEdgesAndFailures) {
    EXPECT_EQ(PointTransforms::Move({{1, 2}}, {1, 1}), (PointList{{2, 3, 0}}));
    EXPECT_EQ(PointTransforms::Scale({{4, 4, 4}}, {2, 2, 2}, 0), (PointList{{2, 2, 2}}));
    EXPECT_TRUE(
        ListsNear(PointTransforms::Rotate({{2, 0, 5}}, {1, 0}, std::acos(-1.0) / 2), {{1, 1, 5}}, 1E-15));
    EXPECT_EQ(PointTransforms::Mirror({{1, 5, 9}}, {0, 0}, {0, 1}), (PointList{{-1, 5, 9}}));
    EXPECT_TRUE(PointTransforms::Move({}, {1, 1}).empty());
    // The fourth element divides: w = 2 halves every coordinate.
    const Matrix halving = Make({{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 2}});
    EXPECT_EQ(PointTransforms::Transform({{2, 4, 6}}, halving), (PointList{{1, 2, 3}}));
    const Matrix flat = Make({{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 0}});
    ExpectError(2411, "Transform_Points fails: a point maps to infinity (w = 0)", [&] {
        PointTransforms::Transform({{1, 1}}, flat);
    });
    ExpectError(2411, "Transform_Points fails: the matrix must be 3x3 or 4x4", [] {
        PointTransforms::Transform({{1, 1}}, Make({{1, 0}, {0, 1}}));
    });
    ExpectError(2411, "Mirror_Points fails: the line's two points coincide", [] {
        PointTransforms::Mirror({{1, 1}}, {2, 2, 0}, {2, 2, 5});
    });
    ExpectError(5, "Invalid procedure call or argument", [] {
        PointTransforms::Scale({{1, 1}}, {0, 0}, INFINITY);
    });
}

}  // namespace
}  // namespace tgp
