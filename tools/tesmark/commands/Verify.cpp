#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Declare.h"
#include "FileAccess.h"
#include "Library.h"
#include "PathText.h"
#include "SignatureTime.h"
#include "Terminal.h"
#include "TerminalText.h"
#include "commands/VerdictOutput.h"
#include "components/certservice/ServiceCodes.h"
#include "pdf/DocumentBytes.h"
#include "pdf/PdfSignatures.h"
#include "platform/Files.h"

namespace {

// The interface counts lengths in 32 bits, and a seal signature's data goes through it in Base64.
constexpr std::uint64_t kLargestInMemory = 1024 * 1024 * 1024;
// From here on a component reads a file by its path, where that is an SM2 signer's.
constexpr std::uint64_t kByPath = 64 * 1024 * 1024;
constexpr std::uint64_t kLargestSignature = 64 * 1024 * 1024;
constexpr std::uint64_t kLongWork = 64 * 1024 * 1024;

struct Options {
    std::string input;
    std::string signature;
    std::string picture;
};

// Forms of ISO 32000 whose contents are no PKCS#7 over the signed bytes.
constexpr std::array kOtherForms = {"adbe.pkcs7.sha1", "adbe.x509.rsa_sha1", "ETSI.RFC3161"};

SignatureVerdict Refused(const std::string& failed, int code, const std::string& reason) {
    SignatureVerdict verdict;
    verdict.steps.push_back(
        {failed == "coverage" ? "coverage" : "signature", false, failed, code, reason});
    return verdict;
}

// The sentence without its full stop and with a small letter.
std::string AsClause(std::string sentence) {
    if (sentence.ends_with('.')) sentence.pop_back();
    if (!sentence.empty()) sentence[0] = static_cast<char>(sentence[0] | 0x20);
    return sentence;
}

bool IsOtherForm(const PdfSignature& signature) {
    return std::find(kOtherForms.begin(), kOtherForms.end(), signature.subFilter) !=
           kOtherForms.end();
}

// The first certificate that has to be decoded takes as long as ten others. Whether the signature
// is one that will be judged isn't known for sure until the whole document was looked through.
void PrepareFirst(const PdfSignatures& found) {
    const auto first =
        std::find_if(found.list.begin(), found.list.end(), [](const PdfSignature& signature) {
            return signature.problem == RangeProblem::kNone && !IsOtherForm(signature) &&
                   signature.end <= kLargestInMemory &&
                   KindOf(signature.contents) == SignatureKind::kPkcs7;
        });
    if (first != found.list.end()) PrepareSigner(first->contents);
}

SignatureVerdict Judge(CDocumentBytes& document, const PdfSignature& signature) {
    if (signature.problem != RangeProblem::kNone) {
        return Refused("coverage", 0, AsClause(RangeProblemText(signature.problem)));
    }
    if (IsOtherForm(signature)) {
        return Refused("form", kServiceNotSupported,
                       "signatures of the form " + signature.subFilter + " can't be verified here");
    }
    if (signature.end > kLargestInMemory) {
        return Refused("component", kServiceNotSupported,
                       "it covers more than " + SizeText(kLargestInMemory));
    }
    std::string_view bytes;
    if (!document.Signed(signature, bytes)) {
        throw Failure{ExitCode::kFile, "The document was changed while it was read."};
    }
    const auto time = ReadPdfTime(signature.time);
    return JudgeSignature(signature.contents, {bytes, ""}, time ? LocalTimeText(*time) : "");
}

// What a PDF holds, and the verdicts on its signatures in their order.
struct Judged {
    PdfSignatures all;
    std::vector<SignatureVerdict> verdicts;
};

// Whether a good signature covers the whole file.
bool IsAnswered(const Judged& judged) {
    for (std::size_t i = 0; i < judged.verdicts.size(); ++i) {
        if (judged.all.list[i].end == judged.all.fileSize && judged.verdicts[i].Good()) return true;
    }
    return false;
}

// A further signature that is good and covers the rest of the file speaks for what it brought with
// it.
Standing StandingOf(const SignatureVerdict& verdict, const PdfSignature& signature,
                    const Judged& judged) {
    if (!verdict.Good()) return Standing::kBad;
    const PdfAddition& after = signature.after;
    if (after.bytes == 0) return Standing::kGood;
    // A certification may forbid even signatures.
    if (signature.certifies == 1) return Standing::kChanged;
    return after.compared && after.altered.empty() && after.signature && IsAnswered(judged)
               ? Standing::kGood
               : Standing::kChanged;
}

std::string Upper(std::string text) {
    for (char& c : text) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
    return text;
}

// "good   " or "BAD    ", and what follows in lines below it starts there.
std::string Mark(Standing standing) {
    const std::string word = StandingText(standing);
    return Padded(standing == Standing::kGood ? word : Upper(word), 9);
}

constexpr char kIndent[] = "         ";

std::string FileNameOf(std::string name) {
    for (char& c : name) {
        const bool plain = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') ||
                           (c >= 'A' && c <= 'Z') || c == '-' || c == '_';
        if (!plain) c = '_';
    }
    return name;
}

// Writes the pictures of seal signatures: into a folder under the numbers and names of their
// fields, or a single one into a file. A document doesn't choose the name of a file by its fields'
// alone. Verdicts come first: what can't be written is told with them.
class CPictureSaver {
public:
    explicit CPictureSaver(const Options& options) : m_options(options), m_path(options.picture) {
        std::error_code error;
        m_isFolder = std::filesystem::is_directory(FileAt(m_path), error);
    }

