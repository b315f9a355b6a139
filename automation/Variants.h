#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "OleBase.h"
#include "geometry/Matrix.h"
#include "geometry/Point.h"
#include "units/UnitArg.h"

namespace tgp::automation {

// Conversions between the VARIANTs scripts send and the core's types. Arguments arrive as scripts
// send them: variables by reference (VT_BYREF|VT_VARIANT, possibly nested), arrays of Variants or of
// Doubles with any lower bound, omitted optionals as VT_ERROR/DISP_E_PARAMNOTFOUND. A value that
// cannot be converted raises the runtime's 13 "Type mismatch"; a number too large for a 16-bit
// Integer raises 6 "Overflow"; NaN and infinities are refused with 6 as well.

// The value a (possibly by-reference) Variant holds, with every VT_BYREF|VT_VARIANT level removed.
const VARIANT& Deref(const VARIANT& value);
VARIANT& Deref(VARIANT& value);

// The value itself, or in place of a script's array object (JScript's [3, 4, 0]) a copy of it as a
// zero-based array of Variants, held in `holder`: every member that takes an array takes both.
class ScopedVariant;
const VARIANT& AsSafeArray(const VARIANT& value, ScopedVariant& holder);
// JScript reads arrays of Variants only (VBArray), where macros declare arrays of Double: once a
// script array has come in on a thread, the arrays the library returns on it hold Variants.
bool CallerReadsOnlyVariantArrays();

// An omitted optional argument (or Empty, which a script's unset variable also sends).
bool IsMissing(const VARIANT& value);
// An omitted optional argument only: an Empty variable passed by reference is a place to write to.
bool IsOmitted(const VARIANT* value);
// An object reference that is Nothing.
bool IsNothing(const VARIANT& value);

// A number; text as the number-text service reads a whole text ("2.5", "2,5"), else as the
// runtime converts it ("&H10").
double ToDouble(const VARIANT& value);
// Numbers to the runtime's Integer and Long, text included, through the runtime's own conversion
// (VariantChangeType): "&H3" is 3 and "1,000" is 1000, as CInt reads them.
int16_t ToInteger16(const VARIANT& value);
int32_t ToInteger32(const VARIANT& value);
bool ToBool(const VARIANT& value);
std::string ToText(const VARIANT& value);
// The IDispatch of an object argument (not AddRef'd); nullptr for Nothing; 13 for a non-object.
IDispatch* ToObject(const VARIANT& value);

// A finite number (NaN and infinities raise 6 "Overflow").
double Finite(double value);

// A one-dimensional array of numbers (Doubles, Variants or any numeric type), read by index from
// its lower bound into a zero-based point. A missing argument gives an empty point only when
// allowed, else 13.
Point ToPoint(const VARIANT& value);
bool HasValue(const VARIANT& value);  // present and not Nothing

// Visits the elements of a one-dimensional array from its lower bound, at most `limit` of them, as
// the runtime reads them one at a time (an element that fails to convert stops the caller there).
// Returns how many were visited; 13 for anything but a one-dimensional array.
std::size_t VisitElements(const VARIANT& value, std::size_t limit,
                          const std::function<void(const VARIANT&)>& visit);

// A two-dimensional array (first index the row), read from its lower bounds; 13 for anything else.
Array2DData ToArray2D(const VARIANT& value);
// A zero-based two-dimensional array of Double.
void SetArray2D(VARIANT* result, const Array2DData& array);

// The unit argument of the quantity members: missing or Nothing -> 0, a number or numeric text ->
// that id, the library's UnitSetting -> itself, any other object -> asked UnitID late-bound.
UnitArg ToUnitArg(const VARIANT& value);

// Results, written into the caller's [out, retval] VARIANT.
void SetDoubleArray(VARIANT* result,
                    const std::vector<double>& values);  // zero-based Double(), Variant() for JScript
void SetVariantArray(VARIANT* result, const std::vector<double>& values);  // zero-based Variant()
void SetDouble(VARIANT* result, double value);
// A zero-based array of Variants, each a zero-based array of Double (a list of points).
void SetPointList(VARIANT* result, const std::vector<Point>& points);
// An array of points (Variant array of Double arrays) or, at the innermost level, a point.
bool IsArrayOfArrays(const VARIANT& value);
std::vector<Point> ToPoints(const VARIANT& value);
void SetBool(VARIANT* result, bool value);

// Writes a result back into a by-reference argument in the caller's own type: a Variant variable
// takes the value as given; a typed variable (VT_BYREF|VT_R8, VT_BYREF|VT_BOOL, ...) keeps its type.
void WriteBack(VARIANT* target, const VARIANT& value);
void WriteBack(VARIANT* target, double value);
void WriteBack(VARIANT* target, bool value);
// A point array written back: a Variant variable receives a new zero-based array of Double,
// whatever it held; a typed array variable is filled in its own type.
void WritePointBack(VARIANT* target, const Point& point);
// Exchanges what two of the caller's variables hold (their Variants, or the arrays of two array
// variables of one type); other pairs are written back as the given points.
void ExchangeVariables(VARIANT* first, VARIANT* second, const Point& firstNow, const Point& secondNow);
// Sets the elements at the given positions (counted from the lower bound) of the caller's array to
// 0 in the array's own type, leaving every other element as it was.
void ZeroElements(VARIANT* target, const std::vector<std::size_t>& positions);

// An enumeration argument as the signed 32-bit value it travels as: the C++ type widl gives an
// enumeration whose members are all positive may be unsigned, which would turn -1 into 4294967295.
template <class Enum>
int32_t EnumValue(Enum value) {
    return static_cast<int32_t>(static_cast<uint32_t>(value));
}

inline VARIANT_BOOL ToVariantBool(bool value) {
    return value ? VARIANT_TRUE : VARIANT_FALSE;
}

// A VARIANT that clears itself.
class ScopedVariant {
  public:
    ScopedVariant() { VariantInit(&value_); }
    ~ScopedVariant() { VariantClear(&value_); }
    ScopedVariant(const ScopedVariant&) = delete;
    ScopedVariant& operator=(const ScopedVariant&) = delete;
    VARIANT* operator&() { return &value_; }  // NOLINT: passes as the VARIANT* out parameter
    VARIANT& get() { return value_; }

  private:
    VARIANT value_;
};

}  // namespace tgp::automation
