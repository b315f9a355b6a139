#include "DispatchObject.h"
#include "GeometryAdapters.h"
#include "Out.h"
#include "Strings.h"
#include "Variants.h"
#include "units/RuntimeInteger.h"

namespace tgp::automation {
namespace {

bool Flag(VARIANT_BOOL value) {
    return value != VARIANT_FALSE;
}

// Three Integer zeros, as a new system's Origin.
void SetIntegerZeros(VARIANT* result) {
    SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 0, 3);
    if (!array) throw std::bad_alloc();
    for (LONG i = 0; i < 3; ++i) {
        VARIANT zero;
        V_VT(&zero) = VT_I2;
        V_I2(&zero) = 0;
        SafeArrayPutElement(array, &i, &zero);
    }
    V_VT(result) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(result) = array;
}

// Runs a translation of the point and writes the point back into the caller's variable even when
// the translation fails part of the way: a failing unit conversion comes after the point was
// already partly converted, and the caller sees it so.
template <class Translate>
void WritingBackWhatever(VARIANT* target, tgp::Point& point, Translate&& translate) {
    const tgp::Point given = point;
    try {
        translate();
    } catch (const Error&) {
        if (point != given) WritePointBack(target, point);
        throw;
    }
    WritePointBack(target, point);
}

// Origin is a public Variant of the published class: it reads back what the script last put there
// (three Integer zeros on a new system, the caller's own Variant after SetUCS, anything at all after
// a let), until the system itself moves it, after which it is a point array of Double. The adapter
// keeps the Variant and the native origin's version it belongs to.
class UcsAdapter final : public DispatchObject<::_UCS, ::UCS, tgp::UCS> {
  public:
    explicit UcsAdapter(std::shared_ptr<tgp::UCS> native) : DispatchObject(std::move(native)) {
        originVersion_ = this->native().OriginVersion();
        if (originVersion_ == 0) SetIntegerZeros(&origin_.get());
    }

