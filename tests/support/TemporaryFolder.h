// TemporaryFolder.h - an empty folder for one test, gone at the end with all that is in it.
#pragma once

#include <string>

class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    // Without a separator at its end; ASCII.
    const std::string& Path() const { return m_path; }
    // The path of `name` in it, which may go through folders with "/"; all separators of the result
    // are the platform's.
    std::string Below(const std::string& name) const;

private:
    std::string m_path;
};
