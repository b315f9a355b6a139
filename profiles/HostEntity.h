#pragma once

#include "geometry/Point.h"

namespace tgp {

// The CAD entity a loop was read from, as far as the loop uses it: the loop moves it along when it
// is itself moved. The automation layer wraps a host object (late-bound) in this interface.
class HostEntity {
  public:
    virtual ~HostEntity() = default;
    // Moves the entity by the vector from FromPoint to ToPoint.
    virtual void Move(const Point& FromPoint, const Point& ToPoint) = 0;
};

}  // namespace tgp
