#include <openssl/err.h>

#include "components/certservice/ServiceTest.h"
#include "platform/Module.h"

namespace {

class ExportsTest : public ServiceTest {
protected:
    const unsigned char* m_bytes = Bytes("bytes");
    unsigned char m_out[64] = {};
    int m_length = sizeof m_out;
};

TEST_F(ExportsTest, NothingWorksWithoutAnOpenContext) {
    void* closed = nullptr;
    ASSERT_EQ(SOF_Initialize(&closed), 0);
    ASSERT_EQ(SOF_Finalize(closed), 0);
    for (void* context : {static_cast<void*>(nullptr), closed, static_cast<void*>(m_out)}) {
        EXPECT_EQ(SOF_GetUserList(context, m_out, &m_length), kServiceNotInitialised);
        EXPECT_EQ(SOF_Login(context, "DevKeys/key", kPin), kServiceNotInitialised);
        EXPECT_EQ(SOF_SetSignMethod(context, 0), kServiceNotInitialised);
        EXPECT_EQ(SOF_ValidateCert(context, m_bytes, 5), -1);
        EXPECT_EQ(SOF_TSVerifyPDFSignature(context, m_bytes, 5), kServiceNotInitialised);
        EXPECT_EQ(SOF_Finalize(context), kServiceNotInitialised);
    }
    EXPECT_EQ(SOF_Initialize(nullptr), kServiceBadArgument);
}

TEST_F(ExportsTest, ANullPointerIsABadArgumentEverywhere) {
    void* c = Open();
    const std::string id = MakeKey(KeyKind::kSm2);
    const char* certId = id.c_str();
    const unsigned char* null = nullptr;
    const int codes[] = {
        SOF_Login(c, nullptr, kPin),
        SOF_Login(c, certId, nullptr),
        SOF_Logout(c, nullptr),
        SOF_GetLastLoginCertID(c, certId, m_out, nullptr),
        SOF_GetUserList(c, m_out, nullptr),
        SOF_ExportUserCert(c, nullptr, m_out, &m_length),
        SOF_ExportUserCert(c, certId, nullptr, nullptr),
        GetDeviceCountEx(c, 1, nullptr),
        GetDeviceCountEx(c, 2, &m_length),
        GetDeviceInfo(c, nullptr, 7, m_out, &m_length),
        GetDeviceInfo(c, certId, 7, m_out, nullptr),
        EnumFilesInDevice(c, nullptr, m_out, &m_length),
        EnumFilesInDevice(c, certId, nullptr, nullptr),
        SOF_ReadFile(c, nullptr, "ESEAL", m_out, &m_length),
        SOF_ReadFile(c, certId, nullptr, m_out, &m_length),
        SOF_SignData(c, nullptr, m_bytes, 5, m_out, &m_length),
        SOF_SignData(c, certId, null, 5, m_out, &m_length),
        SOF_SignData(c, certId, m_bytes, -1, m_out, &m_length),
        SOF_SignData(c, certId, m_bytes, 5, m_out, nullptr),
        SOF_SignMessageEx(c, nullptr, 1, 1, m_bytes, 5, m_out, &m_length),
        SOF_SignMessageEx(c, certId, 1, 1, null, 5, m_out, &m_length),
        SOF_SignMessageEx(c, certId, 1, 1, m_bytes, 5, m_out, nullptr),
        SOF_SignHashMessage(c, nullptr, 0, 1, m_bytes, 5, m_out, &m_length),
        SOF_SignHashMessage(c, certId, 0, 1, null, 0, m_out, &m_length),
        SOF_SignHashMessage(c, certId, 0, 1, m_bytes, 5, m_out, nullptr),
        SOF_HashData(c, 1, null, 5, nullptr, 0, nullptr, 0, m_out, &m_length),
        SOF_HashData(c, 1, m_bytes, 5, nullptr, 5, nullptr, 0, m_out, &m_length),
        SOF_HashData(c, 1, m_bytes, 5, nullptr, 0, nullptr, 5, m_out, &m_length),
        SOF_HashData(c, 1, m_bytes, 5, nullptr, 0, nullptr, 0, m_out, nullptr),
        SOF_HashFile(c, 1, nullptr, nullptr, 0, nullptr, 0, m_out, &m_length),
        SOF_VerifySignedData(c, null, 5, m_bytes, 5, m_bytes, 5),
        SOF_VerifySignedData(c, m_bytes, 5, null, 5, m_bytes, 5),
        SOF_VerifySignedData(c, m_bytes, 5, m_bytes, 5, null, 0),
        SOF_VerifySignedMessage(c, null, 5, m_bytes, 5),
        SOF_VerifySignedMessage(c, m_bytes, 5, null, 5),
        SOF_VerifySignedHashMessage(c, null, 5, m_bytes, 5),
        SOF_VerifySignedHashMessage(c, m_bytes, 5, null, 0),
        SOF_GetInfoFromSignedMessage(c, null, 5, 2, m_out, &m_length),
        SOF_GetCertInfo(c, null, 5, 2, m_out, &m_length),
        SOF_GetCertInfo(c, m_bytes, 0, 2, m_out, &m_length),
        SOF_GetCertInfoByOid(c, null, 5, "2.5.29.31", m_out, &m_length),
        SOF_GetCertInfoByOid(c, m_bytes, 5, nullptr, m_out, &m_length),
        SOF_TSGenREQ(c, null, 32, 4, 1, 0, 0, 0, 0, 0, m_out, &m_length),
        SOF_TSGenREQ(c, m_bytes, 5, 4, 1, 0, 0, 0, 0, 0, m_out, &m_length),
        SOF_TSGenPDFSignature(c, null, 5, m_bytes, 5, m_out, &m_length),
        SOF_TSGenPDFSignature(c, m_bytes, 5, null, 5, m_out, &m_length),
        SOF_TSGenPDFSignature(c, m_bytes, 5, m_bytes, 5, m_out, nullptr),
        SOF_TSVerifyPDFSignature(c, null, 5),
        SOF_TSVerifyPDFSignature(c, m_bytes, 0),
        SOF_TSGetPDFSignatureInfo(c, null, 5, 1, m_out, &m_length),
        SOF_TSGetPDFSignatureInfo(c, m_bytes, 5, 1, m_out, nullptr),
        SetUserConfig(c, 5, nullptr),
        SOF_Base64Encode(c, null, 5, m_out, &m_length),
        SOF_Base64Encode(c, m_bytes, 5, m_out, nullptr),
        SOF_Base64Decode(c, null, 5, m_out, &m_length),
        SOF_Base64Decode(c, m_bytes, 4, m_out, nullptr),
    };
    for (size_t i = 0; i < sizeof codes / sizeof codes[0]; ++i) {
        EXPECT_EQ(codes[i], kServiceBadArgument) << i;
    }
    int negative = -1;
    EXPECT_EQ(SOF_GetUserList(c, m_out, &negative), kServiceBadArgument);
}

TEST_F(ExportsTest, ACertificateThatCantBeJudgedIsUntrustedWhateverTheCause) {
    void* c = Open();
    EXPECT_EQ(SOF_ValidateCert(c, nullptr, 5), -1);
    EXPECT_EQ(SOF_ValidateCert(c, m_bytes, -5), -1);
    EXPECT_EQ(SOF_ValidateCert(c, m_bytes, 0), -1);
    EXPECT_EQ(SOF_ValidateCert(c, m_bytes, 5), -1);
}

TEST_F(ExportsTest, WhatNobodyCallsIsNotSupported) {
    for (const auto entry :
         {SOF_InitializeEx, SOF_SignMessage, SOF_SignHashData, SOF_EncryptData, SOF_EncryptDataEx,
          SOF_DecryptData, SOF_GetSignMethod, Brevane_VerifyTimeStamp, Brevane_GetTimeStampInfo,
          SOF_PubKeyEncrypt, SOF_PriKeyDecrypt, SOF_GetLastError}) {
        EXPECT_EQ(entry(), kServiceNotSupported);
    }
}

TEST_F(ExportsTest, TheBuiltFileHasEveryNameOfTheTable) {
    const platform::ModuleHandle file = platform::LoadModule(CERT_SERVICE_FILE);
    ASSERT_NE(file, nullptr);
    int count = 0;
#define COUNT(entry)                                        \
    EXPECT_NE(platform::FindSymbol(file, #entry), nullptr); \
    ++count;
    CERT_SERVICE_ENTRIES(COUNT)
#undef COUNT
    EXPECT_EQ(count, 43);
    platform::FreeModule(file);
}

TEST_F(ExportsTest, Base64GoesBothWays) {
    void* c = Open();
    const std::string data(
        "\0\xFF"
        "data",
        6);
    const Answer text = TwoSteps([&](unsigned char* out, int* outLen) {
        return SOF_Base64Encode(c, Bytes(data), Size(data), out, outLen);
    });
    EXPECT_EQ(text, (Answer{0, "AP9kYXRh"}));
    const auto decode = [&](std::string_view input) {
        return TwoSteps([&](unsigned char* out, int* outLen) {
            return SOF_Base64Decode(c, Bytes(input), Size(input), out, outLen);
        });
    };
    EXPECT_EQ(decode("AP9kYXRh"), (Answer{0, data}));
    EXPECT_EQ(decode("AP9k\r\nYX\nRh \n"), (Answer{0, data}));
    EXPECT_EQ(decode("YQ=="), (Answer{0, "a"}));
    EXPECT_EQ(decode(""), (Answer{0, ""}));
    for (const char* bad : {"A", "AB", "ABC", "AP9k*XRh", "YQ=a", "Y===", "====", "YQ==YQ=="}) {
        EXPECT_EQ(decode(bad).code, kServiceBadArgument) << bad;
    }
}

TEST_F(ExportsTest, TheHostsOwnErrorsOfOpenSslStayAndOursDont) {
    void* c = Open();
    ERR_clear_error();
    ERR_raise(ERR_LIB_USER, 42);
    EXPECT_EQ(SOF_ValidateCert(c, m_bytes, 5), -1);
    EXPECT_EQ(ERR_GET_REASON(ERR_get_error()), 42);
    EXPECT_EQ(ERR_get_error(), 0u);
}

}  // namespace
