#include "ServiceEntries.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "Failure.h"
#include "Output.h"
#include "PathText.h"
#include "Registration.h"
#include "platform/Files.h"
#include "platform/Module.h"
#include "platform/closed/CertService.h"

namespace {

// Bound by the library and never called, or looked up before the call.
constexpr std::string_view kNotNeeded[] = {
    "SOF_InitializeEx",        "SOF_SignMessage",   "SOF_SignHashData",         "SOF_EncryptData",
    "SOF_EncryptDataEx",       "SOF_DecryptData",   "SOF_GetSignMethod",        "SOF_PubKeyEncrypt",
    "Brevane_VerifyTimeStamp", "SOF_PriKeyDecrypt", "Brevane_GetTimeStampInfo", "SOF_GetLastError",
    "SOF_GetLastLoginCertID"};

class LoadedFile {
public:
    explicit LoadedFile(const std::string& path) : m_module(platform::LoadModule(path.c_str())) {}
    ~LoadedFile() {
        if (m_module) platform::FreeModule(m_module);
    }
    LoadedFile(const LoadedFile&) = delete;
    LoadedFile& operator=(const LoadedFile&) = delete;

    bool IsLoaded() const { return m_module != nullptr; }
    // For as long as the program runs.
    void Keep() { m_module = nullptr; }
    std::vector<std::string> Missing() const {
        std::vector<std::string> missing;
#define NOTE_IF_MISSING(name) Note(#name, missing);
        CERT_SERVICE_ENTRIES(NOTE_IF_MISSING)
#undef NOTE_IF_MISSING
        return missing;
    }

private:
    void Note(const char* name, std::vector<std::string>& missing) const {
        if (platform::FindSymbol(m_module, name)) return;
        if (std::ranges::find(kNotNeeded, std::string_view(name)) == std::end(kNotNeeded))
            missing.emplace_back(name);
    }

    platform::ModuleHandle m_module;
};

void Check(const LoadedFile& file, const std::string& path, ExitCode exitCode) {
    const std::vector<std::string> missing = file.Missing();
    if (missing.empty()) return;
    throw Failure{exitCode,
                  "The file is no certificate service that the library can work with: " + path +
                      " lacks " + CountText(missing.size(), "entry point") + ", " +
                      missing.front() + (missing.size() > 1 ? " and others" : "") + ".",
                  {},
                  "  register one: " + HowToRegister("CertService", "KVLAppCOM")};
}

}  // namespace

void CheckServiceEntries(const std::string& path) {
    LoadedFile file(path);
    if (!file.IsLoaded()) return;
    Check(file, platform::Utf8FromPath(path), ExitCode::kSetup);
    // Whoever asks is about to load it as well, which then costs nothing.
    file.Keep();
}

void CheckServiceFile(const std::string& path) {
    if (!FileAt(path).is_absolute()) {
        throw Failure{ExitCode::kUsage,
                      "The path of the certificate service's file must be absolute: " + path + "."};
    }
    if (platform::IsDirectory(platform::PathFromUtf8(path).c_str())) {
        throw Failure{ExitCode::kFile,
                      "A certificate service is a file, and this is a folder: " + path + "."};
    }
    const LoadedFile file(platform::PathFromUtf8(path));
    if (!file.IsLoaded()) {
        throw Failure{ExitCode::kFile,
                      "The file isn't there, or is no library that can be loaded: " + path + "."};
    }
    Check(file, path, ExitCode::kFile);
}
