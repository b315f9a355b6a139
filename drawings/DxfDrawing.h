#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/Point3.h"
#include "profiles/EllipticArc.h"

namespace tgp::drawings {

// What a DXF drawing holds that can make profiles, as drawn: each outline in its entity's own
// coordinate system (OCS), block references with their placement, and block definitions.

// A closed-outline candidate: a polyline's vertices and bulges, or a circle as two half arcs.
// (Kept to 256 bytes: a drawing of many outlines holds one per entity while it is read.)
struct DxfShape {
    std::string type;  // LWPOLYLINE, POLYLINE, CIRCLE, LINE, ARC, SPLINE, ELLIPSE or HATCH
    std::string handle, layer;
    Point3 extrusion{0, 0, 1};  // group codes 210, 220, 230: the normal of the entity's plane
    std::vector<Point3> vertices;
    std::vector<double> bulges;
    // An elliptic arc: with followsEllipse the whole shape follows it (an ELLIPSE or a hatch's
    // elliptic edge; vertices and bulges are arcs through its points); otherwise it is a CIRCLE or ARC as
    // an elliptic arc, for a block reference that scales it unequally.
    std::shared_ptr<const EllipticArc> ellipse;
    // A HATCH boundary path: for a path of edges the edges themselves (chained into the outline
    // when the drawing is resolved).
    std::vector<DxfShape> pieces;
    std::string problem;  // why it cannot be a profile as drawn (a mesh, a radius of 0, ...)
    int boundary = 0;     // a HATCH boundary path's number
    bool paperSpace = false;
    bool closed = false;
    // A LINE, an ARC, an open SPLINE: a piece to be chained with others into closed outlines (its
    // last bulge is unused).
    bool edge = false;
    bool approximate = false;  // a curve flattened into segments
    bool followsEllipse = false;

    // Groups 10 (a new vertex's x), 20 (its y) and 42 (its bulge) of a polyline's vertex list.
    void VertexGroup(int code, double value) {
        if (code == 10) {
            vertices.push_back({value, 0, 0});
            bulges.push_back(0);
        } else if (code == 20 && !vertices.empty()) {
            vertices.back().y = value;
        } else if (code == 42 && !bulges.empty()) {
            bulges.back() = value;
        }
    }
};

// A block reference (INSERT): the block's contents scaled, turned and moved, in rows and columns.
struct DxfInsert {
    std::string block, handle, layer;
    bool paperSpace = false;
    Point3 extrusion{0, 0, 1};  // group codes 210, 220, 230: the normal of the entity's plane
    std::size_t line = 0;
    double x = 0, y = 0, z = 0;
    double sx = 1, sy = 1, sz = 1;
    double angle = 0;  // degrees, counter-clockwise
    int columns = 1, rows = 1;
    double columnSpacing = 0, rowSpacing = 0;
};

// An entity that makes no outline (TEXT, DIMENSION, ...): its type, layer and space.
struct DxfOther {
    std::string type, layer;
    bool paperSpace = false;
    auto operator<=>(const DxfOther&) const = default;
};

// Model space, or the contents of one block definition. Shapes are kept in a deque: a drawing of
// many outlines grows it without copying what it holds.
struct DxfSpace {
    std::deque<DxfShape> shapes;
    std::vector<DxfInsert> inserts;
    std::map<DxfOther, std::size_t> others;  // counted by type, layer and space
};

struct DxfBlock {
    std::string name;
    std::string blockRecord;  // the handle of its block record (a layout's space refers to it)
    double baseX = 0, baseY = 0;
    DxfSpace contents;
};

// A paper-space layout: its name and the block record of the block that holds its entities.
struct DxfLayout {
    std::string name, blockRecord;
};

struct DxfDrawing {
    int insunits = 0;  // $INSUNITS: 0 unitless, 1 inches, 4 millimetres, 6 metres, ...
    DxfSpace model;
    std::map<std::string, DxfBlock> blocks;  // by upper-case name (block names ignore case)
    std::vector<DxfLayout> layouts;          // from the OBJECTS section (release 2000 and later)
};

// Reads a DXF file's contents, ASCII or binary, into a drawing. Numbers are read with a decimal
// point whatever the locale; counts the file declares are never trusted (memory follows what is
// there). A file that is empty, is not DXF, is cut short (no EOF, a section left open, a group
// without its value) or holds a group that cannot be read raises DrawingFileError naming `source`
// and the place.
DxfDrawing ParseDxf(std::string_view contents, const std::string& source);

// The upper-case form of a block or layer name, as the drawing compares them.
std::string UpperCase(std::string_view name);

}  // namespace tgp::drawings
