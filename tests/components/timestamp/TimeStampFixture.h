// TimeStampFixture.h - time-stamp requests, and an authority on loopback that answers them.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "components/timestamp/Engine.h"
#include "support/LoopbackServer.h"
#include "support/NoProxy.h"
#include "support/TemporaryPrefix.h"

// What a request says. A nonce of 0 and an empty policy are left out.
struct RequestForm {
    std::string hash = "SHA256";
    char imprint = 'a';  // every byte of it
    long nonce = 4711;
    std::string policy{};
};
std::string MakeRequest(const RequestForm& form = {});  // DER

// The response of the test's authority; its CA's certificate in PEM. Made once for the process.
std::string Stamp(std::string_view request);
const std::string& AuthorityCa();
// Those of an HTTP answer with the right type.
std::string HttpReply(const std::string& body);

class TimeStampTest : public testing::Test {
protected:
    using Request = LoopbackServer::Request;

    // Asks the authorities of `urls` with the fixture's settings.
    EngineOutcome Ask(const std::vector<std::string>& urls);
    EngineOutcome Ask(const LoopbackServer& server) { return Ask({server.Url("/tsa")}); }
    // Asks a server that answers so, and gives what the one record says behind the address.
    std::string FaultOf(LoopbackServer::Handler handler);
    std::string FaultOf(const std::string& httpAnswer);

    TemporaryPrefix m_prefix;
    TimeStampSettings m_settings;
    std::string m_request = MakeRequest();

private:
    NoProxy m_noProxy;
};
