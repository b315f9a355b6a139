// tgp-section end to end on generated profiles of 10^5 and 10^6 vertices, as a text vertex list and
// as a DXF drawing (one LWPOLYLINE): each run starts the program on the file, as a user does. Reports
// the time, the input read per second and the program's peak resident memory per vertex.
#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

namespace {

// The outline of the profiles benchmark: a wavy circle, every fourth segment a shallow arc.
void Vertex(int i, int n, double& x, double& y, double& bulge) {
    const double a = 2 * M_PI * i / n, r = 1000 + 20 * std::sin(37 * a);
    x = r * std::cos(a);
    y = r * std::sin(a);
    bulge = i % 4 == 0 ? (i % 8 == 0 ? 0.02 : -0.02) : 0.0;
}

std::string Write(int n, bool dxf) {
    const std::string path = (std::filesystem::temp_directory_path() /
                              ("tgp_section_bench_" + std::to_string(n) + (dxf ? ".dxf" : ".txt")))
                                 .string();
    std::FILE* out = std::fopen(path.c_str(), "w");
    if (!out) return path;
    if (dxf) std::fprintf(out, "0\nSECTION\n2\nENTITIES\n0\nLWPOLYLINE\n8\n0\n90\n%d\n70\n1\n", n);
    for (int i = 0; i < n; ++i) {
        double x, y, bulge;
        Vertex(i, n, x, y, bulge);
        if (!dxf)
            std::fprintf(out, "%.17g %.17g %g\n", x, y, bulge);
        else if (bulge != 0)
            std::fprintf(out, "10\n%.17g\n20\n%.17g\n42\n%g\n", x, y, bulge);
        else
            std::fprintf(out, "10\n%.17g\n20\n%.17g\n", x, y);
    }
    if (dxf) std::fprintf(out, "0\nENDSEC\n0\nEOF\n");
    std::fclose(out);
    return path;
}

const std::string& File(int n, bool dxf) {
    static std::map<std::pair<int, bool>, std::string> files;
    auto [it, fresh] = files.try_emplace({n, dxf});
    if (fresh) it->second = Write(n, dxf);
    return it->second;
}

// Runs tgp-section on the file, its output to /dev/null; returns the child's peak resident memory
// in bytes, or -1 when it failed.
long RunSection(const std::string& path) {
    const pid_t child = fork();
    if (child == 0) {
        std::freopen("/dev/null", "w", stdout);
        execl(TGP_SECTION_EXE, "tgp-section", path.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) ||
        WEXITSTATUS(status) != 0)
        return -1;
    return usage.ru_maxrss * 1024L;
}

void SectionOfFile(benchmark::State& state, bool dxf) {
    const int n = static_cast<int>(state.range(0));
    const std::string& path = File(n, dxf);
    const auto bytes = static_cast<int64_t>(std::filesystem::file_size(path));
    long peak = RunSection(path);  // once untimed: the file into the page cache
    for (auto _ : state) {
        peak = RunSection(path);
        if (peak < 0) {
            state.SkipWithError("tgp-section failed");
            return;
        }
    }
    state.SetBytesProcessed(state.iterations() * bytes);
    state.counters["input_MB"] = static_cast<double>(bytes) / 1e6;
    state.counters["peak_B_per_vertex"] = static_cast<double>(peak) / n;
}

void TextProfile(benchmark::State& state) {
    SectionOfFile(state, false);
}
void DxfDrawing(benchmark::State& state) {
    SectionOfFile(state, true);
}
BENCHMARK(TextProfile)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2);
BENCHMARK(DxfDrawing)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2);

}  // namespace

BENCHMARK_MAIN();
