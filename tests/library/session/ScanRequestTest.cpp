#include "session/ScanRequest.h"

#include <gtest/gtest.h>
#include <json/json.h>

#include <random>

namespace {

ScanLoginRequest RequestOf(const std::string& appid) {
    ScanLoginRequest request;
    request.appid = appid;
    return request;
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
std::string Write(const Json::Value& value) { return Json::StyledWriter().write(value); }
#pragma GCC diagnostic pop

std::string ByJsoncpp(const ScanLoginRequest& request) {
    Json::Value value;
    value["type"] = request.type;
    value["showselectcertwnd"] = request.showselectcertwnd;
    value["cardid"] = request.cardid;
    value["cardname"] = request.cardname;
    value["cardimage"] = request.cardimage;
    value["appid"] = request.appid;
    return Write(value);
}

TEST(ScanRequestTest, AFreshRequestHasTheSixMembersInTheOrderOfTheirNames) {
    EXPECT_EQ(ScanLoginRequest().StyledText(),
              "{\n   \"appid\" : \"\",\n   \"cardid\" : \"\",\n   \"cardimage\" : \"\",\n"
              "   \"cardname\" : \"\",\n   \"showselectcertwnd\" : \"0\",\n"
              "   \"type\" : \"1\"\n}\n");
}

TEST(ScanRequestTest, EveryMemberStandsUnderItsName) {
    ScanLoginRequest request{"a", "b", "c", "d", "e", "f"};
    EXPECT_EQ(request.StyledText(), ByJsoncpp(request));
    EXPECT_NE(request.StyledText().find("\"cardname\" : \"d\""), std::string::npos);
}

TEST(ScanRequestTest, EveryByteComesOutAsJsoncppWritesIt) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string alone(1, static_cast<char>(byte));
        for (const std::string& text : {alone, "a" + alone, alone + "a", alone + alone}) {
            const ScanLoginRequest request = RequestOf(text);
            EXPECT_EQ(request.StyledText(), ByJsoncpp(request)) << byte;
        }
    }
}

TEST(ScanRequestTest, TextsOfAnyLanguageAndRandomBytesComeOutAsJsoncppWritesThem) {
    std::mt19937 random(7);
    for (int round = 0; round < 20000; ++round) {
        std::string text(random() % 9, '\0');
        for (char& c : text) c = static_cast<char>(random() % 4 == 0 ? random() : 0xE0 | random());
        const ScanLoginRequest request = RequestOf(text);
        ASSERT_EQ(request.StyledText(), ByJsoncpp(request));
    }
    for (const char* text : {"应用", "\xe5\xba\x94", "\xf0\x9f\x98\x80", "\xf7\xbf\xbf\xbf",
                             "\xed\xa0\x80", "\xc0\x80", "\xf0\x8f\xbf\xbf"}) {
        EXPECT_EQ(RequestOf(text).StyledText(), ByJsoncpp(RequestOf(text)));
    }
}

// What a reader of the request finds.
TEST(ScanRequestTest, TheTextIsReadBackAsTheSameMembers) {
    Json::Value value;
    Json::CharReaderBuilder builder;
    const std::string text = RequestOf("a \"host\"\\\n").StyledText();
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    ASSERT_TRUE(reader->parse(text.data(), text.data() + text.size(), &value, nullptr));
    EXPECT_EQ(value["appid"].asString(), "a \"host\"\\\n");
    EXPECT_EQ(value.size(), 6u);
}

}  // namespace
