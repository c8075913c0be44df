#include "SealFile.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "TerminalText.h"
#include "TwoStep.h"
#include "include/TesmarkOpt.h"
#include "platform/closed/SealLibrary.h"

namespace {

// The header of an "ES" file, as far as it is read.
constexpr std::size_t kEsPictureLength = 12;
constexpr std::size_t kEsName = 86;
constexpr std::size_t kEsPicture = 328;
// What the library calls a seal without a name.
constexpr char8_t kUnnamed[] = u8"印章";

std::uint32_t LittleEndian32(std::string_view bytes) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;) number = number << 8 | static_cast<unsigned char>(bytes[i]);
    return number;
}

int ReadEs(SealFile& seal) {
    const std::string_view content = seal.content;
    if (!content.starts_with("ES") || content.size() < kEsPicture) return TESMARK_SEAL_FORMAT;
    const std::uint32_t length = LittleEndian32(content.substr(kEsPictureLength, 4));
    if (length > content.size() - kEsPicture) return TESMARK_SEAL_FORMAT;
    const std::string_view name = content.substr(kEsName, kEsPicture - kEsName);
    seal.name = Utf8FromGbk(name.substr(0, name.find('\0')));
    if (seal.name.empty()) seal.name = reinterpret_cast<const char*>(kUnnamed);
    seal.picture = content.substr(kEsPicture, length);
    return 0;
}

int ReadNational(SealFile& seal) {
    const auto* data = Bytes(seal.content);
    const int size = static_cast<int>(seal.content.size());
    int code = FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return TVK_Get_Pic_From_Eseal_Ex(data, size, out, outLen, &seal.widthMm,
                                             &seal.heightMm);
        },
        seal.picture);
    if (code) return code;
    code = FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return TVK_Get_SealName_From_Eseal(data, size, out, outLen);
        },
        seal.name);
    seal.name.resize(std::min(seal.name.size(), seal.name.find('\0')));
    return code;
}

}  // namespace

std::optional<SealFileKind> SealKindOf(const std::string& fileName) {
    const auto holds = [&](const char* text) { return fileName.find(text) != std::string::npos; };
    if (holds("GBESEAL")) return SealFileKind::kGb;
    if (holds("ESEAL")) return SealFileKind::kEs;
    if (holds("SEAL01")) return SealFileKind::kGm;
    if (holds("HLVQSEAL")) return SealFileKind::kPicture;
    return {};
}

const char* SealKindText(SealFileKind kind) {
    switch (kind) {
        case SealFileKind::kEs: return "ES";
        case SealFileKind::kGm: return "GM/T 0031";
        case SealFileKind::kGb: return "GB/T 38540";
        case SealFileKind::kPicture: return "picture";
    }
    return "";
}

SealFile ReadSealFile(const std::string& fileName, SealFileKind kind, std::string content) {
    SealFile seal;
    seal.fileName = fileName;
    seal.kind = kind;
    seal.content = std::move(content);
    if (kind == SealFileKind::kPicture) {
        seal.name = Utf8FromGbk(fileName);
        seal.picture = seal.content;
    } else if (kind == SealFileKind::kEs) {
        seal.readCode = ReadEs(seal);
    } else {
        seal.readCode = ReadNational(seal);
        seal.verifyCode = seal.readCode ? seal.readCode
                                        : TVK_Verify_SESeal(Bytes(seal.content),
                                                            static_cast<int>(seal.content.size()));
    }
    return seal;
}
