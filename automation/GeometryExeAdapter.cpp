#include "GeometryExeAdapter.h"

#include "DispatchObject.h"
#include "Out.h"
#include "Quantities.h"
#include "Strings.h"
#include "Variants.h"
#include "units/RuntimeInteger.h"

namespace tgp::automation {
namespace {

// The dialogs are served by the editing layer; until it is connected they answer the runtime's
// "not supported" error instead of pretending the user cancelled.
[[noreturn]] void DialogsUnavailable() { throw Error(445, "Object doesn't support this action"); }

// Each factory: the unit id (an enumeration, 32-bit in the type library) travels as a 16-bit id.
#define TGP_QUANTITY_FACTORY(Name, UnitEnum)                                                        \
    HRESULT STDMETHODCALLTYPE Get##Name(double Value, ::UnitEnum Unit, ::_##Name** result) override { \
        return Run([&] {                                                                             \
            auto quantity = tgp::Geometry_EXE::Get##Name(Finite(Value), tgp::ToInteger16(EnumValue(Unit)));    \
            Check(Wrap(std::move(quantity), &Out(result)));                                          \
        });                                                                                          \
    }

class GeometryExeAdapter final : public DispatchObject<::_Geometry_EXE, ::Geometry_EXE, tgp::Geometry_EXE> {
public:
    using DispatchObject::DispatchObject;

    HRESULT STDMETHODCALLTYPE EditEnum(VARIANT*, BSTR, BSTR, BSTR, VARIANT_BOOL*) override {
        return Run([] { DialogsUnavailable(); });
    }
    HRESULT STDMETHODCALLTYPE EditQuantity(VARIANT*, VARIANT, BSTR, BSTR, short*, IDispatch*, VARIANT_BOOL*) override {
        return Run([] { DialogsUnavailable(); });
    }
    HRESULT STDMETHODCALLTYPE EditUnitSetting(::_UnitSetting**, VARIANT_BOOL, VARIANT_BOOL, VARIANT_BOOL*) override {
        return Run([] { DialogsUnavailable(); });
    }
    HRESULT STDMETHODCALLTYPE GetUnitString(::DimensionObjectType DimensionType, VARIANT Unit, BSTR* result) override {
        return Run([&] {
            Out(result) = ToBstr(tgp::Geometry_EXE::GetUnitString(static_cast<tgp::DimensionObjectType>(DimensionType),
                                                                  ToUnitArg(Unit)));
        });
    }
    HRESULT STDMETHODCALLTYPE GetUnitID(BSTR ValueStr, IDispatch* DObject, short* result) override {
        return Run([&] {
            if (!DObject) throw Error::ObjectRequired();
            auto quantity = QuantityOf(DObject);
            if (!quantity) throw Error::TypeMismatch();
            Out(result) = tgp::Geometry_EXE::GetUnitID(ToUtf8(ValueStr), *quantity);
        });
    }

    TGP_QUANTITY_FACTORY(DAngle, UnitIDAngle)
    TGP_QUANTITY_FACTORY(DLength, UnitIDLength)
    TGP_QUANTITY_FACTORY(DArea, UnitIDLength)
    TGP_QUANTITY_FACTORY(DVolume, UnitIDLength)
    TGP_QUANTITY_FACTORY(DForce, UnitIDForce)
    TGP_QUANTITY_FACTORY(DForceDensity, UnitIDForceLength)
    TGP_QUANTITY_FACTORY(DForceMoment, UnitIDForceLength)
    TGP_QUANTITY_FACTORY(DForcePerArea, UnitIDForceLength)
    TGP_QUANTITY_FACTORY(DForcePerLine, UnitIDForceLength)
    TGP_QUANTITY_FACTORY(DMomentOfInertia, UnitIDLength)
    TGP_QUANTITY_FACTORY(DPressure, UnitIDForceLength)
};

}  // namespace

HRESULT CreateGeometry_EXE(REFIID iid, void** result) {
    return GeometryExeAdapter::CreateInstance<GeometryExeAdapter>(std::make_shared<tgp::Geometry_EXE>(), iid, result);
}

}  // namespace tgp::automation
