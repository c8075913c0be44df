#include <QAccessible>
#include <QLabel>

#include "tools/dialog/qt/WindowFixture.h"

namespace {

class MessageWindowOnLinux : public WindowFixture {
protected:
    void SetUp() override { Start(); }

    void Ask(int style, const std::string& text = "连接服务器失败！") {
        Library().Say({"tesmark-dialog", "1"});
        Library().Say({"message", std::to_string(style), "电子签章", text});
        ASSERT_EQ(Library().HearUpTo("shown"), "shown");
        HandleEvents();
    }
    bool HasIcon() {
        for (const QLabel* const each : Window().findChildren<QLabel*>()) {
            if (!each->pixmap(Qt::ReturnByValue).isNull()) return true;
        }
        return false;
    }
    void ExpectAnswered() {
        EXPECT_EQ(Library().Hear(), "closed");
        EXPECT_EQ(ExitCode(), 0);
    }
};

TEST_F(MessageWindowOnLinux, CaptionAndTextAreTheLibrarys) {
    Ask(48);
    EXPECT_EQ(Window().windowTitle(), u"电子签章"_qs);
    const QAccessibleInterface* const window = QAccessible::queryAccessibleInterface(&Window());
    EXPECT_EQ(window->text(QAccessible::Name), u"电子签章"_qs);
    EXPECT_EQ(window->text(QAccessible::Description), u"连接服务器失败！"_qs);
    EXPECT_EQ(Window().findChildren<QLabel*>().last()->text(), u"连接服务器失败！"_qs);
}

TEST_F(MessageWindowOnLinux, ReturnAnswers) {
    Ask(48);
    Press(Qt::Key_Return);
    ExpectAnswered();
}

TEST_F(MessageWindowOnLinux, EscapeAnswers) {
    Ask(48);
    Press(Qt::Key_Escape);
    ExpectAnswered();
}

TEST_F(MessageWindowOnLinux, ClosingAnswers) {
    Ask(48);
    Window().close();
    ExpectAnswered();
}

TEST_F(MessageWindowOnLinux, AClickOnTheButtonAnswers) {
    Ask(0);
    QTest::mouseClick(&Button(u"确定"_qs), Qt::LeftButton);
    ExpectAnswered();
}

TEST_F(MessageWindowOnLinux, IconsAreThoseOfTheStyle) {
    Ask(48);
    EXPECT_TRUE(HasIcon());
}

TEST_F(MessageWindowOnLinux, AStyleWithoutAnIconShowsNone) {
    Ask(0);
    EXPECT_FALSE(HasIcon());
}

TEST_F(MessageWindowOnLinux, ATextIsShownAsItIs) {
    Ask(64, "<b>x</b>\\n& y");
    const QLabel* const text = Window().findChildren<QLabel*>().last();
    EXPECT_EQ(text->text(), u"<b>x</b>\n& y"_qs);
    EXPECT_EQ(text->textFormat(), Qt::PlainText);
}

TEST_F(MessageWindowOnLinux, ItIsAboveAllOthers) {
    Ask(48);
    EXPECT_TRUE(Window().windowFlags() & Qt::WindowStaysOnTopHint);
}

}  // namespace
