#include "profiles/LoopDLine.h"

#include <algorithm>
#include <cmath>

#include "core/Constants.h"
#include "core/Equality.h"
#include "core/Error.h"
#include "profiles/ChordFrame.h"
#include "profiles/CircularSegment.h"

namespace tgp {

namespace {

constexpr double kTol = LoopDLine::kOnLineTolerance;

// Bulge magnitudes between which radius, centre and length follow the published construction
// (phi = (pi - Alfa) / 2 with the shortened pi, r = L / (2 cos phi)). Outside them 2 cos(phi) is so
// small that the shortened pi would put more than 1E-12 relative error into the radius.
constexpr double kShortenedPiBulges[2] = {1e-3, 1e3};

void Append(std::vector<Point3>* points, const Point3& p) {
    if (points) points->push_back(p);
}

Point3 UnitDirection(const Point3& from, const Point3& to) {
    return Scaled(Minus(to, from), 1 / Distance2(from, to));
}

// Candidate common points, each kept when it passes the test and is not a repeat (within the
// tolerance) of one already kept. Without an output list the first kept one ends the search.
class CommonPoints {
  public:
    explicit CommonPoints(std::vector<Point3>* out) : out_(out) {}

    template <class Test>
    bool Offer(const Point3& candidate, Test&& onBoth) {
        for (int i = 0; i < count_; ++i) {
            if (Distance2(kept_[i], candidate) <= kTol) return false;
        }
        if (!onBoth(candidate)) return false;
        if (count_ < kMax) kept_[count_++] = candidate;
        Append(out_, candidate);
        return out_ == nullptr;
    }
    bool Any() const { return count_ > 0; }

