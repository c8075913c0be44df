// PrintfFormat.h - lets the compiler check a function's printf format against its arguments.
#pragma once

#define PRINTF_FORMAT(format, arguments) __attribute__((format(printf, format, arguments)))
