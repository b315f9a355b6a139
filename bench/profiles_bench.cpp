// Section properties of large loops (self-intersection check included) against GEOS validity, area
// and centroid of the same outline with its arcs replaced by chords. After the runs a summary prints
// the time per vertex and the Loop7 / GEOS ratio for every size.

#include <benchmark/benchmark.h>
#include <geos_c.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "profiles/Loop7.h"

namespace {

// A wavy circle of n vertices, every fourth segment a shallow arc bulging alternately out and in.
struct Outline {
    std::vector<double> xy;
    std::vector<double> bulges;
};

const Outline& WavyCircle(int n) {
    static std::map<int, Outline> cache;
    auto [it, fresh] = cache.try_emplace(n);
    if (!fresh) return it->second;
    Outline& o = it->second;
    o.xy.reserve(2 * static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        const double a = 2 * M_PI * i / n, r = 1000 + 20 * std::sin(37 * a);
        o.xy.push_back(r * std::cos(a));
        o.xy.push_back(r * std::sin(a));
        o.bulges.push_back(i % 4 == 0 ? (i % 8 == 0 ? 0.02 : -0.02) : 0.0);
    }
    return o;
}

// Section properties of a loop already built from the outline: the self-intersection sweep, the
// segment integrals and the block. A fresh loop is built (untimed) for every iteration, since the
// loop keeps its block once computed.
void LoopInertiaBlock(benchmark::State& state) {
    const Outline& o = WavyCircle(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        auto loop = tgp::Loop7::Create();
        loop->InitFromCoordinates(o.xy, o.bulges);
        state.ResumeTiming();
        benchmark::DoNotOptimize(loop->InertiaBlock()->PMomentOfInertiaX()->Millimetres());
        state.PauseTiming();
        loop.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The same with the loop built from coordinates and bulges inside the timing.
void LoopBuildAndInertiaBlock(benchmark::State& state) {
    const Outline& o = WavyCircle(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        auto loop = tgp::Loop7::Create();
        loop->InitFromCoordinates(o.xy, o.bulges);
        benchmark::DoNotOptimize(loop->InertiaBlock()->PMomentOfInertiaX()->Millimetres());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// GEOS on the outline with chords for arcs: validity (its self-intersection test), area and
// centroid of a polygon built (untimed) from the same vertices.
void GeosValidAreaCentroid(benchmark::State& state) {
    const Outline& o = WavyCircle(static_cast<int>(state.range(0)));
    GEOSContextHandle_t geos = GEOS_init_r();
    const auto n = static_cast<unsigned>(o.bulges.size());
    GEOSCoordSequence* ring = GEOSCoordSeq_create_r(geos, n + 1, 2);
    for (unsigned i = 0; i <= n; ++i) {
        const unsigned k = i % n;
        GEOSCoordSeq_setXY_r(geos, ring, i, o.xy[2 * k], o.xy[2 * k + 1]);
    }
    GEOSGeometry* polygon =
        GEOSGeom_createPolygon_r(geos, GEOSGeom_createLinearRing_r(geos, ring), nullptr, 0);
    for (auto _ : state) {
        double area = 0;
        benchmark::DoNotOptimize(GEOSisValid_r(geos, polygon));
        GEOSArea_r(geos, polygon, &area);
        GEOSGeometry* centroid = GEOSGetCentroid_r(geos, polygon);
        benchmark::DoNotOptimize(area);
        GEOSGeom_destroy_r(geos, centroid);
    }
    GEOSGeom_destroy_r(geos, polygon);
    GEOS_finish_r(geos);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(LoopInertiaBlock)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(LoopBuildAndInertiaBlock)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(GeosValidAreaCentroid)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond);

// Keeps the mean time of every run so that the summary can set the two libraries side by side.
class SummaryReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.iterations == 0) continue;
            const std::string name = run.benchmark_name();
            const auto slash = name.find('/');
            seconds_[name.substr(0, slash)][std::stol(name.substr(slash + 1))] =
                run.real_accumulated_time / static_cast<double>(run.iterations);
        }
    }

    void PrintSummary() const {
        const auto loop = seconds_.find("LoopInertiaBlock"),
                   build = seconds_.find("LoopBuildAndInertiaBlock");
        const auto geos = seconds_.find("GeosValidAreaCentroid");
        if (loop == seconds_.end() || build == seconds_.end() || geos == seconds_.end()) return;
        std::printf("\n%10s %12s %12s %12s %16s %12s %14s\n", "vertices", "Loop7 ms", "+build ms", "GEOS ms",
                    "Loop7 ns/vertex", "Loop7/GEOS", "+build/GEOS");
        for (const auto& [n, t] : loop->second) {
            const auto b = build->second.find(n);
            const auto g = geos->second.find(n);
            if (g == geos->second.end() || b == build->second.end()) continue;
            std::printf("%10ld %12.3f %12.3f %12.3f %16.1f %12.2f %14.2f\n", n, t * 1e3, b->second * 1e3,
                        g->second * 1e3, t * 1e9 / static_cast<double>(n), t / g->second,
                        b->second / g->second);
        }
    }

  private:
    std::map<std::string, std::map<long, double>> seconds_;
};

// The peak memory of building a loop of n vertices from coordinates and bulges and computing its
// block, per vertex: measured in a child process (its peak resident size before and after), so
// that the benchmarks' own allocations do not count. -1 when the child failed.
double PeakBytesPerVertex(int n) {
    const Outline& o = WavyCircle(n);  // made before the child starts: its memory is not counted
    int channel[2];
    if (pipe(channel) != 0) return -1;
    const pid_t child = fork();
    if (child == 0) {
        rusage before{}, after{};
        getrusage(RUSAGE_SELF, &before);
        auto loop = tgp::Loop7::Create();
        loop->InitFromCoordinates(o.xy, o.bulges);
        benchmark::DoNotOptimize(loop->InertiaBlock()->Area()->Millimetres());
        getrusage(RUSAGE_SELF, &after);
        const double perVertex = (after.ru_maxrss - before.ru_maxrss) * 1024.0 / n;
        [[maybe_unused]] const auto written = write(channel[1], &perVertex, sizeof perVertex);
        _exit(0);
    }
    close(channel[1]);
    double perVertex = -1;
    if (child < 0 || read(channel[0], &perVertex, sizeof perVertex) != sizeof perVertex) perVertex = -1;
    close(channel[0]);
    if (child > 0) waitpid(child, nullptr, 0);
    return perVertex;
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintSummary();
    std::printf("\npeak memory of building a loop of 1000000 vertices and its block: %.0f bytes per vertex\n",
                PeakBytesPerVertex(1000000));
    benchmark::Shutdown();
    return 0;
}
