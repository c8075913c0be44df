// ThreadHook.h - one of the system's hooks on the calling thread, for as long as it lives.
#pragma once

#include "platform/windows/Win32.h"

class ThreadHook {
public:
    // `kind` is WH_CBT, say.
    ThreadHook(int kind, HOOKPROC procedure)
        : m_hook(SetWindowsHookExA(kind, procedure, nullptr, GetCurrentThreadId())) {}
    ~ThreadHook() { UnhookWindowsHookEx(m_hook); }
    ThreadHook(const ThreadHook&) = delete;
    ThreadHook& operator=(const ThreadHook&) = delete;

private:
    HHOOK m_hook;
};
