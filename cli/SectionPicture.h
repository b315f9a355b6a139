#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/SectionReport.h"
#include "drawings/DrawnProfile.h"

namespace tgp::cli {

// An SVG picture of one section, to scale with y up, in the report's length unit: the section filled
// (even-odd: holes empty, islands filled again; outer outlines counter-clockwise, holes clockwise),
// each outline with its own arcs as SVG arcs, exact at any zoom; the centroid; the principal axes
// labelled with I1, I2 and the angle; the plastic neutral axes dashed; the extreme fibres as the
// bounding lines; the shear centre when torsion was computed; a legend with the name, the unit and
// the key values; a scale bar. A section without values (an outline that is open, cuts itself,
// overlaps another) is drawn in a warning colour with its reason. Text and strokes are sized from
// the picture, not from the coordinates. `profiles` are the outlines the outcome's indices name.
std::string SectionSvg(const ProfileOutcome& outcome, const std::vector<drawings::DrawnProfile>& profiles,
                       const ReportUnits& units);

// The picture's file name: the drawing's name without its extension, then the section's entity
// handle or, without one, its place among the file's sections (from 1); characters other than
// letters, digits, '-' and '_' become '_'. "ipe200-1.svg", "plates-2F.svg".
std::string PictureName(const std::string& file, const ProfileOutcome& outcome, std::size_t ordinal);

}  // namespace tgp::cli
