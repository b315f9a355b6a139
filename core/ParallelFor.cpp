#include "core/ParallelFor.h"

#include <algorithm>
#include <vector>

// mingw-w64's win32 thread model, which the Windows server is built with, has no standard threads:
// there the parts run on Windows threads.
#if defined(__GLIBCXX__) && !defined(_GLIBCXX_HAS_GTHREADS)
#define TGP_WINDOWS_THREADS 1
#include <windows.h>
#else
#include <thread>
#endif

namespace tgp {

namespace {

using Work = std::function<void(std::size_t, std::size_t)>;

// Part k of `parts` of [0, n).
struct Part {
    const Work* work;
    std::size_t begin, end;
    Part(const Work& w, std::size_t n, std::size_t k, std::size_t parts)
        : work(&w), begin(n * k / parts), end(n * (k + 1) / parts) {}
    void Run() const { (*work)(begin, end); }
};

#ifdef TGP_WINDOWS_THREADS
DWORD WINAPI RunPart(LPVOID part) {
    static_cast<const Part*>(part)->Run();
    return 0;
}

// Parts 1 and on on threads of their own (here when Windows gives none), part 0 on the caller's.
void RunParts(const Work& work, std::size_t n, std::size_t parts) {
    std::vector<Part> others;
    for (std::size_t k = 1; k < parts; ++k) others.emplace_back(work, n, k, parts);
    std::vector<HANDLE> threads;
    for (Part& part : others) {
        HANDLE thread = CreateThread(nullptr, 0, RunPart, &part, 0, nullptr);
        if (thread)
            threads.push_back(thread);
        else
            part.Run();
    }
    Part(work, n, 0, parts).Run();
    for (HANDLE thread : threads) {
        WaitForSingleObject(thread, INFINITE);
        CloseHandle(thread);
    }
}
#else
void RunParts(const Work& work, std::size_t n, std::size_t parts) {
    std::vector<std::jthread> threads;
    for (std::size_t k = 1; k < parts; ++k)
        threads.emplace_back([part = Part(work, n, k, parts)] { part.Run(); });
    Part(work, n, 0, parts).Run();
}
#endif

}  // namespace

unsigned Cores() {
#ifdef TGP_WINDOWS_THREADS
    SYSTEM_INFO info;
    GetSystemInfo(&info);
    return std::max<unsigned>(1, info.dwNumberOfProcessors);
#else
    return std::max(1u, std::thread::hardware_concurrency());
#endif
}

void ParallelFor(std::size_t n, const Work& work, std::size_t smallest) {
    const std::size_t parts = std::min<std::size_t>(Cores(), n / std::max<std::size_t>(smallest, 1));
    if (parts > 1)
        RunParts(work, n, parts);
    else if (n > 0)
        work(0, n);
}

}  // namespace tgp
