#include "pdf/XrefSection.h"

#include <array>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>
#include <vector>

#include "pdf/PdfCursor.h"

namespace {

constexpr std::uint64_t kHighestNumber = 8'388'607;  // what readers must be able to hold
constexpr std::uint64_t kHighestGeneration = 65'535;
constexpr std::size_t kEntryLength = 20;

std::string_view EntryOf(const PdfEntries& entries, const char* key) {
    const auto found = entries.find(key);
    return found == entries.end() ? std::string_view() : found->second;
}

bool IsReference(std::string_view text) {
    CPdfCursor cursor(text, 0);
    int number = 0;
    return cursor.TakeInteger(number) && cursor.At() < text.size() && cursor.TakeBlanks() &&
           cursor.TakeInteger(number) && cursor.TakeBlanks() && cursor.Take("R");
}

bool ReadIntegers(std::string_view array, std::vector<std::uint64_t>& numbers) {
    CPdfCursor cursor(array, 0);
    if (!cursor.Take("[")) return false;
    for (cursor.SkipBlanks(); !cursor.Take("]"); cursor.SkipBlanks()) {
        if (!cursor.TakeInteger(numbers.emplace_back())) return false;
    }
    return true;
}

class CSectionReader {
public:
    CSectionReader(std::string_view document, std::uint64_t at)
        : m_document(document), m_cursor(document, at) {
        m_section.at = at;
    }

    std::optional<XrefSection> Read() {
        if (m_section.at >= m_document.size()) return {};
        const bool sound = m_cursor.Take("xref") ? ReadTable() : ReadStream();
        m_section.end = m_cursor.At();
        return sound ? std::optional(std::move(m_section)) : std::nullopt;
    }

private:
    bool ReadTable() {
        if (!m_cursor.TakeBlanks()) return false;
        while (true) {
            const std::uint64_t trailer = m_cursor.At();
            if (m_cursor.Take("trailer")) {
                m_section.trailer = trailer;
                m_cursor.SkipBlanks();
                PdfEntries entries;
                return m_cursor.TakeDictionary(entries) && !entries.contains("XRefStm") &&
                       ReadTrailer(entries);
            }
            if (!ReadRun()) return false;
        }
    }

    bool ReadRun() {
        std::uint64_t first = 0;
        std::uint64_t count = 0;
        if (!m_cursor.TakeInteger(first) || !m_cursor.Take(" ") || !m_cursor.TakeInteger(count) ||
            !m_cursor.TakeBlanks()) {
            return false;
        }
        for (std::uint64_t i = 0; i < count; ++i) {
            if (!ReadTableEntry(first + i)) return false;
        }
        return true;
    }

    bool ReadTableEntry(std::uint64_t number) {
        const std::size_t begin = m_cursor.At();
        XrefEntry entry;
        std::uint64_t generation = 0;
        if (!m_cursor.TakeDigits(10, entry.place) || !m_cursor.Take(" ") ||
            !m_cursor.TakeDigits(5, generation) || !m_cursor.Take(" ")) {
            return false;
        }
        if (m_cursor.Take("n")) {
            entry.kind = XrefEntry::Kind::kInUse;
        } else if (!m_cursor.Take("f")) {
            return false;
        }
        const bool ended = m_cursor.Take(" \n") || m_cursor.Take(" \r") || m_cursor.Take("\r\n");
        return ended && m_cursor.At() - begin == kEntryLength && Add(number, entry, generation);
    }

    bool Add(std::uint64_t number, XrefEntry entry, std::uint64_t generation) {
        if (number > kHighestNumber || generation > kHighestGeneration) return false;
        if (number == 0) return entry.kind == XrefEntry::Kind::kFree;
        entry.generation = static_cast<int>(generation);
        // This is how the list of free objects begins, at number 0: some readers move a run that
        // begins so with number 1.
        const bool isHead =
            number == 1 && entry.kind == XrefEntry::Kind::kFree && generation == kHighestGeneration;
        return !isHead && m_section.entries.try_emplace(static_cast<int>(number), entry).second;
    }

    bool ReadTrailer(const PdfEntries& entries) {
        const auto& numbers = m_section.entries;
        return ReadPdfInteger(EntryOf(entries, "Size"), m_section.size) &&
               ReadPdfInteger(EntryOf(entries, "Prev"), m_section.previous) &&
               IsReference(EntryOf(entries, "Root")) && m_section.previous < m_section.at &&
               m_section.size <= kHighestNumber + 1 &&
               (numbers.empty() ||
                static_cast<std::uint64_t>(numbers.rbegin()->first) < m_section.size);
    }

