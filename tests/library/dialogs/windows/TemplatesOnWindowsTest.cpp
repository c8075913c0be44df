// The templates as they stand in the built library's file.
#include <gmock/gmock.h>
#include <windows.h>
// After the system's own header.
#include <commctrl.h>

#include <cstdint>
#include <cstring>
#include <ostream>
#include <vector>

namespace {

using testing::ElementsAre;

constexpr WORD kSimplifiedChinese = 2052;
// In whatever letters: the system doesn't tell them apart, and the compiler writes these.
constexpr char kTreeClass[] = "SYSTREEVIEW32";
constexpr DWORD kNoNumber = 0xFFFFFFFF;
constexpr DWORD kShown = WS_CHILD | WS_VISIBLE;

// Dialog units.
struct Place {
    short left, top, width, height;
    bool operator==(const Place&) const = default;
};

struct Control {
    DWORD number;
    std::string kind;
    DWORD style;
    DWORD extendedStyle;
    std::string text;
    Place place;
    bool operator==(const Control&) const = default;
};

void PrintTo(const Control& control, std::ostream* out) {
    *out << control.number << ' ' << control.kind << ' ' << std::hex << control.style << ' '
         << control.extendedStyle << std::dec << ' ' << control.text << ' ' << control.place.left
         << ',' << control.place.top << ',' << control.place.width << ',' << control.place.height;
}

struct Template {
    DWORD style = 0;
    DWORD extendedStyle = 0;
    Place place{};
    std::string menu, title, font;
    WORD points = 0;
    std::vector<Control> controls;
};

// The extended form of a template, field by field.
class Reader {
public:
    explicit Reader(std::string bytes) : m_bytes(std::move(bytes)) {}

    template <typename T>
    T Take() {
        T value{};
        if (m_at + sizeof value <= m_bytes.size()) {
            std::memcpy(&value, m_bytes.data() + m_at, sizeof value);
        }
        m_at += sizeof value;
        return value;
    }
    Place TakePlace() {
        const short left = Take<short>(), top = Take<short>(), width = Take<short>();
        return {left, top, width, Take<short>()};
    }
    // A text, or the number that stands in its place, in GBK.
    std::string TakeText() {
        std::wstring text;
        for (WORD unit = Take<WORD>(); unit != 0 && m_at <= m_bytes.size(); unit = Take<WORD>()) {
            if (unit == 0xFFFF) return "#" + std::to_string(Take<WORD>());
            text += static_cast<wchar_t>(unit);
        }
        char narrow[256] = {};
        WideCharToMultiByte(936, 0, text.c_str(), -1, narrow, sizeof narrow, nullptr, nullptr);
        return narrow;
    }
    void Align() { m_at = (m_at + 3) / 4 * 4; }
    bool AtEnd() const { return (m_at + 3) / 4 * 4 == (m_bytes.size() + 3) / 4 * 4; }

private:
    std::string m_bytes;
    std::size_t m_at = 0;
};

Control ReadControl(Reader& reader) {
    Control control{};
    reader.Align();
    reader.Take<DWORD>();
    control.extendedStyle = reader.Take<DWORD>();
    control.style = reader.Take<DWORD>();
    control.place = reader.TakePlace();
    control.number = reader.Take<DWORD>();
    control.kind = reader.TakeText();
    control.text = reader.TakeText();
    EXPECT_EQ(reader.Take<WORD>(), 0) << "data of its own";
    return control;
}

Template Parse(const std::string& bytes) {
    Template parsed;
    Reader reader(bytes);
    EXPECT_EQ(reader.Take<WORD>(), 1);
    EXPECT_EQ(reader.Take<WORD>(), 0xFFFF);
    reader.Take<DWORD>();
    parsed.extendedStyle = reader.Take<DWORD>();
    parsed.style = reader.Take<DWORD>();
    const WORD count = reader.Take<WORD>();
    parsed.place = reader.TakePlace();
    parsed.menu = reader.TakeText();
    EXPECT_EQ(reader.TakeText(), "") << "a class of its own";
    parsed.title = reader.TakeText();
    parsed.points = reader.Take<WORD>();
    reader.Take<DWORD>();
    parsed.font = reader.TakeText();
    for (WORD i = 0; i < count; ++i) parsed.controls.push_back(ReadControl(reader));
    EXPECT_TRUE(reader.AtEnd());
    return parsed;
}

class TemplatesOnWindows : public testing::Test {
protected:
    ~TemplatesOnWindows() override { FreeLibrary(m_file); }

    // Empty if there is none in this language.
    std::string Resource(int id, WORD language) const {
        const HRSRC found = FindResourceExA(m_file, reinterpret_cast<LPCSTR>(RT_DIALOG),
                                            MAKEINTRESOURCEA(id), language);
        if (found == nullptr) return {};
        const void* const bytes = LockResource(LoadResource(m_file, found));
        return {static_cast<const char*>(bytes), SizeofResource(m_file, found)};
    }
    // What all have alike is looked at here.
    Template Read(int id) const {
        const Template read = Parse(Resource(id, kSimplifiedChinese));
        EXPECT_EQ(read.extendedStyle, static_cast<DWORD>(WS_EX_TOPMOST));
        EXPECT_EQ(read.menu, "");
        EXPECT_EQ(read.title, "");
        EXPECT_EQ(read.font, "MS Shell Dlg");
        EXPECT_EQ(read.points, 8);
        return read;
    }

