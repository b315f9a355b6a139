// Outlines grouped into sections (holes, islands, touching plates, text loops) and the hollow-section
// table on drawings the test writes.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "drawings/DxfProfileReader.h"
#include "drawings/SectionAnalysis.h"
#include "drawings/TextProfileReader.h"
#include "support/DxfText.h"
#include "support/ProfileTestShapes.h"

namespace tgp::drawings {
namespace {

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

}  // namespace
}  // namespace tgp::drawings
