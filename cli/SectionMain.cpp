// tgp-section: section properties of the closed profiles in DXF drawings and text files.
#include <unistd.h>

#include <iostream>

#include "cli/SectionCommand.h"

// A progress line where a person watches standard error, once the work takes about a second.
int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    return tgp::cli::RunSectionCommand(argc, argv, std::cout, std::cerr, isatty(STDERR_FILENO) ? 1.0 : -1.0);
}
