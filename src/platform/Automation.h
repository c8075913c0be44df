// Automation.h - automation engines: COM classes on Windows, shared libraries elsewhere. Each step
// of reaching one is a call of its own, since its callers tell the failed one.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <variant>

// Elsewhere than on Windows the default value of the key CLSID\{...}\InprocServer32 below
// ClassesRoot is the path of a shared library, and its methods are C functions of their names:
//
//     int GetPicByContent(int kind, const char *text2, const char *text1, char **result);
//
// Their texts are UTF-8, the result is allocated with malloc and freed here, a null one is a null
// string, and a negative value is a failed call.
namespace platform {

// A class's or an interface's identifier, in the layout of a GUID.
struct AutomationId {
    std::uint32_t data1;
    std::uint16_t data2;
    std::uint16_t data3;
    std::uint8_t data4[8];
};

// CoInitialize(null), with its status: negative where the thread is in a multi-threaded apartment
// already. The thread's count goes down only by the second, CoUninitialize, which is the caller's
// to call or to leave; nothing else here touches it. Elsewhere neither does anything.
std::int32_t InitializeAutomation();
void UninitializeAutomation();

// CLSIDFromString and IIDFromString: "{2D8C4E07-91BA-4F36-A4D2-7C16E05B3F9A}", digits of either
// case. False for any other text, but on Windows the first also takes the name of a registered
// class.
bool ParseClassId(const char* text, AutomationId& id);
bool ParseInterfaceId(const char* text, AutomationId& id);

struct AutomationObjectState;
using AutomationObject = AutomationObjectState*;

// CoCreateInstance without an outer object, in any context (23), for `interfaceId`. Elsewhere than
// on Windows an interface is known by `method`, a function that the library must have. Null where
// there is no such object. The caller releases it.
AutomationObject CreateAutomationObject(const AutomationId& classId,
                                        const AutomationId& interfaceId, const char* method);

// The same for IDispatch, of a class that is a control: on Windows IOleObject is asked for and let
// go at once, and without it there is no object. Elsewhere any library will do.
AutomationObject CreateAutomationControl(const AutomationId& classId);

// Null is allowed. The object must not be used afterwards. On Windows this may come after COM has
// been left on its thread, as nothing else may.
void ReleaseAutomationObject(AutomationObject object);

// A text or a 32-bit number. Texts are narrow text of the ANSI code page (GBK elsewhere than on
// Windows) up to the zero byte, like all of the product's; a null one is a null string.
using AutomationArgument = std::variant<const char*, std::int32_t>;

enum class AutomationFailure {
    None,
    NoText,    // no automation string could be made of an argument; the engine wasn't asked
    NoMethod,  // the look-up of the name failed, or there is no object
    Failed     // the call itself
};

struct AutomationResult {
    AutomationFailure failure = AutomationFailure::None;
    // The status of what failed, negative: the HRESULT on Windows, the method's own where the
    // engine tells it beside DISP_E_EXCEPTION; elsewhere the function's value. NoText has
    // 0x8007000E, a name that isn't there 0x80020006, a missing object 0x80004003. Without a
    // failure it is 0.
    std::int32_t status = 0;
    // In the ANSI code page, as arguments are, up to the zero byte. Empty for a null string, for a
    // result that is no string, and after a failure.
    std::optional<std::string> text;
};

// Calls `method` with at most three arguments, in the order of its declaration; more are a failed
// call (0x8002000E). On Windows the texts are made first, by the thread's ANSI code page, then
// come GetIDsOfNames with locale 1024 and the null interface identifier and Invoke of the plain
// method without named arguments. So it is for CreateAutomationObject's objects too, whose
// interface need not be dispatchable but whose object must be: the places of an interface's
// methods in its table aren't known here, their names are.
AutomationResult CallAutomation(AutomationObject object, const char* method,
                                std::initializer_list<AutomationArgument> arguments);

}  // namespace platform
