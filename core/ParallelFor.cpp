#include "core/ParallelFor.h"

#include <algorithm>
#include <thread>
#include <vector>

namespace tgp {

#if defined(__GLIBCXX__) && !defined(_GLIBCXX_HAS_GTHREADS)
unsigned Cores() {
    return 1;
}
void ParallelFor(std::size_t n, const std::function<void(std::size_t, std::size_t)>& work, std::size_t) {
    if (n > 0) work(0, n);
}
#else
unsigned Cores() {
    return std::max(1u, std::thread::hardware_concurrency());
}
void ParallelFor(std::size_t n, const std::function<void(std::size_t, std::size_t)>& work,
                 std::size_t smallest) {
    const std::size_t parts = std::min<std::size_t>(Cores(), n / std::max<std::size_t>(smallest, 1));
    if (parts <= 1) {
        if (n > 0) work(0, n);
        return;
    }
    std::vector<std::jthread> threads;
    for (std::size_t k = 1; k < parts; ++k)
        threads.emplace_back([&, k] { work(n * k / parts, n * (k + 1) / parts); });
    work(0, n / parts);
}
#endif

}  // namespace tgp
