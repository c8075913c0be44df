#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

#include "dialogs/Resource.h"
#include "tools/dialog/qt/SealTree.h"
#include "tools/dialog/qt/WindowFixture.h"

namespace {

class DialogWindowOnLinux : public WindowFixture {
protected:
    void SetUp() override { Start(); }

    void OpenList() {
        Build(TESMARK_DIALOG_CERT);
        for (const char* const row : {"-----请选择-----", "alice", "bob"})
            Library().Say({"row", "1001", row});
        Library().Say({"select", "1001", "0"});
        Show();
    }
    // The accessible names of what has the focus, from the beginning on.
    std::vector<QString> TabOrder(int count) {
        std::vector<QString> names;
        for (int i = 0; i < count; ++i) {
            names.push_back(QApplication::focusWidget()->accessibleName());
            Press(Qt::Key_Tab);
        }
        return names;
    }
};

TEST_F(DialogWindowOnLinux, TheTabulatorKeyGoesThroughAListsDialogInTheTemplatesOrder) {
    OpenList();
    EXPECT_EQ(TabOrder(4), (std::vector<QString>{u"确定"_qs, u"取消"_qs, u"证书"_qs, u"确定"_qs}));
}

TEST_F(DialogWindowOnLinux, TheTabulatorKeyGoesThroughTheAddressesDialogInTheTemplatesOrder) {
    Open(TESMARK_DIALOG_ONLINE_URL);
    EXPECT_EQ(TabOrder(5), (std::vector<QString>{u"确定"_qs, u"取消"_qs, u"URL地址"_qs,
                                                 u"测试连接"_qs, u"确定"_qs}));
}

TEST_F(DialogWindowOnLinux, TheTabulatorKeyGoesThroughTheTreesDialogInTheTemplatesOrder) {
    Open(TESMARK_DIALOG_SEAL_TREE);
    EXPECT_EQ(TabOrder(4),
              (std::vector<QString>{u"确定"_qs, u"取消"_qs, u"请选择印章"_qs, u"确定"_qs}));
}

TEST_F(DialogWindowOnLinux, AListsRowIsPickedAndConfirmedByKeyboardAlone) {
    OpenList();
    Press(Qt::Key_Tab);
    Press(Qt::Key_Tab);
    Press(Qt::Key_Down);
    Press(Qt::Key_Down);
    Press(Qt::Key_Return);
    EXPECT_EQ(Library().Hear(), "row\t1001\t2");
    EXPECT_EQ(Library().Hear(), "button\t1");
}

TEST_F(DialogWindowOnLinux, ARowIsPickedInTheOpenList) {
    OpenList();
    Only<QComboBox>().setFocus();
    Press(Qt::Key_F4);
    QWidget* const list = QApplication::activePopupWidget();
    ASSERT_NE(list, nullptr);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    HandleEvents();
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(Library().Unheard(), "");
    Press(Qt::Key_Return);
    EXPECT_EQ(Library().Hear(), "row\t1001\t1");
}

TEST_F(DialogWindowOnLinux, AListTakesNoFreeText) {
    OpenList();
    Only<QComboBox>().setFocus();
    QTest::keyClicks(&Only<QComboBox>(), u"xyz"_qs);
    Press(Qt::Key_Return);
    EXPECT_EQ(Library().Hear(), "button\t1");
    EXPECT_EQ(Only<QComboBox>().currentText(), u"-----请选择-----"_qs);
}

TEST_F(DialogWindowOnLinux, AListHasNoRowSelectedUntilTheLibraryOrTheUserSelectsOne) {
    Build(TESMARK_DIALOG_CERT);
    Library().Say({"row", "1001", "alice"});
    Show();
    EXPECT_EQ(Only<QComboBox>().currentIndex(), -1);
    EXPECT_EQ(Only<QComboBox>().count(), 1);
}

TEST_F(DialogWindowOnLinux, EscapePressesCancel) {
    OpenList();
    Press(Qt::Key_Escape);
    EXPECT_EQ(Library().Hear(), "button\t2");
    EXPECT_TRUE(Window().isVisible());
}

TEST_F(DialogWindowOnLinux, ReturnPressesTheButtonThatHasTheFocus) {
    OpenList();
    Press(Qt::Key_Tab);
    Press(Qt::Key_Return);
    EXPECT_EQ(Library().Hear(), "button\t2");
}

TEST_F(DialogWindowOnLinux, ClosingIsReportedAndLeftToTheLibrary) {
    OpenList();
    Window().close();
    EXPECT_EQ(Library().Hear(), "close");
    EXPECT_TRUE(Window().isVisible());
    EXPECT_EQ(ExitCode(), std::nullopt);
}

TEST_F(DialogWindowOnLinux, ANodeIsPickedAndConfirmedByKeyboardAlone) {
    Open(TESMARK_DIALOG_SEAL_TREE);
    Press(Qt::Key_Tab);
    Press(Qt::Key_Tab);
    EXPECT_EQ(Library().Unheard(), "");
    Press(Qt::Key_Down);
    EXPECT_EQ(Library().Hear(), "node\t1004\t2");
    EXPECT_EQ(Library().Hear(), "selected\t1004");
    Library().Say({"done"});
    Press(Qt::Key_Down);
    EXPECT_EQ(Library().Hear(), "node\t1004\t3");
    EXPECT_EQ(Library().Hear(), "selected\t1004");
    Library().Say({"done"});
    Press(Qt::Key_Return);
    EXPECT_EQ(Library().Hear(), "button\t1");
}

TEST_F(DialogWindowOnLinux, ANodeIsPickedByMouseAndNotGivenUpByAClickBeside) {
    Open(TESMARK_DIALOG_SEAL_TREE);
    auto& tree = Only<SealTree>();
    const QRect place = tree.visualItemRect(tree.Node(4));
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, place.center());
    EXPECT_EQ(Library().Hear(), "node\t1004\t4");
    EXPECT_EQ(Library().Hear(), "selected\t1004");
    Library().Say({"done"});
    const QPoint beside = tree.viewport()->rect().bottomRight() - QPoint(3, 3);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, beside);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::ControlModifier, place.center());
    EXPECT_EQ(Library().Unheard(), "");
    EXPECT_EQ(tree.Selected(), 4);
}

