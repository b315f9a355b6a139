#include <optional>

#include "DispatchObject.h"
#include "GeometryAdapters.h"
#include "Out.h"
#include "ProfileAdapters.h"
#include "Quantities.h"
#include "Strings.h"
#include "Variants.h"

namespace tgp::automation {
namespace {

// The optional targetUCS argument: missing or Nothing means the block's own axes.
std::shared_ptr<UCS> TargetOf(const VARIANT& targetUCS) {
    if (!HasValue(targetUCS)) return nullptr;
    return RequiredNative<UCS>(ToObject(targetUCS));
}

// An optional by-reference quantity of GetPrincipalIP: the caller's object is filled when it is
// one of ours, else a new one is created and written back.
template <class Quantity>
std::shared_ptr<Quantity> GivenQuantity(VARIANT* argument) {
    if (IsOmitted(argument) || !HasValue(*argument)) return nullptr;
    const VARIANT& value = Deref(*argument);
    if (V_VT(&value) != VT_DISPATCH && V_VT(&value) != VT_UNKNOWN) return nullptr;
    return NativeOf<Quantity>(V_UNKNOWN(&value));
}

template <class Quantity, class Interface>
void ReturnQuantity(VARIANT* argument, std::shared_ptr<Quantity> quantity) {
    if (IsOmitted(argument)) return;
    Interface* object = nullptr;
    Check(Wrap(std::move(quantity), &object));
    VARIANT value;
    V_VT(&value) = VT_DISPATCH;
    V_DISPATCH(&value) = object;
    WriteBack(argument, value);
    object->Release();
}

class InertiaBlockAdapter final : public DispatchObject<::_InertiaBlock, ::InertiaBlock, tgp::InertiaBlock> {
  public:
    using DispatchObject::DispatchObject;

