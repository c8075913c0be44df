#include <gtest/gtest.h>

#include <fstream>

#include "foundation/Registry.h"
#include "support/Environment.h"
#include "support/TemporaryPrefix.h"

namespace {

TEST(RegistryOnLinux, CreateKeyThatFailsLeavesTheHandleAlone) {
    const TemporaryPrefix prefix;
    std::ofstream(prefix.Below("file")) << "x";
    SetVariable("VELMORA_PREFIX", prefix.Below("file"));
    const auto root = platform::RegistryRootKey(platform::RegistryRoot::LocalMachine);
    CRegistry times(root);
    EXPECT_EQ(times.CreateKey(), 0);
    EXPECT_EQ(times.key, root);
}

}  // namespace
