// tgp-section: section properties of the closed profiles in DXF drawings and text files.
#include <iostream>

#include "cli/SectionCommand.h"

int main(int argc, char** argv) { return tgp::cli::RunSectionCommand(argc, argv, std::cout, std::cerr); }
