#include <gtest/gtest.h>

#include "foundation/ServicePath.h"
#include "support/TemporaryPrefix.h"

namespace {

TEST(ServicePathOnLinux, ThePathsBytesAreNotConverted) {
    const TemporaryPrefix prefix;
    prefix.RegisterInstallation("/\xE5\x8D\xB0\xFF");
    EXPECT_EQ(get_kvl_path(), "/\xE5\x8D\xB0\xFF/Program/libKVLAppCOM.so");
}

}  // namespace
