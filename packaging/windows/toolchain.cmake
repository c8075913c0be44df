# What the third-party libraries for Windows are built with; the project has a toolchain of its own.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# No program for Windows is run, and nothing of the machine is found but programs.
set(CMAKE_FIND_ROOT_PATH $ENV{THIRDPARTY_DEPENDENCIES} /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Link checks of the libraries' own build files need what the flags bring in.
set(CMAKE_C_FLAGS_INIT "$ENV{THIRDPARTY_CFLAGS}")
set(CMAKE_CXX_FLAGS_INIT "$ENV{THIRDPARTY_CFLAGS}")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -fstack-protector-strong")
