#include "support/TemporaryPrefix.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

#include "platform/CodePage.h"
#include "platform/RegText.h"
#include "support/Environment.h"

namespace {

constexpr char kVariable[] = "VELMORA_PREFIX";

const char* RootName(platform::RegistryRoot root) {
    switch (root) {
        case platform::RegistryRoot::CurrentUser: return "HKEY_CURRENT_USER\\";
        case platform::RegistryRoot::ClassesRoot: return "HKEY_CLASSES_ROOT\\";
        case platform::RegistryRoot::LocalMachine: break;
    }
    return "HKEY_LOCAL_MACHINE\\";
}

}  // namespace

class TemporaryPrefix::Surroundings {
public:
    explicit Surroundings(const std::string& folder) : m_before(kVariable) {
        SetVariable(kVariable, folder);
    }

private:
    SavedVariable m_before;
};

TemporaryPrefix::TemporaryPrefix()
    : m_surroundings(std::make_unique<Surroundings>(m_folder.Path())) {}

TemporaryPrefix::~TemporaryPrefix() = default;

void TemporaryPrefix::SetBytes(platform::RegistryRoot root, const char* key, const char* name,
                               const std::string& bytes) const {
    const bool user = root == platform::RegistryRoot::CurrentUser;
    const std::string file = Below(user ? "user.reg" : "machine.reg");
    std::ostringstream contents;
    contents << std::ifstream(file, std::ios::binary).rdbuf();
    platform::RegText text(contents.str());
    if (!text.Set(RootName(root) + platform::Utf8FromAnsi(key), platform::Utf8FromAnsi(name),
                  platform::RegText::RawLiteral(bytes))) {
        throw std::runtime_error("the test's settings can't be prepared");
    }
    std::ofstream(file, std::ios::binary) << text.Contents();
}
