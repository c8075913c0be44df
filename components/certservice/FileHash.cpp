#include "components/certservice/FileHash.h"

#include <cstdio>
#include <memory>
#include <vector>

#include "components/certservice/ServiceCodes.h"
#include "components/crypto/Handles.h"
#include "components/crypto/Signature.h"
#include "components/crypto/Sm3.h"

namespace {

constexpr size_t kPiece = 65'536;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// The two libraries behind one face.
class EvpHash {
public:
    explicit EvpHash(HashAlgorithm algorithm) : m_context(EVP_MD_CTX_new()) {
        m_good = m_context && EVP_DigestInit(m_context.get(), MessageDigest(algorithm)) == 1;
    }
    void Update(std::string_view data) {
        m_good = m_good && EVP_DigestUpdate(m_context.get(), data.data(), data.size()) == 1;
    }
    std::string Finish() {
        unsigned char out[EVP_MAX_MD_SIZE];
        unsigned int size = 0;
        if (!m_good || EVP_DigestFinal(m_context.get(), out, &size) != 1) return {};
        return std::string(reinterpret_cast<char*>(out), size);
    }

private:
    DigestContextHandle m_context;
    bool m_good = false;
};

template <typename Hash>
int HashStream(std::FILE* file, std::string_view prefix, Hash&& hash, std::string& result) {
    std::vector<char> piece(kPiece);
    hash.Update(prefix);
    while (const size_t count = std::fread(piece.data(), 1, piece.size(), file)) {
        hash.Update({piece.data(), count});
    }
    if (std::ferror(file)) return kServiceFileUnreadable;
    std::string finished = hash.Finish();
    if (finished.empty()) return kServiceAlgorithmUnknown;
    result = std::move(finished);
    return kServiceOk;
}

}  // namespace

int HashFileContent(HashAlgorithm algorithm, std::string_view prefix, const char* path,
                    std::string& hash) {
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path, "rb"));
    if (!file) return kServiceFileUnreadable;
    // Our pieces are read straight from the system, without a copy in between.
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    if (algorithm == HashAlgorithm::kSm3) return HashStream(file.get(), prefix, Sm3(), hash);
    return HashStream(file.get(), prefix, EvpHash(algorithm), hash);
}
