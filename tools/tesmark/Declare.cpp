#include "Declare.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

// Texts that may be none; all other empty values come of a shell's variable that isn't set.
constexpr auto kMayBeEmpty = std::to_array<std::string_view>(
    {"--reason", "--location", "--organization", "--purpose", "--number", "--password", "VALUE"});

}  // namespace

void RefuseEmptyValues(CLI::App& command) {
    for (CLI::Option* option : command.get_options()) {
        const bool isFlag = option->get_items_expected_max() == 0;
        if (isFlag || std::ranges::count(kMayBeEmpty, option->get_name()) > 0) continue;
        option->check([](const std::string& value) {
            return std::string(value.empty() ? "the value is empty" : "");
        });
    }
}
