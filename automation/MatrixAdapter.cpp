#include <optional>

#include "DispatchObject.h"
#include "GeometryAdapters.h"
#include "Out.h"
#include "Strings.h"
#include "Variants.h"

namespace tgp::automation {
namespace {

std::optional<int> OptionalCount(const VARIANT& value) {
    if (IsMissing(value)) return std::nullopt;
    return ToInteger16(value);
}

bool Given(const VARIANT* value) {
    return !IsOmitted(value);
}

class MatrixAdapter final : public DispatchObject<::_Matrix, ::Matrix, tgp::Matrix> {
  public:
    using DispatchObject::DispatchObject;

    HRESULT STDMETHODCALLTYPE Reset(VARIANT RowCount, VARIANT ColumnCount) override {
        return Run([&] { native().Reset(OptionalCount(RowCount), OptionalCount(ColumnCount)); });
    }
    HRESULT STDMETHODCALLTYPE get_RowCount(short* result) override {
        return Run([&] { Out(result) = native().RowCount(); });
    }
    HRESULT STDMETHODCALLTYPE get_ColumnCount(short* result) override {
        return Run([&] { Out(result) = native().ColumnCount(); });
    }
    HRESULT STDMETHODCALLTYPE put_Array2D(VARIANT rhs) override {
        return Run([&] { native().Array2D(ToArray2D(rhs)); });
    }
    HRESULT STDMETHODCALLTYPE Array2DPaste(VARIANT newArray, VARIANT_BOOL IgnoreError,
                                           VARIANT_BOOL ShrinkToFit) override {
        return Run([&] {
            native().Array2DPaste(ToArray2D(newArray), IgnoreError != VARIANT_FALSE,
                                  ShrinkToFit != VARIANT_FALSE);
        });
    }
    HRESULT STDMETHODCALLTYPE LetRow(VARIANT newRow, short* rowIndex, VARIANT_BOOL IgnoreError) override {
        return Run([&] { native().LetRow(ToPoint(newRow), Out(rowIndex), IgnoreError != VARIANT_FALSE); });
    }
    HRESULT STDMETHODCALLTYPE LetColumn(VARIANT newColumn, short* colIndex,
                                        VARIANT_BOOL IgnoreError) override {
        return Run(
            [&] { native().LetColumn(ToPoint(newColumn), Out(colIndex), IgnoreError != VARIANT_FALSE); });
    }
    HRESULT STDMETHODCALLTYPE get_Array2D(VARIANT* result) override {
        return Run([&] { SetArray2D(&Out(result), native().Array2D()); });
    }
    HRESULT STDMETHODCALLTYPE get_Row(short* Index, VARIANT* result) override {
        return Run([&] { SetDoubleArray(&Out(result), native().Row(Out(Index))); });
    }
    HRESULT STDMETHODCALLTYPE get_Column(short* Index, VARIANT* result) override {
        return Run([&] { SetDoubleArray(&Out(result), native().Column(Out(Index))); });
    }
    HRESULT STDMETHODCALLTYPE get_Item(short* i, short* j, VARIANT* result) override {
        return Run([&] { SetDouble(&Out(result), native().Item(Out(i), Out(j))); });
    }
    HRESULT STDMETHODCALLTYPE LetItem(short* i, short* j, double newvalue) override {
        return Run([&] { native().LetItem(Out(i), Out(j), Finite(newvalue)); });
    }
    HRESULT STDMETHODCALLTYPE Copy(::_Matrix** result) override {
        return Give(result, [&] { return native().Copy(); });
    }
    HRESULT STDMETHODCALLTYPE Transpose(::_Matrix** result) override {
        return Give(result, [&] { return native().Transpose(); });
    }
    HRESULT STDMETHODCALLTYPE GetSubMatrix(short* rowA, short* rowB, short* ColumnA, short* ColumnB,
                                           ::_Matrix** result) override {
        return Give(result,
                    [&] { return native().GetSubMatrix(Out(rowA), Out(rowB), Out(ColumnA), Out(ColumnB)); });
    }
    HRESULT STDMETHODCALLTYPE GetSubMatrixByRemoveRowCol(short* RemoveRow, short* RemoveCol,
                                                         VARIANT_BOOL IgnoreErr,
                                                         ::_Matrix** result) override {
        return Give(result, [&] {
            return native().GetSubMatrixByRemoveRowCol(Out(RemoveRow), Out(RemoveCol),
                                                       IgnoreErr != VARIANT_FALSE);
        });
    }
    HRESULT STDMETHODCALLTYPE RoundUp(short* nDigit, ::_Matrix** result) override {
        return Give(result, [&] { return native().RoundUp(Out(nDigit)); });
    }
    HRESULT STDMETHODCALLTYPE Product(::_Matrix* argMatrix, ::_Matrix** result) override {
        return Give(result, [&] { return native().Product(*RequiredNative<tgp::Matrix>(argMatrix)); });
    }
    HRESULT STDMETHODCALLTYPE MultiplyWithVector(VARIANT vectorU, VARIANT* result) override {
        return Run([&] { SetDoubleArray(&Out(result), native().MultiplyWithVector(ToPoint(vectorU))); });
    }
    HRESULT STDMETHODCALLTYPE MultiplyWithNumber(double ScaleFactor, ::_Matrix** result) override {
        return Give(result, [&] { return native().MultiplyWithNumber(Finite(ScaleFactor)); });
    }
    HRESULT STDMETHODCALLTYPE PlusWithMatrix(::_Matrix* argMatrix, VARIANT_BOOL SubtractFlag,
                                             ::_Matrix** result) override {
        return Give(result, [&] {
            return native().PlusWithMatrix(*RequiredNative<tgp::Matrix>(argMatrix),
                                           SubtractFlag != VARIANT_FALSE);
        });
    }
    HRESULT STDMETHODCALLTYPE PlusWithNumber(double realNumber, ::_Matrix** result) override {
        return Give(result, [&] { return native().PlusWithNumber(Finite(realNumber)); });
    }
    HRESULT STDMETHODCALLTYPE get_IsSquareMatrix(VARIANT_BOOL* result) override {
        return Run([&] { Out(result) = ToVariantBool(native().IsSquareMatrix()); });
    }
    // ElapsedTime is accepted and left as it is.
    HRESULT STDMETHODCALLTYPE Det(VARIANT* /*ElapsedTime*/, VARIANT* GaussMatrix, double* result) override {
        return Run([&] {
            Array2DData eliminated;
            eliminated.rows = -1;  // stays -1 when the routine leaves GaussMatrix unassigned
            double elapsed = 0;
            Out(result) = native().Det(&elapsed, Given(GaussMatrix) ? &eliminated : nullptr);
            if (Given(GaussMatrix) && eliminated.rows >= 0) {
                ScopedVariant array;
                SetArray2D(&array.get(), eliminated);
                WriteBack(GaussMatrix, array.get());
            }
        });
    }
    HRESULT STDMETHODCALLTYPE Inverse(VARIANT* ElapsedTime, ::_Matrix** result) override {
        return Give(result, [&] {
            double elapsed = 0;
            auto inverse = native().Inverse(&elapsed);
            if (Given(ElapsedTime)) WriteBack(ElapsedTime, elapsed);
            return inverse;
        });
    }
    HRESULT STDMETHODCALLTYPE SolveWithGaussMethod(VARIANT YVector, VARIANT* ElapsedTime,
                                                   VARIANT* result) override {
        return Run([&] {
            double elapsed = 0;
            auto solution = native().SolveWithGaussMethod(ToPoint(YVector), &elapsed);
            if (Given(ElapsedTime)) WriteBack(ElapsedTime, elapsed);
            VariantInit(&Out(result));
            if (solution)
                SetDoubleArray(result, *solution);
            else
                V_VT(result) = VT_NULL;
        });
    }
    HRESULT STDMETHODCALLTYPE Solve(VARIANT YVector, VARIANT* ElapsedTime, VARIANT* result) override {
        return Run([&] {
            double elapsed = 0;
            auto solution = native().Solve(ToPoint(YVector), &elapsed);
            if (Given(ElapsedTime)) WriteBack(ElapsedTime, elapsed);
            VariantInit(&Out(result));
            if (solution) SetDoubleArray(result, *solution);  // else Empty
        });
    }
    HRESULT STDMETHODCALLTYPE InverseWithExcelMethod(VARIANT* ElapsedTime, ::_Matrix** result) override {
        return Give(result, [&] {
            double elapsed = 0;
            return native().InverseWithExcelMethod(Given(ElapsedTime) ? &elapsed : nullptr);
        });
    }
    HRESULT STDMETHODCALLTYPE DisplayOnExcelWorksheet() override {
        return Run([&] { native().DisplayOnExcelWorksheet(); });
    }
    HRESULT STDMETHODCALLTYPE PrintToTextFile(BSTR FileName) override {
        return Run([&] { native().PrintToTextFile(ToUtf8(FileName)); });
    }

  private:
    // Runs a member that returns a matrix (null: Nothing).
    template <class Body>
    HRESULT Give(::_Matrix** result, Body&& body) {
        return Run([&] { Check(Wrap(body(), &Out(result))); });
    }
};

}  // namespace

HRESULT Wrap(std::shared_ptr<tgp::Matrix> native, ::_Matrix** result) noexcept {
    return MatrixAdapter::WrapOrNothing<MatrixAdapter>(std::move(native), result);
}

HRESULT CreateMatrix(REFIID iid, void** result) {
    return MatrixAdapter::CreateInstance<MatrixAdapter>(std::make_shared<tgp::Matrix>(), iid, result);
}

}  // namespace tgp::automation
