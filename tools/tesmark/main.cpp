// tesmark - stamps, signs and hashes with electronic seals from the command line.
#include "Commands.h"

int main(int argc, char** argv) { return static_cast<int>(RunCommandLine(argc, argv)); }
