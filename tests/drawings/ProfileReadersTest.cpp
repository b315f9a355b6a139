// The profile readers: text profiles, DXF entities, mapped files, and files that are not drawings or
// are binary.

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

#include "drawings/DxfProfileReader.h"
#include "drawings/DxfTags.h"
#include "drawings/MappedFile.h"
#include "drawings/TextProfileReader.h"
#include "support/DxfText.h"

namespace tgp::drawings {
namespace {

using test::Drawing;
using test::Polyline;
using test::TempText;
using Numbers = std::vector<double>;

std::vector<DrawnProfile> FromText(const std::string& text) {
    std::istringstream in(text);
    return ReadTextProfiles(in, "in.txt");
}

// The message of the DrawingFileError the action raises ("" when it raises none).
template <class F>
std::string FileError(F&& action) {
    try {
        action();
    } catch (const DrawingFileError& e) {
        return e.what();
    }
    return "";
}

std::vector<DrawnProfile> FromDxf(const std::string& entities, DxfSkips* skipped = nullptr) {
    return ReadDxfProfiles(TempText("profiles.dxf", Drawing(entities)), {}, skipped);
}

TEST(TextProfiles, SplitIntoNamedProfilesWithBulgesDefaultingToZero) {
    struct Case {
        const char* text;
        std::vector<std::string> names;
        std::vector<std::size_t> vertices;
    };
    const Case cases[] = {
        {"0 0\n1 0\n1 1\n\n5 5\n6 5\n6 6\n", {"profile 1 (line 1)", "profile 2 (line 5)"}, {3, 3}},
        {"profile A\n0 0\n1 0\n0 1\nend\nprofile  B b \n0 0 1\n2 0 1\n", {"A", "B b"}, {3, 2}},
        {"# header\n0 0 # first\n# still the same profile\n1 0\n\t1 1\r\n\n\n", {"profile 1 (line 2)"}, {3}},
        {"0 0\n1 0\n1 1\nprofile next\n0 0\n2 0\n2 2\n", {"profile 1 (line 1)", "next"}, {3, 3}},
        {"# nothing\n\nend\n", {}, {}},
    };
    for (const Case& c : cases) {
        const auto profiles = FromText(c.text);
        ASSERT_EQ(profiles.size(), c.names.size()) << c.text;
        for (std::size_t i = 0; i < profiles.size(); ++i) {
            EXPECT_EQ(profiles[i].name, c.names[i]);
            EXPECT_EQ(profiles[i].VertexCount(), c.vertices[i]);
            EXPECT_TRUE(profiles[i].closed);
        }
    }
    const auto p = FromText("-1.5e1 2.25 -0.5\n3 4,5\n").at(0);  // or a decimal comma
    EXPECT_EQ(p.Coordinates(), (Numbers{-15, 2.25, 3, 4.5}));
    EXPECT_EQ(p.bulges, (Numbers{-0.5, 0}));
    DrawnProfile added;  // as many vertices as both the pairs and the bulges give
    added.AddAll(Numbers{0, 0, 1, 0, 1, 1}, Numbers{0, 0});
    added.AddAll(Numbers{5, 5}, Numbers{0, 0, 0});
    EXPECT_EQ(added.Coordinates(), (Numbers{0, 0, 1, 0, 5, 5}));
}

TEST(TextProfiles, ErrorsNameTheSourceAndLine) {
    const std::pair<const char*, const char*> cases[] = {
        {"0 0\n1,000.5 2\n", "in.txt:2: '1,000.5' is not a number"},
        {"0 0\n1 2 3 4\n", "in.txt:2: expected 'x y' or 'x y bulge', found '1 2 3 4'"},
        {"\n\n7\n", "in.txt:3: expected 'x y' or 'x y bulge', found '7'"},
        {"0 0\n1 2mm\n", "in.txt:2: '2mm' is not a number"},
        {"\x01\xff\x7f",
         "in.txt:1: expected 'x y' or 'x y bulge', found '?"
         "?"
         "?'"},  // no trigraph
        {"0 0 0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18",
         "in.txt:1: expected 'x y' or 'x y bulge', found '0 0 0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 1...'"},
    };
    for (const auto& [text, message] : cases) EXPECT_EQ(FileError([&] { FromText(text); }), message);
}

// The text read in any number of pieces gives what one piece gives: the same profiles, names,
// groups and numbers, or the same first error with its line. Piece counts up to one a line put a
// split between every pair of lines.
std::string ReadOutcome(const std::string& text, int pieces) {
    std::ostringstream out;
    const std::string error = FileError([&] {
        for (const DrawnProfile& p : ReadTextProfiles(text, "in.txt", pieces)) {
            out << p.name << " [" << p.group << "]";
            for (std::size_t k = 0; k < p.VertexCount(); ++k)
                out << " " << p.vertices[k].x << "," << p.vertices[k].y << "," << p.bulges[k];
            out << "\n";
        }
    });
    return error.empty() ? out.str() : "error " + error;
}

TEST(TextProfiles, ReadInPiecesAsInOne) {
    const std::string texts[] = {
        "# header\n0 0 # first\n# same\n1 0\n\t1 1\r\n\n\nprofile P\n0 0 0.5\n2 0\nloop\n1 1\n1.5 1\n1 "
        "1.5\nend\n",
        "profile A\n0 0\n1 0\n0 1\nloop\nloop\n3 3\n4 3\n4 4\nprofile\n9 9\n8 9\n8 8\n",
        "0 0\n1 0\n1 1\nprofile B\n0 0\n2 0\n2 2\n\n\n\n7 7\n8 8\n9 7",
        "0 0\n1 0\n1 1\n2 2\n3 3\n4 4\n5 5\n6 6\n7 x\n8 8\n9 9\n",
        "0 0\n1 0\n1 1\nend\nloop\n2 2\n",
        "profile Q\n0 0\n1 0\n1 1\n0 1 2 3\n1 1\n",
        "",
    };
    for (const std::string& text : texts) {
        const std::string whole = ReadOutcome(text, 1);
        const int lines = static_cast<int>(std::count(text.begin(), text.end(), '\n')) + 1;
        for (int pieces = 2; pieces <= lines + 2; ++pieces)
            EXPECT_EQ(ReadOutcome(text, pieces), whole) << pieces << " pieces of:\n" << text;
    }
    // Small profiles read in pieces hold what they need, not room for the vertices of the profiles
    // after them (which made 10^5 tiny profiles take gigabytes).
    std::string small;
    for (int k = 0; k < 1000; ++k) small += "profile\n1 1\n2 2\n3 3 0.5\n";
    const auto profiles = ReadTextProfiles(small, "in.txt", 4);
    ASSERT_EQ(profiles.size(), 1000u);
    for (const DrawnProfile& p : profiles)
        ASSERT_LE(std::max(p.bulges.capacity(), p.vertices.capacity()), 8u);
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
    EXPECT_EQ(profiles[1].name, "second");
    ASSERT_EQ(profiles[0].VertexCount(), static_cast<std::size_t>(vertices));
    ASSERT_EQ(profiles[1].VertexCount(), static_cast<std::size_t>(vertices));
    for (int k = 0; k < vertices; k += 9973) {
        EXPECT_EQ(profiles[0].vertices[k].x, k);
        EXPECT_EQ(profiles[1].vertices[k].x, -k);
    }
    text += "1 2 3 4\n5 5\n";
    EXPECT_EQ(
        FileError([&] { ReadTextProfiles(text, "big.txt"); }),
        "big.txt:" + std::to_string(2 * vertices + 3) + ": expected 'x y' or 'x y bulge', found '1 2 3 4'");
}

TEST(DxfProfiles, PolylinesCirclesAndTheirNames) {
    const std::string oldStyle =
        "0\nPOLYLINE\n5\nA1\n8\nL2\n66\n1\n70\n1\n0\nVERTEX\n8\nL2\n10\n0\n20\n0\n42\n0.5\n"
        "0\nVERTEX\n8\nL2\n10\n4\n20\n0\n0\nVERTEX\n8\nL2\n10\n4\n20\n3\n0\nSEQEND\n";
    DxfSkips skipped;
    const auto p = FromDxf(Polyline("2F", "L1", {{0, 0}, {10, 0, -1}, {10, 5}}) + oldStyle +
                               "0\nCIRCLE\n5\n3C\n8\n0\n10\n5\n20\n6\n40\n2\n" +
                               Polyline("40", "L1", {{0, 0}, {1, 0}, {1, 1}}, "", 0) +
                               Polyline("41", "L1", {{0, 0}, {1, 0}, {1, 1}, {0, 0}}, "", 0),
                           &skipped);
    ASSERT_EQ(p.size(), 4u);
    EXPECT_EQ(p[0].name, "LWPOLYLINE handle 2F on layer L1");
    EXPECT_EQ(p[0].bulges, (Numbers{0, -1, 0}));
    EXPECT_EQ(p[1].name, "POLYLINE handle A1 on layer L2");
    EXPECT_EQ(p[1].Coordinates(), (Numbers{0, 0, 4, 0, 4, 3}));
    EXPECT_EQ(p[1].bulges, (Numbers{0.5, 0, 0}));
    EXPECT_EQ(p[2].name, "CIRCLE handle 3C on layer 0");
    EXPECT_EQ(p[2].Coordinates(), (Numbers{3, 6, 7, 6}));
    EXPECT_EQ(p[2].bulges, (Numbers{1, 1}));
    EXPECT_TRUE(p[3].closed);  // no closed flag, but back on the first vertex
    // No closed flag and the last vertex elsewhere: a line of the drawing, not an outline.
    EXPECT_EQ(SkipSummary(skipped), "1 open LWPOLYLINE on layer L1");
    // Block definitions are not profiles.
    const std::string drawing = Drawing(
        Polyline("51", "L1", {{0, 0}, {2, 0}, {2, 2}}),
        "0\nBLOCK\n2\nB1\n10\n0\n20\n0\n" + Polyline("50", "L1", {{0, 0}, {1, 0}, {1, 1}}) + "0\nENDBLK\n");
    const auto withBlock = ReadDxfProfiles(TempText("block.dxf", drawing));
    ASSERT_EQ(withBlock.size(), 1u);
    EXPECT_EQ(withBlock[0].name, "LWPOLYLINE handle 51 on layer L1");
}

// A count in the file is a claim, not a fact: a polyline (or spline, or leader) may declare two
// billion items and hold four; the parser reads lines as C strings, so "LWPOLYLINE" followed by a NUL
// and more is a polyline to it as well. Reading either takes memory for what is there.
TEST(DxfProfiles, DeclaredCountsAreNotTrusted) {
    const std::string rectangle = Polyline("7A", "L1", {{0, 0}, {10, 0}, {10, 5}, {0, 5}});
    for (const char* declared : {"2000000000", "-5", "0", "2"}) {
        std::string polyline = rectangle;
        polyline.replace(polyline.find("90\n4\n"), 5, std::string("90\n") + declared + "\n");
        const std::string spline = std::string("0\nSPLINE\n8\n0\n70\n8\n71\n3\n72\n") + declared + "\n73\n" +
                                   declared + "\n74\n" + declared + "\n40\n0\n40\n1\n10\n0\n20\n0\n30\n0\n";
        const std::string leader =
            std::string("0\nLEADER\n8\n0\n76\n") + declared + "\n10\n0\n20\n0\n30\n0\n";
        const auto p = FromDxf(polyline + spline + leader);
        ASSERT_EQ(p.size(), 2u) << declared;
        EXPECT_EQ(p[0].Coordinates(), (Numbers{0, 0, 10, 0, 10, 5, 0, 5})) << declared;
        EXPECT_EQ(p[1].problem, "has too few control points to draw") << "the spline holds one point";
    }
    for (const std::string& tail : {std::string("\0\0.5", 4), std::string(" \0x", 3)}) {
        std::string polyline = rectangle;
        polyline.replace(polyline.find("90\n4\n"), 5, "90\n2000000000\n");
        polyline.replace(polyline.find("LWPOLYLINE"), 10, "LWPOLYLINE" + tail);
        const auto p = FromDxf(polyline);
        ASSERT_EQ(p.size(), 1u);
        EXPECT_EQ(p[0].Coordinates(), (Numbers{0, 0, 10, 0, 10, 5, 0, 5}));
    }
}

// A process that chose a decimal comma for its C++ streams (as a host may): numbers in files
// still read with a point, and the process keeps its choice.
struct DecimalComma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
};

TEST(DxfProfiles, ReadPointDecimalsUnderACommaLocaleAndLongLinesWhole) {
    const std::string path =
        TempText("comma.dxf", Drawing(Polyline("60", "L1", {{0.5, 0.25}, {10.75, 0, -0.5}})));
    const std::locale comma(std::locale::classic(), new DecimalComma);
    const std::locale previous = std::locale::global(comma);
    // Switch the C library too where the machine has such a locale (scripts/setup makes one).
    if (std::setlocale(LC_ALL, "de_DE.UTF-8")) {
        EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    }
    const auto p = ReadDxfProfiles(path);
    const auto t = FromText("0.5 0.25\n10.75 0 -0.5\n");
    EXPECT_EQ(std::locale().name(), comma.name());
    std::locale::global(previous);
    std::setlocale(LC_ALL, "C");
    ASSERT_EQ(p.size(), 1u);
    EXPECT_EQ(p[0].Coordinates(), (Numbers{0.5, 0.25, 10.75, 0}));
    EXPECT_EQ(p[0].bulges, (Numbers{0, -0.5}));
    EXPECT_EQ(t.at(0).bulges, (Numbers{0, -0.5}));
    // Long lines are read whole: a long layer name stays, a number with thousands of digits is read.
    std::string polyline = Polyline("7C", "L1", {{0, 0}, {10, 0}, {10, 5}});
    polyline.replace(polyline.find("8\nL1\n"), 5, "8\n" + std::string(5000, 'L') + "\n");
    polyline.replace(polyline.find("20\n5\n"), 5, "20\n5." + std::string(3000, '0') + "\n");
    const auto longLines = FromDxf(polyline);
    ASSERT_EQ(longLines.size(), 1u);
    EXPECT_EQ(longLines[0].name, "LWPOLYLINE handle 7C on layer " + std::string(5000, 'L'));
    EXPECT_EQ(longLines[0].Coordinates(), (Numbers{0, 0, 10, 0, 10, 5}));
}

// The bytes of a file as the readers see them, mapped or read: exactly what was written (NUL bytes,
// CR LF and a last line without its newline included), nothing for an empty file, and an error
// naming the file for a folder or a missing file.
TEST(MappedFiles, GiveTheFileBytesOrAnErrorNamingTheFile) {
    for (const std::string& bytes :
         {std::string("0 0\r\n10 0\r\n10 5"), std::string("a\0b\n", 4), std::string()})
        EXPECT_EQ(MappedFile(TempText("mapped.txt", bytes)).Text(), bytes);
    const std::string path = TempText("mapped.txt", "0 0\r\n10 0\r\n10 5");
    EXPECT_EQ(ReadTextProfiles(MappedFile(path).Text(), path).at(0).Coordinates(),
              (Numbers{0, 0, 10, 0, 10, 5}));
    for (const std::string& bad : {std::string("/nonexistent/profile.txt"), ::testing::TempDir()})
        EXPECT_EQ(FileError([&] { MappedFile file(bad); }).rfind(bad + ": ", 0), 0u) << bad;
    // A file the system gives no size for (a pipe, a file of /proc) is read, not mapped.
    if (std::ifstream("/proc/self/status")) {
        EXPECT_EQ(MappedFile("/proc/self/status").Text().rfind("Name:", 0), 0u);
    }
    EXPECT_EQ(FileError([] { ReadDxfProfiles("/nonexistent/drawing.dxf"); }),
              "/nonexistent/drawing.dxf: cannot open the file");
}

// Whole drawing files: binary DXF as well as ASCII, and files that are not drawings or are cut short.
const std::string kDrawing =
    "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1015\n9\n$INSUNITS\n70\n4\n0\nENDSEC\n"
    "0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n2\nRING\n70\n0\n10\n0\n20\n0\n30\n0\n"
    "0\nCIRCLE\n5\n2A\n8\n0\n10\n0\n20\n0\n30\n0\n40\n5\n0\nENDBLK\n0\nENDSEC\n"
    "0\nSECTION\n2\nENTITIES\n"
    "0\nLWPOLYLINE\n5\n2F\n8\nPLATE\n90\n4\n70\n1\n10\n0\n20\n0\n10\n100\n20\n0\n42\n0."
    "25\n10\n100\n20\n50\n10\n0\n20\n50\n"
    "0\nINSERT\n5\n30\n8\nRINGS\n2\nRING\n10\n300\n20\n0\n30\n0\n41\n2\n42\n2\n43\n1\n50\n0\n"
    "0\nTEXT\n5\n31\n8\nNOTES\n10\n0\n20\n0\n40\n2.5\n1\nlabel\n"
    "0\nLWPOLYLINE\n5\n32\n8\nDIM\n90\n2\n70\n0\n10\n0\n20\n-10\n10\n100\n20\n-10\n"
    "0\nENDSEC\n0\nEOF\n";

// The same groups as a binary DXF: one-byte group codes (release 12) or two-byte ones.
std::string ToBinary(const std::string& ascii, bool oneByteCodes) {
    std::string out(kBinaryDxfSentinel);
    std::istringstream in(ascii);
    auto put = [&out](const void* bytes, std::size_t n) { out.append(static_cast<const char*>(bytes), n); };
    for (std::string code, value; std::getline(in, code) && std::getline(in, value);) {
        const int c = std::stoi(code);
        if (oneByteCodes && c < 255) {
            out += static_cast<char>(c);
        } else {
            if (oneByteCodes) out += static_cast<char>(255);
            const std::int16_t wide = static_cast<std::int16_t>(c);
            put(&wide, 2);
        }
        auto in = [c](int a, int b) { return c >= a && c <= b; };
        if (in(10, 59) || in(110, 149) || in(210, 239)) {
            const double d = std::stod(value);
            put(&d, 8);
        } else if (in(60, 79) || in(170, 179) || in(270, 289)) {
            const std::int16_t i = static_cast<std::int16_t>(std::stoi(value));
            put(&i, 2);
        } else if (in(90, 99)) {
            const std::int32_t i = std::stoi(value);
            put(&i, 4);
        } else {
            out += value;
            out += '\0';
        }
    }
    return out;
}

TEST(DrawingFiles, BinaryDrawingsReadAsTheirAsciiText) {
    DxfSkips asciiSkips;
    const auto ascii = ReadDxfText(kDrawing, "a.dxf", {}, &asciiSkips);
    ASSERT_EQ(ascii.size(), 2u);
    EXPECT_EQ(SkipSummary(asciiSkips), "1 TEXT, 1 open LWPOLYLINE on layer DIM");
    for (bool oneByte : {false, true}) {
        DxfSkips skips;
        const auto binary = ReadDxfText(ToBinary(kDrawing, oneByte), "b.dxf", {}, &skips);
        ASSERT_EQ(binary.size(), ascii.size()) << oneByte;
        for (std::size_t i = 0; i < ascii.size(); ++i) {
            EXPECT_EQ(binary[i].name, ascii[i].name);
            EXPECT_EQ(binary[i].vertices, ascii[i].vertices);
            EXPECT_EQ(binary[i].bulges, ascii[i].bulges);
        }
        EXPECT_EQ(SkipSummary(skips), SkipSummary(asciiSkips));
    }
}

TEST(DrawingFiles, FilesThatAreNotDrawingsOrAreCutShortSaySo) {
    const std::string binary = ToBinary(kDrawing, false);
    const std::size_t firstSequenceEnd = kDrawing.find("0\nTEXT");
    struct Case {
        std::string contents, message;
    };
    const Case cases[] = {
        {"", "f.dxf: the file is empty"},
        {"hello world\nthis is not a drawing\n",
         "f.dxf: not a DXF file (its first line, 'hello world', is not a group code)"},
        {kDrawing.substr(0, firstSequenceEnd),
         "f.dxf: section ENTITIES is not closed: the file ends without ENDSEC and EOF (it is cut short?)"},
        {kDrawing.substr(0, kDrawing.size() - 7), "f.dxf: the file ends without EOF (it is cut short?)"},
        {"0\nSECTION\n2\nENTITIES\n0\n",
         "f.dxf:5: the file ends after group code 0, without its value (the file is cut short?)"},
        {"0\nSECTION\n2\nENTITIES\n0\nCIRCLE\n10\nabc\n", "f.dxf:8: 'abc' is not a number (group 10)"},
        {"0\nSECTION\n2\nENTITIES\n0\nSECTION\n2\nBLOCKS\n",
         "f.dxf:5: a section starts inside section ENTITIES (its ENDSEC is missing)"},
        {binary.substr(0, binary.size() / 2 + 3), ""},  // cut inside a group or between groups
        {std::string(kBinaryDxfSentinel), "f.dxf: the file ends without EOF (it is cut short?)"},
    };
    for (const Case& c : cases) {
        try {
            ReadDxfText(c.contents, "f.dxf");
            ADD_FAILURE() << "accepted: " << c.message;
        } catch (const DrawingFileError& e) {
            if (c.message.empty()) {
                const std::string what = e.what();
                EXPECT_TRUE(what.find("cut short?") != std::string::npos) << what;
            } else {
                EXPECT_EQ(std::string(e.what()), c.message);
            }
        }
    }
}

}  // namespace
}  // namespace tgp::drawings
