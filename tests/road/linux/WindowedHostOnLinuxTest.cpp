#include <sstream>

#include "road/RoadTest.h"
#include "support/Program.h"
#include "support/linux/DialogUser.h"

namespace {

// Two keys with a seal each, so that there is a choice; the host is a program of its own.
class WindowedHostOnLinux : public RoadTest {
protected:
    WindowedHostOnLinux() {
        for (const char* name : {"first", "second"}) {
            m_certIds.push_back(MakeKey(KeyKind::kRsa, name));
            AddEsSeal(m_certIds.back());
        }
    }
    // The user picks the first seal, but at the first `cancels` dialogs after the first one.
    void LetUserPickBut(int cancels) const {
        const std::string count = "'" + InPrefix("count") + "'";
        LetUserAct(InPrefix("user"), 104,
                   "n=$(cat " + count + " 2>/dev/null || echo 0); echo $((n + 1)) > " + count +
                       "\nif [ $n -ge 1 ] && [ $n -le " + std::to_string(cancels) + " ]; then " +
                       PressesCancel() + "else\n" + PicksNode(3) + PressesOk() + "fi\n");
    }
    // The lines that the host told.
    std::vector<std::string> Clicks(int clicks) const {
        std::vector<std::string> command = {WINDOWED_HOST, kRoadPin, std::to_string(clicks)};
        command.insert(command.end(), m_certIds.begin(), m_certIds.end());
        // Qt keeps what it allocates at its start.
        const ProgramOutcome outcome =
            RunProgram(command, {.environment = {{"QT_QPA_PLATFORM", "offscreen"},
                                                 {"ASAN_OPTIONS", "detect_leaks=0"}}});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.error;
        std::vector<std::string> lines;
        std::istringstream told(outcome.out);
        for (std::string line; std::getline(told, line);) lines.push_back(line);
        return lines;
    }

    std::vector<std::string> m_certIds;
};

TEST_F(WindowedHostOnLinux, PicksCancelsAndPicksAgainAndLeavesNoProgramBehind) {
    LetUserPickBut(1);
    const std::string picked = "0 " + std::to_string(SealPicture().size());
    const auto lines = Clicks(3);
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_EQ(lines[0], picked);
    EXPECT_EQ(lines[1], "-3004 0");
    EXPECT_EQ(lines[2], picked);
    EXPECT_EQ(lines[5], "children none");
}

TEST_F(WindowedHostOnLinux, ManySelectionsInARowLeaveNeitherDescriptorsNorMemory) {
    constexpr int kClicks = 50;
    LetUserPickBut(0);
    const auto lines = Clicks(kClicks);
    ASSERT_EQ(lines.size(), kClicks + 3U);
    int before = 0;
    int after = 0;
    ASSERT_EQ(std::sscanf(lines[kClicks].c_str(), "descriptors %d %d", &before, &after), 2);
    EXPECT_EQ(after, before);
    ASSERT_EQ(std::sscanf(lines[kClicks + 1].c_str(), "kilobytes %d %d", &before, &after), 2);
    // An allocator under the sanitizers keeps what was freed for a while.
    EXPECT_LT(after, before + 32'768);
    EXPECT_EQ(lines[kClicks + 2], "children none");
}

}  // namespace
