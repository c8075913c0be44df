// ExamineExchange.h - the part of `tesmark doctor` about how HTTP exchanges get through.
#pragma once

#include <string>

#include "commands/Findings.h"

// Who makes exchanges by settings of their own.
struct ExchangeMaker {
    const char* subject;  // of the findings
    const char* prefix;   // of the settings' names: "Service" of "ServiceTimeout"
    const char* name;     // "the transport"
};

// Finds fault with a proxy that can be none, a CA file that can't be read or holds no certificate,
// with numbers that are none or above their limits, and with a time-out that another one
// forestalls, as they stand in the store. Of what is right nothing is told. Nobody is asked.
void ExamineExchange(Findings& findings, const ExchangeMaker& maker);

// The same for one number, whose unit is `unit`.
void ExamineNumber(Findings& findings, const ExchangeMaker& maker, const std::string& name,
                   const std::string& unit);
