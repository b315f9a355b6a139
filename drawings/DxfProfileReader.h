#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "drawings/DrawnProfile.h"

namespace tgp::drawings {

// What a drawing held that made no outline ("TEXT", "open LWPOLYLINE on layer DIM", "CIRCLE in
// paper space"), with counts.
using DxfSkips = SkipList;
// "12 TEXT, 3 open LWPOLYLINE on layer DIM": the most frequent first; empty when nothing was skipped.
std::string SkipSummary(const DxfSkips& skipped);

struct DxfReadOptions {
    std::optional<std::string> layer;          // only outlines on this layer (any case)
    std::optional<double> millimetresPerUnit;  // the drawing unit, overriding $INSUNITS
    std::optional<std::string> layout;         // a paper-space layout to read instead of model space
};

// Reads the closed-outline candidates of a DXF drawing's model space, in millimetres: LWPOLYLINE
// and POLYLINE (vertices with bulges; the closed flag, or a last vertex on the first, marks them
// closed), CIRCLE (two half arcs), and the same inside block references (INSERT, nested, with
// insertion point, rotation, scale, mirror and rows and columns), each in world coordinates through
// its entity's own coordinate system (a mirrored entity, extrusion (0, 0, -1), lands mirrored).
// Entities on layer 0 inside a block take the layer of the reference. Paper space is not read, unless
// the options name a layout: then that layout is read instead of model space ("Model" is model
// space); a drawing without that layout raises DrawingFileError naming the layouts it has.
// Outlines that cannot be used as drawn carry their problem (a mesh, a radius of 0, an arc scaled
// unequally, a plane not parallel to XY). What makes no outline (texts, dimensions, open polylines,
// anything in paper space or on other layers) is counted in `skipped` when given. Each is named after its
// entity: "LWPOLYLINE handle 2F on layer IPE200", "... in block B (INSERT handle 3A)". The drawing unit is
// $INSUNITS (millimetres when unitless) unless the options give one. A file that cannot be opened or read
// raises DrawingFileError.
// With `skippedShapes`, the open lines among what was skipped (open polylines, lines and arcs that
// close nothing, shapes on other layers) are kept there as drawn, open, for a picture.
std::vector<DrawnProfile> ReadDxfProfiles(const std::string& path, const DxfReadOptions& options = {},
                                          DxfSkips* skipped = nullptr,
                                          std::vector<DrawnProfile>* skippedShapes = nullptr);
// The same from the text of a drawing; `source` names it in messages.
std::vector<DrawnProfile> ReadDxfText(std::string_view contents, const std::string& source,
                                      const DxfReadOptions& options = {}, DxfSkips* skipped = nullptr,
                                      std::vector<DrawnProfile>* skippedShapes = nullptr);

// Millimetres per drawing unit for an $INSUNITS code; 0 for unitless and unknown codes.
double MillimetresPerInsUnit(int code);

}  // namespace tgp::drawings
