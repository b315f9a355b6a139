// Shear of bending: shear areas against the exact flexure of the disc and the rectangle, the elastic
// shear centre against Trefftz's and symmetry, and the invariants.

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "profiles/FlexuralShear.h"
#include "support/ProfileTestShapes.h"

namespace tgp {
namespace {

using test::Outline;
using test::SectionOf;

// Shear areas as fractions of the area. The disc: A_s / A = 6 (1 + ν)² / (7 + 14ν + 8ν²) from its exact
// flexure (Timoshenko and Goodier, Theory of Elasticity, 3rd ed., 1970, section 124: the stress
// function is a cubic, whose shear energy integrates in closed form). The rectangle with ν = 0: the
// stress is parabolic across it, A_s / A = 5/6 both ways. With ν > 0 the rectangle's anticlastic
// stresses lower it below 5/6.
TEST(FlexuralShear, ShearAreasAgreeWithTheExactFlexure) {
    const double pi = std::numbers::pi;
    for (double r : {10.0, 0.01}) {  // the ratios hold at any size, far below one unit too
        for (double nu : {0.0, 0.3, 0.5}) {
            const auto disc = SectionOf({test::Circle(0.3 * r, -0.2 * r, r)});
            const FlexuralShear shear(SaintVenantTorsion(*disc), nu);
            const double exact = 6 * (1 + nu) * (1 + nu) / (7 + 14 * nu + 8 * nu * nu) * pi * r * r;
            for (double area :
                 {shear.ShearAreaX(), shear.ShearAreaY(), shear.ShearArea1(), shear.ShearArea2()})
                EXPECT_NEAR(area / exact, 1, 1e-8) << "r " << r << ", nu " << nu;
            EXPECT_NEAR(shear.ShearCentre().x, 0.3 * r, 1e-9 * r);
            EXPECT_NEAR(shear.ShearCentre().y, -0.2 * r, 1e-9 * r);
        }
    }
    const auto rectangle = SectionOf({test::Rectangle(0, 0, 100, 50)});
    const SaintVenantTorsion torsion(*rectangle);
    const FlexuralShear plain(torsion, 0);
    EXPECT_NEAR(plain.ShearAreaX() / 5000, 5.0 / 6, 1e-8);
    EXPECT_NEAR(plain.ShearAreaY() / 5000, 5.0 / 6, 1e-8);
    const FlexuralShear steel(torsion);
    EXPECT_EQ(steel.Poisson(), 0.3);
    EXPECT_LT(steel.ShearAreaY() / 5000, 5.0 / 6 - 1e-3);
    EXPECT_NEAR(steel.ShearArea1(), steel.ShearAreaY(), 1e-9 * 5000);  // y is the major axis (Iy > Ix)
    EXPECT_NEAR(steel.ShearArea2(), steel.ShearAreaX(), 1e-9 * 5000);
    EXPECT_NEAR(steel.ShearCentre().x, 50, 1e-8);
    EXPECT_NEAR(steel.ShearCentre().y, 25, 1e-8);
}

// With ν = 0 the elastic shear centre is Trefftz's; with ν > 0 it moves a little. Turned, a section
// keeps its principal shear areas and its shear centre's place on it.
TEST(FlexuralShear, ShearCentreAndInvariants) {
    for (double k : {1.0, 0.001}) {  // in millimetres and far below one unit
        const Outline angle = test::Angle(60 * k, 40 * k, 6 * k);
        const SaintVenantTorsion torsion(*SectionOf({angle}));
        const FlexuralShear plain(torsion, 0), steel(torsion);
        EXPECT_NEAR(plain.ShearCentre().x, torsion.ShearCentre().x, 1e-6 * k);
        EXPECT_NEAR(plain.ShearCentre().y, torsion.ShearCentre().y, 1e-6 * k);
        EXPECT_GT(std::hypot(steel.ShearCentre().x - plain.ShearCentre().x,
                             steel.ShearCentre().y - plain.ShearCentre().y),
                  1e-4 * k);
        Outline moved;
        const double c = std::cos(0.7), s = std::sin(0.7);
        for (std::size_t i = 0; i < angle.bulges.size(); ++i) {
            const double x = angle.xy[2 * i], y = angle.xy[2 * i + 1];
            moved.Add(-300 * k + c * x - s * y, 80 * k + s * x + c * y);
        }
        const FlexuralShear turned(SaintVenantTorsion(*SectionOf({moved})));
        EXPECT_NEAR(turned.ShearArea1() / steel.ShearArea1(), 1, 1e-6) << k;
        EXPECT_NEAR(turned.ShearArea2() / steel.ShearArea2(), 1, 1e-6) << k;
        const Point3 p = steel.ShearCentre();
        EXPECT_NEAR(turned.ShearCentre().x, -300 * k + c * p.x - s * p.y, 1e-5 * k);
        EXPECT_NEAR(turned.ShearCentre().y, 80 * k + s * p.x + c * p.y, 1e-5 * k);
    }
}

// Solids apart carry shear side by side: two equal discs have twice one's shear areas, and the shear
// centre between them.
TEST(FlexuralShear, SolidsApartAddTheirShearStiffness) {
    const FlexuralShear one(SaintVenantTorsion(*SectionOf({test::Circle(0, 0, 10)})));
    const FlexuralShear two(
        SaintVenantTorsion(*SectionOf({test::Circle(0, 0, 10), test::Circle(50, 30, 10)})));
    EXPECT_NEAR(two.ShearAreaX() / one.ShearAreaX(), 2, 1e-8);
    EXPECT_NEAR(two.ShearAreaY() / one.ShearAreaY(), 2, 1e-8);
    EXPECT_NEAR(two.ShearCentre().x, 25, 1e-8);
    EXPECT_NEAR(two.ShearCentre().y, 15, 1e-8);
}

}  // namespace
}  // namespace tgp
