// The administrator's page, request by request.

#include "tools/sealserver/AdminSite.h"

#include <gmock/gmock.h>

#include "support/MatchesPattern.h"
#include "tests/tools/sealserver/StoreFixture.h"
#include "tools/sealserver/Password.h"

namespace {

using testing::HasSubstr;
using testing::Not;

using Fields = std::map<std::string, std::string>;

constexpr char kPassword[] = "correct horse";

class AdminSiteTest : public StoreFixture {
protected:
    AdminSiteTest() {
        // A hash takes its time: once for all tests.
        static const std::string hash = HashPassword(kPassword);
        m_store.SetSetting("password", hash);
    }

    WebReply Get(const std::string& path, const Fields& query = {}) {
        return m_site.Answer({"GET", path, "127.0.0.1", m_cookie, query, {}});
    }
    WebReply PostWith(const std::string& token, const std::string& path, Fields fields) {
        if (!token.empty()) fields["token"] = token;
        return m_site.Answer({"POST", path, "127.0.0.1", m_cookie, {}, fields});
    }
    WebReply Post(const std::string& path, const Fields& fields = {}) {
        return PostWith(m_token, path, fields);
    }
    WebReply TryLogin(const std::string& password) {
        return PostWith("", "/login", {{"password", password}});
    }
    void LogIn() {
        const std::string cookie = HeaderOf(TryLogin(kPassword), "Set-Cookie");
        const std::size_t begin = cookie.find('=') + 1;
        m_cookie = cookie.substr(begin, cookie.find(';') - begin);
        const std::string page = Get("/certificates").body;
        const std::string field = "name=\"token\" value=\"";
        ASSERT_NE(page.find(field), page.npos);
        m_token = page.substr(page.find(field) + field.size(), 64);
    }
    static std::string HeaderOf(const WebReply& reply, const std::string& name) {
        for (const auto& [own, value] : reply.headers)
            if (own == name) return value;
        return {};
    }
    static std::string PlaceOf(const WebReply& reply) { return HeaderOf(reply, "Location"); }
    static std::string Id(std::int64_t id) { return std::to_string(id); }

