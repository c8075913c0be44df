#include "commands/ConfigOnline.h"

#include <string>

#include "Declare.h"
#include "ServiceAddress.h"
#include "Settings.h"
#include "StampPicture.h"
#include "TerminalText.h"
#include "components/http/Address.h"
#include "foundation/Registry.h"
#include "include/TesmarkOpt.h"

namespace {

constexpr char kUseIt[] = "tesmark config set bSealPosition 1";
constexpr char kNameIt[] = "  give the address: tesmark config online http://HOST/QelmServlet";

struct Options {
    std::string url;
    bool test = false;
};

const Setting& AddressSetting() { return FindSetting("sWSURL"); }

std::string StoredAddress() { return ReadSetting(AddressSetting()).value_or(""); }

// `exitCode` for an address that isn't of the form.
void CheckForm(const std::string& url, ExitCode exitCode) {
    const std::string fault = FaultOfServiceAddress(url);
    if (fault.empty()) return;
    throw Failure{exitCode,
                  "No online seal service can be asked at \"" + Printable(WithoutPasswords(url)) +
                      "\": " + fault + ".",
                  {},
                  "  its form: http://HOST[:PORT][/PATH]/QelmServlet, or https://..."};
}

// The dialog that is only looked at and confirmed stores what it shows.
void CheckDialogKeepsAddress() {
    // Nothing is stored then.
    if (ConfiguredSource() != SealSource::kOnline) return;
    // As the dialog reads it: one that is too long is none.
    const std::string url = Utf8FromGbk(ReadTextSetting(AddressSetting().value));
    if (url.empty() || IsKeptByDialog(url)) return;
    throw Failure{ExitCode::kSetup,
                  "The dialog would spoil the address that is set, " +
                      Printable(WithoutPasswords(url)) +
                      ": it knows http://HOST[:PORT][/PATH]/QelmServlet alone.",
                  {},
                  "  to change it: tesmark config online ADDRESS\n"
                  "  to begin anew in the dialog: tesmark config unset sWSURL"};
}

void AskInDialog() {
    CheckDialogKeepsAddress();
    const auto before = ReadSetting(AddressSetting());
    const int code = SetOnlineUrl();
    if (code == TESMARK_DIALOG_NOT_SHOWN) {
        throw Failure{ExitCode::kSetup, "The dialog can't be shown here.", {}, kNameIt};
    }
    if (code) throw Failure{ExitCode::kFailed, "The dialog was closed; nothing was stored."};
    if (ConfiguredSource() != SealSource::kOnline) {
        throw Failure{ExitCode::kSetup,
                      "Nothing was stored: this machine takes its seals from another place.",
                      {},
                      std::string("  to take them from the online service: ") + kUseIt};
    }
    // The dialog says nothing of a write that failed: what stands there as before is written again.
    if (ReadSetting(AddressSetting()) == before) {
        WriteSetting(AddressSetting(), before.value_or(""));
    }
    CheckForm(StoredAddress(), ExitCode::kSetup);
}

void Test(const std::string& url, Report& report) {
    if (url.empty()) {
        throw Failure{
            ExitCode::kSetup, "The address of the online seal service is not set.", {}, kNameIt};
    }
    CheckForm(url, ExitCode::kSetup);
    const Greeting greeting = GreetService(url);
    report.json["status"] = greeting.status;
    report.text += "the online seal service answers: status " + greeting.status + "\n";
}

// As it stands in the store now.
void Tell(Report& report) {
    const std::string shown = ShownSetting(AddressSetting()).value_or("");
    const bool inUse = ConfiguredSource() == SealSource::kOnline;
    report.json["address"] = shown;
    report.json["inUse"] = inUse;
    report.text += "sWSURL = " + Printable(shown) + "\n";
    if (!inUse) report.text += std::string("note   not in use; to use it: ") + kUseIt + "\n";
}

// What doesn't answer isn't stored where it is to be tested.
Report Online(const Options& options) {
    Report report;
    if (!options.url.empty()) CheckForm(options.url, ExitCode::kUsage);
    if (options.test) Test(options.url.empty() ? StoredAddress() : options.url, report);
    if (!options.url.empty()) {
        WriteSetting(AddressSetting(), options.url);
    } else if (!options.test) {
        AskInDialog();
    }
    Tell(report);
    return report;
}

void Bind(CLI::App& command, Options& options) {
    command.add_option("ADDRESS", options.url,
                       "http://HOST[:PORT][/PATH]/QelmServlet; without it a dialog asks");
    command.add_flag("--test", options.test,
                     "Ask the service; with ADDRESS it is stored only if the service answers");
}

}  // namespace

void DeclareConfigOnline(CLI::App& config, Invocation& invocation) {
    AddCommand<Options>(
        config, invocation, "online", "Tell where the online seal service is, or try it",
        "  tesmark config online\n"
        "  tesmark config online http://seals.example/QelmServlet --test\n"
        "  tesmark config online --test\n"
        "  tesmark config set bSealPosition 1\n"
        "\n"
        "Seals come from the service where the setting bSealPosition is 1; this command doesn't\n"
        "change it. The dialog is the library's own and knows addresses of http:// alone; it "
        "isn't\n"
        "opened while another one is set.",
        Bind, Online);
}
