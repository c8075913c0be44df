#include <cstdint>
#include <cstdio>
#include <string>

#include "Declare.h"
#include "FileAccess.h"
#include "Library.h"
#include "Selection.h"
#include "Terminal.h"
#include "TerminalText.h"
#include "TimeStampWish.h"
#include "include/TesmarkOpt.h"
#include "platform/Files.h"

namespace {

// Larger files are hashed by their path.
constexpr std::uint64_t kInMemory = 8 * 1024 * 1024;
// The interface counts lengths in 32 bits.
constexpr std::uint64_t kLargestRaw = 1024 * 1024 * 1024;
constexpr std::uint64_t kLongWork = 32 * 1024 * 1024;

struct Options {
    std::string input;
    std::string output;
    bool raw = false;
    bool big = false;
    bool timeStamp = false;
    SelectionOptions selection;
};

bool IsByPath(const Options& options, std::uint64_t size) {
    return !options.timeStamp && (options.big || size > kInMemory);
}

// Why the library makes no time stamp for it; empty if it does.
std::string WhyUnstamped(const Options& options, std::uint64_t size) {
    if (options.raw) return "a bare signature value has no place for one";
    return IsByPath(options, size) ? "a file that is hashed by its path gets none" : "";
}

std::string WorkText(const Options& options, std::uint64_t size) {
    if (WhyUnstamped(options, size).empty() && TimeStampsAreOn()) return kWaitingForAuthority;
    return size > kLongWork ? "Signing " + SizeText(size) : "";
}

int Make(const Options& options, std::uint64_t size, std::string& signature) {
    const Progress progress(WorkText(options, size));
    if (options.raw) return MakeRawSignature(ReadWholeFile(options.input, kLargestRaw), signature);
    if (options.timeStamp) {
        // Only data gets one from the library, no file by its path.
        const int code = MakeSignature(ReadWholeFile(options.input, kLargestRaw), "", signature);
        return code || signature.empty() ? code : CheckTimeStamped(signature);
    }
    if (IsByPath(options, size)) {
        return MakeFileSignature(platform::PathFromUtf8(options.input), "", signature);
    }
    return MakeSignature(ReadWholeFile(options.input, kInMemory), "", signature);
}

std::string SignatureOf(const Options& options, std::uint64_t size) {
    const LogMark mark;
    std::string signature;
    const int code = Make(options, size, signature);
    // Whatever failed since: nobody waits for it any more.
    if (InterruptGuard::Interrupted()) {
        throw Failure{ExitCode::kInterrupted, "Interrupted; nothing was written."};
    }
    CheckResult(code, "The signature can't be made.", mark);
    if (signature.empty()) throw Failure{ExitCode::kFailed, "The library made no signature."};
    return signature;
}

Report Sign(const Options& options) {
    const std::uint64_t size = CheckReadable(options.input);
    const std::string output =
        options.output.empty() ? options.input + (options.raw ? ".sig" : ".p7s") : options.output;
    CheckIsNotInput(output, options.input);
    CheckIsNotInput(output, options.selection.pin.file);
    if (options.timeStamp) RequireTimeStamps();
    const LibrarySession library;
    const SelectedCert selected = SelectCertificate(options.selection);
    const InterruptGuard guard;
    const std::string signature = SignatureOf(options, size);
    WriteWholeFile(output, signature);
    ClearSelectKeyID();
    Report report;
    const std::string stamp = TellTimeStamp(signature, WhyUnstamped(options, size), report.json);
    if (output == "-") {
        // The signature stands alone on standard output.
        std::fputs(stamp.c_str(), stderr);
        return {};
    }
    const char* form = options.raw ? "PKCS#1" : "PKCS#7, detached";
    report.json["output"] = output;
    report.json["form"] = options.raw ? "PKCS#1" : "PKCS#7";
    report.json["certId"] = Utf8FromGbk(selected.certId);
    report.json["signer"] = selected.commonName;
    report.json["algorithm"] = selected.keyType;
    report.json["size"] = static_cast<Json::UInt64>(signature.size());
    report.text = "sign   " + Printable(output) + "  " + form + ", " + SizeText(signature.size()) +
                  ", by " + Printable(selected.commonName) + " (" + selected.keyType + ")\n" +
                  (stamp.empty() ? "" : "       " + stamp);
    return report;
}

void Bind(CLI::App& command, Options& options) {
    command.add_option("FILE", options.input, "The file to be signed")->required();
    command.add_option("-o,--output", options.output,
                       "The signature's file, or - for standard output; without it FILE.p7s");
    auto* raw = command.add_flag("--raw", options.raw,
                                 "The bare signature value (PKCS#1, or r and s), in FILE.sig");
    auto* big =
        command.add_flag("--big", options.big, "Hash the file by its path, as files over 8 MB are")
            ->excludes(raw);
    command.add_flag("--timestamp", options.timeStamp, "No signature without a good time stamp")
        ->excludes(raw)
        ->excludes(big);
    BindSelection(command, options.selection, false);
}

}  // namespace

void DeclareSign(CLI::App& parent, Invocation& invocation) {
    AddCommand<Options>(parent, invocation, "sign", "Sign a file: a detached PKCS#7 beside it",
                        "  tesmark sign report.txt\n"
                        "  tesmark sign report.txt -o report.p7s --cert alice --pin-file pin.txt\n"
                        "  tesmark sign report.txt --raw",
                        Bind, Sign);
}