TEST_F(DialogWindowOnLinux, NoNodeIsSelectedAtTheBeginningAndAllThatWereExpandedAre) {
    Open(TESMARK_DIALOG_SEAL_TREE);
    auto& tree = Only<SealTree>();
    EXPECT_EQ(tree.Selected(), 0);
    EXPECT_TRUE(tree.Node(1)->isExpanded());
    EXPECT_TRUE(tree.Node(2)->isExpanded());
    EXPECT_EQ(tree.Node(5), nullptr);
}

TEST_F(DialogWindowOnLinux, TwentyCertificatesWithAHundredSealsEachAreAllThere) {
    Build(TESMARK_DIALOG_SEAL_TREE);
    Library().Say({"node", "1004", "0", "请选择印章"});
    for (int certificate = 0; certificate < 20; ++certificate) {
        const std::string node = std::to_string(2 + certificate * 101);
        Library().Say({"node", "1004", "1", "证书"});
        for (int seal = 0; seal < 100; ++seal) Library().Say({"node", "1004", node, "印章"});
        Library().Say({"expand", "1004", node});
    }
    Library().Say({"expand", "1004", "1"});
    Show();
    auto& tree = Only<SealTree>();
    EXPECT_EQ(tree.Node(1)->childCount(), 20);
    EXPECT_EQ(tree.Node(1)->child(19)->childCount(), 100);
    tree.setFocus();
    Press(Qt::Key_End);
    EXPECT_EQ(Library().Hear(), "node\t1004\t2021");
    EXPECT_TRUE(tree.viewport()->rect().contains(tree.visualItemRect(tree.Node(2021)).topLeft()));
}

TEST_F(DialogWindowOnLinux, WhatTheUserDoesMeanwhileIsReportedInOrderOnceTheEventWasHandled) {
    Open(TESMARK_DIALOG_ONLINE_URL);
    QTest::mouseClick(&Button(u"测试连接"_qs), Qt::LeftButton);
    EXPECT_EQ(Library().Hear(), "button\t1006");
    Only<QLineEdit>().setFocus();
    QTest::keyClicks(&Only<QLineEdit>(), u"a"_qs);
    QTest::mouseClick(&Button(u"测试连接"_qs), Qt::LeftButton);
    QTest::keyClicks(&Only<QLineEdit>(), u"b"_qs);
    QTest::mouseClick(&Button(u"确定"_qs), Qt::LeftButton);
    EXPECT_EQ(Library().Unheard(), "");
    Library().Say({"done"});
    EXPECT_EQ(Library().Hear(), "text\t1003\ta");
    EXPECT_EQ(Library().Hear(), "button\t1006");
    EXPECT_EQ(Library().Unheard(), "");
    Library().Say({"done"});
    EXPECT_EQ(Library().Hear(), "text\t1003\tab");
    EXPECT_EQ(Library().Hear(), "button\t1");
}

