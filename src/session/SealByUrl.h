// SealByUrl.h - the selection where seals come from the online seal service.
#pragma once

// Takes the selected certificate or asks for one, tries its key unless g_stampPictureMode is 0, and
// fetches its seal from the address `sWSURL`. The seal's file is verified where its mode has a
// format that can be, and its status asked for where mode and `reqStatus` (exactly 1) call for it.
//
// `buffer` null: 0 with the picture in g_sealInfoCache and its length in `*length`; where what came
// has no picture the cache is empty and `*length` as it was, which must be 0 then: any other is the
// string type's failure, StringFailure::kInvalidArgument. 0 with nothing selected and nothing
// cached: a status field is empty.
// `buffer` set: 0 with exactly `*length` bytes of the cache, a cache that is empty included;
// nothing is fetched, but the key is tried all the same.
//
// Codes of EnsureServiceReady, ChooseCertificate and SignData leave what was selected. -3041 (no
// address), codes of FetchSealFromService and of the seal library clear it.
int GetEsealByUrl(unsigned char* buffer, int* length, int reqStatus);
