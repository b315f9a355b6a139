// Drawings other projects ship as test data (tests/cli/drawings/SOURCES.md), checked against
// references this test computes on its own from the numbers in the files.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
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

// The area of a polygon by the shoelace formula, in long double.
double Shoelace(const std::vector<std::pair<double, double>>& p) {
    long double twice = 0;
    for (std::size_t i = 0; i < p.size(); ++i) {
        const auto& [x0, y0] = p[i];
        const auto& [x1, y1] = p[(i + 1) % p.size()];
        twice += static_cast<long double>(x0) * y1 - static_cast<long double>(x1) * y0;
    }
    return static_cast<double>(std::fabs(twice) / 2);
}
double Shoelace(std::initializer_list<double> xy) {
    std::vector<std::pair<double, double>> p;
    for (auto v = xy.begin(); v + 1 < xy.end(); v += 2) p.emplace_back(v[0], v[1]);
    return Shoelace(p);
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

TEST(RealDrawings, HatchBoundariesAtMapCoordinates) {
    const double expected[] = {
        Shoelace({481167.286973555, 6757868.46229187, 483012.242899119, 6758349.75514202, 482771.596474045,
                  6754740.05876591, 479964.054848188, 6752814.88736533, 477156.513222331, 6755782.85994123}),
        Shoelace({478259.476003918, 6765308.44760039, 477697.967678746, 6763062.4142997,  476534.843290891,
                  6763744.24583741, 477256.782566112, 6765669.417238,   483914.666993144, 6766591.89520078,
                  487724.902056807, 6765990.2791381,  487765.009794319, 6761297.67384917, 484797.037218413,
                  6764987.58570029, 482029.603330069, 6765629.30950049, 481909.280117532, 6762059.7208619,
                  480385.186092067, 6759573.04113614, 475411.826640548, 6758008.83937316, 467951.787463271,
                  6760455.41136141, 466908.986287953, 6764746.93927522, 474770.102840353, 6761337.78158668,
                  478379.799216454, 6760335.08814887, 479984.108716944, 6762661.33692458, 480746.155729677,
                  6764787.04701273}),
    };
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

// The hatch's boundaries sampled independently: every edge followed in small steps (clockwise
// arcs as the format stores them: the complements of their counter-clockwise angles), the pieces
// put end to end, the area by the shoelace formula.
double SampledHatchArea(const std::string& file) {
    std::ifstream in(file);
    std::vector<std::pair<int, std::string>> tags;
    for (std::string code, value; std::getline(in, code) && std::getline(in, value);)
        tags.emplace_back(std::stoi(code), value);
    struct Edge {
        int type = 0;
        std::map<int, double> g;
        bool ccw = true;
    };
    std::vector<std::vector<Edge>> paths;
    bool inPaths = false;
    for (const auto& [code, value] : tags) {
        if (code == 91) inPaths = true;
        if (!inPaths) continue;
        if (code == 75) break;
        if (code == 92)
            paths.emplace_back();
        else if (code == 72)
            paths.back().push_back(Edge{std::stoi(value), {}, true});
        else if (code == 73 && !paths.back().empty())
            paths.back().back().ccw = std::stoi(value) != 0;
        else if (!paths.empty() && !paths.back().empty())
            paths.back().back().g[code] = std::stod(value);
    }
    double total = 0;
    for (const auto& path : paths) {
        std::vector<std::vector<std::pair<double, double>>> pieces;
        for (const Edge& e : path) {
            std::vector<std::pair<double, double>> points;
            auto g = e.g;
            if (e.type == 1) {
                points = {{g[10], g[20]}, {g[11], g[21]}};
            } else {
                const double sweep =
                    std::fmod(g[51] - g[50] + 360, 360) == 0 ? 360 : std::fmod(g[51] - g[50] + 360, 360);
                const double start = e.ccw ? g[50] : -g[50], step = (e.ccw ? sweep : -sweep) / 20000;
                for (int k = 0; k <= 20000; ++k) {
                    const double a = (start + step * k) * M_PI / 180;
                    points.emplace_back(g[10] + g[40] * std::cos(a), g[20] + g[40] * std::sin(a));
                }
            }
            pieces.push_back(points);
        }
        std::vector<std::pair<double, double>> chain = pieces.front();
        pieces.erase(pieces.begin());
        auto distance = [](const std::pair<double, double>& a, const std::pair<double, double>& b) {
            return std::hypot(a.first - b.first, a.second - b.second);
        };
        while (!pieces.empty()) {
            std::size_t best = 0;
            double nearest = HUGE_VAL;
            for (std::size_t k = 0; k < pieces.size(); ++k) {
                const double d = std::min(distance(chain.back(), pieces[k].front()),
                                          distance(chain.back(), pieces[k].back()));
                if (d < nearest) nearest = d, best = k;
            }
            auto piece = pieces[best];
            pieces.erase(pieces.begin() + static_cast<std::ptrdiff_t>(best));
            if (distance(chain.back(), piece.back()) < distance(chain.back(), piece.front()))
                std::reverse(piece.begin(), piece.end());
            chain.insert(chain.end(), piece.begin() + 1, piece.end());
        }
        total += Shoelace(chain);
    }
    return total;
}

TEST(RealDrawings, AHatchWithClockwiseArcEdges) {
    const std::string file = std::string(TGP_DRAWINGS_DIR) + "/ezdxf_clockwise_arcs_hatch_excerpt.dxf";
    const double expected = SampledHatchArea(file) * 1e6;  // square metres to square millimetres
    const Result r = Read("ezdxf_clockwise_arcs_hatch_excerpt.dxf");
    ASSERT_EQ(r.sections.size(), 1u) << "two boundaries that touch: one built-up section";
    ASSERT_TRUE(r.sections[0].values) << r.sections[0].error;
    EXPECT_EQ(r.sections[0].loops, 2);
    EXPECT_NEAR(r.sections[0].values->area, expected, 1e-7 * expected);
}

}  // namespace
}  // namespace tgp::drawings
