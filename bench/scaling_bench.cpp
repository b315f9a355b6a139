// tgp-section end to end on drawings of many outlines: generated inputs at growing sizes, each run
// as a user runs it (a child process, `--quiet`, output to /dev/null). Prints a table: time, time and
// peak memory per outline (per vertex for the star) and the growth factor from each size to the next.
//
//   tgp_scaling_bench [--max N] [--only NAME] [--keep]
//
// Inputs: closed 5 x 5 squares on a 10 grid, as separate outlines of a DXF (`dxf-squares`) or of a
// text file (`text-profiles`, one profile each), as holes of one plate (`dxf-plate`, `text-plate`),
// and one star outline of radial teeth (`star`, sizes in vertices).
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace {

struct Input {
    const char* name;
    const char* unit;  // what a size counts, plural
    std::vector<long> sizes;
    void (*write)(std::FILE*, long);
    const char* extension;
};

long GridSide(long n) {
    return static_cast<long>(std::ceil(std::sqrt(static_cast<double>(n))));
}

void DxfSquare(std::FILE* out, double x, double y, double side) {
    std::fprintf(
        out,
        "0\nLWPOLYLINE\n8\n0\n90\n4\n70\n1\n10\n%g\n20\n%g\n10\n%g\n20\n%g\n10\n%g\n20\n%g\n10\n%g\n20\n%g\n",
        x, y, x + side, y, x + side, y + side, x, y + side);
}

void TextSquare(std::FILE* out, double x, double y, double side) {
    std::fprintf(out, "%g %g\n%g %g\n%g %g\n%g %g\n", x, y, x + side, y, x + side, y + side, x, y + side);
}

// n squares, row by row on a 10 grid.
template <class Each>
void Grid(long n, Each each) {
    const long side = GridSide(n);
    for (long i = 0; i < n; ++i)
        each(10.0 * static_cast<double>(i % side), 10.0 * static_cast<double>(i / side));
}

void DxfSquares(std::FILE* out, long n) {
    std::fprintf(out, "0\nSECTION\n2\nENTITIES\n");
    Grid(n, [&](double x, double y) { DxfSquare(out, x, y, 5); });
    std::fprintf(out, "0\nENDSEC\n0\nEOF\n");
}

// One plate around n - 1 square holes.
void DxfPlate(std::FILE* out, long n) {
    std::fprintf(out, "0\nSECTION\n2\nENTITIES\n");
    const double width = 10.0 * static_cast<double>(GridSide(n - 1)) + 5;
    DxfSquare(out, -5, -5, width);
    Grid(n - 1, [&](double x, double y) { DxfSquare(out, x, y, 5); });
    std::fprintf(out, "0\nENDSEC\n0\nEOF\n");
}

void TextPlate(std::FILE* out, long n) {
    const double width = 10.0 * static_cast<double>(GridSide(n - 1)) + 5;
    std::fprintf(out, "profile plate\n");
    TextSquare(out, -5, -5, width);
    Grid(n - 1, [&](double x, double y) {
        std::fprintf(out, "loop\n");
        TextSquare(out, x, y, 5);
    });
}

void TextProfiles(std::FILE* out, long n) {
    long k = 0;
    Grid(n, [&](double x, double y) {
        std::fprintf(out, "profile p%ld\n", ++k);
        TextSquare(out, x, y, 5);
        std::fprintf(out, "end\n");
    });
}

// Teeth between radii 500 and 1000: every segment spans a wide range of x and of y.
void Star(std::FILE* out, long n) {
    std::fprintf(out, "profile star\n");
    for (long i = 0; i < n; ++i) {
        const double a = 2 * M_PI * static_cast<double>(i) / static_cast<double>(n), r = i % 2 ? 500 : 1000;
        std::fprintf(out, "%.17g %.17g\n", r * std::cos(a), r * std::sin(a));
    }
}

struct Run {
    double seconds = -1;
    long peakBytes = 0;
};

// The best of a few runs of tgp-section on the file (one for slow ones).
Run Measure(const std::string& path) {
    Run best;
    for (int attempt = 0; attempt < 3; ++attempt) {
        std::fflush(stdout);  // or the child's copy of the buffer is written again
        const auto start = std::chrono::steady_clock::now();
        const pid_t child = fork();
        if (child == 0) {
            if (!std::freopen("/dev/null", "w", stdout)) _exit(126);
            execl(TGP_SECTION_EXE, "tgp-section", "--quiet", path.c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
        int status = 0;
        rusage usage{};
        if (child < 0 || wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) ||
            WEXITSTATUS(status) > 2)
            return {};
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        if (best.seconds < 0 || seconds < best.seconds) best = {seconds, usage.ru_maxrss * 1024L};
        if (seconds > 2) break;
    }
    return best;
}

}  // namespace

int main(int argc, char** argv) {
    long max = 1000000;
    std::string only;
    bool keep = false;
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--max") && i + 1 < argc)
            max = std::atol(argv[++i]);
        else if (!std::strcmp(argv[i], "--only") && i + 1 < argc)
            only = argv[++i];
        else if (!std::strcmp(argv[i], "--keep"))
            keep = true;
        else {
            std::fprintf(stderr, "usage: tgp_scaling_bench [--max N] [--only NAME] [--keep]\n");
            return 2;
        }
    }
    const Input inputs[] = {
        {"dxf-squares", "outlines", {1000, 10000, 100000}, DxfSquares, ".dxf"},
        {"dxf-plate", "outlines", {1000, 10000, 100000}, DxfPlate, ".dxf"},
        {"text-plate", "outlines", {1000, 10000, 100000}, TextPlate, ".txt"},
        {"text-profiles", "outlines", {1000, 10000, 100000}, TextProfiles, ".txt"},
        {"star", "vertices", {10000, 100000, 1000000}, Star, ".txt"},
    };
    std::printf("| input | size | time | per item | peak memory | peak per item | growth |\n");
    std::printf("|---|---:|---:|---:|---:|---:|---:|\n");
    int failures = 0;
    for (const Input& input : inputs) {
        if (!only.empty() && only != input.name) continue;
        double previous = -1;
        for (long n : input.sizes) {
            if (n > max) continue;
            const std::string path =
                (std::filesystem::temp_directory_path() /
                 ("tgp_scaling_" + std::string(input.name) + "_" + std::to_string(n) + input.extension))
                    .string();
            if (std::FILE* out = std::fopen(path.c_str(), "w")) {
                input.write(out, n);
                std::fclose(out);
            }
            const Run run = Measure(path);
            if (!keep) std::filesystem::remove(path);
            if (run.seconds < 0) {
                std::printf("| %s | %ld | failed | | | | |\n", input.name, n);
                ++failures;
                continue;
            }
            std::string growth = previous > 0 ? std::to_string(run.seconds / previous).substr(0, 4) : "";
            std::printf("| %s | %ld %s | %.3f s | %.2f µs | %.1f MB | %ld B | %s |\n", input.name, n,
                        input.unit, run.seconds, 1e6 * run.seconds / static_cast<double>(n),
                        static_cast<double>(run.peakBytes) / 1e6, run.peakBytes / n, growth.c_str());
            std::fflush(stdout);
            previous = run.seconds;
        }
    }
    return failures == 0 ? 0 : 1;
}
