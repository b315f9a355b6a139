// Drawings other projects ship as test data (tests/cli/drawings/SOURCES.md), checked against
// references this test computes on its own from the numbers in the files.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "drawings/DxfProfileReader.h"
#include "drawings/SectionAnalysis.h"

namespace tgp::drawings {
namespace {

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
