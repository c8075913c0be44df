#include "session/OnlineSeal.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

#include "TesmarkOpt.h"
#include "dialogs/DialogFrame.h"
#include "dialogs/OnlineSealSelect.h"
#include "foundation/Text.h"
#include "host/ModuleState.h"
#include "seal/SealReaders.h"
#include "service/HttpPost.h"
#include "service/Messages.h"

namespace {

constexpr int kDistinguishedName = 33;
constexpr int kSerialNumber = 2;
constexpr int kCertCapacity = 4096;
constexpr int kDetailCapacity = 256;
// Of more entries than these only as many are made as an answer of its length could fill: one needs
// no end tag.
constexpr std::size_t kPromisedEntries = 65'536;
constexpr std::size_t kShortestEntry = std::string_view("<SEALINFO>").size();

struct CertDetails {
    std::string dn;
    std::string sn;
};

struct ExportedCert {
    unsigned char bytes[kCertCapacity] = {};
    int length = kCertCapacity;
};

// Up to the first zero byte of a room that may be filled to its end.
int ReadDetail(const ExportedCert& cert, int field, std::string& detail) {
    char text[kDetailCapacity + 1] = {};
    int length = kDetailCapacity;
    const int result =
        g_appOpt.kvl->SOF_GetCertInfo(g_appOpt.context, cert.bytes, cert.length, field,
                                      reinterpret_cast<unsigned char*>(text), &length);
    if (result == 0) detail = text;
    return result;
}

// A call of the host's while the service asks for a PIN can have ended the service.
int ReadDetails(const std::string& certId, CertDetails& details) {
    if (const int code = g_appOpt.CheckKVLOKStatus()) return code;
    ExportedCert cert;
    const int result = g_appOpt.kvl->SOF_ExportUserCert(g_appOpt.context, certId.c_str(),
                                                        cert.bytes, &cert.length);
    if (result != 0) return result;
    cert.length = std::clamp(cert.length, 0, kCertCapacity);
    if (const int code = ReadDetail(cert, kDistinguishedName, details.dn)) return code;
    return ReadDetail(cert, kSerialNumber, details.sn);
}

int Exchange(const std::string& url, const std::string& request, std::string& answer) {
    return request.empty() ? TESMARK_FAILED : HttpPost(url, request, answer);
}

// `count` is what the service says, also where that is more than its answer could hold: then the
// list holds fewer entries, but never fewer than the answer has elements to fill them.
int ReadSealList(const std::string& answer, std::vector<OnlineSealEntry>& list,
                 std::uint32_t& count) {
    count = 0;
    if (const int code = ParseSealList(answer, {}, &count)) return code;
    if (count == 0) return TESMARK_NO_ONLINE_SEAL;
    list.resize(
        std::min<std::size_t>(count, std::max(answer.size() / kShortestEntry, kPromisedEntries)));
    return ParseSealList(answer, list, &count);
}

int AskUser(const std::vector<OnlineSealEntry>& list, std::string& sealNum) {
    g_onlineSealNames.clear();
    for (const OnlineSealEntry& entry : list) {
        g_onlineSealNames.emplace_back(entry.sealName, entry.sealNum);
    }
    const int end = ShowOnlineSealSelect();
    if (end == kDialogCancelled) return TESMARK_ONLINE_CANCELLED;
    if (end == kDialogConfirmed) sealNum = g_onlineSealPick;
    return 0;
}

int PickSeal(const std::string& url, const CertDetails& cert, std::string& sealNum) {
    std::string answer;
    if (const int code = Exchange(url, MakeSealListRequest(cert.sn, cert.dn), answer)) return code;
    std::vector<OnlineSealEntry> list;
    std::uint32_t count = 0;
    if (const int code = ReadSealList(answer, list, count)) return code;
    if (count != 1) return AskUser(list, sealNum);
    sealNum = list.front().sealNum;
    return 0;
}

int FetchFile(const std::string& url, const CertDetails& cert, const std::string& sealNum,
              std::string& file) {
    std::string answer;
    const std::string request = MakeAppointedSealRequest(sealNum, cert.dn, cert.sn);
    if (const int code = Exchange(url, request, answer)) return code;
    std::string base64;
    if (const int code = ParseAppointedSeal(answer, base64)) return code;
    if (base64.empty()) return TESMARK_FAILED;
    file = Base64Decode(base64);
    return 0;
}

// The reader that understands the file decides the mode.
void ReadPicture(const std::string& file, CBuffer& picture, int* pictureLen) {
    if (ReadSealPicEs(file, picture) == 0) {
        g_esealMode = SealTypeDefault;
    } else if (ReadSealPicV3(file, picture, &g_sealPicWidth, &g_sealPicHeight) == 0) {
        g_esealMode = SealTypeGM;
    } else {
        return;
    }
    *pictureLen = picture.Length();
}

}  // namespace

int FetchSealFromService(const std::string& url, const std::string& certId, CBuffer& picture,
                         int* pictureLen) {
    g_sealPicWidth = 0;
    g_sealPicHeight = 0;
    CertDetails cert;
    if (const int code = ReadDetails(certId, cert)) return code;
    std::string sealNum;
    if (const int code = PickSeal(url, cert, sealNum)) return code;
    std::string file;
    if (const int code = FetchFile(url, cert, sealNum, file)) return code;
    g_selectedSeal.Assign(file);
    ReadPicture(file, picture, pictureLen);
    return 0;
}
