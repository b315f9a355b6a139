#pragma once

#include <vector>

#include "OleBase.h"

namespace tgp::automation {

// What For Each walks: the items of a collection as they were when the walk began.
// Takes the given Variants over (they are cleared when the enumerator goes).
HRESULT NewVariantEnumerator(std::vector<VARIANT> items, IUnknown** result) noexcept;

}  // namespace tgp::automation
