#pragma once

#include "core/Point3.h"
#include "profiles/SaintVenantTorsion.h"

namespace tgp {

// Shear from bending (flexure) of a section by the theory of elasticity (Saint-Venant's flexure
// problem as Pilkey writes it, Analysis and Design of Elastic Beams, 2002, chapter 6): the shear
// functions Ψ (a force along x) and Φ (along y) of each solid solve
//   -∇²Ψ = 2 (Ix X - Ixy Y),  dΨ/dn = ν/2 d·n,   -∇²Φ = 2 (Iy Y - Ixy X),  dΦ/dn = ν/2 h·n
// (X, Y from the solid's centroid, Ix = ∫Y², Iy = ∫X², Ixy = ∫XY dA, d and h quadratic in X, Y),
// and the stress of a force V is V/Δs (∇Ψ - ν/2 d), Δs = 2 (1 + ν)(Ix Iy - Ixy²). A cubic takes the
// source away, and what is left is harmonic: it is solved on the torsion's last boundary by the same
// boundary element method, and every area integral the results need (the shear strain energy, the
// moment of the shear stresses) becomes a boundary integral by Green's identities. So:
//   - the shear areas A = V² / (2 G U), U the shear strain energy of a force V along the axis, about
//     the centroidal axes and about the principal axes (1 the major one, with the largest moment of
//     inertia; 2 the minor);
//   - the elastic shear centre, through which the shear stresses of any force pass. With ν = 0 it is
//     Trefftz's shear centre of the torsion.
// Solids that share no edge bend as one section but carry shear side by side: each is solved about
// its own centroid, their shear stiffnesses add, and the shear centre is where the solids' shares of a
// force pass together.
class FlexuralShear {
  public:
    static constexpr double kDefaultPoisson = 0.3;

    explicit FlexuralShear(const SaintVenantTorsion& torsion, double poisson = kDefaultPoisson);

    double Poisson() const { return poisson_; }
    // In the section's own coordinates.
    const Point3& ShearCentre() const { return shearCentre_; }
    // For a force along x, along y, along the major principal axis and along the minor one.
    double ShearAreaX() const { return 1 / compliance_[0]; }
    double ShearAreaY() const { return 1 / compliance_[2]; }
    double ShearArea1() const { return areas12_[0]; }
    double ShearArea2() const { return areas12_[1]; }

  private:
    double poisson_;
    Point3 shearCentre_;
    double compliance_[3] = {0, 0, 0};  // xx, xy, yy: the shear energy per force squared, times 2G
    double areas12_[2] = {0, 0};
};

}  // namespace tgp
