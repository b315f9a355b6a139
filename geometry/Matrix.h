#pragma once

#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tgp {

// A dense two-dimensional array of doubles, zero-based, stored row-major: element (i, j) is
// data[i * cols + j]. It is what Matrix::Array2D takes and gives (the automation layer maps it to a
// two-dimensional SAFEARRAY whose upper bounds are rows - 1 and cols - 1).
struct Array2DData {
    int rows = 0;
    int cols = 0;
    std::vector<double> data;

    Array2DData() = default;
    // rows x cols zeros.
    Array2DData(int rowCount, int colCount);
    // Row-major values; Matrix::Array2D checks that there are rows * cols of them (else error 13).
    Array2DData(int rowCount, int colCount, std::vector<double> values);
    // Row by row: {{1, 2}, {3, 4}}. Every row must have the same length (else error 13).
    Array2DData(std::initializer_list<std::initializer_list<double>> rowList);

    double& operator()(int i, int j) { return data[static_cast<std::size_t>(i) * cols + j]; }
    double operator()(int i, int j) const { return data[static_cast<std::size_t>(i) * cols + j]; }
    bool operator==(const Array2DData&) const = default;
};

// A dense zero-based matrix of doubles with fill, read, reshape and arithmetic members, a determinant,
// a cofactor inverse and two linear solvers. Members appear in the published order.
//
// Counts are 16-bit: a count beyond 32767 raises error 6. Every failure throws tgp::Error; a failing
// member leaves the matrix as it was (Reset clears the caches first, and Array2DPaste has already
// zeroed the elements when a later element store fails). Every member that changes elements clears
// the cached determinant and the cached inverse.
class Matrix {
  public:
    // Re-dimensions to RowCount x ColumnCount zeros. A missing RowCount keeps the row count; a
    // missing ColumnCount ALSO takes the current row count (kept as published).
    void Reset(std::optional<int> RowCount = std::nullopt, std::optional<int> ColumnCount = std::nullopt);
    int16_t RowCount() const { return rowCount_; }
    int16_t ColumnCount() const { return columnCount_; }
    // Takes the counts from the array's shape.
    void Array2D(const Array2DData& newArray);
    // Resets to (row count x row count) zeros, then copies the array's leading block in; arrays larger
    // than the matrix fail unless IgnoreError clips them. ShrinkToFit is accepted and ignored.
    void Array2DPaste(const Array2DData& newArray, bool IgnoreError = false, bool ShrinkToFit = false);
    void LetRow(const std::vector<double>& newRow, int rowIndex, bool IgnoreError = false);
    void LetColumn(const std::vector<double>& newColumn, int colIndex, bool IgnoreError = false);
    Array2DData Array2D() const;
    std::vector<double> Row(int Index) const;
    // Fails with the same text as Row (the one that speaks of the row), as published.
    std::vector<double> Column(int Index) const;
    double Item(int i, int j) const;
    void LetItem(int i, int j, double newvalue);

    std::shared_ptr<Matrix> Copy() const;
    std::shared_ptr<Matrix> Transpose() const;
    // Rows rowA..rowB and columns ColumnA..ColumnB (ColumnA is not range-checked; a negative one fails
    // with error 9 when read).
    std::shared_ptr<Matrix> GetSubMatrix(int rowA, int rowB, int ColumnA, int ColumnB) const;
    // Without one row and one column. Row 0 and column 0 can never be removed, and RemoveCol is
    // compared with the ROW count (kept as published). With IgnoreErr an out-of-range index keeps that
    // dimension whole: every row (or column) is copied in order, none skipped.
    std::shared_ptr<Matrix> GetSubMatrixByRemoveRowCol(int RemoveRow, int RemoveCol, bool IgnoreErr) const;
    // Every element rounded half-to-even to nDigit decimals.
    std::shared_ptr<Matrix> RoundUp(int nDigit) const;
    std::shared_ptr<Matrix> Product(const Matrix& argMatrix) const;
    std::vector<double> MultiplyWithVector(const std::vector<double>& vectorU) const;
    std::shared_ptr<Matrix> MultiplyWithNumber(double ScaleFactor) const;
    std::shared_ptr<Matrix> PlusWithMatrix(const Matrix& argMatrix, bool SubtractFlag = false) const;
    std::shared_ptr<Matrix> PlusWithNumber(double realNumber) const;
    bool IsSquareMatrix() const { return rowCount_ == columnCount_; }
    // Elements the storage holds room for: after a shrinking Reset, no more than the new size.
    std::size_t StorageCapacity() const { return data_.capacity(); }

