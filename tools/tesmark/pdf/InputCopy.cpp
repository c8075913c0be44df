#include "pdf/InputCopy.h"

#include "pdf/PdfFailure.h"

namespace {

std::optional<FileState> StateOf(const std::string& path) {
    FileState state;
    if (!ReadFileState(path, state)) return {};
    return state;
}

}  // namespace

CInputCopy::CInputCopy(std::string inputPath, const std::string& outputPath)
    : m_input(std::move(inputPath)),
      m_output(outputPath),
      m_before(StateOf(m_input)),
      m_file(outputPath),
      m_made(std::async(std::launch::deferred, [this] { return Make(); })) {}

CInputCopy::~CInputCopy() { m_file.Stop(); }

bool CInputCopy::OutputIsInput() const {
    const auto output = StateOf(m_output);
    return m_before && output && output->IsSameFile(*m_before);
}

void CInputCopy::Begin() {
    if (OutputIsInput()) return;
    // Where the system has no thread to give, the copy is made by Finish after all.
    m_made = std::async(std::launch::async | std::launch::deferred, [this] { return Make(); });
}

bool CInputCopy::Make() {
    return m_before && m_file.Create() && m_file.CopyFrom(m_input, m_before->size);
}

CWorkFile& CInputCopy::Finish() {
    const bool made = m_made.get();
    if (!m_before || StateOf(m_input) != m_before) {
        throw CPdfFailure(StampError::kInputChanged, "The input was changed while it was stamped.");
    }
    if (!made) throw CPdfFailure(StampError::kOutputUnwritable, m_file.Problem());
    return m_file;
}
