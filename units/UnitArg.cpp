#include "units/UnitArg.h"

#include <limits>
#include <utility>

#include "core/Error.h"
#include "units/RuntimeInteger.h"

namespace tgp {

UnitArg::UnitArg(std::string_view text) : value_(TextToInteger16(text)) {}

UnitArg::UnitArg(std::shared_ptr<const UnitIdSource> source) : value_(std::move(source)) {}

int16_t UnitArg::FromDouble(double number) {
    return ToInteger16(number);
}

int16_t UnitArg::FromInteger(int64_t number) {
    if (number < std::numeric_limits<int16_t>::min() || number > std::numeric_limits<int16_t>::max())
        throw Error::Overflow();
    return static_cast<int16_t>(number);
}

int16_t UnitArg::Resolve(DimensionObjectType kind) const {
    if (const auto* id = std::get_if<int16_t>(&value_)) return *id;
    if (const auto* source = std::get_if<std::shared_ptr<const UnitIdSource>>(&value_))
        return *source ? (*source)->UnitID(kind) : int16_t{0};  // Nothing means unit id 0
    return 0;                                                   // missing
}

}  // namespace tgp
