#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tgp::drawings {

// Section properties in the units of a UnitSetting, positive whichever way the outlines run.
// Moments are about axes through the centroid parallel to x and y; the principal angle turns x onto
// the axis of I1, counter-clockwise. The extreme fibres are the distances from the centroid to the
// top, bottom, left and right of the section; the elastic moduli are I over those distances; the
// plastic moduli are about the horizontal and vertical axes that halve the area (their positions
// given as plastic axis y and x).
struct SectionValues {
    double area, perimeter, xc, yc, ix, iy, ixy, i1, i2, angle, rx, ry;
    double top, bottom, left, right, welxTop, welxBottom, welyLeft, welyRight, wplx, wply, plasticY, plasticX;
};

// Saint-Venant torsion and the shear of bending in the same units: the torsion constant J, the
// warping constant Iw (length⁶) about the shear centre, the shear centre (Trefftz's), the torsional
// section modulus Wt = T / τmax, the point where the largest stress acts, J's relative error
// estimate, the monosymmetry constants about the principal axes; the Poisson's ratio asked for, the
// elastic shear centre, and the shear areas for a force along x, along y, along the major principal
// axis 1 and along the minor one 2.
struct TorsionValues {
    double j, iw, shearX, shearY, wt, stressX, stressY, estimate, beta1, beta2;
    double poisson, elasticX, elasticY, shearAreaX, shearAreaY, shearArea1, shearArea2;
};

// Whether torsion and shear values are asked for, and with which Poisson's ratio.
struct TorsionRequest {
    bool wanted = false;
    double poisson = 0.3;
};

// What became of one section: its values, or the reason it has none. A section is one outline, or
// an outer boundary with its holes (and islands inside them), or outlines that touch (plates drawn
// side by side), or the loops of one text profile; it carries the outer outline's entity.
struct ProfileOutcome {
    std::string name;
    std::string file, type, handle, layer;
    int loops = 1, holes = 0;
    std::optional<SectionValues> values;
    std::optional<TorsionValues> torsion;  // when asked for
    std::string torsionError;              // why there are no torsion values when asked for
    std::string error;
    // The outlines it is made of (their places among the outlines read, in file order) and which of
    // them are holes: what a picture of it draws.
    std::vector<std::size_t> outlines;
    std::vector<bool> isHole;
};

}  // namespace tgp::drawings
