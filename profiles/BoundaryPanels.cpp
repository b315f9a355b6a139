#include "profiles/BoundaryPanels.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tgp {

namespace {

// Complex arithmetic on x, y.
Point3 Times(const Point3& u, const Point3& v) {
    return {u.x * v.x - u.y * v.y, u.x * v.y + u.y * v.x, 0};
}
Point3 Unit(double angle) {
    return {std::cos(angle), std::sin(angle), 0};
}

// A vertex where the direction turns by more than this (radians) is a corner that panels are
// graded towards. A milder one (a polygon of more than 300 sides, a polyline drawn for a curve) is
// not: its singularity is weak, r^(pi / (pi ± turn)), and leaving it ungraded changes J by about
// 1E-11 for a corner of 0.02 in the middle of a rectangle's side, 1E-13 for each corner of a 400-gon
// (measured against graded boundaries; the change falls as the fourth power of the turn).
constexpr double kCornerTurn = 0.02;

Point3 Direction(const BoundaryPanel& s, double t) {
    const Point3 d = s.Derivative(t);
    return d * (1 / std::hypot(d.x, d.y));
}

}  // namespace

Point3 BoundaryPanel::At(double t) const {
    if (turn == 0) return a + (b - a) * t;
    return center + Times(Unit(turn * t), a - center);
}

Point3 BoundaryPanel::Derivative(double t) const {
    if (turn == 0) return b - a;
    const Point3 r = Times(Unit(turn * t), a - center);
    return Point3{-r.y, r.x, 0} * turn;
}

double BoundaryPanel::Length() const {
    const Point3 d = Derivative(t0);
    return std::hypot(d.x, d.y) * (t1 - t0);  // |P'| is constant along a line or an arc
}

bool BoundaryPanel::OnSegmentOf(const BoundaryPanel& other) const {
    return a == other.a && b == other.b && turn == other.turn;
}

bool BoundaryPanel::Near(const Point3& target) const {
    const double dx = middle.x - target.x, dy = middle.y - target.y;
    return dx * dx + dy * dy < 2.25 * length * length;
}

void GaussLegendre(int n, std::vector<double>& points, std::vector<double>& weights) {
    points.assign(static_cast<std::size_t>(n), 0);
    weights.assign(static_cast<std::size_t>(n), 0);
    for (int i = 0; i < n; ++i) {
        double x = std::cos(std::numbers::pi * (i + 0.75) / (n + 0.5)), derivative = 1;
        for (int iteration = 0; iteration < 100; ++iteration) {
            double p0 = 1, p1 = x;  // P_0, P_1, ... up to P_n by the three-term recurrence
            for (int k = 2; k <= n; ++k) {
                const double p2 = ((2 * k - 1) * x * p1 - (k - 1) * p0) / k;
                p0 = p1;
                p1 = p2;
            }
            derivative = n * (x * p1 - p0) / (x * x - 1);
            const double step = p1 / derivative;
            x -= step;
            if (std::fabs(step) < 1e-16) break;
        }
        points[static_cast<std::size_t>(i)] = -x;
        weights[static_cast<std::size_t>(i)] = 2 / ((1 - x * x) * derivative * derivative);
    }
}

namespace {

struct Rule {
    std::vector<double> points, weights;
};

const Rule& PanelRule() {
    static const Rule rule = [] {
        Rule r;
        GaussLegendre(BoundaryPanels::kOrder, r.points, r.weights);
        return r;
    }();
    return rule;
}

}  // namespace

const std::vector<double>& BoundaryPanels::GaussPoints() {
    return PanelRule().points;
}

const std::vector<double>& BoundaryPanels::GaussWeights() {
    return PanelRule().weights;
}

