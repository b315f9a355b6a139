// The panel elimination against a straightforward elimination kept here: determinant, eliminated
// matrix (the residues below the diagonal included), right-hand side, solution and inverse must be
// the same bit for bit, on dense and sparse matrices, with exact zero pivots, negative zeros and
// singular systems, for every panel width that takes a different path through the code.
#include <gtest/gtest.h>

#include "support/Expectations.h"

#include <cmath>
#include <cstring>
#include <optional>
#include <random>
#include <vector>

#include "geometry/GaussElimination.h"
#include "geometry/Matrix.h"

namespace tgp {
namespace {

using Vec = std::vector<double>;

// n values drawn evenly from [-10, 10): right-hand sides.
Vec RandomVector(int n, std::mt19937& random) {
    std::uniform_real_distribution<double> uniform(-10.0, 10.0);
    Vec v(static_cast<std::size_t>(n));
    for (double& value : v) value = uniform(random);
    return v;
}

// The reference: the textbook loops, one step at a time.
struct Reference {
    Vec a;
    Vec y;
    double determinant = 0;
    bool completed = true;

    Reference(Vec matrix, Vec rhs, int n) : a(std::move(matrix)), y(std::move(rhs)) {
        auto at = [&](int i, int j) -> double& { return a[static_cast<std::size_t>(i) * n + j]; };
        int sign = 1;
        for (int k = 0; k + 1 < n; ++k) {
            if (at(k, k) == 0) {
                int p = k + 1;
                while (p < n && at(p, k) == 0) ++p;
                if (p == n) {
                    completed = false;
                    return;
                }
                for (int j = 0; j < n; ++j) std::swap(at(k, j), at(p, j));
                if (!y.empty()) std::swap(y[k], y[p]);
                sign = -sign;
            }
            for (int i = k + 1; i < n; ++i) {
                if (at(i, k) == 0) continue;
                const double f = at(i, k) / at(k, k);
                for (int j = k; j < n; ++j) at(i, j) = at(i, j) - f * at(k, j);
                if (!y.empty()) y[i] = y[i] - f * y[k];
            }
        }
        determinant = sign;
        for (int m = 0; m < n; ++m) determinant = determinant * at(m, m);
    }

