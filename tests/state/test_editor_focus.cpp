// How the playlist screen marks what the keys are on.
#include "state/editor_hands.h"

namespace {

using Names = std::vector<std::string>;

class FocusMarks : public EditorTest {
protected:
    static constexpr uint16_t kWhite = 0xFFFF;
    static constexpr uint16_t kPaper = 0x18C3;
    static constexpr uint16_t kOrange = 0xFD80;
    // The two rows above a button at a place of the page.
    static bool framed(int x, int y) {
        return countPixels(screen[0], 320 + x, 180 + y - 2, 56, 2, kWhite) == 112;
    }
    static uint16_t rowColour(int row) {
        return pixelAt(screen[0], 320 + 305, 180 + 18 + 13 * row);
    }
};

TEST_F(FocusMarks, ButtonWithTheKeys_IsFramedAndTheRowGreyed) {
    addFamille("A");
    frame();
    draw();
    EXPECT_FALSE(framed(66, 228));
    EXPECT_EQ(rowColour(0), kWhite);
    tap(KEY_LEFT);
    tap(KEY_RIGHT);
    draw();
    EXPECT_TRUE(framed(66, 228)) << "edit";
    EXPECT_FALSE(framed(258, 228));
    EXPECT_EQ(rowColour(0), 0x8C51) << "0x888888";
    click(kNowhere);
    draw();
    EXPECT_FALSE(framed(66, 228)) << "the mouse takes over";
}

TEST_F(FocusMarks, CarriedRow_IsOrange) {
    addFamille("A");
    addFamille("B");
    click(kMove);
    draw();
    EXPECT_EQ(rowColour(0), kOrange);
    tap(KEY_DOWN);
    draw();
    EXPECT_EQ(rowColour(1), kOrange);
    // A press sets it down and does nothing else.
    click(kDelete);
    draw();
    EXPECT_EQ(rowColour(1), kWhite);
    EXPECT_EQ(familleNames(), (Names{"B", "A"}));
    EXPECT_EQ(editor->question, ASK_NOTHING);
    EXPECT_NE(readFile("userdata/playlists.xml"), "");
}

TEST_F(FocusMarks, ChosenAnswer_IsFramed) {
    addFamille("A");
    frame();
    tap(KEY_BACKSPACE);
    draw();
    EXPECT_TRUE(framed(74, 310)) << "no";
    EXPECT_FALSE(framed(10, 310));
    tap(PAD_LEFT);
    draw();
    EXPECT_TRUE(framed(10, 310)) << "yes";
    EXPECT_FALSE(framed(74, 310));
}

}  // namespace
