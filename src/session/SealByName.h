// SealByName.h - the selection where a personal seal is drawn from the certificate's name.
#pragma once

#include "session/PersonalSeal.h"

// `buffer` set and a picture cached: 0 with exactly `*length` bytes of it. Otherwise takes the
// selected certificate or asks for one, and draws its common name: 0 with the picture in
// g_sealInfoCache and its length in `*length`, and `buffer` left alone. The key isn't tried, and no
// seal is selected.
//
// Codes of ChooseCertificate, CAppOpt::GetKeyCert and GetCertificateInfo, and BuildPersonalSeal,
// which leave what was selected.
int GetEsealByCertCN(unsigned char* buffer, int* length, PersonalSealMode mode);
