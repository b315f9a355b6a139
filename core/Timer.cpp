#include "core/Timer.h"

#include <chrono>

namespace tgp {

double Timer() {
    using namespace std::chrono;
    const auto now = system_clock::now();
    const auto since_midnight = now - floor<days>(now);
    return duration<double>(since_midnight).count();
}

}  // namespace tgp
