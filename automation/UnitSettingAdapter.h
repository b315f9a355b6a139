#pragma once

#include <memory>

#include "Tessary_Geometry_Pro.h"
#include "units/UnitSetting.h"

namespace tgp::automation {

// UnitSetting: one chosen unit per quantity kind, with the Modified event as connection point.
HRESULT Wrap(std::shared_ptr<UnitSetting> native, ::_UnitSetting** result) noexcept;
// The same, with Nothing for no setting.
HRESULT WrapOrNothing(std::shared_ptr<UnitSetting> native, ::_UnitSetting** result) noexcept;
HRESULT CreateUnitSetting(REFIID iid, void** result);

}  // namespace tgp::automation