    HRESULT STDMETHODCALLTYPE get_Label(BSTR* result) override {
        return Run([&] { Out(result) = ToBstr(native().Label()); });
    }
    HRESULT STDMETHODCALLTYPE put_Label(BSTR rhs) override {
        return Run([&] { native().Label(ToUtf8(rhs)); });
    }
    HRESULT STDMETHODCALLTYPE get_Origin(VARIANT* result) override {
        return Run([&] {
            VariantInit(&Out(result));
            if (native().OriginVersion() == originVersion_ && V_VT(&origin_.get()) != VT_EMPTY)
                Check(VariantCopy(result, &origin_.get()));
            else
                SetDoubleArray(result, native().Origin());
        });
    }
    HRESULT STDMETHODCALLTYPE put_Origin(VARIANT rhs) override {
        return Run([&] { KeepOrigin(rhs); });
    }
    HRESULT STDMETHODCALLTYPE putref_Origin(VARIANT rhs) override { return put_Origin(rhs); }
    HRESULT STDMETHODCALLTYPE get_Parent(::_UCS** result) override {
        return Run([&] { Check(Wrap(native().Parent(), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE putref_Parent(::_UCS* rhs) override {
        return Run([&] { native().Parent(rhs ? RequiredNative<tgp::UCS>(rhs) : nullptr); });
    }
    HRESULT STDMETHODCALLTYPE get_Matrix(::_Matrix** result) override {
        return Run([&] { Check(Wrap(native().Matrix(), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_Ux(VARIANT* result) override { return Axis(result, native().Ux()); }
    HRESULT STDMETHODCALLTYPE get_Uy(VARIANT* result) override { return Axis(result, native().Uy()); }
    HRESULT STDMETHODCALLTYPE get_Uz(VARIANT* result) override { return Axis(result, native().Uz()); }
    HRESULT STDMETHODCALLTYPE SetUCS(VARIANT* newOrg, VARIANT* newUx, VARIANT* newUy, VARIANT newUz,
                                     VARIANT Parent) override {
        return Run([&] {
            Point uz;
            if (HasValue(newUz)) uz = ToPoint(newUz);
            std::shared_ptr<tgp::UCS> parent;
            if (HasValue(Parent)) parent = RequiredNative<tgp::UCS>(ToObject(Parent));
            native().SetUCS(ToPoint(*newOrg), ToPoint(*newUx), ToPoint(*newUy),
                            HasValue(newUz) ? &uz : nullptr, std::move(parent));
            Remember(*newOrg);
        });
    }
    HRESULT STDMETHODCALLTYPE TranslateFromUCS(VARIANT* Point, ::_UCS* sourceUCS,
                                               VARIANT_BOOL ConvertAsVector,
                                               ::UnitIDLength ParentUnitID) override {
        return Run([&] {
            tgp::Point point = ToPoint(Out(Point));
            WritingBackWhatever(Point, point, [&] {
                native().TranslateFromUCS(point, *RequiredNative<tgp::UCS>(sourceUCS), Flag(ConvertAsVector),
                                          tgp::ToInteger16(EnumValue(ParentUnitID)));
            });
        });
    }
    HRESULT STDMETHODCALLTYPE TranslateToUCS(VARIANT* MyPoint, ::_UCS* targetUCS,
                                             VARIANT_BOOL ConvertAsVector,
                                             ::UnitIDLength ParentUnitID) override {
        return Run([&] {
            tgp::Point point = ToPoint(Out(MyPoint));
            WritingBackWhatever(MyPoint, point, [&] {
                native().TranslateToUCS(point, *RequiredNative<tgp::UCS>(targetUCS), Flag(ConvertAsVector),
                                        tgp::ToInteger16(EnumValue(ParentUnitID)));
            });
        });
    }
    HRESULT STDMETHODCALLTYPE get_UnitID(::UnitIDLength* result) override {
        return Run([&] { Out(result) = static_cast<::UnitIDLength>(native().UnitID()); });
    }
    HRESULT STDMETHODCALLTYPE put_UnitID(::UnitIDLength rhs) override {
        return Run([&] { native().UnitID(tgp::ToInteger16(EnumValue(rhs))); });
    }
    HRESULT STDMETHODCALLTYPE Reverse(VARIANT_BOOL XAxis, VARIANT_BOOL YAxis, VARIANT_BOOL ZAxis) override {
        return Run([&] { native().Reverse(Flag(XAxis), Flag(YAxis), Flag(ZAxis)); });
    }
    HRESULT STDMETHODCALLTYPE Move(VARIANT* BasePoint, VARIANT* DestPoint) override {
        return Run([&] { native().Move(ToPoint(*BasePoint), ToPoint(*DestPoint)); });
    }
    HRESULT STDMETHODCALLTYPE Rotate(double Rotation, VARIANT_BOOL XAxis, VARIANT_BOOL YAxis,
                                     VARIANT_BOOL ZAxis) override {
        return Run([&] { native().Rotate(Finite(Rotation), Flag(XAxis), Flag(YAxis), Flag(ZAxis)); });
    }
    HRESULT STDMETHODCALLTYPE Copy(::_UCS** result) override {
        return Run([&] { Check(Wrap(native().Copy(), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE ParallelTo(::_UCS* ExUCS, VARIANT_BOOL* result) override {
        return Run(
            [&] { Out(result) = ToVariantBool(native().ParallelTo(*RequiredNative<tgp::UCS>(ExUCS))); });
    }
    HRESULT STDMETHODCALLTYPE U1(VARIANT* result) override { return Axis(result, native().U1()); }
    HRESULT STDMETHODCALLTYPE U2(VARIANT* result) override { return Axis(result, native().U2()); }
    HRESULT STDMETHODCALLTYPE U3(VARIANT* result) override { return Axis(result, native().U3()); }
    HRESULT STDMETHODCALLTYPE Normal(VARIANT* result) override { return Axis(result, native().Normal()); }
    HRESULT STDMETHODCALLTYPE TranslateMyUCSToWorld(::_UCS* MyUCS) override {
        return Run([&] { native().TranslateMyUCSToWorld(*RequiredNative<tgp::UCS>(MyUCS)); });
    }
    HRESULT STDMETHODCALLTYPE RetrieveUCS_SeeMeAs(::_UCS* UnknownUCS, ::_UCS* MyImgUCS) override {
        return Run([&] {
            native().RetrieveUCS_SeeMeAs(*RequiredNative<tgp::UCS>(UnknownUCS),
                                         *RequiredNative<tgp::UCS>(MyImgUCS));
        });
    }

  private:
    // Origin let: the Variant is kept as given; the system works with it as a point, or raises when
    // it is used if it is none (13 for a value that is not an array, 9 for a short array).
    void KeepOrigin(const VARIANT& value) {
        try {
            native().Origin(ToPoint(value));
        } catch (const Error&) {
            native().OriginNotAPoint();
        }
        Remember(value);
    }
    void Remember(const VARIANT& value) {
        Check(VariantCopy(&origin_.get(), const_cast<VARIANT*>(&Deref(value))));
        originVersion_ = native().OriginVersion();
    }

    ScopedVariant origin_;
    std::uint64_t originVersion_ = 0;

    HRESULT Axis(VARIANT* result, const Point& axis) {
        return Run([&] { SetDoubleArray(&Out(result), axis); });
    }
};

}  // namespace

HRESULT Wrap(std::shared_ptr<tgp::UCS> native, ::_UCS** result) noexcept {
    return UcsAdapter::WrapOrNothing<UcsAdapter>(std::move(native), result);
}

HRESULT CreateUCS(REFIID iid, void** result) {
    return UcsAdapter::CreateInstance<UcsAdapter>(tgp::UCS::Create(), iid, result);
}

}  // namespace tgp::automation
