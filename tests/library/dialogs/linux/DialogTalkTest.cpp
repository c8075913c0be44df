#include "tools/dialog/DialogTalk.h"

#include <gmock/gmock.h>

namespace {

using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;
using State = DialogTalk::State;

class NotedFrontEnd : public FrontEnd {
public:
    Placement Build(const platform::DialogTemplate& dialog) override {
        Note("build " + std::to_string(dialog.id));
        return {{1, 2, 3, 4}, {}, {{1005, 200, 100}}};
    }
    void Show() override { Note("show"); }
    void EventHandled() override { Note("handled"); }
    void ShowMessage(int style, const std::string& caption, const std::string& text) override {
        Note("message " + std::to_string(style) + " " + caption + " " + text);
    }
    void AppendRow(int, const std::string& text) override { Note("row " + text); }
    void SelectRow(int, int row) override { Note("select " + std::to_string(row)); }
    void SetText(int, const std::string& text) override { Note("text " + text); }
    void TellDisabled(int) override { Note("disabled"); }
    void AppendNode(int, int parent, int node, const std::string& text) override {
        Note("node " + std::to_string(parent) + " " + std::to_string(node) + " " + text);
    }
    void ExpandNode(int, int node) override { Note("expand " + std::to_string(node)); }
    void Fill(int, platform::Colour colour) override { Note("fill " + std::to_string(colour)); }
    void Draw(int, const platform::Picture& picture, const platform::Rectangle&) override {
        Note("draw " + std::to_string(picture.pixels.size()));
    }
    void Move(int left, int top) override {
        Note("move " + std::to_string(left) + " " + std::to_string(top));
    }

    std::vector<std::string> m_notes;

private:
    void Note(std::string note) { m_notes.push_back(std::move(note)); }
};

class DialogTalkOnLinux : public testing::Test {
protected:
    void Open(int dialog, const std::string& filling = "") {
        ASSERT_EQ(m_talk.Receive("tesmark-dialog\t1\ndialog\t" + std::to_string(dialog) + "\n" +
                                 filling + "show\n"),
                  State::Going);
        m_sent.clear();
    }
    // What was said since the last call.
    std::string Sent() { return std::exchange(m_sent, {}); }

