#include <QByteArray>
#include <QImage>
#include <QPainter>

#include "dialogs/Resource.h"
#include "tools/dialog/qt/Preview.h"
#include "tools/dialog/qt/WindowFixture.h"

namespace {

constexpr QRgb kGround = qRgb(240, 240, 240);
constexpr QRgb kRed = qRgb(255, 0, 0);
constexpr QRgb kBlue = qRgb(0, 0, 255);

class PreviewOnLinux : public WindowFixture, public testing::WithParamInterface<const char*> {
protected:
    void SetUp() override {
        Start(GetParam());
        Open(TESMARK_DIALOG_SEAL_TREE);
        // Only while an event is being handled does the library paint.
        Button(u"取消"_qs).setFocus();
        Press(Qt::Key_Return);
        ASSERT_EQ(Library().Hear(), "button\t2");
    }

    // Red and blue pixels in turn, as on a chess board.
    static std::string Board(int width, int height) {
        QByteArray pixels;
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const bool red = (x + y) % 2 == 0;
                pixels.append(red ? "\xFF\0\0" : "\0\0\xFF", 3);
            }
        }
        return pixels.toBase64().toStdString();
    }
    void Fill() { Library().Say({"fill", "1005", "f0f0f0"}); }
    void Draw(const QRect& place, int width, int height) {
        const auto number = [](int value) { return std::to_string(value); };
        Library().Say({"picture", "1005", number(place.left()), number(place.top()),
                       number(place.left() + place.width()), number(place.top() + place.height()),
                       number(width), number(height), Board(width, height)});
        HandleEvents();
    }
    QRect Middle(int width, int height) {
        const QSize around = Only<Preview>().Surface() - QSize(width, height);
        return {around.width() / 2, around.height() / 2, width, height};
    }
    // As it stands in the window, pixels of the screen.
    QImage Screen() {
        HandleEvents();
        return Only<Preview>().grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    // A board of one pixel's fields at `place`, sharp, and the ground around it.
    static void ExpectBoard(const QImage& screen, const QRect& place) {
        int wrong = 0;
        for (int y = 0; y < place.height(); ++y) {
            for (int x = 0; x < place.width(); ++x) {
                const QRgb due = (x + y) % 2 == 0 ? kRed : kBlue;
                wrong += screen.pixel(place.left() + x, place.top() + y) == due ? 0 : 1;
            }
        }
        EXPECT_EQ(wrong, 0) << std::hex << screen.pixel(place.left(), place.top()) << " "
                            << screen.pixel(place.left() + 1, place.top());
        EXPECT_EQ(screen.pixel(place.left() - 1, place.top()), kGround);
        EXPECT_EQ(screen.pixel(place.left() + place.width(), place.top()), kGround);
        EXPECT_EQ(screen.pixel(place.left(), place.top() - 1), kGround);
        EXPECT_EQ(screen.pixel(place.left(), place.top() + place.height()), kGround);
    }
};

TEST_P(PreviewOnLinux, APictureAtItsOwnSizeIsSharpPixelByPixel) {
    Fill();
    Draw(Middle(41, 30), 41, 30);
    ExpectBoard(Screen(), Middle(41, 30));
}

// Where the preview begins between two pixels of the screen, too.
TEST_P(PreviewOnLinux, APictureIsSharpInTheWindowAsAWhole) {
    Fill();
    Draw(Middle(40, 30), 40, 30);
    const QImage window = Window().grab().toImage().convertToFormat(QImage::Format_RGB32);
    int sharp = 0;
    for (int y = 0; y < window.height(); ++y) {
        for (int x = 0; x < window.width(); ++x) {
            const QRgb pixel = window.pixel(x, y);
            sharp += pixel == kRed || pixel == kBlue ? 1 : 0;
        }
    }
    EXPECT_EQ(sharp, 40 * 30);
}

TEST_P(PreviewOnLinux, TheFillCoversTheWholeSurface) {
    Fill();
    const QImage screen = Screen();
    EXPECT_EQ(screen.pixel(0, 0), kGround);
    EXPECT_EQ(screen.pixel(screen.width() - 1, screen.height() - 1), kGround);
    EXPECT_EQ(screen.pixel(screen.width() / 2, screen.height() / 2), kGround);
}

TEST_P(PreviewOnLinux, APictureThatIsTooLargeFillsTheSurface) {
    Fill();
    const QSize surface = Only<Preview>().Surface();
    Draw({{0, 0}, surface}, surface.width() * 2, 8);
    const QImage screen = Screen();
    EXPECT_NE(screen.pixel(1, 1), kGround);
    EXPECT_NE(screen.pixel(surface.width() - 2, surface.height() - 2), kGround);
}

TEST_P(PreviewOnLinux, ThePictureIsStillThereAfterTheWindowWasHidden) {
    Fill();
    Draw(Middle(40, 30), 40, 30);
    const QImage before = Window().grab().toImage();
    Window().hide();
    HandleEvents();
    Window().show();
    HandleEvents();
    EXPECT_EQ(Window().grab().toImage(), before);
}

TEST_P(PreviewOnLinux, ThePictureStandsInTheMiddleAfterAResize) {
    Fill();
    Draw(Middle(40, 30), 40, 30);
    const QRect before = Middle(40, 30);
    Resize(Window().minimumSizeHint().width() + 21, Window().minimumSizeHint().height() + 33);
    ASSERT_NE(Middle(40, 30), before);
    ExpectBoard(Screen(), Middle(40, 30));
}

TEST_P(PreviewOnLinux, ThePictureFillsASurfaceThatHasBecomeTooSmall) {
    Resize(Window().screen()->size().width() - 10, Window().screen()->size().height() - 10);
    const int height = Only<Preview>().Surface().height() - 2;
    Fill();
    Draw(Middle(9, height), 9, height);
    Resize(Window().minimumSizeHint().width(), Window().minimumSizeHint().height());
    const QImage screen = Screen();
    EXPECT_NE(screen.pixel(1, 1), kGround);
    EXPECT_NE(screen.pixel(screen.width() - 2, screen.height() / 2), kGround);
}

TEST_P(PreviewOnLinux, TheSurfaceIsReportedWithTheNextEventAfterAResize) {
    Resize(Window().width() - 20, Window().height() - 10);
    const QSize surface = Only<Preview>().Surface();
    Press(Qt::Key_Escape);
    Library().Say({"done"});
    EXPECT_EQ(Library().Hear(), "surface\t1005\t" + std::to_string(surface.width()) + "\t" +
                                    std::to_string(surface.height()));
    EXPECT_EQ(Library().Hear(), "button\t2");
}

TEST_P(PreviewOnLinux, ATextHidesThePaintAndPaintTheText) {
    const QImage empty = Screen();
    Fill();
    Draw(Middle(40, 30), 40, 30);
    const QImage painted = Screen();
    Library().Say({"text", "1005", "此证书包含印章 2 个！"});
    const QImage text = Screen();
    EXPECT_NE(text, empty);
    EXPECT_NE(text, painted);
    EXPECT_EQ(text.pixel(0, 0), empty.pixel(0, 0));
    Fill();
    Draw(Middle(40, 30), 40, 30);
    EXPECT_EQ(Screen(), painted);
    Library().Say({"text", "1005", ""});
    EXPECT_EQ(Screen(), empty);
}

INSTANTIATE_TEST_SUITE_P(Scales, PreviewOnLinux, testing::Values("1", "1.25", "1.5", "2", "3"),
                         [](const auto& scale) {
                             std::string name = scale.param;
                             std::replace(name.begin(), name.end(), '.', '_');
                             return name;
                         });

}  // namespace
