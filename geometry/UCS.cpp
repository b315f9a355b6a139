#include "geometry/UCS.h"

#include <initializer_list>

#include "core/Equality.h"
#include "geometry/Geometry.h"
#include "geometry/Matrix.h"
#include "geometry/Vector.h"
#include "units/DLength.h"

namespace tgp {

namespace {

// The axes are fixed three-element arrays: a plane axis gets z = 0, extra elements are dropped.
Point ToAxis(const Point& v) {
    Point axis{0, 0, 0};
    for (std::size_t i = 0; i < axis.size() && i < v.size(); ++i) axis[i] = v[i];
    return axis;
}

// Converts x, y and z of a point from one length unit to another through a length quantity.
void ConvertLengths(Point& point, std::int16_t fromUnit, std::int16_t toUnit) {
    if (fromUnit == toUnit) return;
    DLength length;
    for (std::size_t i = 0; i < 3; ++i) {
        double& coordinate = Element(point, i);
        length.Value(fromUnit, coordinate);
        coordinate = length.Value(toUnit);
    }
}

}  // namespace

UCS::UCS() : axisMatrix_(std::make_shared<tgp::Matrix>()) {
    axisMatrix_->Reset(3, 3);
    for (int i = 0; i < 3; ++i) axisMatrix_->LetItem(i, i, 1);
}

void UCS::UnitID(std::int16_t value) {
    unitID_ = value;
}

std::shared_ptr<UCS> UCS::Parent() const {
    return parent_ ? parent_ : Create();
}

std::shared_ptr<tgp::Matrix> UCS::Matrix() const {
    return axisMatrix_->Copy();
}

void UCS::SetUCS(const Point& newOrg, const Point& newUx, const Point& newUy, const Point* newUz,
                 std::shared_ptr<UCS> Parent) {
    ux_ = ToAxis(Vector::UnitVec(newUx));
    uy_ = ToAxis(Vector::UnitVec(newUy));
    if (newUz) {
        uz_ = ToAxis(Vector::UnitVec(*newUz));
        // The caller's newUz itself must be Ux x Uy: a right direction of another length fails too.
        // The axes stay replaced when it fails; origin, matrix and parent do not change.
        double tolerance = 0;
        if (!IsEqual(Vector::vxv(ux_, uy_), *newUz, tolerance)) {
            ThrowLibraryError("The Ux, Uy, Uz set to the UCS object are invalid");
        }
    } else {
        // Parallel or opposite axes span no plane: their normal is the zero vector, which fails as
        // UnitVec fails for it rather than leaving a system that collapses every point.
        const Point normal = Vector::vxv(ux_, uy_);
        if (normal[0] == 0 && normal[1] == 0 && normal[2] == 0)
            ThrowLibraryError("Vector unitvec(u) = u = 0");
        uz_ = normal;
    }
    StoreOriginAndMatrix(newOrg);
    if (Parent) parent_ = std::move(Parent);
}

std::pair<Point, Point> UCS::UnitAxes(const Point& newUx, const Point& newUy) {
    // The world axes are their own unit vectors, bit for bit: most blocks have them.
    if (newUx == Point{1, 0, 0} && newUy == Point{0, 1, 0}) return {newUx, newUy};
    Point ux = ToAxis(Vector::UnitVec(newUx)), uy = ToAxis(Vector::UnitVec(newUy));
    const Point normal = Vector::vxv(ux, uy);
    if (normal[0] == 0 && normal[1] == 0 && normal[2] == 0) ThrowLibraryError("Vector unitvec(u) = u = 0");
    return {std::move(ux), std::move(uy)};
}

void UCS::RestoreAxes(const Point& newOrg, const Point& newUx, const Point& newUy) {
    const Point ux = ToAxis(newUx), uy = ToAxis(newUy);
    const Point normal = Vector::vxv(ux, uy);
    if (normal[0] == 0 && normal[1] == 0 && normal[2] == 0) ThrowLibraryError("Vector unitvec(u) = u = 0");
    ux_ = ux;
    uy_ = uy;
    uz_ = normal;
    StoreOriginAndMatrix(newOrg);
}

void UCS::StoreOriginAndMatrix(const Point& newOrg) {
    Origin(newOrg);
    axisMatrix_->LetColumn(ux_, 0);
    axisMatrix_->LetColumn(uy_, 1);
    axisMatrix_->LetColumn(uz_, 2);
}

void UCS::TranslateFromUCS(Point& point, const UCS& sourceUCS, bool ConvertAsVector,
                           std::int16_t ParentUnitID) const {
    ConvertLengths(point, sourceUCS.UnitID(), ParentUnitID);
    // Into the common parent frame.
    point = sourceUCS.axisMatrix_->MultiplyWithVector(point);
    if (!ConvertAsVector) point = Vector::vplusv(point, sourceUCS.OriginPoint());
    // Out of it into this system; the transpose is the inverse of orthonormal axes.
    if (!ConvertAsVector) point = Vector::vminusv(point, OriginPoint());
    point = axisMatrix_->Transpose()->MultiplyWithVector(point);
    ConvertLengths(point, ParentUnitID, unitID_);
}

void UCS::TranslateToUCS(Point& MyPoint, const UCS& targetUCS, bool ConvertAsVector,
                         std::int16_t ParentUnitID) const {
    targetUCS.TranslateFromUCS(MyPoint, *this, ConvertAsVector, ParentUnitID);
}

void UCS::Reverse(bool XAxis, bool YAxis, bool ZAxis) {
    // Only the axis fields change; the axis matrix keeps the axes of the last SetUCS on purpose.
    if (XAxis) {
        ux_ = Vector::vxr(ux_, -1);
        uy_ = Vector::vxr(uy_, -1);
    } else if (YAxis) {
        uy_ = Vector::vxr(uy_, -1);
    } else if (ZAxis) {
        uz_ = Vector::vxr(uz_, -1);
        ux_ = Vector::vxr(ux_, -1);
    }
}

void UCS::Move(const Point& BasePoint, const Point& DestPoint) {
    Origin(Vector::vplusv(OriginPoint(), Vector::VectorAB(BasePoint, DestPoint)));
}

const Point& UCS::OriginPoint() const {
    if (!originIsAPoint_) throw Error::TypeMismatch();
    if (origin_.size() < 3) throw Error::SubscriptOutOfRange();
    return origin_;
}

void UCS::Origin(Point value) {
    origin_ = std::move(value);
    originIsAPoint_ = true;
    ++originVersion_;
}

void UCS::OriginNotAPoint() {
    origin_.clear();
    originIsAPoint_ = false;
    ++originVersion_;
}

void UCS::Rotate(double Rotation, bool XAxis, bool YAxis, bool ZAxis) {
    // Axes are directions, so they turn about an axis through the zero point and stay unit length.
    const Point zero{0, 0, 0};
    Point newUx = ux_, newUy = uy_, newUz = uz_;
    if (XAxis) {
        Geometry::RotatePoint(uy_, zero, ux_, Rotation, newUy);
        Geometry::RotatePoint(uz_, zero, ux_, Rotation, newUz);
    } else if (YAxis) {
        Geometry::RotatePoint(ux_, zero, uy_, Rotation, newUx);
        Geometry::RotatePoint(uz_, zero, uy_, Rotation, newUz);
    } else if (ZAxis) {
        Geometry::RotatePoint(ux_, zero, uz_, Rotation, newUx);
        Geometry::RotatePoint(uy_, zero, uz_, Rotation, newUy);
    }
    SetUCS(origin_, newUx, newUy, &newUz, parent_);
}

std::shared_ptr<UCS> UCS::Copy() const {
    auto copy = Create();
    copy->SetUCS(origin_, ux_, uy_, &uz_, parent_);
    copy->UnitID(unitID_);
    copy->Label(label_);
    return copy;
}

bool UCS::ParallelTo(const UCS& ExUCS) const {
    return Vector::IsParallel(ExUCS.Uz(), uz_);
}

void UCS::TranslateMyUCSToWorld(UCS& MyUCS) const {
    UCS world;
    world.UnitID(unitID_);
    ReexpressSystem(MyUCS, *this, world, unitID_);
    MyUCS.Parent(parent_);
}

void UCS::RetrieveUCS_SeeMeAs(UCS& UnknownUCS, UCS& MyImgUCS) const {
    UCS frame;  // the parent frame both systems share, in UnknownUCS's unit
    frame.UnitID(UnknownUCS.UnitID());
    // Work on a scratch system: MyImgUCS may be this very one.
    UCS image;
    image.origin_ = origin_;
    image.ux_ = ux_;
    image.uy_ = uy_;
    image.uz_ = uz_;
    ReexpressSystem(image, frame, UnknownUCS, UnknownUCS.UnitID());
    MyImgUCS.SetUCS(image.origin_, image.ux_, image.uy_, &image.uz_);
    if (&MyImgUCS != &UnknownUCS) MyImgUCS.Parent(UnknownUCS.weak_from_this().lock());
    MyImgUCS.UnitID(unitID_);
    MyImgUCS.Label(label_);
}

void UCS::ReexpressSystem(UCS& system, const UCS& from, const UCS& to, std::int16_t frameUnit) {
    Point origin = system.origin_, ux = system.ux_, uy = system.uy_, uz = system.uz_;
    to.TranslateFromUCS(origin, from, false, frameUnit);
    for (Point* axis : {&ux, &uy, &uz}) to.TranslateFromUCS(*axis, from, true, frameUnit);
    system.SetUCS(origin, ux, uy, &uz);
}

}  // namespace tgp
