#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "drawings/DrawnProfile.h"

namespace tgp::drawings {

// A piece of outline in world coordinates, drawn as an entity of its own: a LINE, an ARC, an open
// SPLINE (flattened), a hatch boundary's edge: its vertices and one bulge per segment (positive
// counter-clockwise), one vertex more than bulges.
struct DrawnEdge {
    std::string type, handle, layer;
    std::vector<Point3> vertices;
    std::vector<double> bulges;
    bool approximate = false;          // a flattened curve
    std::optional<EllipticArc> curve;  // an elliptic arc the segments run along

    const Point3& Start() const { return vertices.front(); }
    const Point3& End() const { return vertices.back(); }
};

// End points closer than this share a point, relative to the extent of all the edges (the larger of
// their width and height): 1E-6, a tenth of a micrometre on a 100 mm part.
inline constexpr double kChainGap = 1e-6;

// Chains edges whose ends meet into closed outlines, in the order of travel (an edge travelled
// backwards has its vertices reversed and its bulges negated). Edges with a free end are taken
// away first, from that end on (centre marks and extension lines that touch an outline do not stop
// it closing). An edge that is not part of a closed chain (a free end, or a point where more than
// two edges still meet) is handed to `unused` with the reason; an edge whose own ends meet is an
// outline by itself.
// Outlines come in the order of their first edge.
std::vector<DrawnProfile> ChainEdges(
    const std::vector<DrawnEdge>& edges,
    const std::function<void(const DrawnEdge&, const std::string& why)>& unused);

}  // namespace tgp::drawings
