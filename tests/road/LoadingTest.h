// LoadingTest.h - hosts in processes of their own, which load the library by its path.
#pragma once

#include <string>
#include <vector>

#include "road/RoadTest.h"
#include "support/Program.h"

class LoadingTest : public RoadTest {
protected:
    LoadingTest();
    ~LoadingTest() override;

    // Runs a command of RoadHost. What it prints is without the carriage returns of text mode.
    static ProgramOutcome Host(const std::string& command, const std::string& certId = "none",
                               const std::string& pin = kRoadPin, const std::string& further = "",
                               const ProgramOptions& options = {});
    std::string Log() const;
    // The codes that records of failed logins tell, in their order.
    std::vector<int> LoginCodesInLog() const;
};
