// Where the library looks for its neighbours.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LibraryFileOnLinux.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST(LibraryFileOnLinux, LooksForItsNeighboursBesideItselfAndLetsAnEarlierFileTakeTheirPlace) {
    const std::string dynamic = OutputOf("readelf -d " LIBRARY_FILE);
    EXPECT_THAT(AllMatches(dynamic, R"(\(RUNPATH\).*\[(.*)\])"), ElementsAre("$ORIGIN"));
    EXPECT_THAT(dynamic, Not(HasSubstr("(RPATH)")));
    EXPECT_THAT(AllMatches(dynamic, R"(\(SONAME\).*\[(.*)\])"),
                ElementsAre("libTesmarkOpt_x64.so"));
}
