// Frames and loads of a playlist when there is not enough memory: the program goes on.
#include <dlfcn.h>

#include <cstring>

#include "state/editor_hands.h"
#include "support/failing_memory.h"

namespace {

constexpr long kMostCalls = 20000;
constexpr const char* kLine = "Not enough memory\n";
constexpr const char* kClipLine = "Not enough memory for this clip\n";
constexpr const char* kLongName = "a-folder-with-a-long-name/clip";

// Surfaces of the size of a page: those there are, and all that were made.
int pageSurfaces = 0;
int pageSurfacesMade = 0;

bool hasPageSize(int width, int height) {
    return width == kFrameWidth && height == kFrameHeight;
}

std::string shortageName(const testing::TestParamInfo<Shortage>& each) {
    return each.param == Shortage::ONE_CALL ? "OneCall" : "FromThenOn";
}

// The same moment each time: the name page's caret blinks.
int frameAt(uint32_t ticks) {
    scripted().ticks = ticks;
    tempsPrecedent = 0;
    return mainLoop();
}

// A playlist screen with something of everything on its pages.
class ShortFrame : public StageTest {
protected:
    ShortFrame() {
        for (const char* number : {"1", "2"}) {
            placeClip("gaps-64.m19", std::string(kLongName) + number + ".m19");
        }
        addFamille("a playlist with a name that does not fit into its row, whatever the font",
                   {std::string(kLongName) + "1.m19", std::string(kLongName) + "2.m19",
                    "a missing clip with a name that does not fit into its row, by any font.m19"});
        printedBy([] { playlist->scanFamilles(); });
        all->state = STATE_PLAYLISTS;
        playlist->newName = "a name of twenty let";
    }
};

struct EditorPage {
    const char* name;
    void (*open)();
};

const EditorPage kPages[] = {
    {"Browse", [] {}},
    {"Question", [] { editor->question = ASK_DELETE; }},
    {"Name", [] { playlist->editPage = page::NEW_PLAYLIST; }},
    {"Tracks", [] { editor->useButton(page::EDIT); }},
    {"Drag",
     [] {
         playlist->dragSource = page::RIGHT;
         playlist->selItem = 2;
         editor->press = PRESS_ROW;
         playlist->dragging = 1;
         keys->mouseHeld = 1;
     }},
};

class ShortPage : public ShortFrame,
                  public testing::WithParamInterface<std::tuple<EditorPage, Shortage>> {};

TEST_P(ShortPage, EachCallOfAFrameFails_SaidAndTheNextFrameIsRight) {
    const auto& [shown, shortage] = GetParam();
    shown.open();
    ASSERT_EQ(frameAt(2000), 1);
    const Picture wanted = copyOf(screen[1]);
    long call = 1;
    for (bool failed = true; failed && call < kMostCalls && !HasFailure(); ++call) {
        SCOPED_TRACE(call);
        SDL_FillRect(screen[0], nullptr, 0);
        scripted().updated.clear();
        const long before = blocksInUse();
        int result = -1;
        const std::string said = printedBy(
            [&] { failed = withFailingMemory(call, shortage, [&] { result = frameAt(2000); }); });
        EXPECT_EQ(result, 1);
        EXPECT_EQ(said, failed ? kLine : "");
        EXPECT_EQ(scripted().updated.size(), 1u);
        EXPECT_EQ(printedBy([] { frameAt(2000); }), "");
        const size_t bytes = size_t{1280} * 720 * 2;
        EXPECT_EQ(memcmp(screen[1]->pixels, wanted->pixels, bytes), 0);
        EXPECT_LE(blocksInUse(), before + 4) << "what the test itself keeps";
    }
    EXPECT_GT(call, 2);
    EXPECT_LT(call, kMostCalls);
}

INSTANTIATE_TEST_SUITE_P(Pages, ShortPage,
                         testing::Combine(testing::ValuesIn(kPages),
                                          testing::Values(Shortage::ONE_CALL,
                                                          Shortage::FROM_THEN_ON)),
                         [](const auto& each) {
                             return std::string(std::get<0>(each.param).name) +
                                    (std::get<1>(each.param) == Shortage::ONE_CALL ? "OneCall"
                                                                                   : "FromThenOn");
                         });

TEST_F(ShortFrame, ManyFramesWithoutMemory_SayItOnce) {
    const auto shortFrames = [] {
        withFailingMemory(1, Shortage::FROM_THEN_ON, [] {
            for (int frame = 0; frame < 10; ++frame) {
                runFrame();
            }
        });
    };
    EXPECT_EQ(printedBy(shortFrames), kLine);
    EXPECT_EQ(printedBy([] { runFrame(); }), "");
    EXPECT_EQ(printedBy(shortFrames), kLine);
    printedBy([] { runFrame(); });
}

// A page for which there is no memory can be left all the same.
TEST_F(ShortFrame, WithoutMemory_KeysLeaveThePage) {
    scripted().keysDown[SDLK_z] = 1;
    printedBy([] { withFailingMemory(1, Shortage::FROM_THEN_ON, [] { runFrame(); }); });
    EXPECT_EQ(all->state, STATE_HOME);
}

// The page's own surface goes with a frame that was broken off.
TEST_F(ShortFrame, BrokenOff_KeepsNoSurface) {
    const int before = pageSurfaces;
    printedBy([] {
        for (int call = 1; call <= 20; ++call) {
            withFailingMemory(call, Shortage::FROM_THEN_ON, [] { runFrame(); });
        }
    });
    EXPECT_GT(pageSurfacesMade, 20);
    EXPECT_EQ(pageSurfaces, before);
}

class ShortMix : public ShortFrame {
protected:
    ShortMix() {
        all->state = STATE_MIX;
        all->subState = SUB_PERFORMING;
        _options->topbar = _options->fps = mix->showUI = 1;
    }
    static void load() {
        printedBy([] {
            playlist->initLoad(0);
            while (playlist->loading != 0) {
                playlist->loopLoadPlaylist();
            }
        });
    }
};

// Nothing can fail where nothing is asked for.
TEST_F(ShortMix, PlayingAndTheSimpleScreens_AskForNoMemory) {
    load();
    ASSERT_EQ(playlist->loadSlot, 2);
    mix->layer[0].deck = 1;
    for (const int mode : {0, 1, 2, 3, 4, 5, 6}) {
        mix->mode = mode;
        for (const int subState : {SUB_PERFORMING, SUB_OVERMENU}) {
            all->subState = subState;
            EXPECT_EQ(memoryCalls([] { runFrame(); }), 0) << mode;
        }
    }
    for (const int state : {STATE_INTRO, STATE_HOME, STATE_OPTIONS}) {
        all->state = state;
        EXPECT_EQ(memoryCalls([] { runFrame(); }), 0) << state;
    }
    _options->page = 1;
    EXPECT_EQ(memoryCalls([] { runFrame(); }), 0);
}

class ShortLoad : public ShortMix, public testing::WithParamInterface<Shortage> {};

// Three tracks, the third missing. One call that fails costs one clip, and the next takes its slot.
TEST_P(ShortLoad, EachCallOfAPlaylistFails_GoesOnToTheNextTrack) {
    long call = 1;
    for (bool failed = true; failed && call < kMostCalls && !HasFailure(); ++call) {
        SCOPED_TRACE(call);
        playlist->clearMix();
        for (int slot = 0; slot < 3; ++slot) {
            std::vector<uint16_t>().swap(moxel[slot].prevMap);
            std::vector<uint16_t>().swap(moxel[slot].prevCodes);
            std::string().swap(moxel[slot].name);
            std::string().swap(moxel[slot].path);
        }
        const std::string said = printedBy([&] {
            failed = withFailingMemory(call, GetParam(), [] {
                playlist->initLoad(0);
                for (int step = 0; playlist->loading != 0 && step < 1000; ++step) {
                    runFrame();
                }
            });
        });
        EXPECT_EQ(playlist->loadDone, 1);
        EXPECT_EQ(playlist->loadTrack, 3);
        EXPECT_EQ(said.find(kLine), std::string::npos) << said;
        EXPECT_EQ(said.find(kClipLine) != std::string::npos, failed) << said;
        if (GetParam() == Shortage::ONE_CALL) {
            EXPECT_EQ(said.find(kClipLine), said.rfind(kClipLine)) << said;
            // The third track is refused anyway.
            EXPECT_GE(playlist->loadSlot, failed ? 1 : 2);
        }
        for (int slot = 0; slot < 3; ++slot) {
            const bool ready = slot < playlist->loadSlot;
            EXPECT_EQ(moxel[slot].state == CLIP_READY, ready);
            EXPECT_EQ(moxel[slot].hasRAM, ready ? 1 : 0);
            EXPECT_EQ(moxel[slot].file, nullptr);
        }
    }
    EXPECT_EQ(playlist->loadSlot, 2);
    // A clip has name, path, the drawn map and its codes, and three blocks of nine buffers; the
    // missing one has a name and a path. Then comes a load without failure.
    EXPECT_EQ(call - 1, 2 * 31 + 2 + 1);
}

INSTANTIATE_TEST_SUITE_P(Shortages, ShortLoad,
                         testing::Values(Shortage::ONE_CALL, Shortage::FROM_THEN_ON), shortageName);

// SDL makes no surface of 65536 rows, so there is no stand-in for such a display.
TEST_F(ShortMix, NoStandIn_PlaysOnWithoutAPicture) {
    placeClip("rgb-all-360.m19", "full.m19");
    placeClip("runs-360.m19", "runs.m19");
    loadClip(0, "full.m19");
    loadClip(1, "runs.m19");
    playlist->loadSlot = 2;
    mix->layer[0].deck = 1;
    const auto openDisplay = [](int width, int height) {
        scripted().displayWidth = width;
        scripted().displayHeight = height;
        scripted().displayDepth = 32;
        scripted().refusals = {true};
        printedBy(updateResolution);
    };
    openDisplay(16, 65536);
    for (const int mode : {0, 1, 2, 3, 4, 6}) {
        mix->mode = mode;
        const int frame = mix->layer[1].frame;
        EXPECT_EQ(runFrame(), 1);
        EXPECT_EQ(mix->layer[1].frame, frame + 1);
    }
    openDisplay(1280, 720);
    mix->mode = MODE_TOP;
    runFrame();
    const auto* row = static_cast<const uint32_t*>(screen[1]->pixels) + 2 * 1280;
    EXPECT_TRUE(std::any_of(row, row + 1280, [](uint32_t p) { return p != 0; }));
}

}  // namespace

extern "C" SDL_Surface* SDL_CreateRGBSurface(Uint32 flags, int width, int height, int depth,
                                             Uint32 red, Uint32 green, Uint32 blue, Uint32 alpha) {
    using Function = SDL_Surface* (*)(Uint32, int, int, int, Uint32, Uint32, Uint32, Uint32);
    static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "SDL_CreateRGBSurface"));
    SDL_Surface* surface = real(flags, width, height, depth, red, green, blue, alpha);
    if (surface != nullptr && hasPageSize(width, height)) {
        ++pageSurfaces;
        ++pageSurfacesMade;
    }
    return surface;
}

extern "C" void SDL_FreeSurface(SDL_Surface* surface) {
    using Function = void (*)(SDL_Surface*);
    static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "SDL_FreeSurface"));
    if (surface != nullptr && surface->refcount == 1 && hasPageSize(surface->w, surface->h)) {
        --pageSurfaces;
    }
    real(surface);
}