BoundaryPanels::BoundaryPanels(const std::vector<std::vector<LoopDLine>>& loops, const Point3& shift,
                               double base, int depth) {
    for (const auto& loop : loops) {
        std::vector<BoundaryPanel> segments;
        for (const LoopDLine& s : loop) {
            BoundaryPanel whole;
            whole.a = s.StartPoint() - shift;
            whole.b = s.EndPoint() - shift;
            whole.turn = 4 * std::atan(s.Bulge());
            if (whole.turn != 0) {
                const Point3 e = Unit(whole.turn), one{1, 0, 0};
                const Point3 numerator = whole.b - Times(e, whole.a), denominator = one - e;
                const double d = denominator.x * denominator.x + denominator.y * denominator.y;
                whole.center = Times(numerator, {denominator.x / d, -denominator.y / d, 0});
            }
            segments.push_back(whole);
        }
        const std::size_t n = segments.size();
        // How deep to grade at the vertex between two segments: the full depth where the boundary
        // turns away from the material (a re-entrant corner, where harmonic functions are singular),
        // half of it where it turns towards it (a convex corner, where they stay smooth but the
        // boundary data jump), none where it runs on.
        auto grading = [&](std::size_t before, std::size_t after) {
            const Point3 u = Direction(segments[before], 1), v = Direction(segments[after], 0);
            const double turn = std::atan2(u.x * v.y - u.y * v.x, u.x * v.x + u.y * v.y);
            return std::fabs(turn) <= kCornerTurn ? 0 : turn < 0 ? depth : std::max(1, depth / 2);
        };
        for (std::size_t k = 0; k < n; ++k)
            AddSegment(segments[k], grading((k + n - 1) % n, k), grading(k, (k + 1) % n), base);
    }
}

void BoundaryPanels::AddSegment(const BoundaryPanel& whole, int depthAtStart, int depthAtEnd, double base) {
    std::size_t pieces = static_cast<std::size_t>(std::ceil(whole.Length() / base));
    if (pieces < 1) pieces = 1;
    if (pieces == 1 && depthAtStart > 0 && depthAtEnd > 0) pieces = 2;
    const double step = 1.0 / static_cast<double>(pieces);
    for (std::size_t i = 0; i < pieces; ++i) {
        const double t0 = static_cast<double>(i) * step, t1 = i + 1 == pieces ? 1.0 : t0 + step;
        const int depth = i == 0 && depthAtStart > 0 ? depthAtStart : i + 1 == pieces ? depthAtEnd : 0;
        if (depth == 0) {
            AddPanel(whole, t0, t1);
            continue;
        }
        // Dyadic panels towards the corner: [0, h 2^-depth], ..., [h/4, h/2], [h/2, h].
        std::vector<double> cuts{0};
        for (int level = depth; level >= 1; --level) cuts.push_back(std::ldexp(1.0, -level));
        cuts.push_back(1);
        const bool atStart = i == 0 && depthAtStart > 0;
        for (std::size_t c = 0; c + 1 < cuts.size(); ++c) {
            if (atStart)
                AddPanel(whole, t0 + (t1 - t0) * cuts[c], t0 + (t1 - t0) * cuts[c + 1]);
            else
                AddPanel(whole, t1 - (t1 - t0) * cuts[cuts.size() - 1 - c],
                         t1 - (t1 - t0) * cuts[cuts.size() - 2 - c]);
        }
    }
}

void BoundaryPanels::AddPanel(const BoundaryPanel& whole, double t0, double t1) {
    BoundaryPanel panel = whole;
    panel.t0 = t0;
    panel.t1 = t1;
    panel.middle = panel.At((t0 + t1) / 2);
    panel.length = panel.Length();
    const std::size_t index = panels_.size();
    panels_.push_back(panel);
    const auto& points = GaussPoints();
    const auto& weights = GaussWeights();
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double t = t0 + (t1 - t0) * (points[i] + 1) / 2;
        const Point3 d = panel.Derivative(t);
        const double speed = std::hypot(d.x, d.y);
        nodes_.push_back(
            {panel.At(t), {d.y / speed, -d.x / speed, 0}, weights[i] * speed * (t1 - t0) / 2, index});
    }
}

std::array<double, BoundaryPanels::kOrder> BoundaryPanels::OwnLogarithmWeights(std::size_t node) const {
    const auto& x = GaussPoints();
    const std::size_t first = nodes_[node].panel * kOrder, own = node - first;
    const double half = panels_[nodes_[node].panel].length / 2;  // |dP/du|
    const double* logarithm = &LogarithmWeights()[own * kOrder];
    std::array<double, kOrder> weights{};
    for (std::size_t m = 0; m < kOrder; ++m) {
        const BoundaryNode& source = nodes_[first + m];
        const double dx = source.p.x - nodes_[node].p.x, dy = source.p.y - nodes_[node].p.y;
        const double ratio = m == own ? half : std::sqrt(dx * dx + dy * dy) / std::fabs(x[own] - x[m]);
        weights[m] = logarithm[m] * half + std::log(ratio) * source.weight;
    }
    return weights;
}

