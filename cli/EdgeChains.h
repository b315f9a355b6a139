#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/DrawnProfile.h"

namespace tgp::cli {

// A piece of outline in world coordinates, drawn as an entity of its own: a LINE, or an ARC (its
// bulge, positive counter-clockwise).
struct DrawnEdge {
    std::string type, handle, layer;
    double x0 = 0, y0 = 0, x1 = 0, y1 = 0, bulge = 0;
};

// End points closer than this share a point, relative to the extent of all the edges (the larger of
// their width and height): 1E-6, a tenth of a micrometre on a 100 mm part.
inline constexpr double kChainGap = 1e-6;

// Chains edges whose ends meet into closed outlines, each with one vertex per edge, in the order of
// travel (an edge travelled backwards has its bulge negated). An edge that is not part of a closed
// chain (an end that meets no other edge, or more than one) is handed to `unused` with the reason.
// Outlines come in the order of their first edge.
std::vector<DrawnProfile> ChainEdges(const std::vector<DrawnEdge>& edges,
                                     const std::function<void(const DrawnEdge&, const std::string& why)>& unused);

}  // namespace tgp::cli
