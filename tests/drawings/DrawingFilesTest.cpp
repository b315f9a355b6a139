// Whole drawing files: binary DXF as well as ASCII, and files that are not drawings or are cut short.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "drawings/DxfProfileReader.h"
#include "drawings/DxfTags.h"

namespace tgp::drawings {
namespace {

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
