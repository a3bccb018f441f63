// The home menu's picture, against one composed here from its parts.
#include "ui/home.h"

#include "draw/painter.h"
#include "state/stage.h"

namespace {

constexpr int kWhite = 0xFFFFFF;
constexpr int kBlack = 0x000000;

struct Line {
    int item;  // -1: always white
    const char* text;
    int x, y, font;
};

struct Corner {
    int x, y;
};

// Bars around each item: the cell's corner, from the picture's top left.
constexpr Corner kCells[5] = {{264, 60}, {368, 60}, {160, 164}, {264, 164}, {368, 164}};

class Home : public StageTest {
protected:
    Home() = default;
    Home(int width, int height) : StageTest(width, height) {}

    // Background, bars and texts at the picture's place in a window of this size.
    Picture expectedMenu(Corner at, const std::vector<Line>& changing) {
        Picture menu = newPicture(screen[0]->w, screen[0]->h);
        SDL_Rect place = {static_cast<int16_t>(at.x), static_cast<int16_t>(at.y), 0, 0};
        SDL_BlitSurface(_home->background, nullptr, menu.get(), &place);
        const int x = at.x + kCells[_home->selected].x;
        const int y = at.y + kCells[_home->selected].y;
        fill(menu.get(), x + 9, y + 15, 94, 2, 0xFFFF);
        fill(menu.get(), x + 101, y + 15, 2, 94, 0xFFFF);
        fill(menu.get(), x + 9, y + 107, 94, 2, 0xFFFF);
        fill(menu.get(), x + 9, y + 15, 2, 94, 0xFFFF);
        std::vector<Line> lines = {
            {0, "MIX", 277, 77, 1},
            {1, "EDIT", 381, 77, 1},
            {2, "OPTIONS", 173, 181, 1},
            {3, "FULL", 277, 181, 1},
            {3, "SCREEN", 277, 197, 1},
            {4, "QUIT", 381, 181, 1},
            {-1, "Z : BACK        X or click : OK", 170, 310, 0},
            {-1, "V 1.2 - AMBER HERON", 170, 330, 0},
            {-1, "Build on 30th December 2013", 344, 330, 0},
        };
        lines.insert(lines.end(), changing.begin(), changing.end());
        Lettering lettering;
        for (const Line& line : lines) {
            const bool white = line.item < 0 || line.item == _home->selected;
            lettering.paint(menu.get(), line.text, at.x + line.x, at.y + line.y,
                            white ? kWhite : kBlack, line.font);
        }
        return menu;
    }

