#include "geometry/Matrix.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

#include "core/Error.h"
#include "core/Message.h"
#include "core/Rounding.h"
#include "core/Timer.h"
#include "geometry/GaussElimination.h"

namespace tgp {

namespace {

constexpr int kMaxCount = 32767;  // counts are 16-bit Integers

int16_t ToCount(int count) {
    if (count > kMaxCount) throw Error::Overflow();
    return static_cast<int16_t>(count);
}

// Row and Column share this text: a column index out of range is reported as the row's.
constexpr const char* kRowIndexOutOfRange = "Matrix Get Row property fails: the row index is out of range";

// A rows x columns matrix of zeros, made the published way (so a zero count fails as Reset does).
std::shared_ptr<Matrix> NewMatrix(int rows, int columns) {
    auto result = std::make_shared<Matrix>();
    result->Reset(rows, columns);
    return result;
}

void ShowCodeOnHold() {
    ShowMessage("Code On Hold ^^", "Tessary World");
}

// Seconds since the given Timer reading, written only when the caller asked for it.
void StoreElapsed(double* elapsed, double start) {
    if (elapsed) *elapsed = Timer() - start;
}

// Copies the leading n x n block at `source` (row stride `columns`) without row `skipRow` and column
// `skipCol` into `minor`.
void FillMinor(const double* source, int n, int columns, int skipRow, int skipCol,
               std::vector<double>& minor) {
    double* out = minor.data();
    for (int p = 0; p < n; ++p) {
        if (p == skipRow) continue;
        const double* row = source + static_cast<std::size_t>(p) * columns;
        for (int q = 0; q < n; ++q) {
            if (q != skipCol) *out++ = row[q];
        }
    }
}

}  // namespace

// --- Array2DData ------------------------------------------------------------------------------

Array2DData::Array2DData(int rowCount, int colCount)
    : rows(rowCount), cols(colCount), data(static_cast<std::size_t>(rowCount) * colCount, 0.0) {}

Array2DData::Array2DData(int rowCount, int colCount, std::vector<double> values)
    : rows(rowCount), cols(colCount), data(std::move(values)) {}

Array2DData::Array2DData(std::initializer_list<std::initializer_list<double>> rowList)
    : rows(static_cast<int>(rowList.size())),
      cols(rowList.size() ? static_cast<int>(rowList.begin()->size()) : 0) {
    data.reserve(static_cast<std::size_t>(rows) * cols);
    for (const auto& row : rowList) {
        if (static_cast<int>(row.size()) != cols) throw Error::TypeMismatch();
        data.insert(data.end(), row.begin(), row.end());
    }
}

// --- Storage ----------------------------------------------------------------------------------

template <class T>
T* Matrix::ZeroPageAllocator<T>::allocate(std::size_t n) {
    if (n > std::size_t(-1) / sizeof(T)) throw std::bad_alloc();
    void* memory = std::calloc(n ? n : 1, sizeof(T));
    if (!memory) throw std::bad_alloc();
    return static_cast<T*>(memory);
}
template struct Matrix::ZeroPageAllocator<double>;

void Matrix::ClearCaches() {
    cachedInverse_.reset();
    cachedDeterminant_.reset();
}

void Matrix::Reset(std::optional<int> RowCount, std::optional<int> ColumnCount) {
    ClearCaches();
    const int rows = RowCount.value_or(rowCount_);
    const int columns = ColumnCount.value_or(rowCount_);  // the row count, as published
    if (rows <= 0 || columns <= 0)
        ThrowLibraryError("Matrix Reset fail: RowCount and ColumnCount must be greater than 0");
    const int16_t newRows = ToCount(rows);
    const int16_t newColumns = ToCount(columns);
    // A new buffer rather than assign: shrinking from 32767 x 32767 gives the 8 GB back at once.
    try {
        Storage(static_cast<std::size_t>(newRows) * newColumns).swap(data_);
    } catch (const std::bad_alloc&) {
        throw Error::OutOfMemory();
    }
    rowCount_ = newRows;
    columnCount_ = newColumns;
}

void Matrix::Array2D(const Array2DData& newArray) {
    if (newArray.rows < 0 || newArray.cols < 0 ||
        newArray.data.size() != static_cast<std::size_t>(newArray.rows) * newArray.cols)
        throw Error::TypeMismatch();
    const int16_t rows = ToCount(newArray.rows);
    const int16_t columns = ToCount(newArray.cols);
    data_.assign(newArray.data.begin(), newArray.data.end());
    rowCount_ = rows;
    columnCount_ = columns;
    ClearCaches();
}

void Matrix::Array2DPaste(const Array2DData& newArray, bool IgnoreError, bool /*ShrinkToFit*/) {
    static constexpr const char* kDoesNotFit =
        "Matrix Array2DPaste procedure fails: the array's dimensions donot fit";
    int lastRow = newArray.rows - 1;
    if (lastRow >= rowCount_) {
        if (!IgnoreError) ThrowLibraryError(kDoesNotFit);
        lastRow = rowCount_ - 1;
    }
    int lastColumn = newArray.cols - 1;
    if (lastColumn >= columnCount_) {
        if (!IgnoreError) ThrowLibraryError(kDoesNotFit);
        lastColumn = columnCount_ - 1;
    }
    // The column bound was clipped against the old column count, but the reset makes the matrix
    // square on its row count; a wide matrix then fails at the first store past that (error 9).
    Reset();
    for (int i = 0; i <= lastRow; ++i) {
        for (int j = 0; j <= lastColumn; ++j) {
            if (!Contains(i, j)) throw Error::SubscriptOutOfRange();
            At(i, j) = newArray(i, j);
        }
    }
}

void Matrix::LetRow(const std::vector<double>& newRow, int rowIndex, bool IgnoreError) {
    if (rowIndex >= rowCount_) ThrowLibraryError("The Let Row routine index is out of range");
    int last = static_cast<int>(newRow.size()) - 1;
    if (last >= columnCount_) {
        if (!IgnoreError) ThrowLibraryError("Matrix LetRow procedure fails: the given new Row does not fit");
        last = columnCount_ - 1;
    }
    if (last >= 0 && rowIndex < 0) throw Error::SubscriptOutOfRange();
    for (int j = 0; j <= last; ++j) At(rowIndex, j) = newRow[j];
    ClearCaches();
}

void Matrix::LetColumn(const std::vector<double>& newColumn, int colIndex, bool IgnoreError) {
    if (colIndex >= columnCount_) ThrowLibraryError("The LetColumn routine index is out of range");
    int last = static_cast<int>(newColumn.size()) - 1;
    if (last >= rowCount_) {
        if (!IgnoreError)
            ThrowLibraryError("Matrix LetColumn procedure fails: the given new Coulumn does not fit");
        last = rowCount_ - 1;
    }
    if (last >= 0 && colIndex < 0) throw Error::SubscriptOutOfRange();
    for (int i = 0; i <= last; ++i) At(i, colIndex) = newColumn[i];
    ClearCaches();
}

Array2DData Matrix::Array2D() const {
    return {rowCount_, columnCount_, std::vector<double>(data_.begin(), data_.end())};
}

std::vector<double> Matrix::Row(int Index) const {
    if (Index < 0 || Index >= rowCount_ || columnCount_ == 0) ThrowLibraryError(kRowIndexOutOfRange);
    const auto first = data_.begin() + static_cast<std::ptrdiff_t>(Index) * columnCount_;
    return {first, first + columnCount_};
}

std::vector<double> Matrix::Column(int Index) const {
    if (Index < 0 || Index >= columnCount_ || rowCount_ == 0) ThrowLibraryError(kRowIndexOutOfRange);
    std::vector<double> column(static_cast<std::size_t>(rowCount_));
    for (int i = 0; i < rowCount_; ++i) column[i] = At(i, Index);
    return column;
}

double Matrix::Item(int i, int j) const {
    if (!Contains(i, j))
        ThrowLibraryError("Matrix Get Item property fails: the given Index i, j are out of range");
    return At(i, j);
}

void Matrix::LetItem(int i, int j, double newvalue) {
    if (!Contains(i, j))
        ThrowLibraryError("Matrix LetItem routine fails: the given Index i, j are out of range");
    At(i, j) = newvalue;
    ClearCaches();
}

// --- New matrices from this one -----------------------------------------------------------------

std::shared_ptr<Matrix> Matrix::Copy() const {
    auto copy = std::make_shared<Matrix>();
    copy->Array2D(Array2D());
    return copy;
}

std::shared_ptr<Matrix> Matrix::Transpose() const {
    auto result = NewMatrix(columnCount_, rowCount_);
    for (int i = 0; i < rowCount_; ++i)
        for (int j = 0; j < columnCount_; ++j) result->At(j, i) = At(i, j);
    return result;
}

std::shared_ptr<Matrix> Matrix::GetSubMatrix(int rowA, int rowB, int ColumnA, int ColumnB) const {
    if (rowB < rowA || ColumnB < ColumnA)
        ThrowLibraryError("Sub Matrix arguments should have rowA <= rowB and columnA <= columnB");
    if (!(ColumnB < columnCount_ && rowB >= 0 && rowA >= 0 && rowB < rowCount_))
        ThrowLibraryError("The GetSubMatrix index is out of range");
    auto result = NewMatrix(rowB - rowA + 1, ColumnB - ColumnA + 1);
    for (int i = 0; i <= rowB - rowA; ++i) {
        for (int j = 0; j <= ColumnB - ColumnA; ++j) {
            if (!Contains(rowA + i, ColumnA + j)) throw Error::SubscriptOutOfRange();
            result->At(i, j) = At(rowA + i, ColumnA + j);
        }
    }
    return result;
}

std::shared_ptr<Matrix> Matrix::GetSubMatrixByRemoveRowCol(int RemoveRow, int RemoveCol,
                                                           bool IgnoreErr) const {
    const bool removesRow = RemoveRow < rowCount_ && RemoveRow > 0;
    const bool removesColumn = RemoveCol < rowCount_ && RemoveCol > 0;  // the row count, as published
    if ((!removesRow || !removesColumn) && !IgnoreErr)
        ThrowLibraryError("GetSubMatrixByRomoveRowCol routine: RemoveRow or RemoveCol is out of range");
    auto result = NewMatrix(rowCount_ - (removesRow ? 1 : 0), columnCount_ - (removesColumn ? 1 : 0));
    // A kept dimension is copied whole: its skip index lies past every source index.
    const int skipRow = removesRow ? RemoveRow : rowCount_;
    const int skipColumn = removesColumn ? RemoveCol : columnCount_;
    for (int p = 0; p < result->rowCount_; ++p) {
        const int sourceRow = p < skipRow ? p : p + 1;
        for (int q = 0; q < result->columnCount_; ++q) {
            const int sourceColumn = q < skipColumn ? q : q + 1;
            result->At(p, q) = At(sourceRow, sourceColumn);
        }
    }
    return result;
}

std::shared_ptr<Matrix> Matrix::RoundUp(int nDigit) const {
    auto result = Copy();
    for (double& value : result->data_) value = RoundHalfEven(value, nDigit);
    return result;
}

std::shared_ptr<Matrix> Matrix::Product(const Matrix& argMatrix) const {
    if (columnCount_ != argMatrix.rowCount_)
        ThrowLibraryError(
            "Matrix Product Fail: the number of Columns of the first Matrix must equal to the number of Rows "
            "of the "
            "second Matrix");
    auto result = NewMatrix(rowCount_, argMatrix.columnCount_);
    for (int i = 0; i < rowCount_; ++i) {
        for (int j = 0; j < argMatrix.columnCount_; ++j) {
            double sum = 0;
            for (int k = 0; k < columnCount_; ++k) sum += At(i, k) * argMatrix.At(k, j);
            result->At(i, j) = CheckFinite(sum);
        }
    }
    return result;
}

std::vector<double> Matrix::MultiplyWithVector(const std::vector<double>& vectorU) const {
    if (vectorU.size() != static_cast<std::size_t>(columnCount_))
        ThrowLibraryError(
            "The MultiplyWithVector routine fails: vectorU doesnot have the same dimension with the Matrix");
    std::vector<double> result(static_cast<std::size_t>(rowCount_));
    for (int i = 0; i < rowCount_; ++i) {
        double sum = 0;
        for (int k = 0; k < columnCount_; ++k) sum += At(i, k) * vectorU[k];
        result[i] = CheckFinite(sum);
    }
    return result;
}

std::shared_ptr<Matrix> Matrix::MultiplyWithNumber(double ScaleFactor) const {
    auto result = Copy();
    for (double& value : result->data_) value = CheckFinite(value * ScaleFactor);
    return result;
}

std::shared_ptr<Matrix> Matrix::PlusWithMatrix(const Matrix& argMatrix, bool SubtractFlag) const {
    if (rowCount_ != argMatrix.rowCount_ || columnCount_ != argMatrix.columnCount_)
        ThrowLibraryError("PlucWithMatrix routine fails: the Matrixes donot have the same size");
    auto result = NewMatrix(rowCount_, columnCount_);
    for (std::size_t k = 0; k < data_.size(); ++k)
        result->data_[k] =
            CheckFinite(SubtractFlag ? data_[k] - argMatrix.data_[k] : data_[k] + argMatrix.data_[k]);
    return result;
}

std::shared_ptr<Matrix> Matrix::PlusWithNumber(double realNumber) const {
    if (realNumber == 0) return Copy();
    auto result = NewMatrix(rowCount_, columnCount_);
    for (std::size_t k = 0; k < data_.size(); ++k) result->data_[k] = CheckFinite(data_[k] + realNumber);
    return result;
}

// --- Determinant, inverse, solvers --------------------------------------------------------------

double Matrix::Det(double* /*ElapsedTime*/, Array2DData* GaussMatrix) {
    if (cachedDeterminant_) return *cachedDeterminant_;
    Array2DData eliminated = Array2D();
    const GaussElimination::Result result =
        GaussElimination(eliminated.data.data(), rowCount_, columnCount_, nullptr).Run();
    CheckFinite(result.determinant);  // an overflowing product of pivots is not a determinant
    if (result.completed && GaussMatrix) {
        CheckAllFinite(eliminated.data);
        *GaussMatrix = std::move(eliminated);
    }
    cachedDeterminant_ = result.determinant;
    return result.determinant;
}

// Cofactor inverse: R(j, i) = (-1)^(i+j) * det(minor without row i, column j) / det. One elimination
// per element, order n^5 overall; one minor buffer is reused for all of them.
void Matrix::BuildInverse() {
    cachedInverse_ = std::make_shared<Matrix>();
    const int n = rowCount_;
    std::vector<double> work(data_.begin(), data_.end());
    const double determinant =
        CheckFinite(GaussElimination(work.data(), n, columnCount_, nullptr).Run().determinant);
    if (determinant == 0) return;
    Array2DData inverse(n, n);
    const std::size_t minorSide = n > 0 ? static_cast<std::size_t>(n - 1) : 0;
    std::vector<double> minor(minorSide * minorSide);
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            FillMinor(data_.data(), n, columnCount_, i, j, minor);
            const double minorDeterminant =
                GaussElimination(minor.data(), n - 1, n - 1, nullptr).Run().determinant;
            inverse(j, i) = CheckFinite(std::pow(-1.0, i + j) * minorDeterminant / determinant);
        }
    }
    cachedInverse_->Array2D(inverse);
}

