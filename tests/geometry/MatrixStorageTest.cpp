// Matrix storage, reshaping, element access and element-wise arithmetic.
#include <gtest/gtest.h>

#include "support/Expectations.h"

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/Error.h"
#include "core/Message.h"
#include "geometry/Matrix.h"

namespace tgp {
namespace {

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

using test::ExpectError;

const std::string kResetFail = "Matrix Reset fail: RowCount and ColumnCount must be greater than 0";
const std::string kPasteFail = "Matrix Array2DPaste procedure fails: the array's dimensions donot fit";
const std::string kRowFail = "Matrix Get Row property fails: the row index is out of range";
const std::string kSubscript = "Subscript out of range";

// --- Reset -----------------------------------------------------------------------------------

TEST(MatrixReset, NewMatrixHasNoElements) {
    Matrix m;
    EXPECT_EQ(m.RowCount(), 0);
    EXPECT_EQ(m.ColumnCount(), 0);
    EXPECT_EQ(m.Array2D(), Array2DData());
}

TEST(MatrixReset, MissingColumnCountTakesTheRowCount) {
    struct Case {
        std::optional<int> rows, columns;
        int expectedRows, expectedColumns;
    };
    const std::vector<Case> cases{
        {3, std::nullopt, 3, 2},             // the old row count (2), not the column count (5)
        {std::nullopt, std::nullopt, 2, 2},  //
        {std::nullopt, 4, 2, 4},             //
        {4, 1, 4, 1},                        //
        {32767, 1, 32767, 1},                // largest 16-bit count
    };
    for (const auto& c : cases) {
        Matrix m;
        m.Reset(2, 5);
        m.LetItem(1, 4, 9);
        m.Reset(c.rows, c.columns);
        EXPECT_EQ(m.RowCount(), c.expectedRows);
        EXPECT_EQ(m.ColumnCount(), c.expectedColumns);
        EXPECT_EQ(m.Array2D().data,
                  std::vector<double>(static_cast<std::size_t>(c.expectedRows) * c.expectedColumns, 0.0));
    }
}

TEST(MatrixReset, NonPositiveOrOverflowingCountsFailAndKeepTheElements) {
    struct Case {
        std::optional<int> rows, columns;
        int number;
        std::string text;
    };
    const std::vector<Case> cases{
        {0, 4, 2411, kResetFail},  {3, 0, 2411, kResetFail},  {-1, 2, 2411, kResetFail},
        {2, -7, 2411, kResetFail}, {32768, 1, 6, "Overflow"}, {1, 40000, 6, "Overflow"},
    };
    const Array2DData before{{1, 2, 3}, {4, 5, 6}};
    for (const auto& c : cases) {
        Matrix m = Make(before);
        ExpectError(c.number, c.text, [&] { m.Reset(c.rows, c.columns); });
        EXPECT_EQ(m.Array2D(), before);
    }
    Matrix fresh;
    ExpectError(2411, kResetFail, [&] { fresh.Reset(); });  // row count 0 is taken for both
}

// --- Array2D ---------------------------------------------------------------------------------

TEST(MatrixArray2D, LetTakesTheShapeAndGetReturnsACopy) {
    Matrix m;
    m.Reset(4, 4);
    m.Array2D(Array2DData{{1, 2, 3}, {4, 5, 6}});
    EXPECT_EQ(m.RowCount(), 2);
    EXPECT_EQ(m.ColumnCount(), 3);
    EXPECT_EQ(Elements(m), (Rows{{1, 2, 3}, {4, 5, 6}}));
    Array2DData copy = m.Array2D();
    copy(0, 0) = 99;
    EXPECT_EQ(m.Item(0, 0), 1);
}

TEST(MatrixArray2D, BadShapesFail) {
    Matrix m;
    ExpectError(6, "Overflow", [&] { m.Array2D(Array2DData(32768, 0)); });
    ExpectError(6, "Overflow", [&] { m.Array2D(Array2DData(0, 32768)); });
    Array2DData inconsistent(2, 2);
    inconsistent.data.pop_back();
    ExpectError(13, "Type mismatch", [&] { m.Array2D(inconsistent); });
    ExpectError(13, "Type mismatch", [] { Array2DData ragged{{1, 2}, {3}}; });
    EXPECT_EQ(m.RowCount(), 0);
}

TEST(MatrixArray2DPaste, ResetsThenCopiesTheLeadingBlock) {
    struct Case {
        const char* name;
        int rows, columns;  // of the matrix before pasting
        Array2DData pasted;
        bool ignoreError;
        Rows expected;
    };
    const std::vector<Case> cases{
        {"smaller array", 3, 3, {{1, 2}, {3, 4}}, false, {{1, 2, 0}, {3, 4, 0}, {0, 0, 0}}},
        {"larger array clipped",
         3,
         3,
         {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}, {13, 14, 15, 16}},
         true,
         {{1, 2, 3}, {5, 6, 7}, {9, 10, 11}}},
        {"wide matrix becomes square on its rows", 2, 5, {{7}}, false, {{7, 0}, {0, 0}}},
        {"tall matrix becomes square on its rows",
         3,
         2,
         {{1, 2}, {3, 4}},
         false,
         {{1, 2, 0}, {3, 4, 0}, {0, 0, 0}}},
        {"empty array", 2, 2, Array2DData(), false, {{0, 0}, {0, 0}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Matrix m;
        m.Reset(c.rows, c.columns);
        m.LetItem(1, 1, -5);
        m.Array2DPaste(c.pasted, c.ignoreError, true);
        EXPECT_EQ(Elements(m), c.expected);
    }
}

TEST(MatrixArray2DPaste, TooLargeArraysFailAndKeepTheMatrix) {
    const Array2DData before{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
    for (const Array2DData& pasted : {Array2DData(4, 1), Array2DData(1, 4), Array2DData(4, 4)}) {
        Matrix m = Make(before);
        ExpectError(2411, kPasteFail, [&] { m.Array2DPaste(pasted); });
        EXPECT_EQ(m.Array2D(), before);
    }
}

TEST(MatrixArray2DPaste, StoresPastTheSquaredShapeFailAfterTheReset) {
    // 2 x 5 becomes 2 x 2 before the copy, so element (0, 2) of the array has nowhere to go.
    Matrix m;
    m.Reset(2, 5);
    ExpectError(9, kSubscript, [&] { m.Array2DPaste(Array2DData{{1, 2, 3}, {4, 5, 6}}); });
    EXPECT_EQ(Elements(m), (Rows{{1, 2}, {0, 0}}));
}

// --- Rows, columns and items -----------------------------------------------------------------

TEST(MatrixLetRowAndColumn, StoreTheGivenPrefixOrClip) {
    struct Case {
        const char* name;
        std::function<void(Matrix&)> action;
        Rows expected;
    };
    const std::vector<Case> cases{
        {"full row",
         [](Matrix& m) {
             m.LetRow({7, 8, 9}, 1);
         },
         {{1, 2, 3}, {7, 8, 9}}},
        {"short row", [](Matrix& m) { m.LetRow({7}, 0); }, {{7, 2, 3}, {4, 5, 6}}},
        {"long row clipped",
         [](Matrix& m) {
             m.LetRow({7, 8, 9, 10}, 0, true);
         },
         {{7, 8, 9}, {4, 5, 6}}},
        {"empty row, negative index", [](Matrix& m) { m.LetRow({}, -1); }, {{1, 2, 3}, {4, 5, 6}}},
        {"full column",
         [](Matrix& m) {
             m.LetColumn({7, 8}, 2);
         },
         {{1, 2, 7}, {4, 5, 8}}},
        {"short column", [](Matrix& m) { m.LetColumn({7}, 1); }, {{1, 7, 3}, {4, 5, 6}}},
        {"long column clipped",
         [](Matrix& m) {
             m.LetColumn({7, 8, 9}, 0, true);
         },
         {{7, 2, 3}, {8, 5, 6}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Matrix m = Make({{1, 2, 3}, {4, 5, 6}});
        c.action(m);
        EXPECT_EQ(Elements(m), c.expected);
    }
}

TEST(MatrixElementAccess, FailuresRaiseTheirOwnTextsAndChangeNothing) {
    struct Case {
        const char* name;
        std::function<void(Matrix&)> action;
        int number;
        std::string text;
    };
    const std::string letRowIndex = "The Let Row routine index is out of range";
    const std::string letRowFit = "Matrix LetRow procedure fails: the given new Row does not fit";
    const std::string letColumnIndex = "The LetColumn routine index is out of range";
    const std::string letColumnFit = "Matrix LetColumn procedure fails: the given new Coulumn does not fit";
    const std::string item = "Matrix Get Item property fails: the given Index i, j are out of range";
    const std::string letItem = "Matrix LetItem routine fails: the given Index i, j are out of range";
    const std::vector<Case> cases{
        {"LetRow index = rows", [](Matrix& m) { m.LetRow({1}, 2); }, 2411, letRowIndex},
        {"LetRow too long",
         [](Matrix& m) {
             m.LetRow({1, 2, 3, 4}, 0);
         },
         2411, letRowFit},
        {"LetRow negative index", [](Matrix& m) { m.LetRow({1}, -1); }, 9, kSubscript},
        {"LetColumn index = columns", [](Matrix& m) { m.LetColumn({1}, 3); }, 2411, letColumnIndex},
        {"LetColumn too long",
         [](Matrix& m) {
             m.LetColumn({1, 2, 3}, 0);
         },
         2411, letColumnFit},
        {"LetColumn negative index", [](Matrix& m) { m.LetColumn({1}, -2); }, 9, kSubscript},
        {"Row past the end", [](Matrix& m) { m.Row(2); }, 2411, kRowFail},
        {"Row negative", [](Matrix& m) { m.Row(-1); }, 2411, kRowFail},
        {"Column speaks of the row", [](Matrix& m) { m.Column(7); }, 2411, kRowFail},
        {"Column negative", [](Matrix& m) { m.Column(-1); }, 2411, kRowFail},
        {"Item row", [](Matrix& m) { m.Item(2, 0); }, 2411, item},
        {"Item column", [](Matrix& m) { m.Item(0, 3); }, 2411, item},
        {"Item negative", [](Matrix& m) { m.Item(0, -1); }, 2411, item},
        {"LetItem row", [](Matrix& m) { m.LetItem(-1, 0, 1); }, 2411, letItem},
        {"LetItem column", [](Matrix& m) { m.LetItem(1, 3, 1); }, 2411, letItem},
    };
    const Array2DData before{{1, 2, 3}, {4, 5, 6}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Matrix m = Make(before);
        ExpectError(c.number, c.text, [&] { c.action(m); });
        EXPECT_EQ(m.Array2D(), before);
    }
}

TEST(MatrixElementAccess, RowsAndColumnsReadBack) {
    const Matrix m = Make({{1, 2, 3}, {4, 5, 6}});
    EXPECT_EQ(m.Row(1), (std::vector<double>{4, 5, 6}));
    EXPECT_EQ(m.Column(2), (std::vector<double>{3, 6}));
    Matrix empty;
    ExpectError(2411, kRowFail, [&] { empty.Row(0); });
    ExpectError(2411, kRowFail, [&] { empty.Column(0); });
}

// --- New matrices ----------------------------------------------------------------------------

TEST(MatrixCopies, CopyAndTransposeAreIndependent) {
    Matrix m = Make({{1, 2, 3}, {4, 5, 6}});
    auto copy = m.Copy();
    auto transposed = m.Transpose();
    m.LetItem(0, 0, 100);
    EXPECT_EQ(Elements(*copy), (Rows{{1, 2, 3}, {4, 5, 6}}));
    EXPECT_EQ(Elements(*transposed), (Rows{{1, 4}, {2, 5}, {3, 6}}));
    EXPECT_EQ(Matrix().Copy()->RowCount(), 0);
}

TEST(MatrixSubMatrix, CopiesTheChosenBlock) {
    const Matrix m = Make({{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}});
    EXPECT_EQ(Elements(*m.GetSubMatrix(1, 2, 1, 3)), (Rows{{6, 7, 8}, {10, 11, 12}}));
    EXPECT_EQ(Elements(*m.GetSubMatrix(0, 0, 2, 2)), (Rows{{3}}));
    EXPECT_EQ(Elements(*m.GetSubMatrix(0, 2, 0, 3)), Elements(m));
}

TEST(MatrixSubMatrix, InvalidBoundsFail) {
    const std::string order = "Sub Matrix arguments should have rowA <= rowB and columnA <= columnB";
    const std::string range = "The GetSubMatrix index is out of range";
    struct Case {
        int rowA, rowB, columnA, columnB;
        int number;
        std::string text;
    };
    const std::vector<Case> cases{
        {2, 1, 0, 0, 2411, order},   {0, 0, 3, 2, 2411, order},    {5, 4, 9, 8, 2411, order},
        {0, 3, 0, 0, 2411, range},   {0, 0, 0, 4, 2411, range},    {-1, 0, 0, 0, 2411, range},
        {-2, -1, 0, 0, 2411, range}, {0, 0, -1, 0, 9, kSubscript},  // ColumnA is not range-checked; its
                                                                    // element read fails
    };
    const Matrix m = Make({{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}});
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.rowA << ' ' << c.rowB << ' ' << c.columnA << ' ' << c.columnB);
        ExpectError(c.number, c.text, [&] { m.GetSubMatrix(c.rowA, c.rowB, c.columnA, c.columnB); });
    }
}

TEST(MatrixSubMatrix, RemoveRowColumnSkipsThemOrKeepsAWholeDimension) {
    struct Case {
        const char* name;
        Array2DData source;
        int removeRow, removeColumn;
        Rows expected;
    };
    const Array2DData square{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
    const Array2DData wide{{1, 2, 3, 4, 5}, {6, 7, 8, 9, 10}};
    const Array2DData tall{{1, 2}, {3, 4}, {5, 6}, {7, 8}, {9, 10}};
    const std::vector<Case> cases{
        {"row 1 column 2", square, 1, 2, {{1, 2}, {7, 8}}},
        {"row 2 column 1", square, 2, 1, {{1, 3}, {4, 6}}},
        {"row 0 kept", square, 0, 1, {{1, 3}, {4, 6}, {7, 9}}},
        {"column 0 kept", square, 1, 0, {{1, 2, 3}, {7, 8, 9}}},
        {"both kept", square, 3, -1, {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}},
        {"column beyond the row count kept", wide, 1, 3, {{1, 2, 3, 4, 5}}},
        {"column 1 is below the row count", wide, 1, 1, {{1, 3, 4, 5}}},
        {"column past the columns of a tall matrix drops the last", tall, 4, 3, {{1}, {3}, {5}, {7}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Elements(*Make(c.source).GetSubMatrixByRemoveRowCol(c.removeRow, c.removeColumn, true)),
                  c.expected);
    }
}

TEST(MatrixSubMatrix, RemoveRowColumnRejectsRowZeroColumnZeroAndTheRowCount) {
    const std::string text = "GetSubMatrixByRomoveRowCol routine: RemoveRow or RemoveCol is out of range";
    const Matrix square = Make({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
    const Matrix wide = Make({{1, 2, 3, 4, 5}, {6, 7, 8, 9, 10}});
    ExpectError(2411, text, [&] { square.GetSubMatrixByRemoveRowCol(0, 1, false); });
    ExpectError(2411, text, [&] { square.GetSubMatrixByRemoveRowCol(1, 0, false); });
    ExpectError(2411, text, [&] { square.GetSubMatrixByRemoveRowCol(3, 1, false); });
    ExpectError(2411, text, [&] { wide.GetSubMatrixByRemoveRowCol(1, 3, false); });  // 3 >= 2 rows
    EXPECT_EQ(Elements(*wide.GetSubMatrixByRemoveRowCol(1, 1, false)), (Rows{{1, 3, 4, 5}}));
    // Nothing would be left of a one-column matrix.
    ExpectError(2411, kResetFail, [] { Make({{1}, {2}}).GetSubMatrixByRemoveRowCol(1, 1, false); });
}

// --- Arithmetic ------------------------------------------------------------------------------

TEST(MatrixArithmetic, RoundUpRoundsHalvesToEven) {
    const Matrix m = Make({{2.5, 3.5, -2.5}, {0.125, 0.375, 1.0 / 3}});
    EXPECT_EQ(Elements(*m.RoundUp(0)), (Rows{{2, 4, -2}, {0, 0, 0}}));
    EXPECT_EQ(Elements(*m.RoundUp(2)), (Rows{{2.5, 3.5, -2.5}, {0.12, 0.38, 0.33}}));
    EXPECT_EQ(m.Item(1, 0), 0.125);
}

TEST(MatrixArithmetic, ProductAndVectorProduct) {
    const Matrix a = Make({{1, 2, 3}, {4, 5, 6}});
    const Matrix b = Make({{7, 8}, {9, 10}, {11, 12}});
    // 1*7+2*9+3*11 = 58, 1*8+2*10+3*12 = 64, 4*7+5*9+6*11 = 139, 4*8+5*10+6*12 = 154
    EXPECT_EQ(Elements(*a.Product(b)), (Rows{{58, 64}, {139, 154}}));
    EXPECT_EQ(Elements(*b.Product(a)), (Rows{{39, 54, 69}, {49, 68, 87}, {59, 82, 105}}));
    EXPECT_EQ(a.MultiplyWithVector({1, -1, 2}), (std::vector<double>{5, 11}));
    const std::string product =
        "Matrix Product Fail: the number of Columns of the first Matrix must equal to the number of Rows of "
        "the second "
        "Matrix";
    ExpectError(2411, product, [&] { a.Product(a); });
    const std::string vector =
        "The MultiplyWithVector routine fails: vectorU doesnot have the same dimension with the Matrix";
    ExpectError(2411, vector, [&] { a.MultiplyWithVector({1, 2}); });
    ExpectError(2411, vector, [&] { a.MultiplyWithVector({1, 2, 3, 4}); });
}

TEST(MatrixArithmetic, ScalingAndSums) {
    const Matrix a = Make({{1, 2}, {3, 4}});
    const Matrix b = Make({{0.5, -1}, {2, 8}});
    EXPECT_EQ(Elements(*a.MultiplyWithNumber(-2)), (Rows{{-2, -4}, {-6, -8}}));
    EXPECT_EQ(Elements(*a.PlusWithMatrix(b)), (Rows{{1.5, 1}, {5, 12}}));
    EXPECT_EQ(Elements(*a.PlusWithMatrix(b, true)), (Rows{{0.5, 3}, {1, -4}}));
    EXPECT_EQ(Elements(*a.PlusWithNumber(1.5)), (Rows{{2.5, 3.5}, {4.5, 5.5}}));
    EXPECT_EQ(Elements(a), (Rows{{1, 2}, {3, 4}}));
    const std::string size = "PlucWithMatrix routine fails: the Matrixes donot have the same size";
    ExpectError(2411, size, [&] { a.PlusWithMatrix(Make({{1, 2}})); });
    ExpectError(2411, size, [&] { a.PlusWithMatrix(Make({{1}, {2}}), true); });
}

TEST(MatrixArithmetic, PlusWithZeroIsAnIndependentCopy) {
    Matrix a = Make({{-0.0, 2}});
    auto copy = a.PlusWithNumber(0);
    EXPECT_TRUE(std::signbit(copy->Item(0, 0)));  // copied, not added to
    a.LetItem(0, 1, 7);
    EXPECT_EQ(copy->Item(0, 1), 2);
}

// --- Placeholders ----------------------------------------------------------------------------

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
