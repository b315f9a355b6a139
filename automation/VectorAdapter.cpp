#include "DispatchObject.h"
#include "GeometryAdapters.h"
#include "Out.h"
#include "Variants.h"
#include "geometry/Vector.h"

namespace tgp::automation {
namespace {

// Scales a point, or each point of an array of points at any depth, as vxr does.
void ScaleInto(const VARIANT& argument, double r, VARIANT* result) {
    ScopedVariant holder;
    const VARIANT& v = AsSafeArray(argument, holder);
    if (!IsArrayOfArrays(v)) {
        SetDoubleArray(result, tgp::Vector::vxr(ToPoint(v), r));
        return;
    }
    VARTYPE elementType = VT_VARIANT;
    const VARIANT& array = Deref(v);
    SAFEARRAY* items = (V_VT(&array) & VT_BYREF) ? *V_ARRAYREF(&array) : V_ARRAY(&array);
    LONG lower = 0;
    LONG upper = -1;
    SafeArrayGetLBound(items, 1, &lower);
    SafeArrayGetUBound(items, 1, &upper);
    SAFEARRAY* scaled = SafeArrayCreateVector(elementType, 0, static_cast<ULONG>(upper - lower + 1));
    if (!scaled) throw std::bad_alloc();
    ScopedVariant built;  // handed to the caller only when complete
    V_VT(&built.get()) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(&built.get()) = scaled;
    for (LONG i = lower; i <= upper; ++i) {
        ScopedVariant item;
        ScopedVariant scaledItem;
        SafeArrayGetElement(items, &i, &item.get());
        ScaleInto(item.get(), r, &scaledItem.get());
        LONG target = i - lower;
        SafeArrayPutElement(scaled, &target, &scaledItem.get());
    }
    *result = built.get();
    V_VT(&built.get()) = VT_EMPTY;
}

const Point* OptionalPoint(const VARIANT& value, Point& storage) {
    if (!HasValue(value)) return nullptr;
    storage = ToPoint(value);
    return &storage;
}

class VectorAdapter final : public DispatchObject<::_Vector, ::Vector, tgp::Vector> {
    using V = tgp::Vector;

  public:
    using DispatchObject::DispatchObject;

