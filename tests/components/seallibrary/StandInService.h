// StandInService.h - a scripted certificate service, loaded by the seal library as it would load
// the real one.
#pragma once

#include <map>
#include <string>
#include <vector>

struct StandInScript {
    struct Key {
        std::string certificate;
        std::string key;  // PKCS #8 in DER: this file may have an OpenSSL of its own
    };
    std::map<std::string, Key> keys;
    // Results of SOF_ValidateCert by certificate; 0 for any other.
    std::map<std::string, int> validations;
    int initializeResult = 0;
    int exportResult = 0;
    int setMethodResult = 0;
    int signResult = 0;
    int userConfigResult = 0;
    bool bareSignatures = false;
    bool signsOtherData = false;

    // What was called, by name; SOF_SetSignMethod with its number, SetUserConfig with its text.
    std::vector<std::string> calls;
    int openContexts = 0;

    int Count(const std::string& call) const;
};

// What the service's file exports besides its interface.
using StandInScriptFunction = StandInScript* (*)();
constexpr char kStandInScriptName[] = "StandIn_Script";
