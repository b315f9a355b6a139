// Profiles built from arbitrary doubles (NaN, infinities, huge, denormal, any bulge), then every
// test and edit of a loop: only the library's own errors may come out.
#include <cmath>
#include <cstdlib>

#include "FuzzSupport.h"
#include "core/Error.h"
#include "profiles/Loop7.h"

namespace {

using tgp::fuzz::Try;

std::shared_ptr<tgp::Loop7> SomeLoop(FuzzedDataProvider& data) {
    const std::size_t vertices = data.ConsumeIntegralInRange<std::size_t>(0, 12);
    const std::vector<double> xy = tgp::fuzz::SomeDoubles(data, 2 * vertices);
    const std::vector<double> bulges =
        tgp::fuzz::SomeDoubles(data, data.ConsumeIntegralInRange<std::size_t>(0, vertices));
    auto loop = tgp::Loop7::Create();
    try {
        loop->InitFromCoordinates(xy, bulges, data.ConsumeBool());
    } catch (const tgp::Error&) {
    }
    return loop;
}

tgp::Point SomePoint(FuzzedDataProvider& data) {
    return tgp::fuzz::SomeDoubles(data, data.ConsumeIntegralInRange<std::size_t>(0, 3));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider data(bytes, size);
    auto loop = SomeLoop(data);
    auto other = SomeLoop(data);
    std::vector<tgp::Point> points;
    Try([&] { (void)loop->IsSelfIntersect(&points); });
    Try([&] {
        auto block = loop->InertiaBlock();
        // What the library computes from finite input is finite (an overflow raises instead).
        for (double v :
             {loop->Area(), loop->MomentOfInertiaX(), loop->MomentOfInertiaY(), loop->ProductOfInertiaXY(),
              loop->Length(), loop->Centroid()[0], loop->Centroid()[1]}) {
            if (!std::isfinite(v)) std::abort();
        }
        (void)block->PMomentOfInertiaX();
        (void)block->PrincipalAngle();
        (void)block->RadiusOfGyrationX();
        block->RotateAll(tgp::fuzz::SomeDouble(data), SomePoint(data));
        (void)block->PCS();
    });
    Try([&] { (void)loop->Centroid(); });
    Try([&] {
        bool on = false;
        (void)loop->PointIsInside(SomePoint(data), &on);
    });
    Try([&] { (void)loop->Encloses(SomePoint(data)); });
    Try([&] { (void)loop->RelationshipTo(*other); });
    Try([&] { (void)loop->IsChildOF(*other); });
    Try([&] { (void)loop->IntersectWithLoop(*other, &points); });
    Try([&] { (void)loop->IntersectWithLine(SomePoint(data), SomePoint(data), &points); });
    Try([&] {
        tgp::Point top, bottom;
        const tgp::Point align = SomePoint(data);
        loop->GetTopBottomPoints(SomePoint(data), top, bottom, data.ConsumeBool() ? &align : nullptr);
    });
    Try([&] {
        double distance = 0, angle = 0;
        tgp::Point nearest;
        loop->PointAnalysis(SomePoint(data), distance, nearest, angle);
    });
    Try([&] { loop->Reverse(); });
    Try([&] { loop->Move(SomePoint(data)); });
    Try([&] {
        loop->Transformation(SomePoint(data), tgp::fuzz::SomeDouble(data), tgp::fuzz::SomeDouble(data),
                             tgp::fuzz::SomeDouble(data), SomePoint(data));
    });
    Try([&] { (void)loop->Copy()->AreaAbs(); });
    Try([&] { (void)loop->Length(); });
    return 0;
}
