// Section property blocks: their values, principal axes and edits; joining, transforming and their
// text form.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string>

#include "core/Constants.h"
#include "geometry/UCS.h"
#include "geometry/Vector.h"
#include "profiles/InertiaBlock.h"
#include "profiles/Loop7.h"
#include "support/Expectations.h"
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

// Combining section property blocks (Join, Union), transforming them, and their text form.
using test::Circle;
using test::LoopOf;
using test::Outline;
using test::Rectangle;

struct Values {
    double area, ix, iy, ixy, perimeter, xc, yc;
};

Values Of(InertiaBlock& b) {
    const Point c = b.Centroid();
    return {b.Area()->Millimetres(),
            b.MomentOfInertiaX()->Millimetres(),
            b.MomentOfInertiaY()->Millimetres(),
            b.ProductOfInertiaXY()->Millimetres(),
            b.Perimeter()->Millimetres(),
            c[0],
            c[1]};
}

void ExpectNear(const Values& actual, const Values& expected, double relative, const std::string& name) {
    const double moments = std::max({std::fabs(expected.ix), std::fabs(expected.iy), 1.0});
    const double lengths = std::max(std::sqrt(std::fabs(expected.area)), 1.0);
    EXPECT_NEAR(actual.area, expected.area, relative * std::fabs(expected.area)) << name;
    EXPECT_NEAR(actual.ix, expected.ix, relative * moments) << name;
    EXPECT_NEAR(actual.iy, expected.iy, relative * moments) << name;
    EXPECT_NEAR(actual.ixy, expected.ixy, relative * moments) << name;
    EXPECT_NEAR(actual.perimeter, expected.perimeter, relative * std::max(expected.perimeter, 1.0)) << name;
    EXPECT_NEAR(actual.xc, expected.xc, relative * lengths) << name;
    EXPECT_NEAR(actual.yc, expected.yc, relative * lengths) << name;
}

std::shared_ptr<InertiaBlock> BlockOf(const Outline& o) {
    return LoopOf(o)->InertiaBlock()->Copy();
}

TEST(InertiaBlockJoin, AnAnnulusIsACircleJoinedWithAVoidCircle) {
    const double R = 50, r = 40;
    auto disc = BlockOf(Circle(10, 20, R));
    auto hole = BlockOf(Circle(10, 20, r));
    hole->Inverse();
    disc->Join(*hole);
    const double expectedI = M_PI * (std::pow(R, 4) - std::pow(r, 4)) / 4;
    ExpectNear(Of(*disc), {M_PI * (R * R - r * r), expectedI, expectedI, 0, 2 * M_PI * (R + r), 10, 20},
               1e-13, "annulus");
}

// A T: flange 100 x 10 on a web 10 x 100, joined, against the same outline as one loop.
TEST(InertiaBlockJoin, ATFromTwoRectanglesIsTheTAsOneLoop) {
    auto flange = BlockOf(Rectangle(-50, 100, 100, 10));
    auto web = BlockOf(Rectangle(-5, 0, 10, 100));
    const Outline t = Outline::Polygon({-5, 0, -5, 100, -50, 100, -50, 110, 50, 110, 50, 100, 5, 100, 5, 0});
    Values expected = Of(*BlockOf(t));
    expected.perimeter = 220 + 220;  // both rectangles' perimeters, the shared edge counted twice
    auto joined = flange->Union(*web);
    ExpectNear(Of(*joined), expected, 1e-13, "T");
    EXPECT_EQ(Of(*flange).area, 1000) << "Union leaves its operands";
    EXPECT_EQ(Of(*web).area, 1000);
}

// Blocks whose axes are turned: the moments are turned into the receiving block's axes before they
// are added, so turning either operand's axes and turning the result back changes nothing.
TEST(InertiaBlockJoin, BlocksWithTurnedAxesJoinAsTheSameShape) {
    const Outline left = Rectangle(0, 0, 10, 10), right = Rectangle(10, 2, 30, 5);
    const Outline whole =
        Outline::Polygon({0, 0, 0, 10, 10, 10, 10, 7, 40, 7, 40, 2, 10, 2, 10, 0});  // clockwise
    Values expected = Of(*BlockOf(whole));
    expected.perimeter = 40 + 70;
    for (double turnOther : {0.0, 0.4, -2.1}) {
        for (double turnOwn : {0.0, 0.3, 1.2}) {
            auto a = BlockOf(left), b = BlockOf(right);
            b->RotateOCS(turnOther);
            a->RotateOCS(turnOwn);
            a->Join(*b);
            EXPECT_NEAR(std::atan2(a->Ux()[1], a->Ux()[0]), turnOwn, 1e-15)
                << "the receiving block keeps its axes";
            a->RotateOCS(-turnOwn);
            ExpectNear(Of(*a), expected, 1e-12,
                       "turned " + std::to_string(turnOther) + ", " + std::to_string(turnOwn));
        }
    }
}

