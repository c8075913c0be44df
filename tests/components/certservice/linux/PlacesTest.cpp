#include "components/certservice/Places.h"

#include <gtest/gtest.h>

#include "support/TemporaryPrefix.h"

namespace {

TEST(PlacesTestOnLinux, TheFoldersAreBelowThePrefix) {
    const TemporaryPrefix prefix;
    EXPECT_EQ(KeyFolderPath(), prefix.Path() + "/keys");
    EXPECT_EQ(TrustFolderPath(), prefix.Path() + "/trust");
    EXPECT_EQ(CaFolderPath(), prefix.Path() + "/ca");
}

}  // namespace
