// Outlines grouped into sections (holes, islands, touching plates), the hollow-section table on
// drawings the test writes, the drawing sections class and drawings other projects ship.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "drawings/DrawingSections.h"
#include "drawings/DxfProfileReader.h"
#include "drawings/SectionAnalysis.h"
#include "drawings/TextProfileReader.h"
#include "support/DxfText.h"
#include "support/Expectations.h"
#include "support/ProfileTestShapes.h"

namespace tgp::drawings {
namespace {

// Outlines grouped into sections (holes, islands, touching plates, text loops) and the hollow-section
// table on drawings the test writes.
using test::Outline;

std::shared_ptr<UnitSetting> Millimetres() {
    return std::make_shared<UnitSetting>();
}

DrawnProfile Outlined(const std::string& name, const Outline& o) {
    DrawnProfile p;
    p.name = name;
    p.AddAll(o.xy, o.bulges);
    return p;
}

TEST(SectionGrouping, HolesIslandsAndTouchingPlates) {
    const std::vector<DrawnProfile> drawn = {
        Outlined("hole", test::Rectangle(10, 10, 180, 80).Reversed()),
        Outlined("plate", test::Rectangle(0, 0, 200, 100)),
        Outlined("island", test::Rectangle(50, 30, 20, 20)),
        Outlined("web", test::Rectangle(1000 - 5, 20, 10, 560)),
        Outlined("top flange", test::Rectangle(1000 - 150, 580, 300, 20)),
        Outlined("bottom flange", test::Rectangle(1000 - 200, 0, 400, 20)),
        Outlined("rod", test::Circle(3000, 0, 10)),
    };
    const auto sections = AnalyseProfiles(drawn, Millimetres());
    ASSERT_EQ(sections.size(), 3u);
    EXPECT_EQ(sections[0].name, "plate with 1 hole");
    EXPECT_EQ(sections[0].loops, 3);
    EXPECT_EQ(sections[0].holes, 1);
    ASSERT_TRUE(sections[0].values);
    EXPECT_FALSE(sections[0].torsion) << "torsion only when asked for";
    EXPECT_NEAR(sections[0].values->area, 200 * 100 - 180 * 80 + 20 * 20, 1e-9);
    EXPECT_EQ(sections[1].name, "web and 2 more parts");
    ASSERT_TRUE(sections[1].values);
    EXPECT_NEAR(sections[1].values->area, 10 * 560 + 300 * 20 + 400 * 20, 1e-9);
    EXPECT_EQ(sections[2].name, "rod");

    const auto separate = AnalyseProfiles(drawn, Millimetres(), true);
    EXPECT_EQ(separate.size(), drawn.size());
}

// Outlines that only just reach each other are still found together: plates touching 1E7 from the
// origin, a semicircular top touching the plate above it at its crown, and plates a hair apart
// (within the tolerance) or clearly apart.
TEST(SectionGrouping, OutlinesThatJustReachEachOther) {
    const double far = 1e7;
    test::Outline dome = test::Rectangle(0, 0, 20, 10).Reversed();  // counter-clockwise from (0, 0)
    dome.bulges[2] = 1;   // the top edge, from (20, 10) to (0, 10), a half circle up to y = 20
    test::Outline major;  // an arc of 285 degrees below the chord (0, 0)-(10, 0), down to y = -15
    major.Add(0, 0, 3);
    major.Add(10, 0);
    struct Case {
        const char* what;
        std::vector<DrawnProfile> drawn;
        std::size_t sections;
    };
    const Case cases[] = {
        {"far from the origin",
         {Outlined("a", test::Rectangle(far, far, 10, 10)),
          Outlined("b", test::Rectangle(far + 10, far, 10, 10))},
         1},
        {"at an arc's crown", {Outlined("dome", dome), Outlined("lid", test::Rectangle(5, 20, 10, 5))}, 1},
        {"within the tolerance",
         {Outlined("a", test::Rectangle(0, 0, 10, 10)), Outlined("b", test::Rectangle(10 + 1e-7, 0, 10, 10))},
         1},
        {"apart",
         {Outlined("a", test::Rectangle(0, 0, 10, 10)), Outlined("b", test::Rectangle(10 + 1e-3, 0, 10, 10))},
         2},
        {"a hole beside the chord of an arc of more than half a turn",
         {Outlined("major", major), Outlined("hole", test::Rectangle(-2, -7, 1, 1))},
         1},
        {"each touching one of two outlines that overlap (reported alone)",
         {Outlined("x", test::Rectangle(0, 0, 10, 10)), Outlined("y", test::Rectangle(5, 5, 10, 10)),
          Outlined("left", test::Rectangle(-10, 0, 10, 10)),
          Outlined("below", test::Rectangle(2, -10, 6, 10))},
         4},
    };
    for (const Case& c : cases) {
        const auto sections = AnalyseProfiles(c.drawn, Millimetres());
        EXPECT_EQ(sections.size(), c.sections) << c.what;
    }
}

// A copy that differs by rounding (a corner 1E-12 of the size away) repeats the outline: left out and
// counted, not reported as an overlap.
TEST(SectionGrouping, AnOutlineRepeatedUpToRoundingIsLeftOutAndCounted) {
    test::Outline copy = test::Rectangle(0, 0, 100, 100);
    copy.xy[2] += 1e-10;
    SkipList skipped;
    const auto sections =
        AnalyseProfiles({Outlined("square", test::Rectangle(0, 0, 100, 100)), Outlined("copy", copy)},
                        Millimetres(), false, &skipped);
    ASSERT_EQ(sections.size(), 1u);
    EXPECT_TRUE(sections[0].values) << sections[0].error;
    EXPECT_EQ(SkipSummary(skipped), "1 outline that repeats another");
}

TEST(SectionGrouping, OverlappingOutlinesAreReportedAndTheOthersComputed) {
    const auto outcomes = AnalyseProfiles(
        {Outlined("first", test::Rectangle(0, 0, 10, 10)), Outlined("second", test::Rectangle(5, 5, 10, 10)),
         Outlined("third", test::Rectangle(100, 0, 10, 10))},
        Millimetres());
    ASSERT_EQ(outcomes.size(), 3u);
    EXPECT_EQ(outcomes[0].error, "overlaps second (their interiors cross)");
    EXPECT_EQ(outcomes[1].error, "overlaps first (their interiors cross)");
    EXPECT_TRUE(outcomes[2].values);
}

TEST(SectionGrouping, TheLoopsOfATextProfileAreOneSection) {
    std::istringstream text(
        "profile box\n0 0\n0 100\n200 100\n200 0\nloop\n10 10\n190 10\n190 90\n10 90\nend\n"
        "profile bars\n0 0\n0 10\n10 10\n10 0\nloop\n500 0\n500 10\n510 10\n510 0\n"
        "profile crossed\n0 0\n0 10\n10 10\n10 0\nloop\n5 5\n5 15\n15 15\n15 5\n");
    const auto profiles = ReadTextProfiles(text, "in.txt");
    ASSERT_EQ(profiles.size(), 6u);
    EXPECT_EQ(profiles[1].name, "box, loop 2");
    const auto sections = AnalyseProfiles(profiles, Millimetres());
    ASSERT_EQ(sections.size(), 3u);
    EXPECT_EQ(sections[0].name, "box with 1 hole");
    EXPECT_NEAR(sections[0].values->area, 200 * 100 - 180 * 80, 1e-9);
    EXPECT_EQ(sections[1].name, "bars and 1 more part") << "loops apart in one profile are still one section";
    EXPECT_NEAR(sections[1].values->area, 200, 1e-9);
    EXPECT_EQ(sections[2].error,
              "cannot be one section: crossed and crossed, loop 2 overlap (their interiors cross)");

    std::istringstream stray("loop\n");
    EXPECT_THROW(ReadTextProfiles(stray, "in.txt"), DrawingFileError);
}

std::string Lwpolyline(const std::string& handle, const Outline& o, double scale) {
    std::vector<std::vector<double>> vertices;
    for (std::size_t i = 0; i < o.bulges.size(); ++i)
        vertices.push_back({o.xy[2 * i] * scale, o.xy[2 * i + 1] * scale, o.bulges[i]});
    return test::Polyline(handle, "HOLLOW", vertices);
}

std::string CircleEntity(const std::string& handle, double x, double r, double scale) {
    return "0\nCIRCLE\n5\n" + handle + "\n8\nHOLLOW\n10\n" + test::Number(x * scale) + "\n20\n0\n40\n" +
           test::Number(r * scale) + "\n";
}

// Every row drawn side by side (1000 mm apart), in the unit given by $INSUNITS.
std::string HollowDrawing(const std::vector<test::HollowRow>& rows, int insunits, double scale) {
    std::string entities;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const test::HollowRow& row = rows[i];
        const double x = 1000.0 * static_cast<double>(i);
        const std::string handle = std::to_string(100 + i);
        if (row.Circular()) {
            entities += CircleEntity(handle, x, row.B / 2, scale) +
                        CircleEntity("F" + handle, x, row.B / 2 - row.t, scale);
            continue;
        }
        auto [outer, inner] = test::HollowOutlines(row);
        for (Outline* o : {&outer, &inner}) {
            for (std::size_t k = 0; k < o->xy.size(); k += 2) o->xy[k] += x;
        }
        entities += Lwpolyline(handle, outer, scale) + Lwpolyline("F" + handle, inner, scale);
    }
    return test::Drawing(entities, "", "9\n$INSUNITS\n70\n" + std::to_string(insunits) + "\n");
}

// The hollow-section table drawn in three drawing units: each row one section (outer with its hole).
TEST(SectionGrouping, HollowSectionsFromDrawingsAgreeWithTheTable) {
    const auto rows = test::ReadHollowTable();
    ASSERT_TRUE(rows) << "tests/data/hollow_sections.csv is missing";
    struct Drawing {
        int insunits;
        double scale;  // drawing units per millimetre
    };
    auto centimetres = std::make_shared<UnitSetting>();
    for (auto kind : {DLengthObject, DAreaObject, DVolumeObject, DMomentOfInertiaObject})
        centimetres->UnitID(kind, cm_UnitID);
    for (const Drawing d : {Drawing{4, 1}, Drawing{6, 1e-3}, Drawing{1, 1 / 25.4}}) {
        const auto outcomes = AnalyseProfiles(
            ReadDxfText(HollowDrawing(*rows, d.insunits, d.scale), "hollow.dxf"), centimetres);
        std::map<std::string, SectionValues> byHandle;
        for (const ProfileOutcome& o : outcomes) {
            if (o.values && o.holes == 1) byHandle[o.handle] = *o.values;
        }
        ASSERT_EQ(byHandle.size(), rows->size()) << "one section (outer with its hole) per row";
        for (std::size_t i = 0; i < rows->size(); ++i) {
            const test::HollowRow& row = (*rows)[i];
            const SectionValues& v = byHandle[std::to_string(100 + i)];
            const std::string what = row.name + " in $INSUNITS " + std::to_string(d.insunits);
            for (const auto& [computed, published] : {std::pair{v.area, row.A},
                                                      {v.ix, row.Ix},
                                                      {v.iy, row.Iy},
                                                      {v.wplx, row.Wplx},
                                                      {v.wply, row.Wply},
                                                      {std::min(v.welxTop, v.welxBottom), row.Welx},
                                                      {std::min(v.welyLeft, v.welyRight), row.Wely}})
                EXPECT_LT(test::RelativeGap(computed, published), 0.005) << what;
        }
    }
}

// A file's sections in one call: what became of each outline, the options, and the file errors.
using test::Polyline;
using test::TempText;

const std::string kPlate =
    test::Drawing(Polyline("2F", "PLATE", {{0, 0}, {100, 0}, {100, 50}, {0, 50}}) +
                      Polyline("30", "PLATE", {{10, 10}, {30, 10}, {30, 30}, {10, 30}}) +
                      Polyline("31", "BOW", {{200, 0}, {210, 10}, {210, 0}, {200, 10}}) +
                      "0\nTEXT\n5\n32\n8\nNOTES\n1\nlabel\n",
                  "", "9\n$INSUNITS\n70\n5\n");  // centimetres

TEST(DrawingSections, SectionsRejectionsAndSkipsInFileOrder) {
    const DrawingSections read = ReadDrawingSections(TempText("plate.dxf", kPlate));
    ASSERT_EQ(read.sections.size(), 1u);
    const DrawingSection& plate = read.sections[0];
    EXPECT_EQ(plate.name, "LWPOLYLINE handle 2F on layer PLATE with 1 hole");
    EXPECT_EQ(plate.handle, "2F");
    ASSERT_EQ(plate.loops->Count(), 2u);
    EXPECT_TRUE(plate.loops->IsHole(2));
    EXPECT_DOUBLE_EQ(plate.loops->Area(), (100 * 50 - 20 * 20) * 100.0) << "in square millimetres";
    ASSERT_EQ(read.rejected.size(), 1u);
    EXPECT_EQ(read.rejected[0].layer, "BOW");
    EXPECT_EQ(read.rejected[0].reason, "cuts itself at (2050, 50)");
    EXPECT_EQ(read.SkipSummary(), "1 TEXT");
}

TEST(DrawingSections, OptionsChooseLayerUnitFormatAndGrouping) {
    const std::string path = TempText("options.dxf", kPlate);
    DrawingOptions options;
    options.layer = "bow";
    EXPECT_EQ(ReadDrawingSections(path, options).rejected.size(), 1u);
    EXPECT_TRUE(ReadDrawingSections(path, options).sections.empty());
    options = {};
    options.eachOutline = true;
    options.millimetresPerUnit = 1;
    const DrawingSections each = ReadDrawingSections(path, options);
    ASSERT_EQ(each.sections.size(), 2u) << "the hole is a section of its own";
    EXPECT_DOUBLE_EQ(each.sections[1].loops->Area(), 400);
    const std::string text =
        TempText("loops.dat", "profile tube\n0 0\n4 0\n4 4\n0 4\nloop\n1 1\n3 1\n3 3\n1 3\n");
    options = {};
    options.format = DrawingFormat::Text;
    const DrawingSections tube = ReadDrawingSections(text, options);
    ASSERT_EQ(tube.sections.size(), 1u);
    EXPECT_EQ(tube.sections[0].name, "tube with 1 hole");
    EXPECT_DOUBLE_EQ(tube.sections[0].loops->Area(), 12);
    options.millimetresPerUnit = 10;
    EXPECT_DOUBLE_EQ(ReadDrawingSections(text, options).sections.at(0).loops->Area(), 1200) << "text in cm";
}

TEST(DrawingSections, FilesThatCannotBeReadRaiseTheLibrarysErrorNamingThem) {
    const std::string missing = ::testing::TempDir() + "missing.dxf";
    const std::string notes = TempText("notes.dxf", "These are my notes.\n");
    const std::string cut = TempText("cut.dxf", kPlate.substr(0, kPlate.find("0\nTEXT")));
    const std::pair<std::string, std::string> cases[] = {
        {missing, missing + ": cannot open the file"},
        {notes, notes + ": not a DXF file (its first line, 'These are my notes.', is not a group code)"},
        {cut,
         cut + ": section ENTITIES is not closed: the file ends without ENDSEC and EOF (it is cut short?)"},
    };
    for (const auto& [path, message] : cases)
        test::ExpectError(2411, message, path, [&] { ReadDrawingSections(path); });
}

// Drawings other projects ship as test data (tests/cli/drawings/SOURCES.md), checked against
// references this test computes on its own from the numbers in the files.
struct Result {
    std::vector<ProfileOutcome> sections;
    std::string skipped;
};

Result Read(const std::string& name, bool eachLoop = false) {
    SkipList skipped;
    const auto profiles = ReadDxfProfiles(std::string(TGP_DRAWINGS_DIR) + "/" + name, {}, &skipped);
    Result r{AnalyseProfiles(profiles, std::make_shared<UnitSetting>(), eachLoop, &skipped), ""};
    r.skipped = SkipSummary(skipped);
    return r;
}

// The area of a polygon (x, y, x, y, ...) by the shoelace formula, in long double.
double Shoelace(std::initializer_list<double> xy) {
    long double twice = 0;
    const std::vector<double> v(xy);
    for (std::size_t i = 0; i < v.size(); i += 2) {
        const std::size_t j = (i + 2) % v.size();
        twice += static_cast<long double>(v[i]) * v[j + 1] - static_cast<long double>(v[j]) * v[i + 1];
    }
    return static_cast<double>(std::fabs(twice) / 2);
}

TEST(RealDrawings, EllipsesWithARatioAboveOne) {
    // Semi-axes |M| and ratio |M|: the areas pi |M|^2 ratio.
    const Result each = Read("dxfparser_ellipse.dxf", true);
    ASSERT_EQ(each.sections.size(), 2u);
    EXPECT_NEAR(each.sections[0].values->area, M_PI * 200 * 1.986299, 1e-9);
    EXPECT_NEAR(each.sections[1].values->area, M_PI * 25 * 4, 1e-9);
    const Result grouped = Read("dxfparser_ellipse.dxf");
    ASSERT_EQ(grouped.sections.size(), 2u);
    EXPECT_EQ(grouped.sections[0].error, "overlaps ELLIPSE handle 37d on layer 0 (their interiors cross)");
}

// The boundaries' areas by the shoelace formula in exact rational arithmetic, from their vertices.
TEST(RealDrawings, HatchBoundariesAtMapCoordinates) {
    const double expected[] = {18087442.56030186, 64952482.38869441};
    const Result r = Read("dxfparser_hatch.dxf");
    ASSERT_EQ(r.sections.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        ASSERT_TRUE(r.sections[i].values) << r.sections[i].error;
        EXPECT_NEAR(r.sections[i].values->area, expected[i], 1e-9 * expected[i]) << i;
    }
}

TEST(RealDrawings, RationalSplinesThatAreCircles) {
    const double r1 = 233.6663114494559 - 201.3461153580332, r2 = 208.6916144697202 - 201.3461153580332;
    const Result r = Read("dxfparser_arcs_as_splines.dxf");
    ASSERT_EQ(r.sections.size(), 2u);
    EXPECT_NEAR(r.sections[0].values->area, M_PI * r1 * r1, 1e-4 * M_PI * r1 * r1);
    EXPECT_NEAR(r.sections[0].values->yc, 180.0700474977344, 1e-6 * r1);
    EXPECT_NEAR(r.sections[1].values->area, M_PI * r2 * r2, 1e-4 * M_PI * r2 * r2);
    EXPECT_EQ(r.skipped, "1 SPLINE not part of a closed outline");
}

TEST(RealDrawings, DrawingsWithoutOutlinesSayWhatTheyHold) {
    struct Case {
        const char* file;
        const char* skipped;
    };
    for (const Case& c :
         {Case{"dxfparser_arc1.dxf", "1 ARC on layer FG-Dtl-Dim not part of a closed outline"},
          Case{"dxfparser_splines.dxf", "2 SPLINE on layer PLOTLINES not part of a closed outline"},
          Case{"ezdxf_ASCII_R12_excerpt.dxf",
               "2 LINE on layer \\U+039B\\U+0391\\U+0393\\U+0395\\U+03A1ÄÜÖ not part of a closed outline, 1 "
               "TEXT"},
          Case{"ezdxf_Minimal_DXF_AC1009.dxf", ""}}) {
        const Result r = Read(c.file);
        EXPECT_TRUE(r.sections.empty()) << c.file;
        EXPECT_EQ(r.skipped, c.skipped) << c.file;
    }
}

// A release 1.4 part: an outline of 9 lines and 6 quarter arcs (4 convex, 2 concave fillets) with a
// round hole drawn as two half arcs; its centre marks and a leader to a corner are not outlines.
TEST(RealDrawings, ARelease14PartWithAHoleAndCentreMarks) {
    const double chords =
        Shoelace({0, 1.5, 0,   1.125, 0.125, 1,     0.875, 1,     1, 0.875, 1,     0.5, 1.5,    0,   2,
                  0, 2.5, 0.5, 2.5,   0.875, 2.625, 1,     3.375, 1, 3.5,   1.125, 3.5, 1.3635, 3.5, 1.5});
    auto segment = [](double r) { return r * r / 2 * (M_PI / 2 - 1); };  // a quarter arc beyond its chord
    const double expected =
        chords + 2 * segment(0.5) + 2 * segment(0.125) - 2 * segment(0.125) - M_PI * 0.3 * 0.3;
    const Result r = Read("ezdxf_AC1003_LINE_Example.dxf");
    ASSERT_EQ(r.sections.size(), 1u);
    ASSERT_TRUE(r.sections[0].values) << r.sections[0].error;
    EXPECT_EQ(r.sections[0].holes, 1);
    EXPECT_NEAR(r.sections[0].values->area, expected, 1e-12);
    EXPECT_EQ(
        r.skipped,
        "4 LINE on layer 1 not part of a closed outline, 1 ARC on layer 1 not part of a closed outline");
}

// Lines and arcs in metres that close into a loop which crosses itself where LINE 62 meets LINE 6C.
TEST(RealDrawings, ALoopThatCrossesItselfIsReportedWhereItDoes) {
    const double ax = 194.945206551784, ay = 206.492634751215, bx = 248.540295539874, by = 150.423926271367;
    const double cx = 198.793059094519, cy = 164.441103391329, dx = 251.838454862218, dy = 198.796929665746;
    const double denominator = (bx - ax) * (dy - cy) - (by - ay) * (dx - cx);
    const double t = ((cx - ax) * (dy - cy) - (cy - ay) * (dx - cx)) / denominator;
    const double x = (ax + t * (bx - ax)) * 1000, y = (ay + t * (by - ay)) * 1000;  // millimetres
    const Result r = Read("ezdxf_6_closed_loop_with_arcs_excerpt.dxf");
    ASSERT_EQ(r.sections.size(), 1u);
    const std::string& error = r.sections[0].error;
    ASSERT_EQ(error.find("cuts itself at ("), 0u) << error;
    double gotX = 0, gotY = 0;
    std::sscanf(error.c_str(), "cuts itself at (%lf, %lf)", &gotX, &gotY);
    EXPECT_NEAR(gotX, x, 1e-6);
    EXPECT_NEAR(gotY, y, 1e-6);
}

TEST(RealDrawings, AHatchWithClockwiseArcEdges) {
    // The boundaries sampled independently, every edge followed in small steps (clockwise arcs as the
    // format stores them: the complements of their counter-clockwise angles), the pieces put end to
    // end, the area by the shoelace formula: 2,000 steps an arc, Richardson's extrapolation against
    // 1,000, 2,820.479657209 m².
    const double expected = 2820.479657209e6;
    const Result r = Read("ezdxf_clockwise_arcs_hatch_excerpt.dxf");
    ASSERT_EQ(r.sections.size(), 1u) << "two boundaries that touch: one built-up section";
    ASSERT_TRUE(r.sections[0].values) << r.sections[0].error;
    EXPECT_EQ(r.sections[0].loops, 2);
    EXPECT_NEAR(r.sections[0].values->area, expected, 1e-7 * expected);
}

}  // namespace
}  // namespace tgp::drawings
