// The example host, built as its own text tells.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "support/Program.h"
#include "support/TemporaryPrefix.h"

namespace {

namespace fs = std::filesystem;

class ExampleHostOnLinux : public testing::Test {
protected:
    // The folders as they lie in the project.
    ExampleHostOnLinux() {
        fs::create_directories(m_prefix.Below("build/linux"));
        fs::create_directory(m_folder);
        fs::copy_file(HOST_SOURCE, m_folder + "/host.c");
        fs::create_directory_symlink(HOST_INCLUDE, m_prefix.Below("include"));
        fs::create_directory_symlink(HOST_LIBRARIES, m_prefix.Below("build/linux/bin"));
    }

    // The line of the source that tells how to build it here.
    static std::string ToldCommand() {
        std::ifstream source(HOST_SOURCE);
        for (std::string line; std::getline(source, line);) {
            const auto command = line.find("cc host.c");
            if (command != std::string::npos) return line.substr(command);
        }
        return {};
    }

    TemporaryPrefix m_prefix;
    std::string m_folder = m_prefix.Below("examples");
};

TEST_F(ExampleHostOnLinux, BuiltAsItsTextTellsItFindsTheLibraryWhenItRuns) {
    const auto built = RunProgram({"/bin/sh", "-c", ToldCommand()}, {.folder = m_folder});
    ASSERT_EQ(built.exitCode, 0) << ToldCommand() << "\n" << built.error;
    // Nothing is set up: the library runs, and says so.
    const auto run = RunProgram({m_folder + "/a.out", "nobody", "123456"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.error.find("The login failed"), std::string::npos) << run.error;
}

}  // namespace