    std::time_t m_now = 1'800'000'000;
    AdminSite m_site{m_store, [this] { return m_now; }, false};
    std::string m_cookie;
    std::string m_token;
};

TEST_F(AdminSiteTest, WithoutALoginThereIsNothingToSee) {
    const std::int64_t seal = AddSeal({EsSeal(), "7", "secret"});
    for (const std::string& path :
         {std::string("/"), std::string("/certificates"), std::string("/certificates/1"),
          "/seals/" + Id(seal), "/seals/" + Id(seal) + "/picture", "/seals/" + Id(seal) + "/file",
          "/seals/" + Id(seal) + "/remove", std::string("/password"), std::string("/x")}) {
        const WebReply reply = Get(path);
        EXPECT_EQ(reply.status, 303) << path;
        EXPECT_EQ(PlaceOf(reply), "/login");
        EXPECT_EQ(reply.body, "");
    }
    EXPECT_EQ(Post("/seals/" + Id(seal) + "/remove").status, 403);
    EXPECT_EQ(Post("/certificates", {{"serial", "1"}, {"name", "x"}}).status, 403);
    EXPECT_TRUE(m_store.Seal(seal));
    EXPECT_EQ(m_store.Certificates().size(), 1u);
}

TEST_F(AdminSiteTest, TheLoginAndItsStyleAreThereForEverybody) {
    EXPECT_THAT(Get("/login").body, HasSubstr("type=\"password\""));
    EXPECT_EQ(Get("/style.css").type, "text/css; charset=utf-8");
    EXPECT_EQ(Get("/icon.svg").type, "image/svg+xml");
}

TEST_F(AdminSiteTest, TheRightPasswordGivesACookieThatScriptsCannotRead) {
    const WebReply reply = TryLogin(kPassword);
    EXPECT_EQ(reply.status, 303);
    EXPECT_EQ(PlaceOf(reply), "/certificates");
    EXPECT_THAT(HeaderOf(reply, "Set-Cookie"),
                MatchesPattern("sealserver-session=[0-9a-f]+; Path=/; HttpOnly; "
                               "SameSite=Strict"));
    AdminSite encrypted(
        m_store, [this] { return m_now; }, true);
    const WebReply secure =
        encrypted.Answer({"POST", "/login", "", "", {}, {{"password", kPassword}}});
    EXPECT_THAT(HeaderOf(secure, "Set-Cookie"), testing::EndsWith("; Secure"));
}

TEST_F(AdminSiteTest, AWrongPasswordGivesNone) {
    for (const std::string& wrong :
         {std::string(), std::string("correct horsE"), std::string(100'000, 'x')}) {
        const WebReply reply = TryLogin(wrong);
        EXPECT_EQ(reply.status, 403);
        EXPECT_EQ(HeaderOf(reply, "Set-Cookie"), "");
        EXPECT_THAT(reply.body, HasSubstr("role=\"alert\">The password is wrong."));
    }
}

TEST_F(AdminSiteTest, WithoutAPasswordNobodyGetsIn) {
    m_store.SetSetting("password", "");
    EXPECT_EQ(TryLogin("").status, 403);
}

TEST_F(AdminSiteTest, AfterFiveWrongPasswordsTheRightOneIsRefusedToo) {
    for (int i = 0; i < 5; ++i) EXPECT_EQ(TryLogin("wrong").status, 403);
    const WebReply refused = TryLogin(kPassword);
    EXPECT_EQ(refused.status, 429);
    EXPECT_EQ(HeaderOf(refused, "Retry-After"), "900");
    EXPECT_EQ(HeaderOf(refused, "Set-Cookie"), "");
    m_now += kAttemptSeconds;
    EXPECT_EQ(TryLogin(kPassword).status, 303);
}

TEST_F(AdminSiteTest, AFormOfAnotherOriginChangesNothing) {
    LogIn();
    const std::int64_t seal = AddSeal({EsSeal(), "7", ""});
    for (const std::string& token : {std::string(), std::string(64, '0'), m_cookie}) {
        EXPECT_EQ(PostWith(token, "/seals/" + Id(seal) + "/remove", {}).status, 403);
        EXPECT_EQ(PostWith(token, "/seals/" + Id(seal) + "/suspend", {}).status, 403);
        EXPECT_EQ(PostWith(token, "/certificates", {{"serial", "1"}, {"name", "x"}}).status, 403);
        EXPECT_EQ(PostWith(token, "/logout", {}).status, 403);
    }
    EXPECT_FALSE(m_store.Seal(seal)->suspended);
    EXPECT_EQ(m_store.Certificates().size(), 1u);
    EXPECT_EQ(Get("/certificates").status, 200);
}

TEST_F(AdminSiteTest, AGetChangesNothing) {
    LogIn();
    const std::int64_t seal = AddSeal({EsSeal(), "7", ""});
    EXPECT_THAT(Get("/seals/" + Id(seal) + "/remove").body, HasSubstr("Remove for good"));
    Get("/seals/" + Id(seal) + "/suspend", {{"token", m_token}});
    EXPECT_FALSE(m_store.Seal(seal)->suspended);
}

TEST_F(AdminSiteTest, ACertificateIsAddedByItsFileAndShown) {
    LogIn();
    const WebReply added = Post("/certificates", {{"file", Signer().certificate}});
    EXPECT_EQ(added.status, 303);
    EXPECT_EQ(PlaceOf(added), "/certificates/1?done=added");
    const WebReply page = Get("/certificates/1", {{"done", "added"}});
    EXPECT_THAT(page.body, HasSubstr("CN=Signer"));
    EXPECT_THAT(page.body, HasSubstr("1234ABCD"));
    EXPECT_THAT(page.body, HasSubstr("role=\"status\">Added."));
    EXPECT_THAT(Get("/certificates").body, HasSubstr("href=\"/certificates/1\""));
}

TEST_F(AdminSiteTest, WhatIsRefusedIsToldOnThePage) {
    LogIn();
    const WebReply refused = Post("/certificates", {{"file", "text"}});
    EXPECT_EQ(refused.status, 400);
    EXPECT_THAT(refused.body, HasSubstr("role=\"alert\">The file holds no certificate"));
    AddSigner();
    const WebReply seal = Post("/certificates/1/seals", {{"file", "text"}});
    EXPECT_EQ(seal.status, 400);
    EXPECT_THAT(seal.body, HasSubstr("role=\"alert\">The file is no seal"));
    AddSeal({EsSeal(), "7", ""});
    const WebReply again = Post("/certificates/1/seals", {{"file", EsSeal()}});
    EXPECT_EQ(again.status, 400);
    EXPECT_THAT(again.body, HasSubstr("role=\"alert\">The certificate has this seal file already"));
    EXPECT_EQ(m_store.Seals(1).size(), 1u);
}

TEST_F(AdminSiteTest, ASealIsAddedLookedAtSuspendedResumedAndRemoved) {
    LogIn();
    AddSigner();
    EXPECT_EQ(PlaceOf(Post("/certificates/1/seals", {{"file", NationalSeal()}})),
              "/certificates/1?done=added");
    EXPECT_THAT(Get("/certificates/1").body, HasSubstr("测试章"));
    const std::string page = Get("/seals/1").body;
    EXPECT_THAT(page, HasSubstr("GB/T 38540-2020"));
    EXPECT_THAT(page, HasSubstr("42 by 40 mm"));
    EXPECT_THAT(page, Not(HasSubstr("names other certificates")));
    EXPECT_EQ(PlaceOf(Post("/seals/1/suspend")), "/certificates/1?done=suspended");
    EXPECT_TRUE(m_store.Seal(1)->suspended);
    EXPECT_THAT(Get("/certificates").body, HasSubstr("1 (1 suspended)"));
    EXPECT_EQ(PlaceOf(Post("/seals/1/resume")), "/certificates/1?done=resumed");
    EXPECT_FALSE(m_store.Seal(1)->suspended);
    EXPECT_EQ(PlaceOf(Post("/seals/1/remove")), "/certificates/1?done=removed");
    EXPECT_FALSE(m_store.Seal(1));
    EXPECT_EQ(Get("/seals/1").status, 404);
}

TEST_F(AdminSiteTest, ASealOfAnotherCertificateIsToldWhenItIsAddedAndLater) {
    LogIn();
    EnterCertificate(m_store, Maker().certificate, "", "");
    EXPECT_EQ(PlaceOf(Post("/certificates/1/seals", {{"file", NationalSeal()}})),
              "/seals/1?done=added");
    const std::string page = Get("/seals/1", {{"done", "added"}}).body;
    EXPECT_THAT(page, HasSubstr("role=\"status\">Added."));
    EXPECT_THAT(page, HasSubstr("role=\"note\">The seal names other certificates"));
}

TEST_F(AdminSiteTest, APictureHasTheTypeOfItsBytesAndAFileIsADownload) {
    LogIn();
    const std::string file = NationalSeal();
    AddSeal({file, "", ""});
    EXPECT_EQ(Get("/seals/1/picture").type, "image/gif");
    const WebReply download = Get("/seals/1/file");
    EXPECT_EQ(download.type, "application/octet-stream");
    EXPECT_EQ(download.body, file);
    EXPECT_THAT(HeaderOf(download, "Content-Disposition"), HasSubstr("attachment"));
    SealOrder order = UsualOrder(SealForm::kGb2020, Signer());
    order.picture = "<svg onload='alert(1)'/>";
    m_store.RemoveSeal(1);
    const std::int64_t odd = AddSeal({MakeTestSeal(order, Maker()), "", ""});
    EXPECT_EQ(Get("/seals/" + Id(odd) + "/picture").status, 404);
    EXPECT_THAT(Get("/seals/" + Id(odd)).body, HasSubstr("none that a browser shows"));
}

TEST_F(AdminSiteTest, TextsAreNeverMarkup) {
    LogIn();
    const std::string evil = "\"><script>alert('1')</script>&";
    const std::string shown = "&quot;&gt;&lt;script&gt;alert(&#39;1&#39;)&lt;/script&gt;&amp;";
    EnterCertificate(m_store, "", "1", evil);
    EnterSeal(m_store, 1, {EsSeal(), evil, evil});
    for (const char* const path : {"/certificates", "/certificates/1", "/seals/1",
                                   "/seals/1/remove", "/certificates/1/remove"}) {
        const std::string page = Get(path, {{"done", evil}}).body;
        EXPECT_THAT(page, HasSubstr(shown)) << path;
        EXPECT_THAT(page, Not(HasSubstr("<script"))) << path;
        EXPECT_THAT(page, Not(HasSubstr("alert('"))) << path;
    }
}

TEST_F(AdminSiteTest, PagesLoadNothingFromElsewhereAndRunNoScript) {
    LogIn();
    AddSeal({NationalSeal(), "", ""});
    for (const char* const path : {"/login", "/certificates", "/certificates/1", "/seals/1"}) {
        const std::string page = Get(path).body;
        EXPECT_THAT(page, Not(HasSubstr("http")));
        EXPECT_THAT(page, Not(HasSubstr("<script")));
        EXPECT_THAT(page, Not(HasSubstr(" style=")));
        EXPECT_THAT(page, Not(HasSubstr(" onclick=")));
    }
}

TEST_F(AdminSiteTest, ALogoutEndsTheSession) {
    LogIn();
    const WebReply out = Post("/logout");
    EXPECT_THAT(HeaderOf(out, "Set-Cookie"), HasSubstr("Max-Age=0"));
    EXPECT_EQ(PlaceOf(Get("/certificates")), "/login");
}

TEST_F(AdminSiteTest, ANewPasswordEndsAllSessions) {
    LogIn();
    const Fields change = {
        {"current", kPassword}, {"new", "battery staple"}, {"again", "battery staple"}};
    EXPECT_EQ(PlaceOf(Post("/password", change)), "/login?done=password");
    EXPECT_EQ(PlaceOf(Get("/certificates")), "/login");
    EXPECT_EQ(TryLogin(kPassword).status, 403);
    EXPECT_EQ(TryLogin("battery staple").status, 303);
}

TEST_F(AdminSiteTest, APasswordSetByAnotherProcessEndsAllSessions) {
    LogIn();
    EXPECT_EQ(Get("/certificates").status, 200);
    // The same one, but kept anew.
    SealStore(Path()).SetSetting("password", HashPassword(kPassword));
    EXPECT_EQ(PlaceOf(Get("/certificates")), "/login");
    EXPECT_EQ(Post("/certificates", {{"serial", "1"}, {"name", "x"}}).status, 403);
    EXPECT_EQ(TryLogin(kPassword).status, 303);
}

TEST_F(AdminSiteTest, APasswordIsChangedByWhoKnowsTheOldOneAlone) {
    LogIn();
    const auto refused = [&](const Fields& fields) {
        const WebReply reply = Post("/password", fields);
        EXPECT_EQ(reply.status, 400);
        return reply.body;
    };
    EXPECT_THAT(refused({{"current", kPassword}, {"new", "short"}, {"again", "short"}}),
                HasSubstr("too short"));
    EXPECT_THAT(
        refused({{"current", kPassword}, {"new", "battery staple"}, {"again", "battery stable"}}),
        HasSubstr("differ"));
    const Fields wrong = {
        {"current", "wrong"}, {"new", "battery staple"}, {"again", "battery staple"}};
    for (int i = 0; i < 5; ++i) EXPECT_THAT(refused(wrong), HasSubstr("is wrong"));
    EXPECT_THAT(refused(wrong), HasSubstr("Too many attempts"));
    m_now += kAttemptSeconds;
    EXPECT_EQ(TryLogin(kPassword).status, 303);
}

TEST_F(AdminSiteTest, OtherAddressesAreNotFound) {
    LogIn();
    AddSeal({EsSeal(), "7", ""});
    for (const char* const path :
         {"/x", "/certificates/2", "/certificates/x", "/certificates/1/x",
          "/certificates/1/seals/2", "/seals", "/seals/", "/seals/2", "/seals/2/picture",
          "/seals/1/x", "/seals/99/remove", "/seals/999999999999999999999", "//seals/1",
          "/password/1", "/../etc/passwd"}) {
        EXPECT_EQ(Get(path).status, 404) << path;
    }
    EXPECT_EQ(Post("/seals/2/remove").status, 404);
    EXPECT_EQ(Post("/seals/1/x").status, 404);
    EXPECT_EQ(Post("/x").status, 404);
    EXPECT_EQ(Post("/certificates/9/seals", {{"file", EsSeal()}}).status, 404);
}

}  // namespace
