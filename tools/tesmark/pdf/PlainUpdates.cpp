#include "pdf/PlainUpdates.h"

#include <algorithm>
#include <set>
#include <vector>

#include "pdf/LinearizedStart.h"
#include "pdf/PdfCursor.h"
#include "pdf/PlainTail.h"
#include "pdf/StrayObjects.h"
#include "pdf/XrefSection.h"

namespace {

using Table = std::map<QPDFObjGen, QPDFXRefEntry>;
using Kind = XrefEntry::Kind;

// Each has its objects gone through.
constexpr std::size_t kMostSections = 1'000;

bool IsSame(const QPDFXRefEntry& one, const QPDFXRefEntry& other) {
    if (one.getType() != other.getType()) return false;
    if (one.getType() == 1) return one.getOffset() == other.getOffset();
    return one.getType() == 2 && one.getObjStreamNumber() == other.getObjStreamNumber() &&
           one.getObjStreamIndex() == other.getObjStreamIndex();
}

QPDFXRefEntry AsQpdfHasIt(const XrefEntry& entry) {
    return entry.kind == Kind::kInUse
               ? QPDFXRefEntry(static_cast<qpdf_offset_t>(entry.place))
               : QPDFXRefEntry(static_cast<int>(entry.place), entry.generation);
}

QPDFObjGen NumberOf(int number, const XrefEntry& entry) {
    return QPDFObjGen(number, entry.kind == Kind::kInUse ? entry.generation : 0);
}

bool Holds(const Table& table, QPDFObjGen number, const QPDFXRefEntry& entry) {
    const auto found = table.find(number);
    return found != table.end() && IsSame(found->second, entry);
}

class CUpdates {
public:
    CUpdates(CPdfBase& base, std::uint64_t end, const Table& before)
        : m_base(base),
          m_document(base.File().substr(base.HeaderOffset())),
          m_end(end - base.HeaderOffset()),
          m_before(before),
          m_now(base.Objects()) {}

    bool ArePlain() {
        if (!ReadSections()) return false;
        MergeEntries();
        return QpdfFoundTheSame() && StreamsHoldWhatTheyHeld() &&
               std::all_of(m_sections.begin(), m_sections.end(),
                           [this](const XrefSection& section) { return IsPlain(section); }) &&
               StandOnlyAt(m_document, m_end, m_known);
    }

private:
    // Newest first.
    bool ReadSections() {
        const auto last = PlainStartXref(m_document.substr(0, m_end));
        if (!last || *last >= m_end || m_base.StartXref() >= m_document.size()) return false;
        std::uint64_t at = m_base.StartXref();
        std::uint64_t next = m_document.size();
        while (at >= m_end) {
            auto section = ReadXrefSection(m_document, at);
            if (!section || section->end > next || m_sections.size() >= kMostSections) return false;
            next = at;
            at = section->previous;
            m_sections.push_back(std::move(*section));
        }
        return at == *last;
    }

    void MergeEntries() {
        for (const XrefSection& section : m_sections) {
            m_merged.insert(section.entries.begin(), section.entries.end());
        }
    }

    bool QpdfFoundTheSame() const {
        for (const auto& [number, entry] : m_now) {
            if (!m_sections.empty() &&
                static_cast<std::uint64_t>(number.getObj()) >= m_sections.front().size) {
                return false;
            }
            const auto told = m_merged.find(number.getObj());
            if (told != m_merged.end() && told->second.kind == Kind::kFree) return false;
            const bool isTold =
                told != m_merged.end() && NumberOf(told->first, told->second) == number;
            if (isTold ? !IsSame(AsQpdfHasIt(told->second), entry)
                       : !Holds(m_before, number, entry)) {
                return false;
            }
        }
        return std::all_of(m_merged.begin(), m_merged.end(),
                           [this](const auto& told) {
                               return told.second.kind == Kind::kFree ||
                                      m_now.contains(NumberOf(told.first, told.second));
                           }) &&
               std::all_of(m_before.begin(), m_before.end(), [this](const auto& old) {
                   return m_merged.contains(old.first.getObj()) || m_now.contains(old.first);
               });
    }

    // A stream of objects that is written again would hold other objects under entries that nobody
    // has touched.
    bool StreamsHoldWhatTheyHeld() const {
        return std::none_of(m_before.begin(), m_before.end(), [this](const auto& old) {
            return old.second.getType() == 2 && m_merged.contains(old.second.getObjStreamNumber());
        });
    }

    // Where the bytes begin that came with the section.
    std::uint64_t BeginOf(const XrefSection& section) const {
        const auto next = static_cast<std::size_t>(&section - m_sections.data()) + 1;
        return next < m_sections.size() ? m_sections[next].at : m_end;
    }

    bool IsPlain(const XrefSection& section) {
        if (section.stream != 0) {
            NoteHeader(section.at, section.stream, 0);
        } else {
            m_known.insert(section.trailer);
        }
        std::set<int> held;
        for (const auto& [number, entry] : section.entries) {
            if (entry.kind == Kind::kInUse && !ReadObject(section, number, entry, held)) {
                return false;
            }
        }
        return std::all_of(section.entries.begin(), section.entries.end(), [&](const auto& told) {
            return told.second.kind != Kind::kInStream || held.contains(told.first);
        });
    }

