#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/DrawnProfile.h"
#include "units/UnitSetting.h"

namespace tgp::cli {

// Section properties of one profile in the units of a UnitSetting, for a profile traversed either
// way (a counter-clockwise profile is reversed first, so values come out positive). Moments are
// about axes through the centroid parallel to x and y; the principal angle turns x onto the axis
// of I1, counter-clockwise.
struct SectionValues {
    double area, perimeter, xc, yc, ix, iy, ixy, i1, i2, angle, rx, ry;
};

// What became of one profile: its values, or the reason it has none.
struct ProfileOutcome {
    std::string name;
    std::optional<SectionValues> values;
    std::string error;
};

// The unit choice of a report and the symbols it prints, from the unit symbol table.
struct ReportUnits {
    std::shared_ptr<UnitSetting> setting;
    std::string length, area, moment, angle;
    int significantDigits = 6;

    static ReportUnits From(std::shared_ptr<UnitSetting> setting, int significantDigits);
};

// Computes one profile; open, self-intersecting and degenerate profiles get an error text instead.
ProfileOutcome AnalyseProfile(const DrawnProfile& profile, const std::shared_ptr<UnitSetting>& units);

// A readable table per profile (errors included), and the same as one JSON document.
std::string FormatTable(const std::vector<ProfileOutcome>& outcomes, const ReportUnits& units);
std::string FormatJson(const std::vector<ProfileOutcome>& outcomes, const ReportUnits& units);

}  // namespace tgp::cli
