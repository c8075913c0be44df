// TimeStampEngine.h - the interface of the time-stamp engine, the automation class that reaches a
// time-stamp authority.
#pragma once

// The class and its interface. On Windows the interface is dispatchable and has one method besides,
// at the seventh place of its table:
//
//     HRESULT CreateTS(BSTR request, BSTR *response);
inline constexpr char kTimeStampEngineClass[] = "{2D8C4E07-91BA-4F36-A4D2-7C16E05B3F9A}";
inline constexpr char kTimeStampEngineInterface[] = "{5A0E71C3-3B28-46D9-8E4F-12C9D6F47A30}";

// Elsewhere than on Windows the class is a shared library that exports its method by this name.
// Texts are Base64 in UTF-8: a request of RFC 3161 in, the response out, allocated with malloc and
// freed by the caller; null where there is no response. A negative value is a failed call.
extern "C" {

int CreateTS(const char* requestBase64, char** responseBase64);

}  // extern "C"
