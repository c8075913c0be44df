#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "components/exports/ExportedNames.h"
#include "platform/Module.h"

namespace {

struct Component {
    const char* name;
    const char* file;
    const char* functions;  // those of the interface's header, separated by blanks
};

class ComponentExportsTest : public testing::TestWithParam<Component> {
protected:
    static std::vector<std::string> Declared() {
        std::vector<std::string> names;
        std::istringstream words(GetParam().functions);
        for (std::string word; words >> word;) names.push_back(word);
        std::sort(names.begin(), names.end());
        return names;
    }
};

INSTANTIATE_TEST_SUITE_P(
    Built, ComponentExportsTest,
    testing::Values(Component{"CertService", CERTSERVICE_FILE, CERTSERVICE_FUNCTIONS},
                    Component{"SealLibrary", SEALLIBRARY_FILE, SEALLIBRARY_FUNCTIONS},
                    Component{"SealPicture", SEALPICTURE_FILE, SEALPICTURE_FUNCTIONS},
                    Component{"Transport", TRANSPORT_FILE, TRANSPORT_FUNCTIONS}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_P(ComponentExportsTest, EveryFunctionOfTheInterfaceIsFoundInTheLoadedFile) {
    const platform::ModuleHandle file = platform::LoadModule(GetParam().file);
    ASSERT_NE(file, nullptr);
    EXPECT_GE(Declared().size(), 4u);
    for (const std::string& name : Declared()) {
        EXPECT_NE(platform::FindSymbol(file, name.c_str()), nullptr) << name;
    }
    platform::FreeModule(file);
}

TEST_P(ComponentExportsTest, TheFileLetsNothingElseOut) {
    EXPECT_EQ(ExportedNames(GetParam().file), Declared());
}

}  // namespace
