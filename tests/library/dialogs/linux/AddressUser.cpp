#include "AddressUser.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "platform/CodePage.h"
#include "platform/RegistryStore.h"
#include "platform/linux/dialogprogram/Messages.h"

namespace {

// Plays the dialog or the box that it is asked for, and leaves what it hears behind its name.
constexpr char kProgram[] = R"(#!/bin/sh
hear() {
    while IFS= read -r line; do
        printf '%s\n' "$line" >> "$0.heard"
        case $line in "$1"*) return;; end*) exit 0;; esac
    done
    exit 3
}
say() { printf '%s\n' "$1"; }
hear tesmark-dialog
say 'tesmark-dialog	1'
hear ''
case $line in message*) say shown; say closed; exit 0;; esac
say 'ready	0	0	500	300'
say 'area	0	0	1024	728'
say built
hear show
say shown
)";

std::string Lines(const std::vector<AddressUser::Act>& acts) {
    std::string lines;
    const auto say = [&](const platform::DialogReport& report) {
        const std::string line = platform::LineOf(report);
        lines += "say '" + line.substr(0, line.size() - 1) + "'\n";
    };
    for (const AddressUser::Act& act : acts) {
        if (act.button == 0) {
            say(platform::report::Text{TESMARK_URL_FIELD, platform::Utf8FromAnsi(act.text)});
            continue;
        }
        if (act.button == AddressUser::kClose) {
            say(platform::report::Close{});
        } else {
            say(platform::report::Button{act.button});
        }
        lines += "hear done\n";
    }
    return lines;
}

void NameInStore(const std::string& program) {
    const auto key =
        platform::CreateRegistryKey(platform::RegistryRootKey(platform::RegistryRoot::LocalMachine),
                                    "software\\Velmora\\platform");
    if (!key || !platform::SetRegistryPath(key, "DialogProgram", program)) {
        throw std::runtime_error(program);
    }
    platform::CloseRegistryKey(key);
}

}  // namespace

class AddressUser::Watch {
public:
    Watch(const std::string& path, const std::vector<Act>& acts) : m_path(path) {
        std::ofstream(m_path, std::ios::binary) << kProgram << Lines(acts) << "hear end\n";
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all);
        NameInStore(m_path);
    }
    ~Watch() {
        std::error_code absent;
        std::filesystem::remove(m_path + ".heard", absent);
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    Seen Look() const {
        namespace command = platform::command;
        Seen seen;
        std::ifstream file(m_path + ".heard", std::ios::binary);
        for (std::string line; std::getline(file, line);) {
            const auto heard = platform::ParseCommand(line);
            if (!heard) throw std::runtime_error(line);
            if (std::holds_alternative<command::Dialog>(*heard)) ++seen.dialogs;
            if (const auto* text = std::get_if<command::Text>(&*heard)) {
                seen.field = platform::AnsiFromUtf8(text->text);
            }
            if (std::holds_alternative<command::Disabled>(*heard)) seen.toldDisabled = true;
            if (const auto* box = std::get_if<command::Message>(&*heard)) {
                seen.boxes.push_back(platform::AnsiFromUtf8(std::to_string(box->style) + " " +
                                                            box->caption + ": " + box->text));
            }
        }
        return seen;
    }

private:
    std::string m_path;
};

AddressUser::AddressUser(const TemporaryPrefix& prefix, std::vector<Act> acts)
    : m_watch(std::make_unique<Watch>(prefix.Below("user"), acts)) {}

AddressUser::~AddressUser() = default;

AddressUser::Seen AddressUser::Look() const { return m_watch->Look(); }
