// RegistryStoreTest.h - one key of the store, opened or made, and its values.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/RegistryStore.h"
#include "support/TemporaryPrefix.h"

class RegistryStoreTest : public testing::Test {
protected:
    void TearDown() override { platform::CloseRegistryKey(m_key); }
    platform::RegistryKey Open(
        const char* path, platform::RegistryAccess access = platform::RegistryAccess::AllAccess,
        platform::RegistryRoot root = platform::RegistryRoot::LocalMachine) {
        platform::CloseRegistryKey(m_key);
        return m_key = platform::OpenRegistryKey(root, path, access);
    }
    platform::RegistryKey Create(
        const char* path, platform::RegistryRoot root = platform::RegistryRoot::LocalMachine) {
        platform::CloseRegistryKey(m_key);
        return m_key = platform::CreateRegistryKey(platform::RegistryRootKey(root), path);
    }
    std::string Value(const char* name) const {
        char data[256] = {};
        std::size_t size = sizeof data;
        return platform::QueryRegistryValue(m_key, name, data, &size) ? std::string(data, size)
                                                                      : "absent";
    }
    std::string PathValue(const char* name) const {
        char data[256] = {};
        std::size_t size = sizeof data;
        return platform::QueryRegistryPath(m_key, name, data, &size) ? std::string(data, size)
                                                                     : "absent";
    }

    TemporaryPrefix m_prefix;
    platform::RegistryKey m_key = nullptr;
};
