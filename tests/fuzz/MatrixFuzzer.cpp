// Matrices of arbitrary small sizes and values through every member, with arbitrary indices.
#include "FuzzSupport.h"
#include "core/Error.h"
#include "geometry/Matrix.h"

namespace {

using tgp::fuzz::Try;

int SomeIndex(FuzzedDataProvider& data) {
    return data.ConsumeIntegralInRange<int>(-3, 10);
}

tgp::Array2DData SomeArray(FuzzedDataProvider& data) {
    const int rows = data.ConsumeIntegralInRange<int>(1, 7), cols = data.ConsumeIntegralInRange<int>(1, 7);
    return tgp::Array2DData(rows, cols, tgp::fuzz::SomeDoubles(data, static_cast<std::size_t>(rows * cols)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider data(bytes, size);
    tgp::Matrix m, other;
    Try([&] { m.Array2D(SomeArray(data)); });
    Try([&] { other.Array2D(SomeArray(data)); });
    while (data.remaining_bytes() > 0) {
        switch (data.ConsumeIntegralInRange<int>(0, 21)) {
            case 0:
                Try([&] {
                    m.Reset(data.ConsumeIntegralInRange<int>(-2, 9), data.ConsumeIntegralInRange<int>(-2, 9));
                });
                break;
            case 1:
                Try([&] { m.Array2DPaste(SomeArray(data), data.ConsumeBool(), data.ConsumeBool()); });
                break;
            case 2:
                Try([&] {
                    m.LetRow(tgp::fuzz::SomeDoubles(data, data.ConsumeIntegralInRange<std::size_t>(0, 9)),
                             SomeIndex(data), data.ConsumeBool());
                });
                break;
            case 3:
                Try([&] {
                    m.LetColumn(tgp::fuzz::SomeDoubles(data, data.ConsumeIntegralInRange<std::size_t>(0, 9)),
                                SomeIndex(data), data.ConsumeBool());
                });
                break;
            case 4:
                Try([&] {
                    (void)m.Row(SomeIndex(data));
                    (void)m.Column(SomeIndex(data));
                });
                break;
            case 5: Try([&] { (void)m.Item(SomeIndex(data), SomeIndex(data)); }); break;
            case 6:
                Try([&] { m.LetItem(SomeIndex(data), SomeIndex(data), tgp::fuzz::SomeDouble(data)); });
                break;
            case 7: Try([&] { (void)m.Transpose()->Copy(); }); break;
            case 8:
                Try([&] {
                    (void)m.GetSubMatrix(SomeIndex(data), SomeIndex(data), SomeIndex(data), SomeIndex(data));
                });
                break;
            case 9:
                Try([&] {
                    (void)m.GetSubMatrixByRemoveRowCol(SomeIndex(data), SomeIndex(data), data.ConsumeBool());
                });
                break;
            case 10: Try([&] { (void)m.RoundUp(data.ConsumeIntegralInRange<int>(-30, 30)); }); break;
            case 11: Try([&] { (void)m.Product(other); }); break;
            case 12:
                Try([&] {
                    (void)m.MultiplyWithVector(
                        tgp::fuzz::SomeDoubles(data, data.ConsumeIntegralInRange<std::size_t>(0, 9)));
                });
                break;
            case 13: Try([&] { (void)m.MultiplyWithNumber(tgp::fuzz::SomeDouble(data)); }); break;
            case 14: Try([&] { (void)m.PlusWithMatrix(other, data.ConsumeBool()); }); break;
            case 15: Try([&] { (void)m.PlusWithNumber(tgp::fuzz::SomeDouble(data)); }); break;
            case 16:
                Try([&] {
                    tgp::Array2DData g;
                    (void)m.Det(nullptr, &g);
                });
                break;
            case 17: Try([&] { (void)m.Inverse(); }); break;
            case 18:
                Try([&] {
                    (void)m.SolveWithGaussMethod(
                        tgp::fuzz::SomeDoubles(data, data.ConsumeIntegralInRange<std::size_t>(0, 9)));
                });
                break;
            case 19:
                Try([&] {
                    (void)m.Solve(
                        tgp::fuzz::SomeDoubles(data, data.ConsumeIntegralInRange<std::size_t>(0, 9)));
                });
                break;
            case 20:
                Try([&] {
                    (void)m.Array2D();
                    (void)m.IsSquareMatrix();
                });
                break;
            default: std::swap(m, other); break;
        }
    }
    return 0;
}
