// AskedToEnd.h - work that goes on until somebody asks the program to end.
#pragma once

#include <functional>

// Runs `work`. When the process is asked to end meanwhile (SIGINT, SIGTERM, SIGHUP; Ctrl-C,
// Ctrl-Break, the console's end, a logoff or shutdown on Windows), calls `stop` once, on another
// thread, upon which `work` is to come back in its own time; a second one ends the process at once,
// but for SIGHUP, which then stays held until the process ends: a terminal that is closed sends it
// twice, and a service manager right behind SIGTERM. What the process ignores stays ignored. Comes
// back behind both; passes on what `work` throws.
//
// On the first thread, before there are others: none that `work` starts finds a wait interrupted.
void RunUntilAskedToEnd(const std::function<void()>& work, const std::function<void()>& stop);
