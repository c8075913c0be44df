// SealFlows.h - from an enumerated list to one selected seal and a delivered picture.
#pragma once

#include "seal/SealRecord.h"

// The stages that the local flows share. Results are 0 or a code; nothing is cleared on failure.

// Signs one byte with the certificate, so that its checks are made and the service asks for the
// PIN; tries a time stamp too if told to. Does nothing while g_stampPictureMode is 0.
// `logFailure`: a failed signature is logged.
int ProbeKey(const CertRecord& cert, bool withTimeStamp, bool logFailure);

// Makes the seal's type the mode, verifies a seal of a signature format, and asks for its status
// where that is due (`reqStatus` exactly 1, type 2). With an empty status field the result is 0
// and `proceed` false: nothing is selected or delivered.
int CheckSeal(const SealRecord& seal, int index, int reqStatus, bool& proceed);

// Makes certificate and seal the selection and hands the picture over, by length alone for a null
// `buffer`, without a look at the buffer's size otherwise.
void DeliverSeal(const CertRecord& cert, const SealRecord& seal, unsigned char* buffer,
                 int* length);

// The one certificate of the list with its one seal, or the scan by phone if it is that entry.
// -3045: the short way doesn't apply.
int SelectSingleCertFlow(unsigned char* buffer, int* length, bool withTimeStamp, int reqStatus);

// Asks the user, who can pick the scan by phone too. -3004: the dialog was closed, could not be
// shown or ended with nothing picked that the list still holds where it was shown.
int SelectByDialogFlow(unsigned char* buffer, int* length, bool withTimeStamp, int reqStatus);
