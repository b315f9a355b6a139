#include "geometry/GaussElimination.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "core/Error.h"

namespace tgp {

namespace {

// Two doubles in one SSE2 register (generic code on other targets); each lane rounds on its own,
// exactly as the scalar operations do.
typedef double Pair __attribute__((vector_size(16)));

Pair Load(const double* p) {
    Pair v;
    std::memcpy(&v, p, sizeof v);
    return v;
}

void Store(double* p, Pair v) {
    std::memcpy(p, &v, sizeof v);
}

constexpr int kTileRows = 4;
constexpr int kTileColumns = 8;
constexpr int kColumnBlock = 256;  // columns of the pivot rows packed at a time (fits the L2 cache)

// A tile of four rows by four columns receives `steps` updates, held in registers meanwhile:
// c -= f * u per step, in step order. rows[r] points at the tile's first column in row r; f holds
// the four rows' multipliers (four a step) and u the pivot rows' values (`stride` a step).
void UpdateTile4(double* const rows[kTileRows], const double* f, const double* u, int stride, int steps) {
    Pair c[kTileRows][2];
    for (int r = 0; r < kTileRows; ++r) {
        c[r][0] = Load(rows[r]);
        c[r][1] = Load(rows[r] + 2);
    }
    for (int s = 0; s < steps; ++s, f += kTileRows, u += stride) {
        const Pair u0 = Load(u), u1 = Load(u + 2);
        for (int r = 0; r < kTileRows; ++r) {
            const Pair fr = {f[r], f[r]};
            c[r][0] = c[r][0] - fr * u0;
            c[r][1] = c[r][1] - fr * u1;
        }
    }
    for (int r = 0; r < kTileRows; ++r) {
        Store(rows[r], c[r][0]);
        Store(rows[r] + 2, c[r][1]);
    }
}

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
// The same with four doubles a register, for processors with AVX: a multiplication and a
// subtraction per lane, each rounded, exactly as above (no fused multiply-add).
__attribute__((target("avx"))) void UpdateTile8Avx(double* const rows[kTileRows], const double* f,
                                                   const double* u, int steps) {
    typedef double Quad __attribute__((vector_size(32)));
    Quad c[kTileRows][2];
    for (int r = 0; r < kTileRows; ++r) {
        std::memcpy(&c[r][0], rows[r], sizeof(Quad));
        std::memcpy(&c[r][1], rows[r] + 4, sizeof(Quad));
    }
    for (int s = 0; s < steps; ++s, f += kTileRows, u += kTileColumns) {
        Quad u0, u1;
        std::memcpy(&u0, u, sizeof u0);
        std::memcpy(&u1, u + 4, sizeof u1);
        for (int r = 0; r < kTileRows; ++r) {
            const Quad fr = {f[r], f[r], f[r], f[r]};
            c[r][0] = c[r][0] - fr * u0;
            c[r][1] = c[r][1] - fr * u1;
        }
    }
    for (int r = 0; r < kTileRows; ++r) {
        std::memcpy(rows[r], &c[r][0], sizeof(Quad));
        std::memcpy(rows[r] + 4, &c[r][1], sizeof(Quad));
    }
}

bool HasAvx() {
    static const bool avx = __builtin_cpu_supports("avx");
    return avx;
}
#else
void UpdateTile8Avx(double* const*, const double*, const double*, int) {}
bool HasAvx() {
    return false;
}
#endif

// Four rows by eight columns: one AVX tile, or two SSE2 ones.
void UpdateTile(double* const rows[kTileRows], const double* f, const double* u, int steps, bool avx) {
    if (avx) {
        UpdateTile8Avx(rows, f, u, steps);
        return;
    }
    double* right[kTileRows];
    for (int r = 0; r < kTileRows; ++r) right[r] = rows[r] + 4;
    UpdateTile4(rows, f, u, kTileColumns, steps);
    UpdateTile4(right, f, u + 4, kTileColumns, steps);
}

}  // namespace

GaussElimination::GaussElimination(double* a, int n, int columns, std::vector<double>* y)
    : GaussElimination(a, n, columns, y, kMachineBlocking) {}

GaussElimination::GaussElimination(double* a, int n, int columns, std::vector<double>* y, Blocking blocking)
    : a_(a), n_(n), columns_(columns), y_(y), blocking_(blocking) {}

GaussElimination::Result GaussElimination::Run() {
    int sign = 1;
    const bool panels = n_ >= blocking_.fromSize && blocking_.panelWidth > 0 && columns_ >= n_ &&
                        (!y_ || y_->size() >= static_cast<std::size_t>(n_));
    if (panels) {
        if (!RunPanels(sign)) return {0.0, false};
        return {DiagonalProduct(sign), true};
    }
    for (int k = 0; k + 1 < n_; ++k) {
        if (Pivot(k) == 0) {
            if (!ExchangeWithLowerRow(k)) return {0.0, false};
            sign = -sign;
        }
        EliminateBelow(k);
    }
    return {DiagonalProduct(sign), true};
}

double& GaussElimination::Y(int i) const {
    if (static_cast<std::size_t>(i) >= y_->size()) throw Error::SubscriptOutOfRange();
    return (*y_)[i];
}

void GaussElimination::RequireAllColumns() const {
    if (columns_ < n_) throw Error::SubscriptOutOfRange();
}

double GaussElimination::Pivot(int k) const {
    if (k >= columns_) throw Error::SubscriptOutOfRange();
    return Row(k)[k];
}

// Swaps row k (with its panel multipliers, if any) with the first lower row that has a non-zero
// entry in column k.
bool GaussElimination::ExchangeWithLowerRow(int k) {
    for (int p = k + 1; p < n_; ++p) {
        if (Row(p)[k] == 0) continue;
        RequireAllColumns();
        std::swap_ranges(Row(k), Row(k) + n_, Row(p));
        if (y_) std::swap(Y(k), Y(p));
        if (!multipliers_.empty()) {
            const std::size_t width = static_cast<std::size_t>(blocking_.panelWidth);
            std::swap_ranges(multipliers_.begin() + k * width, multipliers_.begin() + (k + 1) * width,
                             multipliers_.begin() + p * width);
            std::swap_ranges(leftAlone_.begin() + k * width, leftAlone_.begin() + (k + 1) * width,
                             leftAlone_.begin() + p * width);
        }
        return true;
    }
    return false;
}

void GaussElimination::EliminateBelow(int k) {
    const double* pivotRow = Row(k);
    for (int i = k + 1; i < n_; ++i) {
        double* row = Row(i);
        if (row[k] == 0) continue;
        RequireAllColumns();
        const double f = row[k] / pivotRow[k];
        // From column k on, so the entry below the pivot keeps its rounding residue.
        for (int j = k; j < n_; ++j) row[j] -= f * pivotRow[j];
        if (y_) Y(i) -= f * Y(k);
    }
}

double GaussElimination::DiagonalProduct(int sign) const {
    RequireAllColumns();
    double product = sign;
    for (int m = 0; m < n_; ++m) product *= Row(m)[m];
    return product;
}

// --- Panels ---------------------------------------------------------------------------------------

bool GaussElimination::RunPanels(int& sign) {
    const int width = blocking_.panelWidth;
    multipliers_.assign(static_cast<std::size_t>(n_) * width, 0.0);
    leftAlone_.assign(static_cast<std::size_t>(n_) * width, 0);
    for (int k0 = 0; k0 + 1 < n_; k0 += width) {
        const int end = std::min(k0 + width, n_);
        const int last = std::min(end, n_ - 1);
        if (!EliminatePanel(k0, end, last, sign)) return false;
        if (end < n_) UpdateTrailingColumns(k0, end, last - k0);
    }
    return true;
}

// The plain steps k0 .. last - 1, each on the panel's columns [k0, end) only; the multipliers are
// kept for the columns right of the panel.
bool GaussElimination::EliminatePanel(int k0, int end, int last, int& sign) {
    const std::size_t width = static_cast<std::size_t>(blocking_.panelWidth);
    for (int k = k0; k < last; ++k) {
        if (Row(k)[k] == 0) {
            if (!ExchangeWithLowerRow(k)) return false;
            sign = -sign;
        }
        const double* pivotRow = Row(k);
        const std::size_t step = static_cast<std::size_t>(k - k0);
        for (int i = k + 1; i < n_; ++i) {
            double* row = Row(i);
            const std::size_t at = i * width + step;
            leftAlone_[at] = row[k] == 0;
            if (leftAlone_[at]) continue;
            const double f = row[k] / pivotRow[k];
            multipliers_[at] = f;
            for (int j = k; j < end; ++j) row[j] -= f * pivotRow[j];
            if (y_) (*y_)[i] -= f * (*y_)[k];
        }
    }
    return true;
}

// The panel's own rows, columns [from, to): row i takes the steps before it, so that it is final
// when it serves as the pivot row of its step.
void GaussElimination::UpdatePanelRows(int k0, int end, int steps, int from, int to) {
    for (int s = 0; s < steps; ++s) {
        for (int i = k0 + s + 1; i < end; ++i) {
            const std::size_t at = static_cast<std::size_t>(i) * blocking_.panelWidth + s;
            if (leftAlone_[at]) continue;
            const double f = multipliers_[at];
            const double* pivotRow = Row(k0 + s);
            double* row = Row(i);
            for (int j = from; j < to; ++j) row[j] -= f * pivotRow[j];
        }
    }
}

// Row i, columns [from, to): the panel's steps in order, skipping those that left the row alone.
void GaussElimination::UpdateRowRange(int i, int k0, int steps, int from, int to) {
    double* row = Row(i);
    for (int s = 0; s < steps; ++s) {
        const std::size_t at = static_cast<std::size_t>(i) * blocking_.panelWidth + s;
        if (leftAlone_[at]) continue;
        const double f = multipliers_[at];
        const double* pivotRow = Row(k0 + s);
        for (int j = from; j < to; ++j) row[j] -= f * pivotRow[j];
    }
}

// Columns [end, n) of every row below the panel's first: block by block of columns, the panel's own
// rows first (they are the pivot rows), then the rows below the panel, four rows by four columns at
// a time where none of the four rows was left alone at any step (a tile cannot skip a step for one
// row), else row by row.
void GaussElimination::UpdateTrailingColumns(int k0, int end, int steps) {
    const bool avx = blocking_.avx && HasAvx();
    const int denseStrips = PackDenseStripMultipliers(end, steps);
    for (int from = end; from < n_; from += kColumnBlock) {
        const int to = std::min(from + kColumnBlock, n_);
        UpdatePanelRows(k0, end, steps, from, to);
        const int strips = (to - from) / kTileColumns;
        const int tiled = from + strips * kTileColumns;
        packedRows_.resize(static_cast<std::size_t>(strips) * steps * kTileColumns);
        for (int strip = 0; strip < strips; ++strip)
            for (int s = 0; s < steps; ++s)
                std::memcpy(&packedRows_[(static_cast<std::size_t>(strip) * steps + s) * kTileColumns],
                            Row(k0 + s) + from + strip * kTileColumns, kTileColumns * sizeof(double));
        int i = end;
        for (int strip = 0; strip < denseStrips; ++strip, i += kTileRows) {
            const double* f = stripMultipliers_[strip];
            if (!f) {
                for (int r = 0; r < kTileRows; ++r) UpdateRowRange(i + r, k0, steps, from, to);
                continue;
            }
            double* rows[kTileRows];
            for (int c = 0; c < strips; ++c) {
                for (int r = 0; r < kTileRows; ++r) rows[r] = Row(i + r) + from + c * kTileColumns;
                UpdateTile(rows, f, &packedRows_[static_cast<std::size_t>(c) * steps * kTileColumns], steps,
                           avx);
            }
            for (int r = 0; r < kTileRows; ++r) UpdateRowRange(i + r, k0, steps, tiled, to);
        }
        for (; i < n_; ++i) UpdateRowRange(i, k0, steps, from, to);
    }
}

// For every strip of four rows from `first` on: its multipliers packed four a step, or nullptr when
// one of its rows was left alone at some step. Returns the number of strips.
int GaussElimination::PackDenseStripMultipliers(int first, int steps) {
    const std::size_t width = static_cast<std::size_t>(blocking_.panelWidth);
    const int strips = (n_ - first) / kTileRows;
    packedMultipliers_.resize(static_cast<std::size_t>(strips) * steps * kTileRows);
    stripMultipliers_.assign(static_cast<std::size_t>(strips), nullptr);
    for (int strip = 0; strip < strips; ++strip) {
        const std::size_t i = static_cast<std::size_t>(first + strip * kTileRows);
        bool dense = true;
        for (int r = 0; r < kTileRows && dense; ++r) {
            const auto row = leftAlone_.begin() + (i + r) * width;
            dense = std::none_of(row, row + steps, [](std::uint8_t x) { return x != 0; });
        }
        if (!dense) continue;
        double* packed = &packedMultipliers_[static_cast<std::size_t>(strip) * steps * kTileRows];
        for (int s = 0; s < steps; ++s)
            for (int r = 0; r < kTileRows; ++r) packed[s * kTileRows + r] = multipliers_[(i + r) * width + s];
        stripMultipliers_[strip] = packed;
    }
    return strips;
}

// --- Back substitution --------------------------------------------------------------------------

std::vector<double> BackSubstitute(const std::vector<double>& u, int n, int columns,
                                   const std::vector<double>& z) {
    std::vector<double> x(static_cast<std::size_t>(n));
    for (int i = n - 1; i >= 0; --i) {
        if (static_cast<std::size_t>(i) >= z.size()) throw Error::SubscriptOutOfRange();
        const double* row = u.data() + static_cast<std::size_t>(i) * columns;
        double sum = 0;
        for (int j = i + 1; j < n; ++j) sum += row[j] * x[j];
        x[i] = (z[i] - sum) / row[i];
    }
    return x;
}

}  // namespace tgp
