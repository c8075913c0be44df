// PdfFailure.h - how the steps of a stamp report that they can't go on.
#pragma once

#include <stdexcept>
#include <string>

#include "pdf/PdfStamp.h"

// Never leaves StampPdf and MeasurePdfPage, which turn it into their result.
class CPdfFailure : public std::runtime_error {
public:
    CPdfFailure(StampError error, const std::string& sentence)
        : std::runtime_error(sentence), m_error(error) {}
    StampError Error() const { return m_error; }

private:
    StampError m_error;
};
