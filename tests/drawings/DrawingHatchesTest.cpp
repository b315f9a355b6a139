// HATCH boundary paths as outlines: polyline paths, paths of lines, circular and elliptic arcs and
// splines, holes, and hatches drawn on outlines of their own.

#include <gtest/gtest.h>

#include "support/DxfText.h"

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "drawings/DxfProfileReader.h"
#include "drawings/SectionAnalysis.h"

namespace tgp::drawings {
namespace {

using test::Drawing;

std::string Groups(std::initializer_list<std::pair<int, double>> groups) {
    std::ostringstream out;
    out.precision(17);
    for (const auto& [code, value] : groups) out << code << "\n" << value << "\n";
    return out.str();
}

// A hatch with the given boundary paths, then its pattern groups and one seed point.
std::string Hatch(const std::string& handle, int paths, const std::string& pathGroups) {
    return "0\nHATCH\n5\n" + handle +
           "\n8\nFILL\n100\nAcDbHatch\n10\n0\n20\n0\n30\n0\n210\n0\n220\n0\n230\n1\n2\nSOLID\n70\n1\n71\n0\n9"
           "1\n" +
           std::to_string(paths) + "\n" + pathGroups + "75\n0\n76\n1\n98\n1\n10\n5\n20\n5\n";
}

// A polyline path through the points (x, y, bulge).
std::string PolylinePath(const std::vector<std::vector<double>>& vertices) {
    std::string path = Groups({{92, 3}, {72, 1}, {73, 1}, {93, static_cast<double>(vertices.size())}});
    for (const auto& v : vertices) path += Groups({{10, v[0]}, {20, v[1]}, {42, v.size() > 2 ? v[2] : 0}});
    return path + "97\n0\n";
}

std::string Line(double x0, double y0, double x1, double y1) {
    return Groups({{72, 1}, {10, x0}, {20, y0}, {11, x1}, {21, y1}});
}
std::string Arc(double cx, double cy, double r, double a0, double a1, bool ccw) {
    return Groups({{72, 2}, {10, cx}, {20, cy}, {40, r}, {50, a0}, {51, a1}, {73, ccw ? 1.0 : 0.0}});
}
std::string EllipseEdge(double cx, double cy, double mx, double my, double ratio, double a0, double a1,
                        bool ccw) {
    return Groups({{72, 3},
                   {10, cx},
                   {20, cy},
                   {11, mx},
                   {21, my},
                   {40, ratio},
                   {50, a0},
                   {51, a1},
                   {73, ccw ? 1.0 : 0.0}});
}
std::string EdgePath(int edges, const std::string& edgeGroups) {
    return Groups({{92, 1}, {93, static_cast<double>(edges)}}) + edgeGroups + "97\n0\n";
}

std::vector<ProfileOutcome> Sections(const std::string& drawing, SkipList* skipped = nullptr) {
    const auto profiles = ReadDxfText(drawing, "h.dxf", {}, skipped);
    return AnalyseProfiles(profiles, std::make_shared<UnitSetting>(), false, skipped);
}

TEST(DrawingHatches, PolylineAndEdgePathsAreOutlines) {
    // A 20 x 10 slot with half-round ends as a polyline path.
    auto s = Sections(Drawing(Hatch("H1", 1, PolylinePath({{0, 0}, {20, 0, 1}, {20, 10}, {0, 10, 1}}))));
    ASSERT_EQ(s.size(), 1u);
    ASSERT_TRUE(s[0].values) << s[0].error;
    EXPECT_NEAR(s[0].values->area, 200 + M_PI * 25, 1e-9);
    EXPECT_EQ(s[0].name, "HATCH handle H1 on layer FILL, boundary 1");

    // The same slot as an edge path: lines and arcs (one counter-clockwise, one clockwise as the
    // file stores it: the complement angles of the counter-clockwise arc), out of order.
    const std::string edges =
        Line(20, 10, 0, 10) + Arc(20, 5, 5, 270, 90, true) + Line(0, 0, 20, 0) + Arc(0, 5, 5, 90, 270, false);
    s = Sections(Drawing(Hatch("H2", 1, EdgePath(4, edges))));
    ASSERT_EQ(s.size(), 1u);
    ASSERT_TRUE(s[0].values) << s[0].error;
    EXPECT_NEAR(s[0].values->area, 200 + M_PI * 25, 1e-9);
    // A line edge without its start's y group starts at y = 0.
    const std::string noY = Groups({{72, 1}, {10, 0}, {11, 10}, {21, 0}});
    s = Sections(Drawing(
        Hatch("H8", 1, EdgePath(4, noY + Line(10, 0, 10, 10) + Line(10, 10, 0, 10) + Line(0, 10, 0, 0)))));
    ASSERT_EQ(s.size(), 1u);
    EXPECT_NEAR(s[0].values->area, 100, 1e-9);
}

TEST(DrawingHatches, EllipticEdgesAndHolesAreExact) {
    // Half an ellipse (semi-axes 30 and 15) closed by its diameter, clockwise, with a round hole.
    const std::string outer =
        EdgePath(2, EllipseEdge(0, 0, 30, 0, 0.5, 180, 360, false) + Line(-30, 0, 30, 0));
    const std::string hole = EdgePath(1, Arc(0, 5, 3, 0, 360, true));
    const auto s = Sections(Drawing(Hatch("H3", 2, outer + hole)));
    ASSERT_EQ(s.size(), 1u);
    ASSERT_TRUE(s[0].values) << s[0].error;
    EXPECT_EQ(s[0].holes, 1);
    EXPECT_NEAR(s[0].values->area, M_PI * 30 * 15 / 2 - M_PI * 9, 1e-12);
}

TEST(DrawingHatches, AHatchOnItsOwnOutlineCountsOnce) {
    const std::string outline =
        "0\nLWPOLYLINE\n5\nA\n8\nPLATE\n90\n4\n70\n1\n10\n0\n20\n0\n10\n40\n20\n0\n10\n40\n20\n10\n10\n0\n20"
        "\n10\n";
    SkipList skipped;
    const auto s = Sections(
        Drawing(outline + Hatch("H4", 1, PolylinePath({{40, 10}, {0, 10}, {0, 0}, {40, 0}}))), &skipped);
    ASSERT_EQ(s.size(), 1u);
    EXPECT_EQ(s[0].handle, "A");
    EXPECT_NEAR(s[0].values->area, 400, 1e-9);
    EXPECT_EQ(SkipSummary(skipped), "1 HATCH that repeats an outline");
}

TEST(DrawingHatches, SplineEdgesAreFlattenedAndOpenPathsListed) {
    // A quadratic spline edge from (0, 0) to (10, 0) through the control point (5, 10), closed by a line.
    const std::string spline = Groups({{72, 4},
                                       {94, 2},
                                       {73, 0},
                                       {74, 0},
                                       {95, 6},
                                       {96, 3},
                                       {40, 0},
                                       {40, 0},
                                       {40, 0},
                                       {40, 1},
                                       {40, 1},
                                       {40, 1},
                                       {10, 0},
                                       {20, 0},
                                       {10, 5},
                                       {20, 10},
                                       {10, 10},
                                       {20, 0}});
    auto s = Sections(Drawing(Hatch("H5", 1, EdgePath(2, spline + Line(10, 0, 0, 0)))));
    ASSERT_EQ(s.size(), 1u);
    ASSERT_TRUE(s[0].values) << s[0].error;
    EXPECT_NEAR(s[0].values->area, 2.0 / 3 * 10 * 5, 1e-3) << "a parabola's area, to the flattening";
    EXPECT_NE(s[0].name.find("(curves flattened)"), std::string::npos) << s[0].name;
    // A y group with no x before it (a control or fit point's 20 or 21 first) belongs to no point.
    const std::string strayYs =
        Groups({{72, 4}, {94, 2}, {73, 0}, {74, 0}, {95, 6}, {96, 3}, {20, 99}, {21, 99}}) +
        spline.substr(Groups({{72, 4}, {94, 2}, {73, 0}, {74, 0}, {95, 6}, {96, 3}}).size());
    s = Sections(Drawing(Hatch("H7", 1, EdgePath(2, strayYs + Line(10, 0, 0, 0)))));
    ASSERT_EQ(s.size(), 1u);
    ASSERT_TRUE(s[0].values) << s[0].error;
    EXPECT_NEAR(s[0].values->area, 2.0 / 3 * 10 * 5, 1e-3);

    SkipList skipped;
    s = Sections(Drawing(Hatch("H6", 1, EdgePath(2, Line(0, 0, 10, 0) + Line(10, 0, 10, 10)))), &skipped);
    EXPECT_TRUE(s.empty());
    EXPECT_EQ(SkipSummary(skipped), "1 HATCH on layer FILL boundary that does not close");
}

}  // namespace
}  // namespace tgp::drawings
