#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "core/Constants.h"
#include "geometry/UCS.h"
#include "geometry/Vector.h"
#include "profiles/InertiaBlock.h"
#include "support/ProfileTestShapes.h"

namespace tgp {
namespace {

using test::ExpectError;

std::shared_ptr<InertiaBlock> Block(double ix, double iy, double ixy, double area = 1000,
                                    Point c = {0, 0, 0}) {
    auto b = InertiaBlock::Create();
    b->Init(ix, iy, ixy, c, area, 220.0);
    return b;
}

std::shared_ptr<UCS> System(Point origin, double angle) {
    auto s = UCS::Create();
    s->SetUCS(origin, {std::cos(angle), std::sin(angle), 0}, {-std::sin(angle), std::cos(angle), 0});
    return s;
}

TEST(InertiaBlockInit, FreshBlockAndDefaultAxes) {
    auto fresh = InertiaBlock::Create();
    EXPECT_TRUE(fresh->IsVoid());
    EXPECT_TRUE(fresh->HasNoMaterial());
    EXPECT_EQ(fresh->Centroid(), (Point{0, 0, 0}));
    EXPECT_EQ(fresh->Ux(), (Point{1, 0, 0}));
    EXPECT_EQ(fresh->Uy(), (Point{0, 1, 0}));
    EXPECT_EQ(fresh->RadiusOfGyrationX()->Millimetres(), 0);

    auto b = Block(1, 2, 0, 3, {4, 5, 0});
    EXPECT_EQ(b->Ux(), (Point{1, 0, 0}));
    EXPECT_EQ(b->Uy(), (Point{0, 1, 0}));
    EXPECT_EQ(b->Normal(), (Point{0, 0, 1}));
    EXPECT_EQ(b->Centroid(), (Point{4, 5, 0}));
    EXPECT_EQ(b->OCS(), b->OCS());
    EXPECT_EQ(b->Perimeter()->Millimetres(), 220);
    EXPECT_DOUBLE_EQ(b->Area()->Centimetres(), 0.03);
}

TEST(InertiaBlockInit, AxisOffThePlaneIsRefusedAndStoresNothing) {
    auto b = InertiaBlock::Create();
    const Point tilted{0, 1, 0.001};
    const std::string offPlane = "InertiaBlock should be on World Coordinates System Plan XY";
    ExpectError(2411, offPlane, [&] { b->Init(1, 2, 3, {0, 0, 0}, 4, 5.0, &tilted); });
    const Point x{1, 0, 0};
    ExpectError(2411, offPlane, [&] { b->Init(1, 2, 3, {0, 0, 0}, 4, 5.0, &x, &tilted); });
    EXPECT_TRUE(b->IsVoid());
    EXPECT_EQ(b->MomentOfInertiaX()->Millimetres(), 0);
    b->Init(1, 2, 3, {0, 0, 0}, 4);
    EXPECT_EQ(b->Perimeter()->Millimetres(), 0);
}

TEST(InertiaBlockPrincipal, ARectangleIsAlreadyPrincipalEqualMomentsTurnAQuarterPi) {
    auto b = Block(100 * 1000 / 12.0, 10 * 1e6 / 12, 0);
    std::shared_ptr<DMomentOfInertia> ix0, iy0;
    std::shared_ptr<DAngle> rotation;
    b->GetPrincipalIP(ix0, iy0, rotation);
    ASSERT_TRUE(ix0 && iy0 && rotation);
    EXPECT_EQ(ix0->Millimetres(), 100 * 1000 / 12.0);
    EXPECT_EQ(iy0->Millimetres(), 10 * 1e6 / 12);
    EXPECT_EQ(rotation->Radians(), 0);
    auto equal = Block(50, 50, 20);  // equal moments turn by the shortened quarter pi
    EXPECT_EQ(equal->PrincipalAngle()->Radians(), 0.7853981633974475);
    EXPECT_EQ(equal->PMomentOfInertiaX()->Millimetres(), 30);
    EXPECT_EQ(equal->PMomentOfInertiaY()->Millimetres(), 70);
    auto turned = Block(1, 2, 0.5, 10, {3, 4, 0});  // the PCS is the OCS turned by the principal angle
    const double angle = turned->PrincipalAngle()->Radians();
    auto pcs = turned->PCS();
    EXPECT_NE(pcs, turned->OCS());
    EXPECT_NEAR(pcs->Ux()[0], std::cos(angle), 1e-12);
    EXPECT_NEAR(pcs->Ux()[1], std::sin(angle), 1e-12);
    EXPECT_EQ(pcs->Origin()[0], 3);
    EXPECT_EQ(turned->Ux(), (Point{1, 0, 0}));
}

struct PrincipalCase {
    double ix, iy, ixy;
};
class InertiaBlockPrincipalAxes : public ::testing::TestWithParam<PrincipalCase> {};

TEST_P(InertiaBlockPrincipalAxes, AreTheEigenDirections) {
    const auto [ix, iy, ixy] = GetParam();
    auto b = Block(ix, iy, ixy);
    const double angle = b->PrincipalAngle()->Radians();
    EXPECT_GE(angle, 0);
    EXPECT_LT(angle, M_PI / 2);
    const double mean = (ix + iy) / 2, radius = std::hypot((ix - iy) / 2, ixy);
    const double i1 = b->PMomentOfInertiaX()->Millimetres(), i2 = b->PMomentOfInertiaY()->Millimetres();
    EXPECT_NEAR(std::min(i1, i2), mean - radius, 1e-9 * radius);
    EXPECT_NEAR(std::max(i1, i2), mean + radius, 1e-9 * radius);
    EXPECT_NEAR(i1 + i2, ix + iy, 1e-9 * radius);
    // Turned onto the principal axes the product vanishes and the moments are the principal ones.
    b->RotateOCS(angle);
    EXPECT_NEAR(b->ProductOfInertiaXY()->Millimetres(), 0, 1e-9 * radius);
    EXPECT_NEAR(b->MomentOfInertiaX()->Millimetres(), i1, 1e-9 * radius);
    EXPECT_NEAR(b->Ux()[0], std::cos(angle), 1e-12);
    EXPECT_NEAR(b->Ux()[1], std::sin(angle), 1e-12);
}

INSTANTIATE_TEST_SUITE_P(Moments, InertiaBlockPrincipalAxes,
                         ::testing::Values(PrincipalCase{2, 1, -0.5}, PrincipalCase{1, 2, 0.5},
                                           PrincipalCase{-300, -40, -90}));

TEST(InertiaBlockTarget, ParallelAxisAndRotation) {
    const double A = 1000, ix = 8000, iy = 800000, ixy = 1500;
    auto b = Block(ix, iy, ixy, A, {10, 20, 0});
    EXPECT_EQ(b->MomentOfInertiaX(System({10, 20, 0}, 0))->Millimetres(), ix);
    EXPECT_NEAR(b->MomentOfInertiaX(System({10, 10, 0}, 0))->Millimetres(), ix + 100 * A, 1e-9);
    EXPECT_NEAR(b->ProductOfInertiaXY(System({7, 16, 0}, 0))->Millimetres(), ixy + 3 * 4 * A, 1e-9);
    // A target turned a quarter: its x axis is the block's y axis.
    auto quarter = System({10, 20, 0}, M_PI / 2);
    EXPECT_NEAR(b->MomentOfInertiaX(quarter)->Millimetres(), iy, 1e-6);
    EXPECT_NEAR(b->MomentOfInertiaY(quarter)->Millimetres(), ix, 1e-6);
    EXPECT_NEAR(b->ProductOfInertiaXY(quarter)->Millimetres(), -ixy, 1e-6);
    EXPECT_NEAR(b->RadiusOfGyrationX(quarter)->Millimetres(), std::sqrt(iy / A), 1e-9);

    // The grouping of the published formula, to the bit.
    auto turned = System({-5, 3, 0}, 0.4);
    const double t = Vector::vAngle(b->Ux(), turned->Ux());
    Point c{0, 0, 0};
    turned->TranslateFromUCS(c, *b->OCS());
    const double cc = std::cos(t), s = std::sin(t), S = std::sin(2 * t);
    EXPECT_EQ(b->MomentOfInertiaX(turned)->Millimetres(),
              c[1] * A * c[1] + ((cc * cc) * ix + (s * s) * iy - S * ixy));
    // The other two about the turned axes (Mohr's circle), each with its parallel-axis term.
    EXPECT_NEAR(b->MomentOfInertiaY(turned)->Millimetres(),
                c[0] * A * c[0] + (cc * cc * iy + s * s * ix + S * ixy), 1e-6);
    EXPECT_NEAR(b->ProductOfInertiaXY(turned)->Millimetres(),
                c[0] * A * c[1] + ((ix - iy) / 2 * S + ixy * std::cos(2 * t)), 1e-6);
}

TEST(InertiaBlockEdits, InverseMakesANegativeRadiusAndKeepsIsVoidFalse) {
    auto b = Block(8000, 800000, 0, 1000);
    const double r = b->RadiusOfGyrationX()->Millimetres();
    EXPECT_NEAR(r, std::sqrt(8.0), 1e-12);
    b->Inverse();
    EXPECT_EQ(b->RadiusOfGyrationX()->Millimetres(), -r);
    EXPECT_EQ(b->Area()->Millimetres(), -1000);
    EXPECT_FALSE(b->IsVoid());
    EXPECT_EQ(b->Perimeter()->Millimetres(), 220);
}

TEST(InertiaBlockEdits, ElasticModulusMovesAndCopies) {
    auto b = Block(8, 80, 2, 100, {1, 2, 0});
    b->ElasticModulus(200);
    EXPECT_FALSE(b->HasNoMaterial());
    EXPECT_EQ(b->Area()->Millimetres(), 100);
    b->ElasticModulus(100);
    EXPECT_EQ(b->Area()->Millimetres(), 200);
    EXPECT_EQ(b->MomentOfInertiaX()->Millimetres(), 16);
    EXPECT_EQ(b->MomentOfInertiaY()->Millimetres(), 160);
    EXPECT_EQ(b->ProductOfInertiaXY()->Millimetres(), 4);
    EXPECT_EQ(b->Perimeter()->Millimetres(), 220);
    b->ElasticModulus(0);
    EXPECT_TRUE(b->HasNoMaterial());
    EXPECT_EQ(b->Area()->Millimetres(), 200);
    auto m = Block(8, 80, 2, 100, {1, 2, 0});
    m->ElasticModulus(5);
    auto c = m->Copy();
    EXPECT_NE(c->OCS(), m->OCS());
    c->Move({1, 1, 0});
    c->Inverse();
    EXPECT_EQ(m->Centroid(), (Point{1, 2, 0}));
    EXPECT_EQ(m->Area()->Millimetres(), 100);
    EXPECT_EQ(c->ElasticModulus(), 5);
    EXPECT_EQ(c->Centroid(), (Point{2, 3, 0}));
    b->Move({3, 4, 0});
    EXPECT_EQ(b->Centroid(), (Point{4, 6, 0}));
    b->Centroid({10, 0, 0});
    EXPECT_EQ(b->Centroid(), (Point{10, 0, 0}));
    b->RotateAll(M_PI / 2, {0, 0, 0});
    EXPECT_NEAR(b->Centroid()[0], 0, 1e-12);
    EXPECT_NEAR(b->Centroid()[1], 10, 1e-12);
    EXPECT_NEAR(b->Ux()[1], 1, 1e-12);
    EXPECT_EQ(b->MomentOfInertiaX()->Millimetres(), 16);  // the moduli scaled it
}

}  // namespace
}  // namespace tgp
