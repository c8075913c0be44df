// TemporaryPrefix.h - the product's settings, log and folders for one test: empty at its beginning
// and gone at its end.
#pragma once

#include <memory>
#include <string>

#include "platform/RegistryStore.h"
#include "support/TemporaryFolder.h"

// Where VELMORA_PREFIX is known it is a folder's path, and the registry store, the log and all
// folders are in that folder. On Windows the product's registry keys and folders are emptied, those
// of this user of this Wine prefix; programs of several tests must not run in one at a time.
class TemporaryPrefix {
public:
    TemporaryPrefix();
    ~TemporaryPrefix();
    TemporaryPrefix(const TemporaryPrefix&) = delete;
    TemporaryPrefix& operator=(const TemporaryPrefix&) = delete;

    // A folder for the test's own files, without a separator at its end.
    const std::string& Path() const { return m_folder.Path(); }
    // The path of `name` in it, which may go through folders with "/"; with the platform's
    // separators.
    std::string Below(const std::string& name) const { return m_folder.Below(name); }
    // With a separator at their ends.
    std::string CrlFolder() const;
    std::string LogFolder() const;

    // Values of the product's settings key.
    void SetNumber(const char* name, unsigned int value) const;
    void SetText(const char* name, const std::string& value) const;
    void Remove(const char* name) const;
    // The same with bytes as they are, which neither is text nor a number.
    void SetBytes(const char* name, const std::string& bytes) const;
    void SetBytes(platform::RegistryRoot root, const char* key, const char* name,
                  const std::string& bytes) const;
    // Registers `path` as the certificate service's file, or `folder` as that of the installation.
    void RegisterCertService(const std::string& path) const;
    void RegisterInstallation(const std::string& folder) const;

private:
    // What the platform has beside the folder.
    class Surroundings;

    TemporaryFolder m_folder;
    std::unique_ptr<Surroundings> m_surroundings;
};
