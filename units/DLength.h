#pragma once

#include "units/QuantityOf.h"

namespace tgp {

// A length, stored in millimetres.
class DLength final : public QuantityOf<DLength, DLengthObject> {
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
