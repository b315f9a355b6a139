#include "profiles/NeumannProblem.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "core/ParallelFor.h"
#include "geometry/LaplaceFmm.h"
#include "profiles/NearPanels.h"

namespace tgp {

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;
// Rows of the system computed on one thread at least: fewer cost more in threads than they save.
constexpr std::size_t kRowsAPart = 64;
// Up to this many nodes the matrix is kept whole (n² numbers, 0.5 GB at most); beyond, far panels
// act through the fast multipole method and near ones through a sparse matrix.
constexpr std::size_t kDenseMost = 8000;
// Terms of the multipole expansions: about 1E-10 of the potentials, below what the solution needs.
constexpr int kMultipoleTerms = 22;

// The kernel dG/dn_y of the double layer.
double DoubleLayer(const Point3& target, const Point3& y, const Point3& normal) {
    const double dx = y.x - target.x, dy = y.y - target.y;
    return -(dx * normal.x + dy * normal.y) / ((dx * dx + dy * dy) * kTwoPi);
}

double SingleLayer(const Point3& target, const Point3& y) {
    const double dx = y.x - target.x, dy = y.y - target.y;
    return -std::log(dx * dx + dy * dy) / (2 * kTwoPi);
}

// GMRES without restarts on the system, from x (0 when empty), to a residual of 1E-12 of the
// right side.
template <class Multiply>
std::vector<double> Gmres(const Multiply& multiply, const std::vector<double>& b, std::vector<double> x) {
    const std::size_t n = b.size(), most = std::min<std::size_t>(n, 400);
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

struct NeumannProblem::Fast {
    LaplaceFmm fmm;
    NearPanels near;
    // The sparse rows: every pair of touching leaves the expansions leave out, and near panels'
    // quadrature in place of their nodes'.
    std::vector<std::vector<std::pair<std::uint32_t, double>>> rows;
};

namespace {

std::vector<LaplaceFmm::Complex> Positions(const std::vector<BoundaryNode>& nodes) {
    std::vector<LaplaceFmm::Complex> z;
    z.reserve(nodes.size());
    for (const BoundaryNode& node : nodes) z.emplace_back(node.p.x, node.p.y);
    return z;
}

}  // namespace

NeumannProblem::NeumannProblem(const BoundaryPanels& boundary, Assembly assembly) : boundary_(boundary) {
    const std::size_t n = boundary.Nodes().size();
    length_ = 0;  // of the boundary: the constant's term is scaled to the others
    for (const BoundaryNode& node : boundary.Nodes()) length_ += node.weight;
    if (assembly == Assembly::dense || (assembly == Assembly::automatic && n <= kDenseMost)) {
        // Left unset here: each row is cleared by the thread that assembles it.
        matrix_ = std::make_unique_for_overwrite<double[]>(n * n);
        ParallelFor(
            n,
            [&](std::size_t begin, std::size_t end) {
                for (std::size_t i = begin; i < end; ++i) AssembleRow(i);
            },
            kRowsAPart);
        return;
    }
    fast_ = std::make_unique<Fast>(
        Fast{LaplaceFmm(Positions(boundary.Nodes()), kMultipoleTerms), NearPanels(boundary.Panels()), {}});
    fast_->rows.resize(n);
    ParallelFor(
        n,
        [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) AssembleSparseRow(i);
        },
        kRowsAPart);
}

NeumannProblem::~NeumannProblem() = default;

std::vector<std::size_t> NeumannProblem::PanelsNear(std::size_t i) const {
    const auto& panels = boundary_.Panels();
    const Point3& target = boundary_.Nodes()[i].p;
    std::vector<std::size_t> near;
    if (!fast_) {
        for (std::size_t p = 0; p < panels.size(); ++p)
            if (panels[p].Near(target)) near.push_back(p);
        return near;
    }
    return fast_->near.Of(target);
}

// What node i's row takes from a panel near it instead of its nodes' values.
template <class Add>
void NeumannProblem::NearPanelEntries(std::size_t i, std::size_t p, const Add& add) const {
    const auto& nodes = boundary_.Nodes();
    const BoundaryPanel& panel = boundary_.Panels()[p];
    const std::size_t first = p * BoundaryPanels::kOrder;
    const Point3& target = nodes[i].p;
    if (!panel.OnSegmentOf(boundary_.Panels()[nodes[i].panel])) {
        std::vector<double> basis;
        std::array<double, BoundaryPanels::kOrder> sum{};
        IntegrateNear(panel, target, [&](const Point3& y, const Point3& normal, double u, double ds) {
            PanelBasisAt(u, basis);
            const double k = DoubleLayer(target, y, normal) * ds;
            for (std::size_t m = 0; m < BoundaryPanels::kOrder; ++m) sum[m] += k * basis[m];
        });
        for (std::size_t m = 0; m < BoundaryPanels::kOrder; ++m) add(first + m, sum[m]);
    } else if (panel.turn != 0) {
        // Along its own line the double layer vanishes; along its own circle it is constant.
        const double value = -panel.turn / (2 * kTwoPi * panel.length / (panel.t1 - panel.t0));
        for (std::size_t m = 0; m < BoundaryPanels::kOrder; ++m)
            add(first + m, value * nodes[first + m].weight);
    }
}

void NeumannProblem::AssembleRow(std::size_t i) {
    const auto& nodes = boundary_.Nodes();
    const auto& panels = boundary_.Panels();
    const std::size_t n = nodes.size(), order = BoundaryPanels::kOrder;
    const BoundaryNode& target = nodes[i];
    double* row = &matrix_[i * n];
    std::fill(row, row + n, 0.0);
    for (std::size_t p = 0; p < panels.size(); ++p) {
        if (panels[p].Near(target.p)) {
            NearPanelEntries(i, p, [&](std::size_t j, double value) { row[j] += value; });
            continue;
        }
        for (std::size_t j = p * order; j < (p + 1) * order; ++j)
            row[j] += DoubleLayer(target.p, nodes[j].p, nodes[j].normal) * nodes[j].weight;
    }
    row[i] += 0.5;
    for (std::size_t j = 0; j < n; ++j) row[j] += nodes[j].weight / length_;
}

// The pairs of touching leaves by the nodes' rule, then near panels' quadrature less that rule.
void NeumannProblem::AssembleSparseRow(std::size_t i) {
    const auto& nodes = boundary_.Nodes();
    const Point3& target = nodes[i].p;
    auto naive = [&](std::size_t j) {
        return j == i ? 0.0 : DoubleLayer(target, nodes[j].p, nodes[j].normal) * nodes[j].weight;
    };
    auto& row = fast_->rows[i];
    for (std::size_t j : fast_->fmm.NearPoints(i)) row.emplace_back(static_cast<std::uint32_t>(j), naive(j));
    for (std::size_t p : PanelsNear(i)) {
        for (std::size_t j = p * BoundaryPanels::kOrder; j < (p + 1) * BoundaryPanels::kOrder; ++j)
            row.emplace_back(static_cast<std::uint32_t>(j), -naive(j));
        NearPanelEntries(i, p, [&](std::size_t j, double value) {
            row.emplace_back(static_cast<std::uint32_t>(j), value);
        });
    }
    std::sort(row.begin(), row.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::size_t kept = 0;  // one entry a node
    for (std::size_t k = 0; k < row.size(); ++k) {
        if (kept > 0 && row[kept - 1].first == row[k].first)
            row[kept - 1].second += row[k].second;
        else
            row[kept++] = row[k];
    }
    row.resize(kept);
    row.shrink_to_fit();
}

std::vector<double> NeumannProblem::Multiply(const std::vector<double>& u) const {
    const auto& nodes = boundary_.Nodes();
    const std::size_t n = nodes.size();
    double mean = 0;
    for (std::size_t j = 0; j < n; ++j) mean += nodes[j].weight * u[j];
    mean /= length_;
    std::vector<double> r(n, 0);
    if (!fast_) {
        ParallelFor(
            n,
            [&](std::size_t begin, std::size_t end) {
                for (std::size_t i = begin; i < end; ++i) {
                    const double* row = &matrix_[i * n];
                    double s = 0;
                    for (std::size_t j = 0; j < n; ++j) s += row[j] * u[j];
                    r[i] = s;
                }
            },
            kRowsAPart);
        return r;
    }
    // The double layer's kernel is Re(n / (x - y)) / 2 pi: dipoles of n u ds / 2 pi.
    std::vector<LaplaceFmm::Complex> dipoles(n);
    for (std::size_t j = 0; j < n; ++j)
        dipoles[j] =
            LaplaceFmm::Complex(nodes[j].normal.x, nodes[j].normal.y) * (u[j] * nodes[j].weight / kTwoPi);
    r = fast_->fmm.FarPotentials({}, dipoles);
    ParallelFor(
        n,
        [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) {
                double s = 0.5 * u[i] + mean;
                for (const auto& [j, value] : fast_->rows[i]) s += value * u[j];
                r[i] += s;
            }
        },
        kRowsAPart);
    return r;
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

// Node i's single layer from the panels near it (its own among them), by their quadrature.
void NeumannProblem::AddNearPanels(std::size_t i, const std::vector<std::size_t>& near,
                                   const std::vector<Flux>& fluxes, const std::vector<double>& q,
                                   std::vector<double>& sum) const {
    const auto& nodes = boundary_.Nodes();
    const auto& panels = boundary_.Panels();
    const std::size_t count = fluxes.size();
    const Point3& target = nodes[i].p;
    for (std::size_t p : near) {
        if (p == nodes[i].panel) {
            AddOwnPanel(i, sum, q, count);
            continue;
        }
        IntegrateNear(panels[p], target, [&](const Point3& y, const Point3& normal, double, double ds) {
            const double g = SingleLayer(target, y) * ds;
            for (std::size_t r = 0; r < count; ++r) sum[r] += g * fluxes[r](y, normal);
        });
    }
}

// The right sides of all fluxes in one pass over the node pairs (each logarithm taken once).
std::vector<std::vector<double>> NeumannProblem::RightSides(const std::vector<Flux>& fluxes) const {
    const auto& nodes = boundary_.Nodes();
    const auto& panels = boundary_.Panels();
    const std::size_t order = BoundaryPanels::kOrder, n = nodes.size(), count = fluxes.size();
    std::vector<double> q(n * count);  // q ds, the fluxes of a node side by side
    for (std::size_t j = 0; j < n; ++j)
        for (std::size_t r = 0; r < count; ++r)
            q[j * count + r] = fluxes[r](nodes[j].p, nodes[j].normal) * nodes[j].weight;
    std::vector<std::vector<double>> f(count, std::vector<double>(n, 0));
    if (fast_) {
        // Far: charges -q ds / 2 pi; near: the touching leaves' pairs by the nodes' rule, near panels
        // by their quadrature instead.
        for (std::size_t r = 0; r < count; ++r) {
            std::vector<double> charges(n);
            for (std::size_t j = 0; j < n; ++j) charges[j] = -q[j * count + r] / kTwoPi;
            f[r] = fast_->fmm.FarPotentials(charges, {});
        }
    }
    ParallelFor(
        n,
        [&](std::size_t begin, std::size_t end) {
            std::vector<double> sum(count);
            for (std::size_t i = begin; i < end; ++i) {
                const Point3& target = nodes[i].p;
                std::fill(sum.begin(), sum.end(), 0.0);
                const std::vector<std::size_t> near = PanelsNear(i);
                std::vector<char> isNear(fast_ ? 0 : panels.size(), 0);
                auto addNodes = [&](std::size_t j, double sign) {
                    const double g = sign * SingleLayer(target, nodes[j].p);
                    for (std::size_t r = 0; r < count; ++r) sum[r] += g * q[j * count + r];
                };
                if (fast_) {
                    for (std::size_t j : fast_->fmm.NearPoints(i))
                        if (j != i) addNodes(j, 1);
                    for (std::size_t p : near)
                        for (std::size_t j = p * order; j < (p + 1) * order; ++j)
                            if (j != i) addNodes(j, -1);
                } else {
                    for (std::size_t p : near) isNear[p] = 1;
                    for (std::size_t p = 0; p < panels.size(); ++p)
                        if (!isNear[p])
                            for (std::size_t j = p * order; j < (p + 1) * order; ++j) addNodes(j, 1);
                }
                AddNearPanels(i, near, fluxes, q, sum);
                for (std::size_t r = 0; r < count; ++r) f[r][i] += sum[r];
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
        solutions.push_back(Gmres([&](const std::vector<double>& u) { return Multiply(u); }, sides[r],
                                  r < guesses.size() ? guesses[r] : std::vector<double>{}));
    return solutions;
}

}  // namespace tgp
