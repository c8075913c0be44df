#include "platform/TimeStampRequest.h"

const char* platform::TimeStampRequestPath() { return "/Users/ravik/Desktop/timestamp/req.dat"; }
