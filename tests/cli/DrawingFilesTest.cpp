// Whole drawing files: binary DXF as well as ASCII, files that are not drawings or are cut short, and
// what the command says about each.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "cli/DxfProfileReader.h"
#include "cli/DxfTags.h"
#include "cli/SectionCommand.h"

namespace tgp::cli {
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

std::string FileWith(const std::string& name, const std::string& contents) {
    const std::string path = ::testing::TempDir() + name;
    std::ofstream(path, std::ios::binary) << contents;
    return path;
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
            EXPECT_EQ(binary[i].xy, ascii[i].xy);
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
        } catch (const ProfileFileError& e) {
            if (c.message.empty()) {
                const std::string what = e.what();
                EXPECT_TRUE(what.find("cut short?") != std::string::npos) << what;
            } else {
                EXPECT_EQ(std::string(e.what()), c.message);
            }
        }
    }
}

TEST(DrawingFiles, TheCommandReportsEachFileAndGoesOn) {
    const std::string good = FileWith("good.dxf", kDrawing);
    const std::string binary = FileWith("binary.dxf", ToBinary(kDrawing, false));
    const std::string text = FileWith("notes.dxf", "These are my notes.\n");
    const std::string cut = FileWith("cut.dxf", kDrawing.substr(0, kDrawing.find("0\nINSERT")));
    std::vector<std::string> args = {"tgp-section", good, binary, text, cut};
    auto run = [](std::vector<std::string> a, std::string& out, std::string& err) {
        std::vector<const char*> argv;
        for (const auto& s : a) argv.push_back(s.c_str());
        std::ostringstream o, e;
        const int code = RunSectionCommand(static_cast<int>(argv.size()), argv.data(), o, e);
        out = o.str();
        err = e.str();
        return code;
    };
    std::string out, err;
    EXPECT_EQ(run(args, out, err), 1) << "a file that cannot be read fails the run";
    EXPECT_NE(out.find(good + ": LWPOLYLINE handle 2F on layer PLATE"), std::string::npos) << out;
    EXPECT_NE(out.find(binary + ": CIRCLE handle 2A on layer RINGS in block RING (INSERT handle 30)"),
              std::string::npos)
        << out;
    EXPECT_NE(
        err.find(text + ": not a DXF file (its first line, 'These are my notes.', is not a group code)"),
        std::string::npos)
        << err;
    EXPECT_NE(err.find(cut + ": section ENTITIES is not closed"), std::string::npos) << err;
    EXPECT_NE(err.find("tgp-section: " + good + ": skipped 1 TEXT, 1 open LWPOLYLINE on layer DIM\n"),
              std::string::npos)
        << err;
    args.push_back("--quiet");
    run(args, out, err);
    EXPECT_EQ(err.find("skipped"), std::string::npos) << err;
    EXPECT_EQ(run({"tgp-section", good}, out, err), 0) << "skipping is not a failure";
}

}  // namespace
}  // namespace tgp::cli
