// The last step to the display, as far as it needs none: tests/app looks at real windows.
#include "core/present.h"

#include "core/display.h"
#include "px/widen.h"
#include "state/stage.h"

namespace {

class Present : public StageTest {};

// Nobody shall see which way a picture came. The layer over SDL 2 has other colours; its way is
// taken where there is no X11.
TEST_F(Present, EveryColour_AsSdlConvertsIt) {
    if (overSdl2()) {
        GTEST_SKIP() << "not the classic library";
    }
    SDL_Surface* all565 =
        SDL_CreateRGBSurface(SDL_SWSURFACE, 256, 256, 16, 0xF800, 0x07E0, 0x1F, 0);
    SDL_Surface* wide =
        SDL_CreateRGBSurface(SDL_SWSURFACE, 256, 256, 32, 0xFF0000, 0x00FF00, 0x0000FF, 0);
    auto* pixels = static_cast<uint16_t*>(all565->pixels);
    for (int i = 0; i < 65536; ++i) {
        pixels[i] = static_cast<uint16_t>(i);
    }
    SDL_BlitSurface(all565, nullptr, wide, nullptr);
    const auto* converted = static_cast<const uint32_t*>(wide->pixels);
    for (int i = 0; i < 65536; ++i) {
        ASSERT_EQ(px::widened(static_cast<uint16_t>(i)), converted[i] & 0x00FFFFFF) << i;
    }
    SDL_FreeSurface(wide);
    SDL_FreeSurface(all565);
}

TEST_F(Present, NoX11_SdlShowsTheWholeSurface) {
    present(screen[1]);
    presentAnew();
    present(screen[1]);
    EXPECT_EQ(scripted().updated, (std::vector<SDL_Surface*>{screen[1], screen[1]}));
}

}  // namespace
