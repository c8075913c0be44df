#include <gmock/gmock.h>

#include <deque>

#include "platform/linux/DialogConversation.h"
#include "platform/linux/ShownLabel.h"
#include "platform/linux/dialogprogram/ProtocolLine.h"

namespace {

using platform::DialogWindow;
using platform::kNoNode;
using platform::Rectangle;
using testing::ElementsAre;
using testing::IsEmpty;

// A program whose lines are there beforehand, and which ends behind the last of them.
class ReadyLink : public platform::DialogLink {
public:
    bool Write(const std::string& line) override {
        if (m_deaf) return false;
        m_written.push_back(line.substr(0, line.size() - 1));
        return true;
    }
    std::optional<std::string> Read(Patience) override {
        if (m_lines.empty()) return {};
        std::string line = std::move(m_lines.front());
        m_lines.pop_front();
        return line;
    }

    std::deque<std::string> m_lines;
    std::vector<std::string> m_written;
    bool m_deaf = false;
};

class RemoteDialogOnLinux : public testing::Test {
protected:
    // What the test does with an open dialog, and at its first event.
    class Acts : public platform::DialogProcedure {
    public:
        void OnOpen(DialogWindow& window) override {
            if (m_open) m_open(window);
        }
        bool OnButton(DialogWindow& window, int) override {
            if (m_button) m_button(window);
            window.End(1);
            return true;
        }

        std::function<void(DialogWindow&)> m_open, m_button;
    };

    int Run(int dialog, const std::vector<std::string>& lines) {
        m_link.m_lines = {"tesmark-dialog\t1", "ready\t100\t50\t600\t350", "area\t0\t0\t1024\t728"};
        if (dialog == 104) m_link.m_lines.push_back("surface\t1005\t200\t100");
        m_link.m_lines.insert(m_link.m_lines.end(), {"built", "shown"});
        m_link.m_lines.insert(m_link.m_lines.end(), lines.begin(), lines.end());
        m_link.m_written.clear();
        return platform::RunDialog(m_link, *platform::FindTemplate(dialog), m_acts);
    }
    // Without what every dialog says.
    std::vector<std::string> Said() const {
        std::vector<std::string> said = m_link.m_written;
        std::erase_if(said, [](const std::string& line) {
            return line.starts_with("tesmark-dialog") || line.starts_with("dialog") ||
                   line == "show" || line == "end";
        });
        return said;
    }

