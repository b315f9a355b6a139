#include "units/DAngle.h"

namespace tgp {

double DAngle::Radians() const {
    return Get(Radian_UnitID);
}
void DAngle::Radians(double value) {
    Set(Radian_UnitID, value);
}
double DAngle::Degrees() const {
    return Get(Degree_UnitID);
}
void DAngle::Degrees(double value) {
    Set(Degree_UnitID, value);
}

}  // namespace tgp