    void Save(const std::string& name, const SignatureVerdict& verdict, Json::Value& json,
              std::string& text) {
        if (m_path.empty() || !verdict.seal || verdict.seal->picture.empty()) return;
        const std::string path =
            m_isFolder ? TextOf(FileAt(m_path) / FileAt(FileNameOf(name) + verdict.seal->extension))
                       : m_path;
        try {
            Write(path, verdict.seal->picture);
        } catch (const Failure& failure) {
            if (!m_failure) m_failure = failure;
            text +=
                std::string(kIndent) + "picture not saved: " + Printable(failure.sentence) + "\n";
            return;
        }
        json["seal"]["savedAs"] = path;
        text += std::string(kIndent) + "picture " + Printable(path) + "\n";
    }

    // Behind the verdicts. A document that isn't good stays the worse news.
    void Finish(Report& report) const {
        if (m_failure) {
            PrintFailure(*m_failure, false, "");
            report.json["error"]["exit"] = static_cast<int>(m_failure->exitCode);
            report.json["error"]["message"] = m_failure->sentence;
            if (report.exitCode == ExitCode::kOk) report.exitCode = m_failure->exitCode;
        } else if (!m_path.empty() && !m_saved) {
            constexpr char kNone[] = "there is no seal whose picture could be saved";
            report.json["note"] = kNone;
            report.text += std::string("note     ") + kNone + "\n";
        }
    }

private:
    void Write(const std::string& path, const std::string& picture) {
        if (!m_isFolder && m_saved) {
            throw Failure{ExitCode::kChoice, "There are several seals: name a folder for them."};
        }
        CheckIsNotInput(path, m_options.input);
        CheckIsNotInput(path, m_options.signature);
        WriteWholeFile(path, picture);
        m_saved = true;
    }

