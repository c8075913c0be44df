#include "components/certservice/pinentry/PinEntry.h"

#include <gtest/gtest.h>

#include "components/certservice/ServiceCodes.h"

namespace {

TEST(PinEntryTestOnWindows, NobodyCanBeAskedForAPin) {
    std::string pin = "untouched";
    EXPECT_EQ(MakePinEntry()->Ask("label", 3, "", pin), kServicePinUnavailable);
    EXPECT_EQ(pin, "untouched");
}

}  // namespace
