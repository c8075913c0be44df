// Every allocation of a call fails in its turn.

#include <openssl/err.h>

#include <utility>

#include "components/seallibrary/SealCodes.h"
#include "foundation/Text.h"
#include "support/LoopbackServer.h"
#include "support/NoProxy.h"
#include "tests/components/seallibrary/LibraryFixture.h"
#include "tests/components/seallibrary/linux/FailingAllocations.h"

namespace {

class SealLibraryMemoryOnLinux : public LibraryFixture {
protected:
    SealLibraryMemoryOnLinux() {
        GiveKey("key", m_signer);
        m_seal = MakeTestSeal(UsualOrder(SealForm::kGb2020, m_signer), m_maker);
        m_signature = SignData("key", m_signer, "data", m_seal);
    }

    // The result with so many allocations, and whether more were asked for.
    template <typename Call>
    static std::pair<int, bool> With(int allocations, Call call) {
        SetAllocationsLeft(allocations);
        const int code = call();
        const bool hasFailed = HasAllocationFailed();
        SetAllocationsLeft(-1);
        return {code, hasFailed};
    }
    template <typename Call>
    static void ExpectToldAtEach(Call call) {
        constexpr int kMost = 100'000;
        for (int allocations = 0; allocations < kMost; ++allocations) {
            const auto [code, hasFailed] = With(allocations, call);
            ASSERT_EQ(ERR_peek_error(), 0u) << allocations;
            if (!hasFailed) {
                EXPECT_GT(allocations, 0);
                EXPECT_EQ(code, kSealOk);
                return;
            }
            ASSERT_EQ(code, kSealNoMemory) << allocations;
        }
        FAIL() << "no end of allocations";
    }

    NoProxy m_noProxy;
    TestIdentity m_maker = MakeIdentity(KeyKind::kSm2, {.name = "Maker", .serial = 0x5678});
    TestIdentity m_signer = MakeIdentity(KeyKind::kSm2, {.name = "Signer"});
    std::string m_seal;
    std::string m_signature;
};

TEST_F(SealLibraryMemoryOnLinux, ReadingASealTellsThatMemoryRanOut) {
    int length = 0;
    const auto name = [&] {
        return TVK_Get_SealName_From_Eseal(Bytes(m_seal), Size(m_seal), nullptr, &length);
    };
    const auto picture = [&] {
        return TVK_Get_Pic_From_Eseal_Ex(Bytes(m_seal), Size(m_seal), nullptr, &length, nullptr,
                                         nullptr);
    };
    ExpectToldAtEach(name);
    ExpectToldAtEach(picture);
}

TEST_F(SealLibraryMemoryOnLinux, VerifyingTellsThatMemoryRanOut) {
    const std::string text = Base64Encode("data");
    ExpectToldAtEach([&] {
        return TVK_Verify_SES_Sign(Bytes(m_signature), Size(m_signature), Bytes(text), Size(text));
    });
    EXPECT_EQ(VerifyData(m_signature, "data"), kSealOk);
}

TEST_F(SealLibraryMemoryOnLinux, SettingsTellThatMemoryRanOut) {
    const std::string address = "http://127.0.0.1/" + std::string(1'000, 'x');
    const std::string list = MakeRevocationList(m_signer, 0x5678, kTestNow);
    ExpectToldAtEach([&] { return TVK_SetConfig(1, address.c_str(), Size(address), 0); });
    ExpectToldAtEach([&] { return TVK_SetConfigEx(3, Bytes(list), Size(list)); });
}

TEST_F(SealLibraryMemoryOnLinux, AskingForTheStatusTellsThatMemoryRanOut) {
    const LoopbackServer server([](const std::string&) {
        return LoopbackServer::Page("200 OK",
                                    "<ROOT>\r\n<STATUSCODE>200</STATUSCODE>\r\n"
                                    "<SEALSTATUS>valid</SEALSTATUS>\r\n</ROOT>\r\n" +
                                        std::string(1'000, ' '));
    });
    const std::string address = server.Url("/QelmServlet");
    ASSERT_EQ(TVK_SetConfig(1, address.c_str(), Size(address), 0), kSealOk);
    const std::string number = "1101";
    ExpectToldAtEach([&] {
        return TVK_Request_Eseal_Status(Bytes(number), Size(number), Bytes(number), Size(number), 0,
                                        0);
    });
}

}  // namespace
