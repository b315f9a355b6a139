#pragma once

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "profiles/ChordFrame.h"
#include "profiles/PlanePoint.h"

namespace tgp {

// The six integrals of a segment over the region between it and the x axis, taken along the
// segment from its start to its end (so they carry the sign of the direction of travel):
// Area = ∫ y dx, StaticMomentX = ∫ y²/2 dx, StaticMomentY = ∫ x y dx, MomentOfInertiaX = ∫ y³/3 dx,
// MomentOfInertiaY = ∫ x² y dx, ProductOfInertiaXY = ∫ x y²/2 dx.
struct SegmentIntegrals {
    double Area = 0;
    double StaticMomentX = 0;
    double StaticMomentY = 0;
    double MomentOfInertiaX = 0;
    double MomentOfInertiaY = 0;
    double ProductOfInertiaXY = 0;

    SegmentIntegrals& operator+=(const SegmentIntegrals& other);
};

// An axis-aligned box around a segment, arc bulges included.
struct SegmentBox {
    double xmin, ymin, xmax, ymax;

    // A box around nothing, which any box included makes that box.
    static SegmentBox Empty() { return {HUGE_VAL, HUGE_VAL, -HUGE_VAL, -HUGE_VAL}; }
    void Include(const SegmentBox& b) {
        xmin = std::min(xmin, b.xmin);
        ymin = std::min(ymin, b.ymin);
        xmax = std::max(xmax, b.xmax);
        ymax = std::max(ymax, b.ymax);
    }
    // Whether the boxes come within `margin` of each other (an empty box meets nothing).
    bool Meets(const SegmentBox& b, double margin) const {
        return xmin <= b.xmax + margin && b.xmin <= xmax + margin && ymin <= b.ymax + margin &&
               b.ymin <= ymax + margin;
    }
};

// One segment of a closed loop: a straight line, or a circular arc given by its end points and a
// bulge (the tangent of a quarter of the signed included angle; positive turns counter-clockwise).
// A value type: loops hold their segments by value, so a segment costs no heap allocation.
//
// Distance tolerance: the point tests and intersections take points within kOnLineTolerance (drawing
// units, i.e. millimetres) of a segment as lying on it, unless a member says otherwise.
class LoopDLine {
  public:
    static constexpr double kOnLineTolerance = 1e-6;

    // Stores the end points (x, y; z is carried along unread) and the bulge, clears the cached
    // integrals and derives radius, centre, angles and length. A bulge of exactly 0 is straight.
    // Coordinates that are not finite, or a radius, centre or length that overflows, raise 6.
    // For 1E-3 <= |Bulge| <= 1E3 radius, centre and length follow the published construction
    // bit for bit (phi = (pi - Alfa) / 2 with the shortened pi, r = L / (2 cos phi)). Outside that
    // range 2 cos(phi) is a small difference and the shortened pi's error of 3E-15 grows into the
    // radius as 1E-15 / |Bulge| (a perimeter of 399.99992 for a 400 square at a bulge of 1E-9), so
    // there they come from the half angle instead: R = (L/2) / sin(|Alfa|/2), the centre at
    // (L/2) cot(Alfa/2) to the left of the chord's midpoint, length = L (|Alfa|/2) / sin(|Alfa|/2).
    void Init(const Point3& StartPoint, const Point3& EndPoint, double Bulge);

    const Point3& StartPoint() const { return start_; }
    const Point3& EndPoint() const { return end_; }
    double Bulge() const { return bulge_; }
    bool IsArc() const { return bulge_ != 0; }
    // Absolute arc radius; 0 for a straight segment.
    double Radius() const { return radius_; }
    // (cx, cy, 0) of an arc; empty for a straight segment.
    std::optional<Point3> Center() const;
    // Signed included angle 4·atan(Bulge), radians.
    double Alfa() const { return alfa_; }
    double StartAngle() const { return startAngle_; }
    double EndAngle() const { return endAngle_; }
    // Arc length, or chord length for a straight segment.
    double Length() const { return length_; }

    // Alfa·R² − R²·sin(Alfa)/2: the first term deliberately has no factor one half.
    double ArcArea() const;
    // The chord vector EndPoint − StartPoint.
    Point3 VectorAB() const { return Minus(end_, start_); }
    // Chord midpoint of a straight segment, arc midpoint of an arc.
    Point3 MidPoint() const;

    // The integrals about the global axes. InitInertiaDone tells whether they were read since the
    // last Init or Move. An arc's integrals are its chord's plus those of the circular segment
    // between chord and arc, taken in the chord's frame from the chord and Alfa alone: accurate for
    // every bulge, where the closed forms about the centre cancel terms of order R^4 and fail for
    // nearly straight arcs (a bulge of 1E-4 on a 100 square put 5 % into Ix). They are closed forms of the
    // stored geometry, cheaper to evaluate again than to keep: a segment without six cached numbers is a
    // third smaller, which is what large loops are bound by.
    bool InitInertiaDone() const { return inertiaDone_; }
    double Area() const { return Integrals().Area; }
    double StaticMomentX() const { return Integrals().StaticMomentX; }
    double StaticMomentY() const { return Integrals().StaticMomentY; }
    double MomentOfInertiaX() const { return Integrals().MomentOfInertiaX; }
    double MomentOfInertiaY() const { return Integrals().MomentOfInertiaY; }
    double ProductOfInertiaXY() const { return Integrals().ProductOfInertiaXY; }
    SegmentIntegrals Integrals() const;
    // The integrals of the segment from a to b with included angle Alfa (0: straight), from the end
    // points and the angle alone: what Integrals gives for such a segment, without building one.
    static SegmentIntegrals IntegralsOf(const Point3& a, const Point3& b, double Alfa);
    // The integrals of this segment moved by −Origin, without moving it or touching the cache.
    // Subtracting the origin first keeps the digits of a drawing far from the origin.
    SegmentIntegrals IntegralsAbout(const Point3& Origin) const;

