#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "geometry/Point.h"
#include "geometry/UCS.h"
#include "units/DAngle.h"
#include "units/DArea.h"
#include "units/DLength.h"
#include "units/DMomentOfInertia.h"

namespace tgp {

// The principal moments as engineers read them: Major >= Minor, and Angle (radians, full-precision
// pi, in (-pi/2, pi/2]) turning the x axis counter-clockwise onto the axis of Major. The published
// PMomentOfInertiaX/PrincipalAngle follow their own rule, which may name either moment first.
struct PrincipalMoments {
    double Major, Minor, Angle;
};
PrincipalMoments MajorAndMinor(double Ix, double Iy, double Ixy);
// The same with the angle 0 where the moments agree to 1E-12 of the larger: every axis is principal
// then, and rounding would turn them at random.
PrincipalMoments SettledMajorAndMinor(double Ix, double Iy, double Ixy);

// Section properties of a plane figure: signed area (negative for a void), perimeter, and the
// second moments and product of area about the block's own axes through the centroid, held with
// that coordinate system (OCS). Lengths are millimetres; results come back as quantity objects set
// through their millimetre members. Held by shared_ptr; Copy gives an independent block.
class InertiaBlock {
  public:
    static std::shared_ptr<InertiaBlock> Create() { return std::make_shared<InertiaBlock>(); }

    // Stores the values and sets the OCS to (Centroid, Ux, Uy); missing axes are the world x and y.
    // An axis with a non-zero z raises 2411 "InertiaBlock should be on World Coordinates System Plan XY"
    // and stores nothing; an axis of fewer than three elements raises 9 "Subscript out of range" (its z
    // is read, and the normal is their cross product). A missing Perimeter stores 0.
    void Init(double Ix, double Iy, double Ixy, const Point& Centroid, double Area,
              std::optional<double> Perimeter = std::nullopt, const Point* Ux = nullptr,
              const Point* Uy = nullptr);
    std::shared_ptr<InertiaBlock> Copy() const;

    // The OCS origin as three numbers; the let moves the whole block so its centroid lands there.
    Point Centroid();
    void Centroid(const Point& newCentroid);
    // The block's own coordinate system itself (not a copy), created on first use. Until then the
    // block keeps its origin and axes as plain numbers: the system object with its axis matrix
    // would be most of the memory of a block, and most blocks are never asked for it.
    std::shared_ptr<UCS> OCS();
    Point Ux() { return OCS()->Ux(); }
    Point Uy() { return OCS()->Uy(); }
    Point Normal() { return OCS()->Uz(); }

    std::shared_ptr<DArea> Area() const;
    std::shared_ptr<DLength> Perimeter() const;
    // True only for an area of exactly 0 (a negative-area block is not void).
    bool IsVoid() const { return area_ == 0; }

    // Moments about the block's axes, or with targetUCS about that system's axes (rotation and
    // parallel-axis rules).
    std::shared_ptr<DMomentOfInertia> MomentOfInertiaX(const std::shared_ptr<UCS>& targetUCS = nullptr);
    std::shared_ptr<DMomentOfInertia> MomentOfInertiaY(const std::shared_ptr<UCS>& targetUCS = nullptr);
    std::shared_ptr<DMomentOfInertia> ProductOfInertiaXY(const std::shared_ptr<UCS>& targetUCS = nullptr);
    // √|I / A|, negative for a negative area; 0 for an area of 0.
    std::shared_ptr<DLength> RadiusOfGyrationX(const std::shared_ptr<UCS>& targetUCS = nullptr);
    std::shared_ptr<DLength> RadiusOfGyrationY(const std::shared_ptr<UCS>& targetUCS = nullptr);

