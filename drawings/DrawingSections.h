#pragma once

#include <memory>
#include <string>
#include <vector>

#include "drawings/DrawnProfile.h"
#include "drawings/DxfProfileReader.h"
#include "profiles/Loop7s.h"

namespace tgp::drawings {

enum class DrawingFormat {
    ByExtension,  // ".dxf" (any case) is a drawing, anything else a text vertex list
    Dxf,
    Text,
};

// How a file is read: the layer and layout of a drawing and the unit of its coordinates (a
// drawing's $INSUNITS, else millimetres, unless given), and whether every closed outline is a
// section of its own instead of holes and touching parts being grouped.
struct DrawingOptions : DxfReadOptions {
    DrawingFormat format = DrawingFormat::ByExtension;
    bool eachOutline = false;
};

// One section of a drawing: its name ("LWPOLYLINE handle 2F on layer PLATE with 1 hole"), the entity
// of its outer outline, and its loops in millimetres (holes are the loops inside an odd number of
// others, as Loop7s finds them). An elliptic arc is followed by circular arcs through its points.
struct DrawingSection {
    std::string name, type, handle, layer;
    std::shared_ptr<Loop7s> loops;
};

// An outline that makes no section, and why ("is open: ...", "cuts itself at (5, 5)", "overlaps ...").
struct RejectedOutline {
    std::string name, type, handle, layer, reason;
};

// What a file held: its sections and rejected outlines, each in file order, and what made no
// outline at all (texts, dimensions, open polylines, other layers).
struct DrawingSections {
    std::vector<DrawingSection> sections;
    std::vector<RejectedOutline> rejected;
    SkipList skipped;

    // "12 TEXT, 3 open LWPOLYLINE on layer DIM": the most frequent first; empty when nothing was skipped.
    std::string SkipSummary() const;
};

// The sections of a drawing (DXF, ASCII or binary) or of a text vertex list. A file that cannot be
// opened, is not DXF or is cut short raises DrawingFileError (2411) naming the file and the cause.
DrawingSections ReadDrawingSections(const std::string& path, const DrawingOptions& options = {});

// The closed-outline candidates of the same file in millimetres, before they are built into loops;
// with `skippedShapes`, a drawing's open lines that made no outline too (see ReadDxfProfiles).
std::vector<DrawnProfile> ReadOutlines(const std::string& path, const DrawingOptions& options,
                                       SkipList* skipped = nullptr,
                                       std::vector<DrawnProfile>* skippedShapes = nullptr);

}  // namespace tgp::drawings
