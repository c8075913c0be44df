// AutomationText.h - narrow text as an automation string.
#pragma once

namespace platform {

// A BSTR of `text`, which is in the thread's ANSI code page up to its zero byte; the caller frees
// it. Null if the text can't be converted or there is no memory.
wchar_t* MakeAutomationText(const char* text);

}  // namespace platform
