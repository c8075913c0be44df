// InvalidParameter.h - the failure of a checked access outside an array.
#pragma once

namespace platform {

// On Windows the failure of the C run-time: its handler is called if the host has set one in
// msvcrt.dll (_set_invalid_parameter_handler), and if that returns, so does this; without a handler
// the process ends with the exit code 0xC0000417. On Linux no run-time has such a failure, and
// nothing happens. So the caller goes on without the access.
void RaiseInvalidParameter();

}  // namespace platform
