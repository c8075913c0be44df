#include "components/exports/ExportedNames.h"

#include <windows.h>

#include <algorithm>

std::vector<std::string> ExportedNames(const std::string& path) {
    const HMODULE module = LoadLibraryExA(path.c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES);
    if (!module) return {};
    const auto* base = reinterpret_cast<const char*>(module);
    const auto* start = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* head = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + start->e_lfanew);
    const DWORD place =
        head->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress;
    const auto* table = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + place);
    const auto* places = reinterpret_cast<const DWORD*>(base + table->AddressOfNames);
    std::vector<std::string> names;
    if (place != 0) {
        for (DWORD i = 0; i < table->NumberOfNames; ++i) names.emplace_back(base + places[i]);
    }
    FreeLibrary(module);
    std::sort(names.begin(), names.end());
    return names;
}
