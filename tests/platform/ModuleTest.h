// ModuleTest.h - modules under names of the test's choice.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/Module.h"
#include "support/TemporaryPrefix.h"

class ModuleTest : public testing::Test {
protected:
    ModuleTest() : m_before(std::filesystem::current_path()) {}
    ~ModuleTest() override {
        platform::FreeModule(m_module);
        std::filesystem::current_path(m_before);
    }
    std::string Path(const std::string& name) const { return m_prefix.Below(name); }
    std::string CopyAs(const std::string& name) const {
        std::filesystem::copy_file(MODULE_STAND_IN, Path(name));
        return Path(name);
    }
    platform::ModuleHandle Load(const std::string& path) {
        return m_module = platform::LoadModule(path.c_str());
    }

    TemporaryPrefix m_prefix;
    std::filesystem::path m_before;
    platform::ModuleHandle m_module = nullptr;
};
