#pragma once

#include <exception>
#include <string>

namespace tgp {

// The one failure type of the library: an automation error number and its description.
// The automation boundary turns it into Err.Number / Err.Description; natively it is thrown as is.
class Error : public std::exception {
  public:
    Error(int number, std::string description);

    int number() const noexcept { return number_; }
    const std::string& description() const noexcept { return description_; }
    const char* what() const noexcept override { return description_.c_str(); }

    // The library's own argument and state failures share one number; the text tells them apart.
    static constexpr int kLibrary = 2411;
    // An id that is not a unit of the quantity's kind.
    static constexpr int kInvalidUnit = 24111;

    // The automation runtime's own errors, with the runtime's usual descriptions.
    static Error InvalidProcedureCall();  // 5
    static Error Overflow();              // 6
    static Error SubscriptOutOfRange();   // 9
    static Error DivisionByZero();        // 11
    static Error TypeMismatch();          // 13
    static Error ObjectRequired();        // 424
    static Error OutOfMemory();           // 7
    static Error ApplicationDefined(int number = 713);

  private:
    int number_;
    std::string description_;
};

// Raises 2411 with the given description.
[[noreturn]] void ThrowLibraryError(std::string description);

// One rule for every number the library computes: finite input never gives an infinity or a NaN.
// Where arithmetic overflows anyway, the result is refused with the runtime's 6 "Overflow", as the
// runtime's own Double arithmetic does. Callers check before they store, so a refused result leaves
// the object as it was.
inline double CheckFinite(double value) {
    if (!(value - value == 0)) throw Error::Overflow();  // false for infinities and NaN
    return value;
}

template <class Container>
const Container& CheckAllFinite(const Container& values) {
    for (double v : values) CheckFinite(v);
    return values;
}

}  // namespace tgp
