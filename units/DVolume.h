#pragma once

#include "units/QuantityOf.h"

namespace tgp {

// A volume, stored as a raw value and the cubic-millimetre factor of the unit it was written in;
// it has no text form.
class DVolume final : public QuantityOf<DVolume, DVolumeObject> {
  public:
    double Millimetres() const;
    void Millimetres(double value);
    double Centimetres() const;
    void Centimetres(double value);
    double Litres() const;
    void Litres(double value);
    double Metres() const;
    void Metres(double value);
    double Inches() const;
    void Inches(double value);
    double Feet() const;
    void Feet(double value);
};

}  // namespace tgp
