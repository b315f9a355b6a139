#pragma once

#include "units/QuantityOf.h"

namespace tgp {

// A area, stored in square millimetres; each unit is the square of the length unit of the same name.
class DArea final : public QuantityOf<DArea, DAreaObject> {
public:
    double Millimetres() const;
    void Millimetres(double value);
    double Centimetres() const;
    void Centimetres(double value);
    double Decimetres() const;
    void Decimetres(double value);
    double Metres() const;
    void Metres(double value);
    double Inches() const;
    void Inches(double value);
    double Feet() const;
    void Feet(double value);
};

}  // namespace tgp
