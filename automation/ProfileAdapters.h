#pragma once

#include <memory>

#include "Tessary_Geometry_Pro.h"
#include "profiles/InertiaBlock.h"
#include "profiles/Loop7.h"
#include "profiles/Loop7s.h"

namespace tgp::automation {

// The profile classes: Loop7, its section property block InertiaBlock, and the collection Loop7s.
HRESULT CreateLoop7(REFIID iid, void** result);
HRESULT CreateInertiaBlock(REFIID iid, void** result);
HRESULT CreateLoop7s(REFIID iid, void** result);

HRESULT Wrap(std::shared_ptr<tgp::Loop7> native, ::_Loop7** result) noexcept;
HRESULT Wrap(std::shared_ptr<tgp::InertiaBlock> native, ::_InertiaBlock** result) noexcept;
HRESULT Wrap(std::shared_ptr<tgp::Loop7s> native, ::_Loop7s** result) noexcept;

}  // namespace tgp::automation
