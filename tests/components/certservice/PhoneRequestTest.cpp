// The request for a scan, judged member by member.

#include "components/certservice/ScanRequest.h"

#include <gtest/gtest.h>

#include <array>

#include "components/certservice/ServiceCodes.h"
#include "foundation/Text.h"

namespace {

constexpr std::array<const char*, 6> kNames = {
    "appid", "cardid", "cardimage", "cardname", "showselectcertwnd", "type"};

// The members of a good request with one of them replaced, left out for a null `value`, or added.
std::string Json(const std::string& name = "", const char* value = nullptr) {
    std::string text;
    const auto add = [&](const std::string& member, const std::string& content) {
        text += (text.empty() ? "{" : ",") + ("\"" + member + "\":") + content;
    };
    bool known = name.empty();
    for (const std::string member : kNames) {
        const bool one = member == "type" || member == "showselectcertwnd";
        if (member != name) add(member, one ? "\"1\"" : "\"\"");
        if (member == name && value) add(member, value);
        known = known || member == name;
    }
    if (!known) add(name, value);
    return text + "}";
}

int Read(const std::string& json) {
    ScanRequest request;
    return ReadScanRequest(Base64Encode(json), request);
}

TEST(PhoneRequestTest, WhatHostsSendIsTakenWithItsApplicationId) {
    // `openssl base64 -A` of the object as jsoncpp's styled writer makes it.
    constexpr char kPin[] =
        "ewogICAiYXBwaWQiIDogImFwcCIsCiAgICJjYXJkaWQiIDogIiIsCiAgICJjYXJkaW1hZ2UiIDogIiIsCiAgICJj"
        "YXJkbmFtZSIgOiAiIiwKICAgInNob3dzZWxlY3RjZXJ0d25kIiA6ICIxIiwKICAgInR5cGUiIDogIjEiCn0K";
    ScanRequest request;
    ASSERT_EQ(ReadScanRequest(kPin, request), kServiceOk);
    EXPECT_EQ(request.appId, "app");
}

TEST(PhoneRequestTest, TheApplicationIdMayBeEmptyOrAnyText) {
    EXPECT_EQ(Read(Json("appid", R"("")")), kServiceOk);
    EXPECT_EQ(Read(Json("appid", R"("a b\u4e2d\"\\")")), kServiceOk);
}

TEST(PhoneRequestTest, TheOrderOfTheMembersAndWhiteSpaceBetweenThemDontCount) {
    EXPECT_EQ(
        Read("\r\n\t {\"type\" :\n\"1\",\"showselectcertwnd\":\"1\",\"cardname\":\"\",\"cardid\""
             ":\"\",\"cardimage\":\"\",\"appid\":\"x\"} \n"),
        kServiceOk);
}

TEST(PhoneRequestTest, AnythingButBase64InItsOneFormIsNoBase64) {
    const std::string good = Base64Encode(Json());
    ScanRequest request;
    ASSERT_EQ(ReadScanRequest(good, request), kServiceOk);
    for (const std::string& pin :
         {std::string("123456"), good + "\n", good.substr(0, 40) + "\r\n" + good.substr(40),
          " " + good, good + "=", good + "====", good.substr(0, good.size() - 1),
          good + std::string(1, '\0'), "-_" + good.substr(2), Json()}) {
        EXPECT_EQ(ReadScanRequest(pin, request), kServiceScanNotBase64) << pin;
    }
}

TEST(PhoneRequestTest, BitsBehindTheLastByteMakeNoBase64) {
    ScanRequest request;
    EXPECT_EQ(ReadScanRequest("e30=", request), kServiceScanMemberMissing);
    EXPECT_EQ(ReadScanRequest("e31=", request), kServiceScanNotBase64);
}

TEST(PhoneRequestTest, ARequestThatIsTooLongIsntDecoded) {
    ScanRequest request;
    const std::string id(kLongestScanRequest * 3 / 4, 'x');
    EXPECT_EQ(Read(Json("appid", ("\"" + id + "\"").c_str())), kServiceScanNotBase64);
    const std::string shorter(kLongestScanRequest * 3 / 4 - 200, 'x');
    EXPECT_EQ(Read(Json("appid", ("\"" + shorter + "\"").c_str())), kServiceOk);
}

TEST(PhoneRequestTest, WhatIsNoJsonObjectIsNoJson) {
    for (const std::string& text :
         {std::string(), std::string("x"), std::string("[]"), std::string("\"1\""),
          std::string("null"), std::string("[") + Json() + "]", Json() + "x", Json() + Json(),
          Json().substr(0, 30), "/* a comment */" + Json(), "\xEF\xBB\xBF" + Json(),
          std::string(R"({'type':'1'})"), std::string(R"({"type":"1",})")}) {
        EXPECT_EQ(Read(text), kServiceScanNotJson) << text;
    }
}

TEST(PhoneRequestTest, AMemberThatStandsTwiceIsNoJson) {
    EXPECT_EQ(Read(R"({"type":"1",)" + Json().substr(1)), kServiceScanNotJson);
}

TEST(PhoneRequestTest, ObjectsNestedWithoutEndAreNoJson) {
    std::string deep(40'000, '[');
    EXPECT_EQ(Read(deep), kServiceScanNotJson);
    EXPECT_EQ(Read(R"({"type":)" + deep), kServiceScanNotJson);
}

TEST(PhoneRequestTest, EachMemberThatIsMissingIsToldAsMissing) {
    for (const char* name : kNames) {
        EXPECT_EQ(Read(Json(name)), kServiceScanMemberMissing) << name;
    }
    EXPECT_EQ(Read("{}"), kServiceScanMemberMissing);
}

TEST(PhoneRequestTest, EachMemberThatIsNoStringIsToldAsOneOfAnotherKind) {
    for (const char* name : kNames) {
        for (const char* value : {"1", "true", "null", "1.5", "[]", R"({"a":"b"})", R"(["1"])"}) {
            EXPECT_EQ(Read(Json(name, value)), kServiceScanMemberKind) << name << value;
        }
    }
}

TEST(PhoneRequestTest, AMemberThatIsOneTooManyIsToldAsSurplus) {
    EXPECT_EQ(Read(Json("more", R"("")")), kServiceScanMemberSurplus);
    EXPECT_EQ(Read(Json("Type", R"("1")")), kServiceScanMemberSurplus);
}

TEST(PhoneRequestTest, AnotherValueIsToldInEachMemberThatHasOne) {
    for (const std::string name : kNames) {
        if (name == "appid") continue;
        EXPECT_EQ(Read(Json(name, R"("0")")), kServiceScanMemberValue) << name;
        EXPECT_EQ(Read(Json(name, R"("1 ")")), kServiceScanMemberValue) << name;
        EXPECT_EQ(Read(Json(name, R"("1\u0000")")), kServiceScanMemberValue) << name;
    }
    EXPECT_EQ(Read(Json("type", R"("")")), kServiceScanMemberValue);
    EXPECT_EQ(Read(Json("cardid", R"("1")")), kServiceScanMemberValue);
}

TEST(PhoneRequestTest, WhatIsMissingIsToldBeforeAnotherKindThatBeforeASurplusAndValuesLast) {
    EXPECT_EQ(Read(R"({"type":1,"more":""})"), kServiceScanMemberMissing);
    EXPECT_EQ(Read(Json("type", R"(1,"more":"")")), kServiceScanMemberKind);
    EXPECT_EQ(Read(Json("type", R"("2","more":"")")), kServiceScanMemberSurplus);
}

TEST(PhoneRequestTest, ARefusedRequestLeavesTheOldOneAsItWas) {
    ScanRequest request{"before"};
    ReadScanRequest(Base64Encode(Json("type", R"("2")")), request);
    EXPECT_EQ(request.appId, "before");
}

}  // namespace
