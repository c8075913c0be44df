#include "bench/processes/StampPeer.h"

#include <fcntl.h>
#include <openssl/evp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "components/crypto/Handles.h"
#include "components/crypto/Sm3.h"

namespace {

constexpr std::size_t kPiece = 64 << 10;

bool Copy(const char* input, int output) {
    const int file = open(input, O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (file < 0 || fstat(file, &status) != 0) return false;
    off_t left = status.st_size;
    while (left > 0) {
        const ssize_t copied =
            copy_file_range(file, nullptr, output, nullptr, static_cast<std::size_t>(left), 0);
        if (copied <= 0) break;
        left -= copied;
    }
    close(file);
    return left == 0;
}

template <typename Update>
bool ReadPieces(int file, Update update) {
    std::vector<char> piece(kPiece);
    ssize_t size = 0;
    for (off_t at = 0; (size = pread(file, piece.data(), kPiece, at)) > 0; at += size) {
        update(std::string_view(piece.data(), static_cast<std::size_t>(size)));
    }
    return size == 0;
}

bool HashWithGcrypt(int file) {
    Sm3 hash;
    return ReadPieces(file, [&](std::string_view piece) { hash.Update(piece); }) &&
           !hash.Finish().empty();
}

bool HashWithOpenSsl(int file) {
    const DigestContextHandle hash(EVP_MD_CTX_new());
    EVP_DigestInit(hash.get(), EVP_sha256());
    const bool read = ReadPieces(file, [&](std::string_view piece) {
        EVP_DigestUpdate(hash.get(), piece.data(), piece.size());
    });
    unsigned char result[EVP_MAX_MD_SIZE];
    return read && EVP_DigestFinal(hash.get(), result, nullptr) == 1;
}

}  // namespace

int RunStampPeer(char** arguments) {
    const std::string_view hash = arguments[0];
    const bool wait = std::string_view(arguments[1]) == "wait";
    const std::string part = std::string(arguments[3]) + ".part";
    const int file = open(part.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (file < 0 || !Copy(arguments[2], file)) return 1;
    if (!(hash == "sm3" ? HashWithGcrypt(file) : HashWithOpenSsl(file))) return 1;
    if (wait && fsync(file) != 0) return 1;
    close(file);
    return std::rename(part.c_str(), arguments[3]) == 0 ? 0 : 1;
}
