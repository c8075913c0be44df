// CallLog.h - where the recorder leaves a finished call.
#pragma once

#include "fakes/Script.h"

namespace fakes {

// Numbers the call among those of its function and keeps it.
void AppendCall(Call& call);

}  // namespace fakes
