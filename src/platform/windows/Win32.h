// Win32.h - the system's header, for this folder's sources alone: its macros rename operations of
// ours.
#pragma once

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX 1
// clang-format off
#include <winsock2.h>  // ahead of windows.h, which would bring its predecessor
#include <windows.h>
// clang-format on
// Left from 16-bit times.
#undef FreeModule
