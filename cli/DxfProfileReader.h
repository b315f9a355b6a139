#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/DrawnProfile.h"

namespace tgp::cli {

// Reads the profiles of a DXF drawing's model space: LWPOLYLINE and POLYLINE (vertices with
// bulges; the closed flag, or a last vertex on the first, marks them closed) and CIRCLE (two half
// arcs). Entities inside block definitions and other entity types are ignored. Each profile is
// named after its entity, e.g. "POLYLINE handle 2F on layer 0". A file that cannot be opened raises
// ProfileFileError. Numbers are read with the classic "C" locale whatever the process has set.
std::vector<DrawnProfile> ReadDxfProfiles(const std::string& path);
// The same from the text of a drawing; `source` names it in messages.
std::vector<DrawnProfile> ReadDxfText(std::string_view text, const std::string& source);

}  // namespace tgp::cli
