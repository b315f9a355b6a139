#pragma once

#include <ostream>

namespace tgp::cli {

// tgp-section: reads closed profiles from DXF or text files and prints their section properties.
// Returns the exit code: 0 when every profile was computed, 1 for bad arguments or unreadable
// files (or no profile at all), 2 when some profile was rejected (open, self-intersecting, no area).
int RunSectionCommand(int argc, const char* const* argv, std::ostream& out, std::ostream& err);

}  // namespace tgp::cli
