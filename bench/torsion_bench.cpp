// Saint-Venant torsion on the exact boundary: the convergence of J with the boundary nodes for a
// rectangle (against Saint-Venant's series), a channel with re-entrant corners and the rolled IPE 200
// of examples/ (against its own finest value), a 5,000-vertex polygon inscribed in an ellipse
// (against the ellipse's closed form, which it approaches as 1/N²), and the time and peak memory
// to reach 1E-6; then the time the shear of bending adds on the same boundary.
//
//   tgp_torsion_bench [examples folder]
#include <sys/resource.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <string>

#include "drawings/DrawingSections.h"
#include "profiles/FlexuralShear.h"
#include "profiles/SaintVenantTorsion.h"

namespace {

using tgp::Loop7s;
using tgp::SaintVenantTorsion;

std::shared_ptr<Loop7s> Polygon(std::vector<double> xy) {
    auto loop = tgp::Loop7::Create();
    loop->InitFromCoordinates(xy, std::vector<double>(xy.size() / 2, 0.0));
    auto section = Loop7s::Create();
    section->Add(loop);
    return section;
}

double RectangleJ(double a, double b) {  // Timoshenko and Goodier, section 109
    double sum = 0;
    for (int n = 1; n < 400; n += 2) sum += std::tanh(n * std::numbers::pi * a / (2 * b)) / std::pow(n, 5);
    return a * b * b * b * (1.0 / 3 - 64 / std::pow(std::numbers::pi, 5) * (b / a) * sum);
}

double PeakMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

void Report(const char* name, Loop7s& section, double reference, const char* against) {
    const auto start = std::chrono::steady_clock::now();
    const SaintVenantTorsion torsion(section, 1e-6);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const double exact = reference > 0 ? reference : torsion.TorsionConstant();
    std::printf("%s (error against %s)\n", name, against);
    for (const auto& step : torsion.History())
        std::printf("| %zu nodes | J %.10g | error %.1e |\n", step.nodes, step.j,
                    std::fabs(step.j / exact - 1));
    const auto shearStart = std::chrono::steady_clock::now();
    const tgp::FlexuralShear shear(torsion);
    const double shearSeconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - shearStart).count();
    std::printf("J %.10g, estimate %.1e, %.3f s to 1E-6, peak memory %.0f MB\n", torsion.TorsionConstant(),
                torsion.ErrorEstimate(), seconds, PeakMegabytes());
    std::printf("shear of bending (nu 0.3): %.3f s more; shear areas %.8g along x, %.8g along y\n\n",
                shearSeconds, shear.ShearAreaX(), shear.ShearAreaY());
}

}  // namespace

int main(int argc, char** argv) {
    const std::string examples = argc > 1 ? argv[1] : TGP_EXAMPLES_DIR;
    Report("rectangle 100 x 50", *Polygon({0, 0, 100, 0, 100, 50, 0, 50}), RectangleJ(100, 50), "the series");
    const double t = 6, h = 100, b = 40;
    Report("channel 106 x 43, walls 6",
           *Polygon({0, 0, b + t / 2, 0, b + t / 2, t, t, t, t, h, b + t / 2, h, b + t / 2, h + t, 0, h + t}),
           0, "its last value");
    const auto ipe = tgp::drawings::ReadDrawingSections(examples + "/ipe200.txt");
    Report("IPE 200 with root fillets", *ipe.sections.at(0).loops, 0, "its last value");
    // Timoshenko and Goodier, section 106: J = pi a³ b³ / (a² + b²).
    const double a = 100, e = 50, pi = std::numbers::pi;
    std::vector<double> ellipse;
    for (int i = 0; i < 5000; ++i) {
        ellipse.push_back(a * std::cos(2 * pi * i / 5000));
        ellipse.push_back(e * std::sin(2 * pi * i / 5000));
    }
    Report("5,000-vertex polygon in an ellipse 200 x 100", *Polygon(ellipse),
           pi * std::pow(a * e, 3) / (a * a + e * e), "the ellipse");
}
