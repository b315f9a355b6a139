#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "core/Point3.h"
#include "profiles/BoundaryPanels.h"

namespace tgp {

// A harmonic function in one solid from its normal derivative q on the boundary, by a boundary
// element method: the second-kind equation
//   u(p)/2 + ∫ u dG/dn ds = ∫ G q ds,  G = -ln r / (2 pi),
// solved by Nyström's method on the boundary's Gauss nodes. On a node's own segment the double
// layer is exact (0 along a line, constant along a circle) and the single layer's logarithm on its
// own panel is taken by product integration; other panels near a node are integrated adaptively
// (the double layer against the panel's interpolant of u, the single layer against q itself). The
// rank-one term ∫ u ds / L fixes the constant the Neumann problem leaves free (u then has mean 0 on
// the boundary); GMRES solves the system to 1E-12 of its right side, its rows and products on every
// core. Up to 8,000 nodes the system is a dense matrix; beyond, far panels act through the fast
// multipole method (LaplaceFmm) and the near ones through a sparse matrix, in memory and time
// proportional to the nodes. The data must have ∮ q ds = 0 (no net flux), as every Neumann problem asks.
// Closer to rounding than 1E-12 GMRES crept: 165 iterations instead of 26 for a shear function of
// the IPE 200, the full 400 on thin sections of thousands of nodes.
class NeumannProblem {
  public:
    // q at a boundary point from the point and its outward unit normal.
    using Flux = std::function<double(const Point3& p, const Point3& normal)>;

    // How the system is held: as a dense matrix up to 8,000 nodes, else fast.
    enum class Assembly { automatic, dense, fast };

    explicit NeumannProblem(const BoundaryPanels& boundary, Assembly assembly = Assembly::automatic);
    ~NeumannProblem();
    // u at the boundary's nodes for each flux, the system's matrix assembled once for all; a guess
    // (u of a coarser boundary interpolated, say) starts the iteration closer.
    std::vector<std::vector<double>> Solve(const std::vector<Flux>& fluxes,
                                           const std::vector<std::vector<double>>& guesses = {}) const;

  private:
    struct Fast;

    std::vector<std::size_t> PanelsNear(std::size_t node) const;
    template <class Add>
    void NearPanelEntries(std::size_t node, std::size_t panel, const Add& add) const;
    void AssembleRow(std::size_t node);
    void AssembleSparseRow(std::size_t node);
    std::vector<double> Multiply(const std::vector<double>& u) const;
    std::vector<std::vector<double>> RightSides(const std::vector<Flux>& fluxes) const;
    void AddOwnPanel(std::size_t node, std::vector<double>& sum, const std::vector<double>& q,
                     std::size_t count) const;
    void AddNearPanels(std::size_t node, const std::vector<std::size_t>& near,
                       const std::vector<Flux>& fluxes, const std::vector<double>& q,
                       std::vector<double>& sum) const;

    const BoundaryPanels& boundary_;
    double length_ = 0;                 // of the boundary
    std::unique_ptr<double[]> matrix_;  // n x n, by rows, when dense
    std::unique_ptr<Fast> fast_;        // otherwise
};

}  // namespace tgp
