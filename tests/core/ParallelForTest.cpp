// Parts of a range on the cores: every index handed over once, small ranges on the caller's thread.

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "core/ParallelFor.h"

namespace tgp {
namespace {

TEST(ParallelFor, EveryIndexOnceInConsecutiveParts) {
    for (const std::size_t n : {0u, 1u, 2u, 7u, 1000u}) {
        std::vector<std::atomic<int>> seen(n);
        std::atomic<int> parts = 0;
        ParallelFor(n, [&](std::size_t begin, std::size_t end) {
            EXPECT_LT(begin, end);
            ++parts;
            for (std::size_t i = begin; i < end; ++i) ++seen[i];
        });
        for (std::size_t i = 0; i < n; ++i) EXPECT_EQ(seen[i], 1) << "n " << n << ", index " << i;
        EXPECT_LE(parts, static_cast<int>(std::max(1u, Cores())));
    }
    const auto caller = std::this_thread::get_id();
    ParallelFor(
        100,
        [&](std::size_t begin, std::size_t end) {
            EXPECT_EQ(std::this_thread::get_id(), caller) << "parts of at least 64: one part";
            EXPECT_EQ(end - begin, 100u);
        },
        64);
}

}  // namespace
}  // namespace tgp