    HMODULE m_file = LoadLibraryExA(LIBRARY_FILE, nullptr, LOAD_LIBRARY_AS_DATAFILE);
};

constexpr DWORD kWindow = DS_SETFONT | WS_POPUP | WS_SYSMENU;
constexpr DWORD kButton = kShown | WS_TABSTOP;
constexpr DWORD kList = kShown | WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWN | CBS_SORT;
constexpr DWORD kLabel = kShown | WS_GROUP | SS_LEFT;

Control Ok(Place place) { return {1, "#128", kButton | BS_DEFPUSHBUTTON, 0, "确定", place}; }

Control Push(DWORD number, const char* text, Place place) {
    return {number, "#128", kButton | BS_PUSHBUTTON, 0, text, place};
}

Control Label(const char* text, Place place) { return {kNoNumber, "#130", kLabel, 0, text, place}; }

TEST_F(TemplatesOnWindows, TheListOfCertificates) {
    const Template read = Read(101);
    EXPECT_EQ(read.style, kWindow | DS_CENTER);
    EXPECT_EQ(read.place, (Place{0, 0, 167, 76}));
    EXPECT_THAT(read.controls, ElementsAre(Ok({33, 55, 50, 14}), Push(2, "取消", {87, 55, 50, 14}),
                                           Control{1001, "#133", kList, 0, "", {7, 7, 153, 62}}));
}

TEST_F(TemplatesOnWindows, TheListOfOnlineSeals) {
    const Template read = Read(102);
    EXPECT_EQ(read.style, kWindow | DS_CENTER);
    EXPECT_EQ(read.place, (Place{0, 0, 167, 76}));
    EXPECT_THAT(read.controls, ElementsAre(Ok({32, 54, 50, 14}), Push(2, "取消", {92, 54, 50, 14}),
                                           Control{1002, "#133", kList, 0, "", {7, 10, 150, 83}}));
}

TEST_F(TemplatesOnWindows, TheAddressOfTheOnlineService) {
    const Template read = Read(103);
    EXPECT_EQ(read.style, kWindow | DS_CENTER);
    EXPECT_EQ(read.place, (Place{0, 0, 262, 92}));
    const Control field{1003, "#129", kButton | WS_BORDER | ES_AUTOHSCROLL,
                        0,    "",     {75, 24, 129, 14}};
    EXPECT_THAT(read.controls,
                ElementsAre(Ok({59, 71, 50, 14}), Push(2, "取消", {151, 71, 50, 14}), field,
                            Label("URL地址：", {12, 27, 38, 8}), Label("http://", {51, 27, 22, 8}),
                            Label("/QelmServlet", {207, 27, 42, 8}),
                            Label("输入格式--IP/工程名，如：192.0.2.45/qelm42", {16, 49, 178, 8}),
                            Push(1006, "测试连接", {198, 46, 50, 14})));
}

TEST_F(TemplatesOnWindows, TheTreeOfSealsIsNotCentredByTheSystem) {
    const Template read = Read(104);
    EXPECT_EQ(read.style, kWindow);
    EXPECT_EQ(read.place, (Place{0, 0, 355, 206}));
    const Control tree{
        1004, kTreeClass, kButton | WS_BORDER | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT,
        0,    "",         {7, 7, 128, 179}};
    const Control preview{1005,
                          "#130",
                          kShown | WS_GROUP | SS_CENTER | SS_CENTERIMAGE,
                          WS_EX_TRANSPARENT,
                          "",
                          {156, 20, 184, 144}};
    const Control group{kNoNumber, "#128", kShown | BS_GROUPBOX, 0, "印章预览", {146, 7, 202, 161}};
    EXPECT_THAT(read.controls,
                ElementsAre(Ok({219, 177, 50, 14}), Push(2, "取消", {287, 177, 50, 14}), tree,
                            preview, group));
}

TEST_F(TemplatesOnWindows, ThereAreFourInSimplifiedChineseAlone) {
    std::vector<int> ids;
    std::vector<int> others;
    for (int id = 1; id <= 200; ++id) {
        if (!Resource(id, kSimplifiedChinese).empty()) ids.push_back(id);
    }
    EnumResourceLanguagesA(
        m_file, reinterpret_cast<LPCSTR>(RT_DIALOG), MAKEINTRESOURCEA(101),
        [](HMODULE, LPCSTR, LPCSTR, WORD language, LONG_PTR list) {
            reinterpret_cast<std::vector<int>*>(list)->push_back(language);
            return TRUE;
        },
        reinterpret_cast<LONG_PTR>(&others));
    EXPECT_THAT(ids, ElementsAre(101, 102, 103, 104));
    EXPECT_THAT(others, ElementsAre(kSimplifiedChinese));
}

}  // namespace
