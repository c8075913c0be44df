#include <memory>
#include <string>

#include "Declare.h"
#include "FileAccess.h"
#include "KeyDevices.h"
#include "Pin.h"
#include "ResultText.h"
#include "TerminalText.h"
#include "commands/Development.h"
#include "commands/KeyScan.h"
#include "components/certservice/KeyImport.h"
#include "components/certservice/Places.h"
#include "components/certservice/ServiceCodes.h"
#include "components/crypto/Signature.h"
#include "platform/Files.h"

namespace {

constexpr std::uint64_t kLargestImport = 1024 * 1024;

struct NewOptions {
    std::string name;
    std::string id;
    std::string algorithm = "sm2";
    std::string organization;
    std::string serial;
    int days = 3 * 365;
    PinOptions pin;
};

struct ImportOptions {
    std::string file;
    std::string id;
    std::string password;
    std::string passwordFile;
    PinOptions pin;
};

struct ListOptions {};

Report NewKey(const NewOptions& options) {
    CheckKeyId(options.id);
    const DevelopmentAlgorithm algorithm = AlgorithmOf(options.algorithm);
    const std::string pin = NewPin(options.pin);
    CertificateRequest request;
    request.commonName = GbkFromArgument(options.name, "The name");
    request.organization = GbkFromArgument(options.organization, "The organization");
    request.serial = options.serial;
    const DevelopmentKey key = MakeDevelopmentKey(algorithm, options.days, request);
    const std::string certId = StoreKey(KeyFolderPath(), NameOfKeyFolder(options.id, options.name),
                                        key.key.get(), key.certificate, pin);
    Report report;
    report.json["certId"] = certId;
    report.json["algorithm"] = algorithm.text;
    report.json["name"] = options.name;
    report.json["folder"] = platform::Utf8FromPath(KeyFolderPath());
    report.json["trustFolder"] = platform::Utf8FromPath(TrustFolderPath());
    report.text = "key    " + certId + "  " + algorithm.text + "  " + Printable(options.name) +
                  "  until " + DateAfter(options.days) + "\n";
    return report;
}

std::string ImportPassword(const ImportOptions& options) {
    if (options.passwordFile.empty()) return options.password;
    const std::string content = ReadWholeFile(options.passwordFile, 4096);
    return content.substr(0, content.find_first_of("\r\n"));
}

// The codes speak of a key that is stored and of its PIN.
[[noreturn]] void ThrowNotImported(const std::string& file, int code) {
    if (code == kServicePinWrong) {
        throw Failure{ExitCode::kPin,
                      "The password of " + file + " is wrong, or none was given.",
                      {},
                      "  give it with --password-file FILE"};
    }
    if (code == kServiceKeyDamaged) {
        throw Failure{ExitCode::kFile,
                      "There is no private key in " + file +
                          " that can be read: it must be a PKCS#12, or a PEM with a private key."};
    }
    if (code == kServiceCertificateDamaged) {
        throw Failure{ExitCode::kFile,
                      "No certificate in " + file + " is that of its private key."};
    }
    throw Failure{ExitCodeFor(code), "No key can be taken from " + file + ".", code};
}

Report Import(const ImportOptions& options) {
    CheckKeyId(options.id);
    const std::string content = ReadWholeFile(options.file, kLargestImport);
    ImportedKey imported;
    const std::string password = ImportPassword(options);
    const int code = ReadKeyImport(content, password, imported);
    if (code) ThrowNotImported(options.file, code);
    const std::string pin = NewPin(options.pin);
    const std::string certId =
        StoreKey(KeyFolderPath(), options.id, imported.key.get(), imported.certificate, pin);
    Report report;
    report.json["certId"] = certId;
    report.text = "key    " + certId + "  imported from " + Printable(options.file) + "\n";
    return report;
}

Report ListKeys(const ListOptions&) {
    Report report;
    report.json["keys"] = Json::arrayValue;
    report.json["folder"] = platform::Utf8FromPath(KeyFolderPath());
    Table table({});
    for (const auto& device : OpenKeyDevices()) {
        std::vector<DeviceCertificate> certificates;
        if (const int code = device->ListCertificates(certificates)) {
            throw Failure{ExitCodeFor(code), "The keys can't be listed.", code};
        }
        for (const DeviceCertificate& certificate : certificates) {
            const int tries = device->RetriesLeft(certificate.certId);
            Json::Value json(Json::objectValue);
            json["certId"] = Utf8FromGbk(certificate.certId);
            json["label"] = Utf8FromGbk(certificate.label);
            json["triesLeft"] = tries < 0 ? Json::Value() : Json::Value(tries);
            json["locked"] = tries == 0;
            report.json["keys"].append(json);
            table.Add({Printable(Utf8FromGbk(certificate.certId)),
                       Printable(Utf8FromGbk(certificate.label)), TriesText(tries)});
        }
    }
    report.text = table.Empty() ? "no key is present\n" : table.Text();
    return report;
}

void BindNew(CLI::App& command, NewOptions& options) {
    command.add_option("--name", options.name, "Common name of the certificate")->required();
    command.add_option("--algorithm", options.algorithm, "sm2, rsa2048, rsa3072 or rsa4096")
        ->capture_default_str();
    command.add_option("--days", options.days, "Days for which the certificate is valid")
        ->check(CLI::Range(1, 7300))
        ->capture_default_str();
    command.add_option("--organization", options.organization, "Organization in the certificate");
    command.add_option("--serial", options.serial, "Serial number, hexadecimal; random without it");
    command.add_option("--id", options.id,
                       "Name of the key's folder; without it the name or the serial number");
    BindPin(command, options.pin);
}

void BindImport(CLI::App& command, ImportOptions& options) {
    command.add_option("FILE", options.file, "PKCS#12, or PEM with key and certificate")
        ->required();
    command.add_option("--id", options.id,
                       "Name of the key's folder; without it the serial number");
    auto* password =
        command.add_option("--password", options.password, "The file's password: for tests");
    command
        .add_option("--password-file", options.passwordFile,
                    "File with the password in its first line; - is standard input")
        ->excludes(password);
    BindPin(command, options.pin);
}

void BindList(CLI::App&, ListOptions&) {}

}  // namespace

void DeclareKey(CLI::App& parent, Invocation& invocation) {
    CLI::App* group = AddGroup(parent, "key", "Make, list and import development keys",
                               "  tesmark key new --name \"Velmora Ltd\"\n"
                               "  tesmark key list");
    AddCommand<NewOptions>(
        *group, invocation, "new",
        "Make a development key with a certificate of this machine's development CA, which is made "
        "and trusted when it is first needed",
        "  tesmark key new --name \"Velmora Ltd\"                      asks for a PIN\n"
        "  tesmark key new --name alice --algorithm rsa3072 --days 90 --pin-file pin.txt\n"
        "  echo 123456 | tesmark key new --name test --pin-file -",
        BindNew, NewKey);
    AddCommand<ListOptions>(*group, invocation, "list",
                            "Show the keys, and the tries they have left", "  tesmark key list",
                            BindList, ListKeys);
    AddCommand<ImportOptions>(*group, invocation, "import",
                              "Take a private key with its certificate from a file",
                              "  tesmark key import alice.p12 --password-file p12.txt\n"
                              "  tesmark key import key-and-certificate.pem --id alice",
                              BindImport, Import);
    DeclareKeyScan(*group, invocation);
}
