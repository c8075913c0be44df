#include "platform/TimeStampRequest.h"

const char* platform::TimeStampRequestPath() {
    return "C:\\Users\\ravik\\Desktop\\timestamp\\req.dat";
}
