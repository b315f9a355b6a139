#pragma once

#include "core/Error.h"

namespace tgp::automation {

// The caller's [out, retval] slot; a null pointer (a broken caller) is refused, not written.
template <class T>
T& Out(T* slot) {
    if (!slot) throw Error::InvalidProcedureCall();
    return *slot;
}

}  // namespace tgp::automation
