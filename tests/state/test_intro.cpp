// The intro: the logo's place and 50 frames of flash and fade.
#include "ui/intro.h"

#include <algorithm>

#include "state/stage.h"

namespace {

class Intro : public StageTest {
protected:
    Intro() { fillAll(screen[0], 0); }

    // The next frame, worked out here: logo, then every lit pixel by the distance to frame 20.
    static void nextExpected(SDL_Surface* picture, int counter, int x, int y) {
        SDL_Rect at = {static_cast<int16_t>(x), static_cast<int16_t>(y), 0, 0};
        SDL_BlitSurface(_intro->logo, nullptr, picture, &at);
        const int d = counter - 20;
        for (int row = 0; row < picture->h; ++row) {
            for (int column = 0; column < picture->w; ++column) {
                const uint16_t p = pixelAt(picture, column, row);
                if (p != 0) {
                    const int red = std::clamp((p >> 11) + 2 * d, 0, 31);
                    const int green = std::clamp(((p >> 5) & 63) + 4 * d, 0, 63);
                    const int blue = std::clamp((p & 31) + 2 * d, 0, 31);
                    setPixel(picture, column, row,
                             static_cast<uint16_t>(red << 11 | green << 5 | blue));
                }
            }
        }
    }
};

TEST_F(Intro, Init_50FramesAndThePicturesPlace) {
    EXPECT_EQ(_intro->state, 0);
    EXPECT_EQ(_intro->counter, 50);
    EXPECT_EQ(_intro->offset.x, 320);
    EXPECT_EQ(_intro->offset.y, 180);
    ASSERT_NE(_intro->logo, nullptr);
}

TEST_F(Intro, Draw_CountsDown) {
    for (int left = 49; left >= 0; --left) {
        _intro->draw(screen[0]);
        EXPECT_EQ(_intro->counter, left);
    }
}

// Brightened by 58 and 116: every lit pixel of the logo is white at once.
TEST_F(Intro, FirstFrame_LogoInWhiteAtItsPlace) {
    const Picture logo = newPicture(1280, 720);
    SDL_Rect at = {480, 240, 0, 0};
    SDL_BlitSurface(_intro->logo, nullptr, logo.get(), &at);
    _intro->draw(screen[0]);
    int lit = 0;
    for (int y = 0; y < 720; ++y) {
        for (int x = 0; x < 1280; ++x) {
            const uint16_t expected = pixelAt(logo.get(), x, y) != 0 ? 0xFFFF : 0;
            ASSERT_EQ(pixelAt(screen[0], x, y), expected) << x << ", " << y;
            lit += expected != 0 ? 1 : 0;
        }
    }
    EXPECT_GT(lit, 1000);
}

// The surface is never cleared, so the effect adds up over the frames.
TEST_F(Intro, FiftyFrames_AddUp) {
    const Picture expected = newPicture(1280, 720);
    fill(screen[0], 10, 10, 4, 4, 0x8410);
    fill(expected.get(), 10, 10, 4, 4, 0x8410);
    for (int left = 49; left >= 0; --left) {
        _intro->draw(screen[0]);
        nextExpected(expected.get(), left, 480, 240);
        if (left >= 47 || (left >= 16 && left <= 22) || left <= 1) {
            ASSERT_TRUE(samePixels(screen[0], expected.get())) << left;
        }
    }
    EXPECT_EQ(countPixels(screen[0], 0, 0, 1280, 720, 0), 1280 * 720);
}

// At 20 nothing is brightened or darkened.
TEST_F(Intro, TurningFrame_LeavesThePicture) {
    _intro->counter = 21;
    fill(screen[0], 10, 10, 4, 4, 0x8410);
    _intro->draw(screen[0]);
    EXPECT_EQ(countPixels(screen[0], 10, 10, 4, 4, 0x8410), 16);
    _intro->draw(screen[0]);
    EXPECT_EQ(pixelAt(screen[0], 10, 10), (14 << 11) | (28 << 5) | 14);
}

TEST_F(Intro, WithoutLogo_CountsAllTheSame) {
    std::filesystem::remove("data");
    SDL_FreeSurface(_intro->logo);
    _intro->initIntro();
    EXPECT_EQ(_intro->logo, nullptr);
    _intro->draw(screen[0]);
    EXPECT_EQ(_intro->counter, 49);
    EXPECT_EQ(countPixels(screen[0], 0, 0, 1280, 720, 0), 1280 * 720);
}

// Rows of 1280 pixels and 32 more that belong to no row: lit, so that a change would show.
TEST_F(Intro, RowsWithPadding_EffectOnThePixelsAlone) {
    constexpr int kRow = 1312;
    constexpr uint16_t kLit = 0x8410;
    std::vector<uint16_t> memory(size_t{kRow} * 720, kLit);
    const Picture padded(SDL_CreateRGBSurfaceFrom(memory.data(), 1280, 720, 16, kRow * 2, 0xF800,
                                                  0x07E0, 0x001F, 0));
    fillAll(padded.get(), 0);
    const Picture expected = newPicture(1280, 720);
    for (const int y : {0, 1, 359, 719}) {
        setPixel(padded.get(), 0, y, kLit);
        setPixel(expected.get(), 0, y, kLit);
        setPixel(padded.get(), 1279, y, kLit);
        setPixel(expected.get(), 1279, y, kLit);
    }
    _intro->counter = 19;  // darker by 4 and 8: what is lit stays lit
    for (const int left : {18, 17}) {
        _intro->draw(padded.get());
        nextExpected(expected.get(), left, 480, 240);
        EXPECT_TRUE(samePixels(padded.get(), expected.get())) << left;
    }
    for (size_t y = 0; y < 720; ++y) {
        EXPECT_EQ(std::count(memory.begin() + static_cast<long>(y * kRow + 1280),
                             memory.begin() + static_cast<long>((y + 1) * kRow), kLit),
                  32)
            << y;
    }
}

class IntroComposite : public StageTest {
protected:
    IntroComposite() : StageTest(720, 480) {}
};

// The effect covers the smaller surface's own pixels, the last one included.
TEST_F(IntroComposite, SmallSurface_LogoAndEffectInside) {
    EXPECT_EQ(_intro->offset.x, 40);
    EXPECT_EQ(_intro->offset.y, 60);
    fillAll(screen[0], 0);
    setPixel(screen[0], 719, 479, 0x0001);
    const Picture logo = newPicture(720, 480);
    SDL_Rect at = {200, 120, 0, 0};
    SDL_BlitSurface(_intro->logo, nullptr, logo.get(), &at);
    _intro->draw(screen[0]);
    EXPECT_EQ(pixelAt(screen[0], 719, 479), 0xFFFF);
    for (int y = 0; y < 400; ++y) {
        for (int x = 0; x < 720; ++x) {
            ASSERT_EQ(pixelAt(screen[0], x, y), pixelAt(logo.get(), x, y) != 0 ? 0xFFFF : 0);
        }
    }
}

}  // namespace
