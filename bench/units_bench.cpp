// Cost of a unit conversion through a quantity (Value let + get) against the bare arithmetic, and of
// reading a quantity from text.
#include <benchmark/benchmark.h>

#include "units/DForce.h"
#include "units/DLength.h"
#include "units/DMomentOfInertia.h"
#include "units/DPressure.h"

namespace {

void RawMultiplyDivide(benchmark::State& state) {
    double value = 1234.5;
    double factor = 25.4;
    for (auto _ : state) {
        benchmark::DoNotOptimize(factor);
        const double stored = value * factor;
        benchmark::DoNotOptimize(stored);
        value = stored / factor;
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(RawMultiplyDivide);

// A one-factor unit (inches of a length).
void LengthValueLetGet(benchmark::State& state) {
    tgp::DLength length;
    double value = 1234.5;
    for (auto _ : state) {
        length.Value(tgp::in_UnitID, value);
        value = length.Value(tgp::in_UnitID);
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(LengthValueLetGet);

// A unit that goes through another unit's property (ksi via psi).
void PressureViaUnitLetGet(benchmark::State& state) {
    tgp::DPressure pressure;
    double value = 2.5;
    for (auto _ : state) {
        pressure.Value(tgp::kip_in_unitID, value);
        value = pressure.Value(tgp::kip_in_unitID);
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(PressureViaUnitLetGet);

// The raw-and-factor pair with four divisions on read (inches⁴).
void MomentOfInertiaLetGet(benchmark::State& state) {
    tgp::DMomentOfInertia inertia;
    double value = 3.5;
    for (auto _ : state) {
        inertia.Value(tgp::in_UnitID, value);
        value = inertia.Value(tgp::in_UnitID);
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(MomentOfInertiaLetGet);

void ForceValueFromString(benchmark::State& state) {
    tgp::DForce force;
    for (auto _ : state) {
        force.ValueFromString("12.5 kip");
        benchmark::DoNotOptimize(force.KN());
    }
}
BENCHMARK(ForceValueFromString);

// The worst case of the recogniser: the unit is found at the last id.
void PressureValueFromStringLastUnit(benchmark::State& state) {
    tgp::DPressure pressure;
    for (auto _ : state) {
        pressure.ValueFromString("2500 Pa");
        benchmark::DoNotOptimize(pressure.KN_m2());
    }
}
BENCHMARK(PressureValueFromStringLastUnit);

void LengthValueToString(benchmark::State& state) {
    tgp::DLength length;
    length.Millimetres(1234.5);
    for (auto _ : state) benchmark::DoNotOptimize(length.ValueToString(tgp::cm_UnitID));
}
BENCHMARK(LengthValueToString);

}  // namespace

BENCHMARK_MAIN();
