// The widths of clips' names against the program's own font.
#include <SDL_ttf.h>
#include <gtest/gtest.h>

#include "tools/base/texts.h"
#include "tools/clip/jobs/clip_names.h"
#include "tools/clip/media/pixel_font.h"

namespace {

class PanelFont : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(TTF_Init(), 0);
        small_ = TTF_OpenFont(FONT_FILE, 9);
        large_ = TTF_OpenFont(FONT_FILE, 18);
        ASSERT_NE(small_, nullptr);
        ASSERT_NE(large_, nullptr);
    }
    void TearDown() override {
        TTF_CloseFont(small_);
        TTF_CloseFont(large_);
        TTF_Quit();
    }

    static int widthOf(TTF_Font* font, const std::string& text) {
        int width = 0;
        TTF_SizeText(font, text.c_str(), &width, nullptr);
        return width;
    }

    TTF_Font* small_ = nullptr;
    TTF_Font* large_ = nullptr;
};

// A text is no wider than its letters together: the last one's gap may be left out.
TEST_F(PanelFont, Widths_AreThoseOfTheFont) {
    const maker::PixelFont font(maker::kSmallText);
    for (const char c : std::string("abcdefghijklmnopqrstuvwxyz0123456789-_+")) {
        const std::string text(20, c);
        const int width = font.widthOf(maker::fromLatin1(text));
        EXPECT_NEAR(widthOf(small_, text), width, 3) << c;
        EXPECT_LE(widthOf(small_, text), width) << c;
        EXPECT_LE(widthOf(large_, text), 2 * width) << c;
    }
}

// The larger panel's boxes are 210 pixels wide and their text begins 6 pixels inside.
TEST_F(PanelFont, LongestName_FitsTheBox) {
    maker::ClipNames names;
    const std::string name = names.give("the_quick_brown_fox_jumps", maker::kPanelRoom);
    EXPECT_LE(widthOf(large_, name), 210 - 2 * 6);
    EXPECT_GT(widthOf(large_, name), 180);
}

}  // namespace
