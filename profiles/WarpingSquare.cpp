#include "profiles/WarpingSquare.h"

#include <array>
#include <cmath>
#include <complex>
#include <numbers>

#include "core/ParallelFor.h"
#include "geometry/LaplaceFmm.h"
#include "profiles/NearPanels.h"

namespace tgp {

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;
// What a source point x (normal nx, warping w) gives U(y) and dU/dn_y below, as A + B ln r each: the
// logarithm apart, so that a node's own panel can take it by product integration.
struct SquareKernels {
    double uA, uB, dA, dB;
};

SquareKernels SquareKernelsAt(const Point3& x, const Point3& nx, double w, const Point3& y,
                              const Point3& ny) {
    const double c = 1 / (4 * kTwoPi);  // 1 / (8 pi)
    const double dx = x.x - y.x, dy = x.y - y.y, r2 = dx * dx + dy * dy;
    const double dnx = dx * nx.x + dy * nx.y, dny = dx * ny.x + dy * ny.y, nn = nx.x * ny.x + nx.y * ny.y;
    const double q = WarpingFlux(x, nx);
    // G2 = c r² - c r² ln r, dG2/dn_x = c dnx - 2c dnx ln r, dG2/dn_y = -c dny + 2c dny ln r,
    // d²G2/dn_x dn_y = c (2 dnx dny / r² - nn) + 2c nn ln r (dnx dny / r² -> 0 as r -> 0 on a line or arc).
    const double cross = r2 == 0 ? 0 : 2 * dnx * dny / r2;
    return {w * c * dnx - c * r2 * q, -2 * c * w * dnx + c * r2 * q, w * c * (cross - nn) + c * dny * q,
            2 * c * w * nn - 2 * c * dny * q};
}

// ∫ w² dA of the harmonic w from its boundary values alone. With the representation
// w(x) = ∮ (G q - w dG/dn_y) ds_y and G2 = -r² (ln r - 1) / (8 pi), whose Laplacian is G:
//   ∫ w² dA = ∮ (q U - w dU/dn) ds,   U(y) = ∫ G(x, y) w(x) dA_x = ∮ (w dG2/dn_x - G2 q) ds_x,
// a double boundary integral whose kernels are at most logarithmic: a node's own panel by product
// integration, near panels adaptively against the panel's interpolant of w, the others by their
// nodes.
struct Field {
    double u = 0, dudn = 0;  // U and dU/dn at a node
};

// What a node j gives node i's field by the nodes' rule (nothing from itself).
void AddNode(const BoundaryPanels& boundary, const std::vector<double>& warping, std::size_t i, std::size_t j,
             double sign, Field& field) {
    const BoundaryNode& target = boundary.Nodes()[i];
    const BoundaryNode& source = boundary.Nodes()[j];
    const double dx = source.p.x - target.p.x, dy = source.p.y - target.p.y, r2 = dx * dx + dy * dy;
    if (r2 == 0) return;
    const SquareKernels k = SquareKernelsAt(source.p, source.normal, warping[j], target.p, target.normal);
    const double lnr = std::log(r2) / 2;
    field.u += sign * (k.uA + k.uB * lnr) * source.weight;
    field.dudn += sign * (k.dA + k.dB * lnr) * source.weight;
}

// What a panel near node i gives its field: its own by product integration, another adaptively.
void AddNearPanel(const BoundaryPanels& boundary, const std::vector<double>& warping, std::size_t i,
                  std::size_t p, Field& field) {
    const auto& nodes = boundary.Nodes();
    const std::size_t order = BoundaryPanels::kOrder, first = p * order;
    const BoundaryNode& target = nodes[i];
    if (p == target.panel) {
        const auto logarithm = boundary.OwnLogarithmWeights(i);
        for (std::size_t m = 0; m < order; ++m) {
            const BoundaryNode& source = nodes[first + m];
            const SquareKernels k =
                SquareKernelsAt(source.p, source.normal, warping[first + m], target.p, target.normal);
            field.u += k.uA * source.weight + k.uB * logarithm[m];
            field.dudn += k.dA * source.weight + k.dB * logarithm[m];
        }
        return;
    }
    std::vector<double> basis;
    IntegrateNear(boundary.Panels()[p], target.p,
                  [&](const Point3& x, const Point3& nx, double t, double ds) {
                      const double dx = x.x - target.p.x, dy = x.y - target.p.y, r2 = dx * dx + dy * dy;
                      if (r2 == 0) return;
                      PanelBasisAt(t, basis);
                      double w = 0;
                      for (std::size_t m = 0; m < order; ++m) w += basis[m] * warping[first + m];
                      const SquareKernels k = SquareKernelsAt(x, nx, w, target.p, target.normal);
                      const double lnr = std::log(r2) / 2;
                      field.u += (k.uA + k.uB * lnr) * ds;
                      field.dudn += (k.dA + k.dB * lnr) * ds;
                  });
}

// Node i's field pair by pair.
Field DirectField(const BoundaryPanels& boundary, const std::vector<double>& warping, std::size_t i) {
    const auto& panels = boundary.Panels();
    const std::size_t order = BoundaryPanels::kOrder;
    Field field;
    for (std::size_t p = 0; p < panels.size(); ++p) {
        if (p == boundary.Nodes()[i].panel || panels[p].Near(boundary.Nodes()[i].p)) {
            AddNearPanel(boundary, warping, i, p, field);
            continue;
        }
        for (std::size_t j = p * order; j < (p + 1) * order; ++j) AddNode(boundary, warping, i, j, 1, field);
    }
    return field;
}

// Every node's field by the nodes' rule through logarithmic sums, with α = w ds / 8π, β = q ds / 8π:
//   U(Z) = Σ α (ζ - Z)·n (1 - 2 ln r) + β r² (ln r - 1),   r = |ζ - Z|,
// r² = |Z|² - 2 Z·ζ + |ζ|² and (ζ - Z)·n split it into polynomials of Z times the sums
// L[γ](Z) = Σ γ ln r of seven charges γ (α ζ·n, α n, β, β ζ, β |ζ|²), each with its gradient, and
// plain sums. Near panels then take their quadrature in place of their nodes'.
std::vector<Field> FastFields(const BoundaryPanels& boundary, const std::vector<double>& warping) {
    using Complex = LaplaceFmm::Complex;
    const auto& nodes = boundary.Nodes();
    const std::size_t n = nodes.size();
    const double c = 1 / (4 * kTwoPi);
    std::vector<Complex> z(n);
    std::vector<std::vector<double>> charges(7, std::vector<double>(n));
    double sumA = 0, sumB = 0, sumBr2 = 0;  // Σ α ζ·n, Σ β, Σ β |ζ|²
    Complex sumAn = 0, sumBz = 0;           // Σ α n, Σ β ζ
    for (std::size_t j = 0; j < n; ++j) {
        const Point3 &p = nodes[j].p, &normal = nodes[j].normal;
        const double alpha = c * warping[j] * nodes[j].weight,
                     beta = c * WarpingFlux(p, normal) * nodes[j].weight;
        const double zn = p.x * normal.x + p.y * normal.y, r2 = p.x * p.x + p.y * p.y;
        z[j] = {p.x, p.y};
        const double row[7] = {alpha * zn, alpha * normal.x, alpha * normal.y, beta,
                               beta * p.x, beta * p.y,       beta * r2};
        for (std::size_t k = 0; k < 7; ++k) charges[k][j] = row[k];
        sumA += alpha * zn;
        sumAn += alpha * Complex(normal.x, normal.y);
        sumB += beta;
        sumBz += beta * z[j];
        sumBr2 += beta * r2;
    }
    const LaplaceFmm fmm(z, 22);
    std::vector<std::vector<double>> l(7);
    std::vector<std::vector<Complex>> slope(7);
    for (std::size_t k = 0; k < 7; ++k) l[k] = fmm.Potentials(charges[k], {}, &slope[k]);
    const NearPanels near(boundary.Panels());
    std::vector<Field> fields(n);
    ParallelFor(
        n,
        [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) {
                const double x = z[i].real(), y = z[i].imag(), r2 = x * x + y * y;
                auto gradient = [&](std::size_t k) {
                    return Complex(slope[k][i].real(), -slope[k][i].imag());
                };
                const Complex own =
                    Complex(nodes[i].normal.x, nodes[i].normal.y) * (c * warping[i] * nodes[i].weight);
                // Gradients as complex numbers x + iy. The plain sums hold node i itself, whose rule is
                // nothing: its -α n is taken back.
                const double u = sumA - (x * sumAn.real() + y * sumAn.imag()) -
                                 (sumBr2 - 2 * (x * sumBz.real() + y * sumBz.imag()) + r2 * sumB) -
                                 2 * (l[0][i] - x * l[1][i] - y * l[2][i]) + r2 * l[3][i] -
                                 2 * (x * l[4][i] + y * l[5][i]) + l[6][i];
                const Complex grad =
                    -sumAn + own + 2.0 * sumBz - 2.0 * z[i] * sumB -
                    2.0 * (gradient(0) - Complex(l[1][i], l[2][i]) - x * gradient(1) - y * gradient(2)) +
                    2.0 * z[i] * l[3][i] + r2 * gradient(3) -
                    2.0 * (Complex(l[4][i], l[5][i]) + x * gradient(4) + y * gradient(5)) + gradient(6);
                Field field{u, grad.real() * nodes[i].normal.x + grad.imag() * nodes[i].normal.y};
                for (std::size_t p : near.Of(nodes[i].p)) {
                    for (std::size_t j = p * BoundaryPanels::kOrder; j < (p + 1) * BoundaryPanels::kOrder;
                         ++j)
                        AddNode(boundary, warping, i, j, -1, field);
                    AddNearPanel(boundary, warping, i, p, field);
                }
                fields[i] = field;
            }
        },
        64);
    return fields;
}

