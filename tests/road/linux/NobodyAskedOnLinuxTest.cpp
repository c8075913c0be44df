#include "road/RoadTest.h"

namespace {

// Without a dialog program nobody is asked; on Windows dialogs need none.
class NobodyAskedOnLinux : public RoadTest {
protected:
    std::string LoggedInKey(KeyKind kind, const std::string& name) {
        const std::string certId = MakeKey(kind, name);
        EXPECT_EQ(Login(certId), 0);
        return certId;
    }
};

TEST_F(NobodyAskedOnLinux, OfTwoSealsNobodyChooses) {
    const std::string certId = LoggedInKey(KeyKind::kRsa, "rsa");
    AddEsSeal(certId);
    AddEsSeal(certId, "ESEAL02");
    EXPECT_EQ(Picture().code, TESMARK_CANCELLED);
}

TEST_F(NobodyAskedOnLinux, OfTwoCertificatesNobodyChooses) {
    AddEsSeal(LoggedInKey(KeyKind::kRsa, "rsa"));
    AddEsSeal(MakeKey(KeyKind::kSm2, "sm2"));
    EXPECT_EQ(Picture().code, TESMARK_CANCELLED);
}

}  // namespace
