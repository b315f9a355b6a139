// Pictures of sections read back as XML: the filled path's own area (its lines and arcs, exactly)
// against the report's, the marks where the report puts them, rejected outlines with their reason.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <pugixml.hpp>
#include <sstream>

#include "cli/SectionPicture.h"
#include "support/DxfText.h"
#include "support/ProfileTestShapes.h"
#include "support/SectionCommandRun.h"

namespace tgp::cli {
namespace {

namespace fs = std::filesystem;
using test::JsonNumber;
using test::RunCommand;
using test::TempText;

// The area a path encloses, from its data: "M x y", "L x y", "A r r 0 large sweep x y", "Z", y down.
// Each piece adds its chord's shoelace term and an arc its circular segment, r² (θ - sin θ) / 2, θ
// signed counter-clockwise as seen with y up (sweep 0).
double PathArea(const std::string& d) {
    std::istringstream in(d);
    double area = 0, x = 0, y = 0, startX = 0, startY = 0;
    char command = 0;
    auto chord = [&](double toX, double toY) { area += (x * toY - toX * y) / 2; };
    while (in >> command) {
        if (command == 'M') {
            in >> x >> y;
            y = -y;
            startX = x, startY = y;
        } else if (command == 'L' || command == 'A') {
            double r = 0, rotation = 0, large = 0, sweep = 0, toX = 0, toY = 0;
            if (command == 'A') in >> r >> r >> rotation >> large >> sweep;
            in >> toX >> toY;
            toY = -toY;
            chord(toX, toY);
            if (command == 'A') {
                const double half = std::asin(std::min(1.0, std::hypot(toX - x, toY - y) / (2 * r)));
                double theta = large != 0 ? 2 * std::numbers::pi - 2 * half : 2 * half;
                if (sweep != 0) theta = -theta;
                area += r * r * (theta - std::sin(theta)) / 2;
            }
            x = toX, y = toY;
        } else if (command == 'Z') {
            chord(startX, startY);
            x = startX, y = startY;
        }
    }
    return area;
}

pugi::xml_document Parsed(const fs::path& file) {
    pugi::xml_document doc;
    const pugi::xml_parse_result result = doc.load_file(file.c_str());
    EXPECT_TRUE(result) << file << ": " << result.description();
    return doc;
}

pugi::xml_node ById(const pugi::xml_document& doc, const char* id) {
    return doc.find_node(
        [&](const pugi::xml_node& n) { return std::string(n.attribute("id").value()) == id; });
}

TEST(SectionPicture, DrawsWhatTheReportSays) {
    // A 100 x 20 plate turned 30 degrees with a round hole off its middle: a principal angle, a
    // centroid away from the origin and an arc; the IPE 200 of the examples with torsion.
    std::ostringstream plate;
    plate << "profile plate\n";
    const double c = std::cos(std::numbers::pi / 6), s = std::sin(std::numbers::pi / 6);
    for (auto [x, y] : {std::pair{0.0, 0.0}, {100.0, 0.0}, {100.0, 20.0}, {0.0, 20.0}})
        plate << 40 + x * c - y * s << " " << -10 + x * s + y * c << "\n";
    plate << "loop\n"
          << 40 + 62 * c - 10 * s << " " << -10 + 62 * s + 10 * c << " 1\n"
          << 40 + 78 * c - 10 * s << " " << -10 + 78 * s + 10 * c << " 1\nend\n";
    const std::string files[] = {TempText("plate.txt", plate.str()),
                                 std::string(TGP_EXAMPLES_DIR) + "/ipe200.txt"};
    for (const std::string& file : files) {
        const fs::path folder = fs::path(::testing::TempDir()) / "pictures";
        fs::remove_all(folder);
        auto run = RunCommand({file, "--torsion", "--json", "--svg", folder.string()});
        ASSERT_EQ(run.code, 0) << run.err;
        run.out.erase(0, run.out.find("\"profiles\""));  // the values, not the units' names
        const fs::path picture = folder / PictureName(file, {}, 1);
        ASSERT_TRUE(fs::exists(picture)) << picture;
        const pugi::xml_document doc = Parsed(picture);
        const double area = JsonNumber(run.out, "area"), xc = JsonNumber(run.out, "centroid_x"),
                     yc = JsonNumber(run.out, "centroid_y"), size = std::sqrt(area);
        const auto section = doc.find_node(
            [](const pugi::xml_node& n) { return std::string(n.attribute("class").value()) == "section"; });
        EXPECT_NEAR(PathArea(section.attribute("d").value()) / area, 1, 1e-9) << file;
        const auto centroid = ById(doc, "centroid").child("circle");
        EXPECT_NEAR(centroid.attribute("cx").as_double(), xc, 1e-9 * size) << file;
        EXPECT_NEAR(centroid.attribute("cy").as_double(), -yc, 1e-9 * size) << file;
        // Axis 1 passes through the centroid at the principal angle; axis 2 across it.
        const double angle = JsonNumber(run.out, "principal_angle") * std::numbers::pi / 180;
        for (const auto& [id, turn] : {std::pair{"axis-1", 0.0}, {"axis-2", std::numbers::pi / 2}}) {
            const auto axis = ById(doc, id);
            const double x1 = axis.attribute("x1").as_double(), y1 = -axis.attribute("y1").as_double(),
                         x2 = axis.attribute("x2").as_double(), y2 = -axis.attribute("y2").as_double();
            const double direction = std::atan2(y2 - y1, x2 - x1) - angle - turn;
            EXPECT_NEAR(std::sin(direction), 0, 1e-9) << file << " " << id;
            EXPECT_NEAR(((x2 - x1) * (yc - y1) - (y2 - y1) * (xc - x1)) / std::hypot(x2 - x1, y2 - y1), 0,
                        1e-9 * size)
                << file << " " << id;
        }
        EXPECT_NEAR(-ById(doc, "plastic-horizontal").attribute("y1").as_double(),
                    JsonNumber(run.out, "plastic_axis_y"), 1e-9 * size);
        EXPECT_NEAR(ById(doc, "plastic-vertical").attribute("x1").as_double(),
                    JsonNumber(run.out, "plastic_axis_x"), 1e-9 * size);
        const auto shear = ById(doc, "shear-centre").child("circle");
        EXPECT_NEAR(shear.attribute("cx").as_double(), JsonNumber(run.out, "shear_centre_x"), 1e-9 * size);
        EXPECT_NEAR(shear.attribute("cy").as_double(), -JsonNumber(run.out, "shear_centre_y"), 1e-9 * size);
        EXPECT_TRUE(ById(doc, "legend").find_child([](const pugi::xml_node& n) {
            return std::string(n.text().get()).starts_with("J = ");
        })) << "J in the legend";
    }
}

TEST(SectionPicture, RejectedOutlinesOneFileAndNames) {
    const std::string file = TempText("pictures.txt",
                                      "profile bow\n0 0\n10 10\n10 0\n0 10\nend\n"
                                      "profile square\n0 20\n10 20\n10 30\n0 30\nend\n");
    const fs::path one = fs::path(::testing::TempDir()) / "one.svg";
    fs::remove(one);
    const auto run = RunCommand({file, "--svg", one.string()});
    EXPECT_EQ(run.code, 2) << "a rejected outline";
    EXPECT_NE(run.err.find("one.svg holds the first section; 1 more not drawn"), std::string::npos)
        << run.err;
    const pugi::xml_document doc = Parsed(one);
    EXPECT_TRUE(doc.find_node([](const pugi::xml_node& n) {
        return std::string(n.attribute("class").value()) == "rejected";
    })) << "drawn in the warning colour";
    EXPECT_TRUE(ById(doc, "legend").find_node([](const pugi::xml_node& n) {
        return std::string(n.text().get()).starts_with("not a section: cuts itself");
    })) << "with its reason";
    drawings::ProfileOutcome entity;
    entity.handle = "2F";
    EXPECT_EQ(PictureName("dir/plates v2.dxf", entity, 3), "plates_v2-2F.svg");
    EXPECT_EQ(PictureName("ipe200.txt", {}, 1), "ipe200-1.svg");
    const fs::path folder = fs::path(::testing::TempDir()) / "png";
    fs::remove_all(folder);
    ASSERT_EQ(
        RunCommand({std::string(TGP_EXAMPLES_DIR) + "/ipe200.txt", "--svg", folder.string(), "--png"}).code,
        0);
    std::ifstream png(folder / "ipe200-1.png", std::ios::binary);
    char magic[4] = {};
    png.read(magic, 4);
    EXPECT_EQ(std::string(magic + 1, 3), "PNG");
}

// The whole file with --svg-all: its section filled, the outline that cuts itself in the warning
// colour with its reason, the line that closes nothing in grey.
TEST(SectionPicture, OverviewShowsWhatWasNotRead) {
    const std::string drawing =
        test::Drawing(test::Polyline("1", "PLATE", {{0, 0}, {10, 0}, {10, 10}, {0, 10}}) +
                      test::Polyline("2", "PLATE", {{20, 0}, {30, 10}, {30, 0}, {20, 10}}) +
                      "0\nLINE\n5\n3\n8\nDIM\n10\n0\n20\n-5\n11\n30\n21\n-5\n");
    const std::string file = TempText("overview.dxf", drawing);
    const fs::path folder = fs::path(::testing::TempDir()) / "overview";
    fs::remove_all(folder);
    EXPECT_EQ(RunCommand({file, "--svg", folder.string(), "--svg-all"}).code, 2);
    const pugi::xml_document doc = Parsed(folder / OverviewName(file));
    auto path = [&](const char* kind) {
        return doc
            .find_node(
                [&](const pugi::xml_node& n) { return std::string(n.attribute("class").value()) == kind; })
            .attribute("d")
            .value();
    };
    EXPECT_NEAR(PathArea(path("section")), 100, 1e-9);
    EXPECT_NE(std::string(path("rejected")), "");
    EXPECT_EQ(std::string(path("skipped")), "M0 5 L30 5") << "the line, y down";
    std::string legend;  // every piece of text, each followed by '|'
    struct Texts : pugi::xml_tree_walker {
        std::string* out;
        bool for_each(pugi::xml_node& node) override {
            if (node.type() == pugi::node_pcdata) *out += std::string(node.value()) + "|";
            return true;
        }
    } texts;
    texts.out = &legend;
    ById(doc, "legend").traverse(texts);
    for (const char* expected :
         {"1 section|", "1 outline that made no section:|", "cuts itself", "1 LINE on layer DIM"})
        EXPECT_NE(legend.find(expected), std::string::npos) << expected << " in " << legend;
}

// A section with nothing to draw (no outline kept) still gets a picture: framed at the origin.
TEST(SectionPicture, NothingToDrawIsFramedAtTheOrigin) {
    drawings::ProfileOutcome nothing;
    nothing.name = "empty";
    nothing.error = "encloses no area";
    pugi::xml_document doc;
    ASSERT_TRUE(doc.load_string(
        SectionSvg(nothing, {}, ReportUnits::From(std::make_shared<UnitSetting>(), 6)).c_str()));
    double x = 1, y = 1, width = 0, height = 0;
    std::istringstream(doc.child("svg").attribute("viewBox").value()) >> x >> y >> width >> height;
    EXPECT_NEAR(x, 0, 1e-12);
    EXPECT_TRUE(std::isfinite(width) && width > 0 && std::isfinite(height) && height > 0)
        << width << " " << height;
}

// Strokes and text are sized from the picture: a part drawn 10,000 times larger gives the same
// picture, its strokes and text as large against its height (its width follows the legend's texts,
// whose numbers differ).
TEST(SectionPicture, StrokesAndTextScaleWithThePicture) {
    std::vector<std::vector<double>> ratios;
    for (const double scale : {0.001, 10.0}) {
        std::ostringstream text;
        for (auto [x, y] : {std::pair{0.0, 0.0}, {100.0, 0.0}, {100.0, 20.0}, {0.0, 20.0}})
            text << x * scale << " " << y * scale << "\n";
        text << "\n"
             << 0 << " " << 40 * scale << "\n"
             << 10 * scale << " " << 50 * scale << "\n"
             << 10 * scale << " " << 40 * scale << "\n"
             << 0 << " " << 50 * scale << "\n";
        const std::string file = TempText("scaled.txt", text.str());
        const fs::path folder = fs::path(::testing::TempDir()) / "scaled";
        fs::remove_all(folder);
        RunCommand({file, "--svg", folder.string(), "--svg-all"});
        const pugi::xml_document doc = Parsed(folder / OverviewName(file));
        std::istringstream box(doc.child("svg").attribute("viewBox").value());
        double x = 0, y = 0, width = 0, height = 0;
        box >> x >> y >> width >> height;
        std::vector<double> ratio;
        for (const char* kind : {"section", "rejected"}) {
            ratio.push_back(doc.find_node([&](const pugi::xml_node& n) {
                                   return std::string(n.attribute("class").value()) == kind;
                               })
                                .attribute("stroke-width")
                                .as_double() /
                            height);
        }
        std::string transform = ById(doc, "legend").child("text").attribute("transform").value();
        ratio.push_back(std::stod(transform.substr(transform.find("scale(") + 6)) / height);
        ratios.push_back(ratio);
        // The picture reaches past each legend line: 0.6 of the font size a character, an entity one.
        for (const pugi::xml_node line : ById(doc, "legend").children("text")) {
            double tx = 0, scale = 0;
            std::sscanf(line.attribute("transform").value(), "translate(%lf %*f) scale(%lf)", &tx, &scale);
            std::size_t characters = 0;
            for (const pugi::xpath_node piece : line.select_nodes(".//text()"))
                for (const unsigned char c : std::string(piece.node().value()))
                    characters += (c & 0xC0) != 0x80;
            EXPECT_GE(x + width, tx + 0.6 * 16 * scale * static_cast<double>(characters))
                << line.child_value();
        }
    }
    for (std::size_t k = 0; k < ratios[0].size(); ++k) EXPECT_NEAR(ratios[1][k] / ratios[0][k], 1, 1e-9) << k;
}

}  // namespace
}  // namespace tgp::cli
