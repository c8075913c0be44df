#include "seal/KeyLists.h"

#include <algorithm>
#include <array>

#include "seal/CertKinds.h"

namespace {

constexpr std::array<std::string_view, 4> kSealFileNames = {"ESEAL", "SEAL01", "GBESEAL",
                                                            "HLVQSEAL"};

// Names the entry of the scan and sets its mode; false for one that isn't listed. The mode of a
// scan device other than the placeholder stays that of the entry before: hosts know it so.
bool Classify(ListedCert& entry, int& scanMode) {
    if (IsScanDevice(entry.certId)) {
        if (!IsScanPlaceholder(entry.certId)) return true;
        entry.label = kScanLabel;
        scanMode = 1;
        return true;
    }
    if (IsCloudLabel(entry.label)) return false;
    scanMode = 0;
    return true;
}

CertRecord RecordOf(const ListedCert& entry, int scanMode) {
    CertRecord record;
    entry.certId.copy(record.certId, sizeof record.certId);
    entry.label.copy(record.certName, sizeof record.certName);
    record.scanMode = scanMode;
    return record;
}

bool IsSealFile(std::string_view name) {
    return std::any_of(kSealFileNames.begin(), kSealFileNames.end(), [&](std::string_view part) {
        return name.find(part) != std::string_view::npos;
    });
}

}  // namespace

bool NextListedCert(std::string_view list, std::size_t& position, ListedCert& entry) {
    const std::size_t bars = list.find(kBehindLabel, position);
    const std::size_t end = list.find(kBehindEntry, position);
    if (bars == std::string_view::npos || end == std::string_view::npos) return false;
    entry.label = list.substr(position, bars - position);
    const std::size_t certId = bars + kBehindLabel.size();
    entry.certId = end > certId ? list.substr(certId, end - certId) : std::string_view();
    position = end + kBehindEntry.size();
    return true;
}

std::vector<CertRecord> ReadUserList(std::string_view list) {
    std::vector<CertRecord> certs;
    int scanMode = 0;
    ListedCert entry;
    for (std::size_t position = 0; NextListedCert(list, position, entry);) {
        if (Classify(entry, scanMode)) certs.push_back(RecordOf(entry, scanMode));
    }
    return certs;
}

bool ReadFileList(std::string_view list, std::vector<std::string>& names) {
    std::size_t end = list.find(kBehindEntry);
    if (end == std::string_view::npos) return false;
    for (std::size_t start = 0; end != std::string_view::npos;
         end = list.find(kBehindEntry, start)) {
        const std::string_view name = list.substr(start, end - start);
        if (IsSealFile(name)) names.emplace_back(name);
        start = end + kBehindEntry.size();
    }
    return true;
}
