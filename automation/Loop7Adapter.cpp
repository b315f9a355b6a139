#include "DispatchObject.h"
#include "LateBound.h"
#include "Out.h"
#include "ProfileAdapters.h"
#include "Strings.h"
#include "Variants.h"

namespace tgp::automation {
namespace {

// The CAD entity attached to a loop: any object with a Move(FromPoint, ToPoint) member, called
// late-bound with the points as arrays of Double (what CAD hosts take).
class LateBoundEntity final : public HostEntity {
  public:
    explicit LateBoundEntity(IDispatch* object) : object_(object) { object_->AddRef(); }
    ~LateBoundEntity() override { object_->Release(); }
    LateBoundEntity(const LateBoundEntity&) = delete;
    LateBoundEntity& operator=(const LateBoundEntity&) = delete;

    void Move(const Point& FromPoint, const Point& ToPoint) override {
        ScopedVariant from;
        ScopedVariant to;
        SetDoubleArray(&from.get(), FromPoint);
        SetDoubleArray(&to.get(), ToPoint);
        CallByName(object_, L"Move", DISPATCH_METHOD, {from.get(), to.get()}, nullptr);
    }
    IDispatch* Object() const { return object_; }

  private:
    IDispatch* object_;
};

// An optional by-reference output that receives a list of points.
void WritePoints(VARIANT* target, const std::vector<Point>& points) {
    if (IsOmitted(target)) return;
    ScopedVariant list;
    SetPointList(&list.get(), points);
    WriteBack(target, list.get());
}

void CheckVertexCount(std::size_t vertices) {
    if (vertices > 32767) throw Error::Overflow();
}

class Loop7Adapter final : public DispatchObject<::_Loop7, ::Loop7, tgp::Loop7> {
  public:
    using DispatchObject::DispatchObject;

