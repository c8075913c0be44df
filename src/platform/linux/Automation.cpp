#include "platform/Automation.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "platform/CodePage.h"
#include "platform/Module.h"
#include "platform/RegistryStore.h"

namespace platform {

struct AutomationObjectState {
    ModuleHandle module;
};

namespace {

// The statuses that COM has for these.
constexpr auto kNullPointer = static_cast<std::int32_t>(0x80004003);
constexpr auto kUnknownName = static_cast<std::int32_t>(0x80020006);
constexpr auto kBadParameterCount = static_cast<std::int32_t>(0x8002000E);

// A text argument for as long as it is in use.
class Utf8Argument {
public:
    explicit Utf8Argument(const char* text) : m_null(text == nullptr) {
        if (!m_null) m_text = Utf8FromAnsi(text);
    }
    const char* Get() const { return m_null ? nullptr : m_text.c_str(); }

private:
    bool m_null;
    std::string m_text;
};

class NumberArgument {
public:
    explicit NumberArgument(std::int32_t number) : m_number(number) {}
    int Get() const { return m_number; }

private:
    std::int32_t m_number;
};

Utf8Argument Passed(const char* text) { return Utf8Argument(text); }
NumberArgument Passed(std::int32_t number) { return NumberArgument(number); }

template <typename... Arguments>
int CallTyped(void* function, char** result, const Arguments&... arguments) {
    using Function = int (*)(decltype(arguments.Get())..., char**);
    return reinterpret_cast<Function>(function)(arguments.Get()..., result);
}

// The function's type follows from the kinds of its arguments.
int CallWith(void* function, const AutomationArgument* arguments, std::size_t count,
             char** result) {
    const auto call = [&](const auto&... values) {
        return CallTyped(function, result, Passed(values)...);
    };
    switch (count) {
        case 0: return call();
        case 1: return std::visit(call, arguments[0]);
        case 2: return std::visit(call, arguments[0], arguments[1]);
        case 3: return std::visit(call, arguments[0], arguments[1], arguments[2]);
        default: return kBadParameterCount;
    }
}

AutomationResult Failure(AutomationFailure failure, std::int32_t status) {
    return {failure, status, std::nullopt};
}

bool HasShape(const char* text) {
    constexpr char kShape[] = "{00000000-0000-0000-0000-000000000000}";
    if (std::strlen(text) != sizeof kShape - 1) return false;
    for (std::size_t i = 0; kShape[i] != '\0'; ++i) {
        const bool fits = kShape[i] == '0' ? std::isxdigit(static_cast<unsigned char>(text[i])) != 0
                                           : text[i] == kShape[i];
        if (!fits) return false;
    }
    return true;
}

std::uint32_t Hex(const char* text, std::size_t digits) {
    return static_cast<std::uint32_t>(std::strtoul(std::string(text, digits).c_str(), nullptr, 16));
}

bool Parse(const char* text, AutomationId& id) {
    if (text == nullptr || !HasShape(text)) return false;
    id.data1 = Hex(text + 1, 8);
    id.data2 = static_cast<std::uint16_t>(Hex(text + 10, 4));
    id.data3 = static_cast<std::uint16_t>(Hex(text + 15, 4));
    for (std::size_t i = 0; i < 8; ++i) {
        const std::size_t at = (i < 2 ? 20 : 21) + 2 * i;
        id.data4[i] = static_cast<std::uint8_t>(Hex(text + at, 2));
    }
    return true;
}

std::string KeyOf(const AutomationId& id) {
    char text[64];
    const std::uint8_t* rest = id.data4;
    std::snprintf(text, sizeof text, "CLSID\\{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}\\",
                  id.data1, id.data2, id.data3, rest[0], rest[1], rest[2], rest[3], rest[4],
                  rest[5], rest[6], rest[7]);
    return std::string(text) + "InprocServer32";
}

// Empty if the class isn't registered.
std::string LibraryOf(const AutomationId& id) {
    const std::unique_ptr<RegistryKeyObject, decltype(&CloseRegistryKey)> key(
        OpenRegistryKey(RegistryRoot::ClassesRoot, KeyOf(id).c_str(), RegistryAccess::Read64),
        &CloseRegistryKey);
    std::size_t size = 0;
    if (!key || !QueryRegistryPath(key.get(), "", nullptr, &size)) return {};
    std::string path(size, '\0');
    if (!QueryRegistryPath(key.get(), "", path.data(), &size)) return {};
    return path.c_str();
}

}  // namespace

std::int32_t InitializeAutomation() { return 0; }

void UninitializeAutomation() {}

bool ParseClassId(const char* text, AutomationId& id) { return Parse(text, id); }

bool ParseInterfaceId(const char* text, AutomationId& id) { return Parse(text, id); }

AutomationObject CreateAutomationObject(const AutomationId& classId, const AutomationId&,
                                        const char* method) {
    const AutomationObject object = CreateAutomationControl(classId);
    if (object == nullptr || FindSymbol(object->module, method) != nullptr) return object;
    ReleaseAutomationObject(object);
    return nullptr;
}

AutomationObject CreateAutomationControl(const AutomationId& classId) {
    const ModuleHandle module = LoadModule(LibraryOf(classId).c_str());
    return module != nullptr ? new AutomationObjectState{module} : nullptr;
}

void ReleaseAutomationObject(AutomationObject object) {
    if (object == nullptr) return;
    FreeModule(object->module);
    delete object;
}

AutomationResult CallAutomation(AutomationObject object, const char* method,
                                std::initializer_list<AutomationArgument> arguments) {
    if (object == nullptr) return Failure(AutomationFailure::NoMethod, kNullPointer);
    void* const function = FindSymbol(object->module, method);
    if (function == nullptr) return Failure(AutomationFailure::NoMethod, kUnknownName);
    char* result = nullptr;
    const int status = CallWith(function, arguments.begin(), arguments.size(), &result);
    const std::unique_ptr<char, decltype(&std::free)> owned(result, &std::free);
    if (status < 0) return Failure(AutomationFailure::Failed, status);
    AutomationResult success;
    if (result != nullptr) success.text = AnsiFromUtf8(result);
    return success;
}

}  // namespace platform
