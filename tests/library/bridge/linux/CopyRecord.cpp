#include "TimeStampTest.h"

std::string TimeStampTest::CopyRecord(const std::string& length) {
    return "[WriteContent2File]:filename,/Users/ravik/Desktop/timestamp/req.dat;outputlen," +
           length;
}
