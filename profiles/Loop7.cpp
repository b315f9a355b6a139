#include "profiles/Loop7.h"

#include <algorithm>
#include <cmath>

#include "core/Constants.h"
#include "core/Equality.h"
#include "core/Error.h"
#include "profiles/SegmentSweep.h"

namespace tgp {

namespace {

// Division as the automation runtime does it: x / 0 raises 11 "Division by zero", 0 / 0 raises
// 6 "Overflow".
double RuntimeDivide(double numerator, double denominator) {
    if (denominator == 0) throw numerator == 0 ? Error::Overflow() : Error::DivisionByZero();
    return numerator / denominator;
}

// Adds a point unless an equal one (within the on-line tolerance) is already there: neighbouring
// segments report the vertex they share twice.
void AddDistinct(std::vector<Point>& points, const Point3& p) {
    for (const Point& q : points) {
        if (Distance2(ToPlanePoint(q), p) <= LoopDLine::kOnLineTolerance) return;
    }
    points.push_back(ToPoint(p));
}

void ReportDistinct(const std::vector<Point3>& found, std::vector<Point>* out) {
    if (!out) return;
    for (const Point3& p : found) AddDistinct(*out, p);
}

}  // namespace

void Loop7::InitFromCoordinates(std::span<const double> Coordinates, std::span<const double> Bulges,
                                bool NoClose) {
    if (Coordinates.size() % 2 != 0) throw Error::SubscriptOutOfRange();  // an x without its y
    InitFrom(
        Coordinates.size() / 2,
        [&](std::size_t i) {
            return Point3{Coordinates[2 * i], Coordinates[2 * i + 1], 0};
        },
        Bulges, NoClose);
}

void Loop7::InitFromVertices(std::span<const Point3> Vertices, std::span<const double> Bulges) {
    InitFrom(
        Vertices.size(),
        [&](std::size_t i) {
            return Point3{Vertices[i].x, Vertices[i].y, 0};
        },
        Bulges, false);
}

template <class VertexAt>
void Loop7::InitFrom(std::size_t n, VertexAt vertex, std::span<const double> Bulges, bool NoClose) {
    decltype(segments_) segments;
    segments.reserve(n);
    std::size_t firstKept = 0;      // the closing segment ends at the first vertex not dropped
    Point3 startPointSum{0, 0, 0};  // summed while the segment is at hand (see MeanVertex)
    const std::size_t last = NoClose ? (n == 0 ? 0 : n - 1) : n;
    for (std::size_t i = 0; i < last; ++i) {
        if (i >= Bulges.size()) throw Error::SubscriptOutOfRange();
        // Built in place, and taken back when it has no length.
        LoopDLine& segment = segments.emplace_back();
        segment.Init(vertex(i), vertex(i + 1 < n ? i + 1 : firstKept), Bulges[i]);
        if (IsEqualWithin(segment.Length(), 0, kZeroLengthTolerance)) {
            segments.pop_back();
            if (i == firstKept) ++firstKept;
            continue;
        }
        startPointSum = Plus(startPointSum, segment.StartPoint());
    }
    segments_ = std::move(segments);
    closed_ = !NoClose;
    Changed();
    startPointSum_ = startPointSum;
}

void Loop7::InitFromPoints(std::span<const Point> Vertices) {
    std::vector<double> coordinates;
    coordinates.reserve(Vertices.size() * 2);
    for (const Point& v : Vertices) {
        coordinates.push_back(Element(v, 0));
        coordinates.push_back(Element(v, 1));
    }
    const std::vector<double> bulges(Vertices.size(), 0.0);
    InitFromCoordinates(coordinates, bulges);
}

void Loop7::Reverse() {
    std::reverse(segments_.begin(), segments_.end());
    for (LoopDLine& segment : segments_) segment.Inverse();
    startPointSum_.reset();
    if (block_) block_->Inverse();
    NextRevision();
}

Point Loop7::Vertex(std::size_t i) const {
    if (i >= segments_.size()) throw Error::SubscriptOutOfRange();
    return ToPoint(segments_[i].StartPoint());
}

std::vector<double> Loop7::Coordinates() const {
    std::vector<double> xy;
    xy.reserve(2 * segments_.size() + 2);
    for (const LoopDLine& segment : segments_) {
        xy.push_back(segment.StartPoint()[0]);
        xy.push_back(segment.StartPoint()[1]);
    }
    if (!closed_ && !segments_.empty()) {
        xy.push_back(segments_.back().EndPoint()[0]);
        xy.push_back(segments_.back().EndPoint()[1]);
    }
    return xy;
}

Point3 Loop7::MeanVertex() const {
    Point3 sum{0, 0, 0};
    if (startPointSum_) {
        sum = *startPointSum_;
    } else {
        for (const LoopDLine& segment : segments_) sum = Plus(sum, segment.StartPoint());
    }
    return Scaled(sum, RuntimeDivide(1, static_cast<double>(segments_.size())));
}

Point Loop7::MiddlePoint() const {
    return ToPoint(MeanVertex());
}

std::vector<double> Loop7::Bulges() const {
    std::vector<double> bulges;
    bulges.reserve(segments_.size());
    for (const LoopDLine& segment : segments_) bulges.push_back(segment.Bulge());
    return bulges;
}

// Sums the segments' integrals about the mean vertex O (small numbers, few lost digits), moves the
// moments to the centroid by the parallel-axis rule and hands them to a new block.
void Loop7::ComputeInertia() {
    // Every side shorter than 1E-05 was dropped when the loop was built (a 1E-200 square keeps
    // none): say so, rather than the division by a vertex count of 0 that would follow.
    if (segments_.empty()) {
        throw Error(
            5,
            "Invalid Loop to generate Inertia Properties: the loop has no segment (sides shorter than "
            "1E-05 are dropped)");
    }
    // The perimeter and the integrals are summed while the self-intersection sweep reads each
    // segment: a loop of millions of segments is read from memory, not cache, on every pass.
    const Point3 O = MeanVertex();
    double perimeter = 0;
    SegmentIntegrals sum;
    const bool cuts = FindSelfIntersections(segments_, closed_, nullptr, [&](const LoopDLine& segment) {
        perimeter += segment.Length();
        sum += segment.IntegralsAbout(O);
    });
    if (cuts) throw Error(5, "Invalid Loop to generate Inertia Properties: Loop should not cut itself");
    block_ = BlockFromIntegrals(sum, O, perimeter);
}

std::shared_ptr<InertiaBlock> BlockFromIntegrals(const SegmentIntegrals& sum, const Point3& O,
                                                 double perimeter) {
    const double A = sum.Area;
    const double xc = RuntimeDivide(sum.StaticMomentY, A);
    const double yc = RuntimeDivide(sum.StaticMomentX, A);
    const double ix = sum.MomentOfInertiaX - A * (yc * yc);
    const double iy = sum.MomentOfInertiaY - A * (xc * xc);
    const double ixy = sum.ProductOfInertiaXY - A * xc * yc;
    auto block = tgp::InertiaBlock::Create();
    block->Init(CheckFinite(ix), CheckFinite(iy), CheckFinite(ixy),
                {CheckFinite(O[0] + xc), CheckFinite(O[1] + yc), O[2]}, CheckFinite(A),
                CheckFinite(perimeter));
    return block;
}

std::shared_ptr<InertiaBlock> Loop7::InertiaBlock() {
    if (!block_) ComputeInertia();
    return block_;
}

double Loop7::Length() {
    return InertiaBlock()->Perimeter()->Millimetres();
}
double Loop7::Area() {
    return InertiaBlock()->Area()->Millimetres();
}
double Loop7::AreaAbs() {
    return std::fabs(Area());
}
double Loop7::MomentOfInertiaX() {
    return InertiaBlock()->MomentOfInertiaX()->Millimetres();
}
double Loop7::MomentOfInertiaY() {
    return InertiaBlock()->MomentOfInertiaY()->Millimetres();
}
double Loop7::ProductOfInertiaXY() {
    return InertiaBlock()->ProductOfInertiaXY()->Millimetres();
}
Point Loop7::Centroid() {
    return InertiaBlock()->Centroid();
}

bool Loop7::PointIsInside(const Point& point, bool* PointIsOn) const {
    if (PointIsOn) *PointIsOn = false;
    const Point3 p = ToPlanePoint(point);
    double winding = 0;
    for (const LoopDLine& segment : segments_) {
        if (segment.PointIsOnDline(p)) {
            if (PointIsOn) *PointIsOn = true;
            return false;
        }
        winding += segment.AngleTo(p);
    }
    return IsEqual(std::fabs(winding), kTwoPi);
}

bool Loop7::Encloses(const Point& point, bool* OnBoundary) const {
    const Point3 p = ToPlanePoint(point);
    const bool on = std::any_of(segments_.begin(), segments_.end(),
                                [&](const LoopDLine& segment) { return segment.PointIsOnDline(p); });
    if (OnBoundary) *OnBoundary = on;
    if (on) return false;
    double winding = 0;
    for (const LoopDLine& segment : segments_) winding += segment.SubtendedAngle(p);
    return std::fabs(winding) > kPi;  // a whole turn or none: anything in between is rounding
}

bool Loop7::IntersectWithLine(const Point& SP, const Point& EP, std::vector<Point>* ArrIntersections) const {
    const Point3 p1 = ToPlanePoint(SP), p2 = ToPlanePoint(EP);
    if (Distance2(p1, p2) == 0) throw Error::InvalidProcedureCall();
    std::vector<Point3> found;
    bool any = false;
    for (const LoopDLine& segment : segments_)
        any = segment.IntersectWithInfinitiveLine(p1, p2, &found) || any;
    ReportDistinct(found, ArrIntersections);
    return any;
}

bool Loop7::IntersectWithLoop(const Loop7& exLoop, std::vector<Point>* ArrIntersections) const {
    std::vector<Point3> found;
    const bool any = FindIntersections(segments_, exLoop.segments_, ArrIntersections ? &found : nullptr);
    ReportDistinct(found, ArrIntersections);
    return any;
}

bool Loop7::IsSelfIntersect(std::vector<Point>* ArrIntersections) const {
    std::vector<Point3> found;
    const bool any = FindSelfIntersections(segments_, closed_, ArrIntersections ? &found : nullptr);
    ReportDistinct(found, ArrIntersections);
    return any;
}

std::optional<bool> Loop7::IsChildOF(const Loop7& exLoop) const {
    if (IntersectWithLoop(exLoop) || segments_.empty()) return std::nullopt;
    if (exLoop.PointIsInside(ToPoint(segments_.front().StartPoint()))) return true;
    return std::nullopt;
}

LoopRelationShip Loop7::RelationshipTo(const Loop7& exLoop) const {
    if (IntersectWithLoop(exLoop)) return SiblingLoop;
    if (!segments_.empty() && exLoop.PointIsInside(ToPoint(segments_.front().StartPoint()))) return ChildLoop;
    if (!exLoop.segments_.empty() && PointIsInside(ToPoint(exLoop.segments_.front().StartPoint())))
        return ParentLoop;
    return FriendLoop;
}

void Loop7::GetTopBottomPoints(const Point& uVector, Point& TopPoint, Point& BottomPoint,
                               const Point* AlignToPoint) const {
    if (segments_.empty()) return;
    const Point3 u = ToPlanePoint(uVector);
    Point3 top{}, bottom{};
    segments_.front().GetTopBottomPoints(u, top, bottom);
    for (const LoopDLine& segment : segments_) {
        Point3 t{}, b{};
        segment.GetTopBottomPoints(u, t, b);
        if (Dot2(t, u) > Dot2(top, u)) top = t;
        if (Dot2(b, u) < Dot2(bottom, u)) bottom = b;
    }
    if (AlignToPoint) {
        const Point3 base = ToPlanePoint(*AlignToPoint);
        const Point3 e = Scaled(u, 1 / Length2(u));
        top = Plus(base, Scaled(e, Dot2(Minus(top, base), e)));
        bottom = Plus(base, Scaled(e, Dot2(Minus(bottom, base), e)));
    }
    TopPoint = ToPoint(top);
    BottomPoint = ToPoint(bottom);
}

void Loop7::Move(const Point& Displacement, bool MoveAcad) {
    const Point3 d = ToPlanePoint(Displacement);
    // Everything is checked first and the entity moved before the loop, so that a refused move
    // (an overflow, or the entity's own error) leaves the loop where it was.
    for (const LoopDLine& segment : segments_) {
        for (const Point3& p :
             {segment.StartPoint(), segment.EndPoint(), segment.Center().value_or(Point3{})}) {
            CheckFinite(p[0] + d[0]);
            CheckFinite(p[1] + d[1]);
        }
    }
    if (MoveAcad && entity_) entity_->Move({0, 0, 0}, Displacement);
    if (block_) block_->Move(Displacement);
    for (LoopDLine& segment : segments_) segment.Move(d);
    startPointSum_.reset();
    NextRevision();
}

void Loop7::Transformation(const Point& Displacement, double Rotation, double XScaleFactor,
                           double YScaleFactor, const Point& BasePoint) {
    if (entity_) ThrowLibraryError("Cannot Transformation Loop7 which has AcadEntity attached");
    if (XScaleFactor == 0 || YScaleFactor == 0) {
        ThrowLibraryError(
            "Cannot Transformation Loop7 with a scale factor of 0: the loop would collapse onto a line");
    }
    const Point3 d = ToPlanePoint(Displacement), base = ToPlanePoint(BasePoint);
    // A dry run first: a segment that would overflow raises before any segment has changed.
    for (const LoopDLine& segment : segments_) {
        LoopDLine trial = segment;
        trial.Transformation(d, Rotation, XScaleFactor, YScaleFactor, base);
    }
    for (LoopDLine& segment : segments_)
        segment.Transformation(d, Rotation, XScaleFactor, YScaleFactor, base);
    Changed();
}

void Loop7::PointAnalysis(const Point& point, double& Distance, Point& HPoint, double& TAngle) const {
    const Point3 p = ToPlanePoint(point);
    bool first = true;
    for (const LoopDLine& segment : segments_) {
        double distance = 0, angle = 0;
        Point3 nearest{};
        segment.PointAnalysis(p, distance, nearest, angle);
        if (!first && distance >= Distance) continue;
        first = false;
        Distance = distance;
        HPoint = ToPoint(nearest);
        TAngle = angle;
    }
}

std::shared_ptr<Loop7> Loop7::Copy() const {
    auto copy = Create();
    copy->segments_ = segments_;
    copy->closed_ = closed_;
    copy->entity_ = entity_;
    copy->handle_ = handle_;
    copy->isVoid_ = isVoid_;
    if (block_) copy->block_ = block_->Copy();
    return copy;
}

}  // namespace tgp
