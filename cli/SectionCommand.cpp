#include "cli/SectionCommand.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include "cli/DxfProfileReader.h"
#include "cli/SectionReport.h"
#include "cli/MappedFile.h"
#include "cli/TextProfileReader.h"
#include "units/DLength.h"
#include "units/UnitCatalogue.h"
#include "units/UnitSymbols.h"

namespace tgp::cli {

namespace {

std::string Lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

// The length unit whose catalogue symbol is the text (any case).
int16_t LengthUnitNamed(const std::string& text, const std::string& option) {
    for (int16_t id : ValidUnitIds(DLengthObject)) {
        if (Lower(GetUnitString(DLengthObject, id)) == Lower(text)) return id;
    }
    std::string known;
    for (int16_t id : ValidUnitIds(DLengthObject)) known += (known.empty() ? "" : ", ") + GetUnitString(DLengthObject, id);
    throw CLI::ValidationError(option, "unknown length unit '" + text + "' (one of " + known + ")");
}

// Millimetres per unit of a length unit named by its catalogue symbol.
double MillimetresPerLengthUnit(const std::string& symbol) {
    DLength length;
    length.Value(LengthUnitNamed(symbol, "--drawing-units"), 1.0);
    return length.Millimetres();
}

int16_t AngleUnitNamed(const std::string& text) {
    const std::string t = Lower(text);
    if (t == "deg" || t == "degree" || t == "degrees" || t == GetUnitString(DAngleObject, Degree_UnitID)) return Degree_UnitID;
    if (t == "rad" || t == "radian" || t == "radians") return Radian_UnitID;
    throw CLI::ValidationError("--angle", "unknown angle unit '" + text + "' (deg or rad)");
}

// Lengths, areas, section moduli and second moments share the length unit; angles have their own.
std::shared_ptr<UnitSetting> SettingFor(int16_t length, int16_t angle) {
    auto setting = std::make_shared<UnitSetting>();
    for (DimensionObjectType kind : {DLengthObject, DAreaObject, DVolumeObject, DMomentOfInertiaObject}) {
        setting->UnitID(kind, length);
    }
    setting->UnitID(DAngleObject, angle);
    return setting;
}

bool LooksLikeDxf(const std::string& path, const std::string& format) {
    if (format != "auto") return format == "dxf";
    return path.size() >= 4 && Lower(path.substr(path.size() - 4)) == ".dxf";
}

struct Options {
    std::vector<std::string> files;
    std::string length = "mm";
    std::string angle = "deg";
    std::string format = "auto";
    std::string drawingUnits;
    std::string layer;
    std::string layout;
    int digits = 6;
    bool json = false;
    bool eachLoop = false;
    bool quiet = false;
    DxfReadOptions dxf;  // from the two options above
};

// The outlines of one file, in millimetres: a drawing's unit from the option, else from the
// drawing itself; a text file's from the option, else millimetres.
std::vector<DrawnProfile> ReadProfiles(const std::string& path, const Options& o, DxfSkips& skipped) {
    if (LooksLikeDxf(path, o.format)) return ReadDxfProfiles(path, o.dxf, &skipped);
    const MappedFile file(path);
    std::vector<DrawnProfile> profiles = ReadTextProfiles(file.Text(), path);
    const double scale = o.dxf.millimetresPerUnit.value_or(1);
    if (scale != 1) {
        for (DrawnProfile& p : profiles) {
            for (double& v : p.xy) v *= scale;
        }
    }
    return profiles;
}

void Declare(CLI::App& app, Options& o) {
    app.add_option("files", o.files, "DXF drawings (.dxf) or text profiles (one 'x y [bulge]' vertex a line)")
        ->required();
    app.add_option("-u,--units,--length", o.length, "length unit of the results: mm, cm, dm, m, in or ft")
        ->capture_default_str();
    app.add_option("--angle", o.angle, "angle unit of the principal angle: deg or rad")->capture_default_str();
    app.add_option("--digits", o.digits, "significant digits in the table")->check(CLI::Range(1, 15))->capture_default_str();
    app.add_option("--format", o.format, "input format")->check(CLI::IsMember({"auto", "dxf", "text"}))->capture_default_str();
    app.add_option("--drawing-units", o.drawingUnits,
                   "unit of the input coordinates: mm, cm, dm, m, in or ft (default: a drawing's $INSUNITS, else mm)");
    app.add_option("--layer", o.layer, "read only the outlines on this layer of a drawing (any case)");
    app.add_option("--layout", o.layout, "read this paper-space layout of a drawing instead of its model space");
    app.add_flag("--each-loop", o.eachLoop, "one section per closed outline, rather than holes and touching parts grouped");
    app.add_flag("--json", o.json, "print one JSON document instead of the table");
    app.add_flag("-q,--quiet", o.quiet, "do not list what each drawing held that made no outline");
}

}  // namespace

int RunSectionCommand(int argc, const char* const* argv, std::ostream& out, std::ostream& err) {
    CLI::App app{"Section properties of closed profiles drawn as polylines, circles or vertex lists", "tgp-section"};
    Options o;
    Declare(app, o);
    ReportUnits units;
    try {
        app.parse(argc, argv);
        units = ReportUnits::From(SettingFor(LengthUnitNamed(o.length, "--units"), AngleUnitNamed(o.angle)), o.digits);
        if (!o.drawingUnits.empty()) o.dxf.millimetresPerUnit = MillimetresPerLengthUnit(o.drawingUnits);
        if (!o.layer.empty()) o.dxf.layer = o.layer;
        if (!o.layout.empty()) o.dxf.layout = o.layout;
    } catch (const CLI::ParseError& e) {
        return app.exit(e, out, err) == 0 ? 0 : 1;
    }

    // A file that cannot be read is reported and the others are still computed.
    std::vector<ProfileOutcome> outcomes;
    bool unreadable = false;
    for (const std::string& file : o.files) {
        try {
            DxfSkips skipped;
            const std::vector<DrawnProfile> profiles = ReadProfiles(file, o, skipped);
            for (ProfileOutcome& outcome : AnalyseProfiles(profiles, units.setting, o.eachLoop, &skipped)) {
                outcome.name = file + ": " + outcome.name;
                outcome.file = file;
                outcomes.push_back(std::move(outcome));
            }
            if (!o.quiet && !skipped.empty()) err << "tgp-section: " << file << ": skipped " << SkipSummary(skipped) << "\n";
        } catch (const ProfileFileError& e) {
            err << "tgp-section: " << e.what() << "\n";
            unreadable = true;
        }
    }
    if (outcomes.empty()) {
        if (!unreadable) err << "tgp-section: no profiles found\n";
        return 1;
    }
    out << (o.json ? FormatJson(outcomes, units) : FormatTable(outcomes, units));
    bool rejected = false;
    for (const ProfileOutcome& r : outcomes) {
        if (r.values) continue;
        rejected = true;
        err << "tgp-section: " << r.name << " " << r.error << "\n";
    }
    return unreadable ? 1 : rejected ? 2 : 0;
}

}  // namespace tgp::cli
