#pragma once

#include <memory>
#include <typeinfo>

#include "OleBase.h"
#include "core/Error.h"

namespace tgp {
class Quantity;
}

namespace tgp::automation {

// Private to the library: how an adapter hands out the core object it wraps, so that an object
// argument (a UnitSetting as unit, a Matrix to multiply, a UCS as parent) reaches the core as
// itself. Foreign objects do not answer it. Its IID is never published.
struct INativeObject : public IUnknown {
    virtual std::shared_ptr<void> NativeShared() = 0;
    virtual const std::type_info& NativeType() = 0;
    // The quantity interface of the quantity classes; nullptr for every other class.
    virtual std::shared_ptr<Quantity> NativeQuantity() { return nullptr; }
};

}  // namespace tgp::automation

__CRT_UUID_DECL(tgp::automation::INativeObject, 0x2c3edc56, 0xb68e, 0x4f95, 0x89, 0x6f, 0x55, 0x05, 0xf4,
                0xc1, 0xff, 0xff)

namespace tgp::automation {

// The core object of type T behind an automation object; nullptr for a foreign object or one of
// another class.
template <class T>
std::shared_ptr<T> NativeOf(IUnknown* object) {
    if (!object) return nullptr;
    INativeObject* native = nullptr;
    if (FAILED(object->QueryInterface(__uuidof(INativeObject), reinterpret_cast<void**>(&native))))
        return nullptr;
    std::shared_ptr<T> result;
    if (native->NativeType() == typeid(T)) result = std::static_pointer_cast<T>(native->NativeShared());
    native->Release();
    return result;
}

std::shared_ptr<Quantity> QuantityOf(IUnknown* object);

// An object argument the member cannot do without: Nothing raises 424 "Object required", an object
// of another class (or a foreign one) 13 "Type mismatch".
template <class T>
std::shared_ptr<T> RequiredNative(IUnknown* object) {
    if (!object) throw Error::ObjectRequired();
    auto native = NativeOf<T>(object);
    if (!native) throw Error::TypeMismatch();
    return native;
}

}  // namespace tgp::automation
