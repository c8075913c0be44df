#include "dialogs/OnlineUrl.h"

#include <cctype>
#include <optional>

#include "dialogs/DialogFrame.h"
#include "dialogs/Resource.h"
#include "foundation/Registry.h"
#include "host/ModuleState.h"
#include "platform/CodePage.h"
#include "platform/InvalidParameter.h"
#include "service/Messages.h"

namespace {

constexpr char kModeSetting[] = "bSealPosition";
constexpr char kAddressSetting[] = "sWSURL";
constexpr int kOnlineMode = 1;

constexpr char kOfflineNotice[] = "本客户端为离线版，配置不可用！";

constexpr char kScheme[] = "http://";
constexpr std::size_t kSchemeLength = sizeof kScheme - 1;
constexpr char kPath[] = "/QelmServlet";

// Of the field's text and of the address, terminator included.
constexpr std::size_t kCapacity = 512;

// A failed read leaves the mode that an earlier one found.
void ReadMode(const CRegistry& settings) {
    unsigned int mode = 0;
    std::size_t size = sizeof mode;
    if (platform::QueryRegistryValue(settings.key, kModeSetting, &mode, &size)) {
        g_sealPositionMode = static_cast<int>(mode);
    }
}

// The scheme is taken to have its length, whatever stands there. Without the path nothing is left.
std::string HostPart(const std::string& address) {
    if (address.size() < kSchemeLength) return {};
    const std::string rest = address.substr(kSchemeLength);
    const auto end = rest.find(kPath);
    return end == std::string::npos ? std::string() : rest.substr(0, end);
}

bool IsSpace(char character) { return std::isspace(static_cast<unsigned char>(character)) != 0; }

// 2 for a character of two bytes: the second is never a blank of its own.
std::size_t CharacterLength(const std::string& text, std::size_t position) {
    return platform::IsAnsiLeadByte(text[position]) && position + 1 < text.size() ? 2 : 1;
}

std::string Trimmed(const std::string& text) {
    std::size_t begin = 0;
    while (begin < text.size() && IsSpace(text[begin])) ++begin;
    std::size_t end = begin;
    for (std::size_t position = begin; position < text.size();) {
        const bool isBlank = IsSpace(text[position]);
        position += CharacterLength(text, position);
        if (!isBlank) end = position;
    }
    return text.substr(begin, end - begin);
}

// Nothing where the address would be too long, after the run-time's failure.
std::optional<std::string> TypedAddress(const platform::DialogWindow& window) {
    const std::string host = Trimmed(window.Text(TESMARK_URL_FIELD, kCapacity));
    std::string address = kScheme + host + kPath;
    if (address.size() < kCapacity) return address;
    platform::RaiseInvalidParameter();
    return {};
}

class OnlineUrlDlgProc final : public CDialogFrame {
public:
    void OnOpen(platform::DialogWindow& window) override {
        CRegistry settings = OpenSettings();
        ReadMode(settings);
        if (g_sealPositionMode != kOnlineMode) {
            window.SetText(TESMARK_URL_FIELD, kOfflineNotice);
            window.TellDisabled(TESMARK_URL_FIELD);
            return;
        }
        std::string address;
        settings.GetString(kAddressSetting, address);
        window.SetText(TESMARK_URL_FIELD, HostPart(address));
    }

private:
    void OnConfirm(platform::DialogWindow& window) override {
        if (g_sealPositionMode == kOnlineMode) {
            const auto address = TypedAddress(window);
            if (!address) return;
            OpenSettings().SetString(kAddressSetting, *address);
        }
        window.End(kDialogConfirmed);
    }

    // The outcome is shown by the test itself. It can be tried on an offline installation too, on
    // what the notice makes for an address.
    bool OnOtherButton(platform::DialogWindow& window, int button) override {
        if (button != TESMARK_URL_TEST) return false;
        if (const auto address = TypedAddress(window)) TestConnection(*address);
        return true;
    }
};

}  // namespace

int ShowOnlineUrl() {
    OnlineUrlDlgProc procedure;
    return platform::OpenDialog(kDialogModule, TESMARK_DIALOG_ONLINE_URL, procedure);
}