    void expectMenu(Corner at, const std::vector<Line>& changing) {
        fillAll(screen[0], 0);
        _home->draw(screen[0]);
        EXPECT_TRUE(samePixels(screen[0], expectedMenu(at, changing).get()));
    }
};

const std::vector<Line> kNoController = {
    {2, "no", 173, 198, 0}, {2, "game controller", 173, 210, 0}, {2, "detected", 173, 222, 0}};
const std::vector<Line> kController = {{2, "game controller", 173, 198, 0},
                                       {2, "detected", 173, 210, 0}};

std::vector<Line> with(std::vector<Line> lines, const char* count,
                       const char* resolution = "1280 x 720") {
    lines.push_back({1, count, 381, 94, 0});
    lines.push_back({3, resolution, 277, 214, 0});
    return lines;
}

TEST_F(Home, Init_FirstItemAndThePicturesPlace) {
    EXPECT_EQ(_home->selected, HOME_MIX);
    EXPECT_EQ(_home->offset.x, 320);
    EXPECT_EQ(_home->offset.y, 180);
    ASSERT_NE(_home->background, nullptr);
    EXPECT_EQ(_home->background->w, 640);
    EXPECT_EQ(_home->background->h, 360);
}

// It is kept in the format of the surface that it is drawn onto.
TEST_F(Home, Background_ShowsItsFile) {
    ASSERT_NE(_home->background, nullptr);
    EXPECT_EQ(_home->background->format->BitsPerPixel, 16);
    SDL_Surface* file = loadPicture("data/home.png");
    Picture expected = newPicture(640, 360);
    SDL_BlitSurface(file, nullptr, expected.get(), nullptr);
    SDL_FreeSurface(file);
    EXPECT_TRUE(samePixels(copyOf(_home->background).get(), expected.get()));
}

TEST_F(Home, EverySelection_BarsAndWhiteTexts) {
    for (int item = 0; item < 5; ++item) {
        SCOPED_TRACE(item);
        _home->selected = item;
        expectMenu({320, 180}, with(kNoController, "no playlists"));
    }
}

// Outer corners of the frame of bars: 94 x 94 pixels. In the upper row they are those of the mouse
// targets; in the lower row the targets start one pixel further down.
TEST_F(Home, Bars_OuterCorners) {
    const Corner frames[5] = {{593, 255}, {697, 255}, {489, 359}, {593, 359}, {697, 359}};
    SDL_FreeSurface(_home->background);
    _home->background = nullptr;
    for (int item = 0; item < 5; ++item) {
        _home->selected = item;
        fillAll(screen[0], 0);
        _home->draw(screen[0]);
        const auto [x, y] = frames[item];
        EXPECT_EQ(countPixels(screen[0], x, y, 94, 2, 0xFFFF), 2 * 94) << item;
        EXPECT_EQ(countPixels(screen[0], x, y + 92, 94, 2, 0xFFFF), 2 * 94) << item;
        EXPECT_EQ(countPixels(screen[0], x, y, 2, 94, 0xFFFF), 2 * 94) << item;
        EXPECT_EQ(countPixels(screen[0], x + 92, y, 2, 94, 0xFFFF), 2 * 94) << item;
        EXPECT_EQ(countPixels(screen[0], x - 1, y - 1, 96, 1, 0xFFFF), 0) << item;
        EXPECT_EQ(countPixels(screen[0], x - 1, y - 1, 1, 96, 0xFFFF), 0) << item;
        EXPECT_EQ(countPixels(screen[0], x - 1, y + 94, 96, 1, 0xFFFF), 0) << item;
        EXPECT_EQ(countPixels(screen[0], x + 94, y - 1, 1, 96, 0xFFFF), 0) << item;
    }
}

TEST_F(Home, OnePlaylist_Singular) {
    addFamille("one");
    expectMenu({320, 180}, with(kNoController, "1 playlist"));
}

TEST_F(Home, MorePlaylists_Plural) {
    addFamille("one");
    addFamille("two");
    expectMenu({320, 180}, with(kNoController, "2 playlists"));
    while (playlist->nbFamilles < 50) {
        addFamille("more");
    }
    expectMenu({320, 180}, with(kNoController, "50 playlists"));
}

TEST_F(Home, Controller_TwoTexts) {
    for (const int joysticks : {1, 3}) {
        _nbJoySticks = joysticks;
        expectMenu({320, 180}, with(kController, "no playlists"));
        _home->selected = HOME_OPTIONS;
        expectMenu({320, 180}, with(kController, "no playlists"));
    }
}

TEST_F(Home, AnotherResolution_MenuInTheNewMiddle) {
    all->applyResolution(1024, 768);
    updateResolution();
    expectMenu({192, 204}, with(kNoController, "no playlists", "1024 x 768"));
}

TEST_F(Home, WithoutBackground_BarsAndTextsAllTheSame) {
    std::filesystem::remove("data");
    SDL_FreeSurface(_home->background);
    _home->initHome();
    EXPECT_EQ(_home->background, nullptr);
    fillAll(screen[0], 0x001F);
    _home->draw(screen[0]);
    EXPECT_EQ(pixelAt(screen[0], 320 + 273, 180 + 75), 0xFFFF);
    EXPECT_EQ(pixelAt(screen[0], 320, 180), 0x001F);
}

class HomeComposite : public Home {
protected:
    HomeComposite() : Home(720, 480) {}
};

TEST_F(HomeComposite, Menu_CentredInTheDisplay) {
    EXPECT_EQ(_home->offset.x, 40);
    EXPECT_EQ(_home->offset.y, 60);
    expectMenu({40, 60}, with(kNoController, "no playlists", "720 x 480"));
}

TEST_F(Home, Selection_OnASurfaceOf32BitsIsWhite) {
    const Picture deep(
        SDL_CreateRGBSurface(SDL_SWSURFACE, 1280, 720, 32, 0xFF0000, 0x00FF00, 0x0000FF, 0));
    _home->draw(deep.get());
    // Item 0's cell, and the frame in it.
    const uint8_t* row = static_cast<uint8_t*>(deep->pixels) + (180 + 60 + 15) * deep->pitch;
    EXPECT_EQ(reinterpret_cast<const uint32_t*>(row)[320 + 264 + 9] & 0xFFFFFF, 0xFFFFFFu);
}

}  // namespace
