#include "Library.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "Failure.h"
#include "KeyDevices.h"
#include "PathText.h"
#include "ResultText.h"
#include "ServiceEntries.h"
#include "TerminalText.h"
#include "TwoStep.h"
#include "foundation/ServicePath.h"
#include "include/TesmarkOpt.h"
#include "platform/Files.h"

namespace {

// A signature may come out longer than the size query said.
constexpr int kSpareBytes = 256;

// For what stands beside the seal: certificates, attributes, a time stamp.
constexpr int kFileSignatureRoom = 128 * 1024;

// Components number their codes from here on; what stands below is the library's own.
constexpr long kFirstComponentCode = 0x0B000000;

// The last number behind `word` in one line, if it is a component's code.
int ComponentCodeIn(const std::string& line, const char* word) {
    const auto position = line.rfind(word);
    if (position == std::string::npos) return 0;
    const auto digits = line.find_first_of("0123456789", position);
    if (digits == std::string::npos) return 0;
    const long number = std::strtol(line.c_str() + digits, nullptr, 10);
    return number >= kFirstComponentCode && number <= INT32_MAX ? static_cast<int>(number) : 0;
}

std::string TimeStampHint(const LogMark& mark) {
    const std::string fault = mark.TimeStampFault();
    return (fault.empty() ? "" : "  the time-stamp engine: " + fault + "\n") +
           "  find out more: tesmark doctor";
}

int Trimmed(int code, std::string& signature) {
    if (code) return code;
    if (const std::size_t length = DerLength(signature)) signature.resize(length);
    return 0;
}

}  // namespace

LibrarySession::LibrarySession() {
    if (const std::string service = LocateCertService(); !service.empty()) {
        CheckServiceEntries(service);
    }
    const LogMark mark;
    const int code = InitKVLLib();
    if (code == 0) return;
    Failure failure{ExitCodeFor(code), "The library can't start its components.", code,
                    "  find out more: tesmark doctor"};
    if (const int inner = mark.InnerCode()) failure.code = inner;
    throw failure;
}

LibrarySession::~LibrarySession() { UnInitKVLLib(); }

std::string LogPath() {
    const std::string folder = platform::Utf8FromPath(platform::UserDataFolder());
    return folder.empty() ? "" : folder + "ESealLog" + platform::PathSeparator() + "Fenmoor.log";
}

LogMark::LogMark() : m_size(0) {
    std::ifstream log(FileAt(LogPath()), std::ios::binary | std::ios::ate);
    if (log) m_size = static_cast<long long>(log.tellg());
}

std::ifstream LogMark::Records() const {
    std::ifstream log(FileAt(LogPath()), std::ios::binary | std::ios::ate);
    // A log that is shorter now was started anew in between.
    if (log) log.seekg(m_size <= static_cast<long long>(log.tellg()) ? m_size : 0);
    return log;
}

int LogMark::InnerCode() const {
    std::ifstream log = Records();
    int code = 0;
    for (std::string line; std::getline(log, line);) {
        if (const int found = ComponentCodeIn(line, "error")) code = found;
    }
    return code;
}

std::string LogMark::TimeStampFault() const {
    constexpr std::string_view kEngine = "[CreateTS]: ";
    std::ifstream log = Records();
    std::string fault;
    for (std::string line; std::getline(log, line);) {
        const auto position = line.find(kEngine);
        // Of the level in front.
        if (position == std::string::npos || line.rfind("error ", position) == std::string::npos) {
            continue;
        }
        fault = line.substr(position + kEngine.size());
        // Windows ends its lines with two characters.
        if (fault.ends_with('\r')) fault.pop_back();
    }
    return Printable(Utf8FromGbk(fault));
}

void CheckResult(int code, const std::string& sentence, const LogMark& mark) {
    if (code == 0) return;
    const int inner = HidesInnerCode(code) ? mark.InnerCode() : 0;
    const int told = inner ? inner : code;
    throw Failure{ExitCodeFor(told), sentence, told,
                  code == TESMARK_TIME_STAMP_FAILED ? TimeStampHint(mark) : ResultHint(told)};
}

void LogIn(const std::string& certId, const std::string& pin) {
    const LogMark mark;
    const int code = LoginIn(certId.c_str(), pin.c_str());
    try {
        CheckResult(code, "The key can't be opened with this PIN.", mark);
    } catch (Failure& failure) {
        TellTriesLeft(certId, failure);
        throw;
    }
}

void Scan() {
    const LogMark mark;
    CheckResult(PZMLogin(), "The scan by phone came to nothing.", mark);
}

std::string SelectedCertificate() {
    std::string certId;
    FetchInTwoSteps([](unsigned char* out, int* outLen) { return GetSelectedCertId(out, outLen); },
                    certId);
    return certId;
}

std::string SelectedSealFile() {
    const LogMark mark;
    std::string seal;
    const int code = FetchInTwoSteps(
        [](unsigned char* out, int* outLen) { return GetSelectedSeal(out, outLen); }, seal);
    constexpr char kSentence[] = "The seal that was selected can't be had from the library.";
    CheckResult(code, kSentence, mark);
    if (seal.empty()) throw Failure{ExitCode::kFailed, kSentence};
    return seal;
}

int MakeSignature(std::string_view data, const std::string& property, std::string& signature) {
    const auto sign = [&](unsigned char* out, int* outLen) {
        return P7SignData(reinterpret_cast<const unsigned char*>(data.data()),
                          static_cast<int>(data.size()), Bytes(property),
                          static_cast<int>(property.size()), out, outLen);
    };
    return Trimmed(FetchInTwoSteps(sign, signature, kSpareBytes), signature);
}

// Without the question for the size: the library would read the whole file for it as well.
int MakeFileSignature(const std::string& path, const std::string& property,
                      std::string& signature) {
    signature.clear();
    int length = 0;
    GetSelectedSeal(nullptr, &length);
    length += kFileSignatureRoom;
    std::string room(static_cast<std::size_t>(length), '\0');
    auto* const out = reinterpret_cast<unsigned char*>(room.data());
    const int code = P7SignBigFile(path.c_str(), Bytes(property), static_cast<int>(property.size()),
                                   out, &length);
    // Where the selection makes no signature, the call succeeds and writes nothing.
    if (code || room.front() == '\0') return code;
    room.resize(std::min(room.size(), static_cast<std::size_t>(std::max(length, 0))));
    signature = std::move(room);
    return Trimmed(0, signature);
}

int MakeRawSignature(std::string_view data, std::string& signature) {
    const auto sign = [&](unsigned char* out, int* outLen) {
        return P1SignData(reinterpret_cast<const unsigned char*>(data.data()),
                          static_cast<int>(data.size()), out, outLen);
    };
    return FetchInTwoSteps(sign, signature, kSpareBytes);
}

std::size_t DerLength(std::string_view bytes) {
    if (bytes.size() < 2) return 0;
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    std::size_t header = 2;
    std::size_t length = at(1);
    if (length > 0x80) {
        const std::size_t count = length - 0x80;
        if (count > 4 || bytes.size() < 2 + count) return 0;
        length = 0;
        for (std::size_t i = 0; i < count; ++i) length = length << 8 | at(2 + i);
        header += count;
    } else if (length == 0x80) {
        return 0;
    }
    return header + length <= bytes.size() ? header + length : 0;
}
