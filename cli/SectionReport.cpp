#include "cli/SectionReport.h"

#include <fmt/format.h>

#include <cmath>

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
    {"fibre to top", &SectionValues::top, &ReportUnits::length, "fibre_top"},
    {"fibre to bottom", &SectionValues::bottom, &ReportUnits::length, "fibre_bottom"},
    {"fibre to left", &SectionValues::left, &ReportUnits::length, "fibre_left"},
    {"fibre to right", &SectionValues::right, &ReportUnits::length, "fibre_right"},
    {"Wel,x top", &SectionValues::welxTop, &ReportUnits::modulus, "wel_x_top"},
    {"Wel,x bottom", &SectionValues::welxBottom, &ReportUnits::modulus, "wel_x_bottom"},
    {"Wel,y left", &SectionValues::welyLeft, &ReportUnits::modulus, "wel_y_left"},
    {"Wel,y right", &SectionValues::welyRight, &ReportUnits::modulus, "wel_y_right"},
    {"Wpl,x", &SectionValues::wplx, &ReportUnits::modulus, "wpl_x"},
    {"Wpl,y", &SectionValues::wply, &ReportUnits::modulus, "wpl_y"},
    {"plastic axis y", &SectionValues::plasticY, &ReportUnits::length, "plastic_axis_y"},
    {"plastic axis x", &SectionValues::plasticX, &ReportUnits::length, "plastic_axis_x"},
};


}  // namespace

ReportUnits ReportUnits::From(std::shared_ptr<UnitSetting> setting, int significantDigits) {
    ReportUnits u;
    u.length = GetUnitString(DLengthObject, setting);
    u.area = GetUnitString(DAreaObject, setting);
    u.modulus = GetUnitString(DVolumeObject, setting);
    u.moment = GetUnitString(DMomentOfInertiaObject, setting);
    u.angle = GetUnitString(DAngleObject, setting);
    u.setting = std::move(setting);
    u.significantDigits = significantDigits;
    return u;
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
    std::string out = fmt::format(
        "{{\n  \"units\": {{\"length\": {}, \"area\": {}, \"section_modulus\": {}, \"moment_of_inertia\": {}, "
        "\"angle\": {}}},\n",
        JsonString(units.length), JsonString(units.area), JsonString(units.modulus), JsonString(units.moment),
        JsonString(units.angle));
    out += "  \"profiles\": [";
    const char* separator = "\n";
    for (const ProfileOutcome& o : outcomes) {
        out += separator;
        separator = ",\n";
        out += "    {\"name\": " + JsonString(o.name);
        out += ", \"file\": " + JsonString(o.file);
        if (!o.type.empty()) {
            out += ", \"type\": " + JsonString(o.type) + ", \"handle\": " + JsonString(o.handle) +
                   ", \"layer\": " + JsonString(o.layer);
        }
        out += fmt::format(", \"loops\": {}, \"holes\": {}", o.loops, o.holes);
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
