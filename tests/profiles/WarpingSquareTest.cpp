// ∫ w² dA of the warping function three ways on the same boundary: along the loop (no holes),
// pair by pair and through the multipoles. The last two sum the same quadrature (to the multipoles'
// accuracy); along the loop is another quadrature of the boundary, whose error at the angle's
// re-entrant corner differs: 4E-8 apart at 864 nodes (accuracy 1E-6), 3E-10 at 1,572 (1E-8).

#include <gtest/gtest.h>

#include "profiles/SaintVenantTorsion.h"
#include "profiles/WarpingSquare.h"
#include "support/ProfileTestShapes.h"

namespace tgp {
namespace {

TEST(WarpingSquare, TheMethodsAgree) {
    test::Outline angle = test::Angle(60, 40, 6);
    struct Case {
        const char* name;
        std::shared_ptr<Loop7s> section;
    };
    const Case cases[] = {{"angle", test::SectionOf({angle})},
                          {"plate with a hole off its middle",
                           test::SectionOf({test::Rectangle(0, 0, 80, 50), test::Circle(50, 30, 10)})}};
    for (const Case& c : cases) {
        const SaintVenantTorsion torsion(*c.section, 1e-8);
        const auto& solid = torsion.Solids().at(0);
        const std::size_t loops = c.section->Count();
        const double pairs =
            WarpingSquareIntegral(solid.boundary, solid.warping, loops, SquareMethod::pairByPair);
        EXPECT_NEAR(
            WarpingSquareIntegral(solid.boundary, solid.warping, loops, SquareMethod::multipoles) / pairs, 1,
            1e-10)
            << c.name;
        if (loops == 1) {
            EXPECT_NEAR(
                WarpingSquareIntegral(solid.boundary, solid.warping, 1, SquareMethod::alongTheLoop) / pairs,
                1, 1e-9)
                << c.name;
        }
    }
}

}  // namespace
}  // namespace tgp
