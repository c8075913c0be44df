// Findings.h - what `tesmark doctor` has found out.
#pragma once

#include <string>
#include <vector>

#include "Output.h"

struct Finding {
    std::string subject;  // "certificate service"
    std::string text;     // what there is, or one sentence about what is wrong
    std::string advice;   // what to do about it; empty where all is well
    bool problem = false;
};

class Findings {
public:
    void Good(const std::string& subject, const std::string& text) {
        m_findings.push_back({subject, text, "", false});
    }
    void Problem(const std::string& subject, const std::string& text, const std::string& advice) {
        m_findings.push_back({subject, text, advice, true});
    }
    std::size_t Problems() const;
    // Exit code kOk without a problem, kSetup with one.
    Report ToReport() const;

private:
    std::vector<Finding> m_findings;
};

// The parts of the examination. What can't be found out is a problem, never a throw.
void ExamineMachine(Findings& findings);
void ExamineTimeStamps(Findings& findings);
void ExaminePersonalSeals(Findings& findings);
void ExamineKeys(Findings& findings);
