#pragma once

namespace tgp {

// The region between a circular arc and its chord (a circular segment), described in the chord's own
// frame: origin at the chord's midpoint, u along the chord, v perpendicular to it, towards the arc.
// The region is symmetric in u, so its first moment about v and its product are 0.
//
// Everything is taken from the half chord a and the half included angle theta = |Alfa| / 2 in
// (0, pi), never from the radius and the centre: for a nearly straight arc the radius is huge and
// the textbook forms (sector minus triangle, taken about the centre) subtract numbers of order R^4
// to leave a result of order a^4 theta. Below theta = 1 the four values are even power series in
// theta (derived symbolically and truncated where the next term is below 1E-18 of the first); from
// theta = 1 up the sector-minus-triangle forms are used, where they lose no more than a decimal digit.
struct CircularSegment {
    double area;  // ∬ dA
    double qv;    // ∬ v dA, the first moment about the chord
    double iuu;   // ∬ u² dA
    double ivv;   // ∬ v² dA, the second moment about the chord

    static CircularSegment Of(double halfChord, double halfAngle);
};

// The arc length over the chord length, theta / sin(theta) for the half included angle theta:
// 1 for a straight segment, pi / 2 for a half circle.
double ArcToChordRatio(double halfAngle);

}  // namespace tgp
