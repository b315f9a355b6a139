#pragma once

#include <cstdint>
#include <vector>

namespace tgp {

// Gaussian forward elimination and back substitution with the library's published arithmetic: a
// pivot counts as zero only when exactly 0, a row is exchanged only then (with the first lower row
// that has a non-zero entry in the column), a row whose entry below the pivot is exactly 0 is left
// alone for that step, and every element receives its updates a(i,j) -= f * a(k,j) in increasing k,
// the product and the difference each rounded (no fused multiply-add). Results are therefore the
// same bit for bit whichever loop order computes them.
//
// Large systems are eliminated in column panels: each panel is eliminated with the plain loops, its
// multipliers are kept, and the columns right of it receive the panel's updates afterwards in
// register tiles, panel step by panel step, which keeps every element's sequence of operations.
//
// The elimination works in place on a row-major block of n rows and `columns` columns and treats its
// leading n x n part as the matrix (a wide matrix's extra columns are left alone). A matrix narrower
// than it is tall has no column n - 1; the elimination fails with error 9 at the first step that
// would touch a missing column, which is what indexing the stored array does.
class GaussElimination {
  public:
    struct Result {
        double determinant;
        bool completed;  // false when it stopped at a column with no non-zero pivot
    };
    // When to eliminate in panels, how wide they are, and whether the tiles may use AVX registers
    // where the processor has them (else SSE2). The defaults suit the machine; small values let
    // tests take every path of the panel code on small matrices.
    struct Blocking {
        int fromSize;
        int panelWidth;
        bool avx;
    };
    static constexpr Blocking kMachineBlocking{64, 32, true};

    // y, when given, is the right-hand side: it is exchanged and updated with the rows.
    GaussElimination(double* a, int n, int columns, std::vector<double>* y);
    GaussElimination(double* a, int n, int columns, std::vector<double>* y, Blocking blocking);

    Result Run();

  private:
    double* Row(int i) const { return a_ + static_cast<std::size_t>(i) * columns_; }
    double& Y(int i) const;
    void RequireAllColumns() const;
    double Pivot(int k) const;
    bool ExchangeWithLowerRow(int k);
    void EliminateBelow(int k);
    double DiagonalProduct(int sign) const;

    // Panel elimination of columns [k0, end): steps k0 .. last - 1 on the panel's columns only.
    bool RunPanels(int& sign);
    bool EliminatePanel(int k0, int end, int last, int& sign);
    void UpdatePanelRows(int k0, int end, int steps, int from, int to);
    void UpdateTrailingColumns(int k0, int end, int steps);
    int PackDenseStripMultipliers(int first, int steps);
    void UpdateRowRange(int i, int k0, int steps, int from, int to);

    double* a_;
    int n_;
    int columns_;
    std::vector<double>* y_;
    Blocking blocking_;
    // The current panel's multipliers, row i's at [i * width + step], and whether row i was left
    // alone at that step (its entry was exactly 0).
    std::vector<double> multipliers_;
    std::vector<std::uint8_t> leftAlone_;
    std::vector<double> packedRows_;  // the pivot rows' part of one column block, by strips of four columns
    std::vector<double> packedMultipliers_;  // four rows' multipliers, step by step, by strips of four rows
    std::vector<const double*> stripMultipliers_;  // per strip: its packed multipliers, or nullptr
};

// x with U.x = z for the upper-triangular leading n x n block of U (row stride `columns`).
std::vector<double> BackSubstitute(const std::vector<double>& u, int n, int columns,
                                   const std::vector<double>& z);

}  // namespace tgp
