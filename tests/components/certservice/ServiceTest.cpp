#include "components/certservice/ServiceTest.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "components/certservice/ServiceSettings.h"
#include "components/crypto/Signature.h"
#include "foundation/Text.h"
#include "support/Program.h"

const unsigned char* Bytes(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

int Size(std::string_view text) { return static_cast<int>(text.size()); }

void MakeSparseFile(const std::string& path, std::int64_t size) {
    std::ofstream(path, std::ios::binary).seekp(size - 1).put('\0');
}

void WriteFile(const std::string& path, std::string_view content) {
    std::ofstream(path, std::ios::binary) << content;
}

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

ServiceTest::ServiceTest() : m_keys(Path("keys")) {
    SetServicePath("KeyFolder", Path("keys"));
    SetServicePath("TrustFolder", Path("trust"));
    SetServicePath("CaFolder", Path("ca"));
    std::filesystem::create_directory(Path("keys"));
    std::filesystem::create_directory(Path("trust"));
}

ServiceTest::~ServiceTest() {
    for (void* context : m_contexts) SOF_Finalize(context);
}

std::string ServiceTest::KeyPath(const std::string& certId) const {
    return Path("keys/" + certId.substr(sizeof kKeyFolderPrefix - 1));
}

ProgramRun ServiceTest::OpenSsl(const std::string& arguments) const {
    std::vector<std::string> command{"/usr/bin/openssl"};
    std::istringstream words(arguments);
    for (std::string word; words >> word;) command.push_back(word);
    ProgramOptions options;
    options.folder = m_prefix.Path();
    const ProgramOutcome outcome = RunProgram(command, options);
    return {outcome.exitCode, outcome.out + outcome.error};
}

DevelopmentCa& ServiceTest::Authority(KeyKind kind) {
    std::unique_ptr<DevelopmentCa>& authority = m_authorities[kind];
    if (!authority) {
        int code = 0;
        authority = DevelopmentCa::Open(kind, Path("ca"), Path("trust"), code);
    }
    return *authority;
}

void ServiceTest::Trust(const DevelopmentCa& authority, const std::string& name) {
    WriteFile(Path("trust/" + name), authority.CertificatePem());
}

std::string ServiceTest::MakeKey(KeyKind kind, const std::string& name,
                                 const CertificateRequest& request) {
    const KeyHandle key(GenerateKey(kind, 2048));
    CertificateRequest named = request;
    if (named.commonName.empty()) named.commonName = "张三";
    const std::string certificate = Authority(kind).Issue(key.get(), named);
    std::string certId;
    EXPECT_EQ(m_keys.Store(name, key.get(), certificate, kPin, certId), kServiceOk);
    return certId;
}

std::string ServiceTest::MakeCertificate(KeyKind kind, const CertificateRequest& request) {
    const KeyHandle key(GenerateKey(kind, 2048));
    return Authority(kind).Issue(key.get(), request);
}

void* ServiceTest::Open() {
    void* context = nullptr;
    EXPECT_EQ(SOF_Initialize(&context), 0);
    m_contexts.push_back(context);
    return context;
}

Answer ServiceTest::Export(void* context, const std::string& certId) {
    return TwoSteps([&](unsigned char* out, int* outLen) {
        return SOF_ExportUserCert(context, certId.c_str(), out, outLen);
    });
}

Answer ServiceTest::SignData(void* context, const std::string& certId, std::string_view data) {
    return TwoSteps([&](unsigned char* out, int* outLen) {
        return SOF_SignData(context, certId.c_str(), Bytes(data), Size(data), out, outLen);
    });
}

Answer ServiceTest::SignMessage(void* context, const std::string& certId, std::string_view data) {
    return TwoSteps([&](unsigned char* out, int* outLen) {
        return SOF_SignMessageEx(context, certId.c_str(), 1, 1, Bytes(data), Size(data), out,
                                 outLen);
    });
}

Answer ServiceTest::SignHash(void* context, const std::string& certId, int algorithm,
                             std::string_view hash) {
    return TwoSteps([&](unsigned char* out, int* outLen) {
        return SOF_SignHashMessage(context, certId.c_str(), 0, algorithm, Bytes(hash), Size(hash),
                                   out, outLen);
    });
}

Answer ServiceTest::Field(void* context, std::string_view certificate, int field) {
    return TwoSteps([&](unsigned char* out, int* outLen) {
        return SOF_GetCertInfo(context, Bytes(certificate), Size(certificate), field, out, outLen);
    });
}

int ServiceTest::Validate(void* context, std::string_view certificate) {
    return SOF_ValidateCert(context, Bytes(certificate), Size(certificate));
}

int ServiceTest::SetRevocationList(void* context, std::string_view list) {
    return SetUserConfig(context, 5, Base64Encode(list).c_str());
}
