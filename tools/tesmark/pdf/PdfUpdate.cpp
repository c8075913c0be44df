#include "pdf/PdfUpdate.h"

#include <cstdio>
#include <random>
#include <vector>

#include "pdf/PdfFailure.h"

namespace {

constexpr std::uint64_t kLargestOffset = 9'999'999'999;
// Three numbers of ten digits with a blank in front of each.
constexpr std::size_t kByteRangeWidth = 3 * 11;

// Bytes of an entry in the cross-reference stream: type, offset, generation.
constexpr int kOffsetBytes = 5;
constexpr int kGenerationBytes = 2;

std::string Header(QPDFObjGen object) {
    return std::to_string(object.getObj()) + " " + std::to_string(object.getGen()) + " obj\n";
}

std::string NewIdentifier() {
    std::random_device random;
    std::string bytes;
    for (int i = 0; i < 16; ++i) bytes.push_back(static_cast<char>(random() & 0xFF));
    return QPDFObjectHandle::newString(bytes).unparseBinary();
}

// The first half stays for the file's whole life, the second changes with each update.
std::string Identifier(QPDFObjectHandle old) {
    const bool has = old.isArray() && old.getArrayNItems() == 2 && old.getArrayItem(0).isString();
    const std::string fresh = NewIdentifier();
    return "[" + (has ? old.getArrayItem(0).unparseBinary() : fresh) + " " + fresh + "]";
}

// Keys of the base's last section that tell of that section and not of the document.
bool TellsOfSection(const std::string& key) {
    for (const char* name : {"/Size", "/Prev", "/XRefStm", "/ID", "/Type", "/W", "/Index",
                             "/Length", "/Filter", "/DecodeParms"}) {
        if (key == name) return true;
    }
    return false;
}

void AppendBigEndian(std::string& bytes, std::uint64_t value, int count) {
    for (int i = count - 1; i >= 0; --i) bytes.push_back(static_cast<char>(value >> (8 * i)));
}

// Runs of consecutive numbers: first number and how many.
struct Run {
    int first;
    int count;
};

template <typename Offsets>
std::vector<Run> RunsOf(const Offsets& offsets) {
    std::vector<Run> runs;
    for (const auto& [object, offset] : offsets) {
        if (!runs.empty() && runs.back().first + runs.back().count == object.getObj()) {
            ++runs.back().count;
        } else {
            runs.push_back({object.getObj(), 1});
        }
    }
    return runs;
}

std::string ByteRange(std::uint64_t hole, std::uint64_t holeSize, std::uint64_t total) {
    std::string text = " " + std::to_string(hole) + " " + std::to_string(hole + holeSize) + " " +
                       std::to_string(total - hole - holeSize);
    text.resize(kByteRangeWidth, ' ');
    return text;
}

}  // namespace

std::string Reference(QPDFObjGen object) {
    return std::to_string(object.getObj()) + " " + std::to_string(object.getGen()) + " R";
}

CPdfUpdate::CPdfUpdate(CPdfBase& base) : m_base(base), m_nextNumber(base.NextNumber()) {}

QPDFObjGen CPdfUpdate::Reserve() { return QPDFObjGen(m_nextNumber++, 0); }

void CPdfUpdate::Set(QPDFObjGen object, const std::string& body) { m_bodies[object] = body; }

void CPdfUpdate::SetStream(QPDFObjGen object, const std::string& dictionary,
                           std::string_view data) {
    std::string body = "<< " + dictionary + " /Length " + std::to_string(data.size());
    body.append(" >>\nstream\n").append(data).append("\nendstream");
    m_bodies[object] = std::move(body);
}

void CPdfUpdate::SetSignature(QPDFObjGen object, const std::string& entries) {
    m_signature = object;
    m_signatureEntries = entries;
}

void CPdfUpdate::NoteOffset(QPDFObjGen object, std::uint64_t offset) {
    m_offsets[object] = offset - m_base.HeaderOffset();
}

std::string CPdfUpdate::Trailer(bool stream) const {
    auto old = m_base.Trailer();
    // A stream is an object itself, the last of the file.
    std::string text = "/Size " + std::to_string(m_nextNumber + (stream ? 1 : 0)) + " /Prev " +
                       std::to_string(m_base.StartXref()) + " /ID " + Identifier(old.getKey("/ID"));
    for (const auto& key : old.getKeys()) {
        if (TellsOfSection(key)) continue;
        text += " " + QPDFObjectHandle::newName(key).unparse() + " " + old.getKey(key).unparse();
    }
    return text;
}

std::string CPdfUpdate::XrefTable() const {
    std::string text = "xref\n";
    auto entry = m_offsets.begin();
    for (const Run& run : RunsOf(m_offsets)) {
        text += std::to_string(run.first) + " " + std::to_string(run.count) + "\n";
        for (int i = 0; i < run.count; ++i, ++entry) {
            char line[32];
            std::snprintf(line, sizeof line, "%010llu %05d n\r\n",
                          static_cast<unsigned long long>(entry->second), entry->first.getGen());
            text += line;
        }
    }
    return text + "trailer\n<< " + Trailer(false) + " >>\n";
}

std::string CPdfUpdate::XrefStream(std::uint64_t offset) {
    const QPDFObjGen self(m_nextNumber, 0);
    const std::string trailer = Trailer(true);
    NoteOffset(self, offset);
    std::string index;
    for (const Run& run : RunsOf(m_offsets)) {
        index += " " + std::to_string(run.first) + " " + std::to_string(run.count);
    }
    std::string entries;
    for (const auto& [object, at] : m_offsets) {
        entries.push_back(1);
        AppendBigEndian(entries, at, kOffsetBytes);
        AppendBigEndian(entries, static_cast<std::uint64_t>(object.getGen()), kGenerationBytes);
    }
    std::string text = Header(self) + "<< /Type /XRef /W [1 " + std::to_string(kOffsetBytes) + " " +
                       std::to_string(kGenerationBytes) + "] /Index [" + index + " ] " + trailer +
                       " /Length " + std::to_string(entries.size()) + " >>\nstream\n";
    return text.append(entries).append("\nendstream\nendobj\n");
}

PdfUpdateBytes CPdfUpdate::Build(std::size_t contentsSize) {
    PdfUpdateBytes update;
    std::string& before = update.before;
    if (!m_base.EndsInNewline()) before += "\n";
    for (const auto& [object, body] : m_bodies) {
        NoteOffset(object, m_base.FileSize() + before.size());
        before.append(Header(object)).append(body).append("\nendobj\n");
    }
    NoteOffset(m_signature, m_base.FileSize() + before.size());
    before += Header(m_signature) + "<< " + m_signatureEntries + " /ByteRange [0";
    const std::size_t rangeAt = before.size();
    before += std::string(kByteRangeWidth, ' ') + "] /Contents ";

    const std::uint64_t hole = m_base.FileSize() + before.size();
    const std::uint64_t holeSize = 2 * std::uint64_t{contentsSize} + 2;
    update.after = " >>\nendobj\n";
    const std::uint64_t xref = hole + holeSize + update.after.size();
    update.after += m_base.HasXrefStream() ? XrefStream(xref) : XrefTable();
    update.after += "startxref\n" + std::to_string(xref - m_base.HeaderOffset()) + "\n%%EOF\n";

    const std::uint64_t total = hole + holeSize + update.after.size();
    if (total > kLargestOffset) {
        throw CPdfFailure(StampError::kBadRequest, "The PDF is too large to be stamped.");
    }
    before.replace(rangeAt, kByteRangeWidth, ByteRange(hole, holeSize, total));
    return update;
}
