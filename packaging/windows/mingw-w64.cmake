# SPDX-License-Identifier: GPL-3.0-or-later
# Toolchain file: 64-bit Windows programs on Linux, with Debian's g++-mingw-w64-x86-64-posix.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(tessaly_triplet x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${tessaly_triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${tessaly_triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${tessaly_triplet}-windres)
set(CMAKE_AR ${tessaly_triplet}-gcc-ar-posix)
set(CMAKE_RANLIB ${tessaly_triplet}-gcc-ranlib-posix)

# Tests run on this machine all the same.
set(CMAKE_CROSSCOMPILING_EMULATOR wine)

# A program is one file: no DLL of the compiler goes with it.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -s")

# Headers and libraries come from the compiler's own folder and from those that the build script
# names; programs that run during the build come from this machine.
list(APPEND CMAKE_FIND_ROOT_PATH /usr/${tessaly_triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
