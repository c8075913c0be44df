// tesmark - stamps, signs and hashes with electronic seals from the command line.
#include "Commands.h"
#include "ProgramStart.h"
#include "StandardOutput.h"

int main(int argc, char** argv) {
    const ProgramStart start(argc, argv);
    KeepStandardOutput();
    const auto& arguments = start.Arguments();
    return static_cast<int>(RunCommandLine(static_cast<int>(arguments.size()), arguments.data()));
}
