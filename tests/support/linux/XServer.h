// XServer.h - a screen of one's own, in memory.
#pragma once

#include <sys/types.h>
#include <string>

// An Xvfb of 1024 by 600 pixels without a window manager; it is gone with this, or with the
// process.
class XServer {
public:
    // With a folder the screen can be read there, in the file "Xvfb_screen0": an XWD whose pixels
    // change as the screen does.
    explicit XServer(const std::string& folder = "");
    ~XServer();
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    // For DISPLAY; empty if no server could be started.
    const std::string& Display() const { return m_display; }

private:
    pid_t m_process = -1;
    std::string m_display;
};
