#include "StampEngine.h"

#include "RegisteredClasses.h"

// Bytes whose Base64 is "swap", "null" and "fail".
const std::string StampEngine::kSwapped = "\xB3\x06\xA9";
const std::string StampEngine::kNull = "\x9E\xE9\x65";
const std::string StampEngine::kFailing = "\x7D\xA8\xA5";

StampEngine::StampEngine() { UnregisterClasses(); }

StampEngine::~StampEngine() {
    LeaveCom();
    UnregisterClasses();
}

void StampEngine::Register() { RegisterAt(ENGINE_STAND_IN); }

void StampEngine::RegisterAt(const std::string& path) { RegisterClassAt(kEngineClass, path); }
