#pragma once

namespace tgp {

// Seconds since local midnight, with sub-second resolution, like the automation runtime's Timer.
// Elapsed times are differences of two readings and are not corrected across midnight.
double Timer();

}  // namespace tgp
