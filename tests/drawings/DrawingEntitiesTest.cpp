// Drawing entities to outlines: lines and arcs chained end to end, ellipses, hatches, blocks,
// layouts and units.

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "drawings/DxfProfileReader.h"
#include "drawings/SectionAnalysis.h"
#include "support/DxfText.h"

namespace tgp::drawings {
namespace {

// Outlines drawn as separate LINE and ARC entities, chained end to end into closed outlines.
using test::Drawing;
using test::Number;

// A handle in hexadecimal, as drawings write it.
std::string Hex(int handle) {
    std::ostringstream h;
    h << std::hex << std::uppercase << handle;
    return h.str();
}

std::string Line(int handle, double x0, double y0, double x1, double y1, const std::string& layer = "EDGES") {
    return "0\nLINE\n5\n" + Hex(handle) + "\n8\n" + layer + "\n10\n" + Number(x0) + "\n20\n" + Number(y0) +
           "\n30\n0\n11\n" + Number(x1) + "\n21\n" + Number(y1) + "\n31\n0\n";
}

std::string Arc(int handle, double cx, double cy, double r, double from, double to,
                const std::string& extra = "") {
    return "0\nARC\n5\n" + Hex(handle) + "\n8\nEDGES\n10\n" + Number(cx) + "\n20\n" + Number(cy) +
           "\n30\n0\n40\n" + Number(r) + "\n50\n" + Number(from) + "\n51\n" + Number(to) + "\n" + extra;
}

// A b x b square with corners rounded to radius r, centred on the origin, as 4 LINEs and 4 ARCs in a
// shuffled order, each line drawn one way or the other, the ends off by up to `gap`.
std::string RoundedSquare(double b, double r, double gap, unsigned seed) {
    const double h = b / 2;
    std::vector<std::string> pieces = {
        Line(1, -h + r, -h, h - r, -h + gap), Line(2, h + gap, -h + r, h, h - r),
        Line(3, h - r, h, -h + r - gap, h),   Line(4, -h, h - r, -h, -h + r + gap),
        Arc(5, h - r, -h + r, r, 270, 360),   Arc(6, h - r, h - r, r, 0, 90),
        Arc(7, -h + r, h - r, r, 90, 180),    Arc(8, -h + r, -h + r, r, 180, 270),
    };
    std::mt19937 random(seed);
    std::shuffle(pieces.begin(), pieces.end(), random);
    std::string all;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        std::string piece = pieces[i];
        if (piece.find("0\nLINE") == 0 && random() % 2) {  // the same line drawn from its other end
            std::istringstream in(piece);
            std::vector<std::string> lines;
            for (std::string l; std::getline(in, l);) lines.push_back(l);
            std::swap(lines[7], lines[13]);
            std::swap(lines[9], lines[15]);
            piece.clear();
            for (const auto& l : lines) piece += l + "\n";
        }
        all += piece;
    }
    return all;
}

double Area(const DrawnProfile& p) {
    const auto outcome = AnalyseProfile(p, std::make_shared<UnitSetting>());
    EXPECT_TRUE(outcome.values) << outcome.error;
    return outcome.values ? outcome.values->area : NAN;
}

TEST(DrawingEdges, LinesAndArcsInAnyOrderAndDirectionMakeOneOutline) {
    const double b = 40, r = 6;
    for (unsigned seed = 0; seed < 20; ++seed) {
        for (double gap : {0.0, 1e-9, 2e-5}) {
            DxfSkips skipped;
            const auto p = ReadDxfText(Drawing(RoundedSquare(b, r, gap, seed)), "e.dxf", {}, &skipped);
            ASSERT_EQ(p.size(), 1u) << seed << " gap " << gap << ": " << SkipSummary(skipped);
            EXPECT_EQ(p[0].VertexCount(), 8u);
            EXPECT_NEAR(Area(p[0]), b * b - (4 - M_PI) * r * r, 1e-3) << seed;
            EXPECT_EQ(p[0].name.find("outline of 4 ARC and 4 LINE on layer EDGES, from "), 0u) << p[0].name;
        }
    }
    DxfSkips skipped;
    const auto apart = ReadDxfText(Drawing(RoundedSquare(b, r, 0.01, 1)), "e.dxf", {}, &skipped);
    EXPECT_TRUE(apart.empty()) << "a gap of 0.01 on a 40 mm part does not close";
    EXPECT_NE(SkipSummary(skipped).find("on layer EDGES not part of a closed outline"), std::string::npos)
        << SkipSummary(skipped);
}

TEST(DrawingEdges, TheBoreInsideAnOutlineOfEdgesIsAHole) {
    const std::string bore = "0\nCIRCLE\n5\n99\n8\nEDGES\n10\n0\n20\n0\n40\n2.1\n";
    const auto p = ReadDxfText(Drawing(RoundedSquare(20, 1.5, 0, 3) + bore), "v.dxf");
    ASSERT_EQ(p.size(), 2u);
    const auto sections = AnalyseProfiles(p, std::make_shared<UnitSetting>());
    ASSERT_EQ(sections.size(), 1u);
    EXPECT_EQ(sections[0].holes, 1);
    EXPECT_NEAR(sections[0].values->area, 400 - (4 - M_PI) * 2.25 - M_PI * 2.1 * 2.1, 1e-9);
}

// An LWPOLYLINE through the points, open unless `closed`, with a bulge on every segment.
std::string Polyline(int handle, const std::vector<double>& xy, bool closed, double bulge = 0) {
    std::vector<std::vector<double>> vertices;
    for (std::size_t i = 0; i + 1 < xy.size(); i += 2) vertices.push_back({xy[i], xy[i + 1], bulge});
    return test::Polyline(Hex(handle), "PLATE", vertices, "", closed ? 1 : 0);
}

// The outer boundary of a plate as a CAD export leaves it: open polylines (one of them an arc) and
// an open spline joined end to end, around two rectangular holes drawn closed. One section with two
// holes; its area from the rectangle, the arc's circular segment and the holes.
TEST(DrawingEdges, OpenPolylinesAndSplinesCloseAnOutlineAroundItsHoles) {
    const double bulge = 0.1;
    const std::string spline =  // a clamped cubic along x = 200, from y = 50 to y = 100
        "0\nSPLINE\n5\n30\n8\nPLATE\n70\n8\n71\n3\n72\n8\n73\n4\n74\n0\n40\n0\n40\n0\n40\n0\n40\n0\n40\n1\n40"
        "\n1\n40\n1\n"
        "40\n1\n10\n200\n20\n50\n30\n0\n10\n200\n20\n65\n30\n0\n10\n200\n20\n85\n30\n0\n10\n200\n20\n100\n30"
        "\n0\n";
    const std::string drawing =
        Drawing(Polyline(0x10, {0, 0, 200, 0, 200, 50}, false) + spline +
                Polyline(0x11, {200, 100, 0, 100}, false, bulge) + Polyline(0x12, {0, 0, 0, 100}, false) +
                Polyline(0x20, {20, 20, 60, 20, 60, 60, 20, 60}, true) +
                Polyline(0x21, {100, 20, 150, 20, 150, 70, 100, 70}, true));
    DxfSkips skipped;
    const auto sections =
        AnalyseProfiles(ReadDxfText(drawing, "plate.dxf", {}, &skipped), std::make_shared<UnitSetting>());
    EXPECT_EQ(SkipSummary(skipped), "");
    ASSERT_EQ(sections.size(), 1u);
    EXPECT_EQ(sections[0].holes, 2);
    ASSERT_TRUE(sections[0].values) << sections[0].error;
    // The top edge bulges up by a circular segment: included angle 4 atan(b) on a chord of 200.
    const double angle = 4 * std::atan(bulge), radius = 100 / std::sin(angle / 2);
    const double segment = radius * radius / 2 * (angle - std::sin(angle));
    EXPECT_NEAR(sections[0].values->area, 200 * 100 + segment - 40 * 40 - 50 * 50, 1e-6);
    // Alone, an open polyline is still a line of the drawing.
    skipped.clear();
    EXPECT_TRUE(ReadDxfText(Drawing(Polyline(0x40, {0, 0, 5, 5}, false)), "l.dxf", {}, &skipped).empty());
    EXPECT_EQ(SkipSummary(skipped), "1 open LWPOLYLINE on layer PLATE");
}

TEST(DrawingEdges, ArcsWrapAroundAndMirroredArcsRunTheOtherWay) {
    // A half disc: a diameter line and an arc from 270 through 0 to 90 degrees.
    const auto wrapped = ReadDxfText(Drawing(Line(1, 0, 10, 0, -10) + Arc(2, 0, 0, 10, 270, 90)), "w.dxf");
    ASSERT_EQ(wrapped.size(), 1u);
    EXPECT_NEAR(Area(wrapped[0]), M_PI * 50, 1e-9);
    // The same half disc mirrored: drawn with extrusion (0, 0, -1) its arc lies at negative x.
    const auto mirrored = ReadDxfText(
        Drawing(Line(1, 0, 10, 0, -10) + Arc(2, 0, 0, 10, 270, 90, "210\n0\n220\n0\n230\n-1\n")), "m.dxf");
    ASSERT_EQ(mirrored.size(), 1u);
    const auto v = AnalyseProfile(mirrored[0], std::make_shared<UnitSetting>()).values;
    ASSERT_TRUE(v);
    EXPECT_NEAR(v->xc, -40 / (3 * M_PI), 1e-9);
}

// Lines that end in the open (an axis from a corner, a centre mark) are taken away, and the
// outline they touch still closes; where three edges still meet, nothing is guessed.
TEST(DrawingEdges, DanglingEdgesAreTakenAwayAndBranchesListed) {
    DxfSkips skipped;
    const auto triangle =
        ReadDxfText(Drawing(Line(1, 0, 0, 10, 0) + Line(2, 10, 0, 0, 10) + Line(3, 0, 10, 0, 0) +
                            Line(4, 0, 0, -5, -5, "AXES") + Line(6, -5, -5, -8, -2, "AXES") +
                            Line(5, 20, 20, 30, 30, "AXES")),
                    "b.dxf", {}, &skipped);
    ASSERT_EQ(triangle.size(), 1u);
    EXPECT_NEAR(Area(triangle[0]), 50, 1e-12);
    EXPECT_EQ(SkipSummary(skipped), "3 LINE on layer AXES not part of a closed outline");

    skipped.clear();
    // A square split by a line across it: two loops share that line, so no edge is taken as an
    // outline (the drawing is ambiguous), and all seven are listed.
    const auto split = ReadDxfText(
        Drawing(Line(1, 0, 0, 5, 0) + Line(2, 5, 0, 10, 0) + Line(3, 10, 0, 10, 10) + Line(4, 10, 10, 5, 10) +
                Line(5, 5, 10, 0, 10) + Line(6, 0, 10, 0, 0) + Line(7, 5, 0, 5, 10)),
        "s.dxf", {}, &skipped);
    EXPECT_TRUE(split.empty());
    EXPECT_EQ(SkipSummary(skipped), "7 LINE on layer EDGES not part of a closed outline");
}

// Ellipses and elliptic arcs: exact properties, not those of the arcs that stand in for them.
// An ELLIPSE: centre, major axis end (relative), ratio, parameters; extra groups (an extrusion).
std::string Ellipse(const std::string& handle, double cx, double cy, double mx, double my, double ratio,
                    double t0 = 0, double t1 = 2 * M_PI, const std::string& extra = "") {
    std::ostringstream e;
    e.precision(17);
    e << "0\nELLIPSE\n5\n"
      << handle << "\n8\nE\n10\n"
      << cx << "\n20\n"
      << cy << "\n30\n0\n11\n"
      << mx << "\n21\n"
      << my << "\n31\n0\n"
      << extra << "40\n"
      << ratio << "\n41\n"
      << t0 << "\n42\n"
      << t1 << "\n";
    return e.str();
}

// The sections of a drawing written as text, and the values of its one section.
std::vector<ProfileOutcome> Sections(const std::string& drawing, SkipList* skipped = nullptr) {
    const auto profiles = ReadDxfText(drawing, "drawing.dxf", {}, skipped);
    return AnalyseProfiles(profiles, std::make_shared<UnitSetting>(), false, skipped);
}

SectionValues Values(const std::string& drawing) {
    const auto sections = Sections(drawing);
    EXPECT_EQ(sections.size(), 1u);
    EXPECT_TRUE(!sections.empty() && sections[0].values) << (sections.empty() ? "" : sections[0].error);
    return sections.empty() || !sections[0].values ? SectionValues{} : *sections[0].values;
}

TEST(DrawingEllipses, AWholeEllipseHasItsExactProperties) {
    const double a = 50, b = 20;
    for (double turn : {0.0, 0.5, 2.0}) {
        const SectionValues v =
            Values(Drawing(Ellipse("E1", 7, -3, a * std::cos(turn), a * std::sin(turn), b / a)));
        const double area = M_PI * a * b, i1 = M_PI * a * a * a * b / 4, i2 = M_PI * a * b * b * b / 4;
        EXPECT_NEAR(v.area, area, 1e-13 * area) << turn;
        EXPECT_NEAR(v.xc, 7, 1e-12) << turn;
        EXPECT_NEAR(v.yc, -3, 1e-12) << turn;
        EXPECT_NEAR(v.i1, i1, 1e-12 * i1) << turn;
        EXPECT_NEAR(v.i2, i2, 1e-12 * i1) << turn;
        const double c = std::cos(turn), s = std::sin(turn);
        EXPECT_NEAR(v.ix, i2 * c * c + i1 * s * s, 1e-12 * i1) << turn;
        // Extreme fibre of a turned ellipse: the half height of its bounding box.
        EXPECT_NEAR(v.top, std::hypot(a * s, b * c), 1e-12 * a) << turn;
        // Plastic modulus about the horizontal axis, through the centre: 4/3 times the half widths.
        if (turn == 0.0) {
            EXPECT_NEAR(v.wplx, 4 * a * b * b / 3, 2e-9 * a * b * b)
                << "the cut is made on the arcs that stand in";
        }
    }
}

TEST(DrawingEllipses, EllipticHolesArcsAndStretchedCircles) {
    // A plate with an elliptic hole.
    const std::string plate =
        "0\nLWPOLYLINE\n5\n1\n8\nE\n90\n4\n70\n1\n10\n-100\n20\n-50\n10\n100\n20\n-50\n10\n100\n20\n50\n10\n-"
        "100\n20\n50\n";
    SectionValues v = Values(Drawing(plate + Ellipse("2", 0, 0, 0, 40, 0.5)));
    EXPECT_NEAR(v.area, 200 * 100 - M_PI * 40 * 20, 1e-9);
    EXPECT_NEAR(v.iy, 100 * std::pow(200.0, 3) / 12 - M_PI * 40 * std::pow(20.0, 3) / 4, 1e-6);
    // Half an ellipse closed by a line: an elliptic ARC in a chain.
    const std::string half =
        Ellipse("3", 0, 0, 30, 0, 0.5, 0, M_PI) + "0\nLINE\n5\n4\n8\nE\n10\n-30\n20\n0\n11\n30\n21\n0\n";
    v = Values(Drawing(half));
    EXPECT_NEAR(v.area, M_PI * 30 * 15 / 2, 1e-12);
    EXPECT_NEAR(v.yc, 4 * 15 / (3 * M_PI), 1e-12);
    // The same half drawn mirrored (extrusion (0, 0, -1)): it lies below... no: its minor axis turns.
    v = Values(Drawing(Ellipse("5", 0, 0, 30, 0, 0.5, 0, M_PI, "210\n0\n220\n0\n230\n-1\n") +
                       "0\nLINE\n5\n6\n8\nE\n10\n-30\n20\n0\n11\n30\n21\n0\n"));
    EXPECT_NEAR(v.yc, -4 * 15 / (3 * M_PI), 1e-12);
    // A circle in a block scaled 2 : 1 is an ellipse.
    const std::string block =
        "0\nBLOCK\n2\nROUND\n70\n0\n10\n0\n20\n0\n30\n0\n0\nCIRCLE\n5\n7\n8\n0\n10\n0\n20\n0\n40\n10\n0\nENDB"
        "LK\n";
    v = Values(Drawing("0\nINSERT\n5\n8\n8\nE\n2\nROUND\n10\n0\n20\n0\n41\n2\n42\n1\n50\n30\n", block));
    EXPECT_NEAR(v.area, 2 * M_PI * 100, 1e-12);
    EXPECT_NEAR(v.i1, M_PI * 20 * 20 * 20 * 10 / 4, 1e-9);
}

// HATCH boundary paths as outlines: polyline paths, paths of lines, circular and elliptic arcs and
// splines, holes, and hatches drawn on outlines of their own.
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

std::string LineEdge(double x0, double y0, double x1, double y1) {
    return Groups({{72, 1}, {10, x0}, {20, y0}, {11, x1}, {21, y1}});
}
std::string ArcEdge(double cx, double cy, double r, double a0, double a1, bool ccw) {
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

TEST(DrawingHatches, PolylineAndEdgePathsAreOutlines) {
    // A 20 x 10 slot with half-round ends as a polyline path.
    auto s = Sections(Drawing(Hatch("H1", 1, PolylinePath({{0, 0}, {20, 0, 1}, {20, 10}, {0, 10, 1}}))));
    ASSERT_EQ(s.size(), 1u);
    ASSERT_TRUE(s[0].values) << s[0].error;
    EXPECT_NEAR(s[0].values->area, 200 + M_PI * 25, 1e-9);
    EXPECT_EQ(s[0].name, "HATCH handle H1 on layer FILL, boundary 1");

    // The same slot as an edge path: lines and arcs (one counter-clockwise, one clockwise as the
    // file stores it: the complement angles of the counter-clockwise arc), out of order.
    const std::string edges = LineEdge(20, 10, 0, 10) + ArcEdge(20, 5, 5, 270, 90, true) +
                              LineEdge(0, 0, 20, 0) + ArcEdge(0, 5, 5, 90, 270, false);
    s = Sections(Drawing(Hatch("H2", 1, EdgePath(4, edges))));
    ASSERT_EQ(s.size(), 1u);
    ASSERT_TRUE(s[0].values) << s[0].error;
    EXPECT_NEAR(s[0].values->area, 200 + M_PI * 25, 1e-9);
    // A line edge without its start's y group starts at y = 0.
    const std::string noY = Groups({{72, 1}, {10, 0}, {11, 10}, {21, 0}});
    s = Sections(Drawing(
        Hatch("H8", 1,
              EdgePath(4, noY + LineEdge(10, 0, 10, 10) + LineEdge(10, 10, 0, 10) + LineEdge(0, 10, 0, 0)))));
    ASSERT_EQ(s.size(), 1u);
    EXPECT_NEAR(s[0].values->area, 100, 1e-9);
}

TEST(DrawingHatches, EllipticEdgesAndHolesAreExact) {
    // Half an ellipse (semi-axes 30 and 15) closed by its diameter, clockwise, with a round hole.
    const std::string outer =
        EdgePath(2, EllipseEdge(0, 0, 30, 0, 0.5, 180, 360, false) + LineEdge(-30, 0, 30, 0));
    const std::string hole = EdgePath(1, ArcEdge(0, 5, 3, 0, 360, true));
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
    auto s = Sections(Drawing(Hatch("H5", 1, EdgePath(2, spline + LineEdge(10, 0, 0, 0)))));
    ASSERT_EQ(s.size(), 1u);
    ASSERT_TRUE(s[0].values) << s[0].error;
    EXPECT_NEAR(s[0].values->area, 2.0 / 3 * 10 * 5, 1e-3) << "a parabola's area, to the flattening";
    EXPECT_NE(s[0].name.find("(curves flattened)"), std::string::npos) << s[0].name;
    // A y group with no x before it (a control or fit point's 20 or 21 first) belongs to no point.
    const std::string strayYs =
        Groups({{72, 4}, {94, 2}, {73, 0}, {74, 0}, {95, 6}, {96, 3}, {20, 99}, {21, 99}}) +
        spline.substr(Groups({{72, 4}, {94, 2}, {73, 0}, {74, 0}, {95, 6}, {96, 3}}).size());
    s = Sections(Drawing(Hatch("H7", 1, EdgePath(2, strayYs + LineEdge(10, 0, 0, 0)))));
    ASSERT_EQ(s.size(), 1u);
    ASSERT_TRUE(s[0].values) << s[0].error;
    EXPECT_NEAR(s[0].values->area, 2.0 / 3 * 10 * 5, 1e-3);

    SkipList skipped;
    s = Sections(Drawing(Hatch("H6", 1, EdgePath(2, LineEdge(0, 0, 10, 0) + LineEdge(10, 0, 10, 10)))),
                 &skipped);
    EXPECT_TRUE(s.empty());
    EXPECT_EQ(SkipSummary(skipped), "1 HATCH on layer FILL boundary that does not close");
}

// What a drawing's structure does to its outlines: block references (nested, placed, scaled,
// mirrored, in rows and columns), entity coordinate systems, layers, paper space and units.
using test::Polyline;

std::string Block(const std::string& name, double baseX, double baseY, const std::string& contents) {
    return "0\nBLOCK\n2\n" + name + "\n70\n0\n10\n" + Number(baseX) + "\n20\n" + Number(baseY) +
           "\n30\n0\n3\n" + name + "\n" + contents + "0\nENDBLK\n";
}

std::string Insert(const std::string& handle, const std::string& layer, const std::string& block, double x,
                   double y, double sx = 1, double sy = 1, double angle = 0, const std::string& extra = "") {
    return "0\nINSERT\n5\n" + handle + "\n8\n" + layer + "\n2\n" + block + "\n10\n" + Number(x) + "\n20\n" +
           Number(y) + "\n30\n0\n41\n" + Number(sx) + "\n42\n" + Number(sy) + "\n50\n" + Number(angle) +
           "\n" + extra;
}

const std::vector<std::vector<double>> kSquare = {{0, 0}, {10, 0}, {10, 10, 0}, {0, 10}};

void ExpectPoints(const DrawnProfile& p, const std::vector<double>& xy, const std::string& what) {
    const std::vector<double> read = p.Coordinates();
    ASSERT_EQ(read.size(), xy.size()) << what;
    for (std::size_t i = 0; i < xy.size(); ++i)
        EXPECT_NEAR(read[i], xy[i], 1e-9) << what << " coordinate " << i;
}

TEST(DrawingBlocks, ReferencesArePlacedScaledTurnedAndMirrored) {
    const std::string blocks =
        Block("SQ", 5, 5, Polyline("A1", "0", {{0, 0}, {10, 0}, {10, 10, 0.5}, {0, 10}}));
    struct Case {
        std::string insert;
        std::vector<double> xy;
        double lastBulge;
    };
    const Case cases[] = {
        {Insert("B1", "L", "SQ", 100, 200), {95, 195, 105, 195, 105, 205, 95, 205}, 0.5},
        {Insert("B2", "L", "SQ", 0, 0, 2, 2), {-10, -10, 10, -10, 10, 10, -10, 10}, 0.5},
        {Insert("B3", "L", "SQ", 0, 0, 1, 1, 90), {5, -5, 5, 5, -5, 5, -5, -5}, 0.5},
        {Insert("B4", "L", "SQ", 0, 0, -1, 1), {5, -5, -5, -5, -5, 5, 5, 5}, -0.5},
        {Insert("B5", "L", "sq", 0, 0, 1, 1, 0, "210\n0\n220\n0\n230\n-1\n"),
         {5, -5, -5, -5, -5, 5, 5, 5},
         -0.5},
    };
    for (const Case& c : cases) {
        const auto p = ReadDxfText(Drawing(c.insert, blocks), "d.dxf");
        ASSERT_EQ(p.size(), 1u) << c.insert;
        ExpectPoints(p[0], c.xy, c.insert);
        EXPECT_EQ(p[0].bulges[2], c.lastBulge) << c.insert;
        EXPECT_EQ(p[0].layer, "L") << "an entity on layer 0 takes the reference's layer";
    }
    const auto p = ReadDxfText(Drawing(cases[0].insert, blocks), "d.dxf");
    EXPECT_EQ(p[0].name, "LWPOLYLINE handle A1 on layer L in block SQ (INSERT handle B1)");
}

TEST(DrawingBlocks, NestedReferencesAndArrays) {
    const std::string blocks = Block("INNER", 0, 0, Polyline("A1", "PLATES", kSquare)) +
                               Block("OUTER", 0, 0, Insert("B1", "0", "INNER", 100, 0, 1, 1, 90));
    // The square turned 90 degrees and moved by 100 inside OUTER, then doubled and raised by 1000.
    const auto p = ReadDxfText(Drawing(Insert("C1", "TOP", "OUTER", 0, 1000, 2, 2), blocks), "d.dxf");
    ASSERT_EQ(p.size(), 1u);
    ExpectPoints(p[0], {200, 1000, 200, 1020, 180, 1020, 180, 1000}, "nested");
    EXPECT_EQ(p[0].layer, "PLATES") << "an entity's own layer stays";
    EXPECT_EQ(p[0].name,
              "LWPOLYLINE handle A1 on layer PLATES in block INNER (INSERT handle B1) in block OUTER "
              "(INSERT handle C1)");
    const auto grid = ReadDxfText(
        Drawing(Insert("D1", "L", "INNER", 0, 0, 1, 1, 0, "70\n3\n71\n2\n44\n20\n45\n50\n"), blocks),
        "d.dxf");
    ASSERT_EQ(grid.size(), 6u);
    ExpectPoints(grid[5], {40, 50, 50, 50, 50, 60, 40, 60}, "last of a 3 x 2 array");
}

TEST(DrawingBlocks, ReferencesThatCannotBeUsed) {
    struct Case {
        std::string blocks, entities, problem;
    };
    const Case cases[] = {
        {"", Insert("E1", "L", "NOWHERE", 0, 0),
         "refers to block NOWHERE, which the drawing does not define"},
        {Block("SELF", 0, 0, Insert("E2", "0", "SELF", 1, 1)), Insert("E3", "L", "SELF", 0, 0),
         "inserts block SELF inside itself"},
        {Block("ROUND", 0, 0, Polyline("C1", "0", {{0, 0, 1}, {10, 0, 1}})),
         Insert("E4", "L", "ROUND", 0, 0, 2, 1),
         "has arcs that its block reference scales unequally in x and y (they would be ellipses)"},
    };
    // Arrays of arrays multiply: 1000 copies of 1000 copies of a block is refused, not drawn.
    const std::string grid = "70\n1000\n71\n1\n44\n20\n";
    const std::string nested =
        Block("NONE", 0, 0, "") + Block("ROW", 0, 0, Insert("E6", "0", "NONE", 0, 0, 1, 1, 0, grid));
    const auto many = ReadDxfText(Drawing(Insert("E7", "L", "ROW", 0, 0, 1, 1, 0, grid), nested), "d.dxf");
    ASSERT_EQ(many.size(), 1u);
    EXPECT_EQ(many[0].problem, "would place more than 1000000 block copies in the drawing");
    EXPECT_EQ(many[0].name, "INSERT handle E6 on layer L in block ROW (INSERT handle E7)");
    for (const Case& c : cases) {
        const auto p = ReadDxfText(Drawing(c.entities, c.blocks), "d.dxf");
        ASSERT_EQ(p.size(), 1u) << c.problem;
        EXPECT_EQ(p[0].problem, c.problem);
    }
    // Unequal scaling of straight outlines is fine.
    const auto stretched = ReadDxfText(
        Drawing(Insert("E5", "L", "SQ", 0, 0, 3, 1), Block("SQ", 0, 0, Polyline("A", "0", kSquare))),
        "d.dxf");
    EXPECT_TRUE(stretched.at(0).problem.empty());
    ExpectPoints(stretched[0], {0, 0, 30, 0, 30, 10, 0, 10}, "stretched");
}

TEST(DrawingEntities, MirroredCirclesPaperSpaceAndLayers) {
    const std::string entities =
        "0\nCIRCLE\n5\n10\n8\nRINGS\n10\n95.854\n20\n3\n40\n2\n210\n0\n220\n0\n230\n-1\n" +
        Polyline("11", "paper", kSquare, "67\n1\n") + Polyline("12", "Plates", kSquare) +
        Polyline("13", "tilted", kSquare, "210\n0\n220\n1\n230\n0\n");
    const auto all = ReadDxfText(Drawing(entities), "d.dxf");
    ASSERT_EQ(all.size(), 3u) << "paper space is not read";
    ExpectPoints(all[0], {-93.854, 3, -97.854, 3},
                 "a circle drawn with extrusion (0, 0, -1) lies at x = -95.854");
    EXPECT_EQ(all[0].bulges, (std::vector<double>{-1, -1})) << "and runs the other way";
    EXPECT_EQ(all[2].problem, "lies in a plane that is not parallel to XY");
    DxfReadOptions plates;
    plates.layer = "PLATES";
    const auto some = ReadDxfText(Drawing(entities), "d.dxf", plates);
    ASSERT_EQ(some.size(), 1u);
    EXPECT_EQ(some[0].handle, "12");
}

TEST(DrawingUnits, InsunitsAndTheOption) {
    struct Case {
        int insunits;
        std::optional<double> option;
        double side;  // of the 10-unit square, in millimetres
    };
    for (const Case& c : {Case{0, {}, 10}, Case{4, {}, 10}, Case{6, {}, 10000}, Case{1, {}, 254},
                          Case{5, {}, 100}, Case{6, 1.0, 10}, Case{0, 25.4, 254}}) {
        DxfReadOptions options;
        options.millimetresPerUnit = c.option;
        const std::string header = "9\n$INSUNITS\n70\n" + std::to_string(c.insunits) + "\n";
        const auto p = ReadDxfText(Drawing(Polyline("1", "0", kSquare), "", header), "d.dxf", options);
        EXPECT_NEAR(p.at(0).vertices[1].x, c.side, 1e-12) << c.insunits;
    }
    EXPECT_EQ(MillimetresPerInsUnit(2), 304.8);
    EXPECT_EQ(MillimetresPerInsUnit(0), 0);
}

TEST(DrawingEntities, CirclesWithoutARadiusAndMeshesAreNamedProblems) {
    const auto p = ReadDxfText(
        Drawing("0\nCIRCLE\n5\n1\n8\n0\n10\n0\n20\n0\n40\n-1\n"
                "0\nCIRCLE\n5\n2\n8\n0\n10\n0\n20\n0\n40\n0\n"
                "0\nPOLYLINE\n5\n3\n8\n0\n66\n1\n70\n16\n0\nVERTEX\n8\n0\n10\n0\n20\n0\n0\nSEQEND\n"),
        "d.dxf");
    ASSERT_EQ(p.size(), 3u);
    EXPECT_EQ(p[0].problem, "has a radius of -1 (a circle needs a radius above 0)");
    EXPECT_EQ(p[1].problem, "has a radius of 0 (a circle needs a radius above 0)");
    EXPECT_EQ(p[2].problem, "is a mesh, not a profile");
}

// Layouts: the active one's entities are marked as paper space in ENTITIES, another's live in a block
// of its own; its LAYOUT object names the block record of that block.
TEST(DrawingLayouts, ALayoutIsReadWhenNamed) {
    const std::string blocks =
        "0\nBLOCK\n5\n20\n330\n1F\n2\n*Paper_Space0\n70\n0\n10\n0\n20\n0\n30\n0\n" +
        Polyline("B2", "SHEET", kSquare) + "0\nENDBLK\n" +
        "0\nBLOCK\n5\n22\n330\n1E\n2\n*Paper_Space\n70\n0\n10\n0\n20\n0\n30\n0\n0\nENDBLK\n";
    const std::string objects =
        "0\nSECTION\n2\nOBJECTS\n"
        "0\nLAYOUT\n5\n30\n330\n1A\n100\nAcDbPlotSettings\n1\n\n100\nAcDbLayout\n1\nLayout1\n330\n1E\n"
        "0\nLAYOUT\n5\n31\n330\n1A\n100\nAcDbPlotSettings\n1\n\n100\nAcDbLayout\n1\nLayout2\n330\n1F\n"
        "0\nLAYOUT\n5\n32\n330\n1A\n100\nAcDbLayout\n1\nModel\n330\n1D\n0\nENDSEC\n";
    const std::string entities = Polyline("A1", "PARTS", kSquare) +
                                 Polyline("P1", "SHEET", {{0, 0}, {5, 0}, {5, 5}, {0, 5}}, "67\n1\n");
    std::string drawing = Drawing(entities, blocks);
    drawing.insert(drawing.rfind("0\nEOF"), objects);
    struct Case {
        std::optional<std::string> layout;
        std::string handle;
    };
    for (const Case& c :
         {Case{{}, "A1"}, Case{"model", "A1"}, Case{"Layout1", "P1"}, Case{"LAYOUT2", "B2"}}) {
        DxfReadOptions options;
        options.layout = c.layout;
        const auto p = ReadDxfText(drawing, "d.dxf", options);
        ASSERT_EQ(p.size(), 1u) << c.layout.value_or("(none)");
        EXPECT_EQ(p[0].handle, c.handle) << c.layout.value_or("(none)");
    }
    DxfReadOptions missing;
    missing.layout = "Sheet 9";
    try {
        ReadDxfText(drawing, "d.dxf", missing);
        ADD_FAILURE() << "a layout that is not there";
    } catch (const DrawingFileError& e) {
        EXPECT_STREQ(e.what(), "d.dxf: there is no layout 'Sheet 9' (the layouts: Model, Layout1, Layout2)");
    }
}

}  // namespace
}  // namespace tgp::drawings
