#include "SignTimeStampTest.h"

using testing::ElementsAre;

namespace {

class RequestCopyOnWindows : public SignTimeStampTest {
protected:
    // A disk that is full, at the place of the copy: drive z: is the root of the system that runs
    // the tests. Only what passes the run-time's buffer is refused there, and no close fails.
    RequestCopyOnWindows() { g_copyPath = "z:\\dev\\full"; }

    int Write(std::size_t size) {
        const std::string data(size, 'x');
        return m_appOpt.WriteContent2File("", AsBytes(data), AsLength(data));
    }
};

TEST_F(RequestCopyOnWindows, AFullDiskFailsTheWriteOfALargeContent) {
    EXPECT_EQ(Write(100'000), TESMARK_COPY_NOT_WRITTEN);
    EXPECT_THAT(Errors(), ElementsAre(testing::StartsWith("[WriteContent2File]:fwrite data len:")));
}

}  // namespace
