#include "KeyDevices.h"

#include <exception>
#include <utility>

#include "components/certservice/KeyFolder.h"
#include "components/certservice/Places.h"
#include "components/certservice/ScanDevice.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/pkcs11/Pkcs11Device.h"

std::vector<std::unique_ptr<KeyDevice>> OpenKeyDevices() {
    std::vector<std::unique_ptr<KeyDevice>> devices;
    devices.push_back(std::make_unique<KeyFolder>(KeyFolderPath()));
    for (auto& device : OpenPkcs11Devices()) devices.push_back(std::move(device));
    devices.push_back(std::make_unique<ScanDevice>(KeyFolderPath()));
    return devices;
}

int TriesLeft(const std::string& certId) {
    for (const auto& device : OpenKeyDevices()) {
        if (device->Owns(certId)) return device->RetriesLeft(certId);
    }
    return -1;
}

std::string TriesText(int tries) {
    if (tries < 0) return "";
    if (tries == 0) return "locked";
    return tries == 1 ? "1 try left" : std::to_string(tries) + " tries left";
}

void TellTriesLeft(const std::string& certId, Failure& failure) {
    if (failure.code != kServicePinWrong) return;
    try {
        const std::string tries = TriesText(TriesLeft(certId));
        if (tries.empty()) return;
        failure.hint = "  " + tries + (failure.hint.empty() ? "" : "\n") + failure.hint;
    } catch (const std::exception&) {
        // The wrong PIN is what matters, and is told without them.
    }
}
