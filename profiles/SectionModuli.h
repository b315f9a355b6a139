#pragma once

#include <memory>
#include <span>
#include <vector>

#include "profiles/Loop7s.h"

namespace tgp {

// What a designer reads off a section besides its area and moments, all about the axes through the
// centroid parallel to x and y (lengths in the drawing's unit):
//   extreme fibre distances from the centroid to the top, bottom, left and right of the section;
//   elastic section moduli W = I / distance for each of those fibres;
//   plastic section moduli Z = ∫ |distance from the equal-area axis| dA about the horizontal and
//   the vertical axis that cut the section into two halves of equal area, and where those axes lie.
struct SectionModuli {
    double top, bottom, left, right;
    double wxTop, wxBottom, wyLeft, wyRight;
    double zx, zy;
    double plasticAxisY, plasticAxisX;  // y of the horizontal equal-area axis, x of the vertical one
};

// The moduli of a section made of the collection's loops (boundaries add, holes subtract). The
// equal-area axes are found to the last digits: the area above a line and its first moment are
// exact integrals along the boundary with the part below the line cut away, straight segments and
// arcs alike, and the line is moved by a safeguarded Newton iteration. Raises what the collection's
// InertiaBlock raises. `composite`, when given, is the section's block to take the centroid, area
// and moments from (one computed more exactly than from the loops' own segments).
// `box`, when given, is the box around the section to take the extreme fibres from.
SectionModuli ComputeModuli(Loop7s& section, const InertiaBlock* composite = nullptr,
                            const SegmentBox* box = nullptr);
// The same for loops whose holes are known (holes[i] for loops[i]), with the section's block.
SectionModuli ComputeModuli(std::span<const std::shared_ptr<Loop7>> loops, const std::vector<bool>& holes,
                            const InertiaBlock& composite, const SegmentBox* box = nullptr);

}  // namespace tgp
