#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "core/Point3.h"
#include "profiles/BoundaryPanels.h"
#include "profiles/Loop7s.h"

namespace tgp {

// Saint-Venant torsion of a section by a boundary element method on its exact boundary (lines and
// true arcs). The warping function w is harmonic in each solid with dw/dn = y nx - x ny on its
// boundary (x, y from the centroid), solved as a NeumannProblem on Gauss nodes of panels that halve
// towards every corner. From w on the boundary, Green's identities give every area integral the
// results need:
//   J = Ix + Iy - ∮ w dw/dn ds,   ∫ w f dA = ∮ (w dg/dn - g dw/dn) ds  with  ∇²g = f.
// The boundary is refined (shorter panels, deeper grading) until J changes by less than the
// requested relative accuracy from one refinement to the next; that change is the error estimate.
// A refinement halves at least the longest segment's panels, so that outlines of many short
// segments are refined too. Corners milder than 0.02 rad are not graded (their singularity is too
// weak to matter). A boundary whose first refinement needs more than 500,000 nodes raises the
// library's error (a solution without a refinement has no estimate), and refinement stops before it
// would pass that (the estimate then says how far it got). Iw: see WarpingSquareIntegral.
//
// Each solid (an outer boundary with the holes directly inside it; an island is a solid of its
// own; plates welded along an edge are one, their union: see TorsionSolids) warps on its own; the J
// of solids add. The shear centre is Trefftz's: the point about which
// the warping function is orthogonal to x and y (and, per solid, to 1), which minimises the warping
// constant; it does not depend on Poisson's ratio (FlexuralShear gives the elastic one).
class SaintVenantTorsion {
  public:
    // A section without area, or one whose loops cut themselves or overlap, raises the library's
    // error as the section's other members do.
    explicit SaintVenantTorsion(Loop7s& section, double accuracy = 1e-6);

    double TorsionConstant() const { return j_; }
    // In the section's own coordinates.
    const Point3& ShearCentre() const { return shearCentre_; }
    // The warping constant Iw about the shear centre (length⁶): ∫ w² dA of the warping function
    // orthogonal to 1, x and y.
    double WarpingConstant() const { return warping_; }
    // The largest shear stress of a unit torque (1/length³), on the boundary where it occurs, and the
    // torsional section modulus Wt = T / τmax. At a sharp re-entrant corner the stress has no bound:
    // the value found there grows as the boundary is refined (a fillet makes it finite).
    double MaximumShearStress() const { return stress_; }
    const Point3& MaximumShearStressAt() const { return stressAt_; }
    double TorsionalModulus() const { return 1 / stress_; }
    // The monosymmetry constants of lateral-torsional buckling about the principal axes (length):
    //   β1 = ∫ η (ξ² + η²) dA / I1 - 2 η0,   β2 = ∫ ξ (ξ² + η²) dA / I2 - 2 ξ0,
    // ξ along the major axis 1 (of the larger moment of inertia I1), η along axis 2 (axis 1 turned a
    // quarter counter-clockwise), both from the centroid; (ξ0, η0) the shear centre. Both 0 for a
    // doubly symmetric section; a T whose flange lies on the positive η side has β1 < 0 (the sign
    // follows η: codes that measure y downwards write it the other way round).
    struct Monosymmetry {
        double major, minor;
    };
    const Monosymmetry& MonosymmetryConstants() const { return monosymmetry_; }
    // The relative change of J in the last refinement.
    double ErrorEstimate() const { return estimate_; }
    std::size_t NodeCount() const { return nodes_; }
    // J after each refinement and the boundary nodes it took, coarsest first.
    struct Refinement {
        std::size_t nodes;
        double j;
    };
    const std::vector<Refinement>& History() const { return history_; }

    // The last refinement's boundary of each solid (nodes from the centroid) and the warping function
    // about the centroid at its nodes: what the shear of bending builds on.
    struct WarpedSolid {
        BoundaryPanels boundary;
        std::vector<double> warping;
    };
    const std::vector<WarpedSolid>& Solids() const { return warped_; }
    const Point3& Centroid() const { return centroid_; }

  private:
    // One refinement's solution: J and the shear centre at once; Iw only for the last one kept.
    struct Level;
    // The solids' boundaries with panels at most `base` long, graded `depth` levels into corners.
    std::vector<BoundaryPanels> BoundariesFor(double base, int depth) const;
    static std::size_t NodeCount(const std::vector<BoundaryPanels>& boundaries);
    // A coarser level, when given, starts the iteration from its solution.
    Level Solve(std::vector<BoundaryPanels> boundaries, const Level* coarser = nullptr) const;
    double WarpingConstantOf(const Level& level) const;
    void FindLargestStress(const Level& level);
    static Monosymmetry MonosymmetryOf(const Level& level);

    std::vector<std::vector<std::vector<LoopDLine>>> solids_;  // loops with the material on the left
    Point3 centroid_;
    double extent_ = 0;
    double j_ = 0, estimate_ = 0, warping_ = 0, stress_ = 0;
    Point3 stressAt_;
    Point3 shearCentre_;
    Monosymmetry monosymmetry_{0, 0};
    std::size_t nodes_ = 0;
    std::vector<Refinement> history_;
    std::vector<WarpedSolid> warped_;
};

}  // namespace tgp
