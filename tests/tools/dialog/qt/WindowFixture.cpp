#include "tools/dialog/qt/WindowFixture.h"

#include <sys/socket.h>
#include <unistd.h>

#include <QPushButton>
#include <fstream>

#include "dialogs/Resource.h"
#include "tools/dialog/qt/TopWindow.h"

namespace {

constexpr char kScreen[] =
    R"({"screens": [{"name": "screen", "x": 0, "y": 0, "width": 1024, "height": 600,
        "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";

}  // namespace

void WindowFixture::Start(const std::string& scale) {
    const std::string file = m_folder.Below("screen.json");
    std::ofstream(file) << kScreen;
    SetVariable("QT_QPA_PLATFORM", "offscreen:configfile=" + file);
    SetVariable("QT_SCALE_FACTOR", scale);
    m_application = std::make_unique<QApplication>(m_count, m_arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    m_end = ends[1];
    m_conversation =
        std::make_unique<Conversation>(m_end, m_end, [this](int code) { m_exitCode = code; });
    m_host = std::make_unique<Host>(ends[0], ends[0], HandleEvents);
}

WindowFixture::~WindowFixture() {
    m_conversation.reset();
    if (m_end >= 0) close(m_end);
}

void WindowFixture::Build(int templateId) {
    Library().Say({"tesmark-dialog", "1"});
    ASSERT_EQ(Library().Hear(), "tesmark-dialog\t1");
    Library().Say({"dialog", std::to_string(templateId)});
    ASSERT_EQ(Library().HearUpTo("built"), "built");
}

void WindowFixture::FillTree() {
    const std::string tree = std::to_string(TESMARK_SEAL_TREE);
    Library().Say({"node", tree, "0", "请选择印章"});
    Library().Say({"node", tree, "1", "证书：alice"});
    Library().Say({"node", tree, "2", "合同专用章"});
    Library().Say({"node", tree, "2", "公章"});
    Library().Say({"expand", tree, "2"});
    Library().Say({"expand", tree, "1"});
}

void WindowFixture::Show() {
    Library().Say({"show"});
    ASSERT_EQ(Library().Hear(), "shown");
    HandleEvents();
}

void WindowFixture::Open(int templateId) {
    Build(templateId);
    if (templateId == TESMARK_DIALOG_SEAL_TREE) FillTree();
    Show();
}

void WindowFixture::HandleEvents() { QCoreApplication::processEvents(); }

QDialog& WindowFixture::Window() {
    for (QWidget* const each : QApplication::topLevelWidgets()) {
        if (auto* const window = dynamic_cast<TopWindow*>(each)) return *window;
    }
    throw std::runtime_error("no window");
}

QWidget& WindowFixture::Button(const QString& text) {
    for (QPushButton* const each : Window().findChildren<QPushButton*>()) {
        if (each->text() == text) return *each;
    }
    throw std::runtime_error("no such button");
}

void WindowFixture::Press(Qt::Key key) {
    QWidget* const focus = QApplication::focusWidget();
    QTest::keyClick(focus != nullptr ? focus : &Window(), key);
}

void WindowFixture::Resize(int width, int height) {
    Window().resize(width, height);
    HandleEvents();
}
