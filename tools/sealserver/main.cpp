// sealserver - a small online seal service to develop against.
#include "tools/sealserver/Commands.h"
#include "tools/tesmark/ProgramStart.h"

int main(int argc, char** argv) {
    const ProgramStart start(argc, argv);
    const auto& arguments = start.Arguments();
    return RunSealServer(static_cast<int>(arguments.size()), arguments.data());
}
