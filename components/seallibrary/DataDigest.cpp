#include "components/seallibrary/DataDigest.h"

#include <cstdio>
#include <memory>
#include <vector>

#include "components/crypto/Handles.h"
#include "components/crypto/Signature.h"
#include "components/crypto/Sm3.h"

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, CloseFile>;

// Hands the file to `take` in pieces. False if it can't be opened or read to its end.
template <typename Take>
bool ForEachPiece(const std::string& path, Take take) {
    constexpr std::size_t kPieceSize = 256 * 1024;
    const FileHandle file(std::fopen(path.c_str(), "rb"));
    if (!file) return false;
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    std::vector<char> piece(kPieceSize);
    while (const std::size_t length = std::fread(piece.data(), 1, piece.size(), file.get()))
        take(std::string_view(piece.data(), length));
    return std::ferror(file.get()) == 0;
}

int Sm3OfFile(const std::string& path, std::string& digest) {
    Sm3 hash;
    if (!ForEachPiece(path, [&](std::string_view piece) { hash.Update(piece); }))
        return kSealFileUnreadable;
    digest = hash.Finish();
    return kSealOk;
}

int OpenSslDigestOfFile(HashAlgorithm algorithm, const std::string& path, std::string& digest) {
    const DigestContextHandle context(EVP_MD_CTX_new());
    if (!context || EVP_DigestInit_ex(context.get(), MessageDigest(algorithm), nullptr) != 1)
        return kSealNotSupported;
    const bool read = ForEachPiece(path, [&](std::string_view piece) {
        EVP_DigestUpdate(context.get(), piece.data(), piece.size());
    });
    if (!read) return kSealFileUnreadable;
    digest.resize(DigestSize(algorithm));
    auto* out = reinterpret_cast<unsigned char*>(digest.data());
    return EVP_DigestFinal_ex(context.get(), out, nullptr) == 1 ? kSealOk : kSealNotSupported;
}

}  // namespace

DataDigest DigestOfData(std::string_view data) {
    return [data](HashAlgorithm algorithm, std::string& digest) {
        digest = Digest(algorithm, data);
        return digest.empty() ? kSealNotSupported : kSealOk;
    };
}

DataDigest DigestOfFile(const std::string& path) {
    return [path](HashAlgorithm algorithm, std::string& digest) {
        return algorithm == HashAlgorithm::kSm3 ? Sm3OfFile(path, digest)
                                                : OpenSslDigestOfFile(algorithm, path, digest);
    };
}
