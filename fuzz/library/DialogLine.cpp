// A line between the library and a dialog program: what is taken for a message is written again as
// it stood, and any text survives a line but for what no line may hold.

#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/driver/Require.h"
#include "platform/linux/dialogprogram/Messages.h"
#include "platform/linux/dialogprogram/ProtocolLine.h"

using platform::LineOf;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string_view line = input.substr(0, input.find('\n'));
    if (const auto command = platform::ParseCommand(line))
        REQUIRE(LineOf(*command) == std::string(line) + "\n");
    if (const auto report = platform::ParseReport(line))
        REQUIRE(LineOf(*report) == std::string(line) + "\n");

    const std::string told = LineOf(platform::command::Text{1003, std::string(input)});
    REQUIRE(told.find('\n') == told.size() - 1);
    const auto heard = platform::ParseCommand(std::string_view(told).substr(0, told.size() - 1));
    REQUIRE(heard);
    REQUIRE(LineOf(*heard) == told);
    return 0;
}
