// StandardError.h - who owns the process's standard error.
#pragma once

namespace platform {

// May a library's own trace go there? Not where a host owns that stream.
bool TracesToStandardError();

}  // namespace platform
