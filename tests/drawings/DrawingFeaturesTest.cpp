// What a drawing's structure does to its outlines: block references (nested, placed, scaled,
// mirrored, in rows and columns), entity coordinate systems, layers, paper space and units.

#include <gtest/gtest.h>

#include "support/DxfText.h"

#include <cmath>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "drawings/DxfProfileReader.h"

namespace tgp::drawings {
namespace {

using test::Drawing;
using test::Number;
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
