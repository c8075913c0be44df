#include <QAccessible>
#include <QGroupBox>
#include <QImage>
#include <QLabel>

#include "dialogs/Resource.h"
#include "tools/dialog/qt/Preview.h"
#include "tools/dialog/qt/SealTree.h"
#include "tools/dialog/qt/WindowFixture.h"

namespace {

QString AccessibleText(QWidget& widget, QAccessible::Text kind) {
    const QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&widget);
    return interface == nullptr ? QString() : interface->text(kind);
}

QPalette Dark() {
    QPalette colours;
    colours.setColor(QPalette::Window, QColor(32, 32, 32));
    colours.setColor(QPalette::WindowText, Qt::white);
    colours.setColor(QPalette::Base, QColor(24, 24, 24));
    colours.setColor(QPalette::Text, Qt::white);
    colours.setColor(QPalette::Button, QColor(48, 48, 48));
    colours.setColor(QPalette::ButtonText, Qt::white);
    return colours;
}

struct Shades {
    int darkest = 255;
    int lightest = 0;
    int contrast() const { return lightest - darkest; }
};

Shades ShadesOf(QWidget& widget) {
    const QImage image = widget.grab().toImage();
    Shades shades;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int shade = qGray(image.pixel(x, y));
            shades.darkest = std::min(shades.darkest, shade);
            shades.lightest = std::max(shades.lightest, shade);
        }
    }
    return shades;
}

class DialogAppearanceOnLinux : public WindowFixture, public testing::WithParamInterface<int> {
protected:
    void SetUp() override { Start(); }

    // Words that assistive technology could say, and a control that has none to say.
    void ExpectEveryControlNamed() {
        EXPECT_FALSE(AccessibleText(Window(), QAccessible::Name).isEmpty());
        const QWidgetList controls =
            Window().findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
        EXPECT_FALSE(controls.isEmpty());
        for (QWidget* const each : controls)
            EXPECT_FALSE(AccessibleText(*each, QAccessible::Name).isEmpty())
                << each->metaObject()->className();
    }
};

TEST_P(DialogAppearanceOnLinux, EveryControlHasAnAccessibleName) {
    Open(GetParam());
    ExpectEveryControlNamed();
}

TEST_P(DialogAppearanceOnLinux, EveryTextStandsOutInTheDarkToo) {
    Open(GetParam());
    QApplication::setPalette(Dark());
    HandleEvents();
    for (QLabel* const each : Window().findChildren<QLabel*>()) {
        EXPECT_LT(ShadesOf(*each).darkest, 64);
        EXPECT_GT(ShadesOf(*each).contrast(), 128);
    }
    for (const QString& button : {u"确定"_qs, u"取消"_qs}) {
        EXPECT_LT(ShadesOf(Button(button)).darkest, 64);
        EXPECT_GT(ShadesOf(Button(button)).contrast(), 128);
    }
}

INSTANTIATE_TEST_SUITE_P(Templates, DialogAppearanceOnLinux, testing::Values(101, 102, 103, 104));

class PreviewAppearanceOnLinux : public WindowFixture {
protected:
    void SetUp() override {
        Start();
        Build(TESMARK_DIALOG_SEAL_TREE);
        FillTree();
        Library().Say({"text", "1005", "此证书包含印章 2 个！"});
        Show();
    }
};

TEST_F(PreviewAppearanceOnLinux, ThePreviewsTextIsItsAccessibleDescription) {
    auto& preview = Only<Preview>();
    EXPECT_EQ(AccessibleText(preview, QAccessible::Name), u"印章预览"_qs);
    EXPECT_EQ(AccessibleText(preview, QAccessible::Description), u"此证书包含印章 2 个！"_qs);
    Press(Qt::Key_Escape);
    Library().Say({"fill", "1005", "f0f0f0"});
    HandleEvents();
    EXPECT_EQ(AccessibleText(preview, QAccessible::Description), QString());
}

TEST_F(PreviewAppearanceOnLinux, TextsOfThePreviewAndTheTreeAreLightOnDarkWhereTheSessionIs) {
    EXPECT_GT(ShadesOf(Only<Preview>()).lightest, 200);
    QApplication::setPalette(Dark());
    HandleEvents();
    EXPECT_LT(ShadesOf(Only<Preview>()).darkest, 64);
    EXPECT_GT(ShadesOf(Only<Preview>()).lightest, 200);
    EXPECT_LT(ShadesOf(*Only<SealTree>().viewport()).darkest, 64);
    EXPECT_GT(ShadesOf(*Only<SealTree>().viewport()).lightest, 200);
}

TEST_F(PreviewAppearanceOnLinux, AllOfALongTextOfThePreviewIsInItsToolTip) {
    Press(Qt::Key_Escape);
    Library().Say({"text", "1005", "<b>&" + std::string(5000, 'w')});
    HandleEvents();
    EXPECT_TRUE(Only<Preview>().toolTip().contains(u"&lt;b&gt;&amp;w"));
}

}  // namespace
