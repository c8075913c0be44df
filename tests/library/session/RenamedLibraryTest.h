// RenamedLibraryTest.h - the built library under the name without the suffix, as which it shows the
// dialog of the online seals.
#pragma once

#include <string>

#include "OnlineTest.h"
#include "platform/Module.h"

// Each test begins with a copy of the library loaded, a service that has two seals, and nothing
// selected in the copy. The test program's own library has its own session.
class RenamedLibraryTest : public OnlineTest {
protected:
    RenamedLibraryTest() {
        m_listAnswer = SealList(
            2, SealInfo("7001", Utf8(u8"财务专用章")) + SealInfo("7002", Utf8(u8"合同专用章")));
    }
    ~RenamedLibraryTest() override {
        if (m_copy == nullptr) return;
        Export<int()>("ClearSelectKeyID")();
        Export<int()>("UnInitKVLLib")();
        platform::FreeModule(m_copy);
    }
    // `path` is a copy of the library's file.
    void Load(const std::string& path) {
        m_copy = platform::LoadModule(path.c_str());
        ASSERT_NE(m_copy, nullptr);
        ASSERT_EQ(platform::LoadedModulePath("TesmarkOpt"), path);
    }
    int QueryCopy() {
        m_length = 0;
        return Export<int(unsigned char*, int*)>("GetSealInfo")(nullptr, &m_length);
    }
    std::string FetchFromCopy() {
        std::string bytes(static_cast<std::size_t>(m_length), '?');
        const int code = Export<int(unsigned char*, int*)>("GetSealInfo")(
            reinterpret_cast<unsigned char*>(bytes.data()), &m_length);
        return code == 0 ? bytes : "failed";
    }
    bool CopyHasSelection() const {
        int length = 0;
        Export<int(unsigned char*, int*)>("GetSelectedCertId")(nullptr, &length);
        return length != 0;
    }

private:
    template <typename Function>
    Function* Export(const char* name) const {
        return reinterpret_cast<Function*>(platform::FindSymbol(m_copy, name));
    }

    platform::ModuleHandle m_copy = nullptr;
};
