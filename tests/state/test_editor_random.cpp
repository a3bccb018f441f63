// Hands without a plan: whatever is pressed and dragged in whatever order, the editor stays inside
// its lists.
#include <random>

#include "moxel/moxel.h"
#include "state/editor_hands.h"
#include "support/seed.h"

namespace {

constexpr int kFrames = 4000;
constexpr int kFramesFromAPage = 250;

class RandomHands : public EditorTest {
protected:
    RandomHands() {
        random.seed(seed);
        placeClip("rgb-all-360.m19", "full.m19");
        for (int clip = 0; clip < 30; ++clip) {
            writeFile(numbered("videos/live/c", clip) + ".m19", "");
        }
        for (int list = 0; list < 20; ++list) {
            addFamille(std::string(92, 'W'),
                       std::vector<std::string>(static_cast<size_t>(list * 13 % 52), "full.m19"));
        }
    }
    int below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
    // Mostly on the pages' parts, sometimes anywhere.
    Spot anySpot() {
        switch (below(6)) {
            case 0:
                return leftRow(below(17));
            case 1:
                return rightRow(below(17));
            case 2:
                return {below(2) == 0 ? 314 : 632, below(240)};
            case 3:
                return {below(640), below(2) == 0 ? 240 : 268};
            case 4:
                return below(2) == 0 ? Spot{20 + below(100), 320} : keyCell(below(42));
            default:
                return {below(1400) - 380, below(800) - 220};
        }
    }
    // Each page has its turns, however the hands find their way.
    void startOn(int shown) {
        playlist->editPage = page::BROWSE;
        editor->question = ASK_NOTHING;
        editor->carriedFrom = -1;
        editor->gate = {};
        if (playlist->nbFamilles == 0) {
            addFamille("again", {"full.m19"});
        }
        if (shown == page::NEW_PLAYLIST) {
            editor->useButton(below(2) == 0 ? page::CREATE : page::RENAME);
        } else if (shown == page::TRACKS) {
            editor->useButton(page::EDIT);
        }
    }
    void anyFrame() {
        constexpr int kSlots[] = {KEY_UP,        KEY_DOWN,   KEY_LEFT, KEY_RIGHT,   KEY_X,
                                  KEY_BACKSPACE, KEY_RETURN, PAD_BACK, PAD_CONFIRM, PAD_CONFIRM};
        constexpr int kSymbols[] = {SDLK_ESCAPE, SDLK_RETURN, SDLK_SPACE, SDLK_BACKSPACE,
                                    'a',         'Z',         '*',        0x20AC};
        setKeys({});
        if (below(3) == 0) {
            setKeys({kSlots[below(10)]});
        }
        keys->typedCount = below(4) == 0 ? 2 : 0;
        keys->typed[0] = {kSymbols[below(8)], 0};
        keys->typed[1] = {0, static_cast<uint16_t>(below(300))};
        keys->wheel = below(5) == 0 ? below(9) - 4 : 0;
        keys->mouseClick = below(4) == 0 ? 1 : 0;
        keys->mouseHeld = keys->mouseClick == 0 && below(5) != 0 ? 1 : 0;
        if (below(3) == 0) {
            pointAt(anySpot());
        }
        frame();
    }
    static void expectInside() {
        ASSERT_GE(playlist->nbFamilles, 0);
        ASSERT_LE(playlist->nbFamilles, 50);
        ASSERT_GE(playlist->editFamille, 0);
        ASSERT_LT(playlist->editFamille, 50);
        for (int f = 0; f < playlist->nbFamilles; ++f) {
            ASSERT_LE(playlist->familles[f].nbTracks, 51);
            ASSERT_GE(playlist->familles[f].nbTracks, 0);
        }
        ASSERT_LE(playlist->newName.size(), 92u) << "an old name may be as long as in a file";
        ASSERT_LT(editor->carriedFrom, 50);
        for (const ScrollBar& bar : playlist->scroll) {
            ASSERT_GE(bar.pos, 0);
            ASSERT_LE(bar.pos, bar.maxPos);
        }
    }

    void noteWhatIsSeen() {
        carried += editor->carriedFrom >= 0 ? 1 : 0;
        focused += editor->focus != page::kNoButton ? 1 : 0;
        renamed += editor->takesLetters() && editor->renaming != 0 ? 1 : 0;
        copied = std::max(copied, playlist->nbFamilles);
        discarding += editor->question == ASK_DISCARD ? 1 : 0;
    }

    const unsigned seed = chosenSeed();
    std::mt19937 random;
    int carried = 0, focused = 0, renamed = 0, copied = 0, discarding = 0;
};

TEST_F(RandomHands, AnyFrames_StayInsideTheLists) {
    SCOPED_TRACE("VELMORA_SEED=" + std::to_string(seed));
    for (int i = 0; i < kFrames; ++i) {
        if (i % kFramesFromAPage == 0) {
            startOn(i / kFramesFromAPage % 3);
        }
        all->state = STATE_PLAYLISTS;
        anyFrame();
        expectInside();
        noteWhatIsSeen();
        if (HasFatalFailure()) {
            return;
        }
        if (i % 3 == 0) {
            draw();
        }
    }
    EXPECT_GT(carried, 0);
    EXPECT_GT(focused, 0);
    EXPECT_GT(renamed, 0);
    EXPECT_GT(copied, 20);
    EXPECT_GT(discarding, 0);
}

}  // namespace