    HRESULT STDMETHODCALLTYPE Init(double Ix, double Iy, double Ixy, VARIANT Centroid, double Area,
                                   VARIANT Perimeter, VARIANT Ux, VARIANT Uy) override {
        return Run([&] {
            std::optional<double> perimeter;
            if (HasValue(Perimeter)) perimeter = ToDouble(Perimeter);
            Point ux;
            Point uy;
            if (HasValue(Ux)) ux = ToPoint(Ux);
            if (HasValue(Uy)) uy = ToPoint(Uy);
            native().Init(Finite(Ix), Finite(Iy), Finite(Ixy), ToPoint(Centroid), Finite(Area), perimeter,
                          HasValue(Ux) ? &ux : nullptr, HasValue(Uy) ? &uy : nullptr);
        });
    }
    HRESULT STDMETHODCALLTYPE Copy(::_InertiaBlock** result) override {
        return Run([&] { Check(Wrap(native().Copy(), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_Centroid(VARIANT* result) override {
        return Run([&] { SetDoubleArray(&Out(result), native().Centroid()); });
    }
    HRESULT STDMETHODCALLTYPE put_Centroid(VARIANT rhs) override {
        return Run([&] { native().Centroid(ToPoint(rhs)); });
    }
    HRESULT STDMETHODCALLTYPE get_OCS(::_UCS** result) override {
        return Run([&] { Check(Wrap(native().OCS(), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_Ux(VARIANT* result) override {
        return Run([&] { SetDoubleArray(&Out(result), native().Ux()); });
    }
    HRESULT STDMETHODCALLTYPE get_Uy(VARIANT* result) override {
        return Run([&] { SetDoubleArray(&Out(result), native().Uy()); });
    }
    HRESULT STDMETHODCALLTYPE get_Normal(VARIANT* result) override {
        return Run([&] { SetDoubleArray(&Out(result), native().Normal()); });
    }
    HRESULT STDMETHODCALLTYPE get_Area(::_DArea** result) override {
        return Run([&] { Check(Wrap(native().Area(), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_Perimeter(::_DLength** result) override {
        return Run([&] { Check(Wrap(native().Perimeter(), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_IsVoid(VARIANT* result) override {
        return Run([&] { SetBool(&Out(result), native().IsVoid()); });
    }
    HRESULT STDMETHODCALLTYPE get_MomentOfInertiaX(VARIANT targetUCS, ::_DMomentOfInertia** result) override {
        return Run([&] { Check(Wrap(native().MomentOfInertiaX(TargetOf(targetUCS)), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_MomentOfInertiaY(VARIANT targetUCS, ::_DMomentOfInertia** result) override {
        return Run([&] { Check(Wrap(native().MomentOfInertiaY(TargetOf(targetUCS)), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_ProductOfInertiaXY(VARIANT targetUCS,
                                                     ::_DMomentOfInertia** result) override {
        return Run([&] { Check(Wrap(native().ProductOfInertiaXY(TargetOf(targetUCS)), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE RadiusOfGyrationX(VARIANT targetUCS, ::_DLength** result) override {
        return Run([&] { Check(Wrap(native().RadiusOfGyrationX(TargetOf(targetUCS)), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE RadiusOfGyrationY(VARIANT targetUCS, ::_DLength** result) override {
        return Run([&] { Check(Wrap(native().RadiusOfGyrationY(TargetOf(targetUCS)), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE PMomentOfInertiaX(::_DMomentOfInertia** result) override {
        return Run([&] { Check(Wrap(native().PMomentOfInertiaX(), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE PMomentOfInertiaY(::_DMomentOfInertia** result) override {
        return Run([&] { Check(Wrap(native().PMomentOfInertiaY(), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE PrincipalAngle(::_DAngle** result) override {
        return Run([&] { Check(Wrap(native().PrincipalAngle(), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE PCS(::_UCS** result) override {
        return Run([&] { Check(Wrap(native().PCS(), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE GetPrincipalIP(VARIANT* Ix0, VARIANT* Iy0, VARIANT* Rotation) override {
        return Run([&] {
            auto ix0 = GivenQuantity<DMomentOfInertia>(Ix0);
            auto iy0 = GivenQuantity<DMomentOfInertia>(Iy0);
            auto rotation = GivenQuantity<DAngle>(Rotation);
            native().GetPrincipalIP(ix0, iy0, rotation);
            ReturnQuantity<DMomentOfInertia, ::_DMomentOfInertia>(Ix0, ix0);
            ReturnQuantity<DMomentOfInertia, ::_DMomentOfInertia>(Iy0, iy0);
            ReturnQuantity<DAngle, ::_DAngle>(Rotation, rotation);
        });
    }
    HRESULT STDMETHODCALLTYPE get_ElasticModulus(double* result) override {
        return Run([&] { Out(result) = native().ElasticModulus(); });
    }
    HRESULT STDMETHODCALLTYPE put_ElasticModulus(double rhs) override {
        return Run([&] { native().ElasticModulus(Finite(rhs)); });
    }
    HRESULT STDMETHODCALLTYPE get_HasNoMaterial(VARIANT_BOOL* result) override {
        return Run([&] { Out(result) = ToVariantBool(native().HasNoMaterial()); });
    }
    HRESULT STDMETHODCALLTYPE RotateOCS(double Rotation) override {
        return Run([&] { native().RotateOCS(Finite(Rotation)); });
    }
    HRESULT STDMETHODCALLTYPE RotateAll(double Rotation, VARIANT* BasePoint) override {
        return Run([&] { native().RotateAll(Finite(Rotation), ToPoint(*BasePoint)); });
    }
    HRESULT STDMETHODCALLTYPE Move(VARIANT* Displacement) override {
        return Run([&] { native().Move(ToPoint(*Displacement)); });
    }
    HRESULT STDMETHODCALLTYPE Inverse() override {
        return Run([&] { native().Inverse(); });
    }
    HRESULT STDMETHODCALLTYPE Transformation(VARIANT* Displacement, double Rotation, double XScaleFactor,
                                             double YScaleFactor, VARIANT* BasePoint) override {
        return Run([&] {
            native().Transformation(ToPoint(*Displacement), Finite(Rotation), Finite(XScaleFactor),
                                    Finite(YScaleFactor), ToPoint(*BasePoint));
        });
    }
    HRESULT STDMETHODCALLTYPE Join(::_InertiaBlock* Block) override {
        return Run([&] { native().Join(*RequiredNative<tgp::InertiaBlock>(Block)); });
    }
    HRESULT STDMETHODCALLTYPE Union(::_InertiaBlock* Block, ::_InertiaBlock** result) override {
        return Run(
            [&] { Check(Wrap(native().Union(*RequiredNative<tgp::InertiaBlock>(Block)), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE SaveToText(BSTR* result) override {
        return Run([&] { Out(result) = ToBstr(native().SaveToText()); });
    }
    HRESULT STDMETHODCALLTYPE InitFromText(BSTR Text) override {
        return Run([&] { native().InitFromText(ToUtf8(Text)); });
    }
};

}  // namespace

HRESULT Wrap(std::shared_ptr<tgp::InertiaBlock> native, ::_InertiaBlock** result) noexcept {
    return InertiaBlockAdapter::WrapOrNothing<InertiaBlockAdapter>(std::move(native), result);
}

HRESULT CreateInertiaBlock(REFIID iid, void** result) {
    return InertiaBlockAdapter::CreateInstance<InertiaBlockAdapter>(tgp::InertiaBlock::Create(), iid, result);
}

}  // namespace tgp::automation
