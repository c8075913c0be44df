#include "components/certservice/pkcs11/Pkcs11Files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "components/certservice/ServiceCodes.h"
#include "components/certservice/pkcs11/Pkcs11Attribute.h"
#include "components/certservice/tokens/FakePkcs11.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

int g_milliseconds = 0;

class Pkcs11FilesTest : public testing::Test {
protected:
    void SetUp() override {
        TheFakeToken() = FakeToken();
        g_milliseconds = 0;
        auto module = Pkcs11Module::Open(FAKE_PKCS11_MODULE);
        ASSERT_NE(module, nullptr);
        m_token = std::make_unique<Pkcs11Token>(std::move(module), 7, "0001");
    }

    static void Add(const std::string& name, const std::string& owner) {
        TheFakeToken().Add({{CKA_CLASS, NumberAttribute(0, CKO_DATA).value},
                            {CKA_LABEL, name},
                            {CKA_OBJECT_ID, owner},
                            {CKA_VALUE, "of " + owner}});
    }
    std::vector<std::string> List(const std::string& owner) {
        std::vector<std::string> names{"untouched"};
        EXPECT_EQ(m_files.List(*m_token, owner, names), kServiceOk);
        return names;
    }
    static int Searches() { return TheFakeToken().calls["C_FindObjectsInit"]; }

    std::unique_ptr<Pkcs11Token> m_token;
    Pkcs11Files m_files{[] { return g_milliseconds; }};
};

TEST_F(Pkcs11FilesTest, OneSearchServesEachCertificateOnce) {
    Add("b", "one");
    Add("a", "one");
    Add("c", "two");
    EXPECT_THAT(List("one"), ElementsAre("a", "b"));
    EXPECT_THAT(List("two"), ElementsAre("c"));
    EXPECT_THAT(List("three"), IsEmpty());
    EXPECT_EQ(Searches(), 1);
    Add("d", "two");
    EXPECT_THAT(List("two"), ElementsAre("c", "d"));
    EXPECT_EQ(Searches(), 2);
}

TEST_F(Pkcs11FilesTest, ASearchHoldsForOneSecond) {
    EXPECT_THAT(List("one"), IsEmpty());
    Add("c", "two");
    Add("c", "three");
    g_milliseconds = 999;
    EXPECT_THAT(List("two"), IsEmpty());
    g_milliseconds = 1000;
    EXPECT_THAT(List("three"), ElementsAre("c"));
}

TEST_F(Pkcs11FilesTest, WhatIsForgottenIsSearchedAnew) {
    EXPECT_THAT(List("one"), IsEmpty());
    Add("c", "two");
    m_files.Forget();
    EXPECT_THAT(List("two"), ElementsAre("c"));
}

TEST_F(Pkcs11FilesTest, AFileThatCameAfterTheSearchCanBeRead) {
    EXPECT_THAT(List("one"), IsEmpty());
    Add("new", "one");
    std::string content;
    EXPECT_EQ(m_files.Read(*m_token, "one", "new", content), kServiceOk);
    EXPECT_EQ(content, "of one");
}

TEST_F(Pkcs11FilesTest, AListedFileIsReadWithoutASearch) {
    Add("seal", "one");
    Add("seal", "two");
    List("one");
    std::string content;
    EXPECT_EQ(m_files.Read(*m_token, "two", "seal", content), kServiceOk);
    EXPECT_EQ(content, "of two");
    EXPECT_EQ(Searches(), 1);
}

TEST_F(Pkcs11FilesTest, AnObjectWithoutNameIsNoFile) {
    Add("", "one");
    EXPECT_THAT(List("one"), IsEmpty());
}

}  // namespace
