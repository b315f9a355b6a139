#include "DispatchObject.h"
#include "GeometryAdapters.h"
#include "NativeObject.h"
#include "Out.h"
#include "Strings.h"
#include "Variants.h"
#include "geometry/Analysis.h"
#include "geometry/Circles.h"
#include "geometry/Geometry.h"
#include "geometry/PointSets.h"
#include "geometry/PointTransforms.h"

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

// Optional by-reference outputs: written only when the caller passed a variable for them.
void Output(VARIANT* target, double value) {
    if (!IsOmitted(target)) WriteBack(target, value);
}
void Output(VARIANT* target, bool value) {
    if (!IsOmitted(target)) WriteBack(target, value);
}
void Output(VARIANT* target, const std::string& text) {
    if (IsOmitted(target)) return;
    ScopedVariant value;
    V_VT(&value.get()) = VT_BSTR;
    V_BSTR(&value.get()) = ToBstr(text);
    WriteBack(target, value.get());
}
void OutputLong(VARIANT* target, long value) {
    if (IsOmitted(target)) return;
    ScopedVariant number;
    V_VT(&number.get()) = VT_I4;
    V_I4(&number.get()) = value;
    WriteBack(target, number.get());
}
// A point output; a point that does not exist (no crossing, no intersection) is written as Empty.
void OutputPoint(VARIANT* target, const tgp::Point& point) {
    if (IsOmitted(target)) return;
    if (!point.empty()) return WritePointBack(target, point);
    ScopedVariant empty;
    WriteBack(target, empty.get());
}