std::vector<double> BoundaryPanels::Interpolated(const BoundaryPanels& coarser,
                                                 const std::vector<double>& values) const {
    const auto& x = GaussPoints();
    const auto& wide = coarser.panels_;
    std::vector<double> result(nodes_.size()), basis;
    std::size_t c = 0;  // both run along the loops in the same order
    for (std::size_t p = 0; p < panels_.size(); ++p) {
        const BoundaryPanel& panel = panels_[p];
        for (std::size_t m = 0; m < kOrder; ++m) {
            const double t = panel.t0 + (panel.t1 - panel.t0) * (x[m] + 1) / 2;
            while (c + 1 < wide.size() && !(wide[c].OnSegmentOf(panel) && t <= wide[c].t1)) ++c;
            const BoundaryPanel& w = wide[c];
            PanelBasisAt(2 * (t - w.t0) / (w.t1 - w.t0) - 1, basis);
            double value = 0;
            for (std::size_t k = 0; k < kOrder; ++k) value += basis[k] * values[c * kOrder + k];
            result[p * kOrder + m] = value;
        }
    }
    return result;
}

const std::vector<double>& LogarithmWeights() {
    static const std::vector<double> table = [] {
        const auto& x = BoundaryPanels::GaussPoints();
        const auto& w = BoundaryPanels::GaussWeights();
        const std::size_t n = x.size();
        std::vector<double> weights(n * n, 0), basis;
        // Each side of x_i in pieces halving towards it, down to 2^-40 of the side: every piece is as far
        // from x_i as it is long, where Gauss-Legendre integrates ln|x_i - u| L_m to rounding. On the
        // last ε, L_m is L_m(x_i): its share is δ_im ε (ln ε - 1).
        for (std::size_t i = 0; i < n; ++i) {
            for (const double end : {-1.0, 1.0}) {
                double far = end;
                for (int level = 0; level < 40; ++level) {
                    const double near = x[i] + (far - x[i]) / 2;
                    for (std::size_t k = 0; k < n; ++k) {
                        const double u = near + (far - near) * (x[k] + 1) / 2,
                                     du = w[k] * std::fabs(far - near) / 2;
                        PanelBasisAt(u, basis);
                        for (std::size_t m = 0; m < n; ++m)
                            weights[i * n + m] += std::log(std::fabs(x[i] - u)) * basis[m] * du;
                    }
                    far = near;
                }
                const double epsilon = std::fabs(far - x[i]);
                weights[i * n + i] += epsilon * (std::log(epsilon) - 1);
            }
        }
        return weights;
    }();
    return table;
}

const std::vector<double>& IndefiniteWeights() {
    static const std::vector<double> table = [] {
        const auto& x = BoundaryPanels::GaussPoints();
        const auto& w = BoundaryPanels::GaussWeights();
        const std::size_t n = x.size();
        std::vector<double> weights(n * n, 0), basis;
        for (std::size_t m = 0; m < n; ++m) {
            const double half = (x[m] + 1) / 2;  // of [-1, x_m], where the same rule is exact
            for (std::size_t g = 0; g < n; ++g) {
                PanelBasisAt(-1 + half * (x[g] + 1), basis);
                for (std::size_t k = 0; k < n; ++k) weights[m * n + k] += half * w[g] * basis[k];
            }
        }
        return weights;
    }();
    return table;
}

void PanelBasisAt(double u, std::vector<double>& basis) {
    static const std::vector<double> barycentric = [] {
        const auto& x = BoundaryPanels::GaussPoints();
        std::vector<double> w(x.size(), 1.0);
        for (std::size_t m = 0; m < x.size(); ++m)
            for (std::size_t k = 0; k < x.size(); ++k)
                if (k != m) w[m] /= x[m] - x[k];
        return w;
    }();
    const auto& x = BoundaryPanels::GaussPoints();
    basis.assign(x.size(), 0);
    double sum = 0;
    for (std::size_t m = 0; m < x.size(); ++m) {
        if (u == x[m]) {
            basis.assign(x.size(), 0);
            basis[m] = 1;
            return;
        }
        basis[m] = barycentric[m] / (u - x[m]);
        sum += basis[m];
    }
    for (double& b : basis) b /= sum;
}

}  // namespace tgp
