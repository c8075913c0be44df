// LibraryTest.h - a test of the built library through its exports, with stand-ins behind it.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TesmarkOpt.h"
#include "fakes/Script.h"
#include "fakes/World.h"
#include "support/TemporaryPrefix.h"

namespace fakes {

// The certificate service's stand-in, or a variant of it.
enum class Service { Complete, WithoutTsGenReq, WithoutLastLogin, NoLibrary };
std::string ServicePath(Service service = Service::Complete);

}  // namespace fakes

// Each test begins with an empty world, the complete certificate service registered and not
// started, nothing selected, no setting in the store and no record in Log. A key with one
// certificate and one seal is
//     fakes::AddCertificate("label", "cert-1");
//     fakes::AddFile("cert-1", "ESEAL01", fakes::EsSeal("picture"));
// The sizes that GetSealPicSize tells are left from the test before, as no export resets them.
class LibraryTest : public testing::Test {
protected:
    LibraryTest();
    ~LibraryTest() override;

    // The records since the test began or since ForgetLog, of level `deepest` and more severe, as
    // "<level> <message>"; the milliseconds of a scope's end read "N". GBK.
    std::vector<std::string> Log(int deepest = 8) const;
    // Those of level 3 alone, without the level.
    std::vector<std::string> Errors() const;
    // The same but for the raw user list, which stands at that level though it tells no failure.
    std::vector<std::string> Failures() const;
    void ForgetLog();

    TemporaryPrefix m_prefix;

private:
    std::size_t m_logStart = 0;
};
