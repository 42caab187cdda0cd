# Cross-compiling the Qt-free part of Rainfold for 64-bit Windows with MinGW-w64 (the POSIX-threads
# compilers: the win32-threads ones have no std::thread). The programs are linked statically so
# that they run on a bare Windows, or under Wine, with no DLL beside them.
#
#     cmake -S . -B build-windows -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(RAINFOLD_MINGW x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${RAINFOLD_MINGW}-gcc-posix)
set(CMAKE_CXX_COMPILER ${RAINFOLD_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${RAINFOLD_MINGW}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${RAINFOLD_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