const Matrix& Matrix::CachedInverse() {
    // A failure while building (a matrix narrower than tall) leaves the cached inverse without
    // elements, as for a singular matrix. An overflow is not a singular matrix: it is raised, and
    // nothing is cached.
    try {
        if (!cachedInverse_) BuildInverse();
    } catch (const Error& e) {
        if (e.number() == Error::Overflow().number()) {
            cachedInverse_.reset();
            throw;
        }
    }
    return *cachedInverse_;
}

std::shared_ptr<Matrix> Matrix::Inverse(double* ElapsedTime) {
    const double start = Timer();
    auto result = std::make_shared<Matrix>();
    result->Array2D(CachedInverse().Array2D());
    StoreElapsed(ElapsedTime, start);
    return result;
}

std::optional<std::vector<double>> Matrix::SolveWithGaussMethod(const std::vector<double>& YVector,
                                                                double* ElapsedTime) const {
    const double start = Timer();
    std::vector<double> eliminated(data_.begin(), data_.end());
    std::vector<double> y = YVector;
    const double determinant =
        GaussElimination(eliminated.data(), rowCount_, columnCount_, &y).Run().determinant;
    std::optional<std::vector<double>> x;
    if (CheckFinite(determinant) != 0)
        x = CheckAllFinite(BackSubstitute(eliminated, rowCount_, columnCount_, y));
    StoreElapsed(ElapsedTime, start);
    return x;
}

std::optional<std::vector<double>> Matrix::Solve(const std::vector<double>& YVector, double* ElapsedTime) {
    const double start = Timer();
    const Matrix& inverse = CachedInverse();
    std::optional<std::vector<double>> x;
    if (inverse.ColumnCount() != 0) x = inverse.MultiplyWithVector(YVector);
    StoreElapsed(ElapsedTime, start);
    return x;
}

// --- Placeholders -------------------------------------------------------------------------------

std::shared_ptr<Matrix> Matrix::InverseWithExcelMethod(double* /*ElapsedTime*/) const {
    ShowCodeOnHold();
    return nullptr;
}

void Matrix::DisplayOnExcelWorksheet() const {
    ShowCodeOnHold();
}

void Matrix::PrintToTextFile(const std::string& /*FileName*/) const {
    ShowCodeOnHold();
}

}  // namespace tgp
