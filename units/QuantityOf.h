#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "units/StoredQuantity.h"

namespace tgp {

// Members shared by the named quantity classes that depend on the class itself: the typed Copy and
// the text form (every kind except volumes has one).
template <class Derived, DimensionObjectType Kind>
class QuantityOf : public StoredQuantity {
  public:
    // A new independent object holding the same amount, carried over through unit id 0, so a volume
    // or second moment of area comes back as raw = base-unit amount with factor 1.
    std::shared_ptr<Derived> Copy() const {
        auto copy = std::make_shared<Derived>();
        copy->Value(UnitArg(int16_t{0}), Value(UnitArg(int16_t{0})));
        return copy;
    }

    std::string ValueToString(const UnitArg& Unit, int16_t NumberOfDigits = -2, bool NoBracket = false) const
        requires(Kind != DVolumeObject) {
        return FormatText(Unit, NumberOfDigits, NoBracket);
    }

    void ValueFromString(std::string_view Str) requires(Kind != DVolumeObject) { ReadText(Str); }

  protected:
    QuantityOf() : StoredQuantity(Kind) {}
};

}  // namespace tgp
