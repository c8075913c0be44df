// The library's end of a dialog: whatever the program says, the conversation comes to an end, and
// the logic never sees a selection that isn't there.

#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/driver/Require.h"
#include "platform/linux/DialogConversation.h"
#include "platform/linux/dialogprogram/ProtocolLine.h"

namespace {

using platform::DialogWindow;

class Program : public platform::DialogLink {
public:
    explicit Program(std::string_view said) { m_reader.Append(said); }

    bool Write(const std::string& line) override {
        REQUIRE(platform::ParseCommand(std::string_view(line).substr(0, line.size() - 1)));
        return true;
    }
    std::optional<std::string> Read(Patience) override { return m_reader.Next(); }

private:
    platform::LineReader m_reader{platform::kLongestLineFromProgram};
};

class Logic : public platform::DialogProcedure {
public:
    void OnOpen(DialogWindow& window) override {
        window.AppendRow(1001, "a");
        window.AppendRow(1002, "b");
        window.SetText(1003, "c");
        window.AppendNode(1004, window.AppendNode(1004, platform::kNoNode, "d", 1), "e", 2);
        const platform::Rectangle bounds = window.Bounds();
        if (const auto area = window.WorkArea(DialogWindow::Nearest::ToWindow))
            window.MoveTo(area->left, bounds.top);
        Look(window);
    }
    bool OnButton(DialogWindow& window, int button) override {
        Look(window);
        if (button == 2) window.End(0);
        return true;
    }
    bool OnNodeSelected(DialogWindow& window, int tree) override {
        REQUIRE(tree == 1004);
        Look(window);
        return true;
    }

private:
    void Look(DialogWindow& window) {
        for (const int list : {1001, 1002}) {
            REQUIRE(window.SelectedRow(list) >= -1);
            REQUIRE(window.SelectedRow(list) <= 0);
        }
        REQUIRE(window.SelectedNode(1004) <= 2);
        REQUIRE(window.Text(1003, 10).size() <= 9);
        const platform::Rectangle area = window.ClientArea(1005);
        REQUIRE(area.left == 0 && area.top == 0 && area.right >= 0 && area.bottom >= 0);
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view said(reinterpret_cast<const char*>(data), size);
    for (int id = 101; id <= 104; ++id) {
        Program program(said);
        Logic logic;
        const int result = platform::RunDialog(program, *platform::FindTemplate(id), logic);
        REQUIRE(result == 0 || result == platform::kDialogNotShown);
    }
    Program program(said);
    platform::RunMessageBox(program, "text", "caption", 48);
    return 0;
}
