// Matrix storage, reshaping, element access and element-wise arithmetic.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "core/Message.h"
#include "geometry/Matrix.h"
#include "support/Expectations.h"

namespace tgp {
namespace {

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

}  // namespace
}  // namespace tgp
