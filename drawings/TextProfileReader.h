#pragma once

#include <istream>
#include <string>
#include <string_view>
#include <vector>

#include "drawings/DrawnProfile.h"

namespace tgp::drawings {

// Reads profiles from plain text:
//
//   # a comment (from '#' to the end of the line)
//   profile IPE 200      optional: starts a profile and names it
//   x y [bulge]          one vertex per line, numbers with a '.' decimal point, bulge 0 when left out
//   loop                 starts another loop of the same profile (a hole, an island, another plate)
//   end                  ends the profile; a blank line does the same
//
// Every loop is closed back to its first vertex; the loops of one profile are one section (their
// group). Loops after the first are named "<profile>, loop <k>". Profiles without a name are called
// "profile <n> (line <first line>)". Numbers are read through the library's number-text service,
// so the process locale plays no part. A malformed line raises DrawingFileError naming the source
// and the line number (the first malformed line of the text).
//
// A large text (4 MB or more) is read in pieces split at line breaks, one thread a core;
// `pieceCount` > 0 sets the number of pieces whatever the size. The result is the same however
// the text is split.
std::vector<DrawnProfile> ReadTextProfiles(std::string_view text, const std::string& sourceName,
                                           int pieceCount = 0);
std::vector<DrawnProfile> ReadTextProfiles(std::istream& in, const std::string& sourceName);

}  // namespace tgp::drawings