TEST(InertiaBlockJoin, DifferentModuliJoinAsTheTransformedSection) {
    auto steel = BlockOf(Rectangle(0, 0, 10, 100));
    auto timber = BlockOf(Rectangle(10, 0, 100, 100));
    steel->ElasticModulus(210000);
    timber->ElasticModulus(10500);  // counts 1/20 of its area
    auto joined = steel->Union(*timber);
    EXPECT_DOUBLE_EQ(joined->Area()->Millimetres(), 1000 + 10000.0 / 20);
    EXPECT_DOUBLE_EQ(joined->Centroid()[0], (1000 * 5 + 500 * 60) / 1500.0);
    EXPECT_EQ(joined->ElasticModulus(), 210000);
    // E·I of the joined block is the sum of the parts' E·I about the common axis.
    const double ei = 210000 * joined->MomentOfInertiaX()->Millimetres();
    EXPECT_NEAR(ei, 210000.0 * 1000 * 10000 / 12 + 10500.0 * 10000 * 10000 / 12, 1e-9 * ei);

    auto bare = BlockOf(Rectangle(0, 0, 1, 1));
    const std::string refusal =
        "Join: a block without material cannot be joined to a block with material (set ElasticModulus on "
        "both "
        "blocks or on neither)";
    ExpectError(2411, refusal, [&] { bare->Join(*steel); });
    ExpectError(2411, refusal, [&] { steel->Join(*bare); });
    EXPECT_EQ(steel->Area()->Millimetres(), 1000) << "a refused join changes nothing";
}

TEST(InertiaBlockJoin, CancellingAreasAreRefusedAndSelfJoinDoubles) {
    auto block = BlockOf(Rectangle(0, 0, 10, 20));
    auto hole = block->Copy();
    hole->Inverse();
    ExpectError(2411,
                "Join: the areas cancel (a block joined with its own void), so the result has no centroid",
                [&] { block->Join(*hole); });
    const Values before = Of(*block);
    block->Join(*block);
    const Values after = Of(*block);
    EXPECT_EQ(after.area, 2 * before.area);
    EXPECT_EQ(after.ix, 2 * before.ix);
    EXPECT_EQ(after.xc, before.xc);
}

// A loop moved, turned and scaled, and its block given the same transformation, agree: the block
// follows its loop (for a mirror the loop runs the other way, so its values change sign). A loop
// keeps its arcs circular under unequal factors, so those cases use a polygon.
TEST(InertiaBlockTransformation, FollowsTheLoopsTransformation) {
    const Outline polygon = Outline::Polygon({0, 0, 0, 30, 20, 35, 45, 10, 25, 0});
    Outline curved = polygon;
    curved.bulges = {0, -0.3, 0, 0, 0.2};
    struct Case {
        double rotation, sx, sy;
    };
    for (const Case& c : {Case{0.7, 1, 1}, Case{-1.3, 2, 2}, Case{0, 1.5, 0.5}, Case{0.4, -1, 1},
                          Case{2.0, 0.5, -3}, Case{-0.6, -2, -2}}) {
        auto loop = LoopOf(std::fabs(c.sx) == std::fabs(c.sy) ? curved : polygon);
        auto block = loop->InertiaBlock()->Copy();
        const Point move{7, -3, 0}, base{5, 12, 0};
        loop->Transformation(move, c.rotation, c.sx, c.sy, base);
        block->Transformation(move, c.rotation, c.sx, c.sy, base);
        block->RotateOCS(-c.rotation);  // the loop's block has the world axes
        const double mirrored = c.sx * c.sy < 0 ? -1 : 1;
        Values expected = Of(*loop->InertiaBlock());
        expected.area *= mirrored;
        expected.ix *= mirrored;
        expected.iy *= mirrored;
        expected.ixy *= mirrored;
        Values actual = Of(*block);
        if (std::fabs(c.sx) != std::fabs(c.sy)) actual.perimeter = expected.perimeter;  // an estimate there
        ExpectNear(actual, expected, 1e-12,
                   "rotation " + std::to_string(c.rotation) + " scale " + std::to_string(c.sx) + ", " +
                       std::to_string(c.sy));
    }
}

