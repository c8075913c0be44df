// PdfFixture.h - PDFs to stamp, a key to sign with, and the independent programs that judge.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "pdf/PdfSignatures.h"
#include "pdf/PdfStamp.h"
#include "support/TemporaryFolder.h"

std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, std::string_view bytes);
// Runs a program of /usr/bin; its standard output and error, and its exit code in `status`.
std::string RunCommand(const std::vector<std::string>& words, int* status = nullptr);
// A file that is a device, and a place for a large file from which no blocks can be shared with one
// in `folder`.
std::string DevicePath();
std::string PathOfOtherBlocks(const std::string& folder);

// A PDF from the bodies of its objects, numbered from 1; object 1 is the catalog. `trailer` is
// added to /Size and /Root.
std::string PdfOf(const std::vector<std::string>& bodies, const std::string& trailer = "",
                  const std::string& header = "%PDF-1.7\n");
// One page of A4 with a line of text; `page` goes into its dictionary, `catalog` into that.
// Objects from 6 on are `more`.
std::string SimplePdf(const std::string& page = "", const std::string& catalog = "",
                      const std::vector<std::string>& more = {});

// Signs as an RSA signer does: a detached CMS by OpenSSL with a certificate made once.
int SignByCms(const SignedRanges& ranges, std::string& contents);

class PdfFixture : public testing::Test {
protected:
    std::string Path(const std::string& name) const { return m_temporary.Below(name); }
    // Writes `bytes` as in.pdf and gives a request for a seal of 42 mm at its first page.
    StampRequest RequestFor(std::string_view bytes) const;
    StampRequest RequestForFile(const std::string& path) const;
    // For a PDF with a stream of that many bytes, most of them a hole of the file system's.
    StampRequest RequestForLarge(std::size_t size) const;
    // Stamps by a real signature and expects no failure.
    StampResult Stamp(const StampRequest& request) const;
    // Expects that the output begins with the input's bytes, qpdf finds nothing wrong with it, and
    // pdfsig calls its last signature valid and its total document signed.
    void ExpectSound(const StampRequest& request) const;
    std::string PdfSig(const std::string& path) const;
    // The signatures of a PDF of these bytes; expects no failure.
    PdfSignatures Read(std::string_view bytes) const;
    // Names in the folder, sorted.
    std::vector<std::string> Listing() const;

    TemporaryFolder m_temporary;
    const std::string& m_folder = m_temporary.Path();
};

int Count(std::string_view text, std::string_view part);
// The PDF's bytes but for the value of its first /Contents in angle brackets, and these.
std::string WithoutContents(std::string pdf);
