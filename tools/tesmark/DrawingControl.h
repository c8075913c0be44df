// DrawingControl.h - the control that draws personal seals and content pictures, and reaching it.
#pragma once

#include <string>

// COM is entered on this thread while it lives, as the library leaves it to its host.
class AutomationSession {
public:
    AutomationSession();
    ~AutomationSession();
    AutomationSession(const AutomationSession&) = delete;
    AutomationSession& operator=(const AutomationSession&) = delete;
};

// Makes it as the library does.
bool DrawingControlCanBeMade();

// The command that registers the open control.
std::string HowToRegisterDrawingControl();

// Throws the Failure that a drawing's code stands for where the control is to blame: there is none
// (kSetup), or it has failed. Nothing for any other code.
void CheckDrawn(int code);
