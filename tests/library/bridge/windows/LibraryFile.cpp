#include "LibraryFile.h"

#include <windows.h>

#include <cstring>
#include <optional>

#include "foundation/Text.h"

namespace {

// A file of the PE32+ format as it lies on the disk. Addresses are those of the loaded image.
class Image {
public:
    explicit Image(const std::string& file) : m_bytes(ReadFileToString(file)) {
        const auto* const dos = At<IMAGE_DOS_HEADER>(0);
        if (dos == nullptr || dos->e_magic != IMAGE_DOS_SIGNATURE) return;
        const auto* const headers = At<IMAGE_NT_HEADERS64>(dos->e_lfanew);
        if (headers == nullptr || headers->Signature != IMAGE_NT_SIGNATURE) return;
        m_headers = headers;
        m_sections = At<IMAGE_SECTION_HEADER>(dos->e_lfanew + sizeof(IMAGE_NT_HEADERS64));
    }

    // Null where the file has none.
    template <typename T>
    const T* Directory(int number) const {
        if (m_headers == nullptr) return nullptr;
        const DWORD address = m_headers->OptionalHeader.DataDirectory[number].VirtualAddress;
        return address == 0 ? nullptr : AtAddress<T>(address);
    }
    template <typename T>
    const T* AtAddress(DWORD address) const {
        for (int i = 0; i < m_headers->FileHeader.NumberOfSections; ++i) {
            const IMAGE_SECTION_HEADER& section = m_sections[i];
            if (address >= section.VirtualAddress &&
                address < section.VirtualAddress + section.SizeOfRawData) {
                return At<T>(address - section.VirtualAddress + section.PointerToRawData);
            }
        }
        return nullptr;
    }

private:
    template <typename T>
    const T* At(std::size_t offset) const {
        if (offset + sizeof(T) > m_bytes.size()) return nullptr;
        return reinterpret_cast<const T*>(m_bytes.data() + offset);
    }

    std::string m_bytes;
    const IMAGE_NT_HEADERS64* m_headers = nullptr;
    const IMAGE_SECTION_HEADER* m_sections = nullptr;
};

// The table of libraries ends with a row of zeros.
template <typename Use>
void ForEachLibrary(const Image& image, const Use& use) {
    const auto* row = image.Directory<IMAGE_IMPORT_DESCRIPTOR>(IMAGE_DIRECTORY_ENTRY_IMPORT);
    for (; row != nullptr && row->Name != 0; ++row) use(*row);
}

}  // namespace

std::vector<std::string> ExportedNames(const std::string& file) {
    const Image image(file);
    std::vector<std::string> names;
    const auto* const table = image.Directory<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT);
    if (table == nullptr) return names;
    const auto* const addresses = image.AtAddress<DWORD>(table->AddressOfNames);
    for (DWORD i = 0; i < table->NumberOfNames; ++i) {
        names.emplace_back(image.AtAddress<char>(addresses[i]));
    }
    return names;
}

std::vector<std::string> NeededLibraries(const std::string& file) {
    const Image image(file);
    std::vector<std::string> names;
    ForEachLibrary(image, [&](const IMAGE_IMPORT_DESCRIPTOR& library) {
        names.emplace_back(image.AtAddress<char>(library.Name));
    });
    return names;
}

std::vector<std::string> ImportedNames(const std::string& file) {
    const Image image(file);
    std::vector<std::string> names;
    ForEachLibrary(image, [&](const IMAGE_IMPORT_DESCRIPTOR& library) {
        const auto* entry = image.AtAddress<IMAGE_THUNK_DATA64>(library.OriginalFirstThunk);
        for (; entry->u1.AddressOfData != 0; ++entry) {
            if (IMAGE_SNAP_BY_ORDINAL64(entry->u1.Ordinal)) continue;
            const auto address = static_cast<DWORD>(entry->u1.AddressOfData);
            names.emplace_back(
                image.AtAddress<char>(address + offsetof(IMAGE_IMPORT_BY_NAME, Name)));
        }
    });
    return names;
}
