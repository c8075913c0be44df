// KeyFiles.h - the names of the files beside a certificate.
#pragma once

#include <string>

#include "bridge/AppOpt.h"

// The service's list (name "&&&", repeated), read in two steps; each failing step has its own
// record in the log. 0, a code of CAppOpt::EnumFilesInKey, or -3015 for a size that can't be had;
// `names` is left alone after a failure.
int ListKeyFiles(CAppOpt& appOpt, const char* certId, std::string& names);
