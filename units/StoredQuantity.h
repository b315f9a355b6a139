#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "units/Quantity.h"
#include "units/UnitCatalogue.h"

namespace tgp {

// The one implementation behind the eleven quantity classes: an amount of a fixed kind, converted
// through the unit catalogue. The named classes only add their unit properties.
class StoredQuantity : public Quantity {
  public:
    DimensionObjectType DimensionType() const override { return kind_; }
    double Value(const UnitArg& Unit = {}) const override;
    void Value(const UnitArg& Unit, double value) override;

  protected:
    explicit StoredQuantity(DimensionObjectType kind) : kind_(kind) {}

    double Get(int id) const { return ReadAmount(kind_, id, amount_); }
    void Set(int id, double value) { amount_ = WriteAmount(kind_, id, value); }

    // The text form: "<number> (<symbol>)", or "<number> <symbol>" without brackets.
    std::string FormatText(const UnitArg& Unit, int16_t NumberOfDigits, bool NoBracket) const;
    // Reads the number at the start of the text and the unit named in it (unit id 0 when none).
    void ReadText(std::string_view text);

  private:
    DimensionObjectType kind_;
    StoredAmount amount_;
};

}  // namespace tgp
