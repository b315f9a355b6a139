#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "units/DAngle.h"
#include "units/DArea.h"
#include "units/DForce.h"
#include "units/DForceDensity.h"
#include "units/DForceMoment.h"
#include "units/DForcePerArea.h"
#include "units/DForcePerLine.h"
#include "units/DLength.h"
#include "units/DMomentOfInertia.h"
#include "units/DPressure.h"
#include "units/DVolume.h"
#include "units/Quantity.h"
#include "units/UnitArg.h"

namespace tgp {

// The quantity service: unit symbols, unit recognition and one factory per quantity class. It keeps
// no state, so every member is static (the automation layer serves it as a global object). The
// dialog members (EditEnum, EditQuantity, EditUnitSetting) belong to the editing layer above.
class Geometry_EXE {
  public:
    // The symbol of a unit of a kind; fails with 2411 "GetUnitString no found".
    static std::string GetUnitString(DimensionObjectType DimensionType, const UnitArg& Unit);

    // The unit named in the text for the kind of the quantity; -1 when none is found.
    static int16_t GetUnitID(std::string_view ValueStr, const Quantity& DObject);

    // New quantities holding Value in Unit (unit id 0 when omitted); an id that is not a unit of the
    // kind fails with 24111 and creates nothing.
    static std::shared_ptr<DAngle> GetDAngle(double Value, int16_t Unit = 0);
    static std::shared_ptr<DLength> GetDLength(double Value, int16_t Unit = 0);
    static std::shared_ptr<DArea> GetDArea(double Value, int16_t Unit = 0);
    static std::shared_ptr<DVolume> GetDVolume(double Value, int16_t Unit = 0);
    static std::shared_ptr<DForce> GetDForce(double Value, int16_t Unit = 0);
    static std::shared_ptr<DForceDensity> GetDForceDensity(double Value, int16_t Unit = 0);
    static std::shared_ptr<DForceMoment> GetDForceMoment(double Value, int16_t Unit = 0);
    static std::shared_ptr<DForcePerArea> GetDForcePerArea(double Value, int16_t Unit = 0);
    static std::shared_ptr<DForcePerLine> GetDForcePerLine(double Value, int16_t Unit = 0);
    static std::shared_ptr<DMomentOfInertia> GetDMomentOfInertia(double Value, int16_t Unit = 0);
    static std::shared_ptr<DPressure> GetDPressure(double Value, int16_t Unit = 0);
};

}  // namespace tgp
