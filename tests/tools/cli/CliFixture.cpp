#include "CliFixture.h"

#include <json/reader.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

#include "components/certservice/Places.h"
#include "platform/Files.h"

const char* const kContract = CLI_CONTRACT;
const char* const kTesmark = CLI_TESMARK;

namespace {

std::string Below(const std::string& folder, const std::string& name) {
    std::string path = name;
    std::replace(path.begin(), path.end(), '/', platform::PathSeparator());
    return folder + platform::PathSeparator() + path;
}

}  // namespace

CliTest::CliTest() { m_prefix.RegisterCertService(CLI_CERT_SERVICE); }

ProgramOutcome BareCliTest::Tesmark(const std::vector<std::string>& arguments,
                                    const std::string& input) const {
    ProgramOptions options;
    options.input = input;
    // The machine's own display, if it has one, is no part of any test.
    options.environment = {{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}};
    return Tesmark(arguments, options);
}

ProgramOutcome BareCliTest::Tesmark(const std::vector<std::string>& arguments,
                                    const ProgramOptions& options) const {
    std::vector<std::string> all = {CLI_TESMARK};
    // A test gives a program what a shell gives it: the system's own bytes.
    for (const std::string& argument : arguments) all.push_back(platform::PathFromUtf8(argument));
    return RunProgram(all, options);
}

Json::Value BareCliTest::Json(std::vector<std::string> arguments) const {
    arguments.emplace_back("--json");
    const ProgramOutcome outcome = Tesmark(arguments);
    Json::Value value;
    std::string errors;
    const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    const char* begin = outcome.out.data();
    if (!reader->parse(begin, begin + outcome.out.size(), &value, &errors)) {
        ADD_FAILURE() << errors << outcome.out << outcome.error;
    }
    return value;
}

void BareCliTest::MakeKey(const std::string& name, const std::string& algorithm) const {
    const auto outcome =
        Tesmark({"key", "new", "--name", name, "--algorithm", algorithm, "--pin", "123456"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
}

void BareCliTest::MakeSeal(const std::string& cert, const std::string& form,
                           const std::string& name) const {
    const auto outcome = Tesmark({"seal", "new", "--cert", cert, "--form", form, "--name", name});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
}

std::string BareCliTest::InKeys(const std::string& name) { return Below(KeyFolderPath(), name); }

std::string BareCliTest::InTrust(const std::string& name) { return Below(TrustFolderPath(), name); }

std::string BareCliTest::FileContent(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void BareCliTest::WriteFile(const std::string& path, const std::string& content) const {
    std::ofstream(path, std::ios::binary) << content;
}

std::vector<std::string> BareCliTest::FilesBeginningWith(const std::string& start) const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_prefix.Path())) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with(start)) names.push_back(name);
    }
    return names;
}
