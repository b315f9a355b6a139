#include "profiles/SaintVenantTorsion.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "core/Error.h"
#include "profiles/BoundaryPanels.h"
#include "profiles/InertiaBlock.h"
#include "profiles/NeumannProblem.h"
#include "profiles/TorsionSolids.h"
#include "profiles/WarpingSquare.h"

namespace tgp {

namespace {

constexpr int kMostRefinements = 6;
// About 2 kB a node (the sparse near rows, the expansions): 500,000 nodes are a gigabyte. A
// refinement that would need more stops the refinement (the estimate says how far it got); a first
// one that would raises.
constexpr std::size_t kMostNodes = 500000;

// The warping function at the nodes of one solid, from a guess when there is one.
std::vector<double> WarpingAtNodes(const BoundaryPanels& boundary, std::vector<double> guess) {
    return NeumannProblem(boundary).Solve({WarpingFlux}, {std::move(guess)})[0];
}

// The small system of the shear centre, by elimination with partial pivoting.
std::vector<double> SolveSmall(std::vector<double> a, std::vector<double> b, std::size_t n) {
    for (std::size_t k = 0; k < n; ++k) {
        std::size_t pivot = k;
        for (std::size_t i = k + 1; i < n; ++i)
            if (std::fabs(a[i * n + k]) > std::fabs(a[pivot * n + k])) pivot = i;
        for (std::size_t j = 0; j < n; ++j) std::swap(a[k * n + j], a[pivot * n + j]);
        std::swap(b[k], b[pivot]);
        for (std::size_t i = k + 1; i < n; ++i) {
            const double f = a[i * n + k] / a[k * n + k];
            for (std::size_t j = k; j < n; ++j) a[i * n + j] -= f * a[k * n + j];
            b[i] -= f * b[k];
        }
    }
    for (std::size_t k = n; k-- > 0;) {
        for (std::size_t j = k + 1; j < n; ++j) b[k] -= a[k * n + j] * b[j];
        b[k] /= a[k * n + k];
    }
    return b;
}

// Area integrals of one solid through its boundary (x, y from the section's centroid).
struct SolidIntegrals {
    double area = 0, sx = 0, sy = 0, ixx = 0, iyy = 0, ixy = 0;  // ∫1, ∫x, ∫y, ∫y², ∫x², ∫xy dA
    double w = 0, wx = 0, wy = 0, wq = 0;                        // ∫w, ∫w x, ∫w y dA; ∮ w dw/dn ds
};

SolidIntegrals Integrate(const BoundaryPanels& boundary, const std::vector<double>& warping) {
    SolidIntegrals s;
    const auto& nodes = boundary.Nodes();
    for (std::size_t j = 0; j < nodes.size(); ++j) {
        const double x = nodes[j].p.x, y = nodes[j].p.y, nx = nodes[j].normal.x, ny = nodes[j].normal.y;
        const double ds = nodes[j].weight, w = warping[j], q = WarpingFlux(nodes[j].p, nodes[j].normal);
        s.area += x * nx * ds;
        s.sx += x * x / 2 * nx * ds;
        s.sy += y * y / 2 * ny * ds;
        s.iyy += x * x * x / 3 * nx * ds;
        s.ixx += y * y * y / 3 * ny * ds;
        s.ixy += (x * x * y / 2 * nx + x * x * x / 6 * ny) * ds;
        s.w += (w * (x * nx + y * ny) / 2 - (x * x + y * y) / 4 * q) * ds;
        s.wx += (w * x * x / 2 * nx - x * x * x / 6 * q) * ds;
        s.wy += (w * y * y / 2 * ny - y * y * y / 6 * q) * ds;
        s.wq += w * q * ds;
    }
    return s;
}

}  // namespace

struct SaintVenantTorsion::Level {
    double j = 0;
    Point3 shearCentre;
    std::size_t nodes = 0;
    std::vector<BoundaryPanels> boundaries;  // of each solid
    std::vector<std::vector<double>> warpings;
    std::vector<SolidIntegrals> parts;
    std::vector<double> solution;  // a, b and each solid's c_k of w + a x + b y + c_k
};

SaintVenantTorsion::SaintVenantTorsion(Loop7s& section, double accuracy) {
    const double area = section.Area();  // raises for an empty collection, crossings and overlaps
    if (!(area > 0)) ThrowLibraryError("SaintVenantTorsion: the section has no area");
    const Point c = section.Centroid();
    centroid_ = {c[0], c[1], 0};
    solids_ = TorsionSolids(section);
    SegmentBox box = SegmentBox::Empty();
    for (const auto& solid : solids_)
        for (const auto& loop : solid)
            for (const LoopDLine& s : loop) box.Include(s.BoundingBox());
    extent_ = std::hypot(box.xmax - box.xmin, box.ymax - box.ymin);
    // Each refinement halves the panels (the longest segment's at least, so that a boundary of
    // segments shorter than the panels is refined too) and grades two levels deeper into the
    // corners. The first refinement must fit too: without it there is no estimate.
    double longest = 0;
    for (const auto& solid : solids_)
        for (const auto& loop : solid)
            for (const LoopDLine& s : loop) longest = std::max(longest, s.Length());
    double base = extent_ / 2;
    int depth = 6;
    auto refine = [&] {
        base = std::min(base / 2, longest / 2);
        depth += 2;
    };
    std::vector<BoundaryPanels> first = BoundariesFor(base, depth);
    refine();
    std::vector<BoundaryPanels> refined = BoundariesFor(base, depth);
    if (NodeCount(refined) > kMostNodes)
        ThrowLibraryError("SaintVenantTorsion: the boundary needs more than " + std::to_string(kMostNodes) +
                          " nodes, more than this solver holds");
    Level previous = Solve(std::move(first));
    history_.push_back({previous.nodes, previous.j});
    for (int level = 1;; ++level) {
        Level next = Solve(std::move(refined), &previous);
        history_.push_back({next.nodes, next.j});
        estimate_ = std::fabs(next.j - previous.j) / std::fabs(next.j);
        previous = std::move(next);
        if (estimate_ <= accuracy || level == kMostRefinements) break;
        refine();
        refined = BoundariesFor(base, depth);
        if (NodeCount(refined) > kMostNodes) break;
    }
    j_ = previous.j;
    warping_ = WarpingConstantOf(previous);
    FindLargestStress(previous);
    shearCentre_ = previous.shearCentre + centroid_;
    monosymmetry_ = MonosymmetryOf(previous);
    nodes_ = previous.nodes;
    for (std::size_t k = 0; k < previous.boundaries.size(); ++k)
        warped_.push_back({std::move(previous.boundaries[k]), std::move(previous.warpings[k])});
}

std::vector<BoundaryPanels> SaintVenantTorsion::BoundariesFor(double base, int depth) const {
    std::vector<BoundaryPanels> boundaries;
    for (const auto& solid : solids_) boundaries.emplace_back(solid, centroid_, base, depth);
    return boundaries;
}

std::size_t SaintVenantTorsion::NodeCount(const std::vector<BoundaryPanels>& boundaries) {
    std::size_t nodes = 0;
    for (const BoundaryPanels& boundary : boundaries) nodes += boundary.Nodes().size();
    return nodes;
}

SaintVenantTorsion::Level SaintVenantTorsion::Solve(std::vector<BoundaryPanels> boundaries,
                                                    const Level* coarser) const {
    Level level;
    level.boundaries = std::move(boundaries);
    for (std::size_t k = 0; k < level.boundaries.size(); ++k) {
        const BoundaryPanels& boundary = level.boundaries[k];
        level.warpings.push_back(WarpingAtNodes(
            boundary, coarser ? boundary.Interpolated(coarser->boundaries[k], coarser->warpings[k])
                              : std::vector<double>{}));
        level.parts.push_back(Integrate(boundary, level.warpings.back()));
        level.nodes += boundary.Nodes().size();
        level.j += level.parts.back().ixx + level.parts.back().iyy - level.parts.back().wq;
    }
    // Trefftz's shear centre: w + a x + b y + c_k (per solid) orthogonal to x, y and each solid's 1.
    const std::size_t m = level.parts.size(), n = m + 2;
    std::vector<double> matrix(n * n, 0), rhs(n, 0);
    auto at = [&](std::size_t r, std::size_t c) -> double& { return matrix[r * n + c]; };
    for (std::size_t k = 0; k < m; ++k) {
        const SolidIntegrals& s = level.parts[k];
        at(0, 0) += s.iyy;
        at(0, 1) += s.ixy;
        at(1, 0) += s.ixy;
        at(1, 1) += s.ixx;
        at(0, 2 + k) = at(2 + k, 0) = s.sx;
        at(1, 2 + k) = at(2 + k, 1) = s.sy;
        at(2 + k, 2 + k) = s.area;
        rhs[0] -= s.wx;
        rhs[1] -= s.wy;
        rhs[2 + k] = -s.w;
    }
    level.solution = SolveSmall(matrix, rhs, n);
    level.shearCentre = {level.solution[1], -level.solution[0], 0};
    return level;
}

// Iw = ∫ (w + a x + b y + c_k)² dA, expanded into the integrals at hand and ∫ w² dA.
double SaintVenantTorsion::WarpingConstantOf(const Level& level) const {
    const double a = level.solution[0], b = level.solution[1];
    double iw = 0;
    for (std::size_t k = 0; k < level.parts.size(); ++k) {
        const SolidIntegrals& s = level.parts[k];
        const double c = level.solution[2 + k];
        iw += WarpingSquareIntegral(level.boundaries[k], level.warpings[k], solids_[k].size()) +
              2 * (a * s.wx + b * s.wy + c * s.w) + a * a * s.iyy + b * b * s.ixx + 2 * a * b * s.ixy +
              2 * c * (a * s.sx + b * s.sy) + c * c * s.area;
    }
    return iw;
}

// The principal axes of the solids' second moments (1 the major; moments that agree to rounding make
// x axis 1), and the cubic moments ∫ η r² dA, ∫ ξ r² dA through the boundary (∮ P (r·n) ds / 5).
SaintVenantTorsion::Monosymmetry SaintVenantTorsion::MonosymmetryOf(const Level& level) {
    double ix = 0, iy = 0, ixy = 0;
    for (const SolidIntegrals& s : level.parts) {
        ix += s.ixx;
        iy += s.iyy;
        ixy += s.ixy;
    }
    const PrincipalMoments principal = SettledMajorAndMinor(ix, iy, ixy);
    const double c = std::cos(principal.Angle), s = std::sin(principal.Angle);
    double etaR2 = 0, xiR2 = 0;
    for (const BoundaryPanels& boundary : level.boundaries) {
        for (const BoundaryNode& node : boundary.Nodes()) {
            const Point3& p = node.p;
            const double r2 = p.x * p.x + p.y * p.y,
                         rn = (p.x * node.normal.x + p.y * node.normal.y) * node.weight;
            etaR2 += (-p.x * s + p.y * c) * r2 * rn / 5;
            xiR2 += (p.x * c + p.y * s) * r2 * rn / 5;
        }
    }
    const Point3& centre = level.shearCentre;
    return {etaR2 / principal.Major - 2 * (-centre.x * s + centre.y * c),
            xiR2 / principal.Minor - 2 * (centre.x * c + centre.y * s)};
}

namespace {

// The largest sample of f on [-1, 1] (n + 1 evenly spaced), refined by the parabola through it and
// its neighbours.
template <class F>
std::pair<double, double> LargestOf(const F& f, std::size_t n) {
    double best = -1, at = 0;
    for (std::size_t i = 0; i <= n; ++i) {
        const double u = -1 + 2.0 * static_cast<double>(i) / static_cast<double>(n), value = f(u);
        if (value > best) best = value, at = u;
    }
    const double h = 2.0 / static_cast<double>(n);
    if (at - h < -1 || at + h > 1) return {best, at};
    const double left = f(at - h), right = f(at + h), curve = left - 2 * best + right;
    if (curve >= 0) return {best, at};
    const double u = at + h * (left - right) / (2 * curve), value = f(u);
    return value > best ? std::pair{value, u} : std::pair{best, at};
}

// The boundary stress of a unit torque at u of a panel: tangential, |dw/ds + x t_y - y t_x| / J, with
// dw/ds from the panel's interpolant of w (a central difference of it, far below its accuracy).
double StressAt(const BoundaryPanel& panel, const double* w, double j, double u) {
    const double t = panel.t0 + (panel.t1 - panel.t0) * (u + 1) / 2;
    const Point3 d = panel.Derivative(t), y = panel.At(t);
    const double speed = std::sqrt(d.x * d.x + d.y * d.y);
    const double above = std::min(u + 1e-6, 1.0), below = std::max(u - 1e-6, -1.0);
    std::vector<double> basis;
    double slope = 0;
    PanelBasisAt(above, basis);
    for (std::size_t m = 0; m < basis.size(); ++m) slope += basis[m] * w[m];
    PanelBasisAt(below, basis);
    for (std::size_t m = 0; m < basis.size(); ++m) slope -= basis[m] * w[m];
    slope /= (above - below) * speed * (panel.t1 - panel.t0) / 2;
    return std::fabs(slope + (y.x * d.y - y.y * d.x) / speed) / j;
}

}  // namespace

void SaintVenantTorsion::FindLargestStress(const Level& level) {
    const std::size_t order = BoundaryPanels::GaussPoints().size();
    for (std::size_t k = 0; k < level.boundaries.size(); ++k) {
        const auto& panels = level.boundaries[k].Panels();
        for (std::size_t p = 0; p < panels.size(); ++p) {
            const double* w = &level.warpings[k][p * order];
            const auto [stress, u] =
                LargestOf([&](double v) { return StressAt(panels[p], w, j_, v); }, 4 * order);
            if (stress <= stress_) continue;
            stress_ = stress;
            stressAt_ = panels[p].At(panels[p].t0 + (panels[p].t1 - panels[p].t0) * (u + 1) / 2) + centroid_;
        }
    }
}

}  // namespace tgp
