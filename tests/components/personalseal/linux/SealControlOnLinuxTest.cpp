// The control's file as the automation of this platform calls it, and the fonts of this machine.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "components/personalseal/PersonalSeal.h"
#include "components/personalseal/SealControlCodes.h"
#include "components/personalseal/SealControlFixture.h"
#include "platform/closed/PersonalSealControl.h"

namespace {

std::string Utf8(std::u8string_view text) { return {text.begin(), text.end()}; }

class SealControlOnLinux : public SealControlFixture {
protected:
    SealControlOnLinux() : m_file(dlopen(CONTROL_FILE, RTLD_NOW | RTLD_LOCAL)) {}
    ~SealControlOnLinux() override {
        if (m_file != nullptr) dlclose(m_file);
    }
    template <typename Function>
    Function* Find(const char* name) const {
        return reinterpret_cast<Function*>(dlsym(m_file, name));
    }

    void* m_file;
};

TEST_F(SealControlOnLinux, WithoutAPlaceForTheResultTheCallFails) {
    ASSERT_NE(m_file, nullptr) << dlerror();
    EXPECT_LT(Find<decltype(GetPersonalEsealByXML)>("GetPersonalEsealByXML")("", "", nullptr), 0);
    EXPECT_LT(Find<decltype(GetPicByContent)>("GetPicByContent")(0, "", "x", nullptr), 0);
}

TEST_F(SealControlOnLinux, ARefusalLeavesANullResult) {
    ASSERT_NE(m_file, nullptr) << dlerror();
    char before = 'x';
    char* picture = &before;
    EXPECT_EQ(Find<decltype(GetPersonalEsealByCertInfo)>("GetPersonalEsealByCertInfo")(
                  nullptr, 300, 100, &picture),
              kSealNoText);
    EXPECT_EQ(picture, nullptr);
}

TEST_F(SealControlOnLinux, TheCallerFreesTheResult) {
    ASSERT_NE(m_file, nullptr) << dlerror();
    char* picture = nullptr;
    ASSERT_EQ(Find<decltype(GetPicByContent)>("GetPicByContent")(0, nullptr, "x", &picture),
              kSealDrawn);
    EXPECT_EQ(std::string(picture).substr(0, 11), "iVBORw0KGgo");
    std::free(picture);
}

TEST_F(SealControlOnLinux, NothingOfDrawingIsLoadedBeforeTheFirstPicture) {
    // In a process of its own, where no other test has drawn.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            const bool light = dlopen(CONTROL_FILE, RTLD_NOW | RTLD_LOCAL) != nullptr;
            _exit(light && !dlopen("libgd.so.3", RTLD_NOW | RTLD_NOLOAD) &&
                          !dlopen("libfontconfig.so.1", RTLD_NOW | RTLD_NOLOAD)
                      ? 0
                      : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(SealControlOnLinux, AnotherFontGivesAnotherPicture) {
    SettingsText hei;
    hei.font = "黑体";
    EXPECT_NE(Styled(hei, "印章").Pixels(), Styled(SettingsText(), "印章").Pixels());
}

TEST_F(SealControlOnLinux, CharactersThatNoSingleFaceHasStandInSeveral) {
    std::string png;
    // 汉字 and Arabic.
    ASSERT_EQ(DrawContentPicture(0, "", Utf8(u8"田\u0639"), png), kSealDrawn);
    EXPECT_EQ(DrawnPicture(png).Across().size(), 2u);
}

}  // namespace
