#include "cli/SectionReport.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/Error.h"
#include "profiles/Loop7.h"
#include "units/NumberText.h"
#include "units/UnitSymbols.h"

namespace tgp::cli {

namespace {

// Text of a number with a count of significant digits, through the library's number service.
std::string Significant(double value, int digits) {
    if (value == 0 || !std::isfinite(value)) return FormatNumber(value, 0);
    const int magnitude = static_cast<int>(std::floor(std::log10(std::fabs(value))));
    const int decimals = std::max(0, digits - 1 - magnitude);
    return FormatNumber(value, static_cast<int16_t>(std::min(decimals, 15)));
}

using Units = std::shared_ptr<UnitSetting>;

template <class Q>
double In(const std::shared_ptr<Q>& quantity, const Units& units) {
    return quantity->Value(units);
}

double LengthIn(double millimetres, const Units& units) {
    auto length = std::make_shared<DLength>();
    length->Millimetres(millimetres);
    return In(length, units);
}

std::string PointText(const std::vector<Point>& points) {
    if (points.empty()) return "";
    return fmt::format(" at ({}, {})", FormatNumber(points[0][0]), FormatNumber(points[0][1]));
}

// Rounding noise (a centroid 1E-15 off the axis, a product of 1E-55) would print as digits and
// turn the principal axes of a symmetric figure at random: values below 1E-12 of their scale are 0.
// I1 is the larger principal moment and the angle turns x onto its axis, in (-90°, 90°]; with
// principal moments that agree that closely every axis is principal and the angle is 0.
void DropRoundingNoiseAndFindPrincipalAxes(SectionValues& v, const Units& units) {
    constexpr double kNoise = 1e-12;
    auto snap = [](double& value, double scale) {
        if (std::fabs(value) <= kNoise * scale) value = 0;
    };
    snap(v.xc, v.perimeter);
    snap(v.yc, v.perimeter);
    const double momentScale = std::max(std::fabs(v.ix), std::fabs(v.iy));
    snap(v.ixy, momentScale);
    const PrincipalMoments p = MajorAndMinor(v.ix, v.iy, v.ixy);
    v.i1 = p.Major;
    v.i2 = p.Minor;
    double angle = p.Angle;
    if (v.ixy == 0) {  // the x and y axes are principal: report their own moments exactly
        v.i1 = std::max(v.ix, v.iy);
        v.i2 = std::min(v.ix, v.iy);
    }
    if (std::fabs(v.i1 - v.i2) <= kNoise * momentScale) angle = 0;
    // The tool's own angle, converted with the full-precision pi (the quantity classes keep the
    // library's shortened one): a quarter turn reads exactly 90 degrees.
    v.angle = units->UnitID(DAngleObject) == Degree_UnitID ? angle * (180 / std::numbers::pi) : angle;
}

SectionValues ValuesOf(InertiaBlock& block, const Units& units) {
    const Point c = block.Centroid();
    SectionValues v{In(block.Area(), units),
                    In(block.Perimeter(), units),
                    LengthIn(c[0], units),
                    LengthIn(c[1], units),
                    In(block.MomentOfInertiaX(), units),
                    In(block.MomentOfInertiaY(), units),
                    In(block.ProductOfInertiaXY(), units),
                    0,
                    0,
                    0,
                    In(block.RadiusOfGyrationX(), units),
                    In(block.RadiusOfGyrationY(), units)};
    DropRoundingNoiseAndFindPrincipalAxes(v, units);
    return v;
}

std::string JsonString(const std::string& text) {
    std::string out = "\"";
    for (char ch : text) {
        const auto c = static_cast<unsigned char>(ch);
        if (ch == '"' || ch == '\\') out += {'\\', ch};
        else if (c < 0x20) out += fmt::format("\\u{:04x}", c);
        else out += ch;
    }
    return out + "\"";
}

struct Row {
    const char* label;
    double SectionValues::*value;
    const std::string ReportUnits::*unit;
    const char* key;
};

constexpr Row kRows[] = {
    {"area A", &SectionValues::area, &ReportUnits::area, "area"},
    {"perimeter", &SectionValues::perimeter, &ReportUnits::length, "perimeter"},
    {"centroid x", &SectionValues::xc, &ReportUnits::length, "centroid_x"},
    {"centroid y", &SectionValues::yc, &ReportUnits::length, "centroid_y"},
    {"Ix (centroidal)", &SectionValues::ix, &ReportUnits::moment, "ix"},
    {"Iy (centroidal)", &SectionValues::iy, &ReportUnits::moment, "iy"},
    {"Ixy (centroidal)", &SectionValues::ixy, &ReportUnits::moment, "ixy"},
    {"I1 (principal)", &SectionValues::i1, &ReportUnits::moment, "i1"},
    {"I2 (principal)", &SectionValues::i2, &ReportUnits::moment, "i2"},
    {"principal angle", &SectionValues::angle, &ReportUnits::angle, "principal_angle"},
    {"radius of gyration rx", &SectionValues::rx, &ReportUnits::length, "rx"},
    {"radius of gyration ry", &SectionValues::ry, &ReportUnits::length, "ry"},
};

}  // namespace

ReportUnits ReportUnits::From(std::shared_ptr<UnitSetting> setting, int significantDigits) {
    ReportUnits u;
    u.length = GetUnitString(DLengthObject, setting);
    u.area = GetUnitString(DAreaObject, setting);
    u.moment = GetUnitString(DMomentOfInertiaObject, setting);
    u.angle = GetUnitString(DAngleObject, setting);
    u.setting = std::move(setting);
    u.significantDigits = significantDigits;
    return u;
}

ProfileOutcome AnalyseProfile(const DrawnProfile& profile, const std::shared_ptr<UnitSetting>& units) {
    ProfileOutcome outcome{profile.name, std::nullopt, ""};
    if (!profile.closed) {
        outcome.error = "is open: its last vertex does not meet the first";
        return outcome;
    }
    // Fourth powers of the coordinates must stay finite for the moments.
    const auto usable = [](double v) { return std::fabs(v) <= 1e60; };
    if (!std::all_of(profile.xy.begin(), profile.xy.end(), usable) ||
        !std::all_of(profile.bulges.begin(), profile.bulges.end(), usable)) {
        outcome.error = "has a coordinate or bulge out of range (not finite or beyond 1E+60)";
        return outcome;
    }
    auto loop = Loop7::Create();
    try {
        loop->InitFromCoordinates(profile.xy, profile.bulges);
    } catch (const Error&) {
        // Only an overflow can stop the building here: an arc so flat (a bulge within about 1E-300
        // of 0) that its radius passes the number range.
        outcome.error = "has an arc too flat to compute (its radius passes the number range; a bulge that small is 0)";
        return outcome;
    }
    // The properties check the loop for crossings themselves (error 5); only a loop that fails
    // that check is swept a second time, to name where it cuts itself.
    try {
        if (loop->Area() < 0) loop->Reverse();
        outcome.values = ValuesOf(*loop->InertiaBlock(), units);
    } catch (const Error& e) {
        std::vector<Point> crossings;
        if (e.number() != 5 || loop->Count() == 0) outcome.error = "encloses no area";
        else if (loop->IsSelfIntersect(&crossings)) outcome.error = "cuts itself" + PointText(crossings);
        else outcome.error = e.description();
    }
    return outcome;
}

std::string FormatTable(const std::vector<ProfileOutcome>& outcomes, const ReportUnits& units) {
    std::string out;
    for (const ProfileOutcome& o : outcomes) {
        if (!o.values) {
            out += fmt::format("{}: rejected, {}\n\n", o.name, o.error);
            continue;
        }
        out += fmt::format("{}\n", o.name);
        for (const Row& row : kRows) {
            out += fmt::format("  {:<24}{:>18}  {}\n", row.label,
                               Significant((*o.values).*row.value, units.significantDigits), units.*row.unit);
        }
        out += "\n";
    }
    return out;
}

std::string FormatJson(const std::vector<ProfileOutcome>& outcomes, const ReportUnits& units) {
    std::string out = fmt::format("{{\n  \"units\": {{\"length\": {}, \"area\": {}, \"moment_of_inertia\": {}, \"angle\": {}}},\n",
                                  JsonString(units.length), JsonString(units.area), JsonString(units.moment),
                                  JsonString(units.angle));
    out += "  \"profiles\": [";
    const char* separator = "\n";
    for (const ProfileOutcome& o : outcomes) {
        out += separator;
        separator = ",\n";
        out += "    {\"name\": " + JsonString(o.name);
        if (!o.values) {
            out += ", \"error\": " + JsonString(o.error) + "}";
            continue;
        }
        for (const Row& row : kRows) out += fmt::format(", \"{}\": {}", row.key, FormatNumber((*o.values).*row.value));
        out += "}";
    }
    out += "\n  ]\n}\n";
    return out;
}

}  // namespace tgp::cli
