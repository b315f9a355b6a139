#pragma once

#include <cstddef>
#include <functional>

namespace tgp {

// The cores the program may run threads on (standard threads, or Windows threads where mingw-w64's
// win32 model has no standard ones).
unsigned Cores();

// work(begin, end) on consecutive parts of [0, n), at once on the cores, each part at least
// `smallest` long (one part, on the calling thread, when n is smaller than two of them or there is
// one core). work must not throw; each part is handed to one call.
void ParallelFor(std::size_t n, const std::function<void(std::size_t, std::size_t)>& work,
                 std::size_t smallest = 1);

}  // namespace tgp
