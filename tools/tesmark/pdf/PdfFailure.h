// PdfFailure.h - how the steps of a stamp report that they can't go on.
#pragma once

#include <stdexcept>
#include <string>

#include "pdf/PdfStamp.h"

// Never leaves what others call, which turns it into a result.
class CPdfFailure : public std::runtime_error {
public:
    CPdfFailure(StampError error, const std::string& sentence)
        : std::runtime_error(sentence), m_error(error) {}
    StampError Error() const { return m_error; }

private:
    StampError m_error;
};

// kDamaged, with qpdf's own sentence about `error`.
CPdfFailure UnreadablePdf(const std::exception& error);

// Does `step`, and tells what it threw as a code and a sentence; kNone and an empty one for
// nothing.
template <typename Step>
StampError ResultOf(const Step& step, std::string& message) {
    message.clear();
    try {
        step();
        return StampError::kNone;
    } catch (const CPdfFailure& failure) {
        message = failure.what();
        return failure.Error();
    } catch (const std::exception& error) {
        const CPdfFailure failure = UnreadablePdf(error);
        message = failure.what();
        return failure.Error();
    }
}
