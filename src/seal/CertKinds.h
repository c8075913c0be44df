// CertKinds.h - certificates of other places than a key, told by their identifier or their label.
#pragma once

#include <string_view>

// The label that the entry of the scan by phone gets in lists.
constexpr std::string_view kScanLabel = "扫码签章";

// A certificate of the device for scans by phone.
inline bool IsScanDevice(std::string_view certId) {
    return certId.find("hlvqDev") != std::string_view::npos;
}

// The one entry of that device that stands for a scan, before anyone has scanned.
inline bool IsScanPlaceholder(std::string_view certId) {
    return certId.find("hlvqDev000000000000000000") != std::string_view::npos;
}

// A certificate of the cloud service, whose identifier in use is known only after a login.
inline bool IsCloudLabel(std::string_view label) {
    return label.find("翠枫证书") != std::string_view::npos;
}
