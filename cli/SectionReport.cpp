#include "cli/SectionReport.h"

#include <fmt/format.h>

#include <cmath>
#include <cstring>

#include "units/NumberText.h"
#include "units/UnitSymbols.h"

namespace tgp::cli {

std::string Significant(double value, int digits) {
    if (value == 0 || !std::isfinite(value)) return FormatNumber(value, 0);
    const int magnitude = static_cast<int>(std::floor(std::log10(std::fabs(value))));
    const int decimals = std::max(0, digits - 1 - magnitude);
    return FormatNumber(value, static_cast<int16_t>(std::min(decimals, 15)));
}

namespace {

std::string JsonString(const std::string& text) {
    std::string out = "\"";
    for (char ch : text) {
        const auto c = static_cast<unsigned char>(ch);
        if (ch == '"' || ch == '\\')
            out += {'\\', ch};
        else if (c < 0x20)
            out += fmt::format("\\u{:04x}", c);
        else
            out += ch;
    }
    return out + "\"";
}

// A printed value: its label, where it is kept, its unit (none: a relative number) and its JSON key.
template <class Values>
struct ReportRow {
    const char* label;
    double Values::*value;
    const std::string ReportUnits::*unit;
    const char* key;
};
using Row = ReportRow<SectionValues>;
using TorsionRow = ReportRow<TorsionValues>;

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

const std::string kRelative = "(relative)";

const TorsionRow kTorsionRows[] = {
    {"torsion constant J", &TorsionValues::j, &ReportUnits::moment, "j"},
    {"warping constant Iw", &TorsionValues::iw, &ReportUnits::warping, "iw"},
    {"shear centre x", &TorsionValues::shearX, &ReportUnits::length, "shear_centre_x"},
    {"shear centre y", &TorsionValues::shearY, &ReportUnits::length, "shear_centre_y"},
    {"torsion modulus Wt", &TorsionValues::wt, &ReportUnits::modulus, "wt"},
    {"largest stress at x", &TorsionValues::stressX, &ReportUnits::length, "largest_stress_x"},
    {"largest stress at y", &TorsionValues::stressY, &ReportUnits::length, "largest_stress_y"},
    {"J error estimate", &TorsionValues::estimate, nullptr, "j_error_estimate"},
    {"monosymmetry β1", &TorsionValues::beta1, &ReportUnits::length, "monosymmetry_1"},
    {"monosymmetry β2", &TorsionValues::beta2, &ReportUnits::length, "monosymmetry_2"},
    {"Poisson's ratio", &TorsionValues::poisson, nullptr, "poisson"},
    {"elastic shear centre x", &TorsionValues::elasticX, &ReportUnits::length, "elastic_shear_centre_x"},
    {"elastic shear centre y", &TorsionValues::elasticY, &ReportUnits::length, "elastic_shear_centre_y"},
    {"shear area along x", &TorsionValues::shearAreaX, &ReportUnits::area, "shear_area_x"},
    {"shear area along y", &TorsionValues::shearAreaY, &ReportUnits::area, "shear_area_y"},
    {"shear area along 1", &TorsionValues::shearArea1, &ReportUnits::area, "shear_area_1"},
    {"shear area along 2", &TorsionValues::shearArea2, &ReportUnits::area, "shear_area_2"},
};

template <class Values>
const std::string& UnitOf(const ReportRow<Values>& row, const ReportUnits& units) {
    return row.unit ? units.*row.unit : kRelative;
}

}  // namespace

ReportUnits ReportUnits::From(std::shared_ptr<UnitSetting> setting, int significantDigits) {
    ReportUnits u;
    u.length = GetUnitString(DLengthObject, setting);
    u.area = GetUnitString(DAreaObject, setting);
    u.modulus = GetUnitString(DVolumeObject, setting);
    u.moment = GetUnitString(DMomentOfInertiaObject, setting);
    u.angle = GetUnitString(DAngleObject, setting);
    u.warping = u.length + "⁶";
    u.setting = std::move(setting);
    u.significantDigits = significantDigits;
    return u;
}

namespace {

// A row: the label left-aligned in 24 columns, the number right-aligned in 18, then the unit. Put
// together by hand: a report of 10^5 sections writes 2.4 million rows.
void AppendRow(std::string& out, const char* label, const std::string& number, const std::string& unit) {
    const std::size_t labelLength = std::strlen(label);
    out += "  ";
    out += label;
    if (labelLength < 24) out.append(24 - labelLength, ' ');
    if (number.size() < 18) out.append(18 - number.size(), ' ');
    out += number;
    out += "  ";
    out += unit;
    out += '\n';
}

// A field as RFC 4180 writes it: quoted, with quotes doubled, when it holds a comma, a quote or a
// line break.
std::string CsvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string out = "\"";
    for (char ch : text) out += ch == '"' ? std::string("\"\"") : std::string(1, ch);
    return out + "\"";
}

// The rows of one kind of values, each as the table, JSON, CSV and its header write it; a CSV row
// leaves the fields of values it does not have empty.
template <class Values, std::size_t N>
void AppendTableRows(std::string& out, const ReportRow<Values> (&rows)[N], const Values& values,
                     const ReportUnits& units) {
    for (const auto& row : rows)
        AppendRow(out, row.label, Significant(values.*row.value, units.significantDigits),
                  UnitOf(row, units));
}

template <class Values, std::size_t N>
void AppendJsonFields(std::string& out, const ReportRow<Values> (&rows)[N], const Values& values) {
    for (const auto& row : rows) {
        out += ", \"";
        out += row.key;
        out += "\": ";
        out += FormatNumber(values.*row.value);
    }
}

template <class Values, std::size_t N>
void AppendCsvFields(std::string& out, const ReportRow<Values> (&rows)[N],
                     const std::optional<Values>& values) {
    for (const auto& row : rows) {
        out += ',';
        if (values) out += FormatNumber((*values).*row.value);
    }
}

template <class Values, std::size_t N>
void AppendCsvHeader(std::string& out, const ReportRow<Values> (&rows)[N], const ReportUnits& units) {
    for (const auto& row : rows) {
        out += ',';
        out += CsvField(fmt::format("{} ({})", row.key, UnitOf(row, units)));
    }
}

std::string TableEntry(const ProfileOutcome& o, const ReportUnits& units) {
    if (!o.values) return fmt::format("{}: rejected, {}\n\n", o.name, o.error);
    std::string out;
    out.reserve(1536);
    out += o.name;
    out += '\n';
    AppendTableRows(out, kRows, *o.values, units);
    if (o.torsion) AppendTableRows(out, kTorsionRows, *o.torsion, units);
    if (!o.torsionError.empty()) out += "  torsion: " + o.torsionError + "\n";
    out += '\n';
    return out;
}

std::string JsonEntry(const ProfileOutcome& o) {
    std::string out = "    {\"name\": " + JsonString(o.name);
    out += ", \"file\": " + JsonString(o.file);
    if (!o.type.empty()) {
        out += ", \"type\": " + JsonString(o.type) + ", \"handle\": " + JsonString(o.handle) +
               ", \"layer\": " + JsonString(o.layer);
    }
    out += fmt::format(", \"loops\": {}, \"holes\": {}", o.loops, o.holes);
    if (!o.values) return out + ", \"error\": " + JsonString(o.error) + "}";
    AppendJsonFields(out, kRows, *o.values);
    if (o.torsion) AppendJsonFields(out, kTorsionRows, *o.torsion);
    if (!o.torsionError.empty()) out += ", \"torsion_error\": " + JsonString(o.torsionError);
    return out + "}";
}

std::string CsvEntry(const ProfileOutcome& o, const ReportUnits& units) {
    std::string out = CsvField(o.name) + "," + CsvField(o.file) + "," + CsvField(o.type) + "," +
                      CsvField(o.handle) + "," + CsvField(o.layer) + fmt::format(",{},{}", o.loops, o.holes);
    AppendCsvFields(out, kRows, o.values);
    if (units.torsion) AppendCsvFields(out, kTorsionRows, o.torsion);
    return out + "," + CsvField(o.error) + "\r\n";
}

}  // namespace

