#include "GeometryExeAdapter.h"

#include "Dialogs.h"
#include "DispatchObject.h"
#include "Out.h"
#include "Quantities.h"
#include "Strings.h"
#include "Variants.h"
#include "units/RuntimeInteger.h"

namespace tgp::automation {
namespace {

// Each factory: the unit id (an enumeration, 32-bit in the type library) travels as a 16-bit id.
#define TGP_QUANTITY_FACTORY(Name, UnitEnum)                                                                \
    HRESULT STDMETHODCALLTYPE Get##Name(double Value, ::UnitEnum Unit, ::_##Name** result) override {       \
        return Run([&] {                                                                                    \
            auto quantity = tgp::Geometry_EXE::Get##Name(Finite(Value), tgp::ToInteger16(EnumValue(Unit))); \
            Check(Wrap(std::move(quantity), &Out(result)));                                                 \
        });                                                                                                 \
    }

class GeometryExeAdapter final : public DispatchObject<::_Geometry_EXE, ::Geometry_EXE, tgp::Geometry_EXE> {
  public:
    using DispatchObject::DispatchObject;

    HRESULT STDMETHODCALLTYPE EditEnum(VARIANT* Value, BSTR EnumString, BSTR Title, BSTR Desc,
                                       VARIANT_BOOL* result) override {
        return Run([&] { Out(result) = ToVariantBool(RunEditEnum(Value, EnumString, Title, Desc)); });
    }
    HRESULT STDMETHODCALLTYPE EditQuantity(VARIANT* Value, VARIANT UnitID, BSTR Title, BSTR Desc,
                                           short* ReturnUnitID, IDispatch* OwnerForm,
                                           VARIANT_BOOL* result) override {
        return Run([&] {
            Out(result) = ToVariantBool(RunEditQuantity(Value, UnitID, Title, Desc, ReturnUnitID, OwnerForm));
        });
    }
    HRESULT STDMETHODCALLTYPE EditUnitSetting(::_UnitSetting** US, VARIANT_BOOL ShowModal,
                                              VARIANT_BOOL ShowCenterScreen, VARIANT_BOOL* result) override {
        return Run([&] {
            Out(result) = ToVariantBool(
                RunEditUnitSetting(US, ShowModal != VARIANT_FALSE, ShowCenterScreen != VARIANT_FALSE));
        });
    }
    HRESULT STDMETHODCALLTYPE GetUnitString(::DimensionObjectType DimensionType, VARIANT Unit,
                                            BSTR* result) override {
        return Run([&] {
            Out(result) = ToBstr(tgp::Geometry_EXE::GetUnitString(
                static_cast<tgp::DimensionObjectType>(DimensionType), ToUnitArg(Unit)));
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
    return GeometryExeAdapter::CreateInstance<GeometryExeAdapter>(std::make_shared<tgp::Geometry_EXE>(), iid,
                                                                  result);
}

}  // namespace tgp::automation
