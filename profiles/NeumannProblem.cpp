#include "profiles/NeumannProblem.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/ParallelFor.h"

namespace tgp {

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;
// Rows of the system computed on one thread at least: fewer cost more in threads than they save.
constexpr std::size_t kRowsAPart = 64;

// The kernel dG/dn_y of the double layer.
double DoubleLayer(const Point3& target, const Point3& y, const Point3& normal) {
    const double dx = y.x - target.x, dy = y.y - target.y;
    return -(dx * normal.x + dy * normal.y) / ((dx * dx + dy * dy) * kTwoPi);
}

double SingleLayer(const Point3& target, const Point3& y) {
    const double dx = y.x - target.x, dy = y.y - target.y;
    return -std::log(dx * dx + dy * dy) / (2 * kTwoPi);
}

// GMRES without restarts on the dense system, from x (0 when empty), to a residual of 1E-12 of the
// right side.
std::vector<double> Gmres(const double* a, const std::vector<double>& b, std::vector<double> x) {
    const std::size_t n = b.size(), most = std::min<std::size_t>(n, 400);
    auto multiply = [&](const std::vector<double>& v) {
        std::vector<double> r(n, 0);
        ParallelFor(
            n,
            [&](std::size_t begin, std::size_t end) {
                for (std::size_t i = begin; i < end; ++i) {
                    const double* row = &a[i * n];
                    double s = 0;
                    for (std::size_t j = 0; j < n; ++j) s += row[j] * v[j];
                    r[i] = s;
                }
            },
            kRowsAPart);
        return r;
    };
    auto norm = [](const std::vector<double>& v) {
        double sum = 0;
        for (double e : v) sum += e * e;
        return std::sqrt(sum);
    };
    std::vector<double> residual = b;
    if (x.empty()) {
        x.assign(n, 0);
    } else {
        const std::vector<double> ax = multiply(x);
        for (std::size_t j = 0; j < n; ++j) residual[j] -= ax[j];
    }
    const double goal = 1e-12 * norm(b), beta = norm(residual);
    if (beta <= goal) return x;
    std::vector<std::vector<double>> basis{residual};
    for (double& v : basis[0]) v /= beta;
    std::vector<std::vector<double>> h;  // columns of the Hessenberg matrix, rotated
    std::vector<double> cs, sn, g{beta};
    std::size_t k = 0;
    for (; k < most; ++k) {
        std::vector<double> w = multiply(basis[k]);
        std::vector<double> column(k + 2, 0);
        for (std::size_t i = 0; i <= k; ++i) {  // modified Gram-Schmidt
            double dot = 0;
            for (std::size_t j = 0; j < n; ++j) dot += w[j] * basis[i][j];
            column[i] = dot;
            for (std::size_t j = 0; j < n; ++j) w[j] -= dot * basis[i][j];
        }
        const double rest = norm(w);  // what is left of A v_k beside the basis
        column[k + 1] = rest;
        for (std::size_t i = 0; i < k; ++i) {
            const double t = cs[i] * column[i] + sn[i] * column[i + 1];
            column[i + 1] = -sn[i] * column[i] + cs[i] * column[i + 1];
            column[i] = t;
        }
        const double r = std::hypot(column[k], column[k + 1]);
        cs.push_back(column[k] / r);
        sn.push_back(column[k + 1] / r);
        column[k] = r;
        column[k + 1] = 0;
        g.push_back(-sn[k] * g[k]);
        g[k] *= cs[k];
        h.push_back(column);
        if (std::fabs(g[k + 1]) <= goal || rest == 0) {
            ++k;
            break;
        }
        for (double& v : w) v /= rest;
        basis.push_back(std::move(w));
    }
    std::vector<double> y(k, 0);
    for (std::size_t i = k; i-- > 0;) {
        double s = g[i];
        for (std::size_t j = i + 1; j < k; ++j) s -= h[j][i] * y[j];
        y[i] = s / h[i][i];
    }
    for (std::size_t i = 0; i < k; ++i)
        for (std::size_t j = 0; j < n; ++j) x[j] += y[i] * basis[i][j];
    return x;
}

}  // namespace

NeumannProblem::NeumannProblem(const BoundaryPanels& boundary) : boundary_(boundary) {
    const std::size_t n = boundary.Nodes().size();
    // Left unset here: each row is cleared by the thread that assembles it.
    matrix_ = std::make_unique_for_overwrite<double[]>(n * n);
    double length = 0;  // of the boundary: the constant's term is scaled to the others
    for (const BoundaryNode& node : boundary.Nodes()) length += node.weight;
    ParallelFor(
        n,
        [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) AssembleRow(i, length);
        },
        kRowsAPart);
}

