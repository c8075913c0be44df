#include "components/timestamp/ResponseCheck.h"

#include <gmock/gmock.h>
#include <openssl/err.h>
#include <openssl/ts.h>

#include "components/crypto/Handles.h"
#include "components/timestamp/TimeStampFixture.h"
#include "tools/timestampauthority/TimeStampAuthority.h"

namespace {

using testing::StartsWith;

std::string Tlv(unsigned char tag, const std::string& content) {
    std::string length;
    for (std::size_t rest = content.size(); rest != 0; rest >>= 8) {
        length.insert(length.begin(), static_cast<char>(rest & 0xFF));
    }
    if (content.size() >= 0x80) {
        length.insert(length.begin(), static_cast<char>(0x80 + length.size()));
    }
    if (length.empty()) length.push_back('\0');
    return static_cast<char>(tag) + length + content;
}

constexpr unsigned char kSequence = 0x30;

// The parts of a response, put together anew.
class ResponseCheckTest : public testing::Test {
protected:
    ResponseCheckTest() {
        const std::string der = Stamp(m_request);
        const auto* at = reinterpret_cast<const unsigned char*>(der.data());
        const OpenSslHandle<TS_RESP, TS_RESP_free> response(
            d2i_TS_RESP(nullptr, &at, static_cast<long>(der.size())));
        PKCS7* const token = TS_RESP_get_token(response.get());
        m_token = DerOf<i2d_PKCS7>(token);
        m_signed = DerOf<i2d_PKCS7_SIGNED>(token->d.sign);
    }
    static std::string Status(char status) { return Tlv(kSequence, Tlv(2, {status})); }
    static std::string Response(const std::string& status, const std::string& token) {
        return Tlv(kSequence, status + token);
    }
    // A token whose outer type has that encoded identifier.
    std::string TokenOfType(const std::string& type) const {
        return Tlv(kSequence, Tlv(6, type) + Tlv(0xA0, m_signed));
    }
    std::string FaultOf(const std::string& response) const {
        return CheckResponse(m_request, response).fault;
    }

    std::string m_request = MakeRequest();
    std::string m_token;
    std::string m_signed;
};

TEST_F(ResponseCheckTest, ARequestIsOneThatEndsWhereItsDerEnds) {
    EXPECT_TRUE(IsTimeStampRequest(m_request));
    EXPECT_FALSE(IsTimeStampRequest(m_request + "x"));
    EXPECT_FALSE(IsTimeStampRequest(""));
    EXPECT_FALSE(IsTimeStampRequest(m_token));
}

TEST_F(ResponseCheckTest, WhatIsPutTogetherAnewFitsAsBefore) {
    EXPECT_EQ(FaultOf(Response(Status(0), m_token)), "");
}

TEST_F(ResponseCheckTest, AStampWithModificationsFitsAndIsToldSo) {
    const ResponseVerdict verdict = CheckResponse(m_request, Response(Status(1), m_token));
    EXPECT_EQ(verdict.fault, "");
    EXPECT_THAT(verdict.summary, StartsWith("grantedWithMods, serial number "));
}

TEST_F(ResponseCheckTest, AnyOtherStatusIsARefusalEvenWithAToken) {
    EXPECT_EQ(FaultOf(Response(Status(2), m_token)), "refused by rejection");
    EXPECT_EQ(FaultOf(Response(Status(3), m_token)), "refused by waiting");
    EXPECT_EQ(FaultOf(Response(Status(6), m_token)), "refused by status 6");
    EXPECT_EQ(FaultOf(Response(Status(-1), m_token)), "refused by status -1");
}

TEST_F(ResponseCheckTest, AGrantNeedsAToken) {
    EXPECT_EQ(FaultOf(Response(Status(0), "")), "granted without a token");
}

TEST_F(ResponseCheckTest, ATokenOfTheNationalStandardsTypeIsRead) {
    EXPECT_EQ(FaultOf(Response(Status(0), TokenOfType("\x2A\x81\x1C\xCF\x55\x06\x01\x04\x02\x02"))),
              "");
}

TEST_F(ResponseCheckTest, ATokenOfAnotherTypeIsNotRead) {
    // id-data, and enveloped data of the national standard.
    EXPECT_NE(FaultOf(Response(Status(0), TokenOfType("\x2A\x86\x48\x86\xF7\x0D\x01\x07\x01"))),
              "");
    EXPECT_EQ(FaultOf(Response(Status(0), TokenOfType("\x2A\x81\x1C\xCF\x55\x06\x01\x04\x02\x03"))),
              "the token can't be read");
}

TEST_F(ResponseCheckTest, ThePolicyCountsWhereTheRequestNamesOne) {
    const std::string right = MakeRequest({.policy = kAuthorityPolicy});
    const std::string wrong = MakeRequest({.policy = "1.2.3.4.5"});
    EXPECT_EQ(CheckResponse(right, Stamp(right)).fault, "");
    EXPECT_EQ(CheckResponse(wrong, Stamp(right)).fault, "the token follows another policy");
}

TEST_F(ResponseCheckTest, ARequestWithoutANonceTakesATokenWithOne) {
    EXPECT_EQ(CheckResponse(MakeRequest({.nonce = 0}), Stamp(m_request)).fault, "");
}

TEST_F(ResponseCheckTest, EveryHashOfTheFieldIsStamped) {
    for (const char* const hash : {"SHA256", "SHA384", "SHA512", "SM3"}) {
        const std::string request = MakeRequest({.hash = hash});
        EXPECT_EQ(CheckResponse(request, Stamp(request)).fault, "") << hash;
    }
}

TEST_F(ResponseCheckTest, AHostsErrorsStayAndNoneJoinThem) {
    ERR_clear_error();
    ERR_raise(ERR_LIB_USER, 42);
    EXPECT_FALSE(IsTimeStampRequest("no request"));
    EXPECT_NE(FaultOf("no response"), "");
    EXPECT_EQ(ERR_GET_REASON(ERR_get_error()), 42);
    EXPECT_EQ(ERR_get_error(), 0u);
}

}  // namespace
