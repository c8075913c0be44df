#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <sstream>

#include "dialogs/Resource.h"
#include "tools/dialog/qt/Preview.h"
#include "tools/dialog/qt/SealTree.h"
#include "tools/dialog/qt/WindowFixture.h"

namespace {

// "ready 1 2 3 4" without its word.
QRect RectangleIn(const std::string& line) {
    std::istringstream fields(line);
    std::string word;
    int left = 0, top = 0, right = 0, bottom = 0;
    fields >> word >> left >> top >> right >> bottom;
    return {QPoint(left, top), QPoint(right - 1, bottom - 1)};
}

// On a small screen of 1024 by 600 pixels, at each scale.
class DialogGeometryOnLinux : public WindowFixture,
                              public testing::WithParamInterface<const char*> {
protected:
    void SetUp() override { Start(GetParam()); }

    void ExpectOnScreen() {
        const QRect screen = Window().screen()->availableGeometry();
        EXPECT_EQ(Window().geometry() & screen, Window().geometry());
        for (QWidget* const each :
             Window().findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
            if (!each->isVisible()) continue;
            EXPECT_TRUE(Window().rect().contains(each->geometry()))
                << each->accessibleName().toStdString();
        }
    }

    // Neither a button nor a label lacks room for its text.
    void ExpectLegible() {
        for (QAbstractButton* const each : Window().findChildren<QAbstractButton*>())
            EXPECT_GE(each->width(), each->fontMetrics().horizontalAdvance(each->text()));
        for (QLabel* const each : Window().findChildren<QLabel*>()) {
            if (each->wordWrap()) {
                EXPECT_GE(each->height(), each->heightForWidth(each->width()));
            } else if (!each->text().isEmpty()) {
                EXPECT_GE(each->width(), each->fontMetrics().horizontalAdvance(each->text()));
            }
        }
    }

    void ExpectReportedBoundsWithinWorkArea() {
        const QRect bounds = RectangleIn(Library().HearUpTo("ready"));
        const QRect area = RectangleIn(Library().Hear());
        EXPECT_TRUE(area.contains(bounds));
        EXPECT_TRUE(QRect(0, 0, 1024, 600).contains(area));
        EXPECT_GE(area.width(), 1020);
        EXPECT_GE(area.height(), 598);
    }
};

TEST_P(DialogGeometryOnLinux, TheListOfCertificatesIsOnTheScreenAndLegible) {
    Open(TESMARK_DIALOG_CERT);
    ExpectOnScreen();
    ExpectLegible();
}

TEST_P(DialogGeometryOnLinux, TheListOfOnlineSealsIsOnTheScreenAndLegible) {
    Open(TESMARK_DIALOG_ONLINE_SEAL);
    ExpectOnScreen();
    ExpectLegible();
}

TEST_P(DialogGeometryOnLinux, TheAddressIsOnTheScreenAndLegible) {
    Open(TESMARK_DIALOG_ONLINE_URL);
    ExpectOnScreen();
    ExpectLegible();
}

TEST_P(DialogGeometryOnLinux, TheTreeIsOnTheScreenAndLegible) {
    Open(TESMARK_DIALOG_SEAL_TREE);
    ExpectOnScreen();
    ExpectLegible();
}

TEST_P(DialogGeometryOnLinux, BoundsAndSurfaceAreTheScreensPixels) {
    Library().Say({"tesmark-dialog", "1"});
    Library().Say({"dialog", "104"});
    ExpectReportedBoundsWithinWorkArea();
    const std::string surface = Library().HearUpTo("surface");
    EXPECT_EQ(Library().Hear(), "built");
    const double scale = std::stod(GetParam());
    const QSize size = Only<Preview>().size();
    EXPECT_EQ(surface, "surface\t1005\t" + std::to_string(int(size.width() * scale)) + "\t" +
                           std::to_string(int(size.height() * scale)));
}

TEST_P(DialogGeometryOnLinux, ADialogIsMovedToPixelsOfTheScreen) {
    Build(TESMARK_DIALOG_CERT);
    Library().Say({"move", "12", "24"});
    Show();
    const double scale = std::stod(GetParam());
    EXPECT_NEAR(Window().x() * scale, 12, scale);
    EXPECT_NEAR(Window().y() * scale, 24, scale);
}

TEST_P(DialogGeometryOnLinux, LongLabelsMoveNothingOffTheScreenAndCanBeReadByScrolling) {
    const std::string longLabel(3000, 'w');
    Build(TESMARK_DIALOG_SEAL_TREE);
    Library().Say({"node", "1004", "0", longLabel});
    Show();
    ExpectOnScreen();
    auto& tree = Only<SealTree>();
    const int needed = tree.fontMetrics().horizontalAdvance(QString::fromStdString(longLabel));
    EXPECT_GE(tree.horizontalScrollBar()->maximum() + tree.viewport()->width(), needed);
}

TEST_P(DialogGeometryOnLinux, ALongRowMovesNothingOffTheScreenAndCanBeReadInTheOpenList) {
    const std::string longLabel(3000, 'w');
    Build(TESMARK_DIALOG_CERT);
    Library().Say({"row", "1001", longLabel});
    Library().Say({"select", "1001", "0"});
    Show();
    ExpectOnScreen();
    auto& list = Only<QComboBox>();
    EXPECT_TRUE(list.toolTip().contains(QString::fromStdString(longLabel)));
    list.showPopup();
    HandleEvents();
    const QRect screen = Window().screen()->availableGeometry();
    EXPECT_TRUE(screen.contains(QApplication::activePopupWidget()->geometry()));
    QScrollBar& scroll = *list.view()->horizontalScrollBar();
    const int needed = list.fontMetrics().horizontalAdvance(QString::fromStdString(longLabel));
    EXPECT_GE(scroll.maximum() + list.view()->viewport()->width(), needed);
    QTest::keyClick(list.view(), Qt::Key_Right);
    EXPECT_GT(scroll.value(), 0);
    QTest::keyClick(list.view(), Qt::Key_Left);
    EXPECT_EQ(scroll.value(), 0);
    list.hidePopup();
}

TEST_P(DialogGeometryOnLinux, AMessageOfAnyLengthStaysOnTheScreenAndCanBeReadByScrolling) {
    std::string text;
    for (int i = 0; i < 400; ++i) text += "连接服务器失败！";
    Library().Say({"tesmark-dialog", "1"});
    Library().Say({"message", "48", "电子签章", text});
    EXPECT_EQ(Library().HearUpTo("shown"), "shown");
    ExpectOnScreen();
    EXPECT_TRUE(Window().rect().contains(Button(u"确定"_qs).geometry()));
    auto& area = Only<QScrollArea>();
    EXPECT_EQ(area.horizontalScrollBar()->maximum(), 0);
    EXPECT_GT(area.verticalScrollBar()->maximum(), 0);
    EXPECT_GE(area.widget()->height(), area.widget()->heightForWidth(area.viewport()->width()));
}

TEST_P(DialogGeometryOnLinux, TheTreesDialogGrowsAndShrinksWithItsButtonsInSight) {
    Open(TESMARK_DIALOG_SEAL_TREE);
    const QSize frame = Window().frameGeometry().size() - Window().size();
    const QSize largest = Window().screen()->availableGeometry().size() - frame;
    for (const QSize& size : {largest, Window().minimumSizeHint()}) {
        Window().move(0, 0);
        Resize(size.width(), size.height());
        ExpectOnScreen();
        ExpectLegible();
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, DialogGeometryOnLinux,
                         testing::Values("1", "1.25", "1.5", "2", "3"), [](const auto& scale) {
                             std::string name = scale.param;
                             std::replace(name.begin(), name.end(), '.', '_');
                             return name;
                         });

}  // namespace
