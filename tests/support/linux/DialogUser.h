// DialogUser.h - a program in the place of those that show dialogs: its user does what a test
// wants, in every dialog the same.
#pragma once

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "platform/RegistryStore.h"

// Acts of the user, one behind the other.
inline std::string PicksNode(int node) {
    return "say 'node\\t1004\\t" + std::to_string(node) + "'\nsay 'selected\\t1004'\nhear done\n";
}
inline std::string PicksRow(int row) { return "say 'row\\t1001\\t" + std::to_string(row) + "'\n"; }
inline std::string PressesOk() { return "say 'button\\t1'\n"; }
inline std::string PressesCancel() { return "say 'button\\t2'\n"; }

// Writes the program to `path` and names it in the store. It shows `dialog` (101 to 104) alone, and
// leaves one file beside itself, `path`.shown, once it was visible.
inline void LetUserAct(const std::string& path, int dialog, const std::string& acts) {
    const std::string surface = dialog == 104 ? "say 'surface\\t1005\\t200\\t100'\n" : "";
    std::ofstream(path, std::ios::binary)
        << "#!/bin/sh\n"
           "hear() { while IFS= read -r line; do case $line in \"$1\"*) return;; esac; done; exit "
           "3; }\n"
           "say() { printf '%b\\n' \"$1\"; }\n"
           "hear tesmark-dialog\nsay 'tesmark-dialog\\t1'\n"
           "hear \"$(printf 'dialog\\t%d' "
        << dialog
        << ")\"\n"
           "say 'ready\\t0\\t0\\t500\\t300'\nsay 'area\\t0\\t0\\t1024\\t728'\n"
        << surface << "say built\nhear show\nsay shown\n: > '" << path << ".shown'\n"
        << acts << "cat > /dev/null\n";
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    const auto key =
        platform::CreateRegistryKey(platform::RegistryRootKey(platform::RegistryRoot::LocalMachine),
                                    "software\\Velmora\\platform");
    if (!key || !platform::SetRegistryPath(key, "DialogProgram", path)) {
        throw std::runtime_error(path);
    }
    platform::CloseRegistryKey(key);
}
