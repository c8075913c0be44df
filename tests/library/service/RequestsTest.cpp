#include <gtest/gtest.h>

#include "foundation/Text.h"
#include "service/Messages.h"

TEST(RequestsTest, HelloHasItsTypeAlone) {
    EXPECT_EQ(MakeHelloRequest(), "<ROOT>\r\n<REQUESTTYPE>Hello</REQUESTTYPE>\r\n</ROOT>\r\n");
}

TEST(RequestsTest, TheListIsAskedForBySerialNumberAndDistinguishedName) {
    EXPECT_EQ(MakeSealListRequest("1B2C3D", "TestCA"),
              "<ROOT>\r\n<REQUESTTYPE>GetSealList</REQUESTTYPE>\r\n<SN>1B2C3D</SN>\r\n"
              "<DN>TestCA</DN>\r\n</ROOT>\r\n");
}

TEST(RequestsTest, ASealIsAskedForByItsNumberToo) {
    EXPECT_EQ(MakeAppointedSealRequest("7001", "TestCA", "1B2C3D"),
              "<ROOT>\r\n<REQUESTTYPE>GetAppointedSeal</REQUESTTYPE>\r\n<SN>1B2C3D</SN>\r\n"
              "<DN>TestCA</DN>\r\n<SEALNUM>7001</SEALNUM>\r\n</ROOT>\r\n");
}

TEST(RequestsTest, AnEmptyValueIsAnEmptyElementWithoutABlank) {
    EXPECT_EQ(MakeSealListRequest("1B2C3D", ""),
              "<ROOT>\r\n<REQUESTTYPE>GetSealList</REQUESTTYPE>\r\n<SN>1B2C3D</SN>\r\n<DN/>\r\n"
              "</ROOT>\r\n");
    EXPECT_EQ(MakeAppointedSealRequest("", "", ""),
              "<ROOT>\r\n<REQUESTTYPE>GetAppointedSeal</REQUESTTYPE>\r\n<SN/>\r\n<DN/>\r\n"
              "<SEALNUM/>\r\n</ROOT>\r\n");
}

TEST(RequestsTest, MarkupInAValueIsWrittenAsEntitiesAndQuotesStay) {
    EXPECT_EQ(MakeAppointedSealRequest("7&1", "CN=<\"a\">", "'"),
              "<ROOT>\r\n<REQUESTTYPE>GetAppointedSeal</REQUESTTYPE>\r\n<SN>'</SN>\r\n"
              "<DN>CN=&lt;\"a\"&gt;</DN>\r\n<SEALNUM>7&amp;1</SEALNUM>\r\n</ROOT>\r\n");
}

TEST(RequestsTest, ChineseStandsInTheAnsiCodePage) {
    const std::string request = MakeSealListRequest("1", "CN=张三");
    EXPECT_NE(request.find("<DN>CN=\xD5\xC5\xC8\xFD</DN>"), std::string::npos);
    EXPECT_NE(AnsiToUtf8(request).find("<DN>CN=\xE5\xBC\xA0\xE4\xB8\x89</DN>"), std::string::npos);
}
