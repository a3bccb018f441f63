// Opening the video mode again: at another size, in full screen, and when it is refused.
#include "core/display.h"

#include <unistd.h>

#include <cstring>

#include "state/stage.h"

namespace {

constexpr const char* kAdvice =
    "Overscan should be disabled ( more infos: "
    "https://www.raspberrypi.com/documentation/computers/configuration.html )\n";

class Display : public StageTest {
protected:
    static bool isFullScreen() { return (screen[1]->flags & SDL_FULLSCREEN) != 0; }
};

TEST_F(Display, UpdateResolution_OpensTheApplicationSizeWithTheSameFlags) {
    const uint32_t flags = screen[1]->flags;
    all->applyResolution(1024, 768);
    EXPECT_EQ(printedBy(updateResolution), "");
    EXPECT_EQ(scripted().modeCalls, (std::vector<ModeCall>{{1024, 768, 16, flags}}));
    EXPECT_EQ(screen[1]->w, 1024);
    EXPECT_EQ(screen[1]->h, 768);
}

TEST_F(Display, UpdateResolution_SurfacesAreBlack) {
    fillAll(screen[0], 0x1234);
    all->applyResolution(1024, 768);
    updateResolution();
    EXPECT_EQ(countPixels(screen[0], 0, 0, 1280, 720, 0), 1280 * 720);
    EXPECT_EQ(countPixels(screen[1], 0, 0, 1024, 768, 0), 1024 * 768);
    // The same size again may give the same pixels.
    fillAll(screen[1], 0x1234);
    clearSurfaces();
    EXPECT_EQ(countPixels(screen[1], 0, 0, 1024, 768, 0), 1024 * 768);
}

// (1024 - 640) / 2, (768 - 360) / 2.
TEST_F(Display, UpdateResolution_IntroAndHomeStandInTheNewMiddle) {
    all->applyResolution(1024, 768);
    EXPECT_EQ(_home->offset.x, 320);
    updateResolution();
    _intro->draw(screen[0]);
    _home->draw(screen[0]);
    EXPECT_EQ(_home->offset.x, 192);
    EXPECT_EQ(_home->offset.y, 204);
    EXPECT_EQ(_intro->offset.x, 192);
    EXPECT_EQ(_intro->offset.y, 204);
    all->applyResolution(1280, 720);
    updateResolution();
    _home->draw(screen[0]);
    EXPECT_EQ(_home->offset.x, 320);
    EXPECT_EQ(_home->offset.y, 180);
}

TEST_F(Display, UpdateResolution_KeepsFullScreen) {
    toggleFullScreen();
    all->applyResolution(1024, 768);
    updateResolution();
    EXPECT_TRUE(isFullScreen());
}

TEST_F(Display, quirk_work_surface_keeps_startup_size) {
    SDL_Surface* const work = screen[0];
    all->applyResolution(1024, 768);
    updateResolution();
    toggleFullScreen();
    EXPECT_EQ(screen[0], work);
    EXPECT_EQ(screen[0]->w, 1280);
    EXPECT_EQ(screen[0]->h, 720);
}

TEST_F(Display, ToggleTwice_BackToTheFlagsOfBefore) {
    const uint32_t flags = screen[1]->flags;
    EXPECT_EQ(printedBy(toggleFullScreen), "");
    EXPECT_EQ(scripted().modeCalls.back(), (ModeCall{1280, 720, 16, flags | SDL_FULLSCREEN}));
    EXPECT_TRUE(isFullScreen());
    toggleFullScreen();
    EXPECT_EQ(scripted().modeCalls.back(), (ModeCall{1280, 720, 16, flags}));
    EXPECT_EQ(screen[1]->flags, flags);
}

TEST_F(Display, NewResolutionRefused_DisplaysOwnSizeAndTwoLines) {
    const uint32_t flags = screen[1]->flags;
    scripted().displayWidth = 1360;
    scripted().displayHeight = 768;
    scripted().refusals = {true};
    all->applyResolution(1024, 768);
    EXPECT_EQ(printedBy(updateResolution),
              std::string("Could not set the new resolution\n") + kAdvice);
    EXPECT_EQ(scripted().modeCalls,
              (std::vector<ModeCall>{{1024, 768, 16, flags}, {0, 0, 0, flags}}));
    EXPECT_EQ(screen[1]->w, 1360);
    EXPECT_EQ(screen[1]->h, 768);
    EXPECT_EQ(all->appW, 1024);
    EXPECT_EQ(all->appH, 768);
}

TEST_F(Display, FullScreenRefused_FallbackWithoutTheChange) {
    const uint32_t flags = screen[1]->flags;
    scripted().refusals = {true};
    EXPECT_EQ(printedBy(toggleFullScreen),
              std::string("Could not set full screen window\n") + kAdvice);
    EXPECT_EQ(scripted().modeCalls,
              (std::vector<ModeCall>{{1280, 720, 16, flags | SDL_FULLSCREEN}, {0, 0, 0, flags}}));
    EXPECT_FALSE(isFullScreen());
}

TEST_F(Display, Refused_FallbackIsOpenedBeforeTheLinesArePrinted) {
    scripted().modesPrinted = true;
    scripted().refusals = {true};
    all->applyResolution(1024, 768);
    EXPECT_EQ(
        printedBy(updateResolution),
        std::string("mode 1024 x 768\nmode 0 x 0\nCould not set the new resolution\n") + kAdvice);
    scripted().refusals = {true};
    EXPECT_EQ(
        printedBy(toggleFullScreen),
        std::string("mode 1024 x 768\nmode 0 x 0\nCould not set full screen window\n") + kAdvice);
}

// Standard output goes where the death test looks.
void refuseAll(void (*change)()) {
    dup2(STDERR_FILENO, STDOUT_FILENO);
    scripted().refusals = {true, true};
    change();
}

using DisplayDeathTest = Display;

TEST_F(DisplayDeathTest, NewResolutionAndFallbackRefused_Status1) {
    EXPECT_EXIT(refuseAll(updateResolution), testing::ExitedWithCode(1),
                "Could not set the new resolution\nOverscan should be disabled");
}

TEST_F(DisplayDeathTest, FullScreenAndFallbackRefused_Status1) {
    EXPECT_EXIT(refuseAll(toggleFullScreen), testing::ExitedWithCode(1),
                "Could not set full screen window\nOverscan should be disabled");
}

TEST_F(Display, VideoView_IsTheVideoSurface) {
    const px::OutputView view = videoView();
    EXPECT_EQ(view.pixels, screen[1]->pixels);
    EXPECT_EQ(view.width, 1280);
    EXPECT_EQ(view.height, 720);
    EXPECT_EQ(view.pitch, screen[1]->pitch);
    EXPECT_FALSE(view.composite);
}

TEST_F(Display, VideoViewAfterAModeChange_FollowsTheNewSurface) {
    scripted().padding = 64;
    all->applyResolution(1024, 768);
    updateResolution();
    const px::OutputView view = videoView();
    EXPECT_EQ(view.pixels, screen[1]->pixels);
    EXPECT_EQ(view.pitch, 1024u * 2 + 64);
    EXPECT_EQ(view.width, 1024);
}

// The surface is smaller than the application size, or the other way round.
TEST_F(Display, VideoView_StaysInsideTheSurface) {
    scripted().displayWidth = 800;
    scripted().displayHeight = 600;
    scripted().refusals = {true};
    printedBy(updateResolution);
    EXPECT_EQ(videoView().width, 800);
    EXPECT_EQ(videoView().height, 600);
    all->applyResolution(720, 480);
    EXPECT_EQ(videoView().width, 720);
    EXPECT_EQ(videoView().height, 480);
}

TEST_F(Display, SurfaceOf32Bits_WrittenThroughAStandIn) {
    scripted().displayDepth = 32;
    scripted().refusals = {true};
    printedBy(updateResolution);
    ASSERT_EQ(screen[1]->format->BitsPerPixel, 32);
    {
        VideoOutput output;
        EXPECT_NE(static_cast<void*>(videoView().pixels), screen[1]->pixels);
        EXPECT_EQ(videoView().width, 1280);
        EXPECT_EQ(videoView().pitch, 2560u);
        std::fill_n(videoView().pixels, 1280 * 720, uint16_t{0x0000});
        videoView().pixels[0] = 0xFFFF;
        videoView().pixels[1] = 0xF800;
    }
    uint32_t shown[3];
    memcpy(shown, screen[1]->pixels, sizeof shown);
    EXPECT_EQ(shown[0] & 0xF8FCF8, 0xF8FCF8u);
    EXPECT_EQ(shown[1] & 0xF8FCF8, 0xF80000u);
    EXPECT_EQ(shown[2] & 0xFFFFFF, 0u);
}

TEST_F(Display, SurfaceColour_ByDepth) {
    EXPECT_EQ(surfaceColour(screen[1], 0xF81F), 0xF81Fu);
    scripted().displayDepth = 32;
    scripted().refusals = {true};
    printedBy(updateResolution);
    EXPECT_EQ(surfaceColour(screen[1], 0xFFFF), 0xFFFFFFu);
    EXPECT_EQ(surfaceColour(screen[1], 0xF800), 0xFF0000u);
    EXPECT_EQ(surfaceColour(screen[1], 0x07E0), 0x00FF00u);
    EXPECT_EQ(surfaceColour(screen[1], 0x001F), 0x0000FFu);
}

// Source rows of 640 pixels, one after the other through the work surface's memory.
TEST_F(Display, Scale2x_EvenColumnsThenTheWholeRowAgain) {
    auto* source = static_cast<uint16_t*>(screen[0]->pixels);
    for (int i = 0; i < 640 * 360; ++i) {
        source[i] = static_cast<uint16_t>(i % 60000 + 1);
    }
    fillAll(screen[1], 0xEEEE);
    scale2x();
    for (int y = 0; y < 360; y += 7) {
        for (int x = 0; x < 640; ++x) {
            const auto expected = static_cast<uint16_t>((y * 640 + x) % 60000 + 1);
            ASSERT_EQ(pixelAt(screen[1], 2 * x, 2 * y), expected) << x << ", " << y;
            ASSERT_EQ(pixelAt(screen[1], 2 * x, 2 * y + 1), expected) << x << ", " << y;
            ASSERT_EQ(pixelAt(screen[1], 2 * x + 1, 2 * y), 0xEEEE);
            ASSERT_EQ(pixelAt(screen[1], 2 * x + 1, 2 * y + 1), 0xEEEE);
        }
    }
}

// What SDL_BlitSurface makes of the same two: inside, over each edge, in other formats.
void expectPutAsBlitted(SDL_Surface* picture, SDL_Surface* surface) {
    const SDL_Rect places[] = {{0, 0, 0, 0},  {5, 7, 0, 0},  {20, 30, 0, 0}, {21, 3, 0, 0},
                               {3, 31, 0, 0}, {-1, 3, 0, 0}, {3, -1, 0, 0},  {99, 99, 0, 0}};
    for (const SDL_Rect& place : places) {
        SCOPED_TRACE(testing::Message() << place.x << ", " << place.y);
        for (int i = 0; i < surface->h * surface->pitch; ++i) {
            static_cast<uint8_t*>(surface->pixels)[i] = static_cast<uint8_t>(i * 7);
        }
        SDL_Surface* expected = SDL_ConvertSurface(surface, surface->format, SDL_SWSURFACE);
        SDL_Rect at = place;
        SDL_BlitSurface(picture, nullptr, expected, &at);
        putPicture(picture, surface, place.x, place.y);
        EXPECT_EQ(memcmp(surface->pixels, expected->pixels,
                         static_cast<size_t>(surface->h) * surface->pitch),
                  0);
        SDL_FreeSurface(expected);
    }
}

TEST_F(Display, PutPicture_AsSdlBlitsIt) {
    const auto make = [](int w, int h, int depth, uint32_t red, uint32_t green, uint32_t blue) {
        SDL_Surface* made = SDL_CreateRGBSurface(SDL_SWSURFACE, w, h, depth, red, green, blue, 0);
        for (int i = 0; i < made->h * made->pitch; ++i) {
            static_cast<uint8_t*>(made->pixels)[i] = static_cast<uint8_t>(i * 5 + i / 256);
        }
        return Picture(made);
    };
    const Picture surface = make(52, 60, 16, 0xF800, 0x07E0, 0x001F);
    const Picture picture = make(32, 30, 16, 0xF800, 0x07E0, 0x001F);
    const Picture mirrored = make(32, 30, 16, 0x001F, 0x07E0, 0xF800);
    const Picture wide = make(32, 30, 32, 0xFF0000, 0x00FF00, 0x0000FF);
    const Picture keyed = make(32, 30, 16, 0xF800, 0x07E0, 0x001F);
    SDL_SetColorKey(keyed.get(), SDL_SRCCOLORKEY, pixelAt(keyed.get(), 3, 3));
    const Picture halfThere = make(32, 30, 16, 0xF800, 0x07E0, 0x001F);
    SDL_SetAlpha(halfThere.get(), SDL_SRCALPHA, 128);
    for (const Picture* each : {&picture, &mirrored, &wide, &keyed, &halfThere}) {
        expectPutAsBlitted(each->get(), surface.get());
    }
    expectPutAsBlitted(picture.get(), make(52, 60, 32, 0xFF0000, 0x00FF00, 0x0000FF).get());
}

TEST_F(Display, Clamp_HoldsBetweenTheEnds) {
    EXPECT_EQ(Clamp(0.5f, 0.0f, 1.0f), 0.5f);
    EXPECT_EQ(Clamp(-0.5f, 0.0f, 1.0f), 0.0f);
    EXPECT_EQ(Clamp(1.5f, 0.0f, 1.0f), 1.0f);
    EXPECT_EQ(Clamp(0.0f, 0.0f, 1.0f), 0.0f);
    EXPECT_EQ(Clamp(1.0f, 0.0f, 1.0f), 1.0f);
    EXPECT_EQ(Clamp(0.0f, 2.0f, 1.0f), 2.0f);  // the lower end is looked at first
}

// A surface with an offset is one of those whose pixels are only there while it is locked.
TEST_F(Display, VideoOutput_LocksASurfaceThatWantsItForAsLongAsItLives) {
    if (overSdl2()) {
        GTEST_SKIP() << "the layer over SDL 2 has no surfaces with an offset";
    }
    screen[1]->offset = 4;
    ASSERT_TRUE(SDL_MUSTLOCK(screen[1]));
    {
        const VideoOutput output;
        EXPECT_EQ(screen[1]->locked, 1U);
        EXPECT_EQ(videoView().pixels, screen[1]->pixels);
    }
    EXPECT_EQ(screen[1]->locked, 0U);
    screen[1]->offset = 0;
}

}  // namespace
