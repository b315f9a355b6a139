#include "geometry/LaplaceFmm.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "core/ParallelFor.h"

namespace tgp {

namespace {

using Complex = LaplaceFmm::Complex;

constexpr int kDeepest = 20;  // levels of the Morton codes: boxes down to 2^-20 of the root
// Boxes handed to one thread at least: fewer cost more in threads than they save.
constexpr std::size_t kBoxesAPart = 16;

std::uint64_t Spread(std::uint64_t v) {  // the bits of v at the even places
    std::uint64_t x = v & 0xFFFFFFFF;
    x = (x | (x << 16)) & 0x0000FFFF0000FFFFULL;
    x = (x | (x << 8)) & 0x00FF00FF00FF00FFULL;
    x = (x | (x << 4)) & 0x0F0F0F0F0F0F0F0FULL;
    x = (x | (x << 2)) & 0x3333333333333333ULL;
    x = (x | (x << 1)) & 0x5555555555555555ULL;
    return x;
}

std::uint64_t Gather(std::uint64_t x) {  // the inverse of Spread
    x &= 0x5555555555555555ULL;
    x = (x | (x >> 1)) & 0x3333333333333333ULL;
    x = (x | (x >> 2)) & 0x0F0F0F0F0F0F0F0FULL;
    x = (x | (x >> 4)) & 0x00FF00FF00FF00FFULL;
    x = (x | (x >> 8)) & 0x0000FFFF0000FFFFULL;
    x = (x | (x >> 16)) & 0xFFFFFFFFULL;
    return x;
}

std::uint64_t Code(std::uint64_t ix, std::uint64_t iy) {
    return Spread(ix) | (Spread(iy) << 1);
}

}  // namespace

LaplaceFmm::LaplaceFmm(const std::vector<Complex>& points, int terms) : terms_(terms) {
    const int n = 2 * terms + 1;
    binomial_.assign(static_cast<std::size_t>(n * n), 0);
    for (int i = 0; i < n; ++i) {
        binomial_[static_cast<std::size_t>(i * n)] = 1;
        for (int k = 1; k <= i; ++k)
            binomial_[static_cast<std::size_t>(i * n + k)] =
                binomial_[static_cast<std::size_t>((i - 1) * n + k - 1)] +
                (k < i ? binomial_[static_cast<std::size_t>((i - 1) * n + k)] : 0);
    }
    BuildTree(points);
    ListInteractions();
}

void LaplaceFmm::BuildTree(const std::vector<Complex>& points) {
    double xmin = 0, xmax = 0, ymin = 0, ymax = 0;
    if (!points.empty()) {
        xmin = xmax = points[0].real();
        ymin = ymax = points[0].imag();
    }
    for (const Complex& z : points) {
        xmin = std::min(xmin, z.real());
        xmax = std::max(xmax, z.real());
        ymin = std::min(ymin, z.imag());
        ymax = std::max(ymax, z.imag());
    }
    origin_ = {xmin, ymin};
    size_ = std::max({xmax - xmin, ymax - ymin, 1e-300}) * (1 + 1e-12);
    const double cells = std::ldexp(1.0, kDeepest);
    auto cell = [&](double u) {
        return static_cast<std::uint64_t>(std::clamp(std::floor(u * cells), 0.0, cells - 1));
    };
    std::vector<std::uint64_t> codes(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Complex u = (points[i] - origin_) / size_;
        codes[i] = Code(cell(u.real()), cell(u.imag()));
    }
    order_.resize(points.size());
    std::iota(order_.begin(), order_.end(), std::size_t{0});
    std::stable_sort(order_.begin(), order_.end(),
                     [&](std::size_t a, std::size_t b) { return codes[a] < codes[b]; });
    inverse_.resize(points.size());
    for (std::size_t k = 0; k < order_.size(); ++k) {
        sorted_.push_back((points[order_[k]] - origin_) / size_);
        codes_.push_back(codes[order_[k]]);
        inverse_[order_[k]] = k;
    }
    depth_ = static_cast<int>(ChooseDepth());
    leafOf_.resize(points.size());
    levels_.assign(static_cast<std::size_t>(depth_) + 1, {});
    for (int level = 0; level <= depth_; ++level) {
        const int shift = 2 * (kDeepest - level);
        auto& boxes = levels_[static_cast<std::size_t>(level)];
        for (std::size_t i = 0; i < codes_.size(); ++i) {
            const std::uint64_t key = codes_[i] >> shift;
            if (boxes.empty() || boxes.back().key != key) {
                if (!boxes.empty()) boxes.back().end = i;
                boxes.push_back({key, i, i, {}, {}, 0});
            }
        }
        if (!boxes.empty()) boxes.back().end = codes_.size();
        if (level == depth_)
            for (std::size_t b = 0; b < boxes.size(); ++b)
                for (std::size_t k = boxes[b].begin; k < boxes[b].end; ++k) leafOf_[order_[k]] = b;
        if (level > 0) {  // each box's parent: the boxes of both levels are in Morton order
            const auto& above = levels_[static_cast<std::size_t>(level) - 1];
            std::size_t p = 0;
            for (Box& box : boxes) {
                while (above[p].key != box.key >> 2) ++p;
                box.parent = p;
            }
        }
    }
}

// The depth at which the direct sums between touching leaves (their points' squares) and the
// expansions of all boxes (about 1.5 terms² each, in units of one direct pair) cost least.
std::size_t LaplaceFmm::ChooseDepth() const {
    const double boxCost = 1.5 * (terms_ + 1) * (terms_ + 1);
    double best = 0, boxes = 0;
    std::size_t chosen = 0;
    for (int level = 0; level <= kDeepest; ++level) {
        const int shift = 2 * (kDeepest - level);
        double pairs = 0, run = 0, count = 0;
        for (std::size_t i = 0; i < codes_.size(); ++i) {
            if (i > 0 && codes_[i] >> shift != codes_[i - 1] >> shift) {
                pairs += run * run;
                run = 0;
                ++count;
            }
            ++run;
        }
        pairs += run * run;
        count += codes_.empty() ? 0 : 1;
        if (level >= 2) boxes += count;
        const double cost = 3 * pairs + boxCost * boxes;
        if (level == 0 || cost < best) {
            best = cost;
            chosen = static_cast<std::size_t>(level);
        }
        if (pairs <= count) break;  // a point a leaf: deeper only adds boxes
    }
    return chosen;
}

long LaplaceFmm::Find(int level, std::uint64_t ix, std::uint64_t iy) const {
    const auto& boxes = levels_[static_cast<std::size_t>(level)];
    const std::uint64_t key = Code(ix, iy);
    const auto it = std::lower_bound(boxes.begin(), boxes.end(), key,
                                     [](const Box& b, std::uint64_t k) { return b.key < k; });
    return it != boxes.end() && it->key == key ? it - boxes.begin() : -1;
}

LaplaceFmm::Complex LaplaceFmm::Centre(int level, const Box& box) const {
    const double side = std::ldexp(1.0, -level);
    return {(static_cast<double>(Gather(box.key)) + 0.5) * side,
            (static_cast<double>(Gather(box.key >> 1)) + 0.5) * side};
}

// Far: the children of the parent's neighbours that do not touch the box. Near: the touching leaves.
void LaplaceFmm::ListInteractions() {
    const auto limit = static_cast<long>(1) << depth_;
    for (int level = 2; level <= depth_; ++level) {
        for (Box& box : levels_[static_cast<std::size_t>(level)]) {
            const auto bx = static_cast<long>(Gather(box.key)), by = static_cast<long>(Gather(box.key >> 1));
            const long cells = static_cast<long>(1) << level;
            for (long cx = (bx / 2 - 1) * 2; cx <= (bx / 2 + 1) * 2 + 1; ++cx) {
                for (long cy = (by / 2 - 1) * 2; cy <= (by / 2 + 1) * 2 + 1; ++cy) {
                    if (cx < 0 || cy < 0 || cx >= cells || cy >= cells) continue;
                    if (std::labs(cx - bx) <= 1 && std::labs(cy - by) <= 1) continue;
                    const long found =
                        Find(level, static_cast<std::uint64_t>(cx), static_cast<std::uint64_t>(cy));
                    if (found >= 0) box.far.push_back(static_cast<std::size_t>(found));
                }
            }
        }
    }
    for (Box& box : levels_[static_cast<std::size_t>(depth_)]) {
        const auto bx = static_cast<long>(Gather(box.key)), by = static_cast<long>(Gather(box.key >> 1));
        for (long cx = bx - 1; cx <= bx + 1; ++cx) {
            for (long cy = by - 1; cy <= by + 1; ++cy) {
                if (cx < 0 || cy < 0 || cx >= limit || cy >= limit) continue;
                const long found =
                    Find(depth_, static_cast<std::uint64_t>(cx), static_cast<std::uint64_t>(cy));
                if (found >= 0) box.near.push_back(static_cast<std::size_t>(found));
            }
        }
    }
}

std::vector<std::size_t> LaplaceFmm::NearPoints(std::size_t i) const {
    const auto& leaves = levels_[static_cast<std::size_t>(depth_)];
    std::vector<std::size_t> points;
    for (std::size_t other : leaves[leafOf_[i]].near)
        for (std::size_t j = leaves[other].begin; j < leaves[other].end; ++j) points.push_back(order_[j]);
    return points;
}

std::vector<double> LaplaceFmm::Potentials(const std::vector<double>& charges,
                                           const std::vector<Complex>& dipoles,
                                           std::vector<Complex>* derivatives) const {
    std::vector<double> phi = FarPotentials(charges, dipoles, derivatives);
    ParallelFor(
        phi.size(),
        [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) {
                const Complex zi = sorted_[inverse_[i]];
                for (std::size_t j : NearPoints(i)) {
                    if (j == i) continue;
                    const Complex delta = (zi - sorted_[inverse_[j]]) * size_, inverse = 1.0 / delta;
                    if (!charges.empty()) phi[i] += charges[j] * std::log(std::norm(delta)) / 2;
                    if (!dipoles.empty()) phi[i] += (dipoles[j] * inverse).real();
                    if (!derivatives) continue;
                    if (!charges.empty()) (*derivatives)[i] += charges[j] * inverse;
                    if (!dipoles.empty()) (*derivatives)[i] -= dipoles[j] * inverse * inverse;
                }
            }
        },
        256);
    return phi;
}

