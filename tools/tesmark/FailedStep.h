// FailedStep.h - which part of a verification a result code stands for.
#pragma once

#include <string>

// "digest", "signature value", "form", "chain", "validity", "revocation", "purpose",
// "seal", "signer not in the seal", "picture", "time stamp", "file", or "component" for what is
// none of a signature's own parts: codes of the library, the open certificate service and the open
// seal library.
std::string FailedStepOf(int code);