    // The signed angle the segment subtends at Point (its contribution to a winding sum): 0 at an
    // end of a straight segment, Alfa/2 at an end of an arc, ±pi on the chord, and the chord's
    // angle corrected by a full turn when Point lies between the chord and the arc.
    double AngleTo(const Point3& Point) const;
    // The same angle for the library's own decisions, exact wherever the drawing lies: no
    // relative-tolerance snaps (a relative 1E-06 is a whole unit at 1E6 from the origin). The caller
    // has ruled out points on the segment.
    double SubtendedAngle(const Point3& Point) const;
    // Shifts the end points and the centre; radius, angles and length stay, the integrals are
    // recomputed on the next read.
    void Move(const Point3& Displacement);

    // Distance from Point to the segment, the nearest point HPoint on it, and the direction of
    // travel there (TAngle, radians in (-pi, pi]). At the centre of an arc the start point is taken.
    void PointAnalysis(const Point3& Point, double& Distance, Point3& HPoint, double& TAngle) const;
    // Point within Tolerance of the segment (end points included).
    bool PointIsOnDline(const Point3& Point, double Tolerance = kOnLineTolerance) const;
    // Point inside or on the triangle O, StartPoint, EndPoint (O defaults to the origin); a
    // degenerate triangle contains only the points on its edges.
    bool PointIsInOAB(const Point3& Point, const Point3& O = {0, 0, 0}) const;
    // Point strictly inside the sector of the arc (inside its circle and within its sweep seen from
    // the centre); always false for a straight segment.
    bool PointIsInArcArea(const Point3& Point) const;
    // Point strictly between the chord and the arc; always false for a straight segment.
    bool PointIsInDlineArea(const Point3& Point) const;

    // Intersection points with another segment (line-line, line-arc, arc-arc), end points included,
    // within kOnLineTolerance. Collinear or concentric overlaps report the ends of the overlap.
    // Returns whether there is any; points are appended to Points when given.
    bool IntersectWithDline(const LoopDLine& Other, std::vector<Point3>* Points = nullptr) const;
    // Intersection points with the infinite line through P1 and P2 (P1 ≠ P2). A straight segment
    // lying on the line reports its two end points.
    bool IntersectWithInfinitiveLine(const Point3& P1, const Point3& P2,
                                     std::vector<Point3>* Points = nullptr) const;
    // The points of the segment farthest along uVector (Top) and against it (Bottom), arc
    // extremes included; on a tie the start point, then the end point, wins.
    void GetTopBottomPoints(const Point3& uVector, Point3& TopPoint, Point3& BottomPoint) const;
    // The box around the segment, arc extremes included.
    SegmentBox BoundingBox() const;

    // The point at parameter t (0 = start, 1 = end; along an arc by angle), and the parameter of a
    // point lying on the segment.
    Point3 PointAt(double t) const;
    double ParameterOf(const Point3& pointOnSegment) const;

    // Reverses the direction of travel: end points exchanged, bulge negated.
    void Inverse();
    // Scales the end points about BasePoint by XScaleFactor, YScaleFactor, turns them about
    // BasePoint by Rotation radians and shifts them by Displacement. The bulge is kept, negated for a
    // mirroring scale (factors of opposite signs), so an arc stays an arc through the new end points.
    void Transformation(const Point3& Displacement, double Rotation, double XScaleFactor, double YScaleFactor,
                        const Point3& BasePoint);
    // Splits at the point of the segment nearest to Point: the part up to it and the part after it.
    std::pair<LoopDLine, LoopDLine> Divide1(const Point3& Point) const;
    // Splits into Parts pieces of equal length (Parts < 1 raises error 5).
    std::vector<LoopDLine> Divide2(int Parts) const;
    LoopDLine Copy() const { return *this; }

  private:
    static SegmentIntegrals LineIntegrals(const Point3& a, const Point3& b);
    // What an arc of included angle alfa adds to its chord's integrals, for the chord from a to b.
    static SegmentIntegrals SegmentRegionIntegrals(const Point3& a, const Point3& b, double alfa);
    // The arc seen from its chord: the frame all arc geometry is done in (see ChordFrame).
    ChordFrame Frame() const;
    // An arc whose end points coincide: radius 0, a single point.
    bool OnOnePoint() const;
    double DistanceTo(const Point3& Point) const;
    bool ArcIntersections(const LoopDLine& Other, std::vector<Point3>* Points) const;
    static bool AlongCircleOf(const ChordFrame& f, const LoopDLine& Other);
    // The middle of the segment, computed in the chord frame (MidPoint keeps the published angles).
    Point3 Middle() const;
    static bool RadicalLine(const ChordFrame& f, const ChordFrame& g, Point3& X0, Point3& e);
    // The part of the segment from parameter t0 to t1 (0 = start, 1 = end; arcs by angle).
    LoopDLine Piece(double t0, double t1) const;
    // The parameter (0 = start, 1 = end) of the point of the chord nearest to Point.
    double ChordParameter(const Point3& Point) const;

    Point3 start_{};
    Point3 end_{};
    double bulge_ = 0;
    double radius_ = 0;
    Point3 center_{};
    double alfa_ = 0;
    double startAngle_ = 0;
    double endAngle_ = 0;
    double length_ = 0;
    mutable bool inertiaDone_ = false;
};

}  // namespace tgp
