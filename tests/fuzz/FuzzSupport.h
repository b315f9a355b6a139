#pragma once
// Shared by the libFuzzer harnesses: reading numbers of every kind, NaN, infinities and denormals
// included, out of the fuzzer's bytes, and calls whose library errors are expected.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "core/Error.h"

namespace tgp::fuzz {

// Runs f; the library's own errors are an answer, anything else (a crash, another exception) is not.
template <class F>
void Try(F&& f) {
    try {
        f();
    } catch (const tgp::Error&) {
    }
}

// Any double at all: the raw bits, so NaN, infinities, denormals and huge values all come up.
inline double AnyDouble(FuzzedDataProvider& data) {
    const std::uint64_t bits = data.ConsumeIntegral<std::uint64_t>();
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// Mostly ordinary numbers (small integers and fractions, where geometry happens), sometimes any.
inline double SomeDouble(FuzzedDataProvider& data) {
    switch (data.ConsumeIntegralInRange<int>(0, 3)) {
        case 0: return AnyDouble(data);
        case 1: return data.ConsumeIntegralInRange<int>(-20, 20);
        case 2: return data.ConsumeIntegralInRange<int>(-2000, 2000) / 64.0;
        default: return data.ConsumeFloatingPoint<double>();
    }
}

inline std::vector<double> SomeDoubles(FuzzedDataProvider& data, std::size_t count) {
    std::vector<double> values(count);
    for (double& v : values) v = SomeDouble(data);
    return values;
}

}  // namespace tgp::fuzz
