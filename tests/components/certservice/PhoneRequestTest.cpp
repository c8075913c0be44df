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

// A good request but for what stands between the quotation marks of its application id.
std::string WithAppId(const std::string& content) {
    std::string text = Json("appid", R"("@")");
    return text.replace(text.find('@'), 1, content);
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

TEST(PhoneRequestTest, ACommentIsNoJsonWhereverItStands) {
    const std::string good = WithAppId("x");
    ASSERT_EQ(Read(good), kServiceOk);
    for (const std::string comment : {"/**/", "/* a comment */", "// a comment\n", "//", "/"}) {
        for (const char* behind : {"{", "\"appid\"", "\"appid\":", "\"x\"", "\"x\",", "}"}) {
            std::string text = good;
            text.insert(text.find(behind) + std::string(behind).size(), comment);
            EXPECT_EQ(Read(text), kServiceScanNotJson) << text;
        }
    }
    EXPECT_EQ(Read(WithAppId("/**/ // x")), kServiceOk) << "in a text it is none";
}

TEST(PhoneRequestTest, AZeroByteIsNoEnd) {
    const std::string zero(1, '\0'), good = Json();
    for (const std::string& text : {good + zero, good + zero + R"({"type":"2"}garbage)",
                                    zero + good, "{" + zero + good.substr(1)}) {
        EXPECT_EQ(Read(text), kServiceScanNotJson) << text;
    }
}

TEST(PhoneRequestTest, AControlCharacterIsPartOfATextOnlyIfItIsEscaped) {
    for (char control = 0; control < ' '; ++control) {
        EXPECT_EQ(Read(WithAppId("a" + std::string(1, control) + "b")), kServiceScanNotJson)
            << int{control};
        EXPECT_EQ(Read("{\"" + std::string(1, control) + "\":\"\"}"), kServiceScanNotJson)
            << int{control};
    }
    ScanRequest request;
    const std::string text = WithAppId(R"(\u0000\t\u001b)"
                                       "\x7F");
    ASSERT_EQ(ReadScanRequest(Base64Encode(text), request), kServiceOk);
    EXPECT_EQ(request.appId, std::string("\0\t\x1B\x7F", 4));
}

TEST(PhoneRequestTest, WhiteSpaceIsOfFourKindsOnly) {
    for (const char* space : {"\v", "\f", "\x1B", "\xC2\xA0", "\x7F"}) {
        EXPECT_EQ(Read(Json() + space), kServiceScanNotJson) << space;
    }
    EXPECT_EQ(Read(Json() + " \t\r\n"), kServiceOk);
}

TEST(PhoneRequestTest, ATextThatIsNoUtf8IsNoJson) {
    for (const char* bytes :
         {"应用", "\x80", "\xC0\x80", "\xE5\x8D", "\xE5\x8Dxx", "\xED\xA0\x80", "\xF4\x90\x80\x80",
          "\xF0\x80\x80\x80", "\xF8\x88\x80\x80\x80", "\xFF"}) {
        EXPECT_EQ(Read(WithAppId(bytes)), kServiceScanNotJson) << bytes;
        EXPECT_EQ(Read(std::string("{\"") + bytes + "\":\"\"}"), kServiceScanNotJson) << bytes;
    }
    constexpr char kOfAllLengths[] = "a\xC3\xBC\xE5\x8D\xB0\xF0\x9F\x98\x80\xEF\xBF\xBF";
    ScanRequest request;
    ASSERT_EQ(ReadScanRequest(Base64Encode(WithAppId(kOfAllLengths)), request), kServiceOk);
    EXPECT_EQ(request.appId, kOfAllLengths);
}

TEST(PhoneRequestTest, HalfASurrogatePairIsNoJson) {
    for (const char* half :
         {R"(\udc00)", R"(\uDFFFx)", R"(\ud800)", R"(\ud800x)", R"(\ud800\u0041)",
          R"(\ud800\ud800\udc00)", R"(\udbff\n)", R"(\ud83d\ude00\ude00)", R"(\ud83d\\ude00)"}) {
        EXPECT_EQ(Read(WithAppId(half)), kServiceScanNotJson) << half;
    }
    ScanRequest request;
    ASSERT_EQ(ReadScanRequest(Base64Encode(WithAppId(R"(\uD83D\uDE00\ud7ff\\ude00)")), request),
              kServiceOk);
    EXPECT_EQ(request.appId, "\xF0\x9F\x98\x80\xED\x9F\xBF\\ude00");
}

TEST(PhoneRequestTest, AnEscapeThatJsonDoesntHaveIsNoJson) {
    for (const char* escape : {R"(\x41)", R"(\u41)", R"(\u004g)", R"(\u+041)", R"(\u-041)",
                               R"(\u 041)", R"(\u0x41)", R"(\')", "\\\xE5\x8D\xB0"}) {
        EXPECT_EQ(Read(WithAppId(escape)), kServiceScanNotJson) << escape;
    }
    for (const char* cut : {"{\"", "{\"\\", "{\"\\u", "{\"\\u00", "{\"\\ud83d\\", "{\"\xE5"}) {
        EXPECT_EQ(Read(cut), kServiceScanNotJson) << cut;
    }
    EXPECT_EQ(Read(WithAppId(R"(\"\\\/\b\f\n\r\t\u00Ff)")), kServiceOk);
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
