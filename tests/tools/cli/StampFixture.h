// StampFixture.h - stamps of the example and of a large document, over a fixture of the program.
#pragma once

#include <string>
#include <vector>

#include "tools/cli/CliFixture.h"

template <typename Base>
class StampFixture : public Base {
protected:
    std::string m_out = this->InPrefix("out.pdf");

    ProgramOutcome Stamp(std::vector<std::string> more) const {
        std::vector<std::string> arguments = {"stamp", kContract, this->m_out};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return this->Tesmark(arguments);
    }
    std::string PdfSig() const {
        return RunProgram({"/usr/bin/pdfsig", "-nocert", this->m_out}).out;
    }
    bool NothingWritten() const { return this->FilesBeginningWith("out.pdf").empty(); }
};

// A document that is copied while the seal is chosen and the key opened.
template <typename Base>
class LargeStampFixture : public StampFixture<Base> {
protected:
    std::string m_large = this->InPrefix("large.pdf");

    LargeStampFixture() {
        this->MakeKey("rsa", "rsa2048");
        this->MakeSeal("rsa", "es", "rsa");
        // The contract, a comment of 9 MB, and its end again.
        const std::string contract = this->FileContent(kContract);
        this->WriteFile(m_large, contract + "\n%" + std::string(9'000'000, 'x') + "\n" +
                                     contract.substr(contract.rfind("startxref")));
    }

    ProgramOutcome StampLarge(std::vector<std::string> more) const {
        more.insert(more.begin(), {"stamp", m_large, this->m_out});
        return this->Tesmark(more);
    }
    // The output is as it was before, and nothing is beside it.
    void ExpectOldOutput() const {
        EXPECT_EQ(this->FileContent(this->m_out), "what was there before");
        EXPECT_EQ(this->FilesBeginningWith("out.pdf").size(), 1u);
    }
    void WriteOldOutput() const { this->WriteFile(this->m_out, "what was there before"); }
};
