// The sections of a drawing (a DXF file named on the command line): each section's name, area in cm²
// and second moments in cm4, and what the drawing held besides.
#include <iostream>

#include "core/Error.h"
#include "drawings/DrawingSections.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: drawing_sections DRAWING.dxf\n";
        return 2;
    }
    try {
        const tgp::drawings::DrawingSections read = tgp::drawings::ReadDrawingSections(argv[1]);
        for (const auto& section : read.sections) {
            std::cout << section.name << ": area " << section.loops->Area() / 100 << " cm2, Ix "
                      << section.loops->MomentOfInertiaX() / 1e4 << " cm4, Iy "
                      << section.loops->MomentOfInertiaY() / 1e4 << " cm4\n";
        }
        for (const auto& outline : read.rejected) std::cout << outline.name << " " << outline.reason << "\n";
        if (!read.skipped.empty()) std::cout << "skipped " << read.SkipSummary() << "\n";
    } catch (const tgp::Error& e) {
        std::cerr << e.number() << ": " << e.description() << "\n";
        return 1;
    }
}
