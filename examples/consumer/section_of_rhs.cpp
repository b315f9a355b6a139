// An RHS 200 x 100 x 8 (sharp corners) as two loops of a collection: the outer boundary and its
// hole. Prints the area in cm² and the second moments in cm4.
#include <iostream>

#include "core/Error.h"
#include "profiles/Loop7s.h"

int main() {
    try {
        auto outer = tgp::Loop7::Create();
        outer->InitFromCoordinates(std::vector<double>{0, 0, 200, 0, 200, 100, 0, 100},
                                   std::vector<double>(4, 0.0));
        auto inner = tgp::Loop7::Create();
        inner->InitFromCoordinates(std::vector<double>{8, 8, 192, 8, 192, 92, 8, 92},
                                   std::vector<double>(4, 0.0));
        auto section = tgp::Loop7s::Create();
        section->Add(outer);
        section->Add(inner);
        std::cout << "area " << section->Area() / 100 << " cm2, Ix " << section->MomentOfInertiaX() / 1e4
                  << " cm4, Iy " << section->MomentOfInertiaY() / 1e4 << " cm4\n";
    } catch (const tgp::Error& e) {
        std::cerr << e.number() << ": " << e.description() << "\n";
        return 1;
    }
}
