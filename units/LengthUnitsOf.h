#pragma once

#include <memory>

#include "units/QuantityOf.h"

namespace tgp {

// The unit properties named after a length unit, shared by lengths, areas and second moments of
// area (the area or fourth-power unit follows from the kind).
template <class Derived, DimensionObjectType Kind>
class LengthUnitsOf : public QuantityOf<Derived, Kind> {
  public:
    double Millimetres() const { return this->Get(mm_UnitID); }
    void Millimetres(double value) { this->Set(mm_UnitID, value); }
    double Centimetres() const { return this->Get(cm_UnitID); }
    void Centimetres(double value) { this->Set(cm_UnitID, value); }
    double Decimetres() const { return this->Get(dm_UnitID); }
    void Decimetres(double value) { this->Set(dm_UnitID, value); }
    double Metres() const { return this->Get(m_UnitID); }
    void Metres(double value) { this->Set(m_UnitID, value); }
    double Inches() const { return this->Get(in_UnitID); }
    void Inches(double value) { this->Set(in_UnitID, value); }
    double Feet() const { return this->Get(ft_UnitID); }
    void Feet(double value) { this->Set(ft_UnitID, value); }
};

// A new quantity of a kind with length units (length, area, section modulus, second moment) from its
// value in millimetres to the kind's power.
template <class Q>
std::shared_ptr<Q> FromMillimetres(double value) {
    auto quantity = std::make_shared<Q>();
    quantity->Millimetres(value);
    return quantity;
}

}  // namespace tgp
