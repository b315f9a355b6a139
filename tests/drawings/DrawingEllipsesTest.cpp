// Ellipses and elliptic arcs: exact properties, not those of the arcs that stand in for them.

#include <gtest/gtest.h>

#include "support/DxfText.h"

#include <cmath>
#include <sstream>
#include <string>

#include "drawings/DxfProfileReader.h"
#include "drawings/SectionAnalysis.h"

namespace tgp::drawings {
namespace {

using test::Drawing;

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

SectionValues Values(const std::string& drawing) {
    const auto profiles = ReadDxfText(drawing, "e.dxf");
    const auto sections = AnalyseProfiles(profiles, std::make_shared<UnitSetting>());
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

}  // namespace
}  // namespace tgp::drawings
