#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "geometry/Point.h"

namespace tgp {

class Matrix;

// A right-handed coordinate system: an origin and three unit axes expressed in a parent frame, the
// length unit of its own coordinates, an optional parent system and a label. Held by shared_ptr;
// Copy gives an independent system.
class UCS : public std::enable_shared_from_this<UCS> {
  public:
    UCS();
    static std::shared_ptr<UCS> Create() { return std::make_shared<UCS>(); }
    UCS(const UCS&) = delete;
    UCS& operator=(const UCS&) = delete;

    const std::string& Label() const { return label_; }
    void Label(std::string value) { label_ = std::move(value); }

    // Origin in the parent frame; (0, 0, 0) on creation. Stored as given (a script may set any
    // array); it must be a point of three elements where it is used (translations, Move), else 9.
    const Point& Origin() const { return origin_; }
    void Origin(Point value);
    // The origin set to something that is not an array (a script's `Origin = 5`): kept until it is
    // used, where it raises 13 "Type mismatch".
    void OriginNotAPoint();
    // Counts every change of the origin (0 until the first), so that a caller keeping its own copy
    // of what it set can tell whether it still stands.
    std::uint64_t OriginVersion() const { return originVersion_; }

    // The stored parent, or a new default system (not stored) when there is none.
    std::shared_ptr<UCS> Parent() const;
    void Parent(std::shared_ptr<UCS> value) { parent_ = std::move(value); }

    // A new matrix holding a copy of the axis matrix (columns Ux, Uy, Uz as last set by SetUCS).
    std::shared_ptr<tgp::Matrix> Matrix() const;

    Point Ux() const { return ux_; }
    Point Uy() const { return uy_; }
    Point Uz() const { return uz_; }

    // Length unit of this system's coordinates (a UnitIDLength id; 0 = millimetres).
    std::int16_t UnitID() const { return unitID_; }
    // Any id is kept; one that is not a length unit raises 24111 "<id> is an invalid UnitID for
    // Length" where a translation converts with it, after the steps before it changed the point.
    void UnitID(std::int16_t value);

    // Sets origin and axes. Ux and Uy are made unit length (Uy is not made perpendicular). With
    // newUz given, Uz is its unit vector and Ux x Uy must equal newUz itself (tolerance 1E-06),
    // else error 2411 "The Ux, Uy, Uz set to the UCS object are invalid" is raised after the axes
    // were already replaced (origin, axis matrix and parent keep their old values). Without newUz,
    // Uz = Ux x Uy, and parallel or opposite Ux and Uy (a zero Uz) raise 2411 "Vector unitvec(u) =
    // u = 0" before anything is stored. A non-null Parent replaces the parent.
    void SetUCS(const Point& newOrg, const Point& newUx, const Point& newUy, const Point* newUz = nullptr,
                std::shared_ptr<UCS> Parent = nullptr);

    // The unit axes SetUCS would store for Ux and Uy without a Uz (three elements each), without a
    // system to store them in; parallel or opposite axes raise 2411 "Vector unitvec(u) = u = 0".
    static std::pair<Point, Point> UnitAxes(const Point& newUx, const Point& newUy);

    // Sets origin and axes exactly as given, for restoring a saved system whose axes are already
    // unit vectors at an angle: nothing is normalised (so a round trip keeps every bit), Uz = Ux x Uy.
    void RestoreAxes(const Point& newOrg, const Point& newUx, const Point& newUy);

    // Re-expresses in place a point (or a vector, ignoring both origins) given in sourceUCS
    // coordinates in this system's coordinates. Both systems live in one parent frame whose length
    // unit is ParentUnitID; coordinates are converted between the units on the way.
    void TranslateFromUCS(Point& point, const UCS& sourceUCS, bool ConvertAsVector = false,
                          std::int16_t ParentUnitID = 0) const;
    // The reverse: a point of this system into targetUCS coordinates.
    void TranslateToUCS(Point& MyPoint, const UCS& targetUCS, bool ConvertAsVector = false,
                        std::int16_t ParentUnitID = 0) const;

    // Half turn about Uz (XAxis), about Uy (ZAxis), or a mirror of Uy alone (YAxis); the first true
    // flag acts. The axis matrix is left as it is, so translations keep the axes of the last SetUCS.
    void Reverse(bool XAxis = false, bool YAxis = false, bool ZAxis = false);
    // Shifts the origin by DestPoint - BasePoint.
    void Move(const Point& BasePoint, const Point& DestPoint);
    // Turns the other two axes about Ux, Uy or Uz (first true flag) by Rotation radians, then sets
    // the system again (SetUCS with its right-hand test).
    void Rotate(double Rotation, bool XAxis = false, bool YAxis = false, bool ZAxis = false);
    std::shared_ptr<UCS> Copy() const;
    // True when the XY planes are parallel, whichever way the normals point.
    bool ParallelTo(const UCS& ExUCS) const;

    Point U1() const { return ux_; }
    Point U2() const { return uy_; }
    Point U3() const { return uz_; }
    Point Normal() const { return uz_; }

    // MyUCS is given in the coordinates of this system (its origin and axes expressed here). It is
    // re-expressed in the frame this system itself is expressed in, and takes this system's parent.
    // Lengths are taken in this system's unit throughout (no conversion).
    void TranslateMyUCSToWorld(UCS& MyUCS) const;
    // MyImgUCS becomes this system as seen from UnknownUCS: its origin and axes expressed in
    // UnknownUCS coordinates, UnknownUCS as its parent (when that is held by a shared_ptr), and this
    // system's unit and label. Both systems are taken to share one parent frame, whose lengths are
    // taken in UnknownUCS's unit. UnknownUCS.TranslateMyUCSToWorld(MyImgUCS) undoes it.
    void RetrieveUCS_SeeMeAs(UCS& UnknownUCS, UCS& MyImgUCS) const;

  private:
    // The origin as a point of at least three elements (9 "Subscript out of range" otherwise, 13
    // when it is not an array at all).
    const Point& OriginPoint() const;
    // Re-expresses the origin and axes of system, given in from's coordinates, in to's coordinates
    // (lengths in frameUnit) and sets them on it.
    static void ReexpressSystem(UCS& system, const UCS& from, const UCS& to, std::int16_t frameUnit);
    // Stores the origin and copies the axes into the axis matrix.
    void StoreOriginAndMatrix(const Point& newOrg);

    std::string label_;
    Point origin_{0, 0, 0};
    bool originIsAPoint_ = true;
    std::uint64_t originVersion_ = 0;
    Point ux_{1, 0, 0};
    Point uy_{0, 1, 0};
    Point uz_{0, 0, 1};
    std::int16_t unitID_ = 0;
    std::shared_ptr<UCS> parent_;
    std::shared_ptr<tgp::Matrix> axisMatrix_;
};

}  // namespace tgp
