#include "units/StoredQuantity.h"

#include "units/NumberText.h"
#include "units/UnitSymbols.h"

namespace tgp {

double StoredQuantity::Value(const UnitArg& Unit) const {
    return Get(Unit.Resolve(kind_));
}

void StoredQuantity::Value(const UnitArg& Unit, double value) {
    Set(Unit.Resolve(kind_), value);
}

std::string StoredQuantity::FormatText(const UnitArg& Unit, int16_t NumberOfDigits, bool NoBracket) const {
    const std::string number = FormatNumber(Value(Unit), NumberOfDigits);
    const std::string symbol = GetUnitString(kind_, Unit);
    return NoBracket ? number + " " + symbol : number + " (" + symbol + ")";
}

void StoredQuantity::ReadText(std::string_view text) {
    const double number = ReadNumber(text);
    const int16_t id = RecogniseUnit(text, kind_);
    // No unit in the text means the kind's unit id 0, which is not always the storage unit.
    Set(id == -1 ? 0 : id, number);
}

}  // namespace tgp
