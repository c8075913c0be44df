#include "Settings.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <string_view>
#include <vector>

#include "Failure.h"
#include "PathText.h"
#include "PlatformText.h"
#include "TerminalText.h"
#include "components/certservice/Places.h"
#include "components/http/Address.h"
#include "components/http/SealServiceSettings.h"
#include "components/timestamp/TimeStampSettings.h"
#include "foundation/Registry.h"
#include "foundation/SealSettings.h"
#include "foundation/Text.h"
#include "platform/Files.h"
#include "platform/closed/PersonalSealControl.h"
#include "platform/closed/TimeStampEngine.h"

namespace {

using enum SettingType;
using platform::RegistryRoot;

constexpr char kPlatformKey[] = "software\\Velmora\\platform\\";
constexpr char kServiceClassKey[] = "CLSID\\{7B1D40E2-6C55-4A9E-9F10-5E2C8D3A71B4}\\InprocServer32";

// The key, with its terminator, that names the file of an automation class.
template <std::size_t N>
consteval auto FileKeyOf(const char (&classId)[N]) {
    constexpr std::string_view kAbove = "CLSID\\";
    constexpr std::string_view kBelow = "\\InprocServer32";
    std::array<char, kAbove.size() + N + kBelow.size()> key{};
    auto end = std::copy(kAbove.begin(), kAbove.end(), key.begin());
    end = std::copy_n(classId, N - 1, end);
    std::copy(kBelow.begin(), kBelow.end(), end);
    return key;
}

constexpr auto kEngineClassKey = FileKeyOf(kTimeStampEngineClass);
constexpr auto kControlClassKey = FileKeyOf(kPersonalSealControlClass);
constexpr char kThreadingModel[] = "ThreadingModel";
constexpr char kInstallPathKey[] = "Software\\Velmora\\InstallPath";

// A longer text counts as absent to the library.
constexpr std::size_t kLargestText = 199;

constexpr auto kMachine = RegistryRoot::LocalMachine;

constexpr auto kSettings = std::to_array<Setting>({
    {"bSealPosition", kMachine, kSettingsKey, "bSealPosition", kNumber, "0",
     "where seals come from: 0 the keys, 1 the online service, 3 and 4 a drawing of the "
     "certificate's name (3 a line of text, 4 framed)",
     kNameBySize},
    {"bSignWithTimeStamp", kMachine, kSettingsKey, "bSignWithTimeStamp", kNumber, "0",
     "1: signatures carry a time stamp"},
    {"bVerifyCRL", kMachine, kSettingsKey, "bVerifyCRL", kNumber, "0",
     "1: revocation lists are fetched before a signature and for a verification"},
    {"ReqEsealStatus", kMachine, kSettingsKey, "ReqEsealStatus", kNumber, "0",
     "1: a seal's status is asked for online"},
    {"sEsealStateUrl", kMachine, kSettingsKey, "sEsealStateUrl", kAddress, "",
     "address of the seal status service"},
    {"sWSURL", kMachine, kSettingsKey, "sWSURL", kAddress, "",
     "address of the online seal service: http://HOST/QelmServlet; see tesmark config online"},
    {"appid", kMachine, kSettingsKey, "appid", kText, "", "application id for signing by phone"},
    {"KeyFolder", kMachine, kCertServiceSettingsKey, "KeyFolder", kFolder, kKeyFolderDefault,
     "folder of the development keys"},
    {"TrustFolder", kMachine, kCertServiceSettingsKey, "TrustFolder", kFolder, kTrustFolderDefault,
     "folder of the certificates that are trusted"},
    {"CaFolder", kMachine, kCertServiceSettingsKey, "CaFolder", kFolder, kCaFolderDefault,
     "folder of the development CA"},
    {"PinentryProgram", kMachine, kCertServiceSettingsKey, "PinentryProgram", kFile, "",
     "the program that asks for PINs; without it one on PATH"},
    {"Pkcs11Modules", kMachine, kCertServiceSettingsKey, "Pkcs11Modules", kFiles, "",
     "PKCS#11 modules of tokens: paths with \";\" between them"},
    {"Pkcs11Sm2Mechanism", kMachine, kCertServiceSettingsKey, "Pkcs11Sm2Mechanism", kNumber, "0",
     "the token maker's number of the SM2 signature mechanism"},
    {"Pkcs11Sm2KeyType", kMachine, kCertServiceSettingsKey, "Pkcs11Sm2KeyType", kNumber, "0",
     "the token maker's number of the SM2 key type"},
    {"TimeStampUrl", kMachine, kTimeStampSettingsKey, "Url", kLongAddress, "",
     "addresses of time-stamp authorities, with \";\" between them, in the order of their use"},
    {"TimeStampUser", kMachine, kTimeStampSettingsKey, "User", kLongText, "",
     "user name, for an authority that asks for one"},
    {"TimeStampPassword", kMachine, kTimeStampSettingsKey, "Password", kSecret, "",
     "that user's password; it stands in the store as it is"},
    {"TimeStampProxy", kMachine, kTimeStampSettingsKey, "Proxy", kLongAddress, "",
     "proxy on the way to the authorities; without it that of the environment"},
    {"TimeStampCaFile", kMachine, kTimeStampSettingsKey, "CaFile", kFile, "",
     "certificates (PEM) that authorities' servers are checked with; without it the system's"},
    {"TimeStampConnectTimeout", kMachine, kTimeStampSettingsKey, "ConnectTimeout", kNumber, "10",
     "seconds until an authority must have been reached", kLongestTimeoutSeconds},
    {"TimeStampTimeout", kMachine, kTimeStampSettingsKey, "Timeout", kNumber, "30",
     "seconds until an authority must have answered", kLongestTimeoutSeconds},
    {"ServiceProxy", kMachine, kSealServiceSettingsKey, "Proxy", kLongAddress, "",
     "proxy on the way to the online seal service; without it that of the environment"},
    {"ServiceCaFile", kMachine, kSealServiceSettingsKey, "CaFile", kFile, "",
     "certificates (PEM) that the service's server is checked with; without it the system's"},
    {"ServiceConnectTimeout", kMachine, kSealServiceSettingsKey, "ConnectTimeout", kNumber, "10",
     "seconds until the service must have been reached", kLongestTimeoutSeconds},
    {"ServiceTimeout", kMachine, kSealServiceSettingsKey, "Timeout", kNumber, "30",
     "seconds until the service must have answered", kLongestTimeoutSeconds},
    {"ServiceLargestAnswer", kMachine, kSealServiceSettingsKey, "LargestAnswer", kNumber, "64",
     "MiB that an answer of the service may have", kMostLargestAnswerMib},
    {"DialogProgram", kMachine, kPlatformKey, "DialogProgram", kFile, "",
     "the program that shows the dialogs"},
    {"CertService", RegistryRoot::ClassesRoot, kServiceClassKey, "", kFile, "",
     "the certificate service's file (InprocServer32 of its class)"},
    {"TimeStampEngine", RegistryRoot::ClassesRoot, kEngineClassKey.data(), "", kFile, "",
     "the time-stamp engine's file (InprocServer32 of its class)"},
    {"PersonalSealControl", RegistryRoot::ClassesRoot, kControlClassKey.data(), "", kFile, "",
     "the file of the drawing control for personal seals (InprocServer32 of its class)"},
    {"InstallPath", RegistryRoot::CurrentUser, kInstallPathKey, "InstallPath", kFolder, "",
     "installation folder; the certificate service is looked for in Program below it"},
});

class OpenKey {
public:
    explicit OpenKey(platform::RegistryKey key) : m_key(key) {}
    ~OpenKey() {
        if (m_key) platform::CloseRegistryKey(m_key);
    }
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;
    platform::RegistryKey Get() const { return m_key; }

private:
    platform::RegistryKey m_key;
};

bool IsPath(const Setting& setting) {
    return setting.type == kFile || setting.type == kFiles || setting.type == kFolder;
}

bool Query(platform::RegistryKey key, const Setting& setting, void* data, std::size_t* size) {
    return IsPath(setting) ? platform::QueryRegistryPath(key, setting.value, data, size)
                           : platform::QueryRegistryValue(key, setting.value, data, size);
}

std::optional<std::string> RawValue(const Setting& setting) {
    const OpenKey key(
        platform::OpenRegistryKey(setting.root, setting.key, platform::RegistryAccess::Read64));
    std::size_t size = 0;
    if (!key.Get() || !Query(key.Get(), setting, nullptr, &size)) return {};
    std::string bytes(size, '\0');
    if (!Query(key.Get(), setting, bytes.data(), &size)) return {};
    return bytes;
}

bool ParseNumber(const std::string& text, unsigned int& number) {
    try {
        std::size_t used = 0;
        const unsigned long parsed = std::stoul(text, &used, 0);
        if (used != text.size() || text.starts_with('-')) return false;
        number = static_cast<unsigned int>(parsed);
        return parsed <= std::numeric_limits<unsigned int>::max();
    } catch (const std::exception&) {
        return false;
    }
}

Failure Refused(const Setting& setting, const std::string& why) {
    return {ExitCode::kUsage, std::string(setting.name) + " " + why};
}

// Those of `text` that aren't empty; none for what is no path.
std::vector<std::string> PathsOf(const Setting& setting, const std::string& text) {
    std::vector<std::string> paths;
    if (!IsPath(setting)) return paths;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t separator = setting.type == kFiles ? text.find(';', begin) : text.npos;
        const std::size_t end = std::min(separator, text.size());
        if (end != begin) paths.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return paths;
}

bool IsText(const Setting& setting) { return setting.type != kNumber && !IsPath(setting); }

bool IsAddress(const Setting& setting) {
    return setting.type == kAddress || setting.type == kLongAddress;
}

bool IsAutomationClass(const Setting& setting) {
    return setting.key == kEngineClassKey.data() || setting.key == kControlClassKey.data();
}

// A class without its threading model would live in the first thread's apartment alone.
bool StoreClassFile(platform::RegistryKey key, const Setting& setting, const std::string& path) {
    if (IsAutomationClass(setting) && !platform::SetRegistryString(key, kThreadingModel, "Both")) {
        return false;
    }
    return platform::SetRegistryPath(key, setting.value, path);
}

bool Store(const Setting& setting, const std::string& text) {
    const OpenKey key(
        platform::CreateRegistryKey(platform::RegistryRootKey(setting.root), setting.key));
    if (!key.Get()) return false;
    if (IsPath(setting)) {
        return StoreClassFile(key.Get(), setting, platform::PathFromUtf8(text));
    }
    if (IsText(setting)) {
        return platform::SetRegistryString(key.Get(), setting.value,
                                           GbkFromArgument(text, setting.name));
    }
    unsigned int number = 0;
    return ParseNumber(text, number) &&
           platform::SetRegistryNumber(key.Get(), setting.value, number);
}

// What isn't there yet may become either.
void CheckKind(const Setting& setting, const std::string& path) {
    const std::string there = platform::PathFromUtf8(path);
    const bool isFolder = platform::IsDirectory(there.c_str());
    if (isFolder == (setting.type == kFolder) || !platform::PathExists(there.c_str())) return;
    throw Failure{ExitCode::kFile, std::string(setting.name) + " is a " +
                                       (isFolder ? "file" : "folder") + ", and this is a " +
                                       (isFolder ? "folder" : "file") + ": " + path + "."};
}

void CheckValue(const Setting& setting, const std::string& text) {
    unsigned int number = 0;
    if (setting.type == kNumber && (!ParseNumber(text, number) || number > setting.largest)) {
        throw Refused(setting, "is a number from 0 to " + std::to_string(setting.largest) + ": \"" +
                                   text + "\" is none.");
    }
    // What GBK lacks is refused before it is counted.
    if (IsText(setting)) GbkFromArgument(text, setting.name);
    if (IsBeyondReading(setting, text)) {
        throw Refused(setting, "has at most 199 bytes of GBK; a longer text is never read.");
    }
    if (IsPath(setting) && text.empty()) {
        throw Refused(setting,
                      "is a path; to remove it: tesmark config unset " + std::string(setting.name));
    }
    if (const std::string relative = RelativePathOf(setting, text); !relative.empty()) {
        throw Refused(setting, "is an absolute path: \"" + relative +
                                   "\" would mean another place in each working folder.");
    }
    for (const std::string& path : PathsOf(setting, text)) CheckKind(setting, path);
    if (IsPath(setting) && platform::Utf8FromPath(platform::PathFromUtf8(text)) != text) {
        throw Refused(setting, "has a character that paths lack in this machine's code page.");
    }
}

Failure Unwritable(const Setting& setting) {
    const std::string holder = HolderOf(setting).name;
    return {ExitCode::kSetup,
            std::string(setting.name) + " can't be written" +
                (holder.empty() ? "." : ": no right to write " + holder + ", or it is damaged."),
            {},
            setting.root == RegistryRoot::CurrentUser
                ? ""
                : std::string("  settings of the machine are the administrator's: ") +
                      kAdministratorHint};
}

}  // namespace

