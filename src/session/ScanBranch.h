// ScanBranch.h - what both local flows do with a certificate of the device for scans by phone.
#pragma once

#include <string>

// Logs in by a scan and delivers the picture of the seal that it brings, by length alone for a null
// `buffer`, without a look at the buffer's size otherwise. The picture becomes the only seal of the
// enumeration's first certificate, whichever it is. -3050, or the result of GetPZMSealPic, which
// can be 0 with `*length` as it was; after that nobody is busy. A failed login, or an exception
// that passes through, leaves that as it was.
int SelectByScan(const std::string& certId, unsigned char* buffer, int* length);
