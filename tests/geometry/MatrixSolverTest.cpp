// Matrix determinant, cofactor inverse and the two linear solvers, with their caches.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "MatrixTestSupport.h"
#include "core/Error.h"
#include "geometry/Matrix.h"

namespace tgp {
namespace {

using Vec = std::vector<double>;

std::shared_ptr<Matrix> Make(const Array2DData& data) {
    auto m = std::make_shared<Matrix>();
    m->Array2D(data);
    return m;
}

// A marker no elimination produces, to tell an assigned out argument from an untouched one.
const Array2DData kUntouched{{-12345}};

int ErrorNumberOf(const std::function<void()>& action, std::string* text = nullptr) {
    try {
        action();
    } catch (const Error& e) {
        if (text) *text = e.description();
        return e.number();
    }
    return 0;
}

// y = A x computed here, independently of the class.
Vec Times(const Array2DData& a, const Vec& x) {
    Vec y(static_cast<std::size_t>(a.rows), 0.0);
    for (int i = 0; i < a.rows; ++i)
        for (int j = 0; j < a.cols; ++j) y[i] += a(i, j) * x[j];
    return y;
}

// Diagonally dominant, so every leading pivot is far from zero.
Array2DData RandomWellConditioned(int n, std::mt19937& random) {
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    Array2DData a(n, n);
    for (double& value : a.data) value = uniform(random);
    for (int i = 0; i < n; ++i) a(i, i) += (a(i, i) < 0 ? -1 : 1) * n;
    return a;
}

void ExpectNear(const Vec& actual, const Vec& expected, double tolerance) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t k = 0; k < actual.size(); ++k)
        EXPECT_NEAR(actual[k], expected[k], tolerance) << "element " << k;
}

// --- Determinant -----------------------------------------------------------------------------