std::span<const Setting> KnownSettings() { return kSettings; }

const Setting& FindSetting(const std::string& name) {
    for (const Setting& setting : kSettings) {
        if (strcasecmp(setting.name, name.c_str()) == 0) return setting;
    }
    std::string names;
    for (const Setting& setting : kSettings) names += std::string("  ") + setting.name + "\n";
    names.pop_back();
    throw Failure{ExitCode::kUsage, "No setting is called \"" + name + "\". There are:", {}, names};
}

bool IsBeyondReading(const Setting& setting, const std::string& text) {
    return (setting.type == kText || setting.type == kAddress) &&
           Utf8ToAnsi(text).size() > kLargestText;
}

std::string RelativePathOf(const Setting& setting, const std::string& text) {
    for (const std::string& path : PathsOf(setting, text)) {
        if (!FileAt(path).is_absolute()) return path;
    }
    return {};
}

std::string SettingPlace(const Setting& setting) {
    const char* root = setting.root == RegistryRoot::LocalMachine  ? "HKEY_LOCAL_MACHINE\\"
                       : setting.root == RegistryRoot::ClassesRoot ? "HKEY_CLASSES_ROOT\\"
                                                                   : "HKEY_CURRENT_USER\\";
    std::string place = std::string(root) + setting.key;
    while (place.ends_with('\\')) place.pop_back();
    return place;
}

