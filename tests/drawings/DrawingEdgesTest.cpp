// Outlines drawn as separate LINE and ARC entities, chained end to end into closed outlines.

#include <gtest/gtest.h>

#include "support/DxfText.h"

#include <cmath>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "drawings/DxfProfileReader.h"
#include "drawings/SectionAnalysis.h"

namespace tgp::drawings {
namespace {

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

}  // namespace
}  // namespace tgp::drawings
