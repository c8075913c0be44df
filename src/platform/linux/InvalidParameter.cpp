#include "platform/InvalidParameter.h"

void platform::RaiseInvalidParameter() {}