    // Principal moments and the turn (radians, in [0, pi/2)) from the block's axes to the principal
    // axes. Missing (null) arguments of GetPrincipalIP are created.
    std::shared_ptr<DMomentOfInertia> PMomentOfInertiaX();
    std::shared_ptr<DMomentOfInertia> PMomentOfInertiaY();
    std::shared_ptr<DAngle> PrincipalAngle();
    void GetPrincipalIP(std::shared_ptr<DMomentOfInertia>& Ix0, std::shared_ptr<DMomentOfInertia>& Iy0,
                        std::shared_ptr<DAngle>& Rotation);
    // A new system: the OCS turned by the principal angle.
    std::shared_ptr<UCS> PCS();

    // Setting a modulus on a block that has one scales area and moments by old / new (a new value of
    // 0 is stored without scaling).
    double ElasticModulus() const { return elasticModulus_; }
    void ElasticModulus(double value);
    bool HasNoMaterial() const { return elasticModulus_ == 0; }

    // Re-expresses the moments about axes turned by Rotation radians and turns the OCS axes.
    void RotateOCS(double Rotation);
    // Turns the whole figure about BasePoint: axes and centroid turn, moments stay.
    void RotateAll(double Rotation, const Point& BasePoint);
    void Move(const Point& Displacement);
    // A solid becomes a void and back: area and moments change sign.
    void Inverse();

    // Adds Block into this one, as the section made of both: areas add with their signs (a void,
    // of negative area, subtracts), the centroid is the area-weighted one, Block's moments are turned
    // into this block's axes and both are moved to the new centroid (parallel-axis rule), perimeters
    // add, and this block's axes and modulus are kept. Blocks of different moduli are joined as the
    // transformed section: Block's area and moments count E_Block / E_this times. Refused with 2411
    // (nothing changes) when only one of the two has a material, or when the areas cancel (no
    // centroid). Joining a block with itself doubles it.
    void Join(const InertiaBlock& Block);
    // The same as a new block; both operands stay as they are.
    std::shared_ptr<InertiaBlock> Union(const InertiaBlock& Block) const;
    // Scales the figure about BasePoint along the block's own axes by XScaleFactor and YScaleFactor
    // (area by |sx·sy|, Ix by |sx·sy|·sy², Iy by |sx·sy|·sx², Ixy by |sx·sy|·sx·sy, so its sign
    // follows a mirror and a void stays a void), then turns it about BasePoint by Rotation radians
    // and moves it by Displacement, as Loop7.Transformation does to a loop. The perimeter is scaled
    // by the mean of |sx| and |sy|: exact for equal factors, an estimate otherwise (a block does not
    // know the shape of its boundary; transform the loop and build its block again where the
    // perimeter matters). A factor of 0 raises 2411; an overflow raises 6; both leave the block.
    void Transformation(const Point& Displacement, double Rotation, double XScaleFactor, double YScaleFactor,
                        const Point& BasePoint);
    // One line of text holding everything (versioned, locale-independent, bit-exact round trip);
    // InitFromText raises 2411 naming the fault and leaves the block unchanged on bad text.
    std::string SaveToText() const;
    void InitFromText(std::string_view Text);

  private:
    // Origin and axes, world ones for a block whose system was never made.
    struct Frame {
        Point3 origin, ux, uy;
    };
    Frame FrameValues() const;
    struct Principal {
        double Ix0, Iy0, Rotation;
    };
    struct TargetFrame {
        double c, s, S, C, dx, dy;
    };
    Principal PrincipalValues() const;
    TargetFrame FrameOf(const UCS& target);
    std::shared_ptr<DLength> RadiusOf(double moment) const;
    void SetAxes(const Point& origin, const Point& ux, const Point& uy);
    // Stores origin and axes exactly as given.
    void SetFrame(const Frame& frame);

    double area_ = 0;
    double perimeter_ = 0;
    double ix_ = 0;
    double iy_ = 0;
    double ixy_ = 0;
    // Origin and axes while ocs_ is not made (world ones until set); ocs_ holds them once it is.
    Frame frame_{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    bool frameSet_ = false;
    std::shared_ptr<UCS> ocs_;
    double elasticModulus_ = 0;
};

}  // namespace tgp