    HRESULT STDMETHODCALLTYPE vplusv(SAFEARRAY** parArr, VARIANT* result) override {
        return Run([&] {
            VARIANT items;
            V_VT(&items) = VT_ARRAY | VT_VARIANT;
            V_ARRAY(&items) = parArr ? *parArr : nullptr;
            if (!V_ARRAY(&items)) throw Error::SubscriptOutOfRange();
            std::vector<Point> points = ToPoints(items);
            SetDoubleArray(&Out(result), V::vplusv(points));
        });
    }
    HRESULT STDMETHODCALLTYPE vminusv(VARIANT* V1, VARIANT* V2, VARIANT* result) override {
        return Run([&] { SetDoubleArray(&Out(result), V::vminusv(ToPoint(*V1), ToPoint(*V2))); });
    }
    HRESULT STDMETHODCALLTYPE vxr(VARIANT* v, VARIANT r, VARIANT* result) override {
        return Run([&] { ScaleInto(*v, ToDouble(r), &Out(result)); });
    }
    HRESULT STDMETHODCALLTYPE vAngle(VARIANT* v, VARIANT* V1, double* result) override {
        return Run([&] {
            Point other;
            const Point* second = OptionalPoint(*V1, other);
            Out(result) = second ? V::vAngle(ToPoint(*v), *second) : V::vAngle(ToPoint(*v));
        });
    }
    HRESULT STDMETHODCALLTYPE vLength(VARIANT* A, VARIANT* b, double* result) override {
        return Run([&] {
            if (Deref(*A).vt == VT_EMPTY) {  // an Empty vector has length 0, whatever b is
                Out(result) = 0;
                return;
            }
            Point other;
            const Point* second = OptionalPoint(*b, other);
            Out(result) = second ? V::vLength(ToPoint(*A), *second) : V::vLength(ToPoint(*A));
        });
    }
    HRESULT STDMETHODCALLTYPE vRotate(VARIANT* v, double* r, VARIANT* result) override {
        return Run([&] { SetVariantArray(&Out(result), V::vRotate(ToPoint(*v), Finite(Out(r)))); });
    }
    HRESULT STDMETHODCALLTYPE vxv(VARIANT* V1, VARIANT* V2, VARIANT* result) override {
        return Run([&] { SetDoubleArray(&Out(result), V::vxv(ToPoint(*V1), ToPoint(*V2))); });
    }
    HRESULT STDMETHODCALLTYPE vxxv(VARIANT* V1, VARIANT* V2, double* result) override {
        return Run([&] { Out(result) = V::vxxv(ToPoint(*V1), ToPoint(*V2)); });
    }
    HRESULT STDMETHODCALLTYPE vProjectTo(VARIANT* Vec, VARIANT* ToVector, VARIANT* result) override {
        return Run([&] { SetVariantArray(&Out(result), V::vProjectTo(ToPoint(*Vec), ToPoint(*ToVector))); });
    }
    HRESULT STDMETHODCALLTYPE vAngle3D(VARIANT* uA, VARIANT* uX0, VARIANT Uz, double* result) override {
        return Run([&] {
            Point axis;
            Out(result) = V::vAngle3D(ToPoint(*uA), ToPoint(*uX0), OptionalPoint(Uz, axis));
        });
    }
    HRESULT STDMETHODCALLTYPE UnitVec(VARIANT u, VARIANT* PointB, VARIANT* result) override {
        return Run([&] {
            Point target;
            const Point* b = OptionalPoint(*PointB, target);
            SetDoubleArray(&Out(result), b ? V::UnitVec(ToPoint(u), *b) : V::UnitVec(ToPoint(u)));
        });
    }
    HRESULT STDMETHODCALLTYPE RoundZeroVector(VARIANT* v, VARIANT* fuzz) override {
        return Run([&] {
            const Point point = ToPoint(Out(v));
            double tolerance = IsOmitted(fuzz) || IsMissing(*fuzz) ? 0.0 : ToDouble(*fuzz);
            Point rounded = point;
            V::RoundZeroVector(rounded, tolerance);
            if (!IsOmitted(fuzz)) WriteBack(fuzz, tolerance);
            // Only the elements it zeroes change, in place and in the array's own type.
            std::vector<std::size_t> zeroed;
            for (std::size_t i = 0; i < point.size(); ++i)
                if (rounded[i] == 0 && point[i] != 0) zeroed.push_back(i);
            ZeroElements(v, zeroed);
        });
    }
    HRESULT STDMETHODCALLTYPE AssocVector(VARIANT Fvector, VARIANT* u, VARIANT* v, VARIANT* w,
                                          VARIANT* result) override {
        return Run([&] {
            // Any failure inside the member, reading its arrays included, is its one 2411.
            Point f, a, b, c;
            try {
                f = ToPoint(Fvector);
                a = ToPoint(*u);
                b = ToPoint(*v);
                c = ToPoint(*w);
            } catch (const Error&) {
                ThrowLibraryError("AssocVector fails: The Inverse Matrix method return Null");
            }
            SetDoubleArray(&Out(result), V::AssocVector(f, a, b, c));
        });
    }
    HRESULT STDMETHODCALLTYPE VectorAB(VARIANT* A, VARIANT* b, VARIANT* result) override {
        return Run([&] { SetDoubleArray(&Out(result), V::VectorAB(ToPoint(*A), ToPoint(*b))); });
    }
    HRESULT STDMETHODCALLTYPE ConvertVariantToArray(VARIANT* P, VARIANT* result) override {
        return Run([&] { SetDoubleArray(&Out(result), V::ConvertVariantToArray(ToPoint(*P))); });
    }
    HRESULT STDMETHODCALLTYPE IsParallel(VARIANT* V1, VARIANT* V2, VARIANT_BOOL* result) override {
        return Run([&] { Out(result) = ToVariantBool(V::IsParallel(ToPoint(*V1), ToPoint(*V2))); });
    }
    HRESULT STDMETHODCALLTYPE IsVertical(VARIANT* V1, VARIANT* V2, VARIANT_BOOL* result) override {
        return Run([&] { Out(result) = ToVariantBool(V::IsVertical(ToPoint(*V1), ToPoint(*V2))); });
    }
    HRESULT STDMETHODCALLTYPE Fix_NegativeVector(VARIANT* SP, VARIANT* EP, VARIANT* OffsetAngle,
                                                 VARIANT_BOOL* result) override {
        return Run([&] {
            Point start = ToPoint(Out(SP));
            Point end = ToPoint(Out(EP));
            double offset = HasValue(*OffsetAngle) ? ToDouble(*OffsetAngle) : 0.0;
            bool exchanged = V::Fix_NegativeVector(start, end, offset);
            if (exchanged) ExchangeVariables(SP, EP, start, end);
            Out(result) = ToVariantBool(exchanged);
        });
    }
};

}  // namespace

HRESULT CreateVector(REFIID iid, void** result) {
    return VectorAdapter::CreateInstance<VectorAdapter>(std::make_shared<tgp::Vector>(), iid, result);
}

}  // namespace tgp::automation
