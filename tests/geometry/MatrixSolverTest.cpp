// Matrix determinant, cofactor inverse and the two linear solvers, with their caches. Their arithmetic
// on random matrices of every size is checked bit for bit in GaussEliminationTest.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "geometry/Matrix.h"
#include "support/Expectations.h"

namespace tgp {
namespace {

using test::ExpectError;
using Vec = std::vector<double>;

std::shared_ptr<Matrix> Make(const Array2DData& data) {
    auto m = std::make_shared<Matrix>();
    m->Array2D(data);
    return m;
}

// A marker no elimination produces, to tell an assigned out argument from an untouched one.
const Array2DData kUntouched{{-12345}};

void ExpectNear(const Vec& actual, const Vec& expected, double tolerance) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t k = 0; k < actual.size(); ++k) EXPECT_NEAR(actual[k], expected[k], tolerance) << k;
}

TEST(MatrixDet, EliminationWithExactZeroPivotsOnly) {
    struct Case {
        const char* name;
        Array2DData matrix;
        double determinant;
        std::optional<Array2DData> gauss;  // nullopt: left unassigned
    };
    const std::vector<Case> cases{
        {"two exchanges", {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}, 1, Array2DData{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
        {"zero first column stops at once", {{0, 1}, {0, 2}}, 0, std::nullopt},
        {"zero pivot exchanged, zero last pivot", {{0, 0}, {1, 2}}, 0, Array2DData{{1, 2}, {0, 0}}},
        {"three by three",
         {{1, 2, 3}, {4, 5, 6}, {7, 8, 10}},
         -3,
         Array2DData{{1, 2, 3}, {0, -3, -6}, {0, 0, 1}}},
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
    // A tall matrix fails where a missing column is touched.
    ExpectError(9, "Subscript out of range", [] { Make({{1, 2}, {3, 4}, {5, 6}})->Det(); });
    ExpectError(9, "Subscript out of range", [] {
        Make({{1, 2}, {3, 4}, {5, 6}})->SolveWithGaussMethod({1, 2, 3});
    });
}

TEST(MatrixCaches, TheSecondCallComesFromTheCacheUntilAnElementChanges) {
    auto m = Make({{2, 1}, {4, 3}});
    Array2DData first = kUntouched, second = kUntouched;
    EXPECT_EQ(m->Det(nullptr, &first), 2);
    EXPECT_EQ(m->Det(nullptr, &second), 2);
    EXPECT_EQ(first, (Array2DData{{2, 1}, {0, 1}}));
    EXPECT_EQ(second, kUntouched);
    m->LetItem(0, 0, 2);  // same value, still a change
    EXPECT_EQ(m->Det(nullptr, &second), 2);
    EXPECT_EQ(second, first);
    // A failed LetItem keeps the cache, a failed Reset clears it.
    second = kUntouched;
    ExpectError(2411, "Matrix LetItem routine fails: the given Index i, j are out of range",
                [&] { m->LetItem(5, 5, 1); });
    m->Det(nullptr, &second);
    EXPECT_EQ(second, kUntouched);
    ExpectError(2411, "Matrix Reset fail: RowCount and ColumnCount must be greater than 0",
                [&] { m->Reset(0, 4); });
    EXPECT_EQ(m->Det(nullptr, &second), 2);
    EXPECT_EQ(second, first);

    const std::function<void(Matrix&)> changes[] = {
        [](Matrix& m) { m.Reset(2, 2); },
        [](Matrix& m) {
            m.Array2D({{4, 7}, {1, 3}});
        },
        [](Matrix& m) {
            m.Array2DPaste({{4, 7}});
        },
        [](Matrix& m) {
            m.LetRow({4, 7}, 0);
        },
        [](Matrix& m) {
            m.LetColumn({4, 1}, 0);
        },
        [](Matrix& m) { m.LetItem(0, 1, 7); },
    };
    const Vec y{1, 1};
    for (std::size_t k = 0; k < std::size(changes); ++k) {
        auto cached = Make({{2, 1}, {1, 3}});
        cached->Det();
        cached->Inverse();
        cached->Solve(y);
        changes[k](*cached);
        const Array2DData a = cached->Array2D();  // as the change left it
        const double det = a(0, 0) * a(1, 1) - a(0, 1) * a(1, 0);
        EXPECT_NEAR(cached->Det(), det, 1e-12) << k;
        if (det == 0) {
            EXPECT_EQ(cached->Inverse()->RowCount(), 0) << k;
            EXPECT_FALSE(cached->Solve(y)) << k;
            continue;
        }
        const Vec inverse{a(1, 1) / det, -a(0, 1) / det, -a(1, 0) / det, a(0, 0) / det};
        ExpectNear(cached->Inverse()->Array2D().data, inverse, 1e-14);
        ExpectNear(cached->Solve(y).value(), {inverse[0] + inverse[1], inverse[2] + inverse[3]}, 1e-14);
    }
}

TEST(MatrixInverse, CofactorsPlacedTransposedOrNothing) {
    struct Case {
        const char* name;
        Array2DData matrix;
        Array2DData inverse;
    };
    const std::vector<Case> cases{
        {"two by two", {{4, 7}, {2, 6}}, {{0.6, -0.7}, {-0.2, 0.4}}},
        {"one by one", {{4}}, {{0.25}}},
        {"singular, elimination stopped", {{0, 1}, {0, 2}}, Array2DData()},
        {"tall fails inside and gives nothing", {{1, 2}, {3, 4}, {5, 6}}, Array2DData()},
        {"no elements", Array2DData(), Array2DData()},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        double elapsed = std::numeric_limits<double>::quiet_NaN();
        EXPECT_EQ(Make(c.matrix)->Inverse(&elapsed)->Array2D(), c.inverse);
        EXPECT_TRUE(elapsed >= 0 && elapsed < 60) << elapsed;
    }
    auto m = Make({{4, 7}, {2, 6}});
    m->Inverse()->LetItem(0, 0, 100);  // an independent copy of the cache
    EXPECT_EQ(m->Inverse()->Item(0, 0), 0.6);
}

TEST(MatrixSolve, SingularRowExchangeRightHandSideAndTimes) {
    for (const Array2DData& singular : {Array2DData{{1, 2}, {2, 4}}, Array2DData{{0, 1}, {0, 2}},
                                        Array2DData{{0, 0}, {1, 2}}, Array2DData{{0}}}) {
        auto m = Make(singular);
        const Vec y(static_cast<std::size_t>(singular.rows), 1.0);
        EXPECT_FALSE(m->SolveWithGaussMethod(y));
        EXPECT_FALSE(m->Solve(y));
    }
    EXPECT_FALSE(Make({{1, 2}, {3, 4}, {5, 6}})->Solve({1, 2}));  // the failed inverse has no elements
    auto exchange = Make({{0, 1}, {1, 0}});
    EXPECT_EQ(exchange->SolveWithGaussMethod({2, 3}).value(), (Vec{3, 2}));
    EXPECT_EQ(exchange->Solve({2, 3}).value(), (Vec{3, 2}));
    auto m = Make({{2, 1}, {1, 3}});
    ExpectError(
        2411, "The MultiplyWithVector routine fails: vectorU doesnot have the same dimension with the Matrix",
        [&] {
            m->Solve({1, 2, 3});
        });
    ExpectError(9, "Subscript out of range", [&] { m->SolveWithGaussMethod({1}); });
    // Extra elements are not looked at: 2x + y = 3, x + 3y = 4.
    double gauss = std::numeric_limits<double>::quiet_NaN(), viaInverse = gauss;
    ExpectNear(m->SolveWithGaussMethod({3, 4, 99}, &gauss).value(), {1, 1}, 1e-15);
    ExpectNear(m->Solve({3, 4}, &viaInverse).value(), {1, 1}, 1e-15);
    EXPECT_TRUE(gauss >= 0 && gauss < 60 && viaInverse >= 0 && viaInverse < 60) << gauss << " " << viaInverse;
    EXPECT_EQ(Make(Array2DData())->SolveWithGaussMethod({}).value(), Vec{});
}

}  // namespace
}  // namespace tgp
