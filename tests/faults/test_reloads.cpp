// A night of loading playlists takes no more memory than its first minutes. VELMORA_RELOADS makes
// it longer.
#include <malloc.h>

#include <iostream>

#include "faults/hands.h"

namespace faults {

namespace {

constexpr int kReloads = 60;
constexpr int kWarmUp = 10;
constexpr int kFramesPlayed = 12;
// What the allocator itself may keep more or less.
constexpr long kSlackBytes = 64 * 1024;

// In use on the heap; always 0 under the sanitizers, which find what is lost in another way.
long heapBytes() {
    const struct mallinfo2 facts = mallinfo2();
    return static_cast<long>(facts.uordblks + facts.hblkhd);
}

class Reloads : public StageTest {
protected:
    Reloads() {
        for (const char* name : {"rgba-all-360.m19", "rgb-all-360.m19", "seventeen-200.m19"}) {
            placeClip(name, name);
        }
        writeFile("videos/broken.m19", std::string("\x13\x50\x01\x00\x68\x01\x00", 7));
        addFamille("first", {"rgba-all-360.m19", "gone.m19", "rgb-all-360.m19"});
        addFamille("second", {"broken.m19", "seventeen-200.m19"});
        all->state = STATE_MIX;
        all->subState = SUB_OVERMENU;
    }
    // With the keys of the list over the mix; then plays for a moment.
    void reload(Hands& hands, int list) {
        all->subState = SUB_OVERMENU;
        hands.tap(list == 0 ? SDLK_UP : SDLK_DOWN);
        hands.load();
        ASSERT_EQ(playlist->loadSlot, list == 0 ? 2 : 1);
        for (int frame = 0; frame < kFramesPlayed; ++frame) {
            hands.tap(frame % 2 == 0 ? SDLK_RIGHT : SDLK_2);
        }
        scripted().updated.clear();  // the script's own notes
        scripted().buttonsAsked.clear();
    }
};

TEST_F(Reloads, ManyReloads_TakeNoMoreMemory) {
    Hands hands(1);
    const int reloads = chosenCount("VELMORA_RELOADS", kReloads);
    long before = 0;
    for (int i = 0; i < reloads && !HasFatalFailure(); ++i) {
        printedBy([&] { reload(hands, i % 2); });
        if (i == kWarmUp) {
            before = heapBytes();
        }
    }
    const long after = heapBytes();
    std::cout << reloads << " reloads: " << before << " bytes in use after " << kWarmUp << ", "
              << after << " at the end\n";
    EXPECT_LE(after, before + kSlackBytes);
}

}  // namespace

}  // namespace faults
