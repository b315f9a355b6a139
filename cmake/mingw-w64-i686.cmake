# Cross-compiles for Windows with mingw-w64 (i686). Usage:
#   cmake -S . -B build/win32 -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-i686.cmake
set(TGP_MINGW_TRIPLET i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64-common.cmake)
# Doubles rounded as doubles (SSE2), not in the x87's extended registers: the 32-bit server then
# computes the same bits as the 64-bit one.
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")
