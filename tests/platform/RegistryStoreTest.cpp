#include "RegistryStoreTest.h"

using namespace platform;

namespace {

using namespace std::string_literals;

constexpr char kKey[] = "software\\Velmora\\test";

TEST_F(RegistryStoreTest, AKeyOpensOnceItWasMadeAndUnderItsOwnRootAlone) {
    EXPECT_EQ(Open(kKey), nullptr);
    ASSERT_NE(Create(kKey), nullptr);
    EXPECT_NE(Open(kKey), nullptr);
    EXPECT_NE(Open("software\\Velmora"), nullptr);
    EXPECT_EQ(Open("software\\Velmora\\other"), nullptr);
    EXPECT_EQ(Open(kKey, RegistryAccess::AllAccess, RegistryRoot::CurrentUser), nullptr);
}

TEST_F(RegistryStoreTest, KeysAndNamesCompareWithoutRegardToCaseAndAClosingBackslash) {
    ASSERT_NE(Create("SOFTWARE\\VELMORA\\Test\\"), nullptr);
    ASSERT_TRUE(SetRegistryString(m_key, "A", "x"));
    ASSERT_NE(Open("software\\Velmora\\test\\"), nullptr);
    EXPECT_EQ(Value("a"), "x\0"s);
}

TEST_F(RegistryStoreTest, AKeyOpenedForReadingCannotBeChanged) {
    ASSERT_NE(Create(kKey), nullptr);
    ASSERT_TRUE(SetRegistryString(m_key, "x", "before"));
    ASSERT_NE(Open(kKey, RegistryAccess::Read64), nullptr);
    EXPECT_FALSE(SetRegistryString(m_key, "x", "y"));
    EXPECT_FALSE(SetRegistryNumber(m_key, "n", 1));
    EXPECT_FALSE(DeleteRegistryValue(m_key, "x"));
    EXPECT_EQ(Value("x"), "before\0"s);
}

TEST_F(RegistryStoreTest, TextsAndNamesAreGbk) {
    ASSERT_NE(Create("software\\Velmora\\软件"), nullptr);
    ASSERT_TRUE(SetRegistryString(m_key, "名", "印章"));
    ASSERT_NE(Open("software\\Velmora\\软件"), nullptr);
    EXPECT_EQ(Value("名"), "印章\0"s);
}

TEST_F(RegistryStoreTest, AChineseFolderComesBackAsItWasStored) {
    ASSERT_NE(Create(kKey), nullptr);
    ASSERT_TRUE(SetRegistryPath(m_key, "", "/签章"));
    EXPECT_EQ(PathValue(""), "/签章\0"s);
}

TEST_F(RegistryStoreTest, ANumberIsFourBytesLowestFirst) {
    ASSERT_NE(Create(kKey), nullptr);
    ASSERT_TRUE(SetRegistryNumber(m_key, "n", 0x01020304));
    EXPECT_EQ(Value("n"), "\x04\x03\x02\x01");
}

TEST_F(RegistryStoreTest, RawBytesComeAsTheyAre) {
    m_prefix.SetBytes(RegistryRoot::LocalMachine, kKey, "r", "\0\xFF"s);
    ASSERT_NE(Open(kKey), nullptr);
    EXPECT_EQ(Value("r"), "\0\xFF"s);
}

TEST_F(RegistryStoreTest, AKeyCanBeMadeBelowAnotherAndBelowNone) {
    ASSERT_NE(Create(kKey), nullptr);
    const RegistryKey below = CreateRegistryKey(m_key, "b");
    ASSERT_NE(below, nullptr);
    EXPECT_TRUE(SetRegistryNumber(below, "n", 1));
    CloseRegistryKey(below);
    ASSERT_NE(Open("software\\Velmora\\test\\b"), nullptr);
    EXPECT_EQ(Value("n"), "\x01\0\0\0"s);
    EXPECT_EQ(CreateRegistryKey(nullptr, "b"), nullptr);
}

TEST_F(RegistryStoreTest, TheRootsAreNeverNullAndClosingThemIsHarmless) {
    for (const auto root :
         {RegistryRoot::LocalMachine, RegistryRoot::CurrentUser, RegistryRoot::ClassesRoot}) {
        CloseRegistryKey(RegistryRootKey(root));
        CloseRegistryKey(RegistryRootKey(root));
        EXPECT_NE(RegistryRootKey(root), nullptr);
    }
    CloseRegistryKey(nullptr);
}

TEST_F(RegistryStoreTest, ASizeIsAskedForWithANullPointer) {
    ASSERT_NE(Create(kKey), nullptr);
    ASSERT_TRUE(SetRegistryString(m_key, "", "abc"));
    std::size_t size = 0;
    EXPECT_TRUE(QueryRegistryValue(m_key, "", nullptr, &size));
    EXPECT_EQ(size, 4U);
}

TEST_F(RegistryStoreTest, AValueLargerThanTheBufferFailsAndTellsItsSize) {
    ASSERT_NE(Create(kKey), nullptr);
    ASSERT_TRUE(SetRegistryString(m_key, "", "abc"));
    char data[4] = "###";
    std::size_t size = 3;
    EXPECT_FALSE(QueryRegistryValue(m_key, "", data, &size));
    EXPECT_EQ(size, 4U);
    EXPECT_STREQ(data, "###");
    EXPECT_TRUE(QueryRegistryValue(m_key, "", data, &size));
    EXPECT_STREQ(data, "abc");
}

TEST_F(RegistryStoreTest, AnAbsentValueTellsTheSizeZero) {
    ASSERT_NE(Create(kKey), nullptr);
    std::size_t size = 9;
    EXPECT_FALSE(QueryRegistryValue(m_key, "x", nullptr, &size));
    EXPECT_EQ(size, 0U);
    size = 9;
    EXPECT_FALSE(QueryRegistryPath(m_key, "x", nullptr, &size));
    EXPECT_EQ(size, 0U);
}

TEST_F(RegistryStoreTest, ATextThatALineCannotHoldComesBackAllTheSame) {
    ASSERT_NE(Create(kKey), nullptr);
    for (const std::string& text : {"two\nlines"s, "zero\0byte"s, "\\\"quoted\\\""s}) {
        ASSERT_TRUE(SetRegistryString(m_key, "t", text));
        EXPECT_EQ(Value("t"), text + '\0');
    }
}

TEST_F(RegistryStoreTest, ADeletedValueIsGone) {
    ASSERT_NE(Create(kKey), nullptr);
    ASSERT_TRUE(SetRegistryNumber(m_key, "n", 1));
    EXPECT_TRUE(DeleteRegistryValue(m_key, "N"));
    EXPECT_EQ(Value("n"), "absent");
    EXPECT_FALSE(DeleteRegistryValue(m_key, "n"));
}

}  // namespace
