#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/LargeBlockAllocator.h"
#include "geometry/Point.h"
#include "profiles/HostEntity.h"
#include "profiles/InertiaBlock.h"
#include "profiles/LoopDLine.h"

namespace tgp {

// How a loop lies relative to another.
enum LoopRelationShip : std::int32_t {
    FriendLoop = 0,   // apart
    ChildLoop = 1,    // inside the other
    SiblingLoop = 2,  // crossing or touching it
    ParentLoop = 3,   // around the other
};

// One closed profile of straight and arc segments, with its section properties computed once, on
// demand, into an InertiaBlock. Signs follow the traversal: a counter-clockwise loop has a negative
// area (the integrals are ∫ y dx). Any number of vertices; the published 16-bit vertex count is a
// limit of the automation layer only. Held by shared_ptr; Copy gives an independent loop.
class Loop7 {
  public:
    static std::shared_ptr<Loop7> Create() { return std::make_shared<Loop7>(); }

    // One segment per vertex from x, y pairs and one bulge per vertex, closed back to the first vertex
    // unless NoClose. A segment of length 0 within 1E-05 is dropped together with its start vertex, so
    // repeated vertices collapse into one. A bulge list shorter than needed, or an odd number of
    // coordinates, raises error 9.
    void InitFromCoordinates(std::span<const double> Coordinates, std::span<const double> Bulges,
                             bool NoClose = false);
    // The same from fixed points (closed), for readers that hold their outlines as points.
    void InitFromVertices(std::span<const Point3> Vertices, std::span<const double> Bulges);
    // A closed polygon through the points (bulges 0).
    void InitFromPoints(std::span<const Point> Vertices);
    // Reverses the traversal; an existing property block is inverted rather than recomputed.
    void Reverse();

    std::size_t Count() const { return segments_.size(); }
    std::span<const LoopDLine> Segments() const { return segments_; }
    bool IsClosed() const { return closed_; }

    // The CAD entity the loop came from (may be null) and its handle, stored as given.
    const std::shared_ptr<HostEntity>& AcadEntity() const { return entity_; }
    void AcadEntity(std::shared_ptr<HostEntity> entity) { entity_ = std::move(entity); }
    const std::string& Handle() const { return handle_; }
    void Handle(std::string handle) { handle_ = std::move(handle); }

    // Start point of segment i (error 9 past the end).
    Point Vertex(std::size_t i) const;
    // x, y of every vertex in order (an open loop includes its last end point).
    std::vector<double> Coordinates() const;
    // The mean of the segments' start points: the reference point the properties are summed about.
    Point MiddlePoint() const;
    std::vector<double> Bulges() const;

    // Counts the changes of the loop's geometry, so that a collection can tell its cached
    // arrangement of loops is still valid.
    std::uint64_t Revision() const { return revision_; }
    // Counts the changes of every loop of the process: a collection whose loops have not changed
    // since it last looked need not ask each of them.
    static std::uint64_t AnyRevision() { return anyRevision_.load(std::memory_order_relaxed); }

    bool IsVoid() const { return isVoid_; }
    void IsVoid(bool value) { isVoid_ = value; }

    // Section properties. The first request checks the loop for self-intersection (error 5
    // "Invalid Loop to generate Inertia Properties: Loop should not cut itself"); an empty loop (every
    // side shorter than 1E-05 is dropped) raises 5 saying so; a loop of area 0 raises 6 "Overflow" and
    // moments beyond the range raise 6, as the runtime's arithmetic does.
    bool InitInertiaDone() const { return block_ != nullptr; }
    std::shared_ptr<tgp::InertiaBlock> InertiaBlock();
    double Length();
    double Area();
    double AreaAbs();
    double MomentOfInertiaX();
    double MomentOfInertiaY();
    double ProductOfInertiaXY();
    Point Centroid();

