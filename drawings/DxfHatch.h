#pragma once

#include <functional>
#include <vector>

#include "drawings/DxfDrawing.h"
#include "drawings/DxfTags.h"
#include "geometry/Spline.h"

namespace tgp::drawings {

// The boundary paths of a HATCH, read group by group (the caller reads the hatch's handle, layer,
// space and extrusion itself). Each path becomes a shape in the hatch's coordinate system: a
// polyline path a closed outline; an edge path a shape whose pieces are its edges (lines, circular
// and elliptic arcs, splines flattened), chained when the drawing is resolved; a path of one whole
// circle or ellipse that outline.
class HatchReader {
  public:
    using NumberOf = std::function<double(const DxfTag&)>;
    explicit HatchReader(NumberOf number) : number_(std::move(number)) {}

    void Group(const DxfTag& tag);
    // The paths, numbered from 1, each with the hatch's own groups copied from `hatch`.
    std::vector<DxfShape> Paths(const DxfShape& hatch);

  private:
    // One edge of an edge path as the file gives it.
    struct Edge {
        int type = 0;               // 1 line, 2 circular arc, 3 elliptic arc, 4 spline
        double x = 0, y = 0;        // a line's start, an arc's centre
        double x1 = 0, y1 = 0;      // a line's end, an ellipse's major axis end (relative)
        double radius = 0;          // an arc's radius, an ellipse's axis ratio
        double start = 0, end = 0;  // degrees
        bool counterClockwise = true;
        SplineData spline;
        bool fitPoints = false;  // a spline's fit points come next
    };

    void PathGroup(const DxfTag& tag);
    void EdgeGroup(const DxfTag& tag, Edge& edge);
    void EndPath();
    static DxfShape PieceOf(const Edge& edge);

    NumberOf number_;
    enum class Phase { Header, Paths, Rest } phase_ = Phase::Header;
    bool inPath_ = false, polylinePath_ = false;
    DxfShape path_;            // a polyline path's vertices
    std::vector<Edge> edges_;  // an edge path's edges
    std::vector<DxfShape> paths_;
};

}  // namespace tgp::drawings