    NotedFrontEnd m_frontEnd;
    std::string m_sent;
    DialogTalk m_talk{m_frontEnd, [this](const std::string& lines) { m_sent += lines; }};
};

TEST_F(DialogTalkOnLinux, ADialogIsBuiltFilledAndShown) {
    EXPECT_EQ(m_talk.Receive("tesmark-dialog\t1\n"), State::Going);
    EXPECT_EQ(Sent(), "tesmark-dialog\t1\n");
    EXPECT_EQ(m_talk.Receive("dialog\t104\n"), State::Going);
    EXPECT_EQ(Sent(), "ready\t1\t2\t3\t4\narea\nsurface\t1005\t200\t100\nbuilt\n");
    EXPECT_EQ(m_talk.Receive("node\t1004\t0\ta\nnode\t1004\t1\tb\nexpand\t1004\t1\nfill\t1005\t"
                             "000001\npicture\t1005\t0\t0\t1\t1\t1\t1\tAAAA\nmove\t5\t-6\nshow\n"),
              State::Going);
    EXPECT_EQ(Sent(), "shown\n");
    EXPECT_EQ(m_talk.Receive("end\n"), State::Ended);
    EXPECT_THAT(m_frontEnd.m_notes, ElementsAre("build 104", "node 0 1 a", "node 1 2 b", "expand 1",
                                                "fill 1", "draw 1", "move 5 -6", "show"));
}

TEST_F(DialogTalkOnLinux, ATemplateThatIsNotKnownIsSaid) {
    EXPECT_EQ(m_talk.Receive("tesmark-dialog\t1\ndialog\t105\n"), State::Ended);
    EXPECT_EQ(Sent(), "tesmark-dialog\t1\nunknown\n");
    EXPECT_THAT(m_frontEnd.m_notes, IsEmpty());
}

TEST_F(DialogTalkOnLinux, AnotherVersionIsAnsweredAndGivenUp) {
    EXPECT_EQ(m_talk.Receive("tesmark-dialog\t2\n"), State::GivenUp);
    EXPECT_EQ(Sent(), "tesmark-dialog\t1\n");
}

TEST_F(DialogTalkOnLinux, StateIsToldBeforeTheEventAndOnlyWhereItChanged) {
    Open(101, "row\t1001\ta\nrow\t1001\tb\nselect\t1001\t0\n");
    m_talk.PickedRow(1001, 1);
    EXPECT_EQ(Sent(), "");
    m_talk.Pressed(1);
    EXPECT_EQ(Sent(), "row\t1001\t1\nbutton\t1\n");
    m_talk.Receive("done\n");
    m_talk.PickedRow(1001, 1);
    m_talk.Pressed(1);
    EXPECT_EQ(Sent(), "button\t1\n");
}

TEST_F(DialogTalkOnLinux, EventsWaitUntilTheOneBeforeIsHandledAndKeepTheirState) {
    Open(103);
    m_talk.Typed(1003, "one");
    m_talk.Pressed(1006);
    m_talk.Typed(1003, "two");
    m_talk.Pressed(1);
    m_talk.ClosedWindow();
    EXPECT_TRUE(m_talk.IsHandling());
    EXPECT_EQ(Sent(), "text\t1003\tone\nbutton\t1006\n");
    EXPECT_EQ(m_talk.Receive("done\n"), State::Going);
    EXPECT_EQ(Sent(), "text\t1003\ttwo\nbutton\t1\n");
    EXPECT_EQ(m_talk.Receive("done\n"), State::Going);
    EXPECT_EQ(Sent(), "close\n");
    EXPECT_EQ(m_talk.Receive("done\n"), State::Going);
    EXPECT_FALSE(m_talk.IsHandling());
}

TEST_F(DialogTalkOnLinux, WhatTheLibrarySetIsKnownToIt) {
    Open(103, "text\t1003\tset\n");
    m_talk.Typed(1003, "set");
    m_talk.Pressed(1);
    EXPECT_EQ(Sent(), "button\t1\n");
}

TEST_F(DialogTalkOnLinux, AnotherNodeAndAnotherSizeAreTold) {
    Open(104, "node\t1004\t0\ta\n");
    m_talk.Resized(1005, 300, 200);
    m_talk.PickedNode(1004, 1);
    EXPECT_EQ(Sent(), "node\t1004\t1\nsurface\t1005\t300\t200\nselected\t1004\n");
}

TEST_F(DialogTalkOnLinux, ATextIsCutAtTheCharacterForWhichTheFieldHasNoRoom) {
    Open(103);
    // A character of ASCII takes one byte of 492, any other two.
    const struct {
        std::string typed, told;
    } cases[] = {
        {std::string(492, 'x'), std::string(492, 'x')},
        {std::string(493, 'x'), std::string(492, 'x')},
        {std::string(490, 'x') + "\xE5\x8D\xB0", std::string(490, 'x') + "\xE5\x8D\xB0"},
        {std::string(491, 'x') + "\xE5\x8D\xB0", std::string(491, 'x')},
        {std::string(490, 'y') + "\xF0\x9F\x98\x80", std::string(490, 'y') + "\xF0\x9F\x98\x80"},
    };
    for (const auto& each : cases) {
        m_talk.Typed(1003, "");
        m_talk.Pressed(1006);
        m_talk.Receive("done\n");
        Sent();
        m_talk.Typed(1003, each.typed);
        m_talk.Pressed(1);
        EXPECT_EQ(Sent(), "text\t1003\t" + each.told + "\nbutton\t1\n");
        m_talk.Receive("done\n");
    }
    m_talk.Typed(1003, std::string(30'000, '\x01'));
    m_talk.Pressed(1);
    EXPECT_LE(Sent().size(), platform::kLongestLineFromProgram);
}

TEST_F(DialogTalkOnLinux, BeforeTheDialogIsShownNothingIsAnEvent) {
    m_talk.Receive("tesmark-dialog\t1\ndialog\t101\n");
    Sent();
    m_talk.Pressed(1);
    EXPECT_EQ(Sent(), "");
}

TEST_F(DialogTalkOnLinux, AMessageBoxIsShownAndItsAnswerEndsTheTalk) {
    EXPECT_EQ(m_talk.Receive("tesmark-dialog\t1\nmessage\t48\tc\tt\n"), State::Going);
    EXPECT_EQ(Sent(), "tesmark-dialog\t1\nshown\n");
    EXPECT_EQ(m_talk.Answered(), State::Ended);
    EXPECT_EQ(Sent(), "closed\n");
    EXPECT_THAT(m_frontEnd.m_notes, ElementsAre("message 48 c t"));
}

TEST_F(DialogTalkOnLinux, WhatHasNoPlaceIsGivenUp) {
    const std::string greeting = "tesmark-dialog\t1\n";
    const std::string tree = greeting + "dialog\t104\n";
    for (const std::string& lines : {std::string("dialog\t101\n"),
                                     std::string("what\n"),
                                     greeting + greeting,
                                     greeting + "show\n",
                                     greeting + "end\n",
                                     greeting + "row\t1001\tx\n",
                                     tree + "done\n",
                                     tree + "dialog\t104\n",
                                     tree + "message\t0\ta\tb\n",
                                     tree + "row\t1004\tx\n",
                                     tree + "node\t1004\t1\tx\n",
                                     tree + "node\t1004\t-1\tx\n",
                                     tree + "expand\t1004\t1\n",
                                     tree + "fill\t1004\t000000\n",
                                     tree + "text\t1\tx\n",
                                     tree + "disabled\t7\n",
                                     tree + "show\nshow\n",
                                     tree + "show\ntext\t1005\tx\n",
                                     tree + "show\nmove\t1\t1\n",
                                     greeting + "dialog\t101\nselect\t1001\t0\n",
                                     greeting + "message\t0\ta\tb\nend\n",
                                     greeting + "message\t0\ta\tb\ndialog\t101\n"}) {
        NotedFrontEnd frontEnd;
        DialogTalk talk(frontEnd, [](const std::string&) {});
        EXPECT_EQ(talk.Receive(lines), State::GivenUp) << lines;
    }
}

TEST_F(DialogTalkOnLinux, ALineWithoutAnEndIsGivenUp) {
    EXPECT_EQ(m_talk.Receive(std::string(platform::kLongestLineToProgram, 'x')), State::GivenUp);
}

}  // namespace
