#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "foundation/Text.h"
#include "road/LoadingTest.h"

LoadingTest::LoadingTest() { std::filesystem::remove_all(m_prefix.LogFolder()); }

LoadingTest::~LoadingTest() { std::filesystem::remove_all(m_prefix.LogFolder()); }

ProgramOutcome LoadingTest::Host(const std::string& command, const std::string& certId,
                                 const std::string& pin, const std::string& further,
                                 const ProgramOptions& options) {
    ProgramOutcome outcome =
        RunProgram({ROAD_HOST, command, ROAD_LIBRARY, certId, pin, further}, options);
    std::erase(outcome.out, '\r');
    return outcome;
}

std::string LoadingTest::Log() const {
    return ReadFileToString(m_prefix.LogFolder() + "Fenmoor.log");
}

std::vector<int> LoadingTest::LoginCodesInLog() const {
    const std::string log = Log();
    const std::string mark = "LoginIn error ";
    std::vector<int> codes;
    for (std::size_t at = 0; (at = log.find(mark, at)) != std::string::npos;) {
        at += mark.size();
        codes.push_back(std::atoi(log.c_str() + at));
    }
    return codes;
}
