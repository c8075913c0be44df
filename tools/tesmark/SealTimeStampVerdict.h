// SealTimeStampVerdict.h - the time stamp that a seal signature carries, as a step of a verdict.
#pragma once

#include <optional>

#include "SignatureVerdict.h"
#include "components/seallibrary/SealSignature.h"

// Fills `verdict.timeStamp` with what can be read and judges it; nothing where there is none. The
// seal library judges it too but doesn't tell its time. A LibrarySession is open. Throws a setup
// Failure if the certificate service can't be asked about the authority.
std::optional<VerdictStep> JudgeTimeStampOf(const SealSignature& signature,
                                            SignatureVerdict& verdict);
