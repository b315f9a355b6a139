#include "profiles/LoopPlacement.h"

#include <algorithm>
#include <vector>

#include "profiles/SegmentSweep.h"

namespace tgp {

namespace {

enum class Side { Inside, Outside, Mixed, OnBoundary };

// Where the boundary of `a` lies relative to the region of `b`, and whether the boundaries meet.
Side SideOf(const Loop7& a, const Loop7& b, bool& meet) {
    std::vector<Point3> common;
    CommonPoints(a.Segments(), b.Segments(), &common);
    meet = !common.empty();
    bool inside = false, outside = false;
    auto probe = [&](const Point3& p) {
        bool on = false;
        const bool in = b.Encloses(ToPoint(p), &on);
        if (on) return;
        (in ? inside : outside) = true;
    };
    if (common.empty()) {
        probe(a.Segments().front().PointAt(0.5));
    } else {
        std::vector<double> cuts;
        for (const LoopDLine& segment : a.Segments()) {
            cuts.assign({0.0, 1.0});
            for (const Point3& p : common) {
                if (segment.PointIsOnDline(p)) cuts.push_back(segment.ParameterOf(p));
            }
            if (cuts.size() == 2) continue;  // the runs between meeting points are probed where they start
            std::sort(cuts.begin(), cuts.end());
            for (std::size_t i = 1; i < cuts.size(); ++i) {
                if (cuts[i] - cuts[i - 1] > 1e-9) probe(segment.PointAt((cuts[i - 1] + cuts[i]) / 2));
            }
            if (inside && outside) break;
        }
    }
    if (inside && outside) return Side::Mixed;
    if (inside) return Side::Inside;
    if (outside) return Side::Outside;
    return Side::OnBoundary;
}

}  // namespace

SegmentBox BoxOf(const Loop7& loop) {
    SegmentBox box = SegmentBox::Empty();
    for (const LoopDLine& segment : loop.Segments()) box.Include(segment.BoundingBox());
    return box;
}

bool BoxesMeet(const SegmentBox& a, const SegmentBox& b) {
    return a.Meets(b, LoopDLine::kOnLineTolerance);
}

Placement PlaceLoops(const Loop7& first, const Loop7& second, bool* BoundariesMeet) {
    bool meet = false;
    if (BoundariesMeet) *BoundariesMeet = false;
    if (first.Segments().empty() || second.Segments().empty()) return Placement::Apart;
    if (!BoxesMeet(BoxOf(first), BoxOf(second))) return Placement::Apart;
    const Side a = SideOf(first, second, meet);
    if (BoundariesMeet) *BoundariesMeet = meet;
    if (a == Side::Mixed || a == Side::OnBoundary) return Placement::Overlap;
    const Side b = SideOf(second, first, meet);
    if (b == Side::Mixed || b == Side::OnBoundary) return Placement::Overlap;
    if (a == Side::Inside && b == Side::Outside) return Placement::FirstInsideSecond;
    if (b == Side::Inside && a == Side::Outside) return Placement::SecondInsideFirst;
    if (a == Side::Outside && b == Side::Outside) return Placement::Apart;
    return Placement::Overlap;
}

}  // namespace tgp
