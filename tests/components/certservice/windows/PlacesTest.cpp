#include "components/certservice/Places.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "components/certservice/ServiceSettings.h"
#include "support/TemporaryPrefix.h"

namespace {

class PlacesTestOnWindows : public testing::Test {
protected:
    TemporaryPrefix m_prefix;
};

TEST_F(PlacesTestOnWindows, KeysAreTheUsersAndTrustIsEverybodys) {
    const char* user = std::getenv("LOCALAPPDATA");
    const char* everybody = std::getenv("ProgramData");
    ASSERT_NE(user, nullptr);
    ASSERT_NE(everybody, nullptr);
    EXPECT_EQ(KeyFolderPath(), std::string(user) + "\\Velmora\\keys");
    EXPECT_EQ(CaFolderPath(), std::string(user) + "\\Velmora\\ca");
    EXPECT_EQ(TrustFolderPath(), std::string(everybody) + "\\Velmora\\trust");
}

TEST_F(PlacesTestOnWindows, ASettingLosesEitherSeparatorButNeverHalfACharacterOrARoot) {
    for (const auto& [setting, path] :
         {std::pair("C:\\keys\\", "C:\\keys"), std::pair("C:/keys/", "C:/keys"),
          std::pair("C:\\keys\\\\/", "C:\\keys"), std::pair("C:\\", "C:\\"),
          std::pair("C:\\x\x81\x5C", "C:\\x\x81\x5C")}) {
        SetServicePath("KeyFolder", setting);
        EXPECT_EQ(KeyFolderPath(), path);
    }
}

}  // namespace
