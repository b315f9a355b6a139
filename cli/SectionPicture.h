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

// What a drawing's overview shows of one of its sections: its outlines (their places among the
// outlines read) and holes, and for one without values its name and why.
struct DrawnSection {
    std::vector<std::size_t> outlines;
    std::vector<bool> isHole;
    bool valid = true;
    std::string name, error;
};

// A picture of a whole file, to scale: its sections filled, outlines that made none in the warning
// colour (their reasons in the legend), and the open lines that were skipped in grey, so that a
// user sees what was read and what was not; the legend says what was skipped by kind.
std::string DrawingSvg(const std::string& file, const std::vector<DrawnSection>& sections,
                       const std::vector<drawings::DrawnProfile>& profiles,
                       const std::vector<drawings::DrawnProfile>& skippedShapes,
                       const std::string& skipSummary, const ReportUnits& units);

// The picture's file name: the drawing's name without its extension, then the section's entity
// handle or, without one, its place among the file's sections (from 1); characters other than
// letters, digits, '-' and '_' become '_'. "ipe200-1.svg", "plates-2F.svg".
std::string PictureName(const std::string& file, const ProfileOutcome& outcome, std::size_t ordinal);
// The overview's: "ipe200-all.svg".
std::string OverviewName(const std::string& file);

}  // namespace tgp::cli