    // Determinant by forward elimination (rows exchanged only for an exact zero pivot), cached.
    // ElapsedTime is accepted and not changed. GaussMatrix receives the eliminated matrix; it is left
    // unassigned when the elimination stopped at a zero column or the value came from the cache.
    // Only the rows' square is used; a matrix narrower than tall fails with error 9. A matrix without
    // elements has the empty product, 1.
    double Det(double* ElapsedTime = nullptr, Array2DData* GaussMatrix = nullptr);
    // Inverse by cofactors, cached; returns an independent copy. A singular matrix gives a matrix
    // without elements (0 x 0); a 1 x 1 matrix [[a]] gives [[1 / a]]. Never fails.
    std::shared_ptr<Matrix> Inverse(double* ElapsedTime = nullptr);
    // x with A.x = YVector by elimination and back substitution; nullopt (Null) when singular.
    // Uses and fills no cache. ElapsedTime receives seconds.
    std::optional<std::vector<double>> SolveWithGaussMethod(const std::vector<double>& YVector,
                                                            double* ElapsedTime = nullptr) const;
    // x = Inverse . YVector through the cached inverse; nullopt (Empty) when singular. A YVector of
    // the wrong length fails as MultiplyWithVector does.
    std::optional<std::vector<double>> Solve(const std::vector<double>& YVector,
                                             double* ElapsedTime = nullptr);

    // Placeholders: they show "Code On Hold ^^" (title "Tessary World") and do nothing else.
    std::shared_ptr<Matrix> InverseWithExcelMethod(double* ElapsedTime = nullptr) const;
    void DisplayOnExcelWorksheet() const;
    void PrintToTextFile(const std::string& FileName) const;

  private:
    double& At(int i, int j) { return data_[static_cast<std::size_t>(i) * columnCount_ + j]; }
    double At(int i, int j) const { return data_[static_cast<std::size_t>(i) * columnCount_ + j]; }
    bool Contains(int i, int j) const { return i >= 0 && i < rowCount_ && j >= 0 && j < columnCount_; }
    void ClearCaches();
    void BuildInverse();
    // The cached inverse, built on first use; without elements when there is none.
    const Matrix& CachedInverse();

    int16_t rowCount_ = 0;
    int16_t columnCount_ = 0;
    // Storage whose fresh elements are the zero pages the system hands out (calloc), not zeros
    // written one by one: a 32767 x 32767 Reset costs no time and no memory until it is used, and
    // fails with 7 "Out of memory" only where the system cannot promise that much.
    template <class T>
    struct ZeroPageAllocator {
        using value_type = T;
        ZeroPageAllocator() = default;
        template <class U>
        ZeroPageAllocator(const ZeroPageAllocator<U>&) {}
        T* allocate(std::size_t n);
        void deallocate(T* p, std::size_t) { std::free(p); }
        template <class U, class... Args>
        void construct(U* p, Args&&... args) {
            if constexpr (sizeof...(Args) > 0) ::new (static_cast<void*>(p)) U(std::forward<Args>(args)...);
            // value-initialisation: the memory is already zero
        }
        bool operator==(const ZeroPageAllocator&) const { return true; }
    };
    using Storage = std::vector<double, ZeroPageAllocator<double>>;

    Storage data_;                             // row-major, rowCount_ * columnCount_
    std::shared_ptr<Matrix> cachedInverse_;    // null until built; 0 x 0 when singular
    std::optional<double> cachedDeterminant_;  // nullopt until computed
};

}  // namespace tgp
