#include <filesystem>
#include <string>

#include "CertServiceClient.h"
#include "Failure.h"
#include "Library.h"
#include "LoadedObject.h"
#include "PathText.h"
#include "PlatformText.h"
#include "Registration.h"
#include "ResultText.h"
#include "Version.h"
#include "commands/DialogWay.h"
#include "commands/ExamineStore.h"
#include "commands/Findings.h"
#include "commands/PinEntry.h"
#include "components/certservice/Places.h"
#include "include/TesmarkOpt.h"
#include "platform/Files.h"
#include "platform/Module.h"

namespace {

namespace fs = std::filesystem;

void ExamineLibrary(Findings& findings) {
    const auto library = FindLoaded(platform::ModuleFileName("TesmarkOpt_x64"));
    if (!library) {
        findings.Problem("library", "The library is not loaded under its own name.",
                         "reinstall it as " + platform::ModuleFileName("TesmarkOpt_x64"));
        return;
    }
    findings.Good("library",
                  library->path + " (" + library->build + "), tesmark " + TESMARK_VERSION);
}

// The sentence says it all where the file is missing or can't be loaded.
std::string CauseOf(const Failure& failure) {
    if (!failure.code || *failure.code == TESMARK_SERVICE_NOT_FOUND ||
        *failure.code == TESMARK_SERVICE_FAILED) {
        return failure.sentence;
    }
    return failure.sentence + " (" + ResultText(*failure.code) + ")";
}

void ExamineService(Findings& findings) {
    constexpr char kSubject[] = "certificate service";
    try {
        const CertServiceClient service;
        const auto missing = service.MissingEntries();
        const std::string path = platform::Utf8FromPath(service.Path());
        const auto object = FindLoaded(TextOf(FileAt(path).filename()));
        const std::string where = path + (object ? " (" + object->build + ")" : "");
        if (missing.empty()) {
            findings.Good(kSubject, where + ", all entry points, answers");
            return;
        }
        findings.Problem(kSubject,
                         where + " lacks " + CountText(missing.size(), "entry point") + ": " +
                             missing.front() + (missing.size() > 1 ? " and others" : "") + ".",
                         "install a newer certificate service");
    } catch (const Failure& failure) {
        findings.Problem(kSubject, CauseOf(failure), HowToRegister("CertService", "KVLAppCOM"));
    }
}

// The library needs by name only those whose functions it calls; another one may be missing.
void ExamineComponent(Findings& findings, const char* subject, const char* stem) {
    const std::string fileName = platform::ModuleFileName(stem);
    if (const auto object = FindLoaded(fileName)) {
        findings.Good(subject, object->path + " (" + object->build + ")");
        return;
    }
    const std::string beside = BesideLibrary(fileName);
    findings.Good(subject, beside.empty() ? fileName + " is not there, and not in use"
                                          : beside + " (not in use)");
}

void ExamineStart(Findings& findings) {
    try {
        const LibrarySession library;
        findings.Good("start", "the library starts the certificate service and the seal library");
    } catch (const Failure& failure) {
        findings.Problem("start", CauseOf(failure), "see the log");
    }
}

bool IsWritableFolder(const fs::path& folder) {
    const std::string probe = platform::PathFromUtf8(TextOf(folder / ".tesmark-doctor"));
    if (platform::AppendTextRecord(probe.c_str(), "") < 0) return false;
    platform::RemoveFile(probe.c_str());
    return true;
}

// Why nothing can be added to the log, a clause; empty if nothing keeps it from that. Its folder is
// made with the first record.
std::string FaultOfLog(const fs::path& log) {
    std::error_code error;
    if (fs::is_directory(log, error)) return "it is a folder";
    if (fs::exists(log, error)) {
        const std::string path = platform::PathFromUtf8(TextOf(log));
        return platform::AppendTextRecord(path.c_str(), "") < 0 ? "there is no right to" : "";
    }
    fs::path folder = log.parent_path();
    while (!fs::exists(folder, error) && folder != folder.parent_path()) {
        folder = folder.parent_path();
    }
    const bool isFolder = fs::is_directory(folder, error);
    if (isFolder && IsWritableFolder(folder)) return "";
    const std::string why = isFolder ? "there is no right to write " + TextOf(folder)
                                     : TextOf(folder) + " is no folder";
    // There it is where its own folder couldn't be made.
    const bool elsewhere = !fs::is_directory(log.parent_path(), error);
    return why + (elsewhere ? "; look for it in the working folder" : "");
}

void ExamineLog(Findings& findings) {
    const std::string path = LogPath();
    if (path.empty()) {
        findings.Problem("log", "The system tells no folder for the log.", "set HOME");
        return;
    }
    if (const std::string fault = FaultOfLog(FileAt(path)); !fault.empty()) {
        findings.Problem("log", "The log can't be written: " + path + " (" + fault + ").",
                         "make room for a file of your own there: the log tells causes that "
                         "nothing else does");
        return;
    }
    std::error_code error;
    const auto size = fs::file_size(FileAt(path), error);
    findings.Good("log", path + (error ? " (not yet there)" : " (" + SizeText(size) + ")"));
}

void ExamineCrlFolder(Findings& findings) {
    const std::string folder = platform::Utf8FromPath(platform::CrlFolder());
    std::error_code error;
    if (!fs::is_directory(FileAt(folder), error)) {
        findings.Good("CRL folder", folder + " (not yet there; made at the first download)");
        return;
    }
    if (!IsWritableFolder(FileAt(folder))) {
        findings.Problem("CRL folder", "Revocation lists can't be kept: " + folder + ".",
                         kSharedFolderAdvice);
        return;
    }
    std::size_t lists = 0;
    for (const auto& entry : fs::directory_iterator(FileAt(folder), error)) {
        if (entry.is_regular_file(error)) ++lists;
    }
    findings.Good("CRL folder", folder + " (" + CountText(lists, "list") + ")");
}

void ExamineTrust(Findings& findings) {
    const std::string folder = platform::Utf8FromPath(TrustFolderPath());
    std::error_code error;
    std::size_t files = 0;
    for (const auto& entry : fs::directory_iterator(FileAt(folder), error)) {
        if (entry.is_regular_file(error)) ++files;
    }
    if (files > 0) {
        findings.Good("trust folder", folder + " (" + CountText(files, "file") + ")");
        return;
    }
    findings.Problem("trust folder", "No certificate is trusted: " + folder + " is empty.",
                     "put your CA's certificate there; tesmark key new puts the development CA's");
}

}  // namespace

void ExamineMachine(Findings& findings) {
    ExamineLibrary(findings);
    ExamineService(findings);
    ExamineComponent(findings, "seal library", "TOVKx64");
    ExamineComponent(findings, "seal pictures", "Mirelle");
    ExamineComponent(findings, "transport", "dwnt-3_x64");
    ExamineStart(findings);
    ExamineStore(findings);
    ExamineLog(findings);
    ExamineCrlFolder(findings);
    ExamineTrust(findings);
    ExaminePinEntry(findings);
    ExamineDialogs(findings);
}
