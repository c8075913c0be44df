#include "CliFixture.h"

#include <json/reader.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

const char* const kContract = CLI_CONTRACT;

CliTest::CliTest() { m_prefix.RegisterCertService(CLI_CERT_SERVICE); }

ProgramOutcome CliTest::Tesmark(const std::vector<std::string>& arguments) const {
    std::vector<std::string> all = {CLI_TESMARK};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return RunProgram(all);
}

ProgramOutcome CliTest::Shell(const std::string& command) const {
    ProgramOptions options;
    options.folder = m_prefix.Path();
    options.environment = {{"TESMARK", CLI_TESMARK}};
    return RunProgram({"/bin/sh", "-c", command}, options);
}

Json::Value CliTest::Json(std::vector<std::string> arguments) const {
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

void CliTest::MakeKey(const std::string& name, const std::string& algorithm) const {
    const auto outcome =
        Tesmark({"key", "new", "--name", name, "--algorithm", algorithm, "--pin", "123456"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
}

void CliTest::MakeSeal(const std::string& cert, const std::string& form,
                       const std::string& name) const {
    const auto outcome = Tesmark({"seal", "new", "--cert", cert, "--form", form, "--name", name});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
}

void CliTest::ScriptPinentry(const std::string& beforeIt) const {
    const std::string path = InPrefix("pinentry");
    WriteFile(path,
              "#!/bin/sh\necho OK\nwhile read -r command rest; do\n  case $command in\n"
              "    GETPIN) " +
                  beforeIt +
                  "; echo 'D 123456'; echo OK ;;\n    BYE) echo OK; exit ;;\n    *) echo OK ;;\n"
                  "  esac\ndone\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    ASSERT_EQ(Tesmark({"config", "set", "PinentryProgram", path}).exitCode, 0);
}

std::string CliTest::FileContent(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void CliTest::WriteFile(const std::string& path, const std::string& content) const {
    std::ofstream(path, std::ios::binary) << content;
}

std::vector<std::string> CliTest::FilesBeginningWith(const std::string& start) const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_prefix.Path())) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with(start)) names.push_back(name);
    }
    return names;
}

BareCliTest::BareCliTest() { std::filesystem::remove(InPrefix("machine.reg")); }
