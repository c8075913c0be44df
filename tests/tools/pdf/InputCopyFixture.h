// InputCopyFixture.h - what tests of copies of an input share.
#pragma once

#include <string>
#include <thread>

#include "pdf/InputCopy.h"
#include "tools/pdf/PdfFixture.h"

class InputCopyFixture : public PdfFixture {
protected:
    // Of one that is copied ahead.
    StampRequest LargeRequest() const { return RequestForLarge(kLargeInput); }

    // The file beside the output, once it is there; empty if it never comes.
    std::string AwaitFileBeside(const StampRequest& request) const {
        for (int i = 0; i < 1'000'000; ++i) {
            for (const std::string& name : Listing()) {
                if (Path(name).starts_with(request.outputPath + ".")) return Path(name);
            }
            std::this_thread::yield();
        }
        return {};
    }

    // Stamps with `copy`, expects `error`, the former output and nothing beside it but the input.
    std::string ExpectFailure(const StampRequest& request, CInputCopy& copy, StampError error) {
        bool asked = false;
        const auto result = StampPdf(
            request,
            [&](const SignedRanges&, std::string&) {
                asked = true;
                return 0;
            },
            copy);
        EXPECT_EQ(result.error, error) << result.message;
        EXPECT_FALSE(asked) << "a signature was made for nothing";
        return result.message;
    }

    // Begins the copy for an output of that name in the folder, which is the input: nothing is
    // written, and nothing is left beside it while the copy lives.
    void ExpectIsInput(StampRequest request, const char* name) {
        request.outputPath = Path(name);
        const auto listing = Listing();
        CInputCopy copy(request.inputPath, request.outputPath);
        copy.Begin();
        EXPECT_TRUE(copy.OutputIsInput());
        ExpectFailure(request, copy, StampError::kOutputIsInput);
        EXPECT_EQ(Listing(), listing) << "the copy still lives";
    }
};
