#pragma once

// Drawings and other files the tests write.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "units/NumberText.h"

namespace tgp::test {

// A number as a drawing holds it: the shortest text that reads back to the same double.
inline std::string Number(double v) {
    return FormatNumber(v);
}

// A file of the test's temporary folder with this text, written as it is (binary).
inline std::string TempText(const std::string& name, const std::string& text) {
    const std::string path = ::testing::TempDir() + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

// A DXF drawing of model-space entities, with block definitions and header variables when given.
inline std::string Drawing(const std::string& entities, const std::string& blocks = "",
                           const std::string& header = "") {
    std::string d;
    if (!header.empty()) d += "0\nSECTION\n2\nHEADER\n" + header + "0\nENDSEC\n";
    if (!blocks.empty()) d += "0\nSECTION\n2\nBLOCKS\n" + blocks + "0\nENDSEC\n";
    return d + "0\nSECTION\n2\nENTITIES\n" + entities + "0\nENDSEC\n0\nEOF\n";
}

// An LWPOLYLINE, closed unless flags say otherwise; a vertex is x, y and an optional bulge; extra
// groups go before the vertices.
inline std::string Polyline(const std::string& handle, const std::string& layer,
                            const std::vector<std::vector<double>>& vertices, const std::string& extra = "",
                            int flags = 1) {
    std::ostringstream e;
    e.precision(17);
    e << "0\nLWPOLYLINE\n5\n"
      << handle << "\n8\n"
      << layer << "\n"
      << extra << "90\n"
      << vertices.size() << "\n70\n"
      << flags << "\n";
    for (const auto& v : vertices) {
        e << "10\n" << v[0] << "\n20\n" << v[1] << "\n";
        if (v.size() > 2) e << "42\n" << v[2] << "\n";
    }
    return e.str();
}

}  // namespace tgp::test