std::string ReportStart(ReportKind kind, const ReportUnits& units) {
    switch (kind) {
        case ReportKind::Table: return "";
        case ReportKind::Json:
            return fmt::format(
                       "{{\n  \"units\": {{\"length\": {}, \"area\": {}, \"section_modulus\": {}, "
                       "\"moment_of_inertia\": {}, "
                       "\"angle\": {}, \"warping_constant\": {}}},\n",
                       JsonString(units.length), JsonString(units.area), JsonString(units.modulus),
                       JsonString(units.moment), JsonString(units.angle), JsonString(units.warping)) +
                   "  \"profiles\": [";
        case ReportKind::Csv: {
            // A byte order mark, so that a spreadsheet reads the unit symbols (mm², °) as UTF-8.
            std::string header = "\xEF\xBB\xBFname,file,type,handle,layer,loops,holes";
            AppendCsvHeader(header, kRows, units);
            if (units.torsion) AppendCsvHeader(header, kTorsionRows, units);
            return header + ",error\r\n";
        }
    }
    return "";
}

std::string ReportEntry(ReportKind kind, const ProfileOutcome& outcome, const ReportUnits& units,
                        bool first) {
    switch (kind) {
        case ReportKind::Table: return TableEntry(outcome, units);
        case ReportKind::Json: return (first ? "\n" : ",\n") + JsonEntry(outcome);
        case ReportKind::Csv: return CsvEntry(outcome, units);
    }
    return "";
}

std::string ReportEnd(ReportKind kind) {
    return kind == ReportKind::Json ? "\n  ]\n}\n" : "";
}

std::string FormatReport(ReportKind kind, const std::vector<ProfileOutcome>& outcomes,
                         const ReportUnits& units) {
    std::string out = ReportStart(kind, units);
    for (std::size_t i = 0; i < outcomes.size(); ++i) out += ReportEntry(kind, outcomes[i], units, i == 0);
    return out + ReportEnd(kind);
}

std::string FormatTable(const std::vector<ProfileOutcome>& outcomes, const ReportUnits& units) {
    return FormatReport(ReportKind::Table, outcomes, units);
}

std::string FormatJson(const std::vector<ProfileOutcome>& outcomes, const ReportUnits& units) {
    return FormatReport(ReportKind::Json, outcomes, units);
}

}  // namespace tgp::cli
