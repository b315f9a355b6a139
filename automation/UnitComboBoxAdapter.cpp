#include "UnitComboBoxAdapter.h"

#include "ConnectionPoint.h"
#include "DispatchObject.h"
#include "LateBoundCombo.h"
#include "Out.h"
#include "Strings.h"
#include "Tessary_Geometry_Pro.h"
#include "UnitSettingAdapter.h"
#include "Variants.h"
#include "ui/UnitComboBox.h"

namespace tgp::automation {
namespace {

constexpr DISPID kChange = 1;

// A 16-bit Integer passed by reference to an event handler.
VARIANT IntegerReference(int16_t& value) {
    VARIANT reference;
    VariantInit(&reference);
    V_VT(&reference) = VT_BYREF | VT_I2;
    V_I2REF(&reference) = &value;
    return reference;
}

class UnitComboBoxAdapter final : public DispatchObject<::_UnitComboBox, ::UnitComboBox, ui::UnitComboBox>,
                                  public EventContainer {
    using Base = DispatchObject<::_UnitComboBox, ::UnitComboBox, ui::UnitComboBox>;

  public:
    explicit UnitComboBoxAdapter(std::shared_ptr<ui::UnitComboBox> native)
        : Base(std::move(native)), EventContainer(*static_cast<::_UnitComboBox*>(this), DIID___UnitComboBox) {
        connection_ = this->native().onChange([this](int16_t& oldUnitID, int16_t& newUnitID) {
            // Automation passes arguments last first.
            VARIANT arguments[] = {IntegerReference(newUnitID), IntegerReference(oldUnitID)};
            DISPPARAMS params{arguments, nullptr, 2, 0};
            EventPoint().Fire(kChange, params);
        });
    }
    ~UnitComboBoxAdapter() override { native().disconnectChange(connection_); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
        return Base::QueryInterface(iid, result);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return Base::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return Base::Release(); }

    HRESULT STDMETHODCALLTYPE Init(IDispatch* Combo, ::DimensionObjectType DType,
                                   ::_UnitSetting* UnitS) override {
        return Run([&] {
            auto setting = UnitS ? RequiredNative<tgp::UnitSetting>(UnitS) : nullptr;
            native().Init(std::make_shared<LateBoundCombo>(Combo),
                          static_cast<DimensionObjectType>(EnumValue(DType)), std::move(setting));
        });
    }
    HRESULT STDMETHODCALLTYPE get_Combo(IDispatch** result) override {
        return Run([&] {
            const auto* bound = dynamic_cast<const LateBoundCombo*>(native().Combo().get());
            IDispatch* control = bound ? bound->Object() : nullptr;
            if (control) control->AddRef();
            Out(result) = control;
        });
    }
    HRESULT STDMETHODCALLTYPE get_DimensionType(::DimensionObjectType* result) override {
        return Run([&] { Out(result) = static_cast<::DimensionObjectType>(native().DimensionType()); });
    }
    HRESULT STDMETHODCALLTYPE get_UnitSetting(::_UnitSetting** result) override {
        return Run([&] { Check(automation::WrapOrNothing(native().UnitSetting(), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE putref_UnitSetting(::_UnitSetting* rhs) override {
        return Run([&] { native().UnitSetting(rhs ? RequiredNative<tgp::UnitSetting>(rhs) : nullptr); });
    }
    HRESULT STDMETHODCALLTYPE get_UnitString(BSTR* result) override {
        return Run([&] { Out(result) = ToBstr(native().UnitString()); });
    }
    HRESULT STDMETHODCALLTYPE get_UnitID(short* result) override {
        return Run([&] { Out(result) = native().UnitID(); });
    }

  protected:
    void* QueryExtra(REFIID iid) override { return ContainerFor(iid); }

  private:
    ui::UnitComboBox::ConnectionId connection_ = 0;
};

}  // namespace

HRESULT CreateUnitComboBox(REFIID iid, void** result) {
    return UnitComboBoxAdapter::CreateInstance<UnitComboBoxAdapter>(std::make_shared<ui::UnitComboBox>(), iid,
                                                                    result);
}

}  // namespace tgp::automation