    // The published loop walks its vertices with 16-bit counters: more than 32767 of them overflow
    // when the loop is built (the native class takes any number).
    HRESULT STDMETHODCALLTYPE InitFromCoordinates(VARIANT Coordinates, VARIANT Bulges,
                                                  VARIANT_BOOL NoClose) override {
        return Run([&] {
            const Point xy = ToPoint(Coordinates);
            CheckVertexCount(xy.size() / 2);
            native().InitFromCoordinates(xy, ToPoint(Bulges), NoClose != VARIANT_FALSE);
        });
    }
    HRESULT STDMETHODCALLTYPE InitFromPoints(VARIANT Vertices) override {
        return Run([&] {
            const std::vector<Point> points = ToPoints(Vertices);
            CheckVertexCount(points.size());
            native().InitFromPoints(points);
        });
    }
    HRESULT STDMETHODCALLTYPE Reverse() override {
        return Run([&] { native().Reverse(); });
    }
    HRESULT STDMETHODCALLTYPE get_Count(short* result) override {
        return Run([&] {
            if (native().Count() > 32767) throw Error::Overflow();  // the published count is 16-bit
            Out(result) = static_cast<short>(native().Count());
        });
    }
    HRESULT STDMETHODCALLTYPE get_AcadEntity(IDispatch** result) override {
        return Run([&] {
            auto* entity = dynamic_cast<LateBoundEntity*>(native().AcadEntity().get());
            Out(result) = entity ? entity->Object() : nullptr;
            if (*result) (*result)->AddRef();
        });
    }
    HRESULT STDMETHODCALLTYPE putref_AcadEntity(IDispatch* rhs) override {
        return Run([&] { native().AcadEntity(rhs ? std::make_shared<LateBoundEntity>(rhs) : nullptr); });
    }
    HRESULT STDMETHODCALLTYPE get_Handle(BSTR* result) override {
        return Run([&] { Out(result) = ToBstr(native().Handle()); });
    }
    HRESULT STDMETHODCALLTYPE Vertex(short* i, VARIANT* result) override {
        return Run([&] {
            if (Out(i) < 0) throw Error::SubscriptOutOfRange();
            SetDoubleArray(&Out(result), native().Vertex(static_cast<std::size_t>(*i)));
        });
    }
    HRESULT STDMETHODCALLTYPE Coordinates(VARIANT* result) override {
        return Run([&] { SetDoubleArray(&Out(result), native().Coordinates()); });
    }
    HRESULT STDMETHODCALLTYPE MiddlePoint(VARIANT* result) override {
        return Run([&] { SetDoubleArray(&Out(result), native().MiddlePoint()); });
    }
    HRESULT STDMETHODCALLTYPE Bulges(VARIANT* result) override {
        return Run([&] { SetDoubleArray(&Out(result), native().Bulges()); });
    }
    HRESULT STDMETHODCALLTYPE get_IsVoid(VARIANT_BOOL* result) override {
        return Run([&] { Out(result) = ToVariantBool(native().IsVoid()); });
    }
    HRESULT STDMETHODCALLTYPE put_IsVoid(VARIANT_BOOL rhs) override {
        return Run([&] { native().IsVoid(rhs != VARIANT_FALSE); });
    }
    HRESULT STDMETHODCALLTYPE get_InitInertiaDone(VARIANT_BOOL* result) override {
        return Run([&] { Out(result) = ToVariantBool(native().InitInertiaDone()); });
    }
    HRESULT STDMETHODCALLTYPE InertiaBlock(::_InertiaBlock** result) override {
        return Run([&] { Check(Wrap(native().InertiaBlock(), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE Length(double* result) override {
        return Run([&] { Out(result) = native().Length(); });
    }
    HRESULT STDMETHODCALLTYPE Area(double* result) override {
        return Run([&] { Out(result) = native().Area(); });
    }
    HRESULT STDMETHODCALLTYPE AreaAbs(double* result) override {
        return Run([&] { Out(result) = native().AreaAbs(); });
    }
    HRESULT STDMETHODCALLTYPE MomentOfInertiaX(double* result) override {
        return Run([&] { Out(result) = native().MomentOfInertiaX(); });
    }
    HRESULT STDMETHODCALLTYPE MomentOfInertiaY(double* result) override {
        return Run([&] { Out(result) = native().MomentOfInertiaY(); });
    }
    HRESULT STDMETHODCALLTYPE ProductOfInertiaXY(double* result) override {
        return Run([&] { Out(result) = native().ProductOfInertiaXY(); });
    }
    HRESULT STDMETHODCALLTYPE Centroid(VARIANT* result) override {
        return Run([&] { SetDoubleArray(&Out(result), native().Centroid()); });
    }
    HRESULT STDMETHODCALLTYPE PointIsInside(VARIANT* Point, VARIANT* PointIsOn,
                                            VARIANT_BOOL* result) override {
        return Run([&] {
            bool on = false;
            Out(result) = ToVariantBool(native().PointIsInside(ToPoint(*Point), &on));
            if (!IsOmitted(PointIsOn)) WriteBack(PointIsOn, on);
        });
    }
    HRESULT STDMETHODCALLTYPE IntersectWithLine(VARIANT* SP, VARIANT* EP, VARIANT* ArrIntersections,
                                                VARIANT_BOOL* result) override {
        return Run([&] {
            std::vector<Point> points;
            Out(result) = ToVariantBool(native().IntersectWithLine(ToPoint(*SP), ToPoint(*EP), &points));
            WritePoints(ArrIntersections, points);
        });
    }
    HRESULT STDMETHODCALLTYPE IntersectWithLoop(::_Loop7* exLoop, VARIANT* ArrIntersections,
                                                VARIANT_BOOL* result) override {
        return Run([&] {
            std::vector<Point> points;
            Out(result) =
                ToVariantBool(native().IntersectWithLoop(*RequiredNative<tgp::Loop7>(exLoop), &points));
            WritePoints(ArrIntersections, points);
        });
    }
    HRESULT STDMETHODCALLTYPE IsSelfIntersect(VARIANT* ArrIntersections, VARIANT_BOOL* result) override {
        return Run([&] {
            std::vector<Point> points;
            Out(result) = ToVariantBool(native().IsSelfIntersect(&points));
            WritePoints(ArrIntersections, points);
        });
    }
    HRESULT STDMETHODCALLTYPE IsChildOF(::_Loop7* exLoop, VARIANT* result) override {
        return Run([&] {
            auto child = native().IsChildOF(*RequiredNative<tgp::Loop7>(exLoop));
            VariantInit(&Out(result));  // nothing (Empty) unless it is a child
            if (child) SetBool(result, *child);
        });
    }
    HRESULT STDMETHODCALLTYPE RelationshipTo(::_Loop7* exLoop, ::LoopRelationShip* result) override {
        return Run([&] {
            Out(result) =
                static_cast<::LoopRelationShip>(native().RelationshipTo(*RequiredNative<tgp::Loop7>(exLoop)));
        });
    }
    HRESULT STDMETHODCALLTYPE GetTopBottomPoints(VARIANT* uVector, VARIANT* TopPoint, VARIANT* BottomPoint,
                                                 VARIANT* AlignToPoint) override {
        return Run([&] {
            Point top = IsMissing(Out(TopPoint)) ? Point{} : ToPoint(*TopPoint);
            Point bottom = IsMissing(Out(BottomPoint)) ? Point{} : ToPoint(*BottomPoint);
            Point align;
            bool aligned = !IsOmitted(AlignToPoint) && HasValue(*AlignToPoint);
            if (aligned) align = ToPoint(*AlignToPoint);
            native().GetTopBottomPoints(ToPoint(*uVector), top, bottom, aligned ? &align : nullptr);
            if (!top.empty()) WritePointBack(TopPoint, top);
            if (!bottom.empty()) WritePointBack(BottomPoint, bottom);
        });
    }
    HRESULT STDMETHODCALLTYPE Move(VARIANT* Displacement, VARIANT_BOOL MoveAcad) override {
        return Run([&] { native().Move(ToPoint(*Displacement), MoveAcad != VARIANT_FALSE); });
    }
    HRESULT STDMETHODCALLTYPE Transformation(VARIANT* Displacement, double Rotation, double XScaleFactor,
                                             double YScaleFactor, VARIANT* BasePoint) override {
        return Run([&] {
            native().Transformation(ToPoint(*Displacement), Finite(Rotation), Finite(XScaleFactor),
                                    Finite(YScaleFactor), ToPoint(*BasePoint));
        });
    }
    HRESULT STDMETHODCALLTYPE PointAnalysis(VARIANT* Point, double* Distance, VARIANT* HPoint,
                                            double* TAngle) override {
        return Run([&] {
            tgp::Point nearest = IsMissing(Out(HPoint)) ? tgp::Point{} : ToPoint(*HPoint);
            native().PointAnalysis(ToPoint(*Point), Out(Distance), nearest, Out(TAngle));
            if (!nearest.empty()) WritePointBack(HPoint, nearest);
        });
    }
    HRESULT STDMETHODCALLTYPE Copy(::_Loop7** result) override {
        return Run([&] { Check(Wrap(native().Copy(), &Out(result))); });
    }
};

}  // namespace

HRESULT Wrap(std::shared_ptr<tgp::Loop7> native, ::_Loop7** result) noexcept {
    return Loop7Adapter::WrapOrNothing<Loop7Adapter>(std::move(native), result);
}

HRESULT CreateLoop7(REFIID iid, void** result) {
    return Loop7Adapter::CreateInstance<Loop7Adapter>(tgp::Loop7::Create(), iid, result);
}

}  // namespace tgp::automation
