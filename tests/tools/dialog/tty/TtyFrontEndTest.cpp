#include "tools/dialog/tty/TtyFrontEnd.h"

#include <gmock/gmock.h>

#include "platform/linux/dialogprogram/Utf8.h"

namespace {

using platform::BytesOf;
using testing::HasSubstr;
using testing::Not;
using State = DialogTalk::State;

std::string Bytes(std::u8string_view text) { return std::string(BytesOf(text)); }

class TtyFrontEndOnLinux : public testing::Test {
protected:
    TtyFrontEndOnLinux() { m_frontEnd.TellTo(m_talk); }

    // Opens `dialog`, filled by `lines`.
    void Open(int dialog, const std::string& lines) {
        ASSERT_EQ(
            Hear("tesmark-dialog\t1\ndialog\t" + std::to_string(dialog) + "\n" + lines + "show\n"),
            State::Going);
        m_said.clear();
    }
    State Hear(const std::string& lines) { return m_talk.Receive(lines); }
    // What was told to the library, and what was printed, since the last call.
    std::string Said() { return std::exchange(m_said, {}); }
    std::string Printed() { return std::exchange(m_printed, {}); }

    std::string m_said;
    std::string m_printed;
    TtyFrontEnd m_frontEnd{kChineseHints, [this](const std::string& text) { m_printed += text; }};
    DialogTalk m_talk{m_frontEnd, [this](const std::string& lines) { m_said += lines; }};
};

TEST_F(TtyFrontEndOnLinux, AListIsNumberedFromNoughtAndTheButtonsHaveLetters) {
    Open(101, "row\t1001\tfirst\nrow\t1001\tsecond\nselect\t1001\t0\n");
    EXPECT_EQ(Printed(), Bytes(u8"\n电子签章\n  0  first\n  1  second\n"
                               u8"输入序号选择；y 确定；n 取消："));
}

TEST_F(TtyFrontEndOnLinux, ANumberPicksARowAndAnEmptyLinePressesOk) {
    Open(101, "row\t1001\tfirst\nrow\t1001\tsecond\n");
    Printed();
    m_frontEnd.Typed(" 1 ");
    EXPECT_EQ(Said(), "");
    EXPECT_EQ(Printed(), Bytes(u8"已选择：second\n输入序号选择；y 确定；n 取消："));
    m_frontEnd.Typed("");
    EXPECT_EQ(Said(), "row\t1001\t1\nbutton\t1\n");
}

TEST_F(TtyFrontEndOnLinux, ANumberThatIsNotThereIsToldAndAskedAgain) {
    Open(101, "row\t1001\tfirst\n");
    for (const char* const typed : {"1", "-1", "0x", "hello", "99999999999999999999"}) {
        Printed();
        m_frontEnd.Typed(typed);
        EXPECT_EQ(Printed(), Bytes(u8"没有这个序号。\n输入序号选择；y 确定；n 取消：")) << typed;
    }
    EXPECT_EQ(Said(), "");
}

TEST_F(TtyFrontEndOnLinux, ButtonsAnswerToTheirLettersAndLabels) {
    for (const auto& [typed, button] :
         {std::pair{std::string("y"), 1}, {"n", 2}, {Bytes(u8"确定"), 1}, {Bytes(u8"取消"), 2}}) {
        TtyFrontEnd frontEnd(kChineseHints, [](const std::string&) {});
        std::string said;
        DialogTalk talk(frontEnd, [&](const std::string& lines) { said = lines; });
        frontEnd.TellTo(talk);
        talk.Receive("tesmark-dialog\t1\ndialog\t102\nshow\n");
        frontEnd.Typed(typed);
        EXPECT_EQ(said, "button\t" + std::to_string(button) + "\n");
    }
}

TEST_F(TtyFrontEndOnLinux, AnOkThatIsNotTakenAsksAgain) {
    Open(101, "row\t1001\tfirst\n");
    m_frontEnd.Typed("y");
    Printed();
    EXPECT_EQ(Hear("done\n"), State::Going);
    EXPECT_EQ(Printed(), Bytes(u8"输入序号选择；y 确定；n 取消："));
}

TEST_F(TtyFrontEndOnLinux, ATreeIsIndentedAndNumberedFromItsTop) {
    Open(104,
         "node\t1004\t0\troot\nnode\t1004\t1\ta\nnode\t1004\t1\tb\nnode\t1004\t2\ta1\n"
         "expand\t1004\t1\n");
    EXPECT_THAT(Printed(), HasSubstr("  1  root\n  2    a\n  3      a1\n  4    b\n"));
    m_frontEnd.Typed("3");
    EXPECT_EQ(Said(), "node\t1004\t4\nselected\t1004\n");
}

TEST_F(TtyFrontEndOnLinux, ThePreviewIsToldWhenTheSelectionHasBeenHandled) {
    Open(104, "node\t1004\t0\troot\n");
    m_frontEnd.Typed("1");
    Printed();
    Hear("fill\t1005\tf0f0f0\npicture\t1005\t0\t0\t9\t9\t2\t1\tAAAAAAAA\ndone\n");
    EXPECT_THAT(Printed(), HasSubstr(Bytes(u8"印章预览：图片，2 x 1 像素\n输入序号选择")));
}

TEST_F(TtyFrontEndOnLinux, ATextInPlaceOfAPictureIsThePreview) {
    Open(104, "node\t1004\t0\ta\nnode\t1004\t0\tb\n");
    m_frontEnd.Typed("1");
    Hear("fill\t1005\tf0f0f0\ntext\t1005\tsays \\n this\ndone\n");
    EXPECT_THAT(Printed(), HasSubstr(Bytes(u8"印章预览：says   this\n")));
    m_frontEnd.Typed("2");
    Hear("fill\t1005\tf0f0f0\ndone\n");
    EXPECT_THAT(Printed(), HasSubstr(Bytes(u8"印章预览：（空）\n")));
}

TEST_F(TtyFrontEndOnLinux, TheSelectedNodeIsNotSelectedAgain) {
    Open(104, "node\t1004\t0\ta\n");
    m_frontEnd.Typed("1");
    Hear("done\n");
    Said();
    m_frontEnd.Typed("1");
    EXPECT_EQ(Said(), "");
}

TEST_F(TtyFrontEndOnLinux, TheAddressIsTypedTestedAndConfirmed) {
    Open(103, "text\t1003\told\n");
    const std::string shown = Printed();
    EXPECT_THAT(shown, HasSubstr(Bytes(u8"URL地址：\n")));
    EXPECT_THAT(shown, HasSubstr(Bytes(u8"输入格式--IP/工程名，如：192.0.2.45/qelm42\n")));
    EXPECT_THAT(shown, HasSubstr(Bytes(u8"当前内容：old\n")));
    EXPECT_THAT(shown, HasSubstr(Bytes(u8"y 确定；n 取消；t 测试连接：")));
    m_frontEnd.Typed("192.0.2.45/qelm42");
    m_frontEnd.Typed("t");
    EXPECT_EQ(Said(), "text\t1003\t192.0.2.45/qelm42\nbutton\t1006\n");
    Hear("done\n");
    m_frontEnd.Typed("=y");
    m_frontEnd.Typed("y");
    EXPECT_EQ(Said(), "text\t1003\ty\nbutton\t1\n");
}

TEST_F(TtyFrontEndOnLinux, TheUserSeesHowMuchOfALongAddressTheFieldTakes) {
    Open(103, "text\t1003\told\n");
    Printed();
    m_frontEnd.Typed(std::string(500, 'x'));
    EXPECT_THAT(Printed(), HasSubstr(Bytes(u8"当前内容：") + std::string(492, 'x') + "\n"));
    m_frontEnd.Typed("y");
    EXPECT_EQ(Said(), "text\t1003\t" + std::string(492, 'x') + "\nbutton\t1\n");
}

TEST_F(TtyFrontEndOnLinux, TheFieldCanBeEmptied) {
    Open(103, "text\t1003\told\n");
    m_frontEnd.Typed("=");
    m_frontEnd.Typed("y");
    EXPECT_EQ(Said(), "text\t1003\t\nbutton\t1\n");
}

TEST_F(TtyFrontEndOnLinux, ClosingIsReported) {
    Open(101, "");
    m_frontEnd.Closed();
    EXPECT_EQ(Said(), "close\n");
}

TEST_F(TtyFrontEndOnLinux, WhatComesFromOutsideStaysInItsLineAndHarmless) {
    Open(104, "node\t1004\t0\ta\\n  7  b\\tc\n");
    const std::string shown = Printed();
    EXPECT_THAT(shown, HasSubstr("  1  a   7  b c\n"));
    EXPECT_THAT(shown, Not(HasSubstr("\n  7")));
}

TEST_F(TtyFrontEndOnLinux, AMessageIsShownWithItsLinesUntilItIsAnswered) {
    EXPECT_EQ(Hear("tesmark-dialog\t1\nmessage\t48\tcaption\tone\\ntwo\\r\n"), State::Going);
    EXPECT_EQ(Printed(), Bytes(u8"\ncaption\none\ntwo \n按回车键确定："));
    Said();
    m_frontEnd.Typed("");
    EXPECT_EQ(Said(), "closed\n");
    EXPECT_EQ(m_talk.CurrentState(), State::Ended);
}

TEST_F(TtyFrontEndOnLinux, AClosedMessageIsAnswered) {
    Hear("tesmark-dialog\t1\nmessage\t48\tcaption\ttext\n");
    Said();
    m_frontEnd.Closed();
    EXPECT_EQ(Said(), "closed\n");
}

TEST_F(TtyFrontEndOnLinux, WithoutChineseTheHintsAreAscii) {
    std::string printed;
    TtyFrontEnd frontEnd(kAsciiHints, [&](const std::string& text) { printed += text; });
    DialogTalk talk(frontEnd, [](const std::string&) {});
    frontEnd.TellTo(talk);
    talk.Receive("tesmark-dialog\t1\ndialog\t101\nrow\t1001\tx\nshow\n");
    EXPECT_EQ(printed, "\nElectronic seal\n  0  x\nnumber to choose; y OK; n Cancel: ");
}

TEST_F(TtyFrontEndOnLinux, ADeepTreeIsShownToItsBottom) {
    std::string nodes;
    for (int i = 0; i < 20'000; ++i) nodes += "node\t1004\t" + std::to_string(i) + "\tx\n";
    Open(104, nodes);
    EXPECT_THAT(Printed(), HasSubstr("20000  "));
}

}  // namespace