TEST_F(DialogWindowOnLinux, TheFieldShowsTheLibrarysTextFromItsBeginning) {
    Build(TESMARK_DIALOG_ONLINE_URL);
    Library().Say({"text", "1003", "192.0.2.45/" + std::string(400, 'x')});
    Show();
    EXPECT_EQ(Only<QLineEdit>().cursorPosition(), 0);
    EXPECT_TRUE(Only<QLineEdit>().text().startsWith(u"192.0.2.45/x"));
    QTest::mouseClick(&Button(u"确定"_qs), Qt::LeftButton);
    EXPECT_EQ(Library().Hear(), "button\t1");
}

TEST_F(DialogWindowOnLinux, AFieldThatIsToldToBeDisabledLooksItAndStaysUsable) {
    Build(TESMARK_DIALOG_ONLINE_URL);
    Library().Say({"text", "1003", "x"});
    Library().Say({"disabled", "1003"});
    Show();
    auto& field = Only<QLineEdit>();
    const QPalette session = QGuiApplication::palette();
    EXPECT_EQ(field.palette().color(QPalette::Active, QPalette::Text),
              session.color(QPalette::Disabled, QPalette::Text));
    EXPECT_NE(field.palette().color(QPalette::Active, QPalette::Text),
              session.color(QPalette::Active, QPalette::Text));
    field.setFocus();
    QTest::keyClicks(&field, u"y"_qs);
    Press(Qt::Key_Return);
    EXPECT_EQ(Library().Hear(), "text\t1003\tyx");
    EXPECT_EQ(Library().Hear(), "button\t1");
}

TEST_F(DialogWindowOnLinux, ALongTextFitsTheProtocol) {
    Open(TESMARK_DIALOG_ONLINE_URL);
    Only<QLineEdit>().setText(QString(40'000, u'章'));
    QTest::mouseClick(&Button(u"确定"_qs), Qt::LeftButton);
    EXPECT_LT(Library().Hear().size(), 65'536U);
    EXPECT_EQ(Library().Hear(), "button\t1");
}

TEST_F(DialogWindowOnLinux, AFieldTakesNoMoreThanAnAddressHasRoomFor) {
    Open(TESMARK_DIALOG_ONLINE_URL);
    auto& field = Only<QLineEdit>();
    field.setFocus();
    field.setText(QString(490, u'x'));
    field.setCursorPosition(490);
    QTest::keyClicks(&field, u"abc"_qs);
    EXPECT_EQ(field.text(), QString(490, u'x') + u"ab"_qs);
    QTest::keyClick(&field, Qt::Key_Backspace);
    field.insert(u"章"_qs);
    EXPECT_EQ(field.text(), QString(490, u'x') + u"a"_qs);
    field.clear();
    field.insert(QString(1000, u'y'));
    EXPECT_EQ(field.text(), QString(492, u'y'));
    field.clear();
    field.insert(QString(246, u'章'));
    field.insert(u"y"_qs);
    EXPECT_EQ(field.text(), QString(246, u'章'));
    Press(Qt::Key_Return);
    EXPECT_EQ(Library().Hear(), "text\t1003\t" + QString(246, u'章').toStdString());
    EXPECT_EQ(Library().Hear(), "button\t1");
}

TEST_F(DialogWindowOnLinux, TheWindowIsAboveAllOthersAndHasNoOwner) {
    OpenList();
    EXPECT_TRUE(Window().windowFlags() & Qt::WindowStaysOnTopHint);
    EXPECT_EQ(Window().parentWidget(), nullptr);
    EXPECT_EQ(Window().windowTitle(), u"电子签章"_qs);
}

TEST_F(DialogWindowOnLinux, TheProgramEndsWithTheDialog) {
    OpenList();
    Press(Qt::Key_Return);
    Library().Say({"end"});
    HandleEvents();
    EXPECT_EQ(ExitCode(), 0);
}

TEST_F(DialogWindowOnLinux, TheProgramEndsWithItsHost) {
    OpenList();
    Library().Leave();
    HandleEvents();
    EXPECT_EQ(ExitCode(), 0);
}

TEST_F(DialogWindowOnLinux, ALineThatIsNoneEndsTheProgramWithAFailure) {
    OpenList();
    Library().Say({"rubbish"});
    HandleEvents();
    EXPECT_EQ(ExitCode(), 1);
}

}  // namespace
