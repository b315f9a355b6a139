#pragma once

#include <cstddef>
#include <vector>

#include "core/Point3.h"
#include "profiles/BoundaryPanels.h"

namespace tgp {

// dw/dn of the warping function about the origin: y nx - x ny.
inline double WarpingFlux(const Point3& y, const Point3& normal) {
    return y.y * normal.x - y.x * normal.y;
}

// How ∫ w² dA is taken: in one pass along the loop (a solid without holes only), as a double boundary
// integral pair by pair, or that integral's far part through the fast multipole method.
enum class SquareMethod { automatic, alongTheLoop, pairByPair, multipoles };

// ∫ w² dA over one solid of `loops` loops of the warping function w (harmonic, dw/dn = WarpingFlux)
// from its values at the boundary's nodes. Automatically: a solid bounded by one loop along it; one
// with holes pair by pair up to 8,000 nodes, through the multipoles beyond (time and memory then
// grow with the nodes, not their square).
double WarpingSquareIntegral(const BoundaryPanels& boundary, const std::vector<double>& warping,
                             std::size_t loops, SquareMethod method = SquareMethod::automatic);

}  // namespace tgp
