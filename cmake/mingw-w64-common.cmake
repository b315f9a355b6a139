# Shared part of the mingw-w64 toolchains; TGP_MINGW_TRIPLET names the target.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${TGP_MINGW_TRIPLET})

set(CMAKE_C_COMPILER ${TGP_MINGW_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${TGP_MINGW_TRIPLET}-g++)
set(CMAKE_RC_COMPILER ${TGP_MINGW_TRIPLET}-windres)
find_program(TGP_WIDL ${TGP_MINGW_TRIPLET}-widl REQUIRED)

set(CMAKE_FIND_ROOT_PATH /usr/${TGP_MINGW_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The DLL and the test client carry their C and C++ runtimes inside: no mingw DLLs to ship.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
