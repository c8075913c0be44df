// The online seal service where its dialogs and message boxes are lines or a program.

#include <gmock/gmock.h>

#include "support/LoopbackServer.h"
#include "support/linux/DialogUser.h"
#include "tools/cli/SourceFixture.h"

namespace {

using testing::HasSubstr;

class OnlineOnLinux : public OnlineFixture {
protected:
    std::string Address() const { return Json({"config", "get", "sWSURL"})["value"].asString(); }
    void LetUser(const std::string& acts) const { LetUserAct(InPrefix("user"), 103, acts); }
};

TEST_F(OnlineOnLinux, ARefusalOfTheServiceIsToldByItsOwnMessage) {
    MakeKey("alice", "sm2");
    LoopbackServer server([](const std::string&) {
        return LoopbackServer::Page("200 OK",
                                    "<ROOT><STATUSCODE>500</STATUSCODE><MESSAGE>closed for "
                                    "today</MESSAGE></ROOT>");
    });
    Set("sWSURL", server.Url("/QelmServlet"));
    const auto outcome = Stamp({"--pin", "123456"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.error, HasSubstr("closed for today"));
    EXPECT_THAT(outcome.error, HasSubstr("-3051"));
    EXPECT_TRUE(NothingWritten());
}

TEST_F(OnlineOnLinux, OfTwoCertificatesOneHasToBeNamed) {
    MakeKey("alice", "sm2");
    MakeKey("bob", "sm2");
    ExpectRefusal({}, 5, "name one: --cert CERT");
}

TEST_F(OnlineOnLinux, WhereNoDialogCanBeShownTheAddressHasToBeGiven) {
    const auto outcome = Tesmark({"config", "online"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_THAT(outcome.error, HasSubstr("The dialog can't be shown here."));
    EXPECT_THAT(outcome.error, HasSubstr("tesmark config online http://HOST/QelmServlet"));
}

TEST_F(OnlineOnLinux, TheAddressThatIsTypedIntoTheDialogIsStored) {
    LetUser("say 'text\\t1003\\tseals.example:8080/seals'\n" + PressesOk());
    const auto outcome = Tesmark({"config", "online"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.error;
    EXPECT_THAT(outcome.out, HasSubstr("sWSURL = http://seals.example:8080/seals/QelmServlet"));
    EXPECT_EQ(Address(), "http://seals.example:8080/seals/QelmServlet");
}

TEST_F(OnlineOnLinux, AFieldThatNamesNoHostIsStoredAndTold) {
    LetUser("say 'text\\t1003\\t'\n" + PressesOk());
    const auto outcome = Tesmark({"config", "online"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_THAT(outcome.error, HasSubstr("\"http:///QelmServlet\": it names no host"));
    EXPECT_THAT(outcome.error, HasSubstr("its form: http://HOST"));
}

TEST_F(OnlineOnLinux, AFieldThatMakesALongerAddressThanTheLibraryReadsIsToldToo) {
    LetUser("say 'text\\t1003\\t" + std::string(181, 'a') + "'\n" + PressesOk());
    const auto outcome = Tesmark({"config", "online"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(Address().size(), 200u);
    EXPECT_THAT(outcome.error, HasSubstr("the library takes it for none"));
    EXPECT_THAT(Tesmark({"doctor"}).out, HasSubstr("the library takes it for none"));
    EXPECT_EQ(Tesmark({"config", "online", "--test"}).exitCode, 3);
    LetUser("say 'text\\t1003\\t" + std::string(180, 'a') + "'\n" + PressesOk());
    EXPECT_EQ(Tesmark({"config", "online"}).exitCode, 0);
    EXPECT_EQ(Address().size(), 199u);
}

TEST_F(OnlineOnLinux, TheDialogIsNotOpenedOnAnAddressThatItWouldSpoil) {
    LetUser(PressesOk());
    for (const char* const address :
         {"https://seals.example/QelmServlet", "http://seals.example/other", "seals.example",
          "http://seals.example/QelmServlet/QelmServlet", "http://QelmServlet"}) {
        Set("sWSURL", address);
        const auto outcome = Tesmark({"config", "online"});
        EXPECT_EQ(outcome.exitCode, 3) << address;
        EXPECT_THAT(outcome.error, HasSubstr("would spoil the address"));
        EXPECT_THAT(outcome.error, HasSubstr("tesmark config unset sWSURL"));
        EXPECT_EQ(Address(), address);
    }
    EXPECT_FALSE(std::filesystem::exists(InPrefix("user.shown")));
}

TEST_F(OnlineOnLinux, AnAddressThatIsOnlyLookedAtStaysAsItIs) {
    LetUser(PressesOk());
    for (const char* const address :
         {"http://seals.example/QelmServlet", "http://me@seals.example:81/a/QelmServlet"}) {
        Set("sWSURL", address);
        EXPECT_EQ(Tesmark({"config", "online"}).exitCode, 0);
        EXPECT_EQ(Address(), address);
    }
}

TEST_F(OnlineOnLinux, WhereTheDialogCannotStoreTheAddressThatIsTold) {
    LetUser("say 'text\\t1003\\tseals.example'\n" + PressesOk());
    const std::string before = Address();
    std::filesystem::remove(InPrefix("machine.reg.lock"));
    std::filesystem::create_directory(InPrefix("machine.reg.lock"));
    const auto outcome = Tesmark({"config", "online"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_THAT(outcome.error, HasSubstr("sWSURL can't be written"));
    EXPECT_EQ(Address(), before);
}

TEST_F(OnlineOnLinux, AClosedDialogStoresNothing) {
    const std::string before = Address();
    LetUser("say 'text\\t1003\\tother'\n" + PressesCancel());
    const auto outcome = Tesmark({"config", "online"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.error, HasSubstr("The dialog was closed; nothing was stored."));
    EXPECT_EQ(Address(), before);
}

TEST_F(OnlineOnLinux, WhereSealsComeFromKeysTheDialogStoresNothingAndThatIsTold) {
    Set("bSealPosition", "0");
    const std::string before = Address();
    LetUser(PressesOk());
    const auto outcome = Tesmark({"config", "online"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_THAT(outcome.error, HasSubstr("tesmark config set bSealPosition 1"));
    EXPECT_EQ(Address(), before);
}

}  // namespace
