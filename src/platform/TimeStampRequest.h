// TimeStampRequest.h - where the debugging copy of a time-stamp request goes.
#pragma once

namespace platform {

// A constant place: no setting moves it, and nothing makes its folder. On Windows it is in the ANSI
// code page. It lives for ever.
const char* TimeStampRequestPath();

}  // namespace platform