    // The place behind "1 0 obj", or 0 if that doesn't stand there as a word of its own.
    std::uint64_t BehindHeader(std::uint64_t at, int number, int generation) const {
        if (at == 0 || at >= m_document.size() || !IsPdfBlank(m_document[at - 1])) return 0;
        CPdfCursor cursor(m_document, at);
        int foundNumber = 0;
        int foundGeneration = 0;
        const bool isHeader = cursor.TakeObjectHeader(foundNumber, foundGeneration);
        return isHeader && foundNumber == number && foundGeneration == generation ? cursor.At() : 0;
    }

    std::uint64_t NoteHeader(std::uint64_t at, int number, int generation) {
        const std::uint64_t behind = BehindHeader(at, number, generation);
        if (behind != 0) m_known.insert(behind - 3);
        return behind;
    }

    bool ReadObject(const XrefSection& section, int number, const XrefEntry& entry,
                    std::set<int>& held) {
        if (entry.place > section.at) return false;
        if (entry.place < BeginOf(section)) {
            return BehindHeader(entry.place, number, entry.generation) != 0;
        }
        const std::uint64_t behind = NoteHeader(entry.place, number, entry.generation);
        if (behind == 0) return false;
        PdfEntries dictionary;
        if (!ReadValue(behind, dictionary)) return false;
        const std::string type = ReadPdfName(dictionary["Type"]);
        // Who searches takes such a stream for a section.
        if (type == "XRef") return number == section.stream && entry.place == section.at;
        return type != "ObjStm" || ReadObjectStream(section, number, entry, held);
    }

    // What begins there has to be sound; `dictionary` gets it if it is one. Objects lie beside each
    // other: those that lie in one another would be gone through again and again.
    bool ReadValue(std::uint64_t at, PdfEntries& dictionary) {
        CPdfCursor cursor(m_document, at);
        cursor.SkipBlanksAndComments();
        CPdfCursor value = cursor;
        if (!cursor.TakeDictionary(dictionary)) {
            dictionary.clear();
            cursor = value;
            if (!cursor.TakeValue()) return false;
        }
        m_goneThrough += cursor.At() - at;
        return m_goneThrough <= m_document.size() - m_end;
    }

    // Each object that a stream of objects holds is one that the section names, at its index.
    bool ReadObjectStream(const XrefSection& section, int stream, const XrefEntry& entry,
                          std::set<int>& held) {
        const QPDFObjGen number(stream, entry.generation);
        if (entry.generation != 0 || !Holds(m_now, number, AsQpdfHasIt(entry))) return false;
        auto object = m_base.Object(number);
        if (!object.isStream()) return false;
        auto count = object.getDict().getKey("/N");
        auto first = object.getDict().getKey("/First");
        if (!count.isInteger() || !first.isInteger()) return false;
        const auto data = object.getStreamData(qpdf_dl_generalized);
        const auto length = static_cast<std::uint64_t>(first.getIntValue());
        if (length > data->getSize()) return false;
        const std::string_view numbers(reinterpret_cast<const char*>(data->getBuffer()), length);
        return HoldsNamed(section, stream, numbers, count.getIntValue(), held);
    }

    static bool HoldsNamed(const XrefSection& section, int stream, std::string_view numbers,
                           long long count, std::set<int>& held) {
        CPdfCursor cursor(numbers, 0);
        for (long long i = 0; i < count; ++i) {
            int number = 0;
            std::uint64_t offset = 0;
            cursor.SkipBlanks();
            if (!cursor.TakeInteger(number) || !cursor.TakeBlanks() ||
                !cursor.TakeInteger(offset)) {
                return false;
            }
            const auto told = section.entries.find(number);
            if (told == section.entries.end() || told->second.kind != Kind::kInStream ||
                told->second.place != static_cast<std::uint64_t>(stream) ||
                told->second.generation != i || !held.insert(number).second) {
                return false;
            }
        }
        return true;
    }

    CPdfBase& m_base;
    const std::string_view m_document;  // from "%PDF-" on
    const std::uint64_t m_end;
    const Table& m_before;
    const Table m_now;
    std::vector<XrefSection> m_sections;
    std::map<int, XrefEntry> m_merged;
    std::set<std::uint64_t> m_known;  // places of "obj" and "trailer"
    std::uint64_t m_goneThrough = 0;  // bytes
};

}  // namespace

bool AreUpdatesPlain(CPdfBase& base, std::uint64_t end,
                     const std::map<QPDFObjGen, QPDFXRefEntry>& before) {
    if (!base.ReadsPlainly() || end <= base.HeaderOffset()) return false;
    const LinearizedStart start = ReadLinearizedStart(base.File().substr(base.HeaderOffset()));
    return start.plain && start.length != base.FileSize() &&
           start.length != base.FileSize() - base.HeaderOffset() &&
           CUpdates(base, end, before).ArePlain();
}
