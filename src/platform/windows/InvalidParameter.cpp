#include "platform/InvalidParameter.h"

#include <cstdlib>

#include "platform/windows/Win32.h"

namespace {

// What the run-time itself ends a process with.
constexpr UINT kInvalidRunTimeParameter = 0xC0000417;

}  // namespace

void platform::RaiseInvalidParameter() {
    if (const auto handler = _get_invalid_parameter_handler()) {
        return handler(nullptr, nullptr, nullptr, 0, 0);
    }
    TerminateProcess(GetCurrentProcess(), kInvalidRunTimeParameter);
}