TEST(InertiaBlockTransformation, TurningBackAndMirroringTwiceRestore) {
    auto original = BlockOf(Rectangle(3, 4, 20, 7));
    original->RotateOCS(0.25);
    auto block = original->Copy();
    block->Transformation({1, 2, 0}, 0.9, 1, 1, {10, -5, 0});
    block->Transformation({-1, -2, 0}, 0, 1, 1, {0, 0, 0});
    block->Transformation({0, 0, 0}, -0.9, 1, 1, {10, -5, 0});
    ExpectNear(Of(*block), Of(*original), 1e-13, "turned back");
    auto mirrored = original->Copy();
    mirrored->Transformation({0, 0, 0}, 0, -1, 1, {2, 0, 0});
    EXPECT_EQ(mirrored->ProductOfInertiaXY()->Millimetres(), -original->ProductOfInertiaXY()->Millimetres());
    EXPECT_EQ(mirrored->Area()->Millimetres(), original->Area()->Millimetres())
        << "a mirror keeps a solid solid";
    mirrored->Transformation({0, 0, 0}, 0, -1, 1, {2, 0, 0});
    ExpectNear(Of(*mirrored), Of(*original), 1e-15, "mirrored twice");
    auto hole = original->Copy();
    hole->Inverse();
    hole->Transformation({0, 0, 0}, 0, -2, 3, {0, 0, 0});
    EXPECT_LT(hole->Area()->Millimetres(), 0) << "a void stays a void";
    ExpectError(
        2411,
        "Cannot Transformation InertiaBlock with a scale factor of 0: the section would collapse onto a line",
        [&] {
            block->Transformation({0, 0, 0}, 0, 0, 1, {0, 0, 0});
        });
}

using test::SameBits;

void ExpectSameBits(InertiaBlock& a, InertiaBlock& b) {
    const Values x = Of(a), y = Of(b);
    for (auto [p, q] :
         {std::pair{x.area, y.area}, {x.ix, y.ix}, {x.iy, y.iy}, {x.ixy, y.ixy}, {x.perimeter, y.perimeter}})
        EXPECT_TRUE(SameBits(p, q)) << p << " vs " << q;
    const Point ca = a.Centroid(), cb = b.Centroid(), ua = a.Ux(), ub = b.Ux(), va = a.Uy(), vb = b.Uy();
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_TRUE(SameBits(ca[i], cb[i]) && SameBits(ua[i], ub[i]) && SameBits(va[i], vb[i])) << i;
    }
    EXPECT_TRUE(SameBits(a.ElasticModulus(), b.ElasticModulus()));
}

TEST(InertiaBlockText, RoundTripsAreBitExact) {
    std::mt19937_64 random(2024);
    std::uniform_real_distribution<double> mantissa(-1, 1);
    std::uniform_int_distribution<int> exponent(-300, 300);
    auto any = [&] { return std::ldexp(mantissa(random), exponent(random) / 3); };
    for (int i = 0; i < 500; ++i) {
        auto block = InertiaBlock::Create();
        block->Init(any(), any(), any(), {any(), any(), any()}, any(), any());
        block->RotateOCS(mantissa(random) * 4);
        if (i % 3 == 0) block->ElasticModulus(std::fabs(any()));
        const std::string text = block->SaveToText();
        ASSERT_EQ(text.find('\n'), std::string::npos);
        auto read = InertiaBlock::Create();
        read->InitFromText(text);
        ExpectSameBits(*block, *read);
        EXPECT_EQ(read->SaveToText(), text);
        if (::testing::Test::HasFailure()) break;
    }
    auto negativeZero = InertiaBlock::Create();
    negativeZero->Init(-0.0, 0, 0, {0, 0, 0}, -0.0);
    auto read = InertiaBlock::Create();
    read->InitFromText(negativeZero->SaveToText());
    ExpectSameBits(*negativeZero, *read);
}

