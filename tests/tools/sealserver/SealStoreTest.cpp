// What stays in the file, and what doesn't go in.

#include "tools/sealserver/SealStore.h"

#include <fstream>

#include "tests/tools/sealserver/StoreFixture.h"
#include "tools/sealserver/Database.h"

namespace {

class SealStoreTest : public StoreFixture {};

// The databases that are opened while it lives find their statements refused that ask for rows,
// once it is told so.
class RefusedQueries {
public:
    RefusedQueries() { sqlite3_auto_extension(Entry()); }
    ~RefusedQueries() {
        sqlite3_cancel_auto_extension(Entry());
        s_refuses = false;
    }
    RefusedQueries(const RefusedQueries&) = delete;
    RefusedQueries& operator=(const RefusedQueries&) = delete;

    static void Begin() { s_refuses = true; }

private:
    static int Authorize(void*, int action, const char*, const char*, const char*, const char*) {
        return s_refuses && action == SQLITE_SELECT ? SQLITE_DENY : SQLITE_OK;
    }
    static int Watch(sqlite3* opened, const char**, const sqlite3_api_routines*) {
        return sqlite3_set_authorizer(opened, Authorize, nullptr);
    }
    static void (*Entry())() { return reinterpret_cast<void (*)()>(&Watch); }

