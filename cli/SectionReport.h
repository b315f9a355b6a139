#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/DrawnProfile.h"
#include "units/UnitSetting.h"

namespace tgp::cli {

// Section properties in the units of a UnitSetting, positive whichever way the outlines run.
// Moments are about axes through the centroid parallel to x and y; the principal angle turns x onto
// the axis of I1, counter-clockwise. The extreme fibres are the distances from the centroid to the
// top, bottom, left and right of the section; the elastic moduli are I over those distances; the
// plastic moduli are about the horizontal and vertical axes that halve the area (their positions
// given as plastic axis y and x).
struct SectionValues {
    double area, perimeter, xc, yc, ix, iy, ixy, i1, i2, angle, rx, ry;
    double top, bottom, left, right, welxTop, welxBottom, welyLeft, welyRight, wplx, wply, plasticY, plasticX;
};

// What became of one section: its values, or the reason it has none. A section is one outline, or
// an outer boundary with its holes (and islands inside them), or outlines that touch (plates drawn
// side by side), or the loops of one text profile; it carries the outer outline's entity.
struct ProfileOutcome {
    std::string name;
    std::string file, type, handle, layer;
    int loops = 1, holes = 0;
    std::optional<SectionValues> values;
    std::string error;
};

// The unit choice of a report and the symbols it prints, from the unit symbol table.
struct ReportUnits {
    std::shared_ptr<UnitSetting> setting;
    std::string length, area, modulus, moment, angle;
    int significantDigits = 6;

    static ReportUnits From(std::shared_ptr<UnitSetting> setting, int significantDigits);
};

// The sections of one file's outlines: grouped by containment and touch (or one per outline with
// eachLoop), in file order. Outlines that are open, cut themselves, enclose nothing or carry a
// problem are reported by name and left out; two whose interiors overlap are both reported and
// left out of the grouping. An outline that repeats another one (a hatch drawn on its own outline)
// is left out and counted in `skipped` when given.
std::vector<ProfileOutcome> AnalyseProfiles(const std::vector<DrawnProfile>& profiles,
                                            const std::shared_ptr<UnitSetting>& units, bool eachLoop = false,
                                            SkipList* skipped = nullptr);
// One outline as a section of its own.
ProfileOutcome AnalyseProfile(const DrawnProfile& profile, const std::shared_ptr<UnitSetting>& units);

// A readable table per section (errors included), and the same as one JSON document.
std::string FormatTable(const std::vector<ProfileOutcome>& outcomes, const ReportUnits& units);
std::string FormatJson(const std::vector<ProfileOutcome>& outcomes, const ReportUnits& units);

}  // namespace tgp::cli
