#include "StampPicture.h"

#include "DrawingControl.h"
#include "Library.h"
#include "ResultText.h"
#include "ServiceAddress.h"
#include "Settings.h"
#include "Terminal.h"
#include "TerminalText.h"
#include "TwoStep.h"
#include "foundation/Registry.h"
#include "foundation/SealSettings.h"
#include "include/TesmarkOpt.h"

namespace {

constexpr char kOnlineHint[] = "  tell its address: tesmark config online http://HOST/QelmServlet";
// The dialog that would ask can't be shown by the library under its own file name.
constexpr char kOneSealHint[] =
    "  where the service has several seals of one certificate, none can be picked here: have it "
    "give\n  out one";

constexpr char kTryHint[] = "  what it says was shown; to try it: tesmark config online --test";

bool HasPin(const SelectionOptions& options) {
    return !options.pin.pin.empty() || !options.pin.file.empty();
}

void RefuseSeal(const SelectionOptions& options, SealSource source) {
    if (options.seal.empty()) return;
    throw Failure{ExitCode::kUsage,
                  std::string("--seal names a seal in a key; here the picture is ") +
                      SourceText(source) + ".",
                  {},
                  "  the setting bSealPosition says so: tesmark config get bSealPosition"};
}

// One that is too long is none to the library.
[[noreturn]] void TellAddressMissing(const std::string& url) {
    const std::string fault = url.empty() ? "" : FaultOfServiceAddress(url);
    throw Failure{ExitCode::kSetup,
                  fault.empty() ? "No seal can be had from the online seal service."
                                : "The online seal service's address can't be used: " + fault + ".",
                  TESMARK_NO_ONLINE_ADDRESS, kOnlineHint};
}

void CheckFetched(int code, const SelectedSeal& selected, const LogMark& mark) {
    const Setting& address = FindSetting("sWSURL");
    const std::string service =
        "the online seal service at " + Printable(ShownSetting(address).value_or(""));
    const std::string sentence = "No seal can be had from " + service + ".";
    switch (code) {
        case TESMARK_NO_ONLINE_ADDRESS: TellAddressMissing(ReadSetting(address).value_or(""));
        case TESMARK_SERVICE_ANSWER: throw Failure{ExitCode::kFailed, sentence, code, kOneSealHint};
        case TESMARK_SERVICE_REFUSED: throw Failure{ExitCode::kFailed, sentence, code, kTryHint};
        case TESMARK_NO_ONLINE_SEAL:
            throw Failure{
                ExitCode::kFailed, sentence, code,
                "  have it give one out for the certificate of " + Printable(selected.commonName)};
        default: CheckResult(code, sentence, mark);
    }
}

std::string PictureOfLibrary(int& code) {
    std::string picture;
    code = FetchInTwoSteps([](unsigned char* out, int* outLen) { return GetSealInfo(out, outLen); },
                           picture);
    return picture;
}

// With a PIN the key is open: nobody else is waited for.
void FetchOnline(const SelectionOptions& options, SelectedSeal& selected) {
    const LogMark mark;
    int code = 0;
    {
        const Progress progress(HasPin(options) ? "Waiting for the online seal service" : "");
        selected.picture = PictureOfLibrary(code);
    }
    CheckFetched(code, selected, mark);
    if (selected.picture.empty()) {
        throw Failure{ExitCode::kFailed,
                      "What the online seal service sent holds no picture.",
                      {},
                      "  have it give out another seal"};
    }
    int widthMm = 0;
    int heightMm = 0;
    GetSealPicSize(&widthMm, &heightMm);
    SetSize(selected, widthMm, heightMm);
}

void CheckPicture(const SelectedSeal& selected) {
    if (!selected.picture.empty()) return;
    throw Failure{ExitCode::kFailed,
                  "The control that draws personal seals has drawn no picture.",
                  {},
                  "  to use the open one: " + HowToRegisterDrawingControl()};
}

void DrawName(SelectedSeal& selected) {
    const AutomationSession automation;
    const LogMark mark;
    int code = 0;
    selected.picture = PictureOfLibrary(code);
    CheckDrawn(code);
    CheckResult(code, "The picture of the certificate's name can't be had.", mark);
}

}  // namespace

SealSource ConfiguredSource() {
    switch (ReadNumberSetting("bSealPosition")) {
        case kOnlineService: return SealSource::kOnline;
        case kNameByXml:
        case kNameBySize: return SealSource::kName;
        default: return SealSource::kKey;
    }
}

const char* SourceText(SealSource source) {
    switch (source) {
        case SealSource::kKey: return "of a seal in a key";
        case SealSource::kOnline: return "of a seal of the online seal service";
        case SealSource::kName: return "drawn of the certificate's name";
        case SealSource::kText: return "drawn of a text";
    }
    return "";
}

const char* SourceName(SealSource source) {
    switch (source) {
        case SealSource::kKey: return "key";
        case SealSource::kOnline: return "online";
        case SealSource::kName: return "name";
        case SealSource::kText: return "text";
    }
    return "";
}

SelectedSeal SelectStamp(const SelectionOptions& options, const ContentPictureOptions& content) {
    const SealSource source = content.text.empty() ? ConfiguredSource() : SealSource::kText;
    if (source == SealSource::kKey) return SelectSeal(options);
    RefuseSeal(options, source);
    CheckContentPicture(content);
    const SelectedCert cert = SelectCertificate(options);
    SelectedSeal selected;
    selected.source = source;
    selected.certId = cert.certId;
    selected.commonName = cert.commonName;
    selected.keyType = cert.keyType;
    if (source == SealSource::kOnline) {
        FetchOnline(options, selected);
    } else {
        if (source == SealSource::kText) selected.picture = DrawnContent(content);
        if (source == SealSource::kName) DrawName(selected);
        CheckPicture(selected);
        SetSize(selected, -1, -1);
    }
    selected.mode = GetEsealMode();
    if (source == SealSource::kOnline) selected.sealName = NameOfSelectedSeal(selected.mode);
    return selected;
}
