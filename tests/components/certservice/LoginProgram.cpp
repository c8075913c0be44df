// Tries a PIN as a process of its own: FOLDER CERTID PIN. Ends with 1 if it is wrong, with 0 if it
// is right and with 2 otherwise.
#include "components/certservice/KeyFolder.h"
#include "components/certservice/ServiceCodes.h"

int main(int count, char** arguments) {
    if (count != 4) return 2;
    KeyFolder keys(arguments[1]);
    switch (keys.Login(arguments[2], arguments[3])) {
        case kServiceOk: return 0;
        case kServicePinWrong: return 1;
        default: return 2;
    }
}
