#pragma once

#include <optional>
#include <string>

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

// What became of one section: its values, or the reason it has none. A section is one outline, or
// an outer boundary with its holes (and islands inside them), or outlines that touch (plates drawn
// side by side), or the loops of one text profile; it carries the outer outline's entity.
struct ProfileOutcome {
    std::string name;
    std::string file, type, handle, layer;
    int loops = 1, holes = 0;
    std::optional<SectionValues> values;
    std::string error;
};

}  // namespace tgp::drawings
