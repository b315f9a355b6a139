// Matrices: storage, reshaping, element access and arithmetic; determinant, inverse and solvers with
// their caches; the panel elimination against a plain one.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <functional>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "core/Message.h"
#include "geometry/GaussElimination.h"
#include "geometry/Matrix.h"
#include "support/Expectations.h"

namespace tgp {
namespace {

// Matrix storage, reshaping, element access and element-wise arithmetic.
using test::ExpectError;
using Rows = std::vector<std::vector<double>>;

// The matrix's elements row by row, read through the public element getter.
Rows Elements(const Matrix& m) {
    Rows rows(static_cast<std::size_t>(m.RowCount()),
              std::vector<double>(static_cast<std::size_t>(m.ColumnCount())));
    for (int i = 0; i < m.RowCount(); ++i)
        for (int j = 0; j < m.ColumnCount(); ++j) rows[i][j] = m.Item(i, j);
    return rows;
}

Matrix Make(const Array2DData& data) {
    Matrix m;
    m.Array2D(data);
    return m;
}

const std::string kResetFail = "Matrix Reset fail: RowCount and ColumnCount must be greater than 0";
const std::string kRowFail = "Matrix Get Row property fails: the row index is out of range";
const std::string kSubscript = "Subscript out of range";
const Array2DData k2x3{{1, 2, 3}, {4, 5, 6}};
const Array2DData k3x3{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};

TEST(MatrixReset, MissingCountsTakeTheRowCountAndBadOnesKeepTheElements) {
    EXPECT_EQ(Matrix().Array2D(), Array2DData());
    for (const auto& [rows, columns, expectedRows, expectedColumns] :
         {std::tuple<std::optional<int>, std::optional<int>, int, int>{3, std::nullopt, 3, 2},  // not 5
          {std::nullopt, 4, 2, 4},
          {32767, 1, 32767, 1}}) {  // the largest 16-bit count
        Matrix m;
        m.Reset(2, 5);
        m.LetItem(1, 4, 9);
        m.Reset(rows, columns);
        EXPECT_EQ(m.RowCount(), expectedRows);
        EXPECT_EQ(m.ColumnCount(), expectedColumns);
        EXPECT_EQ(m.Array2D().data, std::vector<double>(std::size_t(expectedRows) * expectedColumns, 0.0));
    }
    for (const auto& [rows, columns, number] : {std::tuple{3, 0, 2411}, {-1, 2, 2411}, {32768, 1, 6}}) {
        Matrix m = Make(k2x3);
        ExpectError(number, number == 6 ? "Overflow" : kResetFail, [&] { m.Reset(rows, columns); });
        EXPECT_EQ(m.Array2D(), k2x3);
    }
    ExpectError(2411, kResetFail, [] { Matrix().Reset(); });  // row count 0 is taken for both
}

TEST(MatrixArray2D, LetTakesTheShapeGetCopiesAndBadShapesFail) {
    Matrix m;
    m.Reset(4, 4);
    m.Array2D(k2x3);
    EXPECT_EQ(Elements(m), (Rows{{1, 2, 3}, {4, 5, 6}}));
    Array2DData copy = m.Array2D();
    copy(0, 0) = 99;
    EXPECT_EQ(m.Item(0, 0), 1);
    Matrix fresh;
    ExpectError(6, "Overflow", [&] { fresh.Array2D(Array2DData(0, 32768)); });
    Array2DData inconsistent(2, 2);
    inconsistent.data.pop_back();
    ExpectError(13, "Type mismatch", [&] { fresh.Array2D(inconsistent); });
    ExpectError(13, "Type mismatch", [] { Array2DData ragged{{1, 2}, {3}}; });
    EXPECT_EQ(fresh.RowCount(), 0);
}

TEST(MatrixArray2DPaste, ResetsSquareOnTheRowsThenCopiesTheLeadingBlock) {
    struct Case {
        int rows, columns;  // of the matrix before pasting
        Array2DData pasted;
        Rows expected;
    };
    const Case cases[] = {
        {3,
         3,
         {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}, {13, 14, 15, 16}},
         {{1, 2, 3}, {5, 6, 7}, {9, 10, 11}}},
        {2, 5, {{7}}, {{7, 0}, {0, 0}}},
        {2, 2, Array2DData(), {{0, 0}, {0, 0}}},
    };
    for (const auto& c : cases) {
        Matrix m;
        m.Reset(c.rows, c.columns);
        m.LetItem(1, 1, -5);
        m.Array2DPaste(c.pasted, true, true);
        EXPECT_EQ(Elements(m), c.expected) << c.rows << " x " << c.columns;
    }
    for (const Array2DData& pasted : {Array2DData(4, 1), Array2DData(1, 4)}) {
        Matrix m = Make(k3x3);
        ExpectError(2411, "Matrix Array2DPaste procedure fails: the array's dimensions donot fit",
                    [&] { m.Array2DPaste(pasted); });
        EXPECT_EQ(m.Array2D(), k3x3);
    }
    // 2 x 5 becomes 2 x 2 before the copy, so element (0, 2) of the array has nowhere to go.
    Matrix m;
    m.Reset(2, 5);
    ExpectError(9, kSubscript, [&] { m.Array2DPaste(k2x3); });
    EXPECT_EQ(Elements(m), (Rows{{1, 2}, {0, 0}}));
}

TEST(MatrixElementAccess, RowsColumnsAndItemsStoreAPrefixOrFailWithTheirOwnTexts) {
    Matrix stored = Make(k2x3);
    stored.LetRow({7}, 0);
    stored.LetRow({7, 8, 9, 10}, 1, true);  // clipped
    stored.LetColumn({0, 1, 2}, 2, true);
    EXPECT_EQ(Elements(stored), (Rows{{7, 2, 0}, {7, 8, 1}}));
    using Edit = std::function<void(Matrix&)>;
    const std::string item = "Matrix Get Item property fails: the given Index i, j are out of range";
    const std::tuple<Edit, int, std::string> failures[] = {
        {[](Matrix& m) { m.LetRow({1}, 2); }, 2411, "The Let Row routine index is out of range"},
        {[](Matrix& m) {
             m.LetRow({1, 2, 3, 4}, 0);
         },
         2411, "Matrix LetRow procedure fails: the given new Row does not fit"},
        {[](Matrix& m) { m.LetRow({1}, -1); }, 9, kSubscript},
        {[](Matrix& m) { m.LetColumn({1}, 3); }, 2411, "The LetColumn routine index is out of range"},
        {[](Matrix& m) {
             m.LetColumn({1, 2, 3}, 0);
         },
         2411, "Matrix LetColumn procedure fails: the given new Coulumn does not fit"},
        {[](Matrix& m) { m.Row(2); }, 2411, kRowFail},
        {[](Matrix& m) { m.Column(-1); }, 2411, kRowFail},  // the column speaks of the row
        {[](Matrix& m) { m.Item(0, 3); }, 2411, item},
        {[](Matrix& m) { m.Item(-1, 0); }, 2411, item},
        {[](Matrix& m) { m.LetItem(1, 3, 1); }, 2411,
         "Matrix LetItem routine fails: the given Index i, j are out of range"},
    };
    for (const auto& [edit, number, text] : failures) {
        Matrix m = Make(k2x3);
        ExpectError(number, text, [&] { edit(m); });
        EXPECT_EQ(m.Array2D(), k2x3);
    }
    const Matrix m = Make(k2x3);
    EXPECT_EQ(m.Row(1), (std::vector<double>{4, 5, 6}));
    EXPECT_EQ(m.Column(2), (std::vector<double>{3, 6}));
    ExpectError(2411, kRowFail, [] { Matrix().Column(0); });
}

TEST(MatrixCopies, CopyTransposeAndSubMatrices) {
    Matrix m = Make(k2x3);
    auto copy = m.Copy();
    auto transposed = m.Transpose();
    m.LetItem(0, 0, 100);
    EXPECT_EQ(Elements(*copy), (Rows{{1, 2, 3}, {4, 5, 6}}));
    EXPECT_EQ(Elements(*transposed), (Rows{{1, 4}, {2, 5}, {3, 6}}));

    const Matrix wide = Make({{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}});
    EXPECT_EQ(Elements(*wide.GetSubMatrix(1, 2, 1, 3)), (Rows{{6, 7, 8}, {10, 11, 12}}));
    const std::string order = "Sub Matrix arguments should have rowA <= rowB and columnA <= columnB";
    const std::string range = "The GetSubMatrix index is out of range";
    for (const auto& [rowA, rowB, columnA, columnB, number, text] :
         {std::tuple{2, 1, 0, 0, 2411, order},
          {0, 0, 3, 2, 2411, order},
          {0, 3, 0, 0, 2411, range},
          {0, 0, 0, 4, 2411, range},
          {-1, 0, 0, 0, 2411, range},
          {0, 0, -1, 0, 9, kSubscript}})  // ColumnA is not range-checked; its element read fails
        ExpectError(number, text, [&] { wide.GetSubMatrix(rowA, rowB, columnA, columnB); });
}

TEST(MatrixCopies, RemoveRowColumnSkipsThemOrKeepsAWholeDimension) {
    const Array2DData wide{{1, 2, 3, 4, 5}, {6, 7, 8, 9, 10}};
    for (const auto& [source, row, column, expected] :
         {std::tuple<Array2DData, int, int, Rows>{k3x3, 2, 1, {{1, 3}, {4, 6}}},
          {k3x3, 0, 1, {{1, 3}, {4, 6}, {7, 9}}},  // row 0 kept
          {k3x3, 1, 0, {{1, 2, 3}, {7, 8, 9}}},    // column 0 kept
          {wide, 1, 3, {{1, 2, 3, 4, 5}}},         // a column beyond the row count is kept
          {{{1, 2}, {3, 4}, {5, 6}, {7, 8}, {9, 10}},
           4,
           3,
           {{1}, {3}, {5}, {7}}}})  // a tall one drops the last
        EXPECT_EQ(Elements(*Make(source).GetSubMatrixByRemoveRowCol(row, column, true)), expected) << row;
    const std::string text = "GetSubMatrixByRomoveRowCol routine: RemoveRow or RemoveCol is out of range";
    ExpectError(2411, text, [&] { Make(k3x3).GetSubMatrixByRemoveRowCol(0, 1, false); });
    ExpectError(2411, text, [&] { Make(wide).GetSubMatrixByRemoveRowCol(1, 3, false); });
    EXPECT_EQ(Elements(*Make(wide).GetSubMatrixByRemoveRowCol(1, 1, false)), (Rows{{1, 3, 4, 5}}));
    // Nothing would be left of a one-column matrix.
    ExpectError(2411, kResetFail, [] { Make({{1}, {2}}).GetSubMatrixByRemoveRowCol(1, 1, false); });
}

TEST(MatrixArithmetic, RoundingProductsScalingAndSums) {
    const Matrix r = Make({{2.5, 3.5, -2.5}, {0.125, 0.375, 1.0 / 3}});
    EXPECT_EQ(Elements(*r.RoundUp(0)), (Rows{{2, 4, -2}, {0, 0, 0}}));  // halves to even
    EXPECT_EQ(Elements(*r.RoundUp(2)), (Rows{{2.5, 3.5, -2.5}, {0.12, 0.38, 0.33}}));
    const Matrix a = Make(k2x3);
    const Matrix b = Make({{7, 8}, {9, 10}, {11, 12}});
    EXPECT_EQ(Elements(*a.Product(b)), (Rows{{58, 64}, {139, 154}}));  // 1*7+2*9+3*11 = 58 ...
    EXPECT_EQ(a.MultiplyWithVector({1, -1, 2}), (std::vector<double>{5, 11}));
    ExpectError(2411,
                "Matrix Product Fail: the number of Columns of the first Matrix must equal to the number of "
                "Rows of the second Matrix",
                [&] { a.Product(a); });
    ExpectError(
        2411, "The MultiplyWithVector routine fails: vectorU doesnot have the same dimension with the Matrix",
        [&] {
            a.MultiplyWithVector({1, 2});
        });

    const Matrix c = Make({{1, 2}, {3, 4}}), d = Make({{0.5, -1}, {2, 8}});
    EXPECT_EQ(Elements(*c.MultiplyWithNumber(-2)), (Rows{{-2, -4}, {-6, -8}}));
    EXPECT_EQ(Elements(*c.PlusWithMatrix(d)), (Rows{{1.5, 1}, {5, 12}}));
    EXPECT_EQ(Elements(*c.PlusWithMatrix(d, true)), (Rows{{0.5, 3}, {1, -4}}));
    EXPECT_EQ(Elements(*c.PlusWithNumber(1.5)), (Rows{{2.5, 3.5}, {4.5, 5.5}}));
    EXPECT_EQ(Elements(c), (Rows{{1, 2}, {3, 4}}));
    ExpectError(2411, "PlucWithMatrix routine fails: the Matrixes donot have the same size", [&] {
        c.PlusWithMatrix(Make({{1}, {2}}), true);
    });
    Matrix z = Make({{-0.0, 2}});
    auto plusZero = z.PlusWithNumber(0);
    EXPECT_TRUE(std::signbit(plusZero->Item(0, 0)));  // copied, not added to
}

TEST(MatrixPlaceholders, ShowCodeOnHoldAndDoNothingElse) {
    std::vector<std::string> shown;
    MessageHandler previous = SetMessageHandler([&](std::string_view text, std::string_view title) {
        shown.push_back(std::string(title) + "|" + std::string(text));
    });
    Matrix m = Make({{1, 2}, {3, 4}});
    double elapsed = -1;
    EXPECT_EQ(m.InverseWithExcelMethod(&elapsed), nullptr);
    m.DisplayOnExcelWorksheet();
    const auto file = std::filesystem::temp_directory_path() / "tgp_matrix_placeholder_never_written.txt";
    std::filesystem::remove(file);
    m.PrintToTextFile(file.string());
    SetMessageHandler(previous);
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(elapsed, -1);
    EXPECT_EQ(shown, std::vector<std::string>(3, "Tessary World|Code On Hold ^^"));
}

// Matrix determinant, cofactor inverse and the two linear solvers, with their caches. Their arithmetic
// on random matrices of every size is checked bit for bit below (GaussElimination).
using Vec = std::vector<double>;

std::shared_ptr<Matrix> Shared(const Array2DData& data) {
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
        auto m = Shared(c.matrix);
        Array2DData gauss = kUntouched;
        double elapsed = 42;
        EXPECT_EQ(m->Det(&elapsed, &gauss), c.determinant);
        EXPECT_EQ(gauss, c.gauss.value_or(kUntouched));
        EXPECT_EQ(elapsed, 42);
        EXPECT_EQ(m->Array2D(), c.matrix);  // elimination works on a copy
    }
    // A tall matrix fails where a missing column is touched.
    ExpectError(9, "Subscript out of range", [] { Shared({{1, 2}, {3, 4}, {5, 6}})->Det(); });
    ExpectError(9, "Subscript out of range", [] {
        Shared({{1, 2}, {3, 4}, {5, 6}})->SolveWithGaussMethod({1, 2, 3});
    });
}