    const Options& m_options;
    std::string m_path;
    bool m_isFolder = false;
    bool m_saved = false;
    std::optional<Failure> m_failure;
};

ExitCode ExitCodeOf(Standing standing) {
    switch (standing) {
        case Standing::kGood: return ExitCode::kOk;
        case Standing::kChanged: return ExitCode::kNotCovered;
        case Standing::kBad: break;
    }
    return ExitCode::kNotGood;
}

void CheckRead(StampError error, const std::string& message) {
    if (error != StampError::kNone) throw Failure{ExitCode::kFile, message};
}

Standing AddSignature(const Judged& judgement, std::size_t index, CPictureSaver& saver,
                      Report& report) {
    const PdfSignature& signature = judgement.all.list[index];
    const SignatureVerdict& verdict = judgement.verdicts[index];
    const std::uint64_t fileSize = judgement.all.fileSize;
    const Standing standing = StandingOf(verdict, signature, judgement);
    Json::Value json = PdfSignatureJson(signature, fileSize);
    const Json::Value judged = VerdictJson(verdict);
    for (const auto& name : judged.getMemberNames()) json[name] = judged[name];
    json["verdict"] = StandingText(standing);
    report.text += Mark(standing) + Printable(signature.fieldName) +
                   (signature.page ? ", page " + std::to_string(signature.page) : "") + ", " +
                   SignatureKindText(verdict.kind) + " (" + Printable(signature.subFilter) + ")\n" +
                   VerdictText(verdict, kIndent) + PdfSignatureText(signature, fileSize, kIndent);
    saver.Save(std::to_string(index + 1) + "-" + signature.fieldName, verdict, json, report.text);
    report.json["signatures"].append(json);
    return standing;
}

Report Unsigned(Report report) {
    report.json["verdict"] = "unsigned";
    report.text = "There is no signature in it.\n";
    report.exitCode = ExitCode::kNotGood;
    return report;
}

Report VerifyPdf(const Options& options) {
    CheckIsNoStream(options.input);
    const std::string path = platform::PathFromUtf8(options.input);
    CDocumentBytes document(path);
    CPdfSignatureReading reading(path, document);
    std::string message;
    CheckRead(reading.Begin(message), message);
    Report report;
    report.json["file"] = options.input;
    report.json["size"] = static_cast<Json::UInt64>(reading.Found().fileSize);
    report.json["emptyFields"] = reading.Found().emptyFields;
    report.json["signatures"] = Json::Value(Json::arrayValue);
    if (reading.Found().list.empty()) return Unsigned(std::move(report));
    const LibrarySession library;
    PrepareFirst(reading.Found());
    Judged judged;
    CheckRead(reading.Finish(judged.all, message), message);
    const Progress progress(
        judged.all.fileSize > kLongWork ? "Verifying " + SizeText(judged.all.fileSize) : "");
    for (const PdfSignature& signature : judged.all.list) {
        judged.verdicts.push_back(Judge(document, signature));
    }
    CPictureSaver saver(options);
    Standing worst = Standing::kGood;
    for (std::size_t i = 0; i < judged.verdicts.size(); ++i) {
        worst = std::max(worst, AddSignature(judged, i, saver, report));
    }
    report.json["verdict"] = StandingText(worst);
    report.exitCode = ExitCodeOf(worst);
    saver.Finish(report);
    return report;
}

SignatureVerdict JudgeDetached(const Options& options, const std::string& signature) {
    const SignatureKind kind = KindOf(signature);
    // The data may stand in the signature itself.
    if (options.input.empty()) return JudgeSignature(signature, {"", "", true}, "");
    const std::uint64_t size = options.input == "-" ? 0 : CheckReadable(options.input);
    const Progress progress(size > kLongWork ? "Verifying " + SizeText(size) : "");
    if (size > kByPath && (kind == SignatureKind::kSeal || SignedBySm2(signature))) {
        return JudgeSignature(signature, {"", platform::PathFromUtf8(options.input)}, "");
    }
    const std::string data = ReadWholeFile(options.input, kLargestInMemory);
    return JudgeSignature(signature, {data, ""}, "");
}

Report VerifyDetached(const Options& options) {
    const std::string signature = ReadWholeFile(options.signature, kLargestSignature);
    const LibrarySession library;
    const SignatureVerdict verdict = JudgeDetached(options, signature);
    const Standing standing = verdict.Good() ? Standing::kGood : Standing::kBad;
    Report report;
    report.json = VerdictJson(verdict);
    report.json["signature"] = options.signature;
    report.json["file"] = options.input;
    report.json["verdict"] = StandingText(standing);
    report.text = Mark(standing) + Printable(options.signature) + ", " +
                  SignatureKindText(verdict.kind) + "\n" + VerdictText(verdict, kIndent);
    CPictureSaver saver(options);
    saver.Save("seal", verdict, report.json, report.text);
    report.exitCode = ExitCodeOf(standing);
    saver.Finish(report);
    return report;
}

Report Verify(const Options& options) {
    if (!options.signature.empty()) return VerifyDetached(options);
    if (options.input.empty()) {
        throw Failure{ExitCode::kUsage, "Name a PDF, or a signature with --detached."};
    }
    return VerifyPdf(options);
}

void Bind(CLI::App& command, Options& options) {
    command.add_option("FILE", options.input, "The signed PDF; with --detached what was signed");
    command.add_option("--detached", options.signature,
                       "A signature in a file of its own; without FILE what was signed is in it");
    command.add_option("--save-seal-picture", options.picture,
                       "Write the picture of the seal to this file, or those of all into this "
                       "folder");
}

}  // namespace

void DeclareVerify(CLI::App& parent, Invocation& invocation) {
    AddCommand<Options>(parent, invocation, "verify",
                        "Verify the signatures of a PDF, or a signature in a file of its own",
                        "  tesmark verify stamped.pdf\n"
                        "  tesmark verify stamped.pdf --json\n"
                        "  tesmark verify stamped.pdf --save-seal-picture seal.png\n"
                        "  tesmark verify --detached report.txt.p7s report.txt",
                        Bind, Verify);
}
