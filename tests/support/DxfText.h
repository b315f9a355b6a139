#pragma once

// Drawings the tests write.

#include <string>

namespace tgp::test {

// A DXF drawing of model-space entities, with block definitions and header variables when given.
inline std::string Drawing(const std::string& entities, const std::string& blocks = "",
                           const std::string& header = "") {
    std::string d;
    if (!header.empty()) d += "0\nSECTION\n2\nHEADER\n" + header + "0\nENDSEC\n";
    if (!blocks.empty()) d += "0\nSECTION\n2\nBLOCKS\n" + blocks + "0\nENDSEC\n";
    return d + "0\nSECTION\n2\nENTITIES\n" + entities + "0\nENDSEC\n0\nEOF\n";
}

}  // namespace tgp::test
