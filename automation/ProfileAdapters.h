#pragma once

#include <memory>

#include "Tessary_Geometry_Pro.h"
#include "profiles/InertiaBlock.h"
#include "profiles/Loop7.h"

namespace tgp::automation {

// The profile classes: Loop7 and its section property block InertiaBlock.
HRESULT CreateLoop7(REFIID iid, void** result);
HRESULT CreateInertiaBlock(REFIID iid, void** result);

HRESULT Wrap(std::shared_ptr<tgp::Loop7> native, ::_Loop7** result) noexcept;
HRESULT Wrap(std::shared_ptr<tgp::InertiaBlock> native, ::_InertiaBlock** result) noexcept;

}  // namespace tgp::automation
