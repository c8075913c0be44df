// What stands in the library's file: its exports, what it needs, where it looks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <regex>
#include <string>
#include <vector>

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::UnorderedElementsAreArray;

std::string OutputOf(const std::string& command) {
    const std::unique_ptr<FILE, decltype(&pclose)> pipe(popen(command.c_str(), "r"), &pclose);
    std::string output;
    for (int c = std::fgetc(pipe.get()); c != EOF; c = std::fgetc(pipe.get())) {
        output += static_cast<char>(c);
    }
    return output;
}

std::vector<std::string> AllMatches(const std::string& text, const std::string& pattern) {
    const std::regex expression(pattern);
    std::vector<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end;
         ++match) {
        found.push_back((*match)[1]);
    }
    return found;
}

std::string ReadHeader() {
    std::ifstream file(HEADER_FILE);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> Needed() {
    return AllMatches(OutputOf("readelf -d " LIBRARY_FILE), R"(\(NEEDED\).*\[(.*)\])");
}

}  // namespace

TEST(LibraryFileTest, ExportsTheNamesThatTheHeaderDeclaresAndNothingElse) {
    const auto declared =
        AllMatches(ReadHeader(), R"(TESMARK_EXPORT\s+(?:int|void)\s+([A-Za-z0-9_]+)\()");
    const auto exported =
        AllMatches(OutputOf("nm -D --defined-only " LIBRARY_FILE), R"( [A-Za-z] ([^\s]+))");
    ASSERT_FALSE(declared.empty());
    EXPECT_THAT(exported, UnorderedElementsAreArray(declared));
}

TEST(LibraryFileTest, NeedsTheClosedLibrariesThatAnExportCallsByTheirFileNames) {
    EXPECT_THAT(Needed(), Contains("libTOVKx64.so"));
    EXPECT_THAT(Needed(), Not(Contains("libMirelle.so")));
    EXPECT_THAT(Needed(), Not(Contains("libdwnt-3_x64.so")));
}

TEST(LibraryFileTest, DoesNotNeedWhatItOpensAtRunTime) {
    ASSERT_FALSE(Needed().empty());
    EXPECT_THAT(Needed(), Not(Contains(HasSubstr("KVLAppCOM"))));
    EXPECT_THAT(Needed(), Not(Contains(HasSubstr("libcurl"))));
}

TEST(LibraryFileTest, LooksForItsNeighboursBesideItselfAndLetsAnEarlierFileTakeTheirPlace) {
    const std::string dynamic = OutputOf("readelf -d " LIBRARY_FILE);
    EXPECT_THAT(AllMatches(dynamic, R"(\(RUNPATH\).*\[(.*)\])"), testing::ElementsAre("$ORIGIN"));
    EXPECT_THAT(dynamic, Not(HasSubstr("(RPATH)")));
    EXPECT_THAT(AllMatches(dynamic, R"(\(SONAME\).*\[(.*)\])"),
                testing::ElementsAre("libTesmarkOpt_x64.so"));
}
