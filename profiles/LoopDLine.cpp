#include "profiles/LoopDLine.h"

#include <algorithm>
#include <cmath>

#include "core/Constants.h"
#include "core/Equality.h"
#include "core/Error.h"
#include "profiles/CircularSegment.h"

namespace tgp {

namespace {

constexpr double kTol = LoopDLine::kOnLineTolerance;

// Bulge magnitudes between which radius, centre and length follow the published construction
// (phi = (pi - Alfa) / 2 with the shortened pi, r = L / (2 cos phi)). Outside them 2 cos(phi) is so
// small that the shortened pi would put more than 1E-12 relative error into the radius.
constexpr double kShortenedPiBulges[2] = {1e-3, 1e3};

// The angle brought into [0, 2 pi). Segment angles stay within a few turns, so stepping by whole
// turns is cheaper than a division; anything farther out takes the remainder.
double NormalisedTurn(double angle) {
    if (std::fabs(angle) > 8 * kTwoPi) angle = std::fmod(angle, kTwoPi);
    while (angle < 0) angle += kTwoPi;
    while (angle >= kTwoPi) angle -= kTwoPi;
    return angle;
}

void Append(std::vector<PlanePoint>* points, const PlanePoint& p) {
    if (points) points->push_back(p);
}

// Positions along the line A + τ·e (e a unit vector) where it meets the circle (center, radius);
// a line within tolerance of touching gives the one touching position.
int LineCircle(const PlanePoint& A, const PlanePoint& e, const PlanePoint& center, double radius, double tau[2]) {
    const double foot = Dot2(Minus(center, A), e);
    const PlanePoint F = Plus(A, Scaled(e, foot));
    const double dist = Distance2(F, center);
    if (dist > radius + kTol) return 0;
    if (radius - dist <= kTol) {
        tau[0] = foot;
        return 1;
    }
    const double h = std::sqrt(radius * radius - dist * dist);
    tau[0] = foot - h;
    tau[1] = foot + h;
    return 2;
}

bool LineLine(const LoopDLine& p, const LoopDLine& q, std::vector<PlanePoint>* points) {
    const PlanePoint& A = p.StartPoint();
    const PlanePoint d1 = p.VectorAB(), d2 = q.VectorAB();
    const double l1 = Length2(d1), l2 = Length2(d2);
    if (l1 == 0 || l2 == 0) {
        const LoopDLine& point = l1 == 0 ? p : q;
        const LoopDLine& other = l1 == 0 ? q : p;
        if (!other.PointIsOnDline(point.StartPoint())) return false;
        Append(points, point.StartPoint());
        return true;
    }
    const PlanePoint w = Minus(q.StartPoint(), A);
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

void LoopDLine::Init(const PlanePoint& StartPoint, const PlanePoint& EndPoint, double Bulge) {
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
        length_ = chord;
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
        center_ = {start_[0] + dx / 2 - dy / chord * towardsCentre, start_[1] + dy / 2 + dx / chord * towardsCentre, 0};
        radius_ = halfChord / std::sin(halfAngle);
        length_ = chord * ArcToChordRatio(halfAngle);
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

std::optional<PlanePoint> LoopDLine::Center() const {
    if (!IsArc()) return std::nullopt;
    return center_;
}

double LoopDLine::ArcArea() const {
    const double r2 = radius_ * radius_;
    return alfa_ * r2 - 0.5 * r2 * std::sin(alfa_);
}

PlanePoint LoopDLine::MidPoint() const {
    if (!IsArc()) return Scaled(Plus(start_, end_), 0.5);
    const double m = (startAngle_ + endAngle_) / 2;
    return {center_[0] + std::cos(m) * radius_, center_[1] + std::sin(m) * radius_, center_[2]};
}

SegmentIntegrals LoopDLine::Integrals() const {
    inertiaDone_ = true;
    return IntegralsAbout({0, 0, 0});
}

SegmentIntegrals LoopDLine::IntegralsAbout(const PlanePoint& Origin) const {
    SegmentIntegrals s = LineIntegrals(Minus(start_, Origin), Minus(end_, Origin));
    if (IsArc()) s += SegmentRegionIntegrals(Origin);
    return s;
}

// The integrals along the chord, from its end points: the antiderivatives in x of the line
// y = k x + b taken between the ends, multiplied out so that no slope appears. A steep segment
// therefore loses no digits, and a vertical one (equal x) gives 0 for all six.
SegmentIntegrals LoopDLine::LineIntegrals(const PlanePoint& a, const PlanePoint& b) const {
    const double xa = a[0], ya = a[1], xb = b[0], yb = b[1];
    if (xa == xb) return {};
    const double dx = xb - xa;
    SegmentIntegrals s;
    s.Area = dx * (ya + yb) / 2;
    s.StaticMomentX = dx * (ya * ya + ya * yb + yb * yb) / 6;
    s.StaticMomentY = dx * (2 * xa * ya + xa * yb + xb * ya + 2 * xb * yb) / 6;
    s.MomentOfInertiaX = dx * (ya + yb) * (ya * ya + yb * yb) / 12;
    s.MomentOfInertiaY =
        dx * (3 * xa * xa * ya + 3 * xb * xb * yb + xa * xa * yb + 2 * xa * xb * (ya + yb) + xb * xb * ya) / 12;
    s.ProductOfInertiaXY =
        dx * (3 * xa * ya * ya + 3 * xb * yb * yb + 2 * (xa + xb) * ya * yb + xb * ya * ya + xa * yb * yb) / 24;
    return s;
}

// What the arc adds to the integrals of its chord: going A to B along the arc and back along the
// chord encloses the circular segment, counter-clockwise for a positive bulge, and by Green's theorem
// the closed integral of P dx is minus the area integral of dP/dy (plus for clockwise). The segment's
// moments are known in the chord's frame and carried over to the global axes exactly.
SegmentIntegrals LoopDLine::SegmentRegionIntegrals(const PlanePoint& Origin) const {
    const double dx = end_[0] - start_[0], dy = end_[1] - start_[1];
    const double chord = std::sqrt(dx * dx + dy * dy);
    if (chord == 0) return {};
    const CircularSegment region = CircularSegment::Of(chord / 2, std::fabs(alfa_) / 2);
    const double tx = dx / chord, ty = dy / chord;
    const double sign = alfa_ > 0 ? 1.0 : -1.0;
    const double wx = sign * ty, wy = -sign * tx;  // towards the arc: right of A-to-B for a positive bulge
    // Relative to the origin first: the midpoint of two far-off points would lose the last bits.
    const double mx = ((start_[0] - Origin[0]) + (end_[0] - Origin[0])) / 2;
    const double my = ((start_[1] - Origin[1]) + (end_[1] - Origin[1])) / 2;
    const double A = region.area, Q = region.qv, Iu = region.iuu, Iv = region.ivv;
    const double xDA = mx * A + wx * Q, yDA = my * A + wy * Q;
    const double xxDA = mx * mx * A + 2 * mx * wx * Q + tx * tx * Iu + wx * wx * Iv;
    const double yyDA = my * my * A + 2 * my * wy * Q + ty * ty * Iu + wy * wy * Iv;
    const double xyDA = mx * my * A + (mx * wy + my * wx) * Q + tx * ty * Iu + wx * wy * Iv;
    const double k = -sign;
    return {k * A, k * yDA, k * xDA, k * yyDA, k * xxDA, k * xyDA};
}

double LoopDLine::AngleTo(const PlanePoint& Point) const {
    if (SamePlanePoint(Point, start_) || SamePlanePoint(Point, end_)) return IsArc() ? alfa_ / 2 : 0.0;
    const double a = TurnAngle(Minus(start_, Point), Minus(end_, Point));
    if (IsEqual(std::fabs(a), kPi)) return bulge_ >= 0 ? kPi : -kPi;
    if (PointIsInDlineArea(Point)) return a <= 0 ? a + kTwoPi : a - kTwoPi;
    return a;
}

void LoopDLine::Move(const PlanePoint& Displacement) {
    start_ = Plus(start_, Displacement);
    end_ = Plus(end_, Displacement);
    if (IsArc()) center_ = Plus(center_, Displacement);
    inertiaDone_ = false;
}

bool LoopDLine::AngleIsOnArc(double angle, double angleTolerance) const {
    const double rel = NormalisedTurn(angle - std::min(startAngle_, endAngle_));
    return rel <= std::fabs(alfa_) + angleTolerance || rel >= kTwoPi - angleTolerance;
}

PlanePoint LoopDLine::ArcPoint(double angle) const {
    return {center_[0] + radius_ * std::cos(angle), center_[1] + radius_ * std::sin(angle), 0};
}

void LoopDLine::PointAnalysis(const PlanePoint& Point, double& Distance, PlanePoint& HPoint, double& TAngle) const {
    if (!IsArc()) {
        const PlanePoint d = VectorAB();
        HPoint = Plus(start_, Scaled(d, ChordParameter(Point)));
        Distance = Distance2(Point, HPoint);
        TAngle = PolarAngle(d);
        return;
    }
    const PlanePoint v = Minus(Point, center_);
    double phi = startAngle_;
    HPoint = start_;
    if (Length2(v) != 0) {
        const double polar = PolarAngle(v);
        if (AngleIsOnArc(polar, 0)) {
            phi = polar;
            HPoint = ArcPoint(polar);
        } else if (Distance2(Point, end_) < Distance2(Point, start_)) {
            phi = endAngle_;
            HPoint = end_;
        }
    }
    Distance = Distance2(Point, HPoint);
    const double turn = alfa_ > 0 ? 1.0 : -1.0;
    TAngle = PolarAngle(-std::sin(phi) * turn, std::cos(phi) * turn);
}

bool LoopDLine::PointIsOnDline(const PlanePoint& Point, double Tolerance) const {
    double distance = 0, tangent = 0;
    PlanePoint nearest{};
    PointAnalysis(Point, distance, nearest, tangent);
    return distance <= Tolerance;
}

bool LoopDLine::PointIsInOAB(const PlanePoint& Point, const PlanePoint& O) const {
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

bool LoopDLine::PointIsInArcArea(const PlanePoint& Point) const {
    if (!IsArc()) return false;
    const PlanePoint v = Minus(Point, center_);
    return Length2(v) < radius_ && AngleIsOnArc(PolarAngle(v), 0);
}

bool LoopDLine::PointIsInDlineArea(const PlanePoint& Point) const {
    if (!IsArc()) return false;
    return Distance2(Point, center_) < radius_ && Cross2(VectorAB(), Minus(Point, start_)) * bulge_ < 0;
}

bool LoopDLine::IntersectWithDline(const LoopDLine& Other, std::vector<PlanePoint>* Points) const {
    if (!IsArc() && !Other.IsArc()) return LineLine(*this, Other, Points);
    if (IsArc() && Other.IsArc()) return ArcWithArc(Other, Points);
    return IsArc() ? ArcWithLine(Other, Points) : Other.ArcWithLine(*this, Points);
}

bool LoopDLine::ArcWithLine(const LoopDLine& line, std::vector<PlanePoint>* Points) const {
    const double l = line.Length();
    if (l == 0) {
        if (!PointIsOnDline(line.StartPoint())) return false;
        Append(Points, line.StartPoint());
        return true;
    }
    return ArcMeetsLine(line.StartPoint(), Scaled(line.VectorAB(), 1 / l), 0, l, Points);
}

bool LoopDLine::ArcMeetsLine(const PlanePoint& A, const PlanePoint& e, double first, double last,
                             std::vector<PlanePoint>* Points) const {
    double tau[2];
    const int n = LineCircle(A, e, center_, radius_, tau);
    bool found = false;
    for (int i = 0; i < n; ++i) {
        if (tau[i] < first - kTol || tau[i] > last + kTol) continue;
        const PlanePoint x = Plus(A, Scaled(e, std::clamp(tau[i], first, last)));
        if (!AngleIsOnArc(PolarAngle(Minus(x, center_)), kTol / radius_)) continue;
        Append(Points, x);
        found = true;
    }
    return found;
}

bool LoopDLine::ArcWithArc(const LoopDLine& Other, std::vector<PlanePoint>* Points) const {
    const PlanePoint dc = Minus(Other.center_, center_);
    const double d = Length2(dc), r1 = radius_, r2 = Other.radius_;
    if (d <= kTol && std::fabs(r1 - r2) <= kTol) return SameCircleOverlap(Other, Points);
    if (d == 0 || d > r1 + r2 + kTol || d < std::fabs(r1 - r2) - kTol) return false;
    const double a = (r1 * r1 - r2 * r2 + d * d) / (2 * d);
    const double h2 = r1 * r1 - a * a;
    const PlanePoint base = Plus(center_, Scaled(dc, a / d));
    const PlanePoint normal = {-dc[1] / d, dc[0] / d, 0};
    const bool touching = h2 <= 2 * std::max(r1, r2) * kTol;
    const double h = touching ? 0.0 : std::sqrt(h2);
    bool found = false;
    for (double side : {-1.0, 1.0}) {
        const PlanePoint x = Plus(base, Scaled(normal, side * h));
        if (AngleIsOnArc(PolarAngle(Minus(x, center_)), kTol / r1) &&
            Other.AngleIsOnArc(PolarAngle(Minus(x, Other.center_)), kTol / r2)) {
            Append(Points, x);
            found = true;
        }
        if (touching) break;
    }
    return found;
}

// Two arcs of one circle share the ends of their common part: every end of one lying on the other.
bool LoopDLine::SameCircleOverlap(const LoopDLine& Other, std::vector<PlanePoint>* Points) const {
    bool found = false;
    for (const auto& [arc, point] : {std::pair{this, &Other.start_}, std::pair{this, &Other.end_},
                                     std::pair{&Other, &start_}, std::pair{&Other, &end_}}) {
        if (!arc->AngleIsOnArc(PolarAngle(Minus(*point, arc->center_)), kTol / arc->radius_)) continue;
        Append(Points, *point);
        found = true;
    }
    return found;
}

bool LoopDLine::IntersectWithInfinitiveLine(const PlanePoint& P1, const PlanePoint& P2,
                                            std::vector<PlanePoint>* Points) const {
    const PlanePoint e = Scaled(Minus(P2, P1), 1 / Distance2(P1, P2));
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
    return ArcMeetsLine(P1, e, -HUGE_VAL, HUGE_VAL, Points);
}

void LoopDLine::GetTopBottomPoints(const PlanePoint& uVector, PlanePoint& TopPoint, PlanePoint& BottomPoint) const {
    PlanePoint candidates[4] = {start_, end_};
    int count = 2;
    if (IsArc()) {
        const double toward = PolarAngle(uVector);
        for (double angle : {toward, toward + kPi}) {
            if (AngleIsOnArc(angle, 0)) candidates[count++] = ArcPoint(angle);
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
    if (!IsArc()) return box;
    if (AngleIsOnArc(0, 0)) box.xmax = center_[0] + radius_;
    if (AngleIsOnArc(kHalfPi, 0)) box.ymax = center_[1] + radius_;
    if (AngleIsOnArc(kPi, 0)) box.xmin = center_[0] - radius_;
    if (AngleIsOnArc(-kHalfPi, 0)) box.ymin = center_[1] - radius_;
    return box;
}

void LoopDLine::Inverse() { Init(PlanePoint(end_), PlanePoint(start_), -bulge_); }

void LoopDLine::Transformation(const PlanePoint& Displacement, double Rotation, double XScaleFactor,
                               double YScaleFactor, const PlanePoint& BasePoint) {
    const double c = std::cos(Rotation), s = std::sin(Rotation);
    auto transform = [&](const PlanePoint& p) {
        const double x = (p[0] - BasePoint[0]) * XScaleFactor, y = (p[1] - BasePoint[1]) * YScaleFactor;
        return PlanePoint{BasePoint[0] + c * x - s * y + Displacement[0], BasePoint[1] + s * x + c * y + Displacement[1],
                          p[2]};
    };
    const bool mirrored = (XScaleFactor < 0) != (YScaleFactor < 0);
    Init(transform(start_), transform(end_), mirrored ? -bulge_ : bulge_);
}

double LoopDLine::ChordParameter(const PlanePoint& Point) const {
    const PlanePoint d = VectorAB();
    const double l2 = Dot2(d, d);
    return l2 == 0 ? 0.0 : std::clamp(Dot2(Minus(Point, start_), d) / l2, 0.0, 1.0);
}

double LoopDLine::ParameterOf(const PlanePoint& pointOnSegment) const {
    if (!IsArc()) return ChordParameter(pointOnSegment);
    const double sweep = std::fabs(alfa_);
    const double direction = alfa_ > 0 ? 1.0 : -1.0;
    const double rel = NormalisedTurn((PolarAngle(Minus(pointOnSegment, center_)) - startAngle_) * direction);
    if (rel <= sweep) return rel / sweep;
    return rel - sweep < kTwoPi - rel ? 1.0 : 0.0;
}

LoopDLine LoopDLine::Piece(double t0, double t1) const {
    auto at = [&](double t) {
        if (t == 0) return start_;
        if (t == 1) return end_;
        return IsArc() ? ArcPoint(startAngle_ + alfa_ * t) : Plus(start_, Scaled(VectorAB(), t));
    };
    LoopDLine piece;
    piece.Init(at(t0), at(t1), IsArc() ? std::tan(alfa_ * (t1 - t0) / 4) : 0.0);
    return piece;
}

std::pair<LoopDLine, LoopDLine> LoopDLine::Divide1(const PlanePoint& Point) const {
    double distance = 0, tangent = 0;
    PlanePoint nearest{};
    PointAnalysis(Point, distance, nearest, tangent);
    const double t = ParameterOf(nearest);
    return {Piece(0, t), Piece(t, 1)};
}

std::vector<LoopDLine> LoopDLine::Divide2(int Parts) const {
    if (Parts < 1) throw Error::InvalidProcedureCall();
    std::vector<LoopDLine> pieces;
    pieces.reserve(static_cast<std::size_t>(Parts));
    for (int i = 0; i < Parts; ++i) pieces.push_back(Piece(static_cast<double>(i) / Parts, static_cast<double>(i + 1) / Parts));
    return pieces;
}

}  // namespace tgp
