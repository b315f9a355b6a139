#pragma once

#include <string>
#include <string_view>

#include "core/Point3.h"

namespace tgp {

// Everything a section property block holds, as its text form carries it.
struct BlockFields {
    double area = 0, perimeter = 0, ix = 0, iy = 0, ixy = 0;
    Point3 centroid{}, ux{1, 0, 0}, uy{0, 1, 0};
    double modulus = 0;
};

// The one-line text form, version 1:
//   InertiaBlock/1 A=1000 P=220 Ix=8333.333333333334 Iy=833333.3333333334 Ixy=0 C=50,5,0 Ux=1,0,0 Uy=0,1,0
//   E=0
// Every number in the shortest form that reads back to the same Double, with a decimal point
// whatever the locale, so that a block read back is bit for bit the block written.
std::string WriteBlockText(const BlockFields& fields);

// Reads the text form: fields in any order, separated by blanks. A text that is not a block's, of
// another version, with a field missing, repeated, unknown or not a finite number, or with axes
// that are not unit vectors of the XY plane at an angle raises 2411 naming the fault.
BlockFields ReadBlockText(std::string_view text);

}  // namespace tgp
