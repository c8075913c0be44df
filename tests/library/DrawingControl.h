// DrawingControl.h - the personal seal control's stand-in in one test.
#pragma once

// Not registered at first; the thread has entered COM, as a host's has, until the end. What the
// control answers is scripted (fakes/DrawnPictures.h). Needs a TemporaryPrefix that stands longer.
class DrawingControl {
public:
    DrawingControl();
    ~DrawingControl();
    DrawingControl(const DrawingControl&) = delete;
    DrawingControl& operator=(const DrawingControl&) = delete;

    static void Register();
    // A control that has none of the methods.
    static void RegisterWithoutMethods();
    // A library that isn't there.
    static void RegisterMissing();
    static void Unregister();
    // Does somebody hold a control of Register's?
    static bool IsHeld();
};
