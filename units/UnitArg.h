#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include "units/UnitIdSource.h"

namespace tgp {

// Numbers and enumerators that can be given as a unit id.
template <class T>
concept UnitNumber = std::is_arithmetic_v<T> || std::is_enum_v<T>;

// The optional unit argument of the quantity members (a Variant in the published interface).
// It is one of:
//   - missing (default-constructed): unit id 0;
//   - a number: converted to a 16-bit Integer the way the automation runtime does it (rounded half
//     to even; outside -32768..32767 it fails with 6 "Overflow");
//   - a text: a numeric text is converted like a number, any other text fails with 13 "Type mismatch";
//   - an object answering UnitID(kind) (a UnitSetting): its unit for the asking quantity's own kind;
//     a null pointer (Nothing) means unit id 0.
// Conversions happen on construction, so a bad argument fails before the member runs.
class UnitArg {
  public:
    // The constructors are implicit on purpose: callers write a unit as a plain number, a text or
    // a setting (`len.Value(m_UnitID)`, `len.Value("3")`, `len.Value(setting)`).
    UnitArg() = default;
    template <UnitNumber T>
    UnitArg(T number) : value_(FromNumber(number)) {}
    UnitArg(std::string_view text);
    UnitArg(const char* text) : UnitArg(std::string_view(text)) {}
    UnitArg(const std::string& text) : UnitArg(std::string_view(text)) {}
    UnitArg(std::shared_ptr<const UnitIdSource> source);
    template <std::derived_from<UnitIdSource> T>
    UnitArg(std::shared_ptr<T> source) : UnitArg(std::shared_ptr<const UnitIdSource>(std::move(source))) {}

    // The unit id this argument names for a quantity of the given kind.
    int16_t Resolve(DimensionObjectType kind) const;

    bool IsMissing() const { return std::holds_alternative<std::monostate>(value_); }

  private:
    using Value = std::variant<std::monostate, int16_t, std::shared_ptr<const UnitIdSource>>;

    template <class T>
    static int16_t FromNumber(T number) {
        if constexpr (std::is_same_v<T, bool>)
            return number ? -1 : 0;  // the runtime's True is -1
        else if constexpr (std::is_floating_point_v<T>)
            return FromDouble(static_cast<double>(number));
        else if constexpr (std::is_unsigned_v<T>)
            return FromInteger(number > 32767u ? int64_t{32768} : int64_t(number));
        else
            return FromInteger(static_cast<int64_t>(number));
    }
    static int16_t FromDouble(double number);
    static int16_t FromInteger(int64_t number);

    Value value_;
};

}  // namespace tgp
