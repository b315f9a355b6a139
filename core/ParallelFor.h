#pragma once

#include <cstddef>
#include <functional>

namespace tgp {

// The cores the runtime offers threads on: 1 where it has no standard threads (mingw-w64's win32
// model, which the Windows server's runtime is built with).
unsigned Cores();

// work(begin, end) on consecutive parts of [0, n), at once on the cores, each part at least
// `smallest` long (one part, on the calling thread, when n is smaller than two of them or there is
// one core). work must not throw; each part is handed to one call.
void ParallelFor(std::size_t n, const std::function<void(std::size_t, std::size_t)>& work,
                 std::size_t smallest = 1);

}  // namespace tgp
