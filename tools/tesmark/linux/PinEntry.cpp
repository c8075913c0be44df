#include "commands/PinEntry.h"

#include "LoadedObject.h"
#include "Settings.h"
#include "platform/Files.h"

void ExaminePinEntry(Findings& findings) {
    constexpr char kSubject[] = "PIN entry";
    const auto configured = ReadSetting(FindSetting("PinentryProgram"));
    const std::string program = configured ? *configured : FindProgram("pinentry");
    if (program.empty()) {
        findings.Problem(kSubject, "No pinentry program asks for PINs.",
                         "apt-get install pinentry-tty, or give PINs with --pin-file");
    } else if (!platform::PathExists(program.c_str())) {
        findings.Problem(kSubject, "The program that asks for PINs is not there: " + program + ".",
                         "tesmark config unset PinentryProgram");
    } else {
        findings.Good(kSubject, program);
    }
}
