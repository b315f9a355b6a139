#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <fstream>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

#include "drawings/DxfProfileReader.h"
#include "drawings/MappedFile.h"
#include "drawings/TextProfileReader.h"

namespace tgp::drawings {
namespace {

std::vector<DrawnProfile> FromText(const std::string& text) {
    std::istringstream in(text);
    return ReadTextProfiles(in, "in.txt");
}

struct TextCase {
    const char* name;
    const char* text;
    std::vector<std::string> names;
    std::vector<std::size_t> vertices;
};
class TextProfiles : public ::testing::TestWithParam<TextCase> {};

TEST_P(TextProfiles, SplitIntoNamedProfiles) {
    const TextCase& c = GetParam();
    const auto profiles = FromText(c.text);
    ASSERT_EQ(profiles.size(), c.names.size()) << c.name;
    for (std::size_t i = 0; i < profiles.size(); ++i) {
        EXPECT_EQ(profiles[i].name, c.names[i]);
        EXPECT_EQ(profiles[i].VertexCount(), c.vertices[i]);
        EXPECT_TRUE(profiles[i].closed);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, TextProfiles,
    ::testing::Values(TextCase{"blank_line",
                               "0 0\n1 0\n1 1\n\n5 5\n6 5\n6 6\n",
                               {"profile 1 (line 1)", "profile 2 (line 5)"},
                               {3, 3}},
                      TextCase{"end_and_names",
                               "profile A\n0 0\n1 0\n0 1\nend\nprofile  B b \n0 0 1\n2 0 1\n",
                               {"A", "B b"},
                               {3, 2}},
                      TextCase{"comments_inside",
                               "# header\n0 0 # first\n# still the same profile\n1 0\n\t1 1\r\n\n\n",
                               {"profile 1 (line 2)"},
                               {3}},
                      TextCase{"profile_starts_next",
                               "0 0\n1 0\n1 1\nprofile next\n0 0\n2 0\n2 2\n",
                               {"profile 1 (line 1)", "next"},
                               {3, 3}},
                      TextCase{"empty", "# nothing\n\nend\n", {}, {}}),
    [](const auto& info) { return info.param.name; });

TEST(TextProfiles, ReadsNumbersWithAPointAndBulgesDefaultingToZero) {
    const auto p = FromText("-1.5e1 2.25 -0.5\n3 4,5\n").at(0);  // or a decimal comma
    EXPECT_EQ(p.Coordinates(), (std::vector<double>{-15, 2.25, 3, 4.5}));
    EXPECT_EQ(p.bulges, (std::vector<double>{-0.5, 0}));
}

struct BadLine {
    const char* text;
    const char* message;
};
class TextProfileErrors : public ::testing::TestWithParam<BadLine> {};

TEST_P(TextProfileErrors, NameTheSourceAndLine) {
    try {
        FromText(GetParam().text);
        FAIL() << "accepted " << GetParam().text;
    } catch (const DrawingFileError& e) {
        EXPECT_STREQ(e.what(), GetParam().message);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Lines, TextProfileErrors,
    ::testing::Values(
        BadLine{"0 0\n1,000.5 2\n", "in.txt:2: '1,000.5' is not a number"},
        BadLine{"0 0\n1 2 3 4\n", "in.txt:2: expected 'x y' or 'x y bulge', found '1 2 3 4'"},
        BadLine{"\n\n7\n", "in.txt:3: expected 'x y' or 'x y bulge', found '7'"},
        BadLine{"0 0\n1 2mm\n", "in.txt:2: '2mm' is not a number"},
        BadLine{"\x01\xff\x7f",
                "in.txt:1: expected 'x y' or 'x y bulge', found '?"
                "?"
                "?'"},
        BadLine{
            "0 0 0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18",
            "in.txt:1: expected 'x y' or 'x y bulge', found '0 0 0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 1...'"}));

// The text read in any number of pieces gives what one piece gives: the same profiles, names,
// groups and numbers, or the same first error with its line. Piece counts up to one a line put a
// split between every pair of lines.
std::string ReadOutcome(const std::string& text, int pieces) {
    try {
        std::ostringstream out;
        for (const DrawnProfile& p : ReadTextProfiles(text, "in.txt", pieces)) {
            out << p.name << " [" << p.group << "]";
            for (std::size_t k = 0; k < p.VertexCount(); ++k)
                out << " " << p.vertices[k].x << "," << p.vertices[k].y << "," << p.bulges[k];
            out << "\n";
        }
        return out.str();
    } catch (const DrawingFileError& e) {
        return std::string("error ") + e.what();
    }
}

TEST(TextProfiles, ReadInPiecesAsInOne) {
    const std::vector<std::string> texts = {
        "0 0\n1 0\n1 1\n\n5 5\n6 5\n6 6\n",
        "# header\n0 0 # first\n# same\n1 0\n\t1 1\r\n\n\nprofile P\n0 0 0.5\n2 0\nloop\n1 1\n1.5 1\n1 "
        "1.5\nend\n",
        "profile A\n0 0\n1 0\n0 1\nloop\nloop\n3 3\n4 3\n4 4\nprofile\n9 9\n8 9\n8 8\n",
        "0 0\n1 0\n1 1\nprofile B\n0 0\n2 0\n2 2\n\n\n\n7 7\n8 8\n9 7",
        "0 0\n1 0\n1 1\n2 2\n3 3\n4 4\n5 5\n6 6\n7 x\n8 8\n9 9\n",
        "0 0\n1 0\n1 1\nend\nloop\n2 2\n",
        "profile Q\n0 0\n1 0\n1 1\n0 1 2 3\n1 1\n",
        "\n\n\n# only comments\n\nend\n",
        "0 0\n1 0\n1 1\n",
        "",
    };
    for (const std::string& text : texts) {
        const std::string whole = ReadOutcome(text, 1);
        const int lines = static_cast<int>(std::count(text.begin(), text.end(), '\n')) + 1;
        for (int pieces = 2; pieces <= lines + 2; ++pieces)
            EXPECT_EQ(ReadOutcome(text, pieces), whole) << pieces << " pieces of:\n" << text;
    }
}

// Small profiles read in pieces hold what they need, not room for the vertices of the profiles
// after them (which made 10^5 tiny profiles take gigabytes).
TEST(TextProfiles, SmallProfilesReadInPiecesStaySmall) {
    std::string text;
    for (int k = 0; k < 3000; ++k) text += "profile\n1 1\n2 2\n3 3 0.5\n";
    const auto profiles = ReadTextProfiles(text, "in.txt", 4);
    ASSERT_EQ(profiles.size(), 3000u);
    for (const DrawnProfile& p : profiles) {
        ASSERT_EQ(p.VertexCount(), 3u);
        ASSERT_LE(p.bulges.capacity(), 8u);
        ASSERT_LE(p.vertices.capacity(), 8u);
    }
}

// A text large enough to be read in pieces by default: the profiles come out whole and in order,
// and a malformed line near its end is reported with its line number in the whole text.
TEST(TextProfiles, LargeTextReadInPiecesKeepsOrderAndLineNumbers) {
    std::string text = "profile first\n";
    const int vertices = 200000;
    for (int k = 0; k < vertices; ++k) text += std::to_string(k) + " " + std::to_string(k % 7) + " 0.25\n";
    text += "profile second\n";
    for (int k = 0; k < vertices; ++k) text += std::to_string(-k) + " 1\n";
    ASSERT_GT(text.size(), 4u << 20);
    const auto profiles = ReadTextProfiles(text, "big.txt");
    ASSERT_EQ(profiles.size(), 2u);
    EXPECT_EQ(profiles[0].name, "first");
    EXPECT_EQ(profiles[1].name, "second");
    ASSERT_EQ(profiles[0].VertexCount(), static_cast<std::size_t>(vertices));
    ASSERT_EQ(profiles[1].VertexCount(), static_cast<std::size_t>(vertices));
    for (int k = 0; k < vertices; k += 9973) {
        EXPECT_EQ(profiles[0].vertices[k].x, k);
        EXPECT_EQ(profiles[1].vertices[k].x, -k);
    }
    text += "1 2 3 4\n5 5\n";
    try {
        ReadTextProfiles(text, "big.txt");
        FAIL();
    } catch (const DrawingFileError& e) {
        EXPECT_EQ(std::string(e.what()), "big.txt:" + std::to_string(2 * vertices + 3) +
                                             ": expected 'x y' or 'x y bulge', found '1 2 3 4'");
    }
}

// ---- DXF ----------------------------------------------------------------------------------------

class DxfFile {
  public:
    explicit DxfFile(const std::vector<std::string>& entities) {
        path_ = ::testing::TempDir() + "tgp_cli_" + std::to_string(counter_++) + ".dxf";
        std::ofstream out(path_);
        out << "0\nSECTION\n2\nENTITIES\n";
        for (const std::string& e : entities) out << e;
        out << "0\nENDSEC\n0\nEOF\n";
    }
    ~DxfFile() { std::remove(path_.c_str()); }
    const std::string& path() const { return path_; }

  private:
    static inline int counter_ = 0;
    std::string path_;
};

std::string LwPolyline(const std::string& handle, int flags,
                       const std::vector<std::vector<double>>& vertices) {
    std::ostringstream e;
    e << "0\nLWPOLYLINE\n5\n" << handle << "\n8\nL1\n90\n" << vertices.size() << "\n70\n" << flags << "\n";
    for (const auto& v : vertices) {
        e << "10\n" << v[0] << "\n20\n" << v[1] << "\n";
        if (v.size() > 2) e << "42\n" << v[2] << "\n";
    }
    return e.str();
}

TEST(DxfProfiles, PolylinesCirclesAndTheirNames) {
    const std::string oldStyle =
        "0\nPOLYLINE\n5\nA1\n8\nL2\n66\n1\n70\n1\n"
        "0\nVERTEX\n8\nL2\n10\n0\n20\n0\n42\n0."
        "5\n0\nVERTEX\n8\nL2\n10\n4\n20\n0\n0\nVERTEX\n8\nL2\n10\n4\n20\n3\n"
        "0\nSEQEND\n";
    const DxfFile file({LwPolyline("2F", 1, {{0, 0}, {10, 0, -1}, {10, 5}}), oldStyle,
                        "0\nCIRCLE\n5\n3C\n8\n0\n10\n5\n20\n6\n40\n2\n",
                        LwPolyline("40", 0, {{0, 0}, {1, 0}, {1, 1}}),
                        LwPolyline("41", 0, {{0, 0}, {1, 0}, {1, 1}, {0, 0}})});
    DxfSkips skipped;
    const auto p = ReadDxfProfiles(file.path(), {}, &skipped);
    ASSERT_EQ(p.size(), 4u);
    EXPECT_EQ(p[0].name, "LWPOLYLINE handle 2F on layer L1");
    EXPECT_EQ(p[0].bulges, (std::vector<double>{0, -1, 0}));
    EXPECT_TRUE(p[0].closed);
    EXPECT_EQ(p[1].name, "POLYLINE handle A1 on layer L2");
    EXPECT_EQ(p[1].Coordinates(), (std::vector<double>{0, 0, 4, 0, 4, 3}));
    EXPECT_EQ(p[1].bulges, (std::vector<double>{0.5, 0, 0}));
    EXPECT_EQ(p[2].name, "CIRCLE handle 3C on layer 0");
    EXPECT_EQ(p[2].Coordinates(), (std::vector<double>{3, 6, 7, 6}));
    EXPECT_EQ(p[2].bulges, (std::vector<double>{1, 1}));
    EXPECT_TRUE(p[3].closed);  // no closed flag, but back on the first vertex
    // No closed flag and the last vertex elsewhere: a line of the drawing, not an outline.
    EXPECT_EQ(SkipSummary(skipped), "1 open LWPOLYLINE on layer L1");
}

// A count in the file is a claim, not a fact: a polyline (or spline, or leader) may declare two
// billion items and hold four. Reading it takes memory for what is there.
TEST(DxfProfiles, DeclaredCountsAreNotTrusted) {
    for (const char* declared : {"2000000000", "99999999", "-5", "0", "2"}) {
        std::string polyline = LwPolyline("7A", 1, {{0, 0}, {10, 0}, {10, 5}, {0, 5}});
        polyline.replace(polyline.find("90\n4\n"), 5, std::string("90\n") + declared + "\n");
        const std::string spline = std::string("0\nSPLINE\n8\n0\n70\n8\n71\n3\n72\n") + declared + "\n73\n" +
                                   declared + "\n74\n" + declared + "\n40\n0\n40\n1\n10\n0\n20\n0\n30\n0\n";
        const std::string leader =
            std::string("0\nLEADER\n8\n0\n76\n") + declared + "\n10\n0\n20\n0\n30\n0\n";
        const DxfFile file({polyline, spline, leader});
        const auto p = ReadDxfProfiles(file.path());
        ASSERT_EQ(p.size(), 2u) << declared;
        EXPECT_EQ(p[0].Coordinates(), (std::vector<double>{0, 0, 10, 0, 10, 5, 0, 5})) << declared;
        EXPECT_EQ(p[1].problem, "has too few control points to draw") << "the spline holds one point";
    }
}

// The parser reads lines as C strings, so "LWPOLYLINE" followed by a NUL and more is a polyline to
// it: its count must be checked as well (the two billion would otherwise be allocated).
TEST(DxfProfiles, CountsAreCheckedWhateverFollowsANulInTheEntityType) {
    for (const std::string& tail : {std::string("\0\0.5"), std::string("\0"), std::string(" \0x")}) {
        std::string polyline = LwPolyline("7B", 1, {{0, 0}, {10, 0}, {10, 5}, {0, 5}});
        polyline.replace(polyline.find("90\n4\n"), 5, "90\n2000000000\n");
        polyline.replace(polyline.find("LWPOLYLINE"), 10, "LWPOLYLINE" + tail);
        const DxfFile file({polyline});
        const auto p = ReadDxfProfiles(file.path());
        ASSERT_EQ(p.size(), 1u);
        EXPECT_EQ(p[0].Coordinates(), (std::vector<double>{0, 0, 10, 0, 10, 5, 0, 5}));
    }
}

TEST(DxfProfiles, BlockDefinitionsAreNotProfiles) {
    const DxfFile file({});
    std::ofstream(file.path()) << "0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n2\nB1\n10\n0\n20\n0\n"
                               << LwPolyline("50", 1, {{0, 0}, {1, 0}, {1, 1}})
                               << "0\nENDBLK\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n"
                               << LwPolyline("51", 1, {{0, 0}, {2, 0}, {2, 2}}) << "0\nENDSEC\n0\nEOF\n";
    const auto p = ReadDxfProfiles(file.path());
    ASSERT_EQ(p.size(), 1u);
    EXPECT_EQ(p[0].name, "LWPOLYLINE handle 51 on layer L1");
}

// A process that chose a decimal comma for its C++ streams (as a host may): numbers in files
// still read with a point, and the process keeps its choice.
struct DecimalComma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
};

TEST(DxfProfiles, ReadPointDecimalsUnderACommaLocale) {
    const DxfFile file({LwPolyline("60", 1, {{0.5, 0.25}, {10.75, 0, -0.5}, {10, 5.5}})});
    const std::locale comma(std::locale::classic(), new DecimalComma);
    const std::locale previous = std::locale::global(comma);
    // Switch the C library too where the machine has such a locale (scripts/setup makes one).
    const bool cComma = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
    if (cComma) {
        EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    }
    const auto p = ReadDxfProfiles(file.path());
    const auto t = FromText("0.5 0.25\n10.75 0 -0.5\n");
    EXPECT_EQ(std::locale().name(), comma.name());
    std::locale::global(previous);
    std::setlocale(LC_ALL, "C");
    ASSERT_EQ(p.size(), 1u);
    EXPECT_EQ(p[0].Coordinates(), (std::vector<double>{0.5, 0.25, 10.75, 0, 10, 5.5}));
    EXPECT_EQ(p[0].bulges, (std::vector<double>{0, -0.5, 0}));
    EXPECT_EQ(t.at(0).Coordinates(), (std::vector<double>{0.5, 0.25, 10.75, 0}));
}

// Long lines are read whole: a long layer name stays, a number with thousands of digits is read.
TEST(DxfProfiles, LongLinesAreReadWhole) {
    std::string polyline = LwPolyline("7C", 1, {{0, 0}, {10, 0}, {10, 5}});
    polyline.replace(polyline.find("8\nL1\n"), 5, "8\n" + std::string(5000, 'L') + "\n");
    polyline.replace(polyline.find("20\n5\n"), 5, "20\n5." + std::string(3000, '0') + "\n");
    const auto p = ReadDxfProfiles(DxfFile({polyline}).path());
    ASSERT_EQ(p.size(), 1u);
    EXPECT_EQ(p[0].name, "LWPOLYLINE handle 7C on layer " + std::string(5000, 'L'));
    EXPECT_EQ(p[0].Coordinates(), (std::vector<double>{0, 0, 10, 0, 10, 5}));
}

TEST(DxfProfiles, MissingFileIsAFileError) {
    try {
        ReadDxfProfiles("/nonexistent/drawing.dxf");
        FAIL();
    } catch (const DrawingFileError& e) {
        EXPECT_STREQ(e.what(), "/nonexistent/drawing.dxf: cannot open the file");
    }
}

// The bytes of a file as the readers see them, mapped or read: exactly what was written (NUL bytes,
// CR LF and a last line without its newline included), nothing for an empty file, and an error
// naming the file for a folder or a missing file.
TEST(MappedFiles, GiveTheFileBytesOrAnErrorNamingTheFile) {
    const std::string path = ::testing::TempDir() + "tgp_mapped.txt";
    const std::vector<std::string> contents = {std::string("0 0\r\n10 0\r\n10 5"), std::string("a\0b\n", 4),
                                               ""};
    for (const std::string& bytes : contents) {
        std::ofstream(path, std::ios::binary) << bytes;
        EXPECT_EQ(MappedFile(path).Text(), bytes);
    }
    std::ofstream(path, std::ios::binary) << "0 0\r\n10 0\r\n10 5";
    const auto profiles = ReadTextProfiles(MappedFile(path).Text(), path);
    ASSERT_EQ(profiles.size(), 1u);
    EXPECT_EQ(profiles[0].Coordinates(), (std::vector<double>{0, 0, 10, 0, 10, 5}));
    std::remove(path.c_str());
    for (const std::string& bad : {std::string("/nonexistent/profile.txt"), ::testing::TempDir()}) {
        try {
            MappedFile file(bad);
            ADD_FAILURE() << bad;
        } catch (const DrawingFileError& e) {
            EXPECT_EQ(std::string(e.what()).rfind(bad + ": ", 0), 0u) << e.what();
        }
    }
}

}  // namespace
}  // namespace tgp::drawings
