#include "components/certservice/pkcs11/Pkcs11Settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "components/certservice/ServiceSettings.h"
#include "support/TemporaryPrefix.h"

namespace {

TEST(Pkcs11SettingsTestOnLinux, APathNeedNotBeText) {
    const TemporaryPrefix prefix;
    SetServicePath("Pkcs11Modules", "/a/\xFF.so;/b.so");
    EXPECT_THAT(ReadPkcs11Settings().modules, testing::ElementsAre("/a/\xFF.so", "/b.so"));
}

}  // namespace
