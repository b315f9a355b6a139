#include "DispatchObject.h"
#include "GeometryAdapters.h"
#include "Out.h"
#include "Variants.h"
#include "geometry/Geometry.h"

namespace tgp::automation {
namespace {

using G = tgp::Geometry;

// The angle normalisers with the optional by-reference flags Rotate180 and XMirror.
template <class Normaliser>
void NormaliseWithFlags(Normaliser normalise, double& angle, VARIANT* Rotate180, VARIANT* XMirror) {
    bool rotate = false;
    bool mirror = false;
    bool wantRotate = !IsOmitted(Rotate180);
    bool wantMirror = !IsOmitted(XMirror);
    Finite(angle);
    normalise(angle, wantRotate ? &rotate : nullptr, wantMirror ? &mirror : nullptr);
    if (wantRotate) WriteBack(Rotate180, rotate);
    if (wantMirror) WriteBack(XMirror, mirror);
}

class GeometryAdapter final : public DispatchObject<::_Geometry, ::Geometry, tgp::Geometry> {
public:
    using DispatchObject::DispatchObject;

    HRESULT STDMETHODCALLTYPE Area_3Distances(double* A, double* b, double* C, double* result) override {
        return Run([&] { Out(result) = G::Area_3Distances(Finite(Out(A)), Finite(Out(b)), Finite(Out(C))); });
    }
    HRESULT STDMETHODCALLTYPE Area_3Points(VARIANT* P1, VARIANT* P2, VARIANT* P3, double* result) override {
        return Run([&] { Out(result) = G::Area_3Points(ToPoint(*P1), ToPoint(*P2), ToPoint(*P3)); });
    }
    HRESULT STDMETHODCALLTYPE NormalVector(VARIANT* A, VARIANT* b, VARIANT* C, VARIANT* result) override {
        return Run([&] { SetDoubleArray(&Out(result), G::NormalVector(ToPoint(*A), ToPoint(*b), ToPoint(*C))); });
    }
    HRESULT STDMETHODCALLTYPE Volume_4Points(VARIANT* A, VARIANT* b, VARIANT* C, VARIANT* D, double* result) override {
        return Run([&] { Out(result) = G::Volume_4Points(ToPoint(*A), ToPoint(*b), ToPoint(*C), ToPoint(*D)); });
    }
    HRESULT STDMETHODCALLTYPE pi(VARIANT* result) override { return Run([&] { SetDouble(&Out(result), G::pi()); }); }
    HRESULT STDMETHODCALLTYPE DegToRad(double* Angle, double* result) override {
        return Run([&] { Out(result) = G::DegToRad(Finite(Out(Angle))); });
    }
    HRESULT STDMETHODCALLTYPE DegFromRad(double* Angle, double* result) override {
        return Run([&] { Out(result) = G::DegFromRad(Finite(Out(Angle))); });
    }
    HRESULT STDMETHODCALLTYPE FixAngle360(double* Angle) override {
        return Run([&] { G::FixAngle360(Out(Angle) = Finite(*Angle)); });
    }
    HRESULT STDMETHODCALLTYPE FixAngle180(double* Angle, VARIANT* Rotate180, VARIANT* XMirror) override {
        return Run([&] { NormaliseWithFlags(&G::FixAngle180, Out(Angle), Rotate180, XMirror); });
    }
    HRESULT STDMETHODCALLTYPE FixAngle90(double* Angle, VARIANT* Rotate180, VARIANT* XMirror) override {
        return Run([&] { NormaliseWithFlags(&G::FixAngle90, Out(Angle), Rotate180, XMirror); });
    }
    HRESULT STDMETHODCALLTYPE FixAngle180180(double* Angle) override {
        return Run([&] { G::FixAngle180180(Out(Angle) = Finite(*Angle)); });
    }
    HRESULT STDMETHODCALLTYPE FixAngle9090(double* Angle, VARIANT* Rotate180, VARIANT* XMirror) override {
        return Run([&] { NormaliseWithFlags(&G::FixAngle9090, Out(Angle), Rotate180, XMirror); });
    }
    HRESULT STDMETHODCALLTYPE ASin(double* x, double* result) override {
        return Run([&] { Out(result) = G::ASin(Out(x) = Finite(*x)); });
    }
    HRESULT STDMETHODCALLTYPE ACos(double* x, double* result) override {
        return Run([&] { Out(result) = G::ACos(Out(x) = Finite(*x)); });
    }
    HRESULT STDMETHODCALLTYPE RotatePoint(VARIANT* Point, VARIANT* Org, VARIANT Uz, VARIANT* Rotation,
                                          VARIANT* ReturnPoint) override {
        return Run([&] {
            // The member's own trap covers its first steps, reading the three arrays among them:
            // an unreadable one fails with its 713, not with the conversion's own error.
            tgp::Point point, origin, axis;
            try {
                point = ToPoint(*Point);
                origin = ToPoint(*Org);
                axis = ToPoint(Uz);
            } catch (const Error&) {
                throw Error(713, "Method RotatePoint of Geometry module fails");
            }
            tgp::Point turned;
            G::RotatePoint(point, origin, axis, ToDouble(*Rotation), turned);
            WritePointBack(ReturnPoint, turned);
        });
    }
};

}  // namespace

HRESULT CreateGeometry(REFIID iid, void** result) {
    return GeometryAdapter::CreateInstance<GeometryAdapter>(std::make_shared<tgp::Geometry>(), iid, result);
}

}  // namespace tgp::automation
