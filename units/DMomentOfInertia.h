#pragma once

#include "units/QuantityOf.h"

namespace tgp {

// A second moment of area, stored as a raw value and the mm⁴ factor of the unit it was written in.
class DMomentOfInertia final : public QuantityOf<DMomentOfInertia, DMomentOfInertiaObject> {
public:
    double Millimetres() const;
    void Millimetres(double value);
    double Centimetres() const;
    void Centimetres(double value);
    double Inches() const;
    void Inches(double value);
    double Decimetres() const;
    void Decimetres(double value);
    double Metres() const;
    void Metres(double value);
    double Feet() const;
    void Feet(double value);
};

}  // namespace tgp