  private:
    static constexpr int kMax = 8;
    std::vector<Point3>* out_;
    Point3 kept_[kMax];
    int count_ = 0;
};

bool LineLine(const LoopDLine& p, const LoopDLine& q, std::vector<Point3>* points) {
    const Point3& A = p.StartPoint();
    const Point3 d1 = p.VectorAB(), d2 = q.VectorAB();
    const double l1 = Length2(d1), l2 = Length2(d2);
    if (l1 == 0 || l2 == 0) {
        const LoopDLine& point = l1 == 0 ? p : q;
        const LoopDLine& other = l1 == 0 ? q : p;
        if (!other.PointIsOnDline(point.StartPoint())) return false;
        Append(points, point.StartPoint());
        return true;
    }
    const Point3 w = Minus(q.StartPoint(), A);
    const double denom = Cross2(d1, d2);
    if (std::fabs(denom) <= 1e-12 * l1 * l2) {
        if (std::fabs(Cross2(w, d1)) / l1 > kTol) return false;
        const double t0 = Dot2(w, d1) / (l1 * l1);
        const double t1 = Dot2(Minus(q.EndPoint(), A), d1) / (l1 * l1);
        const double lo = std::max(0.0, std::min(t0, t1)), hi = std::min(1.0, std::max(t0, t1));
        const double tTol = kTol / l1;
        if (lo > hi + tTol) return false;
        Append(points, Plus(A, Scaled(d1, lo)));
        if (hi - lo > tTol) Append(points, Plus(A, Scaled(d1, hi)));
        return true;
    }
    const double t = Cross2(w, d2) / denom, s = Cross2(w, d1) / denom;
    if (t < -kTol / l1 || t > 1 + kTol / l1 || s < -kTol / l2 || s > 1 + kTol / l2) return false;
    Append(points, Plus(A, Scaled(d1, std::clamp(t, 0.0, 1.0))));
    return true;
}

}  // namespace

SegmentIntegrals& SegmentIntegrals::operator+=(const SegmentIntegrals& other) {
    Area += other.Area;
    StaticMomentX += other.StaticMomentX;
    StaticMomentY += other.StaticMomentY;
    MomentOfInertiaX += other.MomentOfInertiaX;
    MomentOfInertiaY += other.MomentOfInertiaY;
    ProductOfInertiaXY += other.ProductOfInertiaXY;
    return *this;
}

void LoopDLine::Init(const Point3& StartPoint, const Point3& EndPoint, double Bulge) {
    start_ = StartPoint;
    end_ = EndPoint;
    bulge_ = Bulge;
    inertiaDone_ = false;
    const double dx = end_[0] - start_[0], dy = end_[1] - start_[1];
    const double chord = std::sqrt(dx * dx + dy * dy);
    if (Bulge == 0) {
        radius_ = 0;
        center_ = {};
        alfa_ = startAngle_ = endAngle_ = 0;
        length_ = CheckFinite(chord);
        return;
    }
    alfa_ = 4 * std::atan(Bulge);
    const double magnitude = std::fabs(Bulge);
    if (chord == 0 || (magnitude >= kShortenedPiBulges[0] && magnitude <= kShortenedPiBulges[1])) {
        const double phi = (kPi - alfa_) / 2;
        const double r = chord / (std::cos(phi) + std::cos(phi));  // signed: negative for a negative bulge
        const double theta = phi + PolarAngle(dx, dy);
        center_ = {start_[0] + r * std::cos(theta), start_[1] + r * std::sin(theta), 0};
        length_ = std::fabs(std::fabs(r) * alfa_);
        radius_ = std::fabs(r);
    } else {
        // Nearly straight (or nearly full-circle) arcs: cos(phi) is then a small difference in which
        // the shortened pi is a large error, so radius, centre and length come from the half angle.
        const double halfAngle = std::fabs(alfa_) / 2;
        const double halfChord = chord / 2;
        const double towardsCentre = halfChord / std::tan(alfa_ / 2);  // signed: left of A-to-B when > 0
        center_ = {start_[0] + dx / 2 - dy / chord * towardsCentre,
                   start_[1] + dy / 2 + dx / chord * towardsCentre, 0};
        radius_ = halfChord / std::sin(halfAngle);
        length_ = chord * ArcToChordRatio(halfAngle);
    }
    // A bulge so small that the radius overflows (below about 1E-300 of the chord) is a floating
    // fault, as the published construction's division is; so is a coordinate that is not finite.
    if (!std::isfinite(radius_) || !std::isfinite(center_[0]) || !std::isfinite(center_[1]) ||
        !std::isfinite(length_)) {
        throw Error::Overflow();
    }
    startAngle_ = PolarAngle(start_[0] - center_[0], start_[1] - center_[1]);
    endAngle_ = startAngle_ + alfa_;
    // One wrap only: an angle pair that would need two turns keeps the second.
    if (endAngle_ > kTwoPi) {
        startAngle_ -= kTwoPi;
        endAngle_ -= kTwoPi;
    } else if (endAngle_ < -kTwoPi) {
        startAngle_ += kTwoPi;
        endAngle_ += kTwoPi;
    }
}

std::optional<Point3> LoopDLine::Center() const {
    if (!IsArc()) return std::nullopt;
    return center_;
}

double LoopDLine::ArcArea() const {
    const double r2 = radius_ * radius_;
    return alfa_ * r2 - 0.5 * r2 * std::sin(alfa_);
}

Point3 LoopDLine::MidPoint() const {
    if (!IsArc()) return Scaled(Plus(start_, end_), 0.5);
    const double m = (startAngle_ + endAngle_) / 2;
    return {center_[0] + std::cos(m) * radius_, center_[1] + std::sin(m) * radius_, center_[2]};
}

SegmentIntegrals LoopDLine::Integrals() const {
    inertiaDone_ = true;
    return IntegralsAbout({0, 0, 0});
}

SegmentIntegrals LoopDLine::IntegralsAbout(const Point3& Origin) const {
    return IntegralsOf(Minus(start_, Origin), Minus(end_, Origin), IsArc() ? alfa_ : 0.0);
}

SegmentIntegrals LoopDLine::IntegralsOf(const Point3& a, const Point3& b, double Alfa) {
    SegmentIntegrals s = LineIntegrals(a, b);
    if (Alfa != 0) s += SegmentRegionIntegrals(a, b, Alfa);
    return s;
}

// The integrals along the chord, from its end points: the antiderivatives in x of the line
// y = k x + b taken between the ends, multiplied out so that no slope appears. A steep segment
// therefore loses no digits, and a vertical one (equal x) gives 0 for all six.
SegmentIntegrals LoopDLine::LineIntegrals(const Point3& a, const Point3& b) {
    const double xa = a[0], ya = a[1], xb = b[0], yb = b[1];
    if (xa == xb) return {};
    const double dx = xb - xa;
    SegmentIntegrals s;
    s.Area = dx * (ya + yb) / 2;
    s.StaticMomentX = dx * (ya * ya + ya * yb + yb * yb) / 6;
    s.StaticMomentY = dx * (2 * xa * ya + xa * yb + xb * ya + 2 * xb * yb) / 6;
    s.MomentOfInertiaX = dx * (ya + yb) * (ya * ya + yb * yb) / 12;
    s.MomentOfInertiaY =
        dx * (3 * xa * xa * ya + 3 * xb * xb * yb + xa * xa * yb + 2 * xa * xb * (ya + yb) + xb * xb * ya) /
        12;
    s.ProductOfInertiaXY =
        dx * (3 * xa * ya * ya + 3 * xb * yb * yb + 2 * (xa + xb) * ya * yb + xb * ya * ya + xa * yb * yb) /
        24;
    return s;
}

// What the arc adds to the integrals of its chord: going A to B along the arc and back along the
// chord encloses the circular segment, counter-clockwise for a positive bulge, and by Green's theorem
// the closed integral of P dx is minus the area integral of dP/dy (plus for clockwise). The segment's
// moments are known in the chord's frame and carried over to the global axes exactly.
SegmentIntegrals LoopDLine::SegmentRegionIntegrals(const Point3& a, const Point3& b, double alfa) {
    const double dx = b[0] - a[0], dy = b[1] - a[1];
    const double chord = std::sqrt(dx * dx + dy * dy);
    if (chord == 0) return {};
    const CircularSegment region = CircularSegment::Of(chord / 2, std::fabs(alfa) / 2);
    const double tx = dx / chord, ty = dy / chord;
    const double sign = alfa > 0 ? 1.0 : -1.0;
    const double wx = sign * ty, wy = -sign * tx;  // towards the arc: right of A-to-B for a positive bulge
    const double mx = (a[0] + b[0]) / 2, my = (a[1] + b[1]) / 2;
    const double A = region.area, Q = region.qv, Iu = region.iuu, Iv = region.ivv;
    const double xDA = mx * A + wx * Q, yDA = my * A + wy * Q;
    const double xxDA = mx * mx * A + 2 * mx * wx * Q + tx * tx * Iu + wx * wx * Iv;
    const double yyDA = my * my * A + 2 * my * wy * Q + ty * ty * Iu + wy * wy * Iv;
    const double xyDA = mx * my * A + (mx * wy + my * wx) * Q + tx * ty * Iu + wx * wy * Iv;
    const double k = -sign;
    return {k * A, k * yDA, k * xDA, k * yyDA, k * xxDA, k * xyDA};
}

double LoopDLine::AngleTo(const Point3& Point) const {
    if (SamePlanePoint(Point, start_) || SamePlanePoint(Point, end_)) return IsArc() ? alfa_ / 2 : 0.0;
    const double a = TurnAngle(Minus(start_, Point), Minus(end_, Point));
    if (IsEqual(std::fabs(a), kPi)) return bulge_ >= 0 ? kPi : -kPi;
    if (PointIsInDlineArea(Point)) return a <= 0 ? a + kTwoPi : a - kTwoPi;
    return a;
}

double LoopDLine::SubtendedAngle(const Point3& Point) const {
    const double a = TurnAngle(Minus(start_, Point), Minus(end_, Point));
    if (!PointIsInDlineArea(Point)) return a;
    return a <= 0 ? a + kTwoPi : a - kTwoPi;
}

void LoopDLine::Move(const Point3& Displacement) {
    start_ = Plus(start_, Displacement);
    end_ = Plus(end_, Displacement);
    if (IsArc()) center_ = Plus(center_, Displacement);
    inertiaDone_ = false;
}

ChordFrame LoopDLine::Frame() const {
    return ChordFrame::Of(start_, end_, alfa_);
}

bool LoopDLine::OnOnePoint() const {
    return start_[0] == end_[0] && start_[1] == end_[1];
}

double LoopDLine::DistanceTo(const Point3& Point) const {
    double distance = 0, tangent = 0;
    Point3 nearest{};
    PointAnalysis(Point, distance, nearest, tangent);
    return distance;
}

void LoopDLine::PointAnalysis(const Point3& Point, double& Distance, Point3& HPoint, double& TAngle) const {
    if (!IsArc()) {
        const Point3 d = VectorAB();
        HPoint = Plus(start_, Scaled(d, ChordParameter(Point)));
        Distance = Distance2(Point, HPoint);
        TAngle = PolarAngle(d);
        return;
    }
    const double turn = alfa_ > 0 ? 1.0 : -1.0;
    if (OnOnePoint()) {  // an arc of radius 0: its one point
        HPoint = start_;
        Distance = Distance2(Point, start_);
        TAngle = PolarAngle(-std::sin(startAngle_) * turn, std::cos(startAngle_) * turn);
        return;
    }
    const ChordFrame f = Frame();
    ChordFrame::Projection q{};
    double nu = -f.s, nv = f.c;  // the outward normal at the start point
    if (f.Project(f.U(Point), f.V(Point), q) && q.v >= 0) {
        HPoint = f.World(q.u, q.v);
        nu = q.nu;
        nv = q.nv;
    } else if (Distance2(Point, end_) < Distance2(Point, start_)) {
        HPoint = end_;
        nu = f.s;
    } else {
        HPoint = start_;
    }
    Distance = Distance2(Point, HPoint);
    const Point3 n = f.WorldDirection(nu, nv);
    TAngle = PolarAngle(-n[1] * turn, n[0] * turn);
}

bool LoopDLine::PointIsOnDline(const Point3& Point, double Tolerance) const {
    return DistanceTo(Point) <= Tolerance;
}

bool LoopDLine::PointIsInOAB(const Point3& Point, const Point3& O) const {
    const double s1 = Cross2(Minus(start_, O), Minus(Point, O));
    const double s2 = Cross2(Minus(end_, start_), Minus(Point, start_));
    const double s3 = Cross2(Minus(O, end_), Minus(Point, end_));
    if (Cross2(Minus(start_, O), Minus(end_, O)) == 0) {
        LoopDLine edge;
        for (const auto& [p, q] : {std::pair{O, start_}, std::pair{start_, end_}, std::pair{end_, O}}) {
            edge.Init(p, q, 0);
            if (edge.PointIsOnDline(Point)) return true;
        }
        return false;
    }
    return (s1 >= 0 && s2 >= 0 && s3 >= 0) || (s1 <= 0 && s2 <= 0 && s3 <= 0);
}

bool LoopDLine::PointIsInArcArea(const Point3& Point) const {
    if (!IsArc() || OnOnePoint()) return false;
    const ChordFrame f = Frame();
    ChordFrame::Projection q{};
    return f.Project(f.U(Point), f.V(Point), q) && q.gap < 0 && q.v >= 0;
}

bool LoopDLine::PointIsInDlineArea(const Point3& Point) const {
    if (!IsArc() || OnOnePoint()) return false;
    const ChordFrame f = Frame();
    const double u = f.U(Point), v = f.V(Point);
    return v > 0 && f.F(u, v) < 0;
}

bool LoopDLine::IntersectWithDline(const LoopDLine& Other, std::vector<Point3>* Points) const {
    if (!IsArc() && !Other.IsArc()) return LineLine(*this, Other, Points);
    return IsArc() ? ArcIntersections(Other, Points) : Other.ArcIntersections(*this, Points);
}

// Candidates: where the other segment's line or circle meets this arc's circle (the radical line of
// two circles, cut with this one), where they come closest (a tangent), and the four end points
// (touching ends, overlaps along one circle or line). A candidate counts when it lies within the
// tolerance of both segments, which settles every range, angle and tangency question at once.
bool LoopDLine::ArcIntersections(const LoopDLine& Other, std::vector<Point3>* Points) const {
    CommonPoints common(Points);
    auto onBoth = [&](const Point3& x) { return DistanceTo(x) <= kTol && Other.DistanceTo(x) <= kTol; };
    auto offerLine = [&](const ChordFrame& f, const Point3& X0, const Point3& e) {
        double tau[3];
        const int n = f.LinePositions(X0, e, tau);
        for (int i = 0; i < n; ++i) {
            if (common.Offer(Plus(X0, Scaled(e, tau[i])), onBoth)) return true;
        }
        return false;
    };
    if (!OnOnePoint() && !(Other.IsArc() && Other.OnOnePoint())) {
        const ChordFrame f = Frame();
        if (AlongCircleOf(f, Other)) {
            // One circle (or an arc straighter than the tolerance along a line): the common part
            // runs between end points, which are offered below.
        } else if (!Other.IsArc()) {
            if (Other.Length() > 0 && offerLine(f, Other.start_, UnitDirection(Other.start_, Other.end_)))
                return true;
        } else {
            Point3 X0{}, e{};
            if (RadicalLine(f, Other.Frame(), X0, e) && offerLine(f, X0, e)) return true;
        }
    }
    for (const Point3* end : {&start_, &end_, &Other.start_, &Other.end_}) {
        if (common.Offer(*end, onBoth)) return true;
    }
    return common.Any();
}

// Whether Other's ends and middle all lie on the circle of this arc, within the tolerance.
bool LoopDLine::AlongCircleOf(const ChordFrame& f, const LoopDLine& Other) {
    for (const Point3& p : {Other.start_, Other.Middle(), Other.end_}) {
        ChordFrame::Projection q{};
        if (!f.Project(f.U(p), f.V(p), q) || !(std::fabs(q.gap) <= kTol)) return false;
    }
    return true;
}

Point3 LoopDLine::Middle() const {
    if (!IsArc() || OnOnePoint()) return Scaled(Plus(start_, end_), 0.5);
    const ChordFrame f = Frame();
    double u = 0, v = 0;
    f.PointAt(0, u, v);
    return f.World(u, v);
}

// The line through the common points of two circles, each written as k|p|² + 2 L·p + K about the
// first arc's chord midpoint: k2 (first) − k1 (second) leaves a line. Concentric circles have none.
bool LoopDLine::RadicalLine(const ChordFrame& f, const ChordFrame& g, Point3& X0, Point3& e) {
    const double Dx = g.m[0] - f.m[0], Dy = g.m[1] - f.m[1];
    const double kf = f.kappa, kg = g.kappa;
    const double Kf = -kf * f.a * f.a;
    const double Kg = kg * ((Dx * Dx + Dy * Dy) - g.a * g.a) - 2 * g.c * (Dx * g.wx + Dy * g.wy);
    const double Nx = kg * f.c * f.wx - kf * (g.c * g.wx - kg * Dx);
    const double Ny = kg * f.c * f.wy - kf * (g.c * g.wy - kg * Dy);
    const double k = (kg * Kf - kf * Kg) / 2;
    const double N2 = Nx * Nx + Ny * Ny;
    if (!(N2 > 0) || !std::isfinite(N2)) return false;
    X0 = {f.m[0] - k / N2 * Nx, f.m[1] - k / N2 * Ny, 0};
    const double N = std::sqrt(N2);
    e = {-Ny / N, Nx / N, 0};
    return std::isfinite(X0[0]) && std::isfinite(X0[1]);
}

bool LoopDLine::IntersectWithInfinitiveLine(const Point3& P1, const Point3& P2,
                                            std::vector<Point3>* Points) const {
    const Point3 e = UnitDirection(P1, P2);
    if (!IsArc()) {
        const double sa = Cross2(e, Minus(start_, P1)), sb = Cross2(e, Minus(end_, P1));
        if (std::fabs(sa) <= kTol && std::fabs(sb) <= kTol) {
            Append(Points, start_);
            Append(Points, end_);
            return true;
        }
        if ((sa > kTol && sb > kTol) || (sa < -kTol && sb < -kTol)) return false;
        const double t = std::fabs(sa) <= kTol ? 0.0 : std::fabs(sb) <= kTol ? 1.0 : sa / (sa - sb);
        Append(Points, Plus(start_, Scaled(VectorAB(), t)));
        return true;
    }
    CommonPoints common(Points);
    auto onBoth = [&](const Point3& x) {
        return std::fabs(Cross2(e, Minus(x, P1))) <= kTol && DistanceTo(x) <= kTol;
    };
    if (OnOnePoint()) {
        common.Offer(start_, onBoth);
        return common.Any();
    }
    double tau[3];
    const int n = Frame().LinePositions(P1, e, tau);
    for (int i = 0; i < n; ++i) {
        if (common.Offer(Plus(P1, Scaled(e, tau[i])), onBoth)) return true;
    }
    return common.Any();
}

void LoopDLine::GetTopBottomPoints(const Point3& uVector, Point3& TopPoint, Point3& BottomPoint) const {
    Point3 candidates[4] = {start_, end_};
    int count = 2;
    if (IsArc() && !OnOnePoint()) {
        const ChordFrame f = Frame();
        const Point3 e = Scaled(uVector, 1 / Length2(uVector));
        for (const Point3& direction : {e, Scaled(e, -1)}) {
            if (f.ExtremeTowards(direction, candidates[count])) ++count;
        }
    }
    TopPoint = BottomPoint = candidates[0];
    for (int i = 1; i < count; ++i) {
        const double level = Dot2(candidates[i], uVector);
        if (level > Dot2(TopPoint, uVector)) TopPoint = candidates[i];
        if (level < Dot2(BottomPoint, uVector)) BottomPoint = candidates[i];
    }
}

SegmentBox LoopDLine::BoundingBox() const {
    SegmentBox box{std::min(start_[0], end_[0]), std::min(start_[1], end_[1]), std::max(start_[0], end_[0]),
                   std::max(start_[1], end_[1])};
    if (!IsArc() || OnOnePoint()) return box;
    const ChordFrame f = Frame();
    Point3 extreme{};
    if (f.ExtremeTowards({1, 0, 0}, extreme)) box.xmax = std::max(box.xmax, extreme[0]);
    if (f.ExtremeTowards({0, 1, 0}, extreme)) box.ymax = std::max(box.ymax, extreme[1]);
    if (f.ExtremeTowards({-1, 0, 0}, extreme)) box.xmin = std::min(box.xmin, extreme[0]);
    if (f.ExtremeTowards({0, -1, 0}, extreme)) box.ymin = std::min(box.ymin, extreme[1]);
    return box;
}

void LoopDLine::Inverse() {
    Init(Point3(end_), Point3(start_), -bulge_);
}

void LoopDLine::Transformation(const Point3& Displacement, double Rotation, double XScaleFactor,
                               double YScaleFactor, const Point3& BasePoint) {
    const double c = std::cos(Rotation), s = std::sin(Rotation);
    auto transform = [&](const Point3& p) {
        const double x = (p[0] - BasePoint[0]) * XScaleFactor, y = (p[1] - BasePoint[1]) * YScaleFactor;
        return Point3{BasePoint[0] + c * x - s * y + Displacement[0],
                      BasePoint[1] + s * x + c * y + Displacement[1], p[2]};
    };
    const bool mirrored = (XScaleFactor < 0) != (YScaleFactor < 0);
    Init(transform(start_), transform(end_), mirrored ? -bulge_ : bulge_);
}

double LoopDLine::ChordParameter(const Point3& Point) const {
    const Point3 d = VectorAB();
    const double l2 = Dot2(d, d);
    return l2 == 0 ? 0.0 : std::clamp(Dot2(Minus(Point, start_), d) / l2, 0.0, 1.0);
}

double LoopDLine::ParameterOf(const Point3& pointOnSegment) const {
    if (!IsArc()) return ChordParameter(pointOnSegment);
    if (OnOnePoint()) return 0;
    const ChordFrame f = Frame();
    const double phi = f.AngleOf(f.U(pointOnSegment), f.V(pointOnSegment));
    return std::clamp((phi + f.theta) / (2 * f.theta), 0.0, 1.0);
}

Point3 LoopDLine::PointAt(double t) const {
    if (t == 0) return start_;
    if (t == 1) return end_;
    if (!IsArc() || OnOnePoint()) return Plus(start_, Scaled(VectorAB(), t));
    const ChordFrame f = Frame();
    double u = 0, v = 0;
    f.PointAt(f.theta * (2 * t - 1), u, v);
    return f.World(u, v);
}

LoopDLine LoopDLine::Piece(double t0, double t1) const {
    LoopDLine piece;
    piece.Init(PointAt(t0), PointAt(t1), IsArc() ? std::tan(alfa_ * (t1 - t0) / 4) : 0.0);
    return piece;
}

std::pair<LoopDLine, LoopDLine> LoopDLine::Divide1(const Point3& Point) const {
    double distance = 0, tangent = 0;
    Point3 nearest{};
    PointAnalysis(Point, distance, nearest, tangent);
    const double t = ParameterOf(nearest);
    return {Piece(0, t), Piece(t, 1)};
}

std::vector<LoopDLine> LoopDLine::Divide2(int Parts) const {
    if (Parts < 1) throw Error::InvalidProcedureCall();
    std::vector<LoopDLine> pieces;
    pieces.reserve(static_cast<std::size_t>(Parts));
    for (int i = 0; i < Parts; ++i)
        pieces.push_back(Piece(static_cast<double>(i) / Parts, static_cast<double>(i + 1) / Parts));
    return pieces;
}

}  // namespace tgp
