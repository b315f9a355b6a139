#include "cli/SectionCommand.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <string>
#include <vector>

#include "cli/DxfProfileReader.h"
#include "cli/SectionReport.h"
#include "cli/TextProfileReader.h"
#include "units/UnitCatalogue.h"
#include "units/UnitSymbols.h"

namespace tgp::cli {

namespace {

std::string Lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

// The length unit whose catalogue symbol is the text (any case).
int16_t LengthUnitNamed(const std::string& text) {
    for (int16_t id : ValidUnitIds(DLengthObject)) {
        if (Lower(GetUnitString(DLengthObject, id)) == Lower(text)) return id;
    }
    std::string known;
    for (int16_t id : ValidUnitIds(DLengthObject)) known += (known.empty() ? "" : ", ") + GetUnitString(DLengthObject, id);
    throw CLI::ValidationError("--units", "unknown length unit '" + text + "' (one of " + known + ")");
}

int16_t AngleUnitNamed(const std::string& text) {
    const std::string t = Lower(text);
    if (t == "deg" || t == "degree" || t == "degrees" || t == GetUnitString(DAngleObject, Degree_UnitID)) return Degree_UnitID;
    if (t == "rad" || t == "radian" || t == "radians") return Radian_UnitID;
    throw CLI::ValidationError("--angle", "unknown angle unit '" + text + "' (deg or rad)");
}

// Lengths, areas and second moments share the length unit; angles have their own.
std::shared_ptr<UnitSetting> SettingFor(int16_t length, int16_t angle) {
    auto setting = std::make_shared<UnitSetting>();
    for (DimensionObjectType kind : {DLengthObject, DAreaObject, DMomentOfInertiaObject}) setting->UnitID(kind, length);
    setting->UnitID(DAngleObject, angle);
    return setting;
}

bool LooksLikeDxf(const std::string& path, const std::string& format) {
    if (format != "auto") return format == "dxf";
    return path.size() >= 4 && Lower(path.substr(path.size() - 4)) == ".dxf";
}

std::vector<DrawnProfile> ReadProfiles(const std::string& path, const std::string& format) {
    if (LooksLikeDxf(path, format)) return ReadDxfProfiles(path);
    std::ifstream in(path);
    if (!in) throw ProfileFileError(path + ": cannot open the file");
    return ReadTextProfiles(in, path);
}

struct Options {
    std::vector<std::string> files;
    std::string length = "mm";
    std::string angle = "deg";
    std::string format = "auto";
    int digits = 6;
    bool json = false;
};

void Declare(CLI::App& app, Options& o) {
    app.add_option("files", o.files, "DXF drawings (.dxf) or text profiles (one 'x y [bulge]' vertex a line)")
        ->required();
    app.add_option("-u,--units,--length", o.length, "length unit of the results: mm, cm, dm, m, in or ft")
        ->capture_default_str();
    app.add_option("--angle", o.angle, "angle unit of the principal angle: deg or rad")->capture_default_str();
    app.add_option("--digits", o.digits, "significant digits in the table")->check(CLI::Range(1, 15))->capture_default_str();
    app.add_option("--format", o.format, "input format")->check(CLI::IsMember({"auto", "dxf", "text"}))->capture_default_str();
    app.add_flag("--json", o.json, "print one JSON document instead of the table");
}

}  // namespace

int RunSectionCommand(int argc, const char* const* argv, std::ostream& out, std::ostream& err) {
    CLI::App app{"Section properties of closed profiles drawn as polylines, circles or vertex lists", "tgp-section"};
    Options o;
    Declare(app, o);
    ReportUnits units;
    try {
        app.parse(argc, argv);
        units = ReportUnits::From(SettingFor(LengthUnitNamed(o.length), AngleUnitNamed(o.angle)), o.digits);
    } catch (const CLI::ParseError& e) {
        return app.exit(e, out, err) == 0 ? 0 : 1;
    }

    std::vector<ProfileOutcome> outcomes;
    try {
        for (const std::string& file : o.files) {
            for (DrawnProfile& p : ReadProfiles(file, o.format)) {
                p.name = file + ": " + p.name;
                outcomes.push_back(AnalyseProfile(p, units.setting));
            }
        }
    } catch (const ProfileFileError& e) {
        err << "tgp-section: " << e.what() << "\n";
        return 1;
    }
    if (outcomes.empty()) {
        err << "tgp-section: no profiles found\n";
        return 1;
    }
    out << (o.json ? FormatJson(outcomes, units) : FormatTable(outcomes, units));
    bool rejected = false;
    for (const ProfileOutcome& r : outcomes) {
        if (r.values) continue;
        rejected = true;
        err << "tgp-section: " << r.name << " " << r.error << "\n";
    }
    return rejected ? 2 : 0;
}

}  // namespace tgp::cli