// ∫ w² dA of a harmonic w in a solid bounded by one loop, in one pass along it. w = Re f with f
// analytic; its conjugate ψ = Im f has dψ/ds = dw/dn (Cauchy-Riemann), and by Green's theorem in
// complex form (∫ ∂g/∂z̄ dA = ∮ g dz / 2i):
//   ∫ w² dA = (∫ |f|² dA + Re ∫ f² dA) / 2,  ∫ f² dA = ∮ z̄ f² dz / 2i,  ∫ |f|² dA = ∮ f conj(F) dz / 2i,
// F' = f, single-valued where there is no hole. ψ and F follow along the loop by integrating each
// panel's interpolant of their derivatives.
double SquareIntegralOfOneLoop(const BoundaryPanels& boundary, const std::vector<double>& warping) {
    using Complex = std::complex<double>;
    constexpr std::size_t order = BoundaryPanels::kOrder;
    const auto& nodes = boundary.Nodes();
    const auto& gauss = BoundaryPanels::GaussWeights();
    const double* indefinite = IndefiniteWeights().data();
    double psiAtStart = 0;  // of the panel
    Complex antiderivativeAtStart = 0, squares = 0, products = 0;
    std::array<double, order> dpsi{};  // dψ/du
    std::array<Complex, order> f{}, dzdu{}, dfdu{};
    for (std::size_t first = 0; first < nodes.size(); first += order) {
        for (std::size_t m = 0; m < order; ++m) {
            const BoundaryNode& node = nodes[first + m];
            const double dsdu = node.weight / gauss[m];
            dpsi[m] = WarpingFlux(node.p, node.normal) * dsdu;
            dzdu[m] = Complex(-node.normal.y, node.normal.x) * dsdu;  // the tangent i n
        }
        for (std::size_t m = 0; m < order; ++m) {
            double psi = psiAtStart;
            for (std::size_t k = 0; k < order; ++k) psi += indefinite[m * order + k] * dpsi[k];
            f[m] = {warping[first + m], psi};
            dfdu[m] = f[m] * dzdu[m];
        }
        for (std::size_t m = 0; m < order; ++m) {
            Complex antiderivative = antiderivativeAtStart;
            for (std::size_t k = 0; k < order; ++k) antiderivative += indefinite[m * order + k] * dfdu[k];
            const Complex z(nodes[first + m].p.x, nodes[first + m].p.y), dz = dzdu[m] * gauss[m];
            squares += std::conj(z) * f[m] * f[m] * dz;
            products += f[m] * std::conj(antiderivative) * dz;
        }
        for (std::size_t k = 0; k < order; ++k) {
            psiAtStart += gauss[k] * dpsi[k];
            antiderivativeAtStart += gauss[k] * dfdu[k];
        }
    }
    const Complex twoI(0, 2);
    return ((products / twoI).real() + (squares / twoI).real()) / 2;
}

}  // namespace

double WarpingSquareIntegral(const BoundaryPanels& boundary, const std::vector<double>& warping,
                             std::size_t loops, SquareMethod method) {
    const auto& nodes = boundary.Nodes();
    if (method == SquareMethod::automatic) {
        method = loops == 1            ? SquareMethod::alongTheLoop
                 : nodes.size() > 8000 ? SquareMethod::multipoles
                                       : SquareMethod::pairByPair;
    }
    if (method == SquareMethod::alongTheLoop) return SquareIntegralOfOneLoop(boundary, warping);
    std::vector<Field> fields;
    if (method == SquareMethod::multipoles) {
        fields = FastFields(boundary, warping);
    } else {
        fields.resize(nodes.size());
        ParallelFor(
            nodes.size(),
            [&](std::size_t begin, std::size_t end) {
                for (std::size_t i = begin; i < end; ++i) fields[i] = DirectField(boundary, warping, i);
            },
            64);
    }
    double total = 0;  // added up in order: the same sum on any cores
    for (std::size_t i = 0; i < nodes.size(); ++i)
        total += (WarpingFlux(nodes[i].p, nodes[i].normal) * fields[i].u - warping[i] * fields[i].dudn) *
                 nodes[i].weight;
    return total;
}

}  // namespace tgp
