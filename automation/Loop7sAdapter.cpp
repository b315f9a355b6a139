#include <vector>

#include "DispatchObject.h"
#include "Out.h"
#include "ProfileAdapters.h"
#include "Variants.h"

namespace tgp::automation {
namespace {

// A collection index as the core takes it: anything below 1 is out of range there too.
std::size_t IndexOf(long Index) {
    return Index < 1 ? 0 : static_cast<std::size_t>(Index);
}

// A zero-based array of Variants, each holding an object the caller now shares.
template <class Native, class Interface>
void SetObjectArray(VARIANT* result, const std::vector<std::shared_ptr<Native>>& objects) {
    SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(objects.size()));
    if (!array) throw std::bad_alloc();
    for (LONG i = 0; i < static_cast<LONG>(objects.size()); ++i) {
        Interface* object = nullptr;
        const HRESULT hr = Wrap(objects[static_cast<std::size_t>(i)], &object);
        if (FAILED(hr)) {
            SafeArrayDestroy(array);
            Check(hr);
        }
        VARIANT item;
        VariantInit(&item);
        V_VT(&item) = VT_DISPATCH;
        V_DISPATCH(&item) = object;
        SafeArrayPutElement(array, &i, &item);  // copies (adds its own reference)
        VariantClear(&item);
    }
    VariantInit(result);
    V_VT(result) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(result) = array;
}

class Loop7sAdapter final : public DispatchObject<::_Loop7s, ::Loop7s, tgp::Loop7s> {
  public:
    using DispatchObject::DispatchObject;

    HRESULT STDMETHODCALLTYPE Add(::_Loop7* Loop) override {
        return Run([&] { native().Add(RequiredNative<tgp::Loop7>(Loop)); });
    }
    HRESULT STDMETHODCALLTYPE get_Item(long Index, ::_Loop7** result) override {
        return Run([&] { Check(Wrap(native().Item(IndexOf(Index)), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_Count(long* result) override {
        return Run([&] { Out(result) = static_cast<long>(native().Count()); });
    }
    HRESULT STDMETHODCALLTYPE Remove(long Index) override {
        return Run([&] { native().Remove(IndexOf(Index)); });
    }
    HRESULT STDMETHODCALLTYPE Clear() override {
        return Run([&] { native().Clear(); });
    }
    HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown** result) override {
        return Run([&] { Check(NewObjectEnumerator<::_Loop7>(native().Loops(), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE Parent(long Index, ::_Loop7** result) override {
        return Run([&] { Check(Wrap(native().Parent(IndexOf(Index)), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE Depth(long Index, long* result) override {
        return Run([&] { Out(result) = native().Depth(IndexOf(Index)); });
    }
    HRESULT STDMETHODCALLTYPE IsHole(long Index, VARIANT_BOOL* result) override {
        return Run([&] { Out(result) = ToVariantBool(native().IsHole(IndexOf(Index))); });
    }
    HRESULT STDMETHODCALLTYPE InertiaBlock(::_InertiaBlock** result) override {
        return Run([&] { Check(Wrap(native().InertiaBlock(), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE Area(double* result) override {
        return Run([&] { Out(result) = native().Area(); });
    }
    HRESULT STDMETHODCALLTYPE Length(double* result) override {
        return Run([&] { Out(result) = native().Length(); });
    }
    HRESULT STDMETHODCALLTYPE Centroid(VARIANT* result) override {
        return Run([&] { SetDoubleArray(&Out(result), native().Centroid()); });
    }
    HRESULT STDMETHODCALLTYPE MomentOfInertiaX(double* result) override {
        return Run([&] { Out(result) = native().MomentOfInertiaX(); });
    }
    HRESULT STDMETHODCALLTYPE MomentOfInertiaY(double* result) override {
        return Run([&] { Out(result) = native().MomentOfInertiaY(); });
    }
    HRESULT STDMETHODCALLTYPE ProductOfInertiaXY(double* result) override {
        return Run([&] { Out(result) = native().ProductOfInertiaXY(); });
    }
    HRESULT STDMETHODCALLTYPE Split(VARIANT* result) override {
        return Run([&] { SetObjectArray<tgp::Loop7s, ::_Loop7s>(&Out(result), native().Split()); });
    }
    HRESULT STDMETHODCALLTYPE Sort(::Loop7sSortKey Key, VARIANT_BOOL Descending) override {
        return Run([&] {
            native().Sort(static_cast<tgp::Loop7sSortKey>(EnumValue(Key)), Descending != VARIANT_FALSE);
        });
    }
};

}  // namespace

HRESULT Wrap(std::shared_ptr<tgp::Loop7s> native, ::_Loop7s** result) noexcept {
    return Loop7sAdapter::WrapOrNothing<Loop7sAdapter>(std::move(native), result);
}

HRESULT CreateLoop7s(REFIID iid, void** result) {
    return Loop7sAdapter::CreateInstance<Loop7sAdapter>(tgp::Loop7s::Create(), iid, result);
}

}  // namespace tgp::automation
