#include "profiles/InertiaBlock.h"

#include <cmath>

#include "core/Constants.h"
#include "core/Error.h"
#include "geometry/Geometry.h"
#include "geometry/Vector.h"
#include "profiles/BlockText.h"

namespace tgp {

// The moment about an axis at angle t is (Ix + Iy)/2 + R cos(2t − 2t0) with
// cos 2t0 = (Ix − Iy) / 2R and sin 2t0 = −Ixy / R: largest at t0. Adding +0.0 turns a −0 into +0,
// so that atan2 gives 0 rather than −pi for a product of −0.
PrincipalMoments MajorAndMinor(double Ix, double Iy, double Ixy) {
    const double mean = (Ix + Iy) / 2, half = (Ix - Iy) / 2;
    const double R = std::hypot(half, Ixy);
    return {mean + R, mean - R, std::atan2(-Ixy + 0.0, half + 0.0) / 2};
}

PrincipalMoments SettledMajorAndMinor(double Ix, double Iy, double Ixy) {
    PrincipalMoments p = MajorAndMinor(Ix, Iy, Ixy);
    if (p.Major - p.Minor <= 1e-12 * p.Major) p.Angle = 0;
    return p;
}

namespace {

// The first three elements of a point array, 0 for each one missing.
Point3 Padded3(const Point& p) {
    return {p.size() > 0 ? p[0] : 0, p.size() > 1 ? p[1] : 0, p.size() > 2 ? p[2] : 0};
}

Point Padded(Point p) {
    p.resize(3, 0.0);
    return p;
}

}  // namespace

void InertiaBlock::Init(double Ix, double Iy, double Ixy, const Point& Centroid, double Area,
                        std::optional<double> Perimeter, const Point* Ux, const Point* Uy) {
    const Point ux = Ux ? *Ux : Point{1, 0, 0};
    const Point uy = Uy ? *Uy : Point{0, 1, 0};
    // z is read from both axes, so a plane (two-element) axis is out of range, as in vxv.
    if (ux.size() < 3 || uy.size() < 3) throw Error::SubscriptOutOfRange();
    if (ux[2] != 0 || uy[2] != 0) {
        ThrowLibraryError("InertiaBlock should be on World Coordinates System Plan XY");
    }
    if (Centroid.size() < 2) throw Error::SubscriptOutOfRange();  // a centroid needs x and y
    // The axes first: parallel axes fail there (no normal), and then nothing is stored.
    SetAxes(Padded(Centroid), ux, uy);
    ix_ = Ix;
    iy_ = Iy;
    ixy_ = Ixy;
    area_ = Area;
    perimeter_ = Perimeter.value_or(0.0);
}

std::shared_ptr<InertiaBlock> InertiaBlock::Copy() const {
    auto copy = Create();
    copy->area_ = area_;
    copy->perimeter_ = perimeter_;
    copy->ix_ = ix_;
    copy->iy_ = iy_;
    copy->ixy_ = ixy_;
    copy->elasticModulus_ = elasticModulus_;
    if (ocs_)
        copy->SetAxes(ocs_->Origin(), ocs_->Ux(), ocs_->Uy());
    else if (frameSet_)
        copy->SetAxes(ToPoint(frame_.origin), ToPoint(frame_.ux), ToPoint(frame_.uy));
    return copy;
}

// As the system's SetUCS does (the axes made unit vectors), on the plain numbers until the system
// object is made.
void InertiaBlock::SetAxes(const Point& origin, const Point& ux, const Point& uy) {
    if (ocs_) {
        ocs_->SetUCS(origin, ux, uy);
        return;
    }
    const auto [unitX, unitY] = UCS::UnitAxes(ux, uy);
    if (origin.size() != 3) {  // an origin the plain numbers cannot hold as it is
        OCS()->SetUCS(origin, ux, uy);
        return;
    }
    SetFrame({Padded3(origin), Padded3(unitX), Padded3(unitY)});
}

void InertiaBlock::SetFrame(const Frame& frame) {
    if (ocs_) {
        ocs_->RestoreAxes(ToPoint(frame.origin), ToPoint(frame.ux), ToPoint(frame.uy));
        return;
    }
    frame_ = frame;
    frameSet_ = true;
}

std::shared_ptr<UCS> InertiaBlock::OCS() {
    if (!ocs_) {
        ocs_ = UCS::Create();
        if (frameSet_) ocs_->RestoreAxes(ToPoint(frame_.origin), ToPoint(frame_.ux), ToPoint(frame_.uy));
    }
    return ocs_;
}

Point InertiaBlock::Centroid() {
    return ocs_ ? Padded(ocs_->Origin()) : ToPoint(frame_.origin);
}

void InertiaBlock::Centroid(const Point& newCentroid) {
    Move(Vector::vminusv(newCentroid, Centroid()));
}

std::shared_ptr<DArea> InertiaBlock::Area() const {
    return FromMillimetres<DArea>(area_);
}

std::shared_ptr<DLength> InertiaBlock::Perimeter() const {
    return FromMillimetres<DLength>(perimeter_);
}

InertiaBlock::TargetFrame InertiaBlock::FrameOf(const UCS& target) {
    const double theta = Vector::vAngle(OCS()->Ux(), target.Ux());
    Point centroid{0, 0, 0};
    target.TranslateFromUCS(centroid, *OCS());
    return {std::cos(theta),     std::sin(theta), std::sin(2 * theta),
            std::cos(2 * theta), centroid[0],     centroid[1]};
}

// The grouping below is part of the results: products left to right, the rotated part formed first.
std::shared_ptr<DMomentOfInertia> InertiaBlock::MomentOfInertiaX(const std::shared_ptr<UCS>& targetUCS) {
    if (!targetUCS) return FromMillimetres<DMomentOfInertia>(ix_);
    const TargetFrame f = FrameOf(*targetUCS);
    const double rotated = (f.c * f.c) * ix_ + (f.s * f.s) * iy_ - f.S * ixy_;
    return FromMillimetres<DMomentOfInertia>(CheckFinite(f.dy * area_ * f.dy + rotated));
}

std::shared_ptr<DMomentOfInertia> InertiaBlock::MomentOfInertiaY(const std::shared_ptr<UCS>& targetUCS) {
    if (!targetUCS) return FromMillimetres<DMomentOfInertia>(iy_);
    const TargetFrame f = FrameOf(*targetUCS);
    const double rotated = (f.c * f.c) * iy_ + (f.s * f.s) * ix_ + f.S * ixy_;
    return FromMillimetres<DMomentOfInertia>(CheckFinite(f.dx * area_ * f.dx + rotated));
}

std::shared_ptr<DMomentOfInertia> InertiaBlock::ProductOfInertiaXY(const std::shared_ptr<UCS>& targetUCS) {
    if (!targetUCS) return FromMillimetres<DMomentOfInertia>(ixy_);
    const TargetFrame f = FrameOf(*targetUCS);
    const double rotated = (-f.S * iy_) / 2 + (f.S * ix_) / 2 + f.C * ixy_;
    return FromMillimetres<DMomentOfInertia>(CheckFinite(f.dx * area_ * f.dy + rotated));
}

std::shared_ptr<DLength> InertiaBlock::RadiusOf(double moment) const {
    if (area_ == 0) return FromMillimetres<DLength>(0);
    const double r = std::sqrt(std::fabs(CheckFinite(moment / area_)));
    return FromMillimetres<DLength>(area_ < 0 ? -r : r);
}

std::shared_ptr<DLength> InertiaBlock::RadiusOfGyrationX(const std::shared_ptr<UCS>& targetUCS) {
    return RadiusOf(MomentOfInertiaX(targetUCS)->Millimetres());
}

std::shared_ptr<DLength> InertiaBlock::RadiusOfGyrationY(const std::shared_ptr<UCS>& targetUCS) {
    return RadiusOf(MomentOfInertiaY(targetUCS)->Millimetres());
}

// The turn to the principal axes comes from tan 2θ = −2 Ixy / (Ix − Iy), chosen in [0, pi/2):
// arctan gives t in (−pi/2, pi/2); θ = −t/2 for t ≤ 0 and (pi − t)/2 for t > 0.
InertiaBlock::Principal InertiaBlock::PrincipalValues() const {
    if (ixy_ == 0) return {ix_, iy_, 0};
    const double d = (ix_ - iy_) / 2;
    const double R = CheckFinite(std::sqrt(std::pow(d, 2) + std::pow(ixy_, 2)));
    const double cos2 = (ix_ - iy_) * 0.5 / R;
    const double sin2 = ixy_ / R;
    if (cos2 == 0) {
        return {iy_ * 0.5 + ix_ * 0.5 - ixy_, iy_ * 0.5 + ix_ * 0.5 + ixy_, kPi / 4};
    }
    const double t = std::atan(sin2 / cos2);
    const double v = t <= 0 ? t : t - kPi;
    const double theta = -v * 0.5;
    const double c = std::cos(theta), s = std::sin(theta), S = std::sin(2 * theta);
    return {CheckFinite(s * s * iy_ + c * c * ix_ - S * ixy_),
            CheckFinite(c * c * iy_ + s * s * ix_ + S * ixy_), theta};
}

void InertiaBlock::GetPrincipalIP(std::shared_ptr<DMomentOfInertia>& Ix0,
                                  std::shared_ptr<DMomentOfInertia>& Iy0, std::shared_ptr<DAngle>& Rotation) {
    if (!Ix0) Ix0 = std::make_shared<DMomentOfInertia>();
    if (!Iy0) Iy0 = std::make_shared<DMomentOfInertia>();
    if (!Rotation) Rotation = std::make_shared<DAngle>();
    const Principal p = PrincipalValues();
    Ix0->Millimetres(p.Ix0);
    Iy0->Millimetres(p.Iy0);
    Rotation->Radians(p.Rotation);
}

std::shared_ptr<DMomentOfInertia> InertiaBlock::PMomentOfInertiaX() {
    return FromMillimetres<DMomentOfInertia>(PrincipalValues().Ix0);
}

std::shared_ptr<DMomentOfInertia> InertiaBlock::PMomentOfInertiaY() {
    return FromMillimetres<DMomentOfInertia>(PrincipalValues().Iy0);
}

std::shared_ptr<DAngle> InertiaBlock::PrincipalAngle() {
    auto angle = std::make_shared<DAngle>();
    angle->Radians(PrincipalValues().Rotation);
    return angle;
}

std::shared_ptr<UCS> InertiaBlock::PCS() {
    auto pcs = OCS()->Copy();
    pcs->Rotate(PrincipalAngle()->Radians(), false, false, true);
    return pcs;
}

void InertiaBlock::ElasticModulus(double value) {
    if (elasticModulus_ != 0 && value != 0) {
        const double f = CheckFinite(elasticModulus_ / value);
        const double area = CheckFinite(area_ * f), ix = CheckFinite(ix_ * f), iy = CheckFinite(iy_ * f);
        const double ixy = CheckFinite(ixy_ * f);
        area_ = area;
        ix_ = ix;
        iy_ = iy;
        ixy_ = ixy;
    }
    elasticModulus_ = value;
}

void InertiaBlock::RotateOCS(double Rotation) {
    const double c = std::cos(Rotation), s = std::sin(Rotation);
    const double S = std::sin(2 * Rotation), C = std::cos(2 * Rotation);
    const double ix = s * s * iy_ + c * c * ix_ - S * ixy_;
    const double iy = s * s * ix_ + c * c * iy_ + S * ixy_;
    const double ixy = CheckFinite((-S * iy_) / 2 + (S * ix_) / 2 + C * ixy_);
    CheckFinite(ix);
    CheckFinite(iy);
    ix_ = ix;
    iy_ = iy;
    ixy_ = ixy;
    const auto ocs = OCS();
    SetAxes(ocs->Origin(), Padded(Vector::vRotate(ocs->Ux(), Rotation)),
            Padded(Vector::vRotate(ocs->Uy(), Rotation)));
}

void InertiaBlock::RotateAll(double Rotation, const Point& BasePoint) {
    const auto ocs = OCS();
    const Point ux = Padded(Vector::vRotate(ocs->Ux(), Rotation));
    const Point uy = Padded(Vector::vRotate(ocs->Uy(), Rotation));
    Point origin;
    Geometry::RotatePoint(Centroid(), Padded(BasePoint), {0, 0, 1}, Rotation, origin);
    SetAxes(origin, ux, uy);
}

void InertiaBlock::Move(const Point& Displacement) {
    const auto ocs = OCS();
    ocs->Origin(Vector::vplusv(ocs->Origin(), Displacement));
}

void InertiaBlock::Inverse() {
    area_ = -area_;
    ix_ = -ix_;
    iy_ = -iy_;
    ixy_ = -ixy_;
}

namespace {

// The second moments of a figure about its own axes as the symmetric matrix [∫u², ∫uv; ∫uv, ∫v²].
struct Moments {
    double uu, uv, vv;
};

// The same moments about axes whose directions, in the figure's axes, are the rows of q.
Moments Turned(const Moments& m, double q00, double q01, double q10, double q11) {
    if (q00 == 1 && q01 == 0 && q10 == 0 && q11 == 1) return m;  // the same axes: exact
    auto product = [&](double a0, double a1, double b0, double b1) {
        return a0 * (m.uu * b0 + m.uv * b1) + a1 * (m.uv * b0 + m.vv * b1);
    };
    return {product(q00, q01, q00, q01), product(q00, q01, q10, q11), product(q10, q11, q10, q11)};
}

}  // namespace

InertiaBlock::Frame InertiaBlock::FrameValues() const {
    if (!ocs_) return frame_;
    return {Padded3(ocs_->Origin()), Padded3(ocs_->Ux()), Padded3(ocs_->Uy())};
}

void InertiaBlock::Join(const InertiaBlock& Block) {
    if (HasNoMaterial() != Block.HasNoMaterial()) {
        ThrowLibraryError(
            "Join: a block without material cannot be joined to a block with material (set "
            "ElasticModulus on both blocks or on neither)");
    }
    const double f = HasNoMaterial() ? 1 : CheckFinite(Block.elasticModulus_ / elasticModulus_);
    const Frame mine = FrameValues(), theirs = Block.FrameValues();
    const double A1 = area_, A2 = CheckFinite(Block.area_ * f);
    const double A = CheckFinite(A1 + A2);
    if (A == 0)
        ThrowLibraryError(
            "Join: the areas cancel (a block joined with its own void), so the result has no centroid");
    // The new centroid from this one: c = c1 + (A2 / A)(c2 − c1), which keeps the digits of a
    // section far from the origin; the offsets of both centroids from it follow.
    Point3 between{};
    for (int i = 0; i < 3; ++i) between[i] = theirs.origin[i] - mine.origin[i];
    Point3 centroid{}, d1{}, d2{};
    for (int i = 0; i < 3; ++i) {
        d1[i] = -(A2 / A) * between[i];
        d2[i] = (A1 / A) * between[i];
        centroid[i] = CheckFinite(mine.origin[i] - d1[i]);
    }
    const double d1x = d1.Dot(mine.ux), d1y = d1.Dot(mine.uy), d2x = d2.Dot(mine.ux), d2y = d2.Dot(mine.uy);
    const Moments other = Turned({Block.iy_ * f, Block.ixy_ * f, Block.ix_ * f}, mine.ux.Dot(theirs.ux),
                                 mine.ux.Dot(theirs.uy), mine.uy.Dot(theirs.ux), mine.uy.Dot(theirs.uy));
    const double ix = CheckFinite(ix_ + A1 * d1y * d1y + other.vv + A2 * d2y * d2y);
    const double iy = CheckFinite(iy_ + A1 * d1x * d1x + other.uu + A2 * d2x * d2x);
    const double ixy = CheckFinite(ixy_ + A1 * d1x * d1y + other.uv + A2 * d2x * d2y);
    const double perimeter = CheckFinite(perimeter_ + Block.perimeter_);
    if (ocs_)
        ocs_->Origin(ToPoint(centroid));
    else
        SetFrame({centroid, mine.ux, mine.uy});
    area_ = A;
    ix_ = ix;
    iy_ = iy;
    ixy_ = ixy;
    perimeter_ = perimeter;
}

std::shared_ptr<InertiaBlock> InertiaBlock::Union(const InertiaBlock& Block) const {
    auto result = Copy();
    result->Join(Block);
    return result;
}

void InertiaBlock::Transformation(const Point& Displacement, double Rotation, double XScaleFactor,
                                  double YScaleFactor, const Point& BasePoint) {
    const double sx = XScaleFactor, sy = YScaleFactor;
    if (sx == 0 || sy == 0) {
        ThrowLibraryError(
            "Cannot Transformation InertiaBlock with a scale factor of 0: the section would collapse "
            "onto a line");
    }
    const Frame frame = FrameValues();
    const Point3 base = Padded3(BasePoint), move = Padded3(Displacement);
    const double k = std::fabs(sx * sy);
    const double area = CheckFinite(area_ * k), ix = CheckFinite(ix_ * k * (sy * sy));
    const double iy = CheckFinite(iy_ * k * (sx * sx)), ixy = CheckFinite(ixy_ * k * (sx * sy));
    const double perimeter = CheckFinite(perimeter_ * ((std::fabs(sx) + std::fabs(sy)) / 2));
    // The centroid scaled about BasePoint along the block's axes, then turned about it, then moved.
    Point3 offset{};
    for (int i = 0; i < 3; ++i) offset[i] = frame.origin[i] - base[i];
    const double u = offset.Dot(frame.ux) * sx, v = offset.Dot(frame.uy) * sy;
    const double c = std::cos(Rotation), s = std::sin(Rotation);
    const double x = u * frame.ux[0] + v * frame.uy[0], y = u * frame.ux[1] + v * frame.uy[1];
    const Point3 centroid{CheckFinite(base[0] + (c * x - s * y) + move[0]),
                          CheckFinite(base[1] + (s * x + c * y) + move[1]),
                          CheckFinite(frame.origin[2] + move[2])};
    auto turn = [&](const Point3& a) { return Point{c * a[0] - s * a[1], s * a[0] + c * a[1], 0}; };
    const Point ux = turn(frame.ux), uy = turn(frame.uy);
    SetFrame({centroid, Padded3(ux), Padded3(uy)});
    area_ = area;
    ix_ = ix;
    iy_ = iy;
    ixy_ = ixy;
    perimeter_ = perimeter;
}

std::string InertiaBlock::SaveToText() const {
    const Frame frame = FrameValues();
    return WriteBlockText(
        {area_, perimeter_, ix_, iy_, ixy_, frame.origin, frame.ux, frame.uy, elasticModulus_});
}

void InertiaBlock::InitFromText(std::string_view Text) {
    const BlockFields f = ReadBlockText(Text);  // raises before anything changes
    SetFrame({f.centroid, f.ux, f.uy});
    area_ = f.area;
    perimeter_ = f.perimeter;
    ix_ = f.ix;
    iy_ = f.iy;
    ixy_ = f.ixy;
    elasticModulus_ = f.modulus;
}

}  // namespace tgp
