// The fast system (multipoles far, a sparse matrix near) against the dense one on the same boundary:
// straight panels and arcs, graded corners, a hole.

#include <gtest/gtest.h>

#include <cmath>

#include "profiles/NeumannProblem.h"
#include "profiles/TorsionSolids.h"
#include "support/ProfileTestShapes.h"

namespace tgp {
namespace {

TEST(NeumannProblem, FastAndDenseSystemsAgree) {
    test::Outline rounded;  // a 60 x 40 plate with two rounded corners
    rounded.Add(0, 0);
    rounded.Add(50, 0, 0.41421356);
    rounded.Add(60, 10);
    rounded.Add(60, 30, 0.41421356);
    rounded.Add(50, 40);
    rounded.Add(0, 40);
    const auto section = test::SectionOf({rounded, test::Circle(25, 20, 8)});
    const auto solids = TorsionSolids(*section);
    ASSERT_EQ(solids.size(), 1u);
    const BoundaryPanels boundary(solids[0], {30, 20, 0}, 8, 8);
    const std::vector<NeumannProblem::Flux> fluxes{
        [](const Point3& p, const Point3& n) { return p.y * n.x - p.x * n.y; },
        [](const Point3& p, const Point3& n) { return p.x * p.x * n.x - p.y * p.y * n.y; }};
    const auto dense = NeumannProblem(boundary, NeumannProblem::Assembly::dense).Solve(fluxes);
    const auto fast = NeumannProblem(boundary, NeumannProblem::Assembly::fast).Solve(fluxes);
    for (std::size_t r = 0; r < fluxes.size(); ++r) {
        double scale = 0;
        for (double u : dense[r]) scale = std::max(scale, std::fabs(u));
        for (std::size_t i = 0; i < dense[r].size(); ++i)
            ASSERT_NEAR(fast[r][i], dense[r][i], 1e-9 * scale) << "flux " << r << " node " << i;
    }
}

}  // namespace
}  // namespace tgp
