// PrintfFormat.h - lets the compiler check a function's printf format against its arguments.
#pragma once

// The places of the format and of the first argument behind it (0 for a va_list), from 1 on.
#define PRINTF_FORMAT(text, first) __attribute__((__format__(__printf__, text, first)))
