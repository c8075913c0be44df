// The seal library asks the server for a seal's status.

#include "components/seallibrary/SealCodes.h"
#include "platform/closed/SealLibrary.h"
#include "support/NoProxy.h"
#include "tests/tools/sealserver/RunningServer.h"
#include "tests/tools/sealserver/StoreFixture.h"

namespace {

const unsigned char* Bytes(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}
int Size(const std::string& text) { return static_cast<int>(text.size()); }

class StatusRoundTripTest : public StoreFixture {
protected:
    StatusRoundTripTest() {
        const std::string address = m_running.Address() + kServicePath;
        TVK_SetConfig(1, address.c_str(), Size(address), 0);
    }
    ~StatusRoundTripTest() override { TVK_Release(); }

    // With the fields that the library itself reads in the seal.
    static int StatusOf(const std::string& seal) {
        std::string number(100, '\0');
        std::string hash(100, '\0');
        int numberLen = Size(number);
        int hashLen = Size(hash);
        int other = 0;
        EXPECT_EQ(TVK_GetSealInfo(Bytes(seal), Size(seal), Writable(number), &numberLen, nullptr,
                                  &other, nullptr, &other, nullptr, &other, Writable(hash),
                                  &hashLen, nullptr, &other, nullptr, &other, nullptr, &other,
                                  nullptr, &other, nullptr, &other, nullptr, &other),
                  kSealOk);
        return TVK_Request_Eseal_Status(Bytes(number), numberLen, Bytes(hash), hashLen, 0, 0);
    }
    static unsigned char* Writable(std::string& text) {
        return reinterpret_cast<unsigned char*>(text.data());
    }

    const NoProxy m_noProxy;
    RunningServer m_running{{}, m_store, ""};
};

TEST_F(StatusRoundTripTest, ASealIsUsableFromItsEntryUntilItIsSuspended) {
    const std::string seal = NationalSeal();
    EXPECT_EQ(StatusOf(seal), kSealStatusUnknown);
    const std::int64_t id = AddSeal({seal, "7001", ""});
    EXPECT_EQ(StatusOf(seal), kSealOk);
    m_store.SetSuspended(id, true);
    EXPECT_EQ(StatusOf(seal), kSealStatusSuspended);
    m_store.SetSuspended(id, false);
    EXPECT_EQ(StatusOf(seal), kSealOk);
    m_store.RemoveSeal(id);
    EXPECT_EQ(StatusOf(seal), kSealStatusUnknown);
}

TEST_F(StatusRoundTripTest, AnotherSealOfTheSameNumberIsReplaced) {
    AddSeal({NationalSeal(), "", ""});
    // Every making of it has a signature of its own.
    EXPECT_EQ(StatusOf(NationalSeal()), kSealStatusReplaced);
}

TEST_F(StatusRoundTripTest, AServerThatFailsTellsNoStatus) {
    Database(Path()).Execute("DROP TABLE seals");
    EXPECT_EQ(StatusOf(NationalSeal()), kSealStatusBadAnswer);
}

}  // namespace
