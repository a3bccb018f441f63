// Text and numbers, against the same font opened apart from the program.
#include "draw/ttf.h"

#include "state/stage.h"

namespace {

constexpr uint16_t kBefore = 0x1234;

class Ttf : public StageTest {
protected:
    Ttf() : surface(newPicture(300, 100, kBefore)), expected(newPicture(300, 100, kBefore)) {}

    Picture surface;
    Picture expected;
    Lettering lettering;
};

TEST_F(Ttf, DrawText_BothFontsTopLeftAtThePlace) {
    for (const int font : {0, 1}) {
        ttf->drawTextH(surface.get(), "Hello 42", 20, 30, 0xFF8000, font);
        lettering.paint(expected.get(), "Hello 42", 20, 30, 0xFF8000, font);
        EXPECT_TRUE(samePixels(surface.get(), expected.get())) << font;
    }
    EXPECT_GT(countPixels(surface.get(), 0, 0, 300, 100, 0xFC00), 50);  // 31, 32, 0
}

TEST_F(Ttf, Font1_TwiceAsWideAsFont0) {
    ttf->drawTextH(surface.get(), "HHHH", 0, 0, 0xFFFFFF, 0);
    const int small = countPixels(surface.get(), 0, 0, 300, 100, 0xFFFF);
    fillAll(surface.get(), kBefore);
    ttf->drawTextH(surface.get(), "HHHH", 0, 0, 0xFFFFFF, 1);
    EXPECT_EQ(countPixels(surface.get(), 0, 0, 300, 100, 0xFFFF), 4 * small);
    EXPECT_EQ(lettering.width("HHHH", 1), 2 * lettering.width("HHHH", 0));
}

TEST_F(Ttf, Texte_SameAsDrawText) {
    ttf->texte(surface.get(), "MIX", 5, 6, 0x0000FF, 1);
    lettering.paint(expected.get(), "MIX", 5, 6, 0x0000FF, 1);
    EXPECT_TRUE(samePixels(surface.get(), expected.get()));
}

TEST_F(Ttf, Colour_RedGreenBlueFromTheHighByteDown) {
    const struct {
        int rgb;
        uint16_t pixel;
    } cases[] = {{0xFF0000, 0xF800}, {0x00FF00, 0x07E0}, {0x0000FF, 0x001F}};
    for (const auto& each : cases) {
        fillAll(surface.get(), kBefore);
        ttf->texte(surface.get(), "HHH", 5, 6, each.rgb, 0);
        EXPECT_GT(countPixels(surface.get(), 0, 0, 300, 100, each.pixel), 10) << each.rgb;
    }
}

TEST_F(Ttf, DrawInt_DecimalDigits) {
    const struct {
        int value;
        const char* text;
    } cases[] = {{0, "0"},
                 {25, "25"},
                 {-7, "-7"},
                 {2147483647, "2147483647"},
                 {-2147483647 - 1, "-2147483648"}};
    for (const auto& each : cases) {
        fillAll(surface.get(), kBefore);
        fillAll(expected.get(), kBefore);
        ttf->drawIntH(surface.get(), each.value, 20, 30, 0xFFFFFF, 0);
        lettering.paint(expected.get(), each.text, 20, 30, 0xFFFFFF, 0);
        EXPECT_TRUE(samePixels(surface.get(), expected.get())) << each.text;
    }
}

TEST_F(Ttf, TexteFilled_BoxOnePixelWiderOnBothSides) {
    ttf->texteFilled(surface.get(), "label", 20, 30, 0xFFFFFF, 0, 0x59B1FF);
    fill(expected.get(), 19, 30, lettering.width("label", 0) + 2, lettering.height("label", 0),
         0x5D9F);
    lettering.paint(expected.get(), "label", 20, 30, 0xFFFFFF, 0);
    EXPECT_TRUE(samePixels(surface.get(), expected.get()));
}

TEST_F(Ttf, NegativePlace_TextIsCut) {
    ttf->drawTextH(surface.get(), "Hello", -4, -3, 0xFFFFFF, 1);
    lettering.paint(expected.get(), "Hello", -4, -3, 0xFFFFFF, 1);
    EXPECT_TRUE(samePixels(surface.get(), expected.get()));
}

TEST_F(Ttf, Latin1Bytes_AreCharacters) {
    ttf->drawTextH(surface.get(), "\xE9t\xE9", 10, 10, 0xFFFFFF, 1);
    lettering.paint(expected.get(), "\xE9t\xE9", 10, 10, 0xFFFFFF, 1);
    EXPECT_TRUE(samePixels(surface.get(), expected.get()));
    EXPECT_GT(countPixels(surface.get(), 0, 0, 300, 100, 0xFFFF), 20);
}

TEST_F(Ttf, Utf8_IsDrawnAsItsLetters) {
    ttf->drawTextH(surface.get(), "caf\xC3\xA9 e\xCC\x81 \xE6\x97\xA5", 10, 10, 0xFFFFFF, 1);
    ttf->texteFilled(surface.get(), "\xC3\xBC", 10, 60, 0xFFFFFF, 0, 0xFF0000);
    lettering.paint(expected.get(), "caf\xE9 \xE9 ?", 10, 10, 0xFFFFFF, 1);
    fill(expected.get(), 9, 60, lettering.width("\xFC", 0) + 2, lettering.height("\xFC", 0),
         0xF800);
    lettering.paint(expected.get(), "\xFC", 10, 60, 0xFFFFFF, 0);
    EXPECT_TRUE(samePixels(surface.get(), expected.get()));
}

TEST_F(Ttf, Width_IsThatOfTheLettersDrawn) {
    for (const int font : {0, 1}) {
        EXPECT_EQ(ttf->widthOf("caf\xC3\xA9", font), lettering.width("caf\xE9", font));
        EXPECT_EQ(ttf->widthOf("", font), 0);
    }
}

TEST_F(Ttf, LongestText_IsCutAndDrawn) {
    ttf->drawTextH(surface.get(), std::string(5000, 'W').c_str(), 10, 10, 0xFFFFFF, 0);
    EXPECT_GT(countPixels(surface.get(), 280, 10, 20, 12, 0xFFFF), 20);
}

TEST_F(Ttf, EmptyText_DrawsNothing) {
    ttf->drawTextH(surface.get(), "", 10, 10, 0xFFFFFF, 0);
    ttf->texteFilled(surface.get(), "", 10, 10, 0xFFFFFF, 0, 0xFF0000);
    EXPECT_TRUE(samePixels(surface.get(), expected.get()));
}

TEST_F(Ttf, MissingFont_DrawsNothing) {
    std::filesystem::remove("data");
    c_ttf fontless = {};
    fontless.loadFonts();
    EXPECT_EQ(fontless.fonts[0], nullptr);
    EXPECT_EQ(fontless.fonts[1], nullptr);
    EXPECT_EQ(fontless.widthOf("Hello", 0), 0);
    fontless.drawTextH(surface.get(), "Hello", 10, 10, 0xFFFFFF, 0);
    fontless.texte(surface.get(), "Hello", 10, 10, 0xFFFFFF, 1);
    fontless.drawIntH(surface.get(), 42, 10, 10, 0xFFFFFF, 0);
    fontless.texteFilled(surface.get(), "Hello", 10, 10, 0xFFFFFF, 0, 0xFF0000);
    EXPECT_TRUE(samePixels(surface.get(), expected.get()));
}

}  // namespace
