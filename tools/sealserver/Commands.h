// Commands.h - the program's command line.
#pragma once

// Runs it to its end and gives the exit code; words in UTF-8 on Windows, bytes as typed elsewhere.
int RunSealServer(int argumentCount, const char* const* arguments);