TEST(MatrixCaches, TheSecondCallComesFromTheCacheUntilAnElementChanges) {
    auto m = Shared({{2, 1}, {4, 3}});
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
        auto cached = Shared({{2, 1}, {1, 3}});
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
        EXPECT_EQ(Shared(c.matrix)->Inverse(&elapsed)->Array2D(), c.inverse);
        EXPECT_TRUE(elapsed >= 0 && elapsed < 60) << elapsed;
    }
    auto m = Shared({{4, 7}, {2, 6}});
    m->Inverse()->LetItem(0, 0, 100);  // an independent copy of the cache
    EXPECT_EQ(m->Inverse()->Item(0, 0), 0.6);
}

TEST(MatrixSolve, SingularRowExchangeRightHandSideAndTimes) {
    for (const Array2DData& singular : {Array2DData{{1, 2}, {2, 4}}, Array2DData{{0, 1}, {0, 2}},
                                        Array2DData{{0, 0}, {1, 2}}, Array2DData{{0}}}) {
        auto m = Shared(singular);
        const Vec y(static_cast<std::size_t>(singular.rows), 1.0);
        EXPECT_FALSE(m->SolveWithGaussMethod(y));
        EXPECT_FALSE(m->Solve(y));
    }
    EXPECT_FALSE(Shared({{1, 2}, {3, 4}, {5, 6}})->Solve({1, 2}));  // the failed inverse has no elements
    auto exchange = Shared({{0, 1}, {1, 0}});
    EXPECT_EQ(exchange->SolveWithGaussMethod({2, 3}).value(), (Vec{3, 2}));
    EXPECT_EQ(exchange->Solve({2, 3}).value(), (Vec{3, 2}));
    auto m = Shared({{2, 1}, {1, 3}});
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
    EXPECT_EQ(Shared(Array2DData())->SolveWithGaussMethod({}).value(), Vec{});
}

// The panel elimination against a straightforward elimination kept here: determinant, eliminated
// matrix (the residues below the diagonal included), right-hand side, solution and inverse must be
// the same bit for bit, on dense and sparse matrices, with exact zero pivots, negative zeros and
// singular systems, for every panel width that takes a different path through the code.
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

// The published members with their default panels, sizes 1 to 300.
TEST(GaussElimination, DetAndSolveOfTheMatrixClassMatchTheReference) {
    std::mt19937 random(3);
    for (int n = 1; n <= 300; n += (n < 80 ? 1 : 13)) {
        const Kind kind = kKinds[n % 4];
        const Vec a = MakeMatrix(kind, n, random);
        const Vec y = RandomVector(n, random);
        const Reference reference(a, y, n);
        auto m = Shared(Array2DData(n, n, a));
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
        const auto inverse = Shared(Array2DData(n, n, a))->Inverse();
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
