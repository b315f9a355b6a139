#pragma once

#include <complex>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tgp {

// Logarithmic potentials of many charges and dipoles at the same many points of the plane, in time
// proportional to their number: the fast multipole method of Greengard and Rokhlin (J. Comput. Phys.
// 73, 1987) with complex expansions of `terms` terms on a quadtree of uniform depth,
//   phi_i = Re Σ_{j != i} [ c_j log(z_i - z_j) + d_j / (z_i - z_j) ].
// Boxes that do not touch interact through their expansions: the error falls as 0.55^terms of the
// sum of |c_j| and |d_j| / distance (22 terms: 2E-6, in practice about 1E-10); touching leaves
// directly. The map from the strengths to phi is linear, as an iterative solver needs.
class LaplaceFmm {
  public:
    using Complex = std::complex<double>;

    LaplaceFmm(const std::vector<Complex>& points, int terms);

    // phi at every point; either strength may be empty (none of that kind). With `derivatives`,
    // also the complex derivative of the sum, Σ c_j / (z_i - z_j) - d_j / (z_i - z_j)²: the gradient
    // of phi is its (real part, -imaginary part).
    std::vector<double> Potentials(const std::vector<double>& charges, const std::vector<Complex>& dipoles,
                                   std::vector<Complex>* derivatives = nullptr) const;
    // phi without the pairs of NearPoints: what a caller that sums those itself (with its own
    // quadrature, say) needs.
    std::vector<double> FarPotentials(const std::vector<double>& charges, const std::vector<Complex>& dipoles,
                                      std::vector<Complex>* derivatives = nullptr) const;
    // The points of the leaves that touch point i's leaf, its own among them (i too).
    std::vector<std::size_t> NearPoints(std::size_t i) const;

    int Depth() const { return depth_; }

  private:
    struct Box {
        std::uint64_t key;              // the Morton code of (ix, iy) at its level
        std::size_t begin, end;         // its points, in the sorted order
        std::vector<std::size_t> far;   // boxes of its level it takes expansions from (levels >= 2)
        std::vector<std::size_t> near;  // leaves that touch it, itself among them (the leaf level)
        std::size_t parent = 0;
    };

    void BuildTree(const std::vector<Complex>& points);
    std::size_t ChooseDepth() const;
    long Find(int level, std::uint64_t ix, std::uint64_t iy) const;
    Complex Centre(int level, const Box& box) const;
    void ListInteractions();

    int terms_;
    int depth_ = 0;
    Complex origin_;
    double size_ = 1;                       // of the root box; points are kept in its unit square
    std::vector<std::size_t> order_;        // the points by Morton code at the deepest level
    std::vector<Complex> sorted_;           // unit-square coordinates in that order
    std::vector<std::uint64_t> codes_;      // their codes
    std::vector<std::size_t> leafOf_;       // each point's leaf, by the point's own index
    std::vector<std::size_t> inverse_;      // each point's place in the sorted order
    std::vector<std::vector<Box>> levels_;  // boxes with points, level 0 (the root) to depth_
    std::vector<double> binomial_;          // C(n, k) at n * (2 terms + 1) + k
};

}  // namespace tgp
