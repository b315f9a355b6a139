#include "UnitSettingAdapter.h"

#include <vector>

#include "ConnectionPoint.h"
#include "DispatchObject.h"
#include "Out.h"
#include "Strings.h"
#include "Variants.h"
#include "units/RuntimeInteger.h"

namespace tgp::automation {
namespace {

constexpr DISPID kModified = 1;

class UnitSettingAdapter final : public DispatchObject<::_UnitSetting, ::UnitSetting, tgp::UnitSetting>,
                                 public EventContainer {
    using Base = DispatchObject<::_UnitSetting, ::UnitSetting, tgp::UnitSetting>;

  public:
    explicit UnitSettingAdapter(std::shared_ptr<tgp::UnitSetting> native)
        : Base(std::move(native)), EventContainer(*static_cast<::_UnitSetting*>(this), DIID___UnitSetting) {
        connection_ = this->native().onModified([this] { EventPoint().Fire(kModified); });
    }
    ~UnitSettingAdapter() override { native().disconnectModified(connection_); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
        return Base::QueryInterface(iid, result);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return Base::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return Base::Release(); }

    HRESULT STDMETHODCALLTYPE FreezeEvents(VARIANT_BOOL* flag) override {
        return Run([&] { native().FreezeEvents(Out(flag) != VARIANT_FALSE); });
    }
    HRESULT STDMETHODCALLTYPE Copy(::_UnitSetting** result) override {
        return Run([&] { Check(Wrap(native().Copy(), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_UnitIDs(VARIANT* result) override {
        return Run([&] {
            std::vector<int16_t> ids = native().UnitIDs();
            const VARTYPE elementType = CallerReadsOnlyVariantArrays() ? VT_VARIANT : VT_I2;
            SAFEARRAY* array = SafeArrayCreateVector(elementType, 0, static_cast<ULONG>(ids.size()));
            if (!array) throw std::bad_alloc();
            for (LONG i = 0; i < static_cast<LONG>(ids.size()); ++i) {
                VARIANT id;
                V_VT(&id) = VT_I2;
                V_I2(&id) = ids[static_cast<std::size_t>(i)];
                SafeArrayPutElement(array, &i,
                                    elementType == VT_VARIANT ? static_cast<void*>(&id) : &V_I2(&id));
            }
            VariantInit(&Out(result));
            V_VT(result) = VT_ARRAY | elementType;
            V_ARRAY(result) = array;
        });
    }
    // Elements 0 to 10 are read and stored one at a time: a failing element stops the let there,
    // with the ones before it already stored (nothing is rolled back); elements past 10 are not read.
    HRESULT STDMETHODCALLTYPE put_UnitIDs(VARIANT rhs) override {
        return Run([&] {
            constexpr std::size_t kIds = 11;
            std::size_t position = 0;
            VisitElements(rhs, kIds,
                          [&](const VARIANT& id) { native().StoreUnitID(position++, ToInteger32(id)); });
            if (position < kIds) throw Error::SubscriptOutOfRange();
        });
    }
    HRESULT STDMETHODCALLTYPE CopyTo(::_UnitSetting* exUS) override {
        return Run([&] { native().CopyTo(*RequiredNative<tgp::UnitSetting>(exUS)); });
    }
    HRESULT STDMETHODCALLTYPE get_UnitID(::DimensionObjectType DimensionType, short* result) override {
        return Run(
            [&] { Out(result) = native().UnitID(static_cast<tgp::DimensionObjectType>(DimensionType)); });
    }
    HRESULT STDMETHODCALLTYPE put_UnitID(::DimensionObjectType DimensionType, short rhs) override {
        return Run([&] { native().UnitID(static_cast<tgp::DimensionObjectType>(DimensionType), rhs); });
    }
    HRESULT STDMETHODCALLTYPE get_UnitString(::DimensionObjectType DimensionType, BSTR* result) override {
        return Run([&] {
            Out(result) = ToBstr(native().UnitString(static_cast<tgp::DimensionObjectType>(DimensionType)));
        });
    }

  protected:
    void* QueryExtra(REFIID iid) override { return ContainerFor(iid); }

  private:
    tgp::UnitSetting::ConnectionId connection_ = 0;
};

}  // namespace

HRESULT Wrap(std::shared_ptr<UnitSetting> native, ::_UnitSetting** result) noexcept {
    return UnitSettingAdapter::CreateInstance<UnitSettingAdapter>(std::move(native), __uuidof(::_UnitSetting),
                                                                  reinterpret_cast<void**>(result));
}

HRESULT WrapOrNothing(std::shared_ptr<UnitSetting> native, ::_UnitSetting** result) noexcept {
    return UnitSettingAdapter::WrapOrNothing<UnitSettingAdapter>(std::move(native), result);
}

HRESULT CreateUnitSetting(REFIID iid, void** result) {
    return UnitSettingAdapter::CreateInstance<UnitSettingAdapter>(std::make_shared<tgp::UnitSetting>(), iid,
                                                                  result);
}

}  // namespace tgp::automation
