#include "platform/StandardError.h"

namespace platform {

bool TracesToStandardError() { return true; }

}  // namespace platform