void NeumannProblem::AssembleRow(std::size_t i, double length) {
    const auto& nodes = boundary_.Nodes();
    const auto& panels = boundary_.Panels();
    const std::size_t n = nodes.size(), order = BoundaryPanels::kOrder;
    std::vector<double> basis;
    const BoundaryNode& target = nodes[i];
    double* row = &matrix_[i * n];
    std::fill(row, row + n, 0.0);
    for (std::size_t p = 0; p < panels.size(); ++p) {
        const BoundaryPanel& panel = panels[p];
        const std::size_t first = p * order;
        if (!panel.Near(target.p)) {
            for (std::size_t m = 0; m < order; ++m) {
                const BoundaryNode& source = nodes[first + m];
                row[first + m] += DoubleLayer(target.p, source.p, source.normal) * source.weight;
            }
        } else if (!panel.OnSegmentOf(panels[target.panel])) {
            IntegrateNear(panel, target.p, [&](const Point3& y, const Point3& normal, double u, double ds) {
                PanelBasisAt(u, basis);
                const double k = DoubleLayer(target.p, y, normal) * ds;
                for (std::size_t m = 0; m < order; ++m) row[first + m] += k * basis[m];
            });
        } else if (panel.turn != 0) {
            // Along its own line the double layer vanishes; along its own circle it is constant.
            const double value = -panel.turn / (2 * kTwoPi * panel.length / (panel.t1 - panel.t0));
            for (std::size_t m = 0; m < order; ++m) row[first + m] += value * nodes[first + m].weight;
        }
    }
    row[i] += 0.5;
    for (std::size_t j = 0; j < n; ++j) row[j] += nodes[j].weight / length;
}

// The single layer of node i's own panel by product integration.
void NeumannProblem::AddOwnPanel(std::size_t i, std::vector<double>& sum, const std::vector<double>& q,
                                 std::size_t count) const {
    const auto& nodes = boundary_.Nodes();
    const std::size_t first = nodes[i].panel * BoundaryPanels::kOrder;
    const auto weights = boundary_.OwnLogarithmWeights(i);
    for (std::size_t m = 0; m < BoundaryPanels::kOrder; ++m) {
        const double weight = -weights[m] / (kTwoPi * nodes[first + m].weight);  // q holds flux ds
        for (std::size_t r = 0; r < count; ++r) sum[r] += weight * q[(first + m) * count + r];
    }
}

// The right sides of all fluxes in one pass over the node pairs (each logarithm taken once).
std::vector<std::vector<double>> NeumannProblem::RightSides(const std::vector<Flux>& fluxes) const {
    const auto& nodes = boundary_.Nodes();
    const auto& panels = boundary_.Panels();
    const std::size_t order = BoundaryPanels::GaussPoints().size(), n = nodes.size(), count = fluxes.size();
    std::vector<double> q(n * count);  // q ds, the fluxes of a node side by side
    for (std::size_t j = 0; j < n; ++j)
        for (std::size_t r = 0; r < count; ++r)
            q[j * count + r] = fluxes[r](nodes[j].p, nodes[j].normal) * nodes[j].weight;
    std::vector<std::vector<double>> f(count, std::vector<double>(n, 0));
    ParallelFor(
        n,
        [&](std::size_t begin, std::size_t end) {
            std::vector<double> sum(count);
            for (std::size_t i = begin; i < end; ++i) {
                const Point3& target = nodes[i].p;
                std::fill(sum.begin(), sum.end(), 0.0);
                for (std::size_t p = 0; p < panels.size(); ++p) {
                    const std::size_t first = p * order;
                    if (p == nodes[i].panel) {
                        AddOwnPanel(i, sum, q, count);
                    } else if (!panels[p].Near(target)) {
                        for (std::size_t m = first; m < first + order; ++m) {
                            const double g = SingleLayer(target, nodes[m].p);
                            for (std::size_t r = 0; r < count; ++r) sum[r] += g * q[m * count + r];
                        }
                    } else {
                        IntegrateNear(panels[p], target,
                                      [&](const Point3& y, const Point3& normal, double, double ds) {
                                          const double g = SingleLayer(target, y) * ds;
                                          for (std::size_t r = 0; r < count; ++r)
                                              sum[r] += g * fluxes[r](y, normal);
                                      });
                    }
                }
                for (std::size_t r = 0; r < count; ++r) f[r][i] = sum[r];
            }
        },
        kRowsAPart);
    return f;
}

std::vector<std::vector<double>> NeumannProblem::Solve(
    const std::vector<Flux>& fluxes, const std::vector<std::vector<double>>& guesses) const {
    std::vector<std::vector<double>> solutions;
    const auto sides = RightSides(fluxes);
    for (std::size_t r = 0; r < sides.size(); ++r)
        solutions.push_back(
            Gmres(matrix_.get(), sides[r], r < guesses.size() ? guesses[r] : std::vector<double>{}));
    return solutions;
}

}  // namespace tgp
