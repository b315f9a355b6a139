#pragma once

#include <memory>
#include <vector>

#include "Tessary_Geometry_Pro.h"
#include "VariantEnumerator.h"
#include "profiles/InertiaBlock.h"
#include "profiles/Loop7.h"
#include "profiles/Loop7s.h"

namespace tgp::automation {

// The profile classes: Loop7, its section property block InertiaBlock, the collection Loop7s, and the
// sections of a drawing.
HRESULT CreateLoop7(REFIID iid, void** result);
HRESULT CreateInertiaBlock(REFIID iid, void** result);
HRESULT CreateLoop7s(REFIID iid, void** result);

HRESULT Wrap(std::shared_ptr<tgp::Loop7> native, ::_Loop7** result) noexcept;
HRESULT Wrap(std::shared_ptr<tgp::InertiaBlock> native, ::_InertiaBlock** result) noexcept;
HRESULT Wrap(std::shared_ptr<tgp::Loop7s> native, ::_Loop7s** result) noexcept;

// The sections of a drawing, each a Loop7s; the torsion of a section.
HRESULT CreateDrawingSections(REFIID iid, void** result);
HRESULT CreateTorsionBlock(REFIID iid, void** result);

// What For Each walks over core objects: their automation objects as the walk begins.
template <class Interface, class Native>
HRESULT NewObjectEnumerator(const std::vector<std::shared_ptr<Native>>& natives, IUnknown** result) noexcept {
    std::vector<VARIANT> items;
    for (const auto& native : natives) {
        Interface* object = nullptr;
        const HRESULT hr = Wrap(native, &object);
        if (FAILED(hr)) {
            for (VARIANT& v : items) VariantClear(&v);
            return hr;
        }
        VARIANT item;
        VariantInit(&item);
        V_VT(&item) = VT_DISPATCH;
        V_DISPATCH(&item) = object;
        items.push_back(item);
    }
    return NewVariantEnumerator(std::move(items), result);
}

}  // namespace tgp::automation
