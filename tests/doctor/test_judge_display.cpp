#include <gtest/gtest.h>

#include <fstream>

#include "support/folder.h"
#include "tests/doctor/said.h"
#include "tools/doctor/display.h"

namespace doctor {
namespace {

namespace fs = std::filesystem;

Remarks judged(const DisplayFacts& display, const std::vector<Screen>& screens = {}) {
    Remarks remarks;
    judgeDisplay(display, screens, remarks);
    return remarks;
}

DisplayFacts screenOf(int width, int height, int depth) {
    return {":0", "", true, "x11", width, height, depth};
}

TEST(JudgeDisplay, ItsOwnSizeAndDepth_IsInOrder) {
    const Remarks remarks = judged(screenOf(1280, 720, 16));
    EXPECT_TRUE(atWorst(remarks, Grade::FINE));
    EXPECT_TRUE(says(remarks, Grade::FINE, "display", "the screen has 1280 x 720, as the picture"));
    EXPECT_TRUE(says(remarks, Grade::FINE, "display", "16 bits a pixel, as Velmora draws, by x11"));
}

TEST(JudgeDisplay, DeepColours_AreInOrder) {
    for (const int depth : {24, 32}) {
        EXPECT_TRUE(
            says(judged(screenOf(1280, 720, depth)), Grade::FINE, "display",
                 std::to_string(depth) + " bits a pixel, by x11; what changes is converted"));
    }
}

TEST(JudgeDisplay, FewColours_Hurt) {
    for (const int depth : {8, 15}) {
        EXPECT_TRUE(says(judged(screenOf(1280, 720, depth)), Grade::HURTS, "display",
                         std::to_string(depth) + " bits a pixel are too few for Velmora's colours",
                         "Let the X server run with 16 or 24 bits a pixel."));
    }
}

TEST(JudgeDisplay, NarrowScreen_IsComposite) {
    const Remarks remarks = judged(screenOf(799, 600, 16));
    EXPECT_TRUE(says(remarks, Grade::NOTE, "display",
                     "the screen has 799 x 600: it counts as a composite output, with the picture "
                     "1:1 in the middle",
                     "If it is no composite output, switch the screen on before Velmora starts."));
}

TEST(JudgeDisplay, SmallScreen_CutsThePicture) {
    for (const auto& [width, height] : {std::pair{800, 720}, {1280, 719}, {1279, 800}}) {
        EXPECT_TRUE(
            says(judged(screenOf(width, height, 16)), Grade::HURTS, "display",
                 said("the screen has ", std::to_string(width), " x ", std::to_string(height),
                      ", less than the picture's 1280 x 720: its edges are cut off"),
                 "Set the screen to 1280 x 720, or choose 1024 x 768 in OPTIONS."));
    }
}

TEST(JudgeDisplay, LargeScreen_IsNotFilled) {
    for (const auto& [width, height] : {std::pair{1920, 1080}, {1281, 720}, {1280, 721}}) {
        EXPECT_TRUE(says(judged(screenOf(width, height, 16)), Grade::NOTE, "display",
                         said("the screen has ", std::to_string(width), " x ",
                              std::to_string(height), ": the picture covers 1280 x 720 of it"),
                         "Set the screen to 1280 x 720, or press F for full screen."));
    }
}

TEST(JudgeDisplay, SilentScreen_IsSaid) {
    EXPECT_TRUE(says(judged(screenOf(0, 0, 16)), Grade::NOTE, "display",
                     "the screen does not say how large it is"));
}

TEST(JudgeDisplay, NothingNamed_Stops) {
    EXPECT_TRUE(says(judged({}), Grade::STOPS, "display",
                     "there is none: neither DISPLAY nor WAYLAND_DISPLAY is set",
                     "Start Velmora on the machine's own screen, not over a network."));
}

TEST(JudgeDisplay, NothingPluggedIn_Stops) {
    EXPECT_TRUE(says(judged({}, {{"HDMI-A-1", false, ""}, {"HDMI-A-2", false, ""}}), Grade::STOPS,
                     "display", "no screen is plugged in",
                     "Plug it in and switch it on before the machine starts."));
}

TEST(JudgeDisplay, PluggedInBeforeTheServer_IsNoted) {
    const Remarks remarks = judged({}, {{"HDMI-A-1", false, ""}, {"HDMI-A-2", true, "1920x1080"}});
    EXPECT_TRUE(says(remarks, Grade::NOTE, "display",
                     "no X server is named; the screen at HDMI-A-2 has 1920x1080"));
    EXPECT_TRUE(says(judged({}, {{"HDMI-A-2", true, ""}}), Grade::NOTE, "display",
                     "no X server is named; the screen at HDMI-A-2"));
}

TEST(JudgeDisplay, NoAnswer_Stops) {
    const std::string mend =
        "Start Velmora from the desktop that is on the screen, as the user whose desktop it is.";
    EXPECT_TRUE(says(judged({":7", "", false, "", 0, 0, 0}), Grade::STOPS, "display",
                     "\":7\" does not answer", mend));
    // SDL went on to draw with letters.
    EXPECT_TRUE(says(judged({":7", "", true, "caca", 0, 0, 0}), Grade::STOPS, "display",
                     "\":7\" does not answer", mend));
}

TEST(JudgeDisplay, DriverWithoutPicture_Stops) {
    EXPECT_TRUE(says(judged({":7", "dummy", true, "dummy", 0, 0, 0}), Grade::STOPS, "display",
                     "SDL is told to draw by \"dummy\", which nobody can see",
                     "Take SDL_VIDEODRIVER out of the environment."));
    EXPECT_TRUE(atWorst(judged({"", "fbcon", true, "fbcon", 1280, 720, 16}), Grade::FINE));
}

TEST(JudgeSdl, BothFlavours_AreNamed) {
    Remarks remarks;
    judgeSdl({1, 2, 15, false}, remarks);
    judgeSdl({1, 2, 68, true}, remarks);
    EXPECT_TRUE(says(remarks, Grade::FINE, "SDL", "1.2.15, the classic one"));
    EXPECT_TRUE(says(remarks, Grade::FINE, "SDL", "1.2.68, the layer over SDL 2"));
}

TEST(Screens, Kernel_TellsThem) {
    const TemporaryFolder folder;
    for (const char* const name : {"card1", "card1-HDMI-A-2", "card1-HDMI-A-1", "version"}) {
        fs::create_directory(name);
    }
    std::ofstream("card1-HDMI-A-1/status") << "disconnected\n";
    std::ofstream("card1-HDMI-A-1/modes") << "";
    std::ofstream("card1-HDMI-A-2/status") << "connected\n";
    std::ofstream("card1-HDMI-A-2/modes") << "1920x1080\n1280x720\n";
    const std::vector<Screen> screens = screensIn(".");
    ASSERT_EQ(screens.size(), 2U);
    EXPECT_EQ(screens[0].name, "HDMI-A-1");
    EXPECT_FALSE(screens[0].plugged);
    EXPECT_EQ(screens[1].name, "HDMI-A-2");
    EXPECT_TRUE(screens[1].plugged);
    EXPECT_EQ(screens[1].mode, "1920x1080");
    EXPECT_TRUE(screensIn("nowhere").empty());
}

}  // namespace
}  // namespace doctor
