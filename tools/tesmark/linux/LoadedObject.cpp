#include "LoadedObject.h"

#include <elf.h>
#include <link.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string_view>

#include "platform/Files.h"
#include "platform/Module.h"

namespace {

struct Search {
    const std::string& fileName;
    std::optional<LoadedObject> found;
};

std::size_t Aligned(std::size_t size) { return (size + 3) & ~std::size_t{3}; }

std::string Hexadecimal(std::string_view bytes) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const char c : bytes) {
        text += kDigits[static_cast<unsigned char>(c) >> 4];
        text += kDigits[static_cast<unsigned char>(c) & 15];
    }
    return text;
}

// The notes of one segment: header, name, description, each padded to four bytes.
std::string BuildIdIn(std::string_view notes) {
    while (notes.size() >= sizeof(ElfW(Nhdr))) {
        ElfW(Nhdr) header;
        std::memcpy(&header, notes.data(), sizeof header);
        const std::size_t description = sizeof header + Aligned(header.n_namesz);
        const std::size_t end = description + Aligned(header.n_descsz);
        if (end > notes.size()) return {};
        const std::string_view name = notes.substr(sizeof header, header.n_namesz);
        if (header.n_type == NT_GNU_BUILD_ID && name == std::string_view("GNU", 4)) {
            return Hexadecimal(notes.substr(description, header.n_descsz));
        }
        notes.remove_prefix(end);
    }
    return {};
}

std::string BuildOf(const dl_phdr_info& info) {
    constexpr std::size_t kShown = 12;
    for (int i = 0; i < info.dlpi_phnum; ++i) {
        const auto& segment = info.dlpi_phdr[i];
        if (segment.p_type != PT_NOTE) continue;
        const auto* notes = reinterpret_cast<const char*>(info.dlpi_addr + segment.p_vaddr);
        const std::string id = BuildIdIn({notes, segment.p_memsz});
        if (!id.empty()) return "build " + id.substr(0, kShown);
    }
    return "no build id";
}

int Compare(dl_phdr_info* info, std::size_t, void* data) {
    auto& search = *static_cast<Search*>(data);
    const std::string path = info->dlpi_name;
    if (path.substr(path.rfind('/') + 1) != search.fileName) return 0;
    search.found = LoadedObject{path, BuildOf(*info)};
    return 1;
}

}  // namespace

std::optional<LoadedObject> FindLoaded(const std::string& fileName) {
    Search search{fileName, {}};
    dl_iterate_phdr(Compare, &search);
    return search.found;
}

std::string BesideLibrary(const std::string& fileName) {
    const auto library = FindLoaded(platform::ModuleFileName("TesmarkOpt_x64"));
    if (!library) return {};
    const std::string path = library->path.substr(0, library->path.rfind('/') + 1) + fileName;
    return platform::PathExists(path.c_str()) ? path : "";
}

std::string FindProgram(const std::string& name) {
    const char* variable = std::getenv("PATH");
    std::string_view folders = variable ? variable : "";
    while (!folders.empty()) {
        const std::string_view folder = folders.substr(0, folders.find(':'));
        folders.remove_prefix(std::min(folder.size() + 1, folders.size()));
        const std::string path = std::string(folder) + "/" + name;
        if (!folder.empty() && access(path.c_str(), X_OK) == 0) return path;
    }
    return {};
}
