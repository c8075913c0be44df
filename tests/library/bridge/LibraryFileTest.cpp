// What stands in the library's file: its exports and what it needs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include "LibraryFile.h"
#include "foundation/Text.h"
#include "platform/Module.h"

namespace {

using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;
using testing::UnorderedElementsAreArray;

// The functions that a header declares, by the word ahead of their result.
std::vector<std::string> DeclaredIn(const std::string& header, const std::string& before) {
    const std::string text = ReadFileToString(header);
    const std::regex declaration("\n" + before + R"((?:int|void)\s+([A-Za-z0-9_]+)\()");
    std::vector<std::string> names;
    for (std::sregex_iterator match(text.begin(), text.end(), declaration), end; match != end;
         ++match) {
        names.push_back((*match)[1]);
    }
    return names;
}

// Those functions of a closed library that the library calls.
std::vector<std::string> CalledOf(const std::string& header) {
    std::vector<std::string> called = ImportedNames(LIBRARY_FILE);
    const std::vector<std::string> declared = DeclaredIn(CLOSED_HEADERS "/" + header, "");
    EXPECT_FALSE(declared.empty()) << header;
    std::erase_if(called, [&](const std::string& name) {
        return std::find(declared.begin(), declared.end(), name) == declared.end();
    });
    return called;
}

}  // namespace

TEST(LibraryFileTest, ExportsTheNamesThatTheHeaderDeclaresAndNothingElse) {
    const auto declared = DeclaredIn(HEADER_FILE, "TESMARK_EXPORT\\s+");
    ASSERT_FALSE(declared.empty());
    EXPECT_THAT(ExportedNames(LIBRARY_FILE), UnorderedElementsAreArray(declared));
}

TEST(LibraryFileTest, NeedsTheClosedLibrariesThatAnExportCallsByTheirFileNames) {
    const auto needed = NeededLibraries(LIBRARY_FILE);
    EXPECT_THAT(needed, Contains(platform::ModuleFileName("TOVKx64")));
    EXPECT_THAT(needed, Contains(platform::ModuleFileName("Mirelle")));
    // Its name begins with "lib" on Windows too.
    EXPECT_THAT(needed, Contains(HasSubstr("libdwnt-3_x64.")));
}

TEST(LibraryFileTest, DoesNotNeedWhatItOpensAtRunTime) {
    const auto needed = NeededLibraries(LIBRARY_FILE);
    ASSERT_FALSE(needed.empty());
    EXPECT_THAT(needed, Each(Not(HasSubstr("KVLAppCOM"))));
    EXPECT_THAT(needed, Each(Not(HasSubstr("libcurl"))));
}

TEST(LibraryFileTest, HoldsTheDecoderOfPreviewsItself) {
    const auto needed = NeededLibraries(LIBRARY_FILE);
    ASSERT_FALSE(needed.empty());
    EXPECT_THAT(needed, Each(Not(HasSubstr("libgif"))));
}

// A missing function stops the load, or ends the process only at its call: that is the loader's.
TEST(LibraryFileTest, WhatItCallsOfAClosedLibraryIsInTheOpenComponentAndInTheStandIn) {
    const auto called = CalledOf("SealLibrary.h");
    EXPECT_THAT(called, Contains("TVK_Initialize"));
    EXPECT_THAT(ExportedNames(FAKE_SEAL_LIBRARY), IsSupersetOf(called));
    EXPECT_THAT(ExportedNames(OPEN_SEAL_LIBRARY), IsSupersetOf(called));
    const auto calledOfPictures = CalledOf("SealPicture.h");
    EXPECT_THAT(calledOfPictures, Contains("SealFormatConvert"));
    EXPECT_THAT(ExportedNames(FAKE_SEAL_PICTURE), IsSupersetOf(calledOfPictures));
    EXPECT_THAT(ExportedNames(OPEN_SEAL_PICTURE), IsSupersetOf(calledOfPictures));
    const auto calledOfTransport = CalledOf("Transport.h");
    EXPECT_THAT(calledOfTransport, Contains("dwnt_http_processEx"));
    EXPECT_THAT(ExportedNames(FAKE_TRANSPORT), IsSupersetOf(calledOfTransport));
    EXPECT_THAT(ExportedNames(OPEN_TRANSPORT), IsSupersetOf(calledOfTransport));
}

TEST(LibraryFileTest, ASecondLinkGivesTheSameBytes) {
    const std::string first = ReadFileToString(LIBRARY_FILE);
    ASSERT_FALSE(first.empty());
    EXPECT_TRUE(first == ReadFileToString(RELINKED_FILE));
}