std::vector<double> LaplaceFmm::FarPotentials(const std::vector<double>& charges,
                                              const std::vector<Complex>& dipoles,
                                              std::vector<Complex>* derivatives) const {
    const std::size_t n = sorted_.size(), p = static_cast<std::size_t>(terms_) + 1;
    const std::size_t width = 2 * static_cast<std::size_t>(terms_) + 1;
    auto choose = [&](std::size_t a, std::size_t b) { return binomial_[a * width + b]; };
    // In the unit square: ln|D Δ| = ln|Δ| + ln D, d / (D Δ) = (d / D) / Δ.
    std::vector<double> c(n, 0);
    std::vector<Complex> d(n, 0);
    for (std::size_t i = 0; i < n; ++i) {
        if (!charges.empty()) c[i] = charges[order_[i]];
        if (!dipoles.empty()) d[i] = dipoles[order_[i]] / size_;
    }
    std::vector<std::vector<Complex>> multipole(levels_.size()), local(levels_.size());
    for (std::size_t l = 0; l < levels_.size(); ++l) {
        multipole[l].assign(levels_[l].size() * p, 0);
        local[l].assign(levels_[l].size() * p, 0);
    }
    const int deepest = depth_;
    const auto& leaves = levels_[static_cast<std::size_t>(deepest)];
    // Sources to the leaves' multipole expansions a_0 log(z - c) + Σ a_k / (z - c)^k.
    ParallelFor(
        leaves.size(),
        [&](std::size_t begin, std::size_t end) {
            for (std::size_t b = begin; b < end; ++b) {
                Complex* a = &multipole[static_cast<std::size_t>(deepest)][b * p];
                const Complex centre = Centre(deepest, leaves[b]);
                for (std::size_t j = leaves[b].begin; j < leaves[b].end; ++j) {
                    const Complex t = sorted_[j] - centre;
                    Complex power = 1;
                    a[0] += c[j];
                    for (std::size_t k = 1; k < p; ++k) {
                        a[k] += d[j] * power;
                        power *= t;
                        a[k] -= c[j] * power / static_cast<double>(k);
                    }
                }
            }
        },
        kBoxesAPart);
    // Upwards: each child's expansion shifted to its parent's centre.
    for (int level = deepest; level > 2; --level) {
        const auto& boxes = levels_[static_cast<std::size_t>(level)];
        for (std::size_t b = 0; b < boxes.size(); ++b) {
            const Complex* a = &multipole[static_cast<std::size_t>(level)][b * p];
            Complex* out = &multipole[static_cast<std::size_t>(level) - 1][boxes[b].parent * p];
            const Complex z0 =
                Centre(level, boxes[b]) -
                Centre(level - 1, levels_[static_cast<std::size_t>(level) - 1][boxes[b].parent]);
            out[0] += a[0];
            std::vector<Complex> powers(p, 1);
            for (std::size_t k = 1; k < p; ++k) powers[k] = powers[k - 1] * z0;
            for (std::size_t l = 1; l < p; ++l) {
                Complex sum = -a[0] * powers[l] / static_cast<double>(l);
                for (std::size_t k = 1; k <= l; ++k) sum += a[k] * powers[l - k] * choose(l - 1, k - 1);
                out[l] += sum;
            }
        }
    }
    // Across: far boxes' multipole expansions to local ones Σ b_l (z - c)^l.
    for (int level = 2; level <= deepest; ++level) {
        const auto& boxes = levels_[static_cast<std::size_t>(level)];
        ParallelFor(
            boxes.size(),
            [&](std::size_t begin, std::size_t end) {
                std::vector<Complex> t(p);
                for (std::size_t b = begin; b < end; ++b) {
                    Complex* out = &local[static_cast<std::size_t>(level)][b * p];
                    const Complex centre = Centre(level, boxes[b]);
                    for (std::size_t f : boxes[b].far) {
                        const Complex* a = &multipole[static_cast<std::size_t>(level)][f * p];
                        const Complex z0 = Centre(level, boxes[f]) - centre, inverse = 1.0 / z0;
                        Complex power = 1;  // (-1/z0)^k
                        out[0] += a[0] * std::log(-z0);
                        for (std::size_t k = 1; k < p; ++k) {
                            power *= -inverse;
                            t[k] = a[k] * power;
                            out[0] += t[k];
                        }
                        Complex scale = 1;  // 1/z0^l
                        for (std::size_t l = 1; l < p; ++l) {
                            scale *= inverse;
                            Complex sum = -a[0] / static_cast<double>(l);
                            for (std::size_t k = 1; k < p; ++k) sum += t[k] * choose(l + k - 1, k - 1);
                            out[l] += sum * scale;
                        }
                    }
                }
            },
            kBoxesAPart);
        if (level == deepest) break;
        // Downwards: the local expansion shifted to each child's centre (a Taylor shift).
        const auto& children = levels_[static_cast<std::size_t>(level) + 1];
        for (std::size_t b = 0; b < children.size(); ++b) {
            std::vector<Complex> shifted(&local[static_cast<std::size_t>(level)][children[b].parent * p],
                                         &local[static_cast<std::size_t>(level)][children[b].parent * p] + p);
            const Complex z1 = Centre(level + 1, children[b]) - Centre(level, boxes[children[b].parent]);
            for (std::size_t j = 0; j + 1 < p; ++j)
                for (std::size_t k = p - 1; k-- > j;) shifted[k] += z1 * shifted[k + 1];
            Complex* out = &local[static_cast<std::size_t>(level) + 1][b * p];
            for (std::size_t k = 0; k < p; ++k) out[k] += shifted[k];
        }
    }
    // At the points: the leaf's local expansion and the touching leaves' points directly.
    std::vector<double> sortedPhi(n, 0);
    std::vector<Complex> sortedDerivative(derivatives ? n : 0);
    double total = 0;
    for (double charge : c) total += charge;
    const double logSize = std::log(size_);
    ParallelFor(
        leaves.size(),
        [&](std::size_t begin, std::size_t end) {
            for (std::size_t b = begin; b < end; ++b) {
                const Complex* coefficients = &local[static_cast<std::size_t>(deepest)][b * p];
                const Complex centre = Centre(deepest, leaves[b]);
                double nearCharge = 0;  // ln D of every charge outside the touching leaves
                for (std::size_t other : leaves[b].near)
                    for (std::size_t j = leaves[other].begin; j < leaves[other].end; ++j) nearCharge += c[j];
                for (std::size_t i = leaves[b].begin; i < leaves[b].end; ++i) {
                    const Complex w = sorted_[i] - centre;
                    Complex value = coefficients[p - 1];
                    for (std::size_t k = p - 1; k-- > 0;) value = value * w + coefficients[k];
                    sortedPhi[i] = (deepest >= 2 ? value.real() : 0) + logSize * (total - nearCharge);
                    if (!derivatives || deepest < 2) continue;
                    Complex slope = coefficients[p - 1] * static_cast<double>(p - 1);
                    for (std::size_t k = p - 1; k-- > 1;)
                        slope = slope * w + coefficients[k] * static_cast<double>(k);
                    sortedDerivative[i] = slope / size_;
                }
            }
        },
        kBoxesAPart);
    std::vector<double> phi(n);
    for (std::size_t i = 0; i < n; ++i) phi[order_[i]] = sortedPhi[i];
    if (derivatives) {
        derivatives->assign(n, 0);
        for (std::size_t i = 0; i < n; ++i) (*derivatives)[order_[i]] = sortedDerivative[i];
    }
    return phi;
}

}  // namespace tgp
