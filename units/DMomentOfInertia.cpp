#include "units/DMomentOfInertia.h"

namespace tgp {

double DMomentOfInertia::Millimetres() const { return Get(mm_UnitID); }
void DMomentOfInertia::Millimetres(double value) { Set(mm_UnitID, value); }
double DMomentOfInertia::Centimetres() const { return Get(cm_UnitID); }
void DMomentOfInertia::Centimetres(double value) { Set(cm_UnitID, value); }
double DMomentOfInertia::Inches() const { return Get(in_UnitID); }
void DMomentOfInertia::Inches(double value) { Set(in_UnitID, value); }
double DMomentOfInertia::Decimetres() const { return Get(dm_UnitID); }
void DMomentOfInertia::Decimetres(double value) { Set(dm_UnitID, value); }
double DMomentOfInertia::Metres() const { return Get(m_UnitID); }
void DMomentOfInertia::Metres(double value) { Set(m_UnitID, value); }
double DMomentOfInertia::Feet() const { return Get(ft_UnitID); }
void DMomentOfInertia::Feet(double value) { Set(ft_UnitID, value); }

}  // namespace tgp