    // Inside by the winding angle. A point on the boundary is not inside; PointIsOn tells it apart.
    bool PointIsInside(const Point& point, bool* PointIsOn = nullptr) const;
    // The containment test the library itself relies on (grouping loops into sections): a point
    // within kOnLineTolerance of the boundary is on it (OnBoundary), otherwise it is inside when the
    // loop winds around it. Unlike the published PointIsInside it holds for drawings placed anywhere,
    // 1E7 from the origin as well as at it.
    bool Encloses(const Point& point, bool* OnBoundary = nullptr) const;
    // Common points with the infinite line through SP and EP (SP = EP raises error 5).
    bool IntersectWithLine(const Point& SP, const Point& EP,
                           std::vector<Point>* ArrIntersections = nullptr) const;
    // Common points with another loop (touching counts).
    bool IntersectWithLoop(const Loop7& exLoop, std::vector<Point>* ArrIntersections = nullptr) const;
    // Whether segments cross or overlap one another; neighbours meeting at their shared vertex do not.
    bool IsSelfIntersect(std::vector<Point>* ArrIntersections = nullptr) const;
    // True when the loops do not meet and this loop's first vertex is inside exLoop; otherwise
    // nothing (not false), as published.
    std::optional<bool> IsChildOF(const Loop7& exLoop) const;
    LoopRelationShip RelationshipTo(const Loop7& exLoop) const;
    // The points of the loop farthest along uVector and against it. With AlignToPoint they are
    // projected onto the line through AlignToPoint along uVector. An empty loop leaves them unchanged.
    void GetTopBottomPoints(const Point& uVector, Point& TopPoint, Point& BottomPoint,
                            const Point* AlignToPoint = nullptr) const;
    // Moves the segments and an existing property block; with MoveAcad also the attached entity,
    // through its Move from (0, 0, 0) to Displacement, first: when the entity refuses, or a moved
    // coordinate would overflow (6), the loop stays where it was.
    void Move(const Point& Displacement, bool MoveAcad = false);
    // Applies the segment Transformation to every segment and drops the property block. Refused with
    // 2411 "Cannot Transformation Loop7 which has AcadEntity attached" while an entity is attached,
    // with 2411 for a scale factor of 0 (the loop would collapse), and with 6 when a coordinate would
    // overflow; a refused transformation changes nothing.
    void Transformation(const Point& Displacement, double Rotation, double XScaleFactor, double YScaleFactor,
                        const Point& BasePoint);
    // Distance from a point to the loop, the nearest point and the direction of travel there.
    // An empty loop leaves the outputs unchanged.
    void PointAnalysis(const Point& point, double& Distance, Point& HPoint, double& TAngle) const;
    std::shared_ptr<Loop7> Copy() const;

  private:
    template <class VertexAt>
    void InitFrom(std::size_t n, VertexAt vertex, std::span<const double> Bulges, bool NoClose);
    // The mean of the segments' start points (error 11 for an empty loop).
    Point3 MeanVertex() const;
    void ComputeInertia();
    void Changed() {
        block_.reset();
        startPointSum_.reset();
        NextRevision();
    }
    void NextRevision() {
        ++revision_;
        anyRevision_.fetch_add(1, std::memory_order_relaxed);
    }

    std::vector<LoopDLine, LargeBlockAllocator<LoopDLine>> segments_;
    // The sum of the start points in segment order, when known from building the loop: the mean
    // vertex then costs no pass over millions of segments. Cleared by whatever moves a segment.
    std::optional<Point3> startPointSum_;
    bool closed_ = true;
    std::shared_ptr<HostEntity> entity_;
    std::string handle_;
    bool isVoid_ = false;
    std::shared_ptr<tgp::InertiaBlock> block_;
    std::uint64_t revision_ = 0;
    static inline std::atomic<std::uint64_t> anyRevision_{0};
};

// The section property block of a loop from the sums of its segments' integrals about the point O
// (the loop computes them about its mean vertex): the centroid from the first moments, the second
// moments moved to it by the parallel-axis rule. An area of 0 raises 6 "Overflow" (11 for moments
// without area), an overflow 6.
std::shared_ptr<InertiaBlock> BlockFromIntegrals(const SegmentIntegrals& sum, const Point3& O,
                                                 double perimeter);

}  // namespace tgp
