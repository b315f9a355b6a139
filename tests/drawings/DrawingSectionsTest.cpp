// A file's sections in one call: what became of each outline, the options, and the file errors.

#include <gtest/gtest.h>

#include <string>

#include "drawings/DrawingSections.h"
#include "support/DxfText.h"
#include "support/Expectations.h"

namespace tgp::drawings {
namespace {

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

}  // namespace
}  // namespace tgp::drawings
