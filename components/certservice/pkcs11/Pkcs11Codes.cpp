#include "components/certservice/pkcs11/Pkcs11Codes.h"

#include "components/certservice/ServiceCodes.h"

int ServiceCodeOf(CK_RV result) {
    switch (result) {
        case CKR_OK:
        case CKR_USER_ALREADY_LOGGED_IN: return kServiceOk;
        case CKR_PIN_INCORRECT:
        case CKR_PIN_INVALID:
        case CKR_PIN_LEN_RANGE: return kServicePinWrong;
        case CKR_PIN_LOCKED: return kServiceKeyLocked;
        case CKR_DEVICE_REMOVED:
        case CKR_TOKEN_NOT_PRESENT:
        case CKR_SESSION_HANDLE_INVALID:
        case CKR_SESSION_CLOSED:
        case CKR_SLOT_ID_INVALID: return kServiceKeyRemoved;
        case CKR_USER_NOT_LOGGED_IN: return kServicePinUnavailable;
        case CKR_FUNCTION_CANCELED: return kServicePinCancelled;
        case CKR_MECHANISM_INVALID:
        case CKR_MECHANISM_PARAM_INVALID:
        case CKR_KEY_TYPE_INCONSISTENT: return kServiceAlgorithmUnknown;
        default: return kServiceTokenFailure;
    }
}
