#include "core/Error.h"

#include <utility>

namespace tgp {

Error::Error(int number, std::string description) : number_(number), description_(std::move(description)) {}

Error Error::InvalidProcedureCall() {
    return {5, "Invalid procedure call or argument"};
}
Error Error::Overflow() {
    return {6, "Overflow"};
}
Error Error::SubscriptOutOfRange() {
    return {9, "Subscript out of range"};
}
Error Error::DivisionByZero() {
    return {11, "Division by zero"};
}
Error Error::TypeMismatch() {
    return {13, "Type mismatch"};
}
Error Error::ObjectRequired() {
    return {424, "Object required"};
}
Error Error::OutOfMemory() {
    return {7, "Out of memory"};
}
Error Error::ApplicationDefined(int number) {
    return {number, "Application-defined or object-defined error"};
}

void ThrowLibraryError(std::string description) {
    throw Error(Error::kLibrary, std::move(description));
}

}  // namespace tgp
