#include "Quantities.h"

#include "DispatchObject.h"
#include "Out.h"
#include "Strings.h"
#include "Variants.h"

namespace tgp::automation {
namespace {

// Everything the quantity classes share: the kind, Value by unit argument, the text form and Copy.
// The named classes below only add their unit properties.
template <class Derived, class Itf, class CoClass, class Native>
class QuantityAdapter : public DispatchObject<Itf, CoClass, Native> {
    using Base = DispatchObject<Itf, CoClass, Native>;

  public:
    using Base::Base;

    HRESULT STDMETHODCALLTYPE get_DimensionType(::DimensionObjectType* result) override {
        return this->Run(
            [&] { Out(result) = static_cast<::DimensionObjectType>(this->native().DimensionType()); });
    }
    HRESULT STDMETHODCALLTYPE get_Value(VARIANT Unit, double* result) override {
        return this->Run([&] { Out(result) = this->native().Value(ToUnitArg(Unit)); });
    }
    HRESULT STDMETHODCALLTYPE put_Value(VARIANT Unit, double rhs) override {
        return this->Run([&] { this->native().Value(ToUnitArg(Unit), Finite(rhs)); });
    }
    // Not part of the volume's interface; instantiated only for the classes that declare them.
    HRESULT STDMETHODCALLTYPE ValueToString(VARIANT Unit, short NumberOfDigits, VARIANT_BOOL NoBracket,
                                            BSTR* result) {
        return this->Run([&] {
            Out(result) = ToBstr(
                this->native().ValueToString(ToUnitArg(Unit), NumberOfDigits, NoBracket != VARIANT_FALSE));
        });
    }
    HRESULT STDMETHODCALLTYPE ValueFromString(BSTR Str) {
        return this->Run([&] { this->native().ValueFromString(ToUtf8(Str)); });
    }
    HRESULT STDMETHODCALLTYPE Copy(Itf** result) override {
        return this->Run([&] { Check(Wrap(this->native().Copy(), &Out(result))); });
    }

    std::shared_ptr<Quantity> NativeQuantity() override { return this->shared(); }
};

// A unit property: get reads the amount in the unit, let stores it.
#define TGP_UNIT_PROPERTY(Name)                                         \
    HRESULT STDMETHODCALLTYPE get_##Name(double* result) override {     \
        return this->Run([&] { Out(result) = this->native().Name(); }); \
    }                                                                   \
    HRESULT STDMETHODCALLTYPE put_##Name(double rhs) override {         \
        return this->Run([&] { this->native().Name(Finite(rhs)); });    \
    }

#define TGP_QUANTITY_ADAPTER(Name, ...)                                                               \
    class Name##Adapter final : public QuantityAdapter<Name##Adapter, ::_##Name, ::Name, tgp::Name> { \
      public:                                                                                         \
        using QuantityAdapter::QuantityAdapter;                                                       \
        __VA_ARGS__                                                                                   \
    };

// The formatter does not settle on these lists.
// clang-format off
#define TGP_LENGTH_UNITS(Third)                                                                 \
    TGP_UNIT_PROPERTY(Millimetres) TGP_UNIT_PROPERTY(Centimetres) TGP_UNIT_PROPERTY(Third)     \
    TGP_UNIT_PROPERTY(Metres) TGP_UNIT_PROPERTY(Inches) TGP_UNIT_PROPERTY(Feet)
#define TGP_PRESSURE_UNITS                                                                      \
    TGP_UNIT_PROPERTY(KN_mm2) TGP_UNIT_PROPERTY(daN_cm2) TGP_UNIT_PROPERTY(KG_m2)               \
    TGP_UNIT_PROPERTY(ton_m2) TGP_UNIT_PROPERTY(psi) TGP_UNIT_PROPERTY(ksi)                     \
    TGP_UNIT_PROPERTY(N_mm2) TGP_UNIT_PROPERTY(KN_m2) TGP_UNIT_PROPERTY(KN_cm2)                 \
    TGP_UNIT_PROPERTY(KG_cm2) TGP_UNIT_PROPERTY(atm) TGP_UNIT_PROPERTY(PA)                      \
    TGP_UNIT_PROPERTY(KPa) TGP_UNIT_PROPERTY(MPa)
// clang-format on

TGP_QUANTITY_ADAPTER(DAngle, TGP_UNIT_PROPERTY(Radians) TGP_UNIT_PROPERTY(Degrees))
TGP_QUANTITY_ADAPTER(DLength, TGP_LENGTH_UNITS(Decimetres))
TGP_QUANTITY_ADAPTER(DArea, TGP_LENGTH_UNITS(Decimetres))
TGP_QUANTITY_ADAPTER(DVolume, TGP_LENGTH_UNITS(Litres))
TGP_QUANTITY_ADAPTER(DMomentOfInertia, TGP_LENGTH_UNITS(Decimetres))
TGP_QUANTITY_ADAPTER(DForce, TGP_UNIT_PROPERTY(KN) TGP_UNIT_PROPERTY(daN) TGP_UNIT_PROPERTY(KG)
                                 TGP_UNIT_PROPERTY(tons) TGP_UNIT_PROPERTY(pound) TGP_UNIT_PROPERTY(kip)
                                     TGP_UNIT_PROPERTY(Newtons))
TGP_QUANTITY_ADAPTER(DPressure, TGP_PRESSURE_UNITS)
TGP_QUANTITY_ADAPTER(DForcePerArea, TGP_PRESSURE_UNITS)
TGP_QUANTITY_ADAPTER(DForceMoment,
                     TGP_UNIT_PROPERTY(KNmm) TGP_UNIT_PROPERTY(KGm) TGP_UNIT_PROPERTY(tm)
                         TGP_UNIT_PROPERTY(lbin) TGP_UNIT_PROPERTY(kipin) TGP_UNIT_PROPERTY(KNm))
TGP_QUANTITY_ADAPTER(DForcePerLine,
                     TGP_UNIT_PROPERTY(KN_mm) TGP_UNIT_PROPERTY(KG_m) TGP_UNIT_PROPERTY(tons_m)
                         TGP_UNIT_PROPERTY(lbin) TGP_UNIT_PROPERTY(kipin) TGP_UNIT_PROPERTY(KN_m))
TGP_QUANTITY_ADAPTER(DForceDensity,
                     TGP_UNIT_PROPERTY(KN_mm3) TGP_UNIT_PROPERTY(KG_m3) TGP_UNIT_PROPERTY(tons_m3)
                         TGP_UNIT_PROPERTY(pci) TGP_UNIT_PROPERTY(kci) TGP_UNIT_PROPERTY(KN_m3))

}  // namespace

#define TGP_DEFINE_QUANTITY(Name)                                                                        \
    HRESULT Wrap(std::shared_ptr<tgp::Name> native, ::_##Name** result) noexcept {                       \
        return Name##Adapter::CreateInstance<Name##Adapter>(std::move(native), __uuidof(::_##Name),      \
                                                            reinterpret_cast<void**>(result));           \
    }                                                                                                    \
    HRESULT Create##Name(REFIID iid, void** result) {                                                    \
        return Name##Adapter::CreateInstance<Name##Adapter>(std::make_shared<tgp::Name>(), iid, result); \
    }
TGP_QUANTITY_CLASSES(TGP_DEFINE_QUANTITY)

}  // namespace tgp::automation
