#include "geometry/Spline.h"

#include <algorithm>
#include <cmath>

namespace tgp {

namespace {

// Clamped uniform knots for n control points of the given degree.
std::vector<double> ClampedKnots(std::size_t n, int degree) {
    std::vector<double> knots;
    const std::size_t p = static_cast<std::size_t>(degree);
    for (std::size_t i = 0; i < n + p + 1; ++i) {
        knots.push_back(i <= p ? 0.0 : i >= n ? static_cast<double>(n - p) : static_cast<double>(i - p));
    }
    return knots;
}

class Curve {
  public:
    explicit Curve(const SplineData& s)
        : p_(s.degree), control_(s.control), weights_(s.weights), knots_(s.knots) {
        const std::size_t n = control_.size();
        if (weights_.size() != n) weights_.assign(n, 1.0);
        const bool ordered = std::is_sorted(knots_.begin(), knots_.end());
        if (knots_.size() != n + static_cast<std::size_t>(p_) + 1 || !ordered) knots_ = ClampedKnots(n, p_);
    }

    double First() const { return knots_[static_cast<std::size_t>(p_)]; }
    double Last() const { return knots_[control_.size()]; }
    // The distinct knots within the domain, ends included.
    std::vector<double> Breaks() const {
        std::vector<double> breaks;
        for (std::size_t i = static_cast<std::size_t>(p_); i <= control_.size(); ++i) {
            if (breaks.empty() || knots_[i] > breaks.back()) breaks.push_back(knots_[i]);
        }
        return breaks;
    }

    // de Boor's algorithm on the weighted control points.
    Point3 At(double t) const {
        const std::size_t n = control_.size(), p = static_cast<std::size_t>(p_);
        std::size_t k = p;  // the span: knots_[k] <= t < knots_[k + 1], the last one for t at the end
        while (k + 1 < n && knots_[k + 1] <= t) ++k;
        while (k > p && knots_[k] == knots_[k + 1]) --k;
        std::vector<Point3> d(p + 1);  // homogeneous: x w, y w, w
        for (std::size_t j = 0; j <= p; ++j) {
            const std::size_t i = k - p + j;
            d[j] = {control_[i][0] * weights_[i], control_[i][1] * weights_[i], weights_[i]};
        }
        for (std::size_t r = 1; r <= p; ++r) {
            for (std::size_t j = p; j >= r; --j) {
                const std::size_t i = k - p + j;
                const double span = knots_[i + p + 1 - r] - knots_[i];
                const double a = span == 0 ? 0 : (t - knots_[i]) / span;
                for (int c = 0; c < 3; ++c)
                    d[j][static_cast<std::size_t>(c)] = (1 - a) * d[j - 1][static_cast<std::size_t>(c)] +
                                                        a * d[j][static_cast<std::size_t>(c)];
            }
        }
        return {d[p][0] / d[p][2], d[p][1] / d[p][2]};
    }

  private:
    int p_;
    std::vector<Point3> control_;
    std::vector<double> weights_;
    std::vector<double> knots_;
};

double Gap(const Point3& a, const Point3& b, const Point3& m) {
    return std::hypot(m[0] - (a[0] + b[0]) / 2, m[1] - (a[1] + b[1]) / 2);
}

void Refine(const Curve& curve, double t0, double t1, const Point3& a, const Point3& b, double tolerance,
            int depth, std::vector<Point3>& out) {
    const double tm = (t0 + t1) / 2;
    const Point3 m = curve.At(tm);
    if (depth < 20 && Gap(a, b, m) > tolerance) {
        Refine(curve, t0, tm, a, m, tolerance, depth + 1, out);
        Refine(curve, tm, t1, m, b, tolerance, depth + 1, out);
        return;
    }
    out.push_back(b);
}

}  // namespace

std::vector<Point3> FlattenSpline(const SplineData& spline) {
    if (spline.control.size() < 2 || spline.degree < 1 || spline.degree > 11 ||
        spline.control.size() <= static_cast<std::size_t>(spline.degree)) {
        return spline.fit.size() >= 2 ? spline.fit : std::vector<Point3>{};
    }
    double xmin = HUGE_VAL, ymin = HUGE_VAL, xmax = -HUGE_VAL, ymax = -HUGE_VAL;
    for (const Point3& c : spline.control) {
        xmin = std::min(xmin, c[0]);
        xmax = std::max(xmax, c[0]);
        ymin = std::min(ymin, c[1]);
        ymax = std::max(ymax, c[1]);
    }
    const double tolerance = kSplineFlatness * std::hypot(xmax - xmin, ymax - ymin);
    const Curve curve(spline);
    const std::vector<double> breaks = curve.Breaks();
    std::vector<Point3> out{curve.At(curve.First())};
    for (std::size_t i = 1; i < breaks.size(); ++i) {
        constexpr int kPieces = 4;
        for (int k = 0; k < kPieces; ++k) {
            const double t0 = breaks[i - 1] + (breaks[i] - breaks[i - 1]) * k / kPieces;
            const double t1 = k + 1 == kPieces
                                  ? breaks[i]
                                  : breaks[i - 1] + (breaks[i] - breaks[i - 1]) * (k + 1) / kPieces;
            Refine(curve, t0, t1, out.back(), curve.At(t1), tolerance, 0, out);
        }
    }
    return out;
}

}  // namespace tgp
