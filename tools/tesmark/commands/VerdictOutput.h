// VerdictOutput.h - what is said about a signature that was verified.
#pragma once

#include <json/value.h>

#include <string>

#include "SignatureVerdict.h"
#include "pdf/PdfSignature.h"

// How a signature stands. kChanged: it is good for what it covers, and something else than further
// signatures was done to the document behind it.
enum class Standing { kGood, kChanged, kBad };

// "good", "changed", "bad".
const char* StandingText(Standing standing);

Json::Value VerdictJson(const SignatureVerdict& verdict);
// Lines, each with `indent` in front: signer, times, seal, and each step that isn't good.
std::string VerdictText(const SignatureVerdict& verdict, const std::string& indent);

// Where in the document it stands and what it covers.
Json::Value PdfSignatureJson(const PdfSignature& signature, std::uint64_t fileSize);
std::string PdfSignatureText(const PdfSignature& signature, std::uint64_t fileSize,
                             const std::string& indent);

Json::Value TimeStampJson(const TimeStampInfo& stamp);
std::string TimeStampText(const TimeStampInfo& stamp);
