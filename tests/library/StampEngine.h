// StampEngine.h - the time-stamp engine's stand-in in one test.
#pragma once

#include <string>

// Not registered at first. What the engine answers follows from the request that the service makes:
//     fakes::On("SOF_TSGenREQ").Gives(StampEngine::kSwapped);
// Any other request is its own response. Needs a TemporaryPrefix that stands longer.
class StampEngine {
public:
    // Responded to with "swapped", with a null string, and with a failed call of kFailure.
    static const std::string kSwapped;
    static const std::string kNull;
    static const std::string kFailing;
    static constexpr unsigned int kFailure = 0xFFFFFFF9;

    StampEngine();
    // Takes the registration away, and the thread out of COM.
    ~StampEngine();
    StampEngine(const StampEngine&) = delete;
    StampEngine& operator=(const StampEngine&) = delete;

    static void Register();
    // Makes another library the engine.
    static void RegisterAt(const std::string& path);
    // Does nobody hold an engine any more?
    bool IsLetGo() const;
    // Takes the thread out of COM and tells how often it had entered. 0 elsewhere than on Windows.
    static int LeaveCom();
};
