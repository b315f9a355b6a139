#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "core/Error.h"
#include "profiles/EllipticArc.h"

namespace tgp::drawings {

// One closed outline as read from a drawing or a text file: the vertices (in millimetres), one
// bulge per vertex, whether the source marks it closed, and what tells the user
// which outline it is: a name, and for a drawing's entity its type, handle and layer.
struct DrawnProfile {
    std::string name;
    std::string type, handle, layer;  // empty for text input
    std::vector<Point3> vertices;
    std::vector<double> bulges;
    bool closed = true;
    // Why the outline cannot be used as drawn (an arc scaled unequally, a block that inserts
    // itself); empty when it can.
    std::string problem;
    // Outlines of one group form one section whatever their arrangement (the loops of one text
    // profile); -1: grouped by containment with the other outlines of the file.
    int group = -1;
    // Elliptic arcs the outline follows: their segments (curveOf[k] = the curve of segment k, -1 for
    // none) are circular arcs through points of the ellipse, and the section properties take the
    // ellipse's exact integrals instead of theirs.
    std::vector<EllipticArc> curves;
    std::vector<int> curveOf;

    void Add(double x, double y, double bulge) {
        vertices.push_back({x, y, 0});
        bulges.push_back(bulge);
    }
    // Adds x, y pairs with their bulges.
    void AddAll(std::span<const double> xy, std::span<const double> bulgeList) {
        for (std::size_t k = 0; k < bulgeList.size() && 2 * k + 1 < xy.size(); ++k)
            Add(xy[2 * k], xy[2 * k + 1], bulgeList[k]);
    }
    // The vertices as x, y pairs, as a loop takes them from a script.
    std::vector<double> Coordinates() const {
        std::vector<double> xy;
        for (const Point3& v : vertices) xy.insert(xy.end(), {v.x, v.y});
        return xy;
    }
    std::size_t VertexCount() const { return bulges.size(); }
};

// What a file held that made no section, by description ("TEXT", "open LWPOLYLINE on layer DIM"),
// with counts.
using SkipList = std::vector<std::pair<std::string, std::size_t>>;
// Adds `count` to the description's count (a new entry the first time).
void Count(SkipList& list, const std::string& what, std::size_t count = 1);

// A file that cannot be read as profiles at all (missing, unreadable, malformed line): one of the
// library's own errors, its description the message naming the file.
class DrawingFileError : public Error {
  public:
    explicit DrawingFileError(const std::string& message) : Error(Error::kLibrary, message) {}
};

}  // namespace tgp::drawings