    Vec Solve(int n) const {
        Vec x(static_cast<std::size_t>(n));
        for (int i = n - 1; i >= 0; --i) {
            double sum = 0;
            for (int j = i + 1; j < n; ++j) sum = sum + a[static_cast<std::size_t>(i) * n + j] * x[j];
            x[i] = (y[i] - sum) / a[static_cast<std::size_t>(i) * n + i];
        }
        return x;
    }
};

bool SameBits(const Vec& a, const Vec& b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0);
}

using test::SameBits;

enum class Kind { Dense, SparseIntegers, RepeatedRows, ZeroLeadingColumn };

// Dense ones take the register tiles; sparse small integers cancel exactly, so that pivots become
// exactly 0 in the middle of the elimination and rows are left alone at many steps.
Vec MakeMatrix(Kind kind, int n, std::mt19937& random) {
    Vec a(static_cast<std::size_t>(n) * n);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    std::uniform_int_distribution<int> small(-2, 2);
    for (double& v : a)
        v = kind == Kind::Dense ? uniform(random) : small(random) * (small(random) == 0 ? 1 : 0);
    if (kind == Kind::SparseIntegers)
        for (double& v : a)
            if (v == 0 && small(random) > 0) v = -0.0;
    if (kind == Kind::RepeatedRows && n > 2)
        for (int j = 0; j < n; ++j)
            a[static_cast<std::size_t>(n - 1) * n + j] = a[j] + a[static_cast<std::size_t>(n) + j];
    if (kind == Kind::ZeroLeadingColumn)
        for (int i = 0; i < n; ++i) a[static_cast<std::size_t>(i) * n] = i == n / 2 ? 1 : 0;
    for (int i = 0; i < n; i += 3) a[static_cast<std::size_t>(i) * n + i] = 0;  // zero pivots forced in
    return a;
}

const Kind kKinds[] = {Kind::Dense, Kind::SparseIntegers, Kind::RepeatedRows, Kind::ZeroLeadingColumn};

TEST(GaussElimination, PanelsMatchThePlainLoopsBitForBitForEveryPanelWidth) {
    // Both tile kinds (AVX where this processor has it, and SSE2).
    const GaussElimination::Blocking blockings[] = {
        {1, 1, true},  {1, 2, false}, {2, 3, true},  {1, 4, false},  {5, 5, true},
        {1, 8, false}, {1, 8, true},  {9, 32, true}, {9, 32, false}, GaussElimination::kMachineBlocking};
    std::mt19937 random(7);
    int eliminations = 0;
    for (const Kind kind : kKinds) {
        for (int n = 1; n <= 41; ++n) {
            const Vec a = MakeMatrix(kind, n, random);
            const Vec y = RandomVector(n, random);
            const Reference reference(a, y, n);
            for (const auto& blocking : blockings) {
                Vec work = a, rhs = y;
                const auto result = GaussElimination(work.data(), n, n, &rhs, blocking).Run();
                ++eliminations;
                ASSERT_EQ(result.completed, reference.completed) << n << " " << blocking.panelWidth;
                if (!result.completed) continue;  // the half-eliminated state is never shown
                ASSERT_TRUE(SameBits(result.determinant, reference.determinant))
                    << n << " " << blocking.panelWidth;
                ASSERT_TRUE(SameBits(work, reference.a))
                    << "kind " << int(kind) << " n " << n << " width " << blocking.panelWidth;
                ASSERT_TRUE(SameBits(rhs, reference.y)) << n << " " << blocking.panelWidth;
            }
        }
    }
    EXPECT_GT(eliminations, 1000);
}

TEST(GaussElimination, WideMatrixKeepsItsExtraColumnsAndUsesItsLeadingSquare) {
    std::mt19937 random(11);
    const int n = 23, columns = 30;
    Vec wide(static_cast<std::size_t>(n) * columns);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    for (double& v : wide) v = uniform(random);
    Vec square;
    for (int i = 0; i < n; ++i)
        square.insert(square.end(), wide.begin() + i * columns, wide.begin() + i * columns + n);
    const Reference reference(square, {}, n);
    Vec work = wide;
    const auto result = GaussElimination(work.data(), n, columns, nullptr, {1, 4, true}).Run();
    EXPECT_TRUE(SameBits(result.determinant, reference.determinant));
    for (int i = 0; i < n; ++i) {
        EXPECT_TRUE(SameBits(Vec(work.begin() + i * columns, work.begin() + i * columns + n),
                             Vec(reference.a.begin() + i * n, reference.a.begin() + (i + 1) * n)));
        EXPECT_TRUE(SameBits(Vec(work.begin() + i * columns + n, work.begin() + (i + 1) * columns),
                             Vec(wide.begin() + i * columns + n, wide.begin() + (i + 1) * columns)));
    }
}

std::shared_ptr<Matrix> MakeMatrixObject(const Vec& a, int n) {
    auto m = std::make_shared<Matrix>();
    m->Array2D(Array2DData(n, n, a));
    return m;
}

// The published members with their default panels, sizes 1 to 300.
TEST(GaussElimination, DetAndSolveOfTheMatrixClassMatchTheReference) {
    std::mt19937 random(3);
    for (int n = 1; n <= 300; n += (n < 80 ? 1 : 13)) {
        const Kind kind = kKinds[n % 4];
        const Vec a = MakeMatrix(kind, n, random);
        const Vec y = RandomVector(n, random);
        const Reference reference(a, y, n);
        auto m = MakeMatrixObject(a, n);
        Array2DData eliminated;
        const double determinant = m->Det(nullptr, &eliminated);
        EXPECT_TRUE(SameBits(determinant, reference.completed ? reference.determinant : 0.0)) << n;
        if (reference.completed) {
            EXPECT_TRUE(SameBits(eliminated.data, reference.a)) << n;
        }
        const auto x = m->SolveWithGaussMethod(y);
        ASSERT_EQ(x.has_value(), reference.completed && reference.determinant != 0) << n;
        if (x) {
            EXPECT_TRUE(SameBits(*x, reference.Solve(n))) << n;
        }
    }
}

TEST(GaussElimination, CofactorInverseMatchesTheReference) {
    std::mt19937 random(5);
    for (int n = 2; n <= 12; ++n) {
        const Vec a = MakeMatrix(n % 2 ? Kind::Dense : Kind::SparseIntegers, n, random);
        const Reference whole(a, {}, n);
        const auto inverse = MakeMatrixObject(a, n)->Inverse();
        if (!whole.completed || whole.determinant == 0 || !std::isfinite(whole.determinant)) {
            EXPECT_EQ(inverse->ColumnCount(), 0) << n;
            continue;
        }
        const Array2DData got = inverse->Array2D();
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < n; ++j) {
                Vec minor;
                for (int p = 0; p < n; ++p)
                    for (int q = 0; q < n; ++q)
                        if (p != i && q != j) minor.push_back(a[static_cast<std::size_t>(p) * n + q]);
                const Reference part(minor, {}, n - 1);
                const double expected =
                    std::pow(-1.0, i + j) * (part.completed ? part.determinant : 0.0) / whole.determinant;
                EXPECT_TRUE(SameBits(got(j, i), expected)) << n << " " << i << " " << j;
            }
        }
    }
}

}  // namespace
}  // namespace tgp
