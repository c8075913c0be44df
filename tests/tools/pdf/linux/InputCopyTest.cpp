#include "pdf/InputCopy.h"

#include <pthread.h>

#include <system_error>
#include <thread>

#include "tools/pdf/PdfFixture.h"

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

class InputCopyOnLinux : public PdfFixture {};

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

}  // namespace
