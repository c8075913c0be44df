#include "platform/RegistryStore.h"

#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/CodePage.h"
#include "platform/linux/Places.h"
#include "platform/linux/StoreFile.h"

namespace platform {

struct RegistryKeyObject {
    RegistryRoot root;
    std::string path;  // below the root, in UTF-8, without a closing backslash
    bool writable;
};

namespace {

// Their paths are empty, so nothing is lost for a caller that comes while the process ends.
RegistryKeyObject g_localMachine{RegistryRoot::LocalMachine, {}, true};
RegistryKeyObject g_currentUser{RegistryRoot::CurrentUser, {}, true};
RegistryKeyObject g_classesRoot{RegistryRoot::ClassesRoot, {}, true};

const char* RootName(RegistryRoot root) {
    switch (root) {
        case RegistryRoot::CurrentUser: return "HKEY_CURRENT_USER";
        case RegistryRoot::ClassesRoot: return "HKEY_CLASSES_ROOT";
        case RegistryRoot::LocalMachine: break;
    }
    return "HKEY_LOCAL_MACHINE";
}

std::string WholePath(const RegistryKeyObject& key) {
    return std::string(RootName(key.root)) + "\\" + key.path;
}

// At each use: a test, or a host, may change the variables at any time.
std::string StorePath(RegistryRoot root) {
    const bool user = root == RegistryRoot::CurrentUser;
    const char* name = user ? "user.reg" : "machine.reg";
    const std::string prefix = PrefixFolder();
    if (!prefix.empty()) return prefix + name;
    if (!user) return std::string("/etc/velmora/") + name;
    const std::string folder = UserFolder("XDG_CONFIG_HOME", ".config");
    return folder.empty() ? "" : folder + "velmora/" + name;
}

std::string Below(const RegistryKeyObject& parent, const char* path) {
    std::string whole = parent.path.empty() ? "" : parent.path + "\\";
    whole += Utf8FromAnsi(path);
    while (whole.ends_with('\\')) whole.pop_back();
    return whole;
}

bool IsRoot(RegistryKey key) {
    return key == &g_localMachine || key == &g_currentUser || key == &g_classesRoot;
}

bool KeyExists(const RegistryKeyObject& key) {
    if (key.path.empty()) return true;
    const auto text = StoreFile(StorePath(key.root)).Read();
    return text && text->HasKey(WholePath(key));
}

RegistryKey IfExists(RegistryKeyObject key) {
    return KeyExists(key) ? new RegistryKeyObject(std::move(key)) : nullptr;
}

std::optional<RegValue> ReadValue(RegistryKey key, const char* name) {
    if (key == nullptr) return std::nullopt;
    const auto text = StoreFile(StorePath(key->root)).Read();
    if (!text) return std::nullopt;
    return text->Find(WholePath(*key), Utf8FromAnsi(name));
}

bool CopyOut(std::string_view bytes, void* data, std::size_t* size) {
    const std::size_t capacity = std::exchange(*size, bytes.size());
    if (data == nullptr) return true;
    if (bytes.size() > capacity) return false;
    if (!bytes.empty()) std::memcpy(data, bytes.data(), bytes.size());
    return true;
}

std::string WithTerminator(std::string text) {
    text += '\0';
    return text;
}

template <typename Change>
bool Update(RegistryKey key, Change change) {
    return key != nullptr && key->writable && StoreFile(StorePath(key->root)).Update(change);
}

bool SetLiteral(RegistryKey key, const char* name, const std::string& literal) {
    return Update(
        key, [&](RegText& text) { return text.Set(WholePath(*key), Utf8FromAnsi(name), literal); });
}

}  // namespace

RegistryKey RegistryRootKey(RegistryRoot root) {
    switch (root) {
        case RegistryRoot::CurrentUser: return &g_currentUser;
        case RegistryRoot::ClassesRoot: return &g_classesRoot;
        case RegistryRoot::LocalMachine: break;
    }
    return &g_localMachine;
}

RegistryKey OpenRegistryKey(RegistryRoot root, const char* path, RegistryAccess access) {
    return IfExists(
        {root, Below(*RegistryRootKey(root), path), access == RegistryAccess::AllAccess});
}

RegistryKey CreateRegistryKey(RegistryKey parent, const char* path) {
    if (parent == nullptr) return nullptr;
    RegistryKeyObject key{parent->root, Below(*parent, path), true};
    if (!KeyExists(key)) {
        const auto add = [&](RegText& text) { return text.AddKey(WholePath(key)); };
        if (!StoreFile(StorePath(key.root)).Update(add)) return nullptr;
    }
    return new RegistryKeyObject(std::move(key));
}

void CloseRegistryKey(RegistryKey key) {
    if (!IsRoot(key)) delete key;
}

bool QueryRegistryValue(RegistryKey key, const char* name, void* data, std::size_t* size) {
    const auto value = ReadValue(key, name);
    if (!value) {
        *size = 0;
        return false;
    }
    if (!value->isText) return CopyOut(value->bytes, data, size);
    return CopyOut(WithTerminator(AnsiFromUtf8(value->bytes)), data, size);
}

bool QueryRegistryPath(RegistryKey key, const char* name, void* data, std::size_t* size) {
    const auto value = ReadValue(key, name);
    if (!value) {
        *size = 0;
        return false;
    }
    return CopyOut(value->isText ? WithTerminator(value->bytes) : value->bytes, data, size);
}

// A text that a line can't hold, or that would come back changed from UTF-8, is stored byte by
// byte.
bool SetRegistryString(RegistryKey key, const char* name, const std::string& text) {
    const std::string utf8 = Utf8FromAnsi(text);
    const bool fits = RegText::IsLine(utf8) && AnsiFromUtf8(utf8) == text;
    return SetLiteral(
        key, name, fits ? RegText::TextLiteral(utf8) : RegText::RawLiteral(WithTerminator(text)));
}

bool SetRegistryPath(RegistryKey key, const char* name, const std::string& path) {
    return SetLiteral(key, name,
                      RegText::IsLine(path) ? RegText::TextLiteral(path)
                                            : RegText::RawLiteral(WithTerminator(path)));
}

bool SetRegistryNumber(RegistryKey key, const char* name, unsigned int number) {
    return SetLiteral(key, name, RegText::NumberLiteral(number));
}

bool DeleteRegistryValue(RegistryKey key, const char* name) {
    return Update(key,
                  [&](RegText& text) { return text.Remove(WholePath(*key), Utf8FromAnsi(name)); });
}

}  // namespace platform