TEST(InertiaBlockText, TheTextFormIsOneReadableLine) {
    auto block = BlockOf(Rectangle(0, 0, 100, 10));
    EXPECT_EQ(block->SaveToText(),
              "InertiaBlock/1 A=1000 P=220 Ix=8333.333333333334 Iy=833333.3333333334 Ixy=0 C=50,5,0 Ux=1,0,0 "
              "Uy=0,1,0 E=0");
    auto read = InertiaBlock::Create();
    read->InitFromText(
        "  InertiaBlock/1\tE=0 Uy=0,1,0 Ux=1,0,0 C=50,5,0 Ixy=0 Iy=833333.3333333334 Ix=8333.333333333334 "
        "P=220 A=1000 \r\n");
    EXPECT_EQ(read->SaveToText(), block->SaveToText()) << "fields in any order, any blanks";
    // A block never given values has the world's axes, and its text reads back.
    const std::string fresh = InertiaBlock::Create()->SaveToText();
    EXPECT_EQ(fresh, "InertiaBlock/1 A=0 P=0 Ix=0 Iy=0 Ixy=0 C=0,0,0 Ux=1,0,0 Uy=0,1,0 E=0");
    read->InitFromText(fresh);
    EXPECT_EQ(read->SaveToText(), fresh);
}

TEST(InertiaBlockText, BadTextNamesTheFaultAndChangesNothing) {
    const std::string good = "A=1 P=2 Ix=3 Iy=4 Ixy=5 C=6,7,0 Ux=1,0,0 Uy=0,1,0 E=0";
    struct Case {
        std::string text, description;
    };
    const Case cases[] = {
        {"", "the text is empty"},
        {"Block/1 " + good, "not the text of an InertiaBlock (it starts with 'InertiaBlock/1')"},
        {"InertiaBlock/x " + good, "the version 'x' is not a number"},
        {"InertiaBlock/2 " + good, "version 2 is not known (this library reads version 1)"},
        {"InertiaBlock/1 A=1 P=2 Iy=4 Ixy=5 C=6,7,0 Ux=1,0,0 Uy=0,1,0 E=0", "'Ix' is missing"},
        {"InertiaBlock/1 " + good + " A=1", "'A' appears twice"},
        {"InertiaBlock/1 " + good + " Iz=1", "unknown field 'Iz'"},
        {"InertiaBlock/1 " + good + " Iz", "'Iz' is not a field (name=value)"},
        {"InertiaBlock/1 A=1,5 P=2 Ix=3 Iy=4 Ixy=5 C=6,7,0 Ux=1,0,0 Uy=0,1,0 E=0",
         "'A' is not a finite number: '1,5'"},
        {"InertiaBlock/1 A=1e999 P=2 Ix=3 Iy=4 Ixy=5 C=6,7,0 Ux=1,0,0 Uy=0,1,0 E=0",
         "'A' is not a finite number: '1e999'"},
        {"InertiaBlock/1 A=1 P=2 Ix=3 Iy=4 Ixy=5 C=6,7 Ux=1,0,0 Uy=0,1,0 E=0",
         "'C' needs three numbers separated by commas: '6,7'"},
        {"InertiaBlock/1 A=1 P=2 Ix=3 Iy=4 Ixy=5 C=6,7,0,1 Ux=1,0,0 Uy=0,1,0 E=0",
         "'C' needs three numbers separated by commas: '6,7,0,1'"},
        {"InertiaBlock/1 A=1 P=2 Ix=3 Iy=4 Ixy=5 C=6,7,0 Ux=1,0,0.5 Uy=0,1,0 E=0",
         "the axes must lie in the XY plane (a z of 0)"},
        {"InertiaBlock/1 A=1 P=2 Ix=3 Iy=4 Ixy=5 C=6,7,0 Ux=2,0,0 Uy=0,1,0 E=0",
         "the axes Ux and Uy must be unit vectors"},
        {"InertiaBlock/1 A=1 P=2 Ix=3 Iy=4 Ixy=5 C=6,7,0 Ux=1,0,0 Uy=-1,0,0 E=0",
         "the axes Ux and Uy are parallel"},
    };
    auto block = BlockOf(Rectangle(0, 0, 3, 4));
    const std::string before = block->SaveToText();
    for (const Case& c : cases) {
        ExpectError(2411, "InitFromText: " + c.description, [&] { block->InitFromText(c.text); });
        EXPECT_EQ(block->SaveToText(), before) << c.text;
    }
}

}  // namespace
}  // namespace tgp
