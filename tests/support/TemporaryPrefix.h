// TemporaryPrefix.h - a private root for one test: registry store, log and folders, gone at the
// end.
#pragma once

#include <optional>
#include <string>

class TemporaryPrefix {
public:
    // Makes an empty folder and sets VELMORA_PREFIX to it.
    TemporaryPrefix();
    // Removes the folder with all that is in it, and gives the variable back what it had.
    ~TemporaryPrefix();
    TemporaryPrefix(const TemporaryPrefix&) = delete;
    TemporaryPrefix& operator=(const TemporaryPrefix&) = delete;

    // Without a separator at its end.
    const std::string& Path() const { return m_path; }
    std::string CrlFolder() const;

    // Values of the product's settings key.
    void SetNumber(const char* name, unsigned int value) const;
    void SetText(const char* name, const std::string& value) const;
    // Registers `path` as the certificate service's file.
    void RegisterCertService(const std::string& path) const;

private:
    std::string m_path;
    std::optional<std::string> m_before;
};
