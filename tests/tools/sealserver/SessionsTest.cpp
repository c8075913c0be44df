// The administrator's password and sessions.

#include "tools/sealserver/Sessions.h"

#include <gtest/gtest.h>

#include "tools/sealserver/Password.h"

namespace {

constexpr char kKept[] = "hash";

class SessionsTest : public testing::Test {
protected:
    std::time_t m_now = 1'800'000'000;
    Sessions m_sessions{[this] { return m_now; }};
};

TEST_F(SessionsTest, AHashFitsItsPasswordAlone) {
    const std::string hash = HashPassword("correct horse");
    EXPECT_EQ(hash.find("horse"), std::string::npos);
    EXPECT_TRUE(PasswordMatches("correct horse", hash));
    EXPECT_FALSE(PasswordMatches("correct horsf", hash));
    EXPECT_FALSE(PasswordMatches("", hash));
    EXPECT_NE(HashPassword("correct horse"), hash);
}

TEST_F(SessionsTest, WhatIsNoHashFitsNothing) {
    std::string cut = HashPassword("password");
    cut.pop_back();
    for (const std::string& bad :
         {std::string(), std::string("password"), cut, std::string("scrypt$32768$8$1$$")})
        EXPECT_FALSE(PasswordMatches("password", bad));
    EXPECT_FALSE(PasswordMatches("", ""));
}

TEST_F(SessionsTest, MadePasswordsAreLongAndDifferent) {
    const std::string password = MakePassword();
    EXPECT_EQ(password.size(), 20u);
    EXPECT_EQ(password.find_first_not_of("abcdefghijkmnpqrstuvwxyz23456789"), std::string::npos);
    EXPECT_NE(MakePassword(), password);
}

TEST_F(SessionsTest, ASessionIsFoundByItsTokenAlone) {
    const Session session = m_sessions.Begin("a", kKept);
    EXPECT_EQ(session.token.size(), 64u);
    EXPECT_NE(session.token, session.formToken);
    const auto found = m_sessions.Find(session.token, kKept);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->formToken, session.formToken);
    EXPECT_FALSE(m_sessions.Find(session.formToken, kKept));
    EXPECT_FALSE(m_sessions.Find("", kKept));
    m_sessions.End(session.token);
    EXPECT_FALSE(m_sessions.Find(session.token, kKept));
}

TEST_F(SessionsTest, ASessionEndsAfterHalfAnHourWithoutUse) {
    const Session session = m_sessions.Begin("a", kKept);
    m_now += kIdleSeconds - 1;
    EXPECT_TRUE(m_sessions.Find(session.token, kKept));
    m_now += kIdleSeconds - 1;
    EXPECT_TRUE(m_sessions.Find(session.token, kKept));
    m_now += kIdleSeconds;
    EXPECT_FALSE(m_sessions.Find(session.token, kKept));
}

TEST_F(SessionsTest, ASessionInUseEndsAfterEightHours) {
    const Session session = m_sessions.Begin("a", kKept);
    for (std::time_t passed = 0; passed + 600 < kSessionSeconds; passed += 600) {
        m_now += 600;
        ASSERT_TRUE(m_sessions.Find(session.token, kKept));
    }
    m_now += 600;
    EXPECT_FALSE(m_sessions.Find(session.token, kKept));
}

TEST_F(SessionsTest, ASessionEndsWithThePasswordThatItWasBegunBy) {
    const Session session = m_sessions.Begin("a", kKept);
    EXPECT_FALSE(m_sessions.Find(session.token, "another"));
    EXPECT_FALSE(m_sessions.Find(session.token, kKept));
    EXPECT_FALSE(m_sessions.Find(m_sessions.Begin("a", kKept).token, ""));
}

TEST_F(SessionsTest, TheSessionUsedLongestAgoMakesRoom) {
    const Session first = m_sessions.Begin("a", kKept);
    const Session second = m_sessions.Begin("a", kKept);
    ++m_now;
    EXPECT_TRUE(m_sessions.Find(first.token, kKept));
    for (std::size_t i = 2; i < kMostSessions + 1; ++i) m_sessions.Begin("a", kKept);
    EXPECT_TRUE(m_sessions.Find(first.token, kKept));
    EXPECT_FALSE(m_sessions.Find(second.token, kKept));
}

TEST_F(SessionsTest, TheSixthAttemptIsRefusedUntilTheFirstIsOld) {
    for (std::size_t i = 0; i < kMostAttempts; ++i) {
        EXPECT_TRUE(m_sessions.MayTry("a"));
        ++m_now;
    }
    EXPECT_FALSE(m_sessions.MayTry("a"));
    EXPECT_TRUE(m_sessions.MayTry("b"));
    m_now += kAttemptSeconds - static_cast<std::time_t>(kMostAttempts) - 1;
    EXPECT_FALSE(m_sessions.MayTry("a"));
    ++m_now;
    EXPECT_TRUE(m_sessions.MayTry("a"));
    EXPECT_FALSE(m_sessions.MayTry("a"));
}

TEST_F(SessionsTest, ALoginForgetsTheAttemptsBeforeIt) {
    for (std::size_t i = 0; i < kMostAttempts; ++i) EXPECT_TRUE(m_sessions.MayTry("a"));
    m_sessions.Begin("a", kKept);
    EXPECT_TRUE(m_sessions.MayTry("a"));
}

TEST_F(SessionsTest, ManyAddressesShutTheDoor) {
    EXPECT_TRUE(m_sessions.MayTry("known"));
    for (int i = 0; i < 5000; ++i) m_sessions.MayTry(std::to_string(i));
    EXPECT_FALSE(m_sessions.MayTry("new"));
    EXPECT_TRUE(m_sessions.MayTry("known"));
    m_now += kAttemptSeconds;
    EXPECT_TRUE(m_sessions.MayTry("new"));
}

}  // namespace
