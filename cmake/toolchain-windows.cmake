# Debian's mingw-w64 (GCC, posix threads) for 64-bit Windows.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(triple x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)
set(CMAKE_DLLTOOL ${triple}-dlltool)
set(CMAKE_OBJDUMP ${triple}-objdump)

# The libraries that packaging/windows/build-thirdparty.sh has built.
set(THIRDPARTY_PREFIX "$ENV{TESMARK_WINDOWS_PREFIX}" CACHE PATH "Static third-party libraries")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES THIRDPARTY_PREFIX)

set(CMAKE_FIND_ROOT_PATH /usr/${triple} ${THIRDPARTY_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Nothing of the compiler's stands beside what is delivered.
foreach(kind EXE SHARED MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
endforeach()

# Resource scripts are UTF-8.
set(CMAKE_RC_FLAGS_INIT "-c 65001")
