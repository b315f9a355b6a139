#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "cli/SectionCommand.h"

namespace tgp::test {

// tgp-section run in-process: its exit code and what it printed.
struct CommandRun {
    int code;
    std::string out, err;
};

inline CommandRun RunCommand(std::vector<std::string> args, double progressAfterSeconds = -1) {
    args.insert(args.begin(), "tgp-section");
    std::vector<const char*> argv;
    for (const auto& a : args) argv.push_back(a.c_str());
    std::ostringstream out, err;
    const int code =
        cli::RunSectionCommand(static_cast<int>(argv.size()), argv.data(), out, err, progressAfterSeconds);
    return {code, out.str(), err.str()};
}

// A file of the test's temporary folder with this text.
inline std::string TempText(const std::string& name, const std::string& text) {
    const std::string path = ::testing::TempDir() + name;
    std::ofstream(path) << text;
    return path;
}

}  // namespace tgp::test
