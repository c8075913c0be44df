// DrawnPictures.h - what a test says to the personal seal control's stand-in.
//
// Its methods are scripted by their names, with the Base64 text of a picture:
//     fakes::On("GetPicByContent").Gives("QUJD");
// A negative result is a failed call.
#pragma once

namespace fakes {

// ReportsSize of this makes the picture a null string.
constexpr int kNullPicture = -1;

// On Windows, a script of this name that returns anything but 0 makes the class no control.
constexpr char kIsControl[] = "IOleObject";

}  // namespace fakes
