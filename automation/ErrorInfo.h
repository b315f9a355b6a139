#pragma once

#include <new>
#include <string>

#include "OleBase.h"
#include "core/Error.h"

namespace tgp::automation {

// The HRESULT script hosts show as Err.Number = number.
constexpr HRESULT ErrorResult(int number) {
    return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, static_cast<unsigned>(number) & 0xFFFF);
}

// Publishes an error object (description only: no source, no help) and returns its HRESULT.
HRESULT RaiseError(REFIID iid, int number, const std::string& description);

// A failed call into another automation object, turned into the library's error so that it reaches
// our own caller with its number and description.
[[noreturn]] void ThrowFromResult(HRESULT result, const EXCEPINFO* info = nullptr);

// Turns a failed HRESULT of a call the library makes into the library's error.
inline void Check(HRESULT result) {
    if (FAILED(result)) ThrowFromResult(result);
}

// Runs one member body: no exception leaves it. tgp::Error becomes its automation error; anything
// else becomes the runtime's out-of-memory or internal error.
template <class Body>
HRESULT Guarded(REFIID iid, Body&& body) noexcept {
    try {
        body();
        return S_OK;
    } catch (const Error& e) {
        return RaiseError(iid, e.number(), e.description());
    } catch (const std::bad_alloc&) {
        return RaiseError(iid, 7, "Out of memory");
    } catch (...) {
        return RaiseError(iid, 51, "Internal error");
    }
}

}  // namespace tgp::automation
