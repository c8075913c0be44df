#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "CertServiceClient.h"
#include "Declare.h"
#include "FileAccess.h"
#include "Inventory.h"
#include "Library.h"
#include "Terminal.h"
#include "TerminalText.h"
#include "TwoStep.h"
#include "include/TesmarkOpt.h"
#include "platform/Files.h"

namespace {

// The library's buffer for a hash.
constexpr std::size_t kLargestHash = 32;
constexpr std::uint64_t kLargestInput = 1024 * 1024 * 1024;
constexpr std::uint64_t kLongWork = 64 * 1024 * 1024;

struct Options {
    std::string input;
    std::string algorithm;
    std::string cert;
};

struct Algorithm {
    const char* option;
    const char* name;  // the library's
};

constexpr Algorithm kAlgorithms[] = {{"sm3", "SM3"}, {"sha256", "SHA256"}, {"sha1", "SHA1"}};

const Algorithm& AlgorithmNamed(const std::string& option) {
    for (const Algorithm& algorithm : kAlgorithms) {
        if (option == algorithm.option) return algorithm;
    }
    throw Failure{ExitCode::kUsage,
                  "No algorithm is called \"" + option + "\": there are sm3, sha256 and sha1."};
}

std::string Hexadecimal(const unsigned char* bytes, int length) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (int i = 0; i < length; ++i) {
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 15];
    }
    return text;
}

// Of what a certificate signs over; another one's hash would be the file's alone, and no part of
// any signature by it.
void CheckIsOfCertificate(const std::string& option, bool sm2, const std::string& cert) {
    const std::string own = sm2 ? "sm3" : "sha256";
    if (option == own) return;
    throw Failure{ExitCode::kUsage,
                  "A signature by \"" + cert + "\" is made over " + own + ": --algorithm " +
                      option + " doesn't go with this certificate.",
                  {},
                  "  the hash of the file alone: without --cert"};
}

int HashStandardInput(const char* algorithm, const std::string& der, unsigned char* hash,
                      int* length) {
    const std::string data = ReadWholeFile("-", kLargestInput);
    return GetHashData(algorithm, Bytes(data), static_cast<int>(data.size()),
                       der.empty() ? nullptr : Bytes(der), static_cast<int>(der.size()), hash,
                       length);
}

// The certificate is the library's after a failure, ours after a success.
int HashPath(const char* algorithm, const std::string& path, const std::string& der,
             unsigned char* hash, int* length) {
    unsigned char* cert = nullptr;
    if (!der.empty()) {
        cert = static_cast<unsigned char*>(std::malloc(der.size()));
        if (!cert) return TESMARK_NO_MEMORY;
        std::memcpy(cert, der.data(), der.size());
    }
    const int code = GetFileHash(algorithm, platform::PathFromUtf8(path).c_str(), cert,
                                 static_cast<int>(der.size()), hash, length);
    if (code == 0) std::free(cert);
    return code;
}

std::string HashOf(const Options& options, const char* algorithm, const std::string& der) {
    std::array<unsigned char, kLargestHash> hash{};
    int length = static_cast<int>(hash.size());
    const LogMark mark;
    const bool standardInput = options.input == "-";
    const std::uint64_t size = standardInput ? 0 : CheckReadable(options.input);
    const Progress progress(size > kLongWork ? "Hashing " + SizeText(size) : "");
    const int code = standardInput ? HashStandardInput(algorithm, der, hash.data(), &length)
                                   : HashPath(algorithm, options.input, der, hash.data(), &length);
    CheckResult(code, "The hash can't be made: " + options.input + ".", mark);
    return Hexadecimal(hash.data(), length);
}

Report Hash(const Options& options) {
    const LibrarySession library;
    std::string der;
    bool sm2 = false;
    if (!options.cert.empty()) {
        const CertServiceClient service;
        const auto certificates = ListCertificates(service, WithSeals::kNo);
        const CertificateEntry& entry = FindCertificate(certificates, options.cert);
        der = entry.der;
        sm2 = entry.keyType == "SM2";
    }
    const std::string option = !options.algorithm.empty() ? options.algorithm
                               : sm2                      ? "sm3"
                                                          : "sha256";
    const Algorithm& algorithm = AlgorithmNamed(option);
    if (!options.cert.empty()) CheckIsOfCertificate(option, sm2, options.cert);
    const std::string hash = HashOf(options, algorithm.name, der);
    Report report;
    report.json["hash"] = hash;
    report.json["algorithm"] = algorithm.name;
    report.json["file"] = options.input;
    report.text = hash + "  " + Printable(options.input) + "\n";
    return report;
}

void Bind(CLI::App& command, Options& options) {
    command.add_option("FILE", options.input, "The file, or - for standard input")->required();
    command.add_option("--algorithm", options.algorithm,
                       "sm3, sha256 or sha1; without it sha256, or sm3 with an SM2 certificate");
    command.add_option("--cert", options.cert,
                       "Hash what a signature by this certificate is made over: with SM2 by SM3 ZA "
                       "and the data (GB/T 32918.2), with RSA by SHA-256 the data");
}

}  // namespace

void DeclareHash(CLI::App& parent, Invocation& invocation) {
    AddCommand<Options>(parent, invocation, "hash", "Hash a file",
                        "  tesmark hash contract.pdf\n"
                        "  tesmark hash contract.pdf --algorithm sm3\n"
                        "  tesmark hash contract.pdf --cert alice",
                        Bind, Hash);
}
