#include "pdf/InputCopy.h"

#include <pthread.h>

#include <filesystem>
#include <system_error>
#include <thread>

#include "tools/pdf/InputCopyFixture.h"
#include "tools/pdf/linux/FileSizeLimit.h"

namespace {

// Threads whose stack no system can give.
class NoThreads {
public:
    NoThreads() {
        pthread_getattr_default_np(&m_before);
        pthread_attr_t huge;
        pthread_attr_init(&huge);
        pthread_attr_setstacksize(&huge, std::size_t{1} << 47);
        pthread_setattr_default_np(&huge);
        pthread_attr_destroy(&huge);
    }
    ~NoThreads() {
        pthread_setattr_default_np(&m_before);
        pthread_attr_destroy(&m_before);
    }
    NoThreads(const NoThreads&) = delete;
    NoThreads& operator=(const NoThreads&) = delete;

private:
    pthread_attr_t m_before{};
};

using InputCopyOnLinux = InputCopyFixture;

TEST_F(InputCopyOnLinux, WithoutAThreadToBeHadTheCopyIsMadeAtTheEnd) {
    const auto request = RequestForLarge(kLargeInput);
    CInputCopy copy(request.inputPath, request.outputPath);
    {
        const NoThreads none;
        ASSERT_THROW(std::thread([] {}).join(), std::system_error);
        copy.Begin();
    }
    EXPECT_EQ(Listing(), std::vector<std::string>{"in.pdf"});
    EXPECT_TRUE(ReadFile(copy.Finish().Path()) == ReadFile(request.inputPath));
}

TEST_F(InputCopyOnLinux, ADiskThatFillsUpMeanwhileIsToldAtTheEnd) {
    const auto request = LargeRequest();
    WriteFile(request.outputPath, "old");
    {
        const FileSizeLimit limit(kLargeInput / 2);
        CInputCopy copy(request.inputPath, request.outputPath);
        copy.Begin();
        const auto message = ExpectFailure(request, copy, StampError::kOutputUnwritable);
        EXPECT_NE(message.find("can't be written"), std::string::npos) << message;
    }
    EXPECT_EQ(ReadFile(request.outputPath), "old");
    EXPECT_EQ(Listing(), (std::vector<std::string>{"in.pdf", "out.pdf"}));
}

TEST_F(InputCopyOnLinux, AnOutputThatIsALinkToTheInputIsNeverWritten) {
    auto request = LargeRequest();
    std::filesystem::create_symlink(request.inputPath, Path("soft.pdf"));
    ExpectIsInput(request, "soft.pdf");
}

}  // namespace
