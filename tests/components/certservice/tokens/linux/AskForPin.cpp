// AskForPin.cpp - asks for a PIN as the certificate service does, and exits with 0 if it is
// "13%579", with 2 if the user cancelled, with 3 if nobody could be asked and with 1 otherwise.
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/pinentry/PinEntry.h"

int main() {
    std::string pin;
    switch (MakePinEntry()->Ask("合同章", 3, "PIN 码错误", pin)) {
        case kServiceOk: return pin == "13%579" ? 0 : 1;
        case kServicePinCancelled: return 2;
        case kServicePinUnavailable: return 3;
        default: return 1;
    }
}