    static inline bool s_refuses = false;
};

TEST_F(SealStoreTest, WhatWasEnteredIsThereForTheNextProcess) {
    const std::int64_t id = AddSeal({EsSeal(), "7", "合同"});
    m_store.SetSuspended(id, true);
    m_store.SetSetting("password", "hash");
    SealStore next(Path());
    const auto certificate = next.FindCertificate(kSignerSerial, kSignerName);
    ASSERT_TRUE(certificate);
    EXPECT_EQ(certificate->der, Signer().certificate);
    const auto seal = next.FindSeal(certificate->id, "7");
    ASSERT_TRUE(seal);
    EXPECT_EQ(seal->name, "合同");
    EXPECT_EQ(seal->form, "ES");
    EXPECT_EQ(seal->file, EsSeal());
    EXPECT_TRUE(seal->suspended);
    EXPECT_EQ(seal->added.size(), std::string("2026-11-22T00:00:00Z").size());
    EXPECT_EQ(next.Setting("password"), "hash");
    EXPECT_EQ(next.Setting("other"), "");
}

TEST_F(SealStoreTest, WhatAnotherProcessDoesIsSeenAtOnce) {
    SealStore other(Path());
    const std::int64_t id = AddSeal({EsSeal(), "7", ""});
    EXPECT_TRUE(other.SetSuspended(id, true));
    EXPECT_TRUE(m_store.Seal(id)->suspended);
    EXPECT_TRUE(other.RemoveSeal(id));
    EXPECT_FALSE(m_store.Seal(id));
    EXPECT_FALSE(m_store.RemoveSeal(id));
    EXPECT_FALSE(m_store.SetSuspended(id, true));
}

TEST_F(SealStoreTest, ACertificateIsThereOnce) {
    const std::int64_t byTexts = EnterCertificate(m_store, "", "00 12:34-ab CD", kSignerName);
    EXPECT_EQ(m_store.Certificate(byTexts)->der, "");
    EXPECT_EQ(AddSigner(), byTexts);
    EXPECT_EQ(m_store.Certificate(byTexts)->der, Signer().certificate);
    EXPECT_EQ(EnterCertificate(m_store, "", kSignerSerial, kSignerName), byTexts);
    EXPECT_EQ(m_store.Certificate(byTexts)->der, Signer().certificate);
    EXPECT_EQ(m_store.Certificates().size(), 1u);
    EXPECT_NE(EnterCertificate(m_store, "", kSignerSerial, "CN=signer"), byTexts);
}

TEST_F(SealStoreTest, ACertificateIsEnteredAsAWholeOrNotAtAll) {
    const RefusedQueries refused;
    SealStore store(Path());
    RefusedQueries::Begin();
    bool isEntered = true;
    try {
        EnterCertificate(store, Signer().certificate, "", "");
    } catch (const DatabaseFailure&) {
        isEntered = false;
    }
    EXPECT_EQ(m_store.Certificates().size(), isEntered ? 1u : 0u);
}

TEST_F(SealStoreTest, ANumberThatIsTakenIsAConflictAndACertificateThatIsGoneIsNone) {
    AddSeal({EsSeal(), "7", "one"});
    StoredSeal seal;
    seal.certificate = m_store.FindCertificate(kSignerSerial, kSignerName)->id;
    seal.number = "7";
    const auto outcome = [&] {
        try {
            m_store.AddSeal(seal);
        } catch (const DatabaseFailure& failure) {
            return failure.IsConflict() ? "conflict" : "failure";
        }
        return "added";
    };
    EXPECT_STREQ(outcome(), "conflict");
    seal.certificate += 1;
    EXPECT_STREQ(outcome(), "failure");
}

TEST_F(SealStoreTest, ANumberIsFreeAgainAfterItsSealIsRemovedButIdsAreNot) {
    const std::int64_t first = AddSeal({EsSeal(), "7", ""});
    EXPECT_THROW(AddSeal({EsSeal(), "7", ""}), Refusal);
    m_store.RemoveSeal(first);
    EXPECT_GT(AddSeal({EsSeal(), "7", ""}), first);
}

TEST_F(SealStoreTest, TheFirstFreeNumberIsFoundWithoutReadingAFile) {
    const std::int64_t certificate = AddSigner();
    EXPECT_EQ(m_store.FirstFreeNumber(certificate), "1");
    for (const char* const number : {"1", "3", "02", "x"}) AddSeal({EsSeal(), number, ""});
    EnterSeal(m_store, EnterCertificate(m_store, "", "99", "CN=Other"), {EsSeal(), "2", ""});
    Database(Path()).Execute("ALTER TABLE seals RENAME COLUMN file TO unread");
    EXPECT_EQ(m_store.FirstFreeNumber(certificate), "2");
}

TEST_F(SealStoreTest, SealsGoWithTheirCertificate) {
    const std::int64_t seal = AddSeal({EsSeal(), "7", ""});
    EXPECT_TRUE(m_store.RemoveCertificate(AddSigner()));
    EXPECT_FALSE(m_store.Seal(seal));
    EXPECT_FALSE(m_store.RemoveCertificate(99));
}

TEST_F(SealStoreTest, SerialNumbersCompareByTheirValue) {
    EXPECT_EQ(SerialKey("0012ab"), "12AB");
    EXPECT_EQ(SerialKey("12 AB"), "12AB");
    EXPECT_EQ(SerialKey("12:aB"), "12AB");
    EXPECT_EQ(SerialKey("0"), "");
    EXPECT_NE(SerialKey("1200"), SerialKey("12"));
}

TEST_F(SealStoreTest, AnotherProgramsFileIsLeftAlone) {
    const std::string path = m_folder.Below("other.db");
    Database(path).Execute("CREATE TABLE t (a); PRAGMA user_version = 1;");
    EXPECT_THROW(SealStore{path}, std::runtime_error);
    EXPECT_NO_THROW(Database(path).Execute("SELECT a FROM t"));
    std::ofstream(m_folder.Below("text"), std::ios::binary) << std::string(5000, 'x');
    EXPECT_THROW(SealStore{m_folder.Below("text")}, std::runtime_error);
    EXPECT_THROW(SealStore{m_folder.Below("no/folder")}, std::runtime_error);
}

TEST_F(SealStoreTest, ALaterVersionsFileIsLeftAlone) {
    Database(Path()).Execute("PRAGMA user_version = 2");
    EXPECT_THROW(SealStore{Path()}, std::runtime_error);
}

TEST_F(SealStoreTest, TextsAreBoundAndNeverPartOfAStatement) {
    const std::string evil = "1'; DROP TABLE seals; --";
    AddSeal({EsSeal(), evil, "\"'`"});
    const auto seal = m_store.FindSeal(AddSigner(), evil);
    ASSERT_TRUE(seal);
    EXPECT_EQ(seal->name, "\"'`");
}

}  // namespace
