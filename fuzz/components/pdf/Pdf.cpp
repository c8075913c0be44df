// PDFs: whatever comes in, the input stays as it is, a refusal leaves no output, and what was
// stamped begins with the input and has as many pages as before.

#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "components/drawing/Picture.h"
#include "fuzz/driver/Require.h"
#include "pdf/PdfPages.h"
#include "pdf/PdfStamp.h"

namespace {

// In memory where the system has such a folder: every stamp waits for its disk.
class CFolder {
public:
    CFolder() {
        const std::filesystem::path memory = "/dev/shm";
        const auto parent =
            std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
        m_path = parent / ("fuzz-pdf-" + std::to_string(getpid()));
        std::filesystem::create_directory(m_path);
    }
    ~CFolder() { std::filesystem::remove_all(m_path); }
    CFolder(const CFolder&) = delete;
    CFolder& operator=(const CFolder&) = delete;
    std::string File(const char* name) const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};

std::string Read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

StampRequest Request(const CFolder& folder) {
    static const std::string picture = EncodePng({1, 1, {255, 0, 0, 128}});
    StampRequest request;
    request.inputPath = folder.File("in.pdf");
    request.outputPath = folder.File("out.pdf");
    request.page = -1;
    request.widthMm = request.heightMm = 10;
    request.picture = picture;
    request.contentsSize = 8;
    return request;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const CFolder folder;
    const std::string input(reinterpret_cast<const char*>(data), size);
    const StampRequest request = Request(folder);
    std::ofstream(request.inputPath, std::ios::binary) << input;
    std::filesystem::remove(request.outputPath);
    const auto result = StampPdf(request, [](const SignedRanges&, std::string& contents) {
        contents = "x";
        return 0;
    });
    REQUIRE(Read(request.inputPath) == input);
    if (result.error != StampError::kNone) {
        REQUIRE(!result.message.empty());
        REQUIRE(!std::filesystem::exists(request.outputPath));
        return 0;
    }
    REQUIRE(Read(request.outputPath).starts_with(input));
    PdfPageSize measured;
    std::string message;
    REQUIRE(MeasurePdfPage(request.outputPath, -1, measured, message) == StampError::kNone);
    REQUIRE(measured.pageCount == result.pageCount);
    return 0;
}
