#include "platform/StandardError.h"

namespace platform {

bool TracesToStandardError() { return false; }

}  // namespace platform