    ReadyLink m_link;
    Acts m_acts;
};

TEST_F(RemoteDialogOnLinux, TheListIsFilledInUtf8AndTheSelectedRowComesBack) {
    int before = 0, after = 0;
    m_acts.m_open = [&](DialogWindow& window) {
        window.AppendRow(1001, "印");
        window.AppendRow(1001, std::string("two\0three", 9));
        window.SelectRow(1001, 0);
        before = window.SelectedRow(1001);
    };
    m_acts.m_button = [&](DialogWindow& window) { after = window.SelectedRow(1001); };
    EXPECT_EQ(Run(101, {"row\t1001\t1", "button\t1"}), 1);
    EXPECT_THAT(Said(),
                ElementsAre("row\t1001\t\xE5\x8D\xB0", "row\t1001\ttwo", "select\t1001\t0"));
    EXPECT_EQ(before, 0);
    EXPECT_EQ(after, 1);
}

TEST_F(RemoteDialogOnLinux, ARowThatIsNotThereIsNoneSelected) {
    m_acts.m_open = [](DialogWindow& window) {
        window.SelectRow(1001, 0);
        EXPECT_EQ(window.SelectedRow(1001), -1);
        window.AppendRow(1001, "");
        window.SelectRow(1001, -5);
        EXPECT_EQ(window.SelectedRow(1001), -1);
    };
    m_acts.m_button = [](DialogWindow& window) { EXPECT_EQ(window.SelectedRow(1001), -1); };
    EXPECT_EQ(Run(101, {"row\t1001\t0", "row\t1001\t-1", "button\t1"}), 1);
    EXPECT_THAT(Said(), ElementsAre("select\t1001\t-1", "row\t1001\t", "select\t1001\t-1"));
}

TEST_F(RemoteDialogOnLinux, TheTextOfTheFieldComesInGbkAndIsCutToTheCapacity) {
    m_acts.m_open = [](DialogWindow& window) {
        window.SetText(1003, "192.0.2.45");
        EXPECT_EQ(window.Text(1003, 100), "192.0.2.45");
        window.TellDisabled(1003);
    };
    m_acts.m_button = [](DialogWindow& window) {
        EXPECT_EQ(window.Text(1003, 100), "印章");
        EXPECT_EQ(window.Text(1003, 4), "印\xD5");
        EXPECT_EQ(window.Text(1003, 1), "");
        EXPECT_EQ(window.Text(1003, 0), "");
    };
    EXPECT_EQ(Run(103, {"text\t1003\t\xE5\x8D\xB0\xE7\xAB\xA0", "button\t1006"}), 1);
}

TEST_F(RemoteDialogOnLinux, NodesCountFromOneAndKeepTheirData) {
    m_acts.m_open = [](DialogWindow& window) {
        const auto root = window.AppendNode(1004, kNoNode, "root", 0);
        const auto child = window.AppendNode(1004, root, "child", -7);
        EXPECT_EQ(root, 1U);
        EXPECT_EQ(child, 2U);
        EXPECT_EQ(window.NodeData(1004, child), -7);
        EXPECT_EQ(window.NodeData(1004, 3), 0);
        EXPECT_EQ(window.AppendNode(1004, 9, "orphan", 1), kNoNode);
        window.ExpandNode(1004, root);
        window.ExpandNode(1004, 9);
        EXPECT_EQ(window.SelectedNode(1004), kNoNode);
    };
    m_acts.m_button = [](DialogWindow& window) { EXPECT_EQ(window.SelectedNode(1004), 2U); };
    EXPECT_EQ(Run(104, {"node\t1004\t2", "button\t1"}), 1);
    EXPECT_THAT(Said(),
                ElementsAre("node\t1004\t0\troot", "node\t1004\t1\tchild", "expand\t1004\t1"));
}

TEST_F(RemoteDialogOnLinux, ThePreviewIsPaintedOnTheSurfaceThatTheProgramTold) {
    m_acts.m_open = [](DialogWindow& window) {
        EXPECT_EQ(window.ClientArea(1005), (Rectangle{0, 0, 200, 100}));
        EXPECT_EQ(window.ClientArea(1004), Rectangle{});
        window.Fill(1005, 0xF0F0F0);
        window.Draw(1005, {1, 1, {0x010203}}, {10, 20, 30, 40});
        window.Draw(1005, {}, {10, 20, 30, 40});
    };
    m_acts.m_button = [](DialogWindow& window) {
        EXPECT_EQ(window.ClientArea(1005), (Rectangle{0, 0, 300, 150}));
    };
    EXPECT_EQ(Run(104, {"surface\t1005\t300\t150", "button\t1"}), 1);
    EXPECT_THAT(Said(),
                ElementsAre("fill\t1005\tf0f0f0", "picture\t1005\t10\t20\t30\t40\t1\t1\tAQID"));
}

TEST_F(RemoteDialogOnLinux, ALargePictureIsSentSmaller) {
    m_acts.m_open = [](DialogWindow& window) {
        const platform::Picture large{4096, 1024, std::vector<platform::Colour>(4096 * 1024)};
        window.Draw(1005, large, {0, 0, 200, 100});
    };
    EXPECT_EQ(Run(104, {"button\t1"}), 1);
    ASSERT_EQ(Said().size(), 1U);
    EXPECT_TRUE(Said()[0].starts_with("picture\t1005\t0\t0\t200\t100\t2048\t512\tAAAA"));
}

TEST_F(RemoteDialogOnLinux, TheWindowStandsWhereTheProgramSaysUntilItIsMoved) {
    m_acts.m_open = [](DialogWindow& window) {
        EXPECT_EQ(window.Bounds(), (Rectangle{100, 50, 600, 350}));
        EXPECT_EQ(window.WorkArea(DialogWindow::Nearest::ToWindow), (Rectangle{0, 0, 1024, 728}));
        EXPECT_EQ(window.ParentArea(), std::nullopt);
        EXPECT_FALSE(window.OwnerWindow().has_value());
        window.MoveTo(-10, 20);
        EXPECT_EQ(window.Bounds(), (Rectangle{-10, 20, 490, 320}));
    };
    EXPECT_EQ(Run(104, {"button\t1"}), 1);
    EXPECT_THAT(Said(), ElementsAre("move\t-10\t20"));
}

TEST_F(RemoteDialogOnLinux, AControlOfAnotherKindIsLeftAlone) {
    m_acts.m_open = [](DialogWindow& window) {
        window.AppendRow(1003, "x");
        window.SelectRow(1003, 0);
        window.SetText(1001, "x");
        window.SetText(1, "x");
        window.TellDisabled(77);
        EXPECT_EQ(window.AppendNode(1003, kNoNode, "x", 1), kNoNode);
        window.ExpandNode(1003, 1);
        window.Fill(1003, 1);
        window.Draw(1003, {1, 1, {1}}, {0, 0, 1, 1});
        EXPECT_EQ(window.SelectedRow(1003), -1);
        EXPECT_EQ(window.Text(1, 10), "");
    };
    Run(103, {"button\t1"});
    EXPECT_THAT(Said(), IsEmpty());
}

TEST_F(RemoteDialogOnLinux, LabelsAreOneLineWithoutControlCharacters) {
    constexpr char kLabel[] = "a\r\nb\tc\x01\x1B[31m\x7F";
    const std::string shown = "a  b c\xEF\xBF\xBD\xEF\xBF\xBD[31m\xEF\xBF\xBD";
    m_acts.m_open = [&](DialogWindow& window) { window.AppendRow(1001, kLabel); };
    Run(101, {"button\t1"});
    EXPECT_THAT(Said(), ElementsAre("row\t1001\t" + shown));
    m_acts.m_open = [&](DialogWindow& window) {
        window.AppendNode(1004, kNoNode, kLabel, 1);
        window.SetText(1005, kLabel);
        EXPECT_EQ(window.Text(1005, 100), kLabel);
    };
    Run(104, {"button\t1"});
    EXPECT_THAT(Said(), ElementsAre("node\t1004\t0\t" + shown, "text\t1005\t" + shown));
}

TEST_F(RemoteDialogOnLinux, TheFieldsTextKeepsItsLinesAndItsLength) {
    const std::string text = "a\nb\r" + std::string(platform::kLongestLabel, 'x');
    m_acts.m_open = [&](DialogWindow& window) { window.SetText(1003, text); };
    Run(103, {"button\t1"});
    EXPECT_THAT(Said(), ElementsAre("text\t1003\ta\\nb\\r" + text.substr(4)));
}

TEST_F(RemoteDialogOnLinux, LabelsOfAnyLengthAreCutBetweenTwoCharacters) {
    std::string whole, wholeUtf8;
    for (std::size_t i = 0; i < platform::kLongestLabel; ++i) {
        whole += "印";
        wholeUtf8 += "\xE5\x8D\xB0";
    }
    const std::string huge(2 * platform::kLongestLineToProgram, '\n');
    const std::string cut = wholeUtf8 + "\xE2\x80\xA6";
    const std::string blanks = std::string(platform::kLongestLabel, ' ') + "\xE2\x80\xA6";
    m_acts.m_open = [&](DialogWindow& window) {
        window.AppendNode(1004, kNoNode, whole, 1);
        window.AppendNode(1004, kNoNode, whole + "x", 1);
        window.AppendNode(1004, kNoNode, "x" + whole, 1);
        window.AppendNode(1004, kNoNode, huge, 1);
        window.SetText(1005, whole + whole);
    };
    EXPECT_EQ(Run(104, {"button\t1"}), 1);
    EXPECT_THAT(Said(), ElementsAre("node\t1004\t0\t" + wholeUtf8, "node\t1004\t0\t" + cut,
                                    "node\t1004\t0\tx" + wholeUtf8.substr(3) + "\xE2\x80\xA6",
                                    "node\t1004\t0\t" + blanks, "text\t1005\t" + cut));
    m_acts.m_open = [&](DialogWindow& window) { window.AppendRow(1001, huge); };
    EXPECT_EQ(Run(101, {"button\t1"}), 1);
    EXPECT_THAT(Said(), ElementsAre("row\t1001\t" + blanks));
}

TEST_F(RemoteDialogOnLinux, OnlyThePreviewHasASurface) {
    for (const char* control : {"1", "1004", "77", "-1"}) {
        const std::string surface = std::string("surface\t") + control + "\t10\t10";
        Run(104, {surface, "button\t1"});
        EXPECT_THAT(m_link.m_lines, ElementsAre("button\t1")) << control << " is heard no more";
        m_link.m_lines = {
            "tesmark-dialog\t1", "ready\t1\t2\t3\t4", "area", surface, "built", "shown",
            "button\t1"};
        EXPECT_EQ(platform::RunDialog(m_link, *platform::FindTemplate(104), m_acts),
                  platform::kDialogNotShown)
            << control;
    }
}

TEST_F(RemoteDialogOnLinux, AHundredStatesAreTakenBeforeAnEventAndNotOneMore) {
    int pressed = 0;
    m_acts.m_open = [](DialogWindow& window) { window.AppendRow(1001, "a"); };
    m_acts.m_button = [&](DialogWindow&) { ++pressed; };
    std::vector<std::string> lines(100, "row\t1001\t0");
    lines.push_back("button\t1");
    EXPECT_EQ(Run(101, lines), 1);
    EXPECT_EQ(pressed, 1);
    lines.insert(lines.begin(), "row\t1001\t-1");
    Run(101, lines);
    EXPECT_EQ(m_link.m_lines.size(), 1U) << "the button isn't heard";
}

TEST_F(RemoteDialogOnLinux, ATextThatNoLineCanHoldGivesTheProgramUp) {
    m_acts.m_open = [](DialogWindow& window) {
        window.SetText(1003, std::string(platform::kLongestLineToProgram, 'x'));
        window.SetText(1003, "y");
    };
    EXPECT_EQ(Run(103, {"button\t1"}), platform::kDialogNotShown);
    EXPECT_THAT(Said(), IsEmpty());
}

TEST_F(RemoteDialogOnLinux, WhatIsDoneToADialogWhoseProgramIsGoneIsRemembered) {
    m_acts.m_button = [this](DialogWindow& window) {
        m_link.m_deaf = true;
        EXPECT_EQ(window.AppendNode(1004, kNoNode, "x", 3), 1U);
        EXPECT_EQ(window.AppendNode(1004, 1, "y", 4), 2U);
        EXPECT_EQ(window.NodeData(1004, 2), 4);
    };
    EXPECT_EQ(Run(104, {"button\t1"}), 1);
    EXPECT_THAT(Said(), IsEmpty());
}

TEST_F(RemoteDialogOnLinux, AMessageBoxIsShownAndWaitsForItsAnswer) {
    m_link.m_lines = {"tesmark-dialog\t1", "shown", "closed"};
    EXPECT_TRUE(platform::RunMessageBox(m_link, "印\n", "c", 48));
    EXPECT_THAT(m_link.m_lines, IsEmpty());
    EXPECT_THAT(m_link.m_written,
                ElementsAre("tesmark-dialog\t1", "message\t48\tc\t\xE5\x8D\xB0\\n"));
}

TEST_F(RemoteDialogOnLinux, AMessageBoxWhoseProgramFailsBeforeItIsVisibleWasNotShown) {
    for (const std::deque<std::string>& lines : {std::deque<std::string>{},
                                                 {"tesmark-dialog\t2", "shown"},
                                                 {"tesmark-dialog\t1"},
                                                 {"tesmark-dialog\t1", "closed"},
                                                 {"tesmark-dialog\t1", "what"}}) {
        m_link.m_lines = lines;
        EXPECT_FALSE(platform::RunMessageBox(m_link, "t", "c", 0));
    }
    m_link.m_lines = {"tesmark-dialog\t1", "shown"};
    EXPECT_TRUE(platform::RunMessageBox(m_link, "t", "c", 0));
}

}  // namespace
