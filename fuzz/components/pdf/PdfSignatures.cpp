// The signatures of a PDF: whatever comes in, what is called sound lies within the file, leaves out
// exactly one string of digits, and counts the bytes behind it.

#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz/driver/Require.h"
#include "pdf/DocumentBytes.h"
#include "pdf/PdfSignatures.h"

namespace {

class CFile {
public:
    CFile() {
        const std::filesystem::path memory = "/dev/shm";
        const auto folder =
            std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
        m_path = (folder / ("fuzz-pdfsignatures-" + std::to_string(getpid()))).string();
    }
    ~CFile() { std::filesystem::remove(m_path); }
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;
    const std::string& Path() const { return m_path; }

private:
    std::string m_path;
};

void CheckSound(const std::string& path, const std::string& input, const PdfSignature& signature) {
    REQUIRE(signature.gapStart + 2 < signature.gapEnd);
    REQUIRE(signature.gapEnd <= signature.end && signature.end <= input.size());
    REQUIRE(input[signature.gapStart] == '<' && input[signature.gapEnd - 1] == '>');
    REQUIRE(!signature.contents.empty());
    REQUIRE(signature.after.bytes == input.size() - signature.end);
    REQUIRE(signature.after.compared || signature.after.altered.empty());
    CDocumentBytes document(path);
    std::string_view bytes;
    REQUIRE(document.Signed(signature, bytes));
    REQUIRE(bytes == input.substr(0, signature.gapStart) +
                         input.substr(signature.gapEnd, signature.end - signature.gapEnd));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const CFile file;
    const std::string input(reinterpret_cast<const char*>(data), size);
    std::ofstream(file.Path(), std::ios::binary) << input;
    PdfSignatures found;
    std::string message;
    const StampError error = ReadPdfSignatures(file.Path(), found, message);
    REQUIRE(message.empty() == (error == StampError::kNone));
    REQUIRE(error == StampError::kNone || found.list.empty());
    for (const PdfSignature& signature : found.list) {
        if (signature.problem == RangeProblem::kNone) CheckSound(file.Path(), input, signature);
    }
    return 0;
}