// The Points argument of the point-set and transformation members: a list of points, or one point
// (then the transformations answer with one point too).
struct PointsArgument {
    tgp::PointList points;
    bool single = false;
};
// The caller's array, or null when the value holds none.
SAFEARRAY* ArrayIn(const VARIANT& value) {
    const VARIANT& v = Deref(value);
    if (!(V_VT(&v) & VT_ARRAY)) return nullptr;
    return (V_VT(&v) & VT_BYREF) ? *V_ARRAYREF(&v) : V_ARRAY(&v);
}
bool IsEmptyArray(const VARIANT& value) {
    SAFEARRAY* array = ArrayIn(value);
    LONG lower = 0, upper = -1;
    return array && SafeArrayGetDim(array) == 1 && SUCCEEDED(SafeArrayGetLBound(array, 1, &lower)) &&
           SUCCEEDED(SafeArrayGetUBound(array, 1, &upper)) && upper < lower;
}
PointsArgument ReadPoints(const VARIANT& argument) {
    ScopedVariant holder;
    const VARIANT& value = AsSafeArray(argument, holder);
    if (IsArrayOfArrays(value)) return {ToPoints(value), false};
    if (IsEmptyArray(value)) return {};  // a list with no points
    return {{ToPoint(value)}, true};
}
void SetPoints(VARIANT* result, const PointsArgument& shape, const tgp::PointList& points) {
    if (shape.single) return SetDoubleArray(result, points.front());
    SetPointList(result, points);
}
// The lower bound of the caller's list, so an index names the caller's own element.
LONG LowerBound(const VARIANT& value) {
    SAFEARRAY* array = ArrayIn(value);
    LONG lower = 0;
    if (array) SafeArrayGetLBound(array, 1, &lower);
    return lower;
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
        return Run(
            [&] { SetDoubleArray(&Out(result), G::NormalVector(ToPoint(*A), ToPoint(*b), ToPoint(*C))); });
    }
    HRESULT STDMETHODCALLTYPE Volume_4Points(VARIANT* A, VARIANT* b, VARIANT* C, VARIANT* D,
                                             double* result) override {
        return Run(
            [&] { Out(result) = G::Volume_4Points(ToPoint(*A), ToPoint(*b), ToPoint(*C), ToPoint(*D)); });
    }
    HRESULT STDMETHODCALLTYPE pi(VARIANT* result) override {
        return Run([&] { SetDouble(&Out(result), G::pi()); });
    }
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

    HRESULT STDMETHODCALLTYPE Analyse_TriPoints(VARIANT* P1, VARIANT* P2, VARIANT* P3, VARIANT* Area,
                                                VARIANT* Normal, VARIANT* Desc,
                                                ::A3P_Result* result) override {
        return Run([&] {
            const tgp::TriPointsAnalysis r =
                tgp::Analysis::TriPoints(ToPoint(*P1), ToPoint(*P2), ToPoint(*P3));
            Output(Area, r.area);
            OutputPoint(Normal, r.normal);
            Output(Desc, r.desc);
            Out(result) = static_cast<::A3P_Result>(r.result);
        });
    }
    HRESULT STDMETHODCALLTYPE Analyse_Point_Line(VARIANT* P, VARIANT* A, VARIANT* b, VARIANT* Distance,
                                                 VARIANT* FootPoint, VARIANT* Parameter, VARIANT* Between,
                                                 VARIANT* Desc, VARIANT_BOOL* result) override {
        return Run([&] {
            const tgp::PointLineAnalysis r = tgp::Analysis::PointLine(ToPoint(*P), ToPoint(*A), ToPoint(*b));
            Output(Distance, r.distance);
            OutputPoint(FootPoint, r.foot);
            Output(Parameter, r.parameter);
            Output(Between, r.between);
            Output(Desc, r.desc);
            Out(result) = ToVariantBool(r.onLine);
        });
    }
    HRESULT STDMETHODCALLTYPE Analyse_Point_Plane(VARIANT* A, VARIANT* b, VARIANT* C, VARIANT* D,
                                                  VARIANT* Distance, VARIANT* FootPoint, VARIANT* Desc,
                                                  ::APlane_Result* result) override {
        return Run([&] {
            const tgp::PointPlaneAnalysis r =
                tgp::Analysis::PointPlane(ToPoint(*A), ToPoint(*b), ToPoint(*C), ToPoint(*D));
            Output(Distance, r.distance);
            OutputPoint(FootPoint, r.foot);
            Output(Desc, r.desc);
            Out(result) = static_cast<::APlane_Result>(r.result);
        });
    }
    HRESULT STDMETHODCALLTYPE Analyse_Line_Plane(VARIANT* A, VARIANT* b, VARIANT* P1, VARIANT* P2,
                                                 VARIANT* P3, VARIANT* CrossPoint, VARIANT* Parameter,
                                                 VARIANT* Angle, VARIANT* Desc,
                                                 ::APlane_Result* result) override {
        return Run([&] {
            const tgp::LinePlaneAnalysis r =
                tgp::Analysis::LinePlane(ToPoint(*A), ToPoint(*b), ToPoint(*P1), ToPoint(*P2), ToPoint(*P3));
            OutputPoint(CrossPoint, r.crossPoint);
            Output(Parameter, r.parameter);
            Output(Angle, r.angle);
            Output(Desc, r.desc);
            Out(result) = static_cast<::APlane_Result>(r.result);
        });
    }
    HRESULT STDMETHODCALLTYPE Analyse_Line_Line(VARIANT* A, VARIANT* b, VARIANT* C, VARIANT* D,
                                                VARIANT* PointOnFirst, VARIANT* PointOnSecond,
                                                VARIANT* Distance, VARIANT* IntersectionPoint, VARIANT* Angle,
                                                VARIANT* Desc, ::A2L_Result* result) override {
        return Run([&] {
            const tgp::LineLineAnalysis r =
                tgp::Analysis::LineLine(ToPoint(*A), ToPoint(*b), ToPoint(*C), ToPoint(*D));
            OutputPoint(PointOnFirst, r.onFirst);
            OutputPoint(PointOnSecond, r.onSecond);
            Output(Distance, r.distance);
            OutputPoint(IntersectionPoint, r.intersection);
            Output(Angle, r.angle);
            Output(Desc, r.desc);
            Out(result) = static_cast<::A2L_Result>(r.result);
        });
    }
    HRESULT STDMETHODCALLTYPE Analyse_Plane_Plane(VARIANT* A1, VARIANT* b1, VARIANT* C1, VARIANT* A2,
                                                  VARIANT* b2, VARIANT* C2, VARIANT* LinePoint,
                                                  VARIANT* LineDirection, VARIANT* Angle, VARIANT* Distance,
                                                  VARIANT* Desc, ::APlane_Result* result) override {
        return Run([&] {
            const tgp::PlanePlaneAnalysis r = tgp::Analysis::PlanePlane(
                ToPoint(*A1), ToPoint(*b1), ToPoint(*C1), ToPoint(*A2), ToPoint(*b2), ToPoint(*C2));
            OutputPoint(LinePoint, r.linePoint);
            OutputPoint(LineDirection, r.lineDirection);
            Output(Angle, r.angle);
            Output(Distance, r.distance);
            Output(Desc, r.desc);
            Out(result) = static_cast<::APlane_Result>(r.result);
        });
    }
    HRESULT STDMETHODCALLTYPE Intersect_Line_Circle(VARIANT* A, VARIANT* b, VARIANT* Center, double Radius,
                                                    VARIANT* P1, VARIANT* P2, short* result) override {
        return Run([&] {
            const tgp::CircleIntersection r =
                tgp::Circles::LineCircle(ToPoint(*A), ToPoint(*b), ToPoint(*Center), Radius);
            OutputPoint(P1, r.p1);
            OutputPoint(P2, r.p2);
            Out(result) = static_cast<short>(r.count);
        });
    }
    HRESULT STDMETHODCALLTYPE Intersect_Circle_Circle(VARIANT* Center1, double Radius1, VARIANT* Center2,
                                                      double Radius2, VARIANT* P1, VARIANT* P2,
                                                      short* result) override {
        return Run([&] {
            const tgp::CircleIntersection r =
                tgp::Circles::CircleCircle(ToPoint(*Center1), Radius1, ToPoint(*Center2), Radius2);
            OutputPoint(P1, r.p1);
            OutputPoint(P2, r.p2);
            Out(result) = static_cast<short>(r.count);
        });
    }
    HRESULT STDMETHODCALLTYPE Circle_3Points(VARIANT* P1, VARIANT* P2, VARIANT* P3, VARIANT* Center,
                                             VARIANT* Radius, VARIANT_BOOL* result) override {
        return Run([&] {
            tgp::Point centre;
            double radius = 0;
            const bool found =
                tgp::Circles::Through3Points(ToPoint(*P1), ToPoint(*P2), ToPoint(*P3), centre, radius);
            OutputPoint(Center, centre);
            Output(Radius, radius);
            Out(result) = ToVariantBool(found);
        });
    }
    HRESULT STDMETHODCALLTYPE Interpolate_Point(VARIANT* A, VARIANT* b, double t, VARIANT* result) override {
        return Run([&] {
            SetDoubleArray(&Out(result), tgp::PointSets::InterpolatePoint(ToPoint(*A), ToPoint(*b), t));
        });
    }
    HRESULT STDMETHODCALLTYPE Interpolate_Table(double X, VARIANT* Xs, VARIANT* Ys, VARIANT_BOOL Extrapolate,
                                                double* result) override {
        return Run([&] {
            Out(result) =
                tgp::PointSets::InterpolateTable(X, ToPoint(*Xs), ToPoint(*Ys), Extrapolate != VARIANT_FALSE);
        });
    }
    HRESULT STDMETHODCALLTYPE Points_BoundingBox(VARIANT* Points, VARIANT* MinPoint,
                                                 VARIANT* MaxPoint) override {
        return Run([&] {
            tgp::Point lo, hi;
            tgp::PointSets::BoundingBox(ReadPoints(*Points).points, lo, hi);
            OutputPoint(MinPoint, lo);
            OutputPoint(MaxPoint, hi);
        });
    }
    HRESULT STDMETHODCALLTYPE Points_Centroid(VARIANT* Points, VARIANT* result) override {
        return Run(
            [&] { SetDoubleArray(&Out(result), tgp::PointSets::Centroid(ReadPoints(*Points).points)); });
    }
    HRESULT STDMETHODCALLTYPE Points_ConvexHull(VARIANT* Points, VARIANT* result) override {
        return Run(
            [&] { SetPointList(&Out(result), tgp::PointSets::ConvexHull(ReadPoints(*Points).points)); });
    }
    HRESULT STDMETHODCALLTYPE Points_Nearest(VARIANT* Points, VARIANT* P, VARIANT* Index,
                                             VARIANT* result) override {
        return Run([&] {
            std::size_t index = 0;
            const PointsArgument list = ReadPoints(*Points);
            const tgp::Point nearest = tgp::PointSets::Nearest(list.points, ToPoint(*P), index);
            OutputLong(Index, (list.single ? 0 : LowerBound(*Points)) + static_cast<long>(index));
            SetDoubleArray(&Out(result), nearest);
        });
    }
    HRESULT STDMETHODCALLTYPE Points_SortAlong(VARIANT* Points, VARIANT* Direction,
                                               VARIANT* result) override {
        return Run([&] {
            SetPointList(&Out(result),
                         tgp::PointSets::SortAlong(ReadPoints(*Points).points, ToPoint(*Direction)));
        });
    }
    HRESULT STDMETHODCALLTYPE Move_Points(VARIANT* Points, VARIANT* Displacement, VARIANT* result) override {
        return Transformed(Points, result, [&](const tgp::PointList& points) {
            return tgp::PointTransforms::Move(points, ToPoint(*Displacement));
        });
    }
    HRESULT STDMETHODCALLTYPE Scale_Points(VARIANT* Points, VARIANT* BasePoint, double Factor,
                                           VARIANT* result) override {
        return Transformed(Points, result, [&](const tgp::PointList& points) {
            return tgp::PointTransforms::Scale(points, ToPoint(*BasePoint), Factor);
        });
    }
    HRESULT STDMETHODCALLTYPE Mirror_Points(VARIANT* Points, VARIANT* A, VARIANT* b,
                                            VARIANT* result) override {
        return Transformed(Points, result, [&](const tgp::PointList& points) {
            return tgp::PointTransforms::Mirror(points, ToPoint(*A), ToPoint(*b));
        });
    }
    HRESULT STDMETHODCALLTYPE Rotate_Points(VARIANT* Points, VARIANT* Center, double Angle,
                                            VARIANT* result) override {
        return Transformed(Points, result, [&](const tgp::PointList& points) {
            return tgp::PointTransforms::Rotate(points, ToPoint(*Center), Angle);
        });
    }
    HRESULT STDMETHODCALLTYPE Transform_Points(VARIANT* Points, ::_Matrix* M, VARIANT* result) override {
        return Transformed(Points, result, [&](const tgp::PointList& points) {
            return tgp::PointTransforms::Transform(points, *RequiredNative<tgp::Matrix>(M));
        });
    }

  private:
    // The transformations answer in the shape they were given: a point for a point, a list for a list.
    template <class Transformation>
    HRESULT Transformed(VARIANT* Points, VARIANT* result, Transformation transform) {
        return Run([&] {
            const PointsArgument given = ReadPoints(*Points);
            SetPoints(&Out(result), given, transform(given.points));
        });
    }
};

}  // namespace

HRESULT CreateGeometry(REFIID iid, void** result) {
    return GeometryAdapter::CreateInstance<GeometryAdapter>(std::make_shared<tgp::Geometry>(), iid, result);
}

}  // namespace tgp::automation
