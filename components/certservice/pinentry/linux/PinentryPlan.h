// PinentryPlan.h - which pinentry program can ask the user of this process, and what it must know.
#pragma once

#include <optional>
#include <string>
#include <vector>

struct PinentryPlan {
    std::string program;
    std::vector<std::string> options;  // for the command OPTION
};

// What the session of this process offers.
struct PinentrySession {
    std::string configured;  // the setting PinentryProgram; the file system's bytes
    std::string searchPath;  // PATH
    bool display = false;    // DISPLAY or WAYLAND_DISPLAY
    std::string terminal;    // the path of the first terminal among the standard streams
    std::string terminalType;
    std::string locale;
};

PinentrySession CurrentPinentrySession();

// The configured program and nothing else, or the first one found in the search path: "pinentry",
// then those for Qt, GNOME, GTK, a full-screen terminal, a plain one. A program for a terminal
// counts only where there is one, a program for a display where there is either, since it falls
// back. Which kind it is tells the name of the file that a link leads to; unknown names are taken
// to need nothing. Nothing if no program is left.
std::optional<PinentryPlan> PlanPinentry(const PinentrySession& session);