    bool ReadStream() {
        int generation = 0;
        PdfEntries entries;
        if (!m_cursor.TakeObjectHeader(m_section.stream, generation) || generation != 0) {
            return false;
        }
        m_cursor.SkipBlanks();
        if (!m_cursor.TakeDictionary(entries) || EntryOf(entries, "Type") != "/XRef") return false;
        m_cursor.SkipBlanks();
        std::uint64_t length = 0;
        if (!m_cursor.Take("stream") || !(m_cursor.Take("\r\n") || m_cursor.Take("\n")) ||
            !ReadPdfInteger(EntryOf(entries, "Length"), length)) {
            return false;
        }
        const std::uint64_t begin = m_cursor.At();
        if (length > m_document.size() - begin) return false;
        m_cursor = CPdfCursor(m_document, begin + length);
        m_cursor.SkipBlanks();
        return m_cursor.Take("endstream") && ReadStreamEntries(entries, begin, length) &&
               ReadTrailer(entries) &&
               static_cast<std::uint64_t>(m_section.stream) < m_section.size;
    }

    // Only the data is qpdf's to decode.
    std::string Decoded(const PdfEntries& entries, std::uint64_t begin, std::uint64_t length,
                        bool& sound) {
        QPDF scratch;
        scratch.emptyPDF();
        scratch.setSuppressWarnings(true);
        auto stream =
            QPDFObjectHandle::newStream(&scratch, std::string(m_document.substr(begin, length)));
        for (const char* key : {"Filter", "DecodeParms"}) {
            const std::string value(EntryOf(entries, key));
            if (value.empty()) continue;
            stream.getDict().replaceKey("/" + std::string(key), QPDFObjectHandle::parse(value));
        }
        const auto data = stream.getStreamData(qpdf_dl_generalized);
        sound = scratch.getWarnings().empty();
        return {reinterpret_cast<const char*>(data->getBuffer()), data->getSize()};
    }

    bool ReadStreamEntries(const PdfEntries& entries, std::uint64_t begin, std::uint64_t length) {
        std::vector<std::uint64_t> widths;
        std::vector<std::uint64_t> index;
        if (!ReadIntegers(EntryOf(entries, "W"), widths) || widths.size() != 3) return false;
        if (widths[0] > 1 || widths[1] == 0 || widths[1] > 8 || widths[2] > 4) return false;
        if (!entries.contains("Index")) {
            index = {0, 0};
            if (!ReadPdfInteger(EntryOf(entries, "Size"), index[1])) return false;
        } else if (!ReadIntegers(EntryOf(entries, "Index"), index) || index.size() % 2 != 0) {
            return false;
        }
        bool sound = false;
        m_data = Decoded(entries, begin, length, sound);
        m_next = 0;
        if (!sound) return false;
        for (std::size_t run = 0; run < index.size(); run += 2) {
            for (std::uint64_t i = 0; i < index[run + 1]; ++i) {
                if (!ReadStreamEntry(index[run] + i, widths)) return false;
            }
        }
        return m_next == m_data.size();
    }

    bool ReadStreamEntry(std::uint64_t number, const std::vector<std::uint64_t>& widths) {
        std::array<std::uint64_t, 3> fields = {1, 0, 0};
        for (std::size_t i = 0; i < 3; ++i) {
            if (widths[i] > m_data.size() - m_next) return false;
            if (widths[i] > 0) fields[i] = 0;
            for (std::uint64_t byte = 0; byte < widths[i]; ++byte) {
                fields[i] = fields[i] << 8 | static_cast<unsigned char>(m_data[m_next++]);
            }
        }
        if (fields[0] > 2) return false;
        const auto kind = static_cast<XrefEntry::Kind>(fields[0]);
        if (kind == XrefEntry::Kind::kInStream && fields[1] > kHighestNumber) return false;
        return Add(number, {kind, fields[1], 0}, fields[2]);
    }

    std::string_view m_document;
    CPdfCursor m_cursor;
    XrefSection m_section;
    std::string m_data;
    std::size_t m_next = 0;
};

}  // namespace

std::optional<XrefSection> ReadXrefSection(std::string_view document, std::uint64_t at) {
    return CSectionReader(document, at).Read();
}
