// Matrix determinant, cofactor inverse and Gauss solve, and the Gauss solve against Eigen's
// partial-pivoting LU on the same systems.
#include <benchmark/benchmark.h>

#include <Eigen/Dense>

#include <chrono>
#include <memory>
#include <random>
#include <vector>

#include "geometry/GaussElimination.h"
#include "geometry/Matrix.h"

namespace {

// Diagonally dominant, so both solvers see a well-conditioned non-singular system. The diagonal is
// kept near 1.5 so that the determinant (the product of the pivots, which the solver forms and, like
// the runtime's Double arithmetic, refuses with 6 "Overflow" when it overflows) stays finite up to
// n = 1000.
tgp::Array2DData RandomSystem(int n) {
    std::mt19937 random(12345u + static_cast<unsigned>(n));
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    tgp::Array2DData a(n, n);
    for (double& value : a.data) value = uniform(random) / n;
    for (int i = 0; i < n; ++i) a(i, i) += 1.5;
    return a;
}

std::vector<double> RandomRightHandSide(int n) {
    std::mt19937 random(777u + static_cast<unsigned>(n));
    std::uniform_real_distribution<double> uniform(-10.0, 10.0);
    std::vector<double> y(static_cast<std::size_t>(n));
    for (double& value : y) value = uniform(random);
    return y;
}

std::shared_ptr<tgp::Matrix> MakeMatrix(int n) {
    auto m = std::make_shared<tgp::Matrix>();
    m->Array2D(RandomSystem(n));
    return m;
}

// Storing an element (even the same value) clears the determinant and inverse caches, so every
// iteration does the full work.
void ClearCaches(tgp::Matrix& m) {
    m.LetItem(0, 0, m.Item(0, 0));
}

void BM_Det(benchmark::State& state) {
    auto m = MakeMatrix(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        ClearCaches(*m);
        benchmark::DoNotOptimize(m->Det());
    }
}
BENCHMARK(BM_Det)->Arg(3)->Arg(10)->Arg(50)->Arg(200);

void BM_SolveWithGaussMethod(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    auto m = MakeMatrix(n);
    const auto y = RandomRightHandSide(n);
    for (auto _ : state) benchmark::DoNotOptimize(m->SolveWithGaussMethod(y));
}
BENCHMARK(BM_SolveWithGaussMethod)->Arg(3)->Arg(10)->Arg(50)->Arg(200);

void BM_Inverse(benchmark::State& state) {
    auto m = MakeMatrix(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        ClearCaches(*m);
        benchmark::DoNotOptimize(m->Inverse());
    }
}
BENCHMARK(BM_Inverse)->Arg(3)->Arg(10)->Arg(50)->Unit(benchmark::kMillisecond);

// Times `gaussSolve` against Eigen's factorise-and-solve of the same system, one after the other in
// every iteration. The reported time is the Gauss solve's; counter "eigen_ms" is Eigen's per
// iteration and "gauss_over_eigen" the ratio of the two totals.
template <typename GaussSolve>
void CompareWithEigenLU(benchmark::State& state, const tgp::Array2DData& a, const std::vector<double>& y,
                        GaussSolve gaussSolve) {
    using Clock = std::chrono::steady_clock;
    const int n = a.rows;
    Eigen::MatrixXd eigenA(n, n);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) eigenA(i, j) = a(i, j);
    const Eigen::VectorXd eigenY = Eigen::Map<const Eigen::VectorXd>(y.data(), n);

    double gaussSeconds = 0;
    double eigenSeconds = 0;
    for (auto _ : state) {
        const auto start = Clock::now();
        gaussSolve();
        const auto middle = Clock::now();
        Eigen::VectorXd x = Eigen::PartialPivLU<Eigen::MatrixXd>(eigenA).solve(eigenY);
        benchmark::DoNotOptimize(x.data());
        const auto end = Clock::now();
        const double gauss = std::chrono::duration<double>(middle - start).count();
        gaussSeconds += gauss;
        eigenSeconds += std::chrono::duration<double>(end - middle).count();
        state.SetIterationTime(gauss);
    }
    state.counters["eigen_ms"] = 1000 * eigenSeconds / static_cast<double>(state.iterations());
    state.counters["gauss_over_eigen"] = gaussSeconds / eigenSeconds;
}

// SolveWithGaussMethod as a script calls it (the solve result is not cached).
void BM_GaussAgainstEigenLU(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    auto m = MakeMatrix(n);
    const auto y = RandomRightHandSide(n);
    CompareWithEigenLU(state, m->Array2D(), y, [&] { benchmark::DoNotOptimize(m->SolveWithGaussMethod(y)); });
}
BENCHMARK(BM_GaussAgainstEigenLU)
    ->Arg(200)
    ->Arg(500)
    ->Arg(1000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// The same comparison with the elimination's tiles held to SSE2, the instruction set this build
// gives Eigen: elimination and back substitution, as SolveWithGaussMethod does them.
void BM_GaussSse2AgainstEigenLU(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const tgp::Array2DData a = RandomSystem(n);
    const auto y = RandomRightHandSide(n);
    tgp::GaussElimination::Blocking sse2 = tgp::GaussElimination::kMachineBlocking;
    sse2.avx = false;
    CompareWithEigenLU(state, a, y, [&] {
        std::vector<double> work = a.data, rhs = y;
        tgp::GaussElimination(work.data(), n, n, &rhs, sse2).Run();
        benchmark::DoNotOptimize(tgp::BackSubstitute(work, n, n, rhs));
    });
}
BENCHMARK(BM_GaussSse2AgainstEigenLU)->Arg(500)->Arg(1000)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
