// The hint about memory that is about to be written.
#include "platform/Memory.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

TEST(MemoryTest, TheHintChangesNoContent) {
    std::string text(5'000'000, 'a');
    for (std::size_t i = 0; i < text.size(); i += 1'000) text[i] = static_cast<char>('a' + i % 26);
    const std::string before = text;
    platform::ExpectToBeWritten(text.data(), text.size());
    EXPECT_TRUE(text == before);
    text.back() = 'z';
    EXPECT_EQ(text.back(), 'z');
}

TEST(MemoryTest, AHintForNothingOrALittleIsTaken) {
    char little[3] = {1, 2, 3};
    platform::ExpectToBeWritten(little, 0);
    platform::ExpectToBeWritten(little, sizeof little);
    platform::ExpectToBeWritten(nullptr, 0);
    EXPECT_EQ(little[2], 3);
}

}  // namespace
