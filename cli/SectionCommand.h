#pragma once

#include <ostream>

namespace tgp::cli {

// tgp-section: reads closed profiles from DXF or text files (or folders of them) and prints their
// section properties, computing files on every core and printing in the order they were named.
// Returns the exit code: 0 when every profile was computed, 1 for bad arguments or unreadable
// files (or no profile at all), 2 when some profile was rejected (open, self-intersecting, no area).
// With progressAfterSeconds >= 0 (standard error a terminal), a line on `err` tells the progress
// once the work has taken that long (not with --quiet).
int RunSectionCommand(int argc, const char* const* argv, std::ostream& out, std::ostream& err,
                      double progressAfterSeconds = -1);

}  // namespace tgp::cli
