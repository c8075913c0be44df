// ThreadStack.h - how much stack the threads that serve get.
#pragma once

#include <cstddef>

// A line in the head of a form's part, up to 8 KB, goes through an expression that recurses for
// each character, which takes up to 4 MB.
constexpr std::size_t kServingStackBytes = 8u << 20;

// Threads that are made from now on get as much at least. Where a program's file tells it, as on
// Windows, nothing is done: sealserver_core has it told there.
void RequireServingStack();
