// StandardOutput.h - the standard output that this program was given, for itself alone.
#pragma once

#include <cstdio>

// What a command says goes here. The process's own stdout as long as nothing was kept.
std::FILE* StandardOutput();

// Keeps the standard output for StandardOutput() and puts standard error in its place: the library
// writes its records to stdout where it can't write its log, and would write them between the bytes
// of a document or a signature. What is kept is no child's. Once, before anything was written. On a
// terminal, and without a standard output or a standard error, all stays as it was.
void KeepStandardOutput();
