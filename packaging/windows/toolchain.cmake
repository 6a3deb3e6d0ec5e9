# Windows programs from Debian, with mingw-w64: the compilers, and where their libraries are. SIZING_WINDOWS_PREFIX is
# what packaging/windows/build.sh has built for Windows: Qt, SQLite and libcsv.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_CROSSCOMPILING_EMULATOR wine) # what the build makes and runs, it runs there
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES SIZING_WINDOWS_PREFIX)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${SIZING_WINDOWS_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