TEST(MatrixDet, EliminationWithExactZeroPivotsOnly) {
    struct Case {
        const char* name;
        Array2DData matrix;
        double determinant;
        std::optional<Array2DData> gauss;  // nullopt: left unassigned
    };
    const std::vector<Case> cases{
        {"one exchange", {{0, 1}, {1, 0}}, -1, Array2DData{{1, 0}, {0, 1}}},
        {"two exchanges", {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}, 1, Array2DData{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
        {"zero first column stops at once", {{0, 1}, {0, 2}}, 0, std::nullopt},
        {"zero pivot exchanged, zero last pivot", {{0, 0}, {1, 2}}, 0, Array2DData{{1, 2}, {0, 0}}},
        {"zero last pivot completes", {{1, 2}, {2, 4}}, 0, Array2DData{{1, 2}, {0, 0}}},
        {"plain elimination", {{2, 1}, {4, 3}}, 2, Array2DData{{2, 1}, {0, 1}}},
        {"three by three",
         {{1, 2, 3}, {4, 5, 6}, {7, 8, 10}},
         -3,
         Array2DData{{1, 2, 3}, {0, -3, -6}, {0, 0, 1}}},
        {"diagonal", {{2, 0, 0}, {0, 3, 0}, {0, 0, 4}}, 24, Array2DData{{2, 0, 0}, {0, 3, 0}, {0, 0, 4}}},
        {"one by one", {{5}}, 5, Array2DData{{5}}},
        {"one by one zero", {{0}}, 0, Array2DData{{0}}},
        {"wide uses the leading square", {{2, 1, 9}, {4, 3, 9}}, 2, Array2DData{{2, 1, 9}, {0, 1, 9}}},
        {"tall with a zero first column", {{0, 1}, {0, 2}, {0, 3}}, 0, std::nullopt},
        {"no elements: the empty product", Array2DData(), 1, Array2DData()},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        auto m = Make(c.matrix);
        Array2DData gauss = kUntouched;
        double elapsed = 42;
        EXPECT_EQ(m->Det(&elapsed, &gauss), c.determinant);
        EXPECT_EQ(gauss, c.gauss.value_or(kUntouched));
        EXPECT_EQ(elapsed, 42);
        EXPECT_EQ(m->Array2D(), c.matrix);  // elimination works on a copy
    }
}

TEST(MatrixDet, TallMatrixFailsWhereAMissingColumnIsTouched) {
    EXPECT_EQ(ErrorNumberOf([] { Make({{1, 2}, {3, 4}, {5, 6}})->Det(); }), 9);
    EXPECT_EQ(ErrorNumberOf([] { Make({{1, 2}, {3, 4}, {5, 6}})->SolveWithGaussMethod({1, 2, 3}); }), 9);
}

TEST(MatrixDet, SecondCallComesFromTheCache) {
    auto m = Make({{2, 1}, {4, 3}});
    Array2DData first = kUntouched;
    Array2DData second = kUntouched;
    EXPECT_EQ(m->Det(nullptr, &first), 2);
    EXPECT_EQ(m->Det(nullptr, &second), 2);
    EXPECT_EQ(first, (Array2DData{{2, 1}, {0, 1}}));
    EXPECT_EQ(second, kUntouched);
    m->LetItem(0, 0, 2);  // same value, still a change
    EXPECT_EQ(m->Det(nullptr, &second), 2);
    EXPECT_EQ(second, first);
}

TEST(MatrixDet, FailedResetClearsTheCacheButFailedLetItemDoesNot) {
    auto m = Make({{2, 1}, {4, 3}});
    m->Det();
    EXPECT_EQ(ErrorNumberOf([&] { m->LetItem(5, 5, 1); }), 2411);
    Array2DData gauss = kUntouched;
    m->Det(nullptr, &gauss);
    EXPECT_EQ(gauss, kUntouched);
    EXPECT_EQ(ErrorNumberOf([&] { m->Reset(0, 4); }), 2411);
    EXPECT_EQ(m->Det(nullptr, &gauss), 2);
    EXPECT_EQ(gauss, (Array2DData{{2, 1}, {0, 1}}));
}

// --- Caches against every element-changing member --------------------------------------------

TEST(MatrixCaches, EveryElementChangeIsSeenByDetInverseAndSolve) {
    struct Case {
        const char* name;
        std::function<void(Matrix&)> change;
        double a, b, c, d;  // the matrix after the change
    };
    const std::vector<Case> cases{
        {"Reset", [](Matrix& m) { m.Reset(2, 2); }, 0, 0, 0, 0},
        {"Array2D",
         [](Matrix& m) {
             m.Array2D({{4, 7}, {2, 6}});
         },
         4, 7, 2, 6},
        {"Array2DPaste",
         [](Matrix& m) {
             m.Array2DPaste({{4, 7}, {2, 6}});
         },
         4, 7, 2, 6},
        {"LetRow",
         [](Matrix& m) {
             m.LetRow({4, 7}, 0);
         },
         4, 7, 1, 3},
        {"LetColumn",
         [](Matrix& m) {
             m.LetColumn({5, 0}, 0);
         },
         5, 1, 0, 3},
        {"LetItem", [](Matrix& m) { m.LetItem(1, 0, 0); }, 2, 1, 0, 3},
    };
    const Vec y{1, 1};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        auto m = Make({{2, 1}, {1, 3}});
        m->Det();
        m->Inverse();
        m->Solve(y);
        c.change(*m);
        const double det = c.a * c.d - c.b * c.c;
        EXPECT_NEAR(m->Det(), det, 1e-12);
        auto inverse = m->Inverse();
        if (det == 0) {
            EXPECT_EQ(inverse->RowCount(), 0);
            EXPECT_FALSE(m->Solve(y));
            continue;
        }
        const Vec expected{c.d / det, -c.b / det, -c.c / det, c.a / det};
        ExpectNear(inverse->Array2D().data, expected, 1e-14);
        ExpectNear(m->Solve(y).value(), {expected[0] + expected[1], expected[2] + expected[3]}, 1e-14);
    }
}

// --- Inverse ---------------------------------------------------------------------------------

TEST(MatrixInverse, CofactorsPlacedTransposed) {
    struct Case {
        const char* name;
        Array2DData matrix;
        Array2DData inverse;
    };
    const std::vector<Case> cases{
        {"two by two", {{4, 7}, {2, 6}}, {{0.6, -0.7}, {-0.2, 0.4}}},
        {"one by one", {{4}}, {{0.25}}},
        {"exchange", {{0, 1}, {1, 0}}, {{0, 1}, {1, 0}}},
        {"singular", {{1, 2}, {2, 4}}, Array2DData()},
        {"singular, elimination stopped", {{0, 1}, {0, 2}}, Array2DData()},
        {"tall fails inside and gives nothing", {{1, 2}, {3, 4}, {5, 6}}, Array2DData()},
        {"no elements", Array2DData(), Array2DData()},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        auto m = Make(c.matrix);
        double elapsed = std::numeric_limits<double>::quiet_NaN();
        EXPECT_EQ(m->Inverse(&elapsed)->Array2D(), c.inverse);
        EXPECT_TRUE(std::isfinite(elapsed));
        EXPECT_LT(elapsed, 60);
    }
}

TEST(MatrixInverse, ResultIsAnIndependentCopyOfTheCache) {
    auto m = Make({{4, 7}, {2, 6}});
    auto first = m->Inverse();
    first->LetItem(0, 0, 100);
    EXPECT_EQ(m->Inverse()->Item(0, 0), 0.6);
    EXPECT_NE(m->Inverse(), m->Inverse());
}

// --- Solvers ---------------------------------------------------------------------------------

TEST(MatrixSolve, SingularGivesNullAndEmpty) {
    for (const Array2DData& singular : {Array2DData{{1, 2}, {2, 4}}, Array2DData{{0, 1}, {0, 2}},
                                        Array2DData{{0, 0}, {1, 2}}, Array2DData{{0}}}) {
        auto m = Make(singular);
        const Vec y(static_cast<std::size_t>(singular.rows), 1.0);
        EXPECT_FALSE(m->SolveWithGaussMethod(y));
        EXPECT_FALSE(m->Solve(y));
        EXPECT_EQ(m->Det(), 0);
    }
    EXPECT_FALSE(Make({{1, 2}, {3, 4}, {5, 6}})->Solve({1, 2}));  // the failed inverse has no elements
}

TEST(MatrixSolve, RowExchangeCarriesTheRightHandSide) {
    auto m = Make({{0, 1}, {1, 0}});
    EXPECT_EQ(m->SolveWithGaussMethod({2, 3}).value(), (Vec{3, 2}));
    EXPECT_EQ(m->Solve({2, 3}).value(), (Vec{3, 2}));
}

TEST(MatrixSolve, RightHandSideLength) {
    auto m = Make({{2, 1}, {1, 3}});
    std::string text;
    EXPECT_EQ(ErrorNumberOf([&] { m->Solve({1, 2, 3}); }, &text), 2411);
    EXPECT_EQ(
        text,
        "The MultiplyWithVector routine fails: vectorU doesnot have the same dimension with the Matrix");
    EXPECT_EQ(ErrorNumberOf([&] { m->SolveWithGaussMethod({1}); }, &text), 9);
    EXPECT_EQ(text, "Subscript out of range");
    // Extra elements are not looked at: 2x + y = 3, x + 3y = 4.
    ExpectNear(m->SolveWithGaussMethod({3, 4, 99}).value(), {1, 1}, 1e-15);
    EXPECT_EQ(Make(Array2DData())->SolveWithGaussMethod({}).value(), Vec{});
}

TEST(MatrixSolve, ElapsedTimesAreWritten) {
    auto m = Make({{2, 1}, {1, 3}});
    double gauss = std::numeric_limits<double>::quiet_NaN();
    double viaInverse = gauss;
    m->SolveWithGaussMethod({1, 1}, &gauss);
    m->Solve({1, 1}, &viaInverse);
    for (double elapsed : {gauss, viaInverse}) {
        EXPECT_TRUE(std::isfinite(elapsed));
        EXPECT_LT(elapsed, 60);
    }
}

// --- Invariants on random well-conditioned systems ---------------------------------------------

TEST(MatrixInvariants, BothSolversSatisfyTheSystem) {
    std::mt19937 random(20240601);
    for (int n : {1, 2, 3, 5, 8, 13}) {
        for (int trial = 0; trial < 3; ++trial) {
            SCOPED_TRACE(::testing::Message() << "n = " << n << ", trial " << trial);
            const Array2DData a = RandomWellConditioned(n, random);
            const Vec y = test::RandomVector(n, random);
            auto m = Make(a);
            ExpectNear(Times(a, m->SolveWithGaussMethod(y).value()), y, 1e-11);
            ExpectNear(Times(a, m->Solve(y).value()), y, 1e-11);
        }
    }
}

TEST(MatrixInvariants, InverseTimesMatrixIsTheIdentity) {
    std::mt19937 random(7);
    for (int n : {1, 2, 4, 7, 10}) {
        SCOPED_TRACE(::testing::Message() << "n = " << n);
        const Array2DData a = RandomWellConditioned(n, random);
        const Array2DData inverse = Make(a)->Inverse()->Array2D();
        ASSERT_EQ(inverse.rows, n);
        for (int j = 0; j < n; ++j) {
            Vec column(static_cast<std::size_t>(n));
            for (int i = 0; i < n; ++i) column[i] = a(i, j);
            Vec unit(static_cast<std::size_t>(n), 0.0);
            unit[j] = 1;
            ExpectNear(Times(inverse, column), unit, 1e-13);
        }
    }
}

TEST(MatrixInvariants, DeterminantOfATriangularProductIsTheProductOfDiagonals) {
    // L (unit lower) times U (upper): det = product of U's diagonal, whatever L mixes in.
    std::mt19937 random(99);
    std::uniform_real_distribution<double> uniform(0.5, 2.0);
    for (int n : {2, 4, 6}) {
        Array2DData l(n, n), u(n, n);
        double expected = 1;
        for (int i = 0; i < n; ++i) {
            l(i, i) = 1;
            for (int j = 0; j < i; ++j) l(i, j) = uniform(random);
            for (int j = i; j < n; ++j) u(i, j) = uniform(random);
            expected *= u(i, i);
        }
        auto product = Make(l)->Product(*Make(u));
        EXPECT_NEAR(product->Det(), expected, 1e-12 * std::abs(expected)) << "n = " << n;
    }
}

}  // namespace
}  // namespace tgp