std::optional<std::string> ReadSetting(const Setting& setting) {
    const auto bytes = RawValue(setting);
    if (!bytes) return {};
    if (setting.type == kNumber) {
        unsigned int number = 0;
        if (bytes->size() > sizeof number) return {};
        std::memcpy(&number, bytes->data(), bytes->size());
        return std::to_string(number);
    }
    const std::string text = bytes->substr(0, bytes->find('\0'));
    return IsPath(setting) ? platform::Utf8FromPath(text) : Utf8FromGbk(text);
}

std::optional<std::string> ShownSetting(const Setting& setting) {
    auto value = ReadSetting(setting);
    if (value && setting.type == kSecret) value = "(not shown)";
    if (value && IsAddress(setting)) value = WithoutPasswords(*value);
    return value;
}

bool IsUnreadable(const Setting& setting) { return RawValue(setting) && !ReadSetting(setting); }

void WriteSetting(const Setting& setting, const std::string& text) {
    CheckValue(setting, text);
    if (!Store(setting, text)) throw Unwritable(setting);
    const auto stored = ReadSetting(setting);
    unsigned int number = 0;
    const bool same = setting.type == kNumber
                          ? stored && ParseNumber(text, number) && *stored == std::to_string(number)
                          : stored == text;
    if (!same) throw Unwritable(setting);
}

bool RemoveSetting(const Setting& setting) {
    if (!RawValue(setting)) return false;
    const OpenKey key(
        platform::OpenRegistryKey(setting.root, setting.key, platform::RegistryAccess::AllAccess));
    if (!key.Get() || !platform::DeleteRegistryValue(key.Get(), setting.value)) {
        throw Unwritable(setting);
    }
    if (IsAutomationClass(setting)) platform::DeleteRegistryValue(key.Get(), kThreadingModel);
    return true;
}
