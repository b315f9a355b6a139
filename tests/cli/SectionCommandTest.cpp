#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "cli/SectionCommand.h"
#include "cli/SectionReport.h"
#include "support/DxfText.h"
#include "support/ProfileTestShapes.h"
#include "support/SectionCommandRun.h"
#include "units/UnitSetting.h"

namespace tgp::cli {
namespace {

using namespace drawings;

std::shared_ptr<UnitSetting> Units(int16_t length, int16_t angle = Degree_UnitID) {
    auto s = std::make_shared<UnitSetting>();
    for (auto kind : {DLengthObject, DAreaObject, DVolumeObject, DMomentOfInertiaObject})
        s->UnitID(kind, length);
    s->UnitID(DAngleObject, angle);
    return s;
}

DrawnProfile Profile(const std::vector<double>& xy, const std::vector<double>& bulges, bool closed = true) {
    DrawnProfile p;
    p.name = "p";
    p.AddAll(xy, bulges);
    p.closed = closed;
    return p;
}

ProfileOutcome Rejected(std::string name, std::string error) {
    ProfileOutcome o;
    o.name = std::move(name);
    o.error = std::move(error);
    return o;
}

TEST(AnalyseProfile, BothDirectionsGivePositiveValuesInTheChosenUnits) {
    // A 100 x 10 rectangle turned 30 degrees: principal moments 8333.3 and 833333.3 mm4.
    const double c = std::cos(M_PI / 6), s = std::sin(M_PI / 6);
    std::vector<double> xy;
    for (auto [x, y] : {std::pair{0.0, 0.0}, {100.0, 0.0}, {100.0, 10.0}, {0.0, 10.0}}) {
        xy.push_back(x * c - y * s);
        xy.push_back(x * s + y * c);
    }
    for (bool reversed : {false, true}) {
        const DrawnProfile p =
            reversed ? Profile({xy[6], xy[7], xy[4], xy[5], xy[2], xy[3], xy[0], xy[1]}, {0, 0, 0, 0})
                     : Profile(xy, {0, 0, 0, 0});
        const ProfileOutcome o = AnalyseProfile(p, Units(cm_UnitID));
        ASSERT_TRUE(o.values) << o.error;
        EXPECT_NEAR(o.values->area, 10, 1e-12);
        EXPECT_NEAR(o.values->perimeter, 22, 1e-12);
        EXPECT_NEAR(std::max(o.values->i1, o.values->i2), 83.33333333333333, 1e-9);
        EXPECT_NEAR(std::min(o.values->i1, o.values->i2), 0.8333333333333333, 1e-9);
        EXPECT_NEAR(o.values->rx * o.values->rx * o.values->area, o.values->ix, 1e-9);
        EXPECT_GT(o.values->ix, 0);
    }
}

TEST(AnalyseProfile, SymmetricFiguresReportNoRoundingNoise) {
    // Rounding leaves a product of order 1E-10 mm4 on a symmetric section and a centroid a hair off
    // the axis; the report shows the x and y axes as principal, with angle 0 and zeros exactly.
    const test::Outline ipe = test::IpeOutline(200, 100, 5.6, 8.5, 12);
    const ProfileOutcome section = AnalyseProfile(Profile(ipe.xy, ipe.bulges), Units(mm_UnitID));
    ASSERT_TRUE(section.values);
    EXPECT_EQ(section.values->ixy, 0);
    EXPECT_EQ(section.values->angle, 0);
    EXPECT_EQ(section.values->i1, section.values->ix);
    EXPECT_EQ(section.values->xc, 0);
    const ProfileOutcome circle = AnalyseProfile(Profile({-5, 0, 5, 0}, {1, 1}), Units(mm_UnitID));
    ASSERT_TRUE(circle.values);
    EXPECT_EQ(circle.values->yc, 0);
    EXPECT_EQ(circle.values->angle, 0);
}

struct RejectCase {
    const char* name;
    DrawnProfile profile;
    const char* error;
};
class RejectedProfiles : public ::testing::TestWithParam<RejectCase> {};

TEST_P(RejectedProfiles, SayWhy) {
    const ProfileOutcome o = AnalyseProfile(GetParam().profile, Units(mm_UnitID));
    EXPECT_FALSE(o.values);
    EXPECT_EQ(o.error, GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    Profiles, RejectedProfiles,
    ::testing::Values(
        RejectCase{"open", Profile({0, 0, 1, 0, 1, 1}, {0, 0, 0}, false),
                   "is open: its last vertex does not meet the first"},
        RejectCase{"bow_tie", Profile({0, 0, 1, 1, 1, 0, 0, 1}, {0, 0, 0, 0}), "cuts itself at (0.5, 0.5)"},
        RejectCase{"one_point", Profile({3, 3}, {0}), "encloses no area"},
        RejectCase{"infinite", Profile({0, 0, 1, 0, 1, HUGE_VAL}, {0, 0, 0}),
                   "has a coordinate or bulge out of range (not finite or beyond 1E+60)"},
        RejectCase{"not_a_number", Profile({0, 0, 1, 0, 1, 1}, {0, NAN, 0}),
                   "has a coordinate or bulge out of range (not finite or beyond 1E+60)"},
        RejectCase{"huge", Profile({0, 0, 1e200, 0, 1, 1}, {0, 0, 0}),
                   "has a coordinate or bulge out of range (not finite or beyond 1E+60)"},
        // Found by fuzzing: a denormal bulge made the tool abort.
        RejectCase{"flattest_arc", Profile({0, 0, 10, 0, 10, 10}, {0, 0, 1e-320}),
                   "has an arc too flat to compute (its radius passes the number range; a bulge that "
                   "small is 0)"}),
    [](const auto& info) { return info.param.name; });

TEST(SectionReport, TableAndJsonCarryTheCatalogueSymbols) {
    const ReportUnits units = ReportUnits::From(Units(cm_UnitID), 4);
    std::vector<ProfileOutcome> outcomes{
        AnalyseProfile(Profile({0, 0, 0, 20, 10, 20, 10, 0}, {0, 0, 0, 0}), units.setting),
        Rejected("bad \"one\"", "cuts itself")};
    const std::string table = FormatTable(outcomes, units);
    EXPECT_NE(table.find("area A"), std::string::npos);
    EXPECT_NE(table.find("2.000  cm²"), std::string::npos) << table;
    EXPECT_NE(table.find("cm4"), std::string::npos);
    EXPECT_NE(table.find("bad \"one\": rejected, cuts itself"), std::string::npos);
    EXPECT_EQ(FormatReport(ReportKind::Csv, outcomes, units).find("iw ("), std::string::npos)
        << "torsion columns only when asked for";
    const std::string json = FormatJson(outcomes, units);
    EXPECT_NE(json.find("\"area\": \"cm²\""), std::string::npos) << json;
    EXPECT_NE(json.find("\"area\": 2,"), std::string::npos) << json;
    EXPECT_NE(json.find("\"name\": \"bad \\\"one\\\"\", \"file\": \"\", \"loops\": 1, \"holes\": 0, "
                        "\"error\": \"cuts itself\""),
              std::string::npos)
        << json;
}

using test::CommandRun;
using test::RunCommand;
using test::TempText;

TEST(SectionCommand, ExitCodesAndMessages) {
    const std::string good = TempText("good.txt", "0 0\n10 0\n10 10\n0 10\n");
    const std::string mixed =
        TempText("mixed.txt", "profile square\n0 0\n1 0\n1 1\n0 1\nend\nprofile bow\n0 0\n1 1\n1 0\n0 1\n");
    const std::string none = TempText("none.txt", "# nothing here\n");
    const std::string broken = TempText("broken.txt", "0 0\n1;0\n");

    struct Case {
        std::vector<std::string> args;
        int code;
        std::string out, err;  // found in what was printed ("" for err: nothing printed there)
    };
    const Case cases[] = {
        {{good, "--units", "CM"}, 0, "1.00000  cm²", ""},
        {{mixed}, 2, "square", "tgp-section: " + mixed + ": bow cuts itself at (0.5, 0.5)\n"},
        {{none}, 1, "", "tgp-section: no profiles found\n"},
        {{broken}, 1, "", "tgp-section: " + broken + ":2: expected 'x y' or 'x y bulge', found '1;0'\n"},
        {{"/nonexistent/file.txt"}, 1, "", "tgp-section: /nonexistent/file.txt: cannot open the file\n"},
        {{good, "--units", "furlong"}, 1, "", "unknown length unit 'furlong' (one of mm, cm, dm, m, in, ft)"},
        {{}, 1, "", "files is required"},
        {{good, "--json", "--angle", "rad"}, 0, "\"angle\": \"rad\"", ""},
    };
    for (const Case& c : cases) {
        const CommandRun r = RunCommand(c.args);
        EXPECT_EQ(r.code, c.code) << r.err;
        EXPECT_NE(r.out.find(c.out), std::string::npos) << r.out;
        EXPECT_TRUE(c.err.empty() ? r.err.empty() : r.err.find(c.err) != std::string::npos) << r.err;
    }
}

// Each file is reported on its own: an unreadable one fails the run and the others are computed;
// what a drawing skipped is listed unless --quiet.
TEST(SectionCommand, TheCommandReportsEachFileAndGoesOn) {
    const std::string drawing = test::Drawing(
        "0\nLWPOLYLINE\n5\n2F\n8\nPLATE\n90\n4\n70\n1\n10\n0\n20\n0\n10\n100\n20\n0\n10\n100\n20\n50\n10\n0\n"
        "20\n50\n"
        "0\nTEXT\n5\n31\n8\nNOTES\n10\n0\n20\n0\n40\n2.5\n1\nlabel\n"
        "0\nLWPOLYLINE\n5\n32\n8\nDIM\n90\n2\n70\n0\n10\n0\n20\n-10\n10\n100\n20\n-10\n");
    const std::string good = TempText("good.dxf", drawing);
    const std::string text = TempText("notes.dxf", "These are my notes.\n");
    const std::string cut = TempText("cut.dxf", drawing.substr(0, drawing.find("0\nTEXT")));
    CommandRun r = RunCommand({good, text, cut});
    EXPECT_EQ(r.code, 1) << "a file that cannot be read fails the run";
    EXPECT_NE(r.out.find(good + ": LWPOLYLINE handle 2F on layer PLATE"), std::string::npos) << r.out;
    for (const std::string& message :
         {text + ": not a DXF file (its first line, 'These are my notes.', is not a group code)",
          cut + ": section ENTITIES is not closed",
          "tgp-section: " + good + ": skipped 1 TEXT, 1 open LWPOLYLINE on layer DIM\n"})
        EXPECT_NE(r.err.find(message), std::string::npos) << r.err;
    EXPECT_EQ(RunCommand({good, text, "--quiet"}).err.find("skipped"), std::string::npos);
    EXPECT_EQ(RunCommand({good}).code, 0) << "skipping is not a failure";
}

// --torsion adds J, Iw, the shear centres, Wt, where the largest stress acts and the shear areas to
// every format; a 100 x 50 rectangle's J is Saint-Venant's series value 2,858,520.96 mm4 (Timoshenko
// and Goodier, section 109), its shear centre its centroid, and with --poisson 0 its shear areas
// 5/6 of its area (the stress is parabolic across it).
TEST(SectionCommand, TorsionValuesInEveryFormat) {
    const std::string plate = TempText("torsion.txt", "0 0\n100 0\n100 50\n0 50\n");
    const CommandRun json = RunCommand({plate, "--torsion", "--json"});
    ASSERT_EQ(json.code, 0) << json.err;
    EXPECT_NEAR(test::JsonNumber(json.out, "j"), 2858520.96, 0.01);
    EXPECT_NEAR(test::JsonNumber(json.out, "shear_centre_x"), 50, 1e-9);
    EXPECT_NEAR(test::JsonNumber(json.out, "shear_centre_y"), 25, 1e-9);
    EXPECT_NE(json.out.find("\"warping_constant\": \"mm⁶\""), std::string::npos) << json.out;
    EXPECT_NEAR(test::JsonNumber(json.out, "poisson"), 0.3, 0);
    const CommandRun plain = RunCommand({plate, "--torsion", "--json", "--poisson", "0"});
    for (const char* key : {"shear_area_x", "shear_area_y", "shear_area_1", "shear_area_2"})
        EXPECT_NEAR(test::JsonNumber(plain.out, key), 5000 * 5.0 / 6, 1e-5) << key;
    EXPECT_NE(RunCommand({plate, "--torsion", "--poisson", "0.7"}).code, 0);
    const CommandRun table = RunCommand({plate, "--torsion", "--units", "cm"});
    EXPECT_NE(table.out.find("  torsion constant J                 285.852  cm4\n"), std::string::npos)
        << table.out;
    EXPECT_NE(table.out.find("cm⁶"), std::string::npos);
    EXPECT_NE(RunCommand({plate, "--torsion", "--csv"}).out.find(",iw (mm⁶),"), std::string::npos);
    EXPECT_EQ(RunCommand({plate, "--csv"}).out.find("iw ("), std::string::npos) << "only when asked for";
    EXPECT_EQ(RunCommand({plate}).out.find("torsion constant"), std::string::npos);
}

// The program as a user runs it, its output redirected: the report, and no progress line.
TEST(SectionCommand, TheProgramRunsAsAUserRunsIt) {
    const std::string plate = TempText("program.txt", "0 0\n10 0\n10 10\n0 10\n");
    const std::string out = ::testing::TempDir() + "program.out", err = ::testing::TempDir() + "program.err";
    ASSERT_EQ(std::system(
                  (std::string(TGP_SECTION_EXE) + " --json '" + plate + "' > '" + out + "' 2> '" + err + "'")
                      .c_str()),
              0);
    std::ostringstream report, errors;
    report << std::ifstream(out).rdbuf();
    errors << std::ifstream(err).rdbuf();
    const std::string values = report.str().substr(report.str().find("\"profiles\""));  // not the units
    EXPECT_NEAR(test::JsonNumber(values, "area"), 100, 1e-12) << report.str();
    EXPECT_EQ(errors.str(), "");
}

// The conversion table of the demo program: each quantity in every unit of its kind.
TEST(SectionCommand, TheDemoPrintsItsConversionTables) {
    const std::string out = ::testing::TempDir() + "demo.txt";
    ASSERT_EQ(std::system((std::string(TGP_DEMO_EXE) + " > '" + out + "'").c_str()), 0);
    std::ostringstream text;
    text << std::ifstream(out).rdbuf();
    for (const char* line :
         {"A length of 1234.5 mm (Length)", "   4  in               48.602362", "A force of 12.5 KN (Force)",
          "   5  kip               2.809152", "A pressure of 2.5 N/mm\u00b2 (Pressure)"})
        EXPECT_NE(text.str().find(line), std::string::npos) << line << "\n" << text.str();
}

TEST(SectionCommand, ExamplesRun) {
    const std::string dir = TGP_EXAMPLES_DIR;
    for (const char* name :
         {"ipe200.txt", "ipe200.dxf", "arcs.txt", "arcs.dxf", "rhs200x100x8.dxf", "chs168x8.dxf",
          "plate_girder.dxf", "box_girder_metres.dxf", "block_reference.dxf"}) {
        const CommandRun r = RunCommand({dir + "/" + name, "--units", "cm"});
        EXPECT_EQ(r.code, 0) << name << r.err;
    }
    // The same IPE 200 from both files.
    const CommandRun text = RunCommand({dir + "/ipe200.txt", "--json"});
    const CommandRun dxf = RunCommand({dir + "/ipe200.dxf", "--json"});
    EXPECT_EQ(text.out.substr(text.out.find("\"area\": 2")), dxf.out.substr(dxf.out.find("\"area\": 2")));
    // Its torsion: J against the solution on a boundary four times finer (4,296 nodes, accuracy 1E-8:
    // 68,461.9995 mm4); doubly symmetric, so the shear centres sit on the centroid (the origin) and
    // the monosymmetry constants are 0.
    const CommandRun torsion = RunCommand({dir + "/ipe200.txt", "--torsion", "--json"});
    EXPECT_NEAR(test::JsonNumber(torsion.out, "j") / 68461.9995, 1, 1e-6);
    for (const char* key : {"shear_centre_x", "shear_centre_y", "elastic_shear_centre_x",
                            "elastic_shear_centre_y", "monosymmetry_1", "monosymmetry_2"})
        EXPECT_EQ(test::JsonNumber(torsion.out, key), 0) << key;
}

// A folder of drawings and text files (and a file of another kind, and a subfolder) is read in
// sorted order, the subfolder only with --recursive; files and folders print in the order named,
// whatever the number of workers.
TEST(SectionCommand, FoldersInSortedOrderAndFilesInTheOrderNamed) {
    namespace fs = std::filesystem;
    const fs::path dir = fs::path(::testing::TempDir()) / "tgp_folder";
    fs::remove_all(dir);
    fs::create_directories(dir / "sub");
    const auto write = [](const fs::path& path, double side) {
        std::ofstream(path) << "0 0\n" << side << " 0\n" << side << " " << side << "\n0 " << side << "\n";
    };
    write(dir / "b.txt", 2);
    write(dir / "a.TXT", 1);
    write(dir / "sub" / "c.txt", 3);
    std::ofstream(dir / "notes.md") << "not a profile";
    const std::string lone = TempText("lone.txt", "0 0\n4 0\n4 4\n0 4\n");
    const auto areas = [](const std::string& json) {
        std::vector<double> found;
        for (std::size_t at = json.find("\"area\": ", json.find("\"profiles\"")); at != std::string::npos;
             at = json.find("\"area\": ", at + 1)) {
            found.push_back(std::stod(json.substr(at + 8)));
        }
        return found;
    };
    for (const char* jobs : {"1", "3"}) {
        CommandRun r = RunCommand({lone, dir.string(), "--json", "-j", jobs});
        EXPECT_EQ(r.code, 0) << r.err;
        EXPECT_EQ(areas(r.out), (std::vector<double>{16, 1, 4})) << jobs;
        r = RunCommand({dir.string(), "--recursive", lone, "--json", "-j", jobs});
        EXPECT_EQ(areas(r.out), (std::vector<double>{1, 4, 9, 16})) << jobs;
    }
    EXPECT_EQ(RunCommand({(dir / "sub").string(), "--json", "--csv"}).code, 1);  // one format at a time
    fs::remove_all(dir);
}

// Fields as a CSV reader sees them (RFC 4180: quoted fields, doubled quotes, CR LF rows).
std::vector<std::vector<std::string>> ReadCsv(const std::string& text) {
    std::vector<std::vector<std::string>> rows(1, std::vector<std::string>(1));
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quoted && c == '"' && i + 1 < text.size() && text[i + 1] == '"')
            rows.back().back() += text[++i];
        else if (c == '"')
            quoted = !quoted;
        else if (!quoted && c == ',')
            rows.back().emplace_back();
        else if (!quoted && c == '\r')
            continue;
        else if (!quoted && c == '\n')
            rows.emplace_back(1);
        else
            rows.back().back() += c;
    }
    if (rows.back() == std::vector<std::string>(1)) rows.pop_back();
    return rows;
}

TEST(SectionCommand, CsvRowsReadBackWithUnitsInTheHeader) {
    const std::string file =
        TempText("csv, \"quoted\".txt",
                 "profile plate, \"A\"\n0 0\n20 0\n20 10\n0 10\nend\nprofile bow\n0 0\n1 1\n1 0\n0 1\n");
    const CommandRun r = RunCommand({file, "--csv", "--units", "cm"});
    EXPECT_EQ(r.code, 2);
    ASSERT_EQ(r.out.rfind("\xEF\xBB\xBF", 0), 0u);
    const auto rows = ReadCsv(r.out.substr(3));
    ASSERT_EQ(rows.size(), 3u);
    const std::vector<std::string>& header = rows[0];
    ASSERT_EQ(header.size(), 32u);
    EXPECT_EQ(header[0], "name");
    EXPECT_EQ(header[7], "area (cm²)");
    EXPECT_EQ(header[16], "principal_angle (\xC2\xBA)");  // the catalogue's degree symbol
    EXPECT_EQ(header.back(), "error");
    EXPECT_EQ(rows[1][0], file + ": plate, \"A\"");
    EXPECT_EQ(rows[1][1], file);
    EXPECT_EQ(rows[1][7], "2");  // 200 mm² in cm²
    EXPECT_EQ(rows[1].back(), "");
    EXPECT_EQ(rows[2][7], "");
    EXPECT_EQ(rows[2].back(), "cuts itself at (0.5, 0.5)");
}

// A person watching a long run sees a progress line (here from the start), rewritten in place and
// cleared before the report goes on; --quiet shows none.
TEST(SectionCommand, ProgressLineOnRequest) {
    std::string many;
    for (int k = 0; k < 2000; ++k) many += "profile p\n0 0\n1 0\n1 1\n0 1\nend\n";
    const std::string file = TempText("many.txt", many);
    CommandRun r = RunCommand({file, file}, 0);
    EXPECT_EQ(r.code, 0);
    EXPECT_NE(r.err.find("\rtgp-section: "), std::string::npos) << r.err;
    EXPECT_NE(r.err.find(" of 2 files, "), std::string::npos) << r.err;
    EXPECT_NE(r.err.find(" outlines/s"), std::string::npos) << r.err;
    EXPECT_EQ(r.err.substr(r.err.size() - 4), "\r\033[K") << "the line is cleared at the end";
    EXPECT_EQ(RunCommand({file, file, "--quiet"}, 0).err, "");
}

// An L 150 x 90 x 10 angle (corner at the origin) and a channel with its web on the y axis, each
// turned about the origin: I1 stays the major moment and the angle turns along, within (-90, 90].
TEST(AnalyseProfile, I1IsTheMajorPrincipalMomentAndTheAngleTurnsXOntoItsAxis) {
    const auto turned = [](std::vector<double> xy, double degrees) {
        const double c = std::cos(degrees * M_PI / 180), s = std::sin(degrees * M_PI / 180);
        for (std::size_t i = 0; i + 1 < xy.size(); i += 2) {
            const double x = xy[i], y = xy[i + 1];
            xy[i] = x * c - y * s;
            xy[i + 1] = x * s + y * c;
        }
        return Profile(xy, std::vector<double>(xy.size() / 2, 0.0));
    };
    const std::vector<double> angle{0, 0, 150, 0, 150, 10, 10, 10, 10, 90, 0, 90},
        channel{0, -100, 75, -100, 75, -88.5, 8.5, -88.5, 8.5, 88.5, 75, 88.5, 75, 100, 0, 100};
    for (const auto& shape : {angle, channel}) {
        const SectionValues first = *AnalyseProfile(turned(shape, 0), Units(mm_UnitID)).values;
        for (double turn : {30.0, 90.0, 135.0, -89.0}) {
            const SectionValues v = *AnalyseProfile(turned(shape, turn), Units(mm_UnitID)).values;
            EXPECT_NEAR(v.i1, first.i1, 1e-9 * first.i1) << turn;  // the major one, as before turning
            EXPECT_NEAR(v.i2, first.i2, 1e-9 * first.i1) << turn;
            EXPECT_TRUE(v.angle > -90 && v.angle <= 90) << v.angle;
            EXPECT_NEAR(std::remainder(v.angle - first.angle - turn, 180.0), 0, 1e-7) << turn;
            const double t = v.angle * M_PI / 180, c = std::cos(t), s = std::sin(t);
            EXPECT_NEAR(v.ix * c * c + v.iy * s * s - 2 * v.ixy * s * c, v.i1, 1e-8 * v.i1) << turn;
        }
    }
    EXPECT_EQ(AnalyseProfile(turned(channel, 0), Units(mm_UnitID)).values->angle, 0);
    EXPECT_NEAR(AnalyseProfile(turned(channel, 90), Units(mm_UnitID)).values->angle, 90, 1e-9);
    // The report's i1 is the major moment (a 150 x 10 plate turned by 30 degrees).
    const std::string file = TempText("turned.txt", "0 0\n129.9 75\n124.9 83.66\n5 8.66\n");
    const CommandRun r = RunCommand({file, "--json"});
    EXPECT_GT(test::JsonNumber(r.out, "i1"), 3 * test::JsonNumber(r.out, "i2")) << r.out;
}

}  // namespace
}  // namespace tgp::cli
