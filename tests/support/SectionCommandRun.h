#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "cli/SectionCommand.h"
#include "support/DxfText.h"

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

}  // namespace tgp::test
