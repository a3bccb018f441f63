// The program from start to end: order of the start-up, what it prints, its failures.
#include "state/real_main.h"

#include <cstdlib>

#include "state/stage.h"

namespace {

constexpr const char* kStarting = "Starting Velmora\n\n";
constexpr const char* kNoPlaylists = "can't find playlists XML file\n";
constexpr const char* kComposite = "Composite OutPut detected, adjusting app resolution.\n";
constexpr const char* kHdmiAdvice =
    "When using HDMI, please set the screen resolution to 1280 x 720.\n"
    "Overscan should be disabled ( see: "
    "https://www.raspberrypi.com/documentation/computers/configuration.html ).\n";

class Main : public testing::Test {
protected:
    Main() {
        std::filesystem::create_directory_symlink(TEST_DATA "/../../data", "data");
        resetScript();
        scripted().ticksEachCall = 40;  // each call of the main loop runs a frame
    }
    ~Main() override {
        destroyGlobals();
        resetScript();
    }

    static void SetUpTestSuite() { seedsBeforeMain_ = firstSeed().calls; }

    // Runs until the window is closed in the first frame.
    void run() {
        scripted().events = {plainEvent(SDL_QUIT)};
        output_ = printedBy([&] { status_ = velmoraMain(0, nullptr); });
        if (!g_bMainLoop) {
            screen[0] = nullptr;  // released at the end of a run
        }
    }
    bool printed(const std::string& start) const {
        return output_.compare(0, start.size(), start) == 0;
    }

    inline static int seedsBeforeMain_ = 0;
    TemporaryFolder folder_;
    std::string output_;
    int status_ = -1;
};

TEST_F(Main, Start_CallsInOrder) {
    run();
    EXPECT_EQ(scripted().calls, (std::vector<std::string>{
                                    "SDL_Init 544",  // video and joystick
                                    "SDL_WM_SetCaption Velmora Velmora",
                                    "SDL_EnableUNICODE 1",
                                    "SDL_EnableKeyRepeat 500 30",
                                    "SDL_JoystickOpen 0",
                                    "SDL_SetVideoMode 1280 720 16 0",
                                    "SDL_SetVideoMode 1280 720 16 0",
                                    "SDL_ShowCursor 1",
                                    "SDL_Quit",
                                }));
}

// Every run has its own snow: the seed is the time in seconds, taken before main() runs.
TEST_F(Main, RandomNumbers_SeededOnceFromTheTimeBeforeTheStart) {
    EXPECT_EQ(seedsBeforeMain_, 1);
    EXPECT_LE(firstSeed().seed, static_cast<unsigned>(firstSeed().at));
    EXPECT_GE(firstSeed().seed + 1, static_cast<unsigned>(firstSeed().at));
    run();
    EXPECT_EQ(firstSeed().calls, seedsBeforeMain_);
}

TEST_F(Main, Start_LeavesTheGlobalsSet) {
    scripted().joysticks = 2;
    run();
    EXPECT_EQ(x2, 2);
    EXPECT_EQ(maxDeck, 0);
    EXPECT_EQ(debugCount, 0);
    EXPECT_EQ(joy, nullptr);
    EXPECT_EQ(_nbJoySticks, 2);
    EXPECT_EQ(_colorW, 0x00FFFFFFu);
    EXPECT_EQ(_colorN, 0x00000000u);
    EXPECT_EQ(_colorR, 0x00FE00C3u);
    EXPECT_EQ(_colorB, 0x0059B1FFu);
    EXPECT_EQ(_colorO, 0x00FFB000u);
    EXPECT_NE(_textureUI, nullptr);
    EXPECT_NE(finalTilesMix, nullptr);
    EXPECT_EQ(all->state, STATE_INTRO);
    EXPECT_EQ(all->subState, SUB_OVERMENU);
    EXPECT_EQ(tempsPrecedent, 40);
    EXPECT_EQ(_intro->counter, 49);
    EXPECT_EQ(keys->padButton[0], 99);
}

TEST_F(Main, DisplayOf1280x720_NoAdvice) {
    run();
    EXPECT_TRUE(printed(std::string(kStarting) + kNoPlaylists +
                        "Current screen resolution : 1280 x 720\n"
                        "Current app resolution : 1280 x 720\n"))
        << output_;
}

TEST_F(Main, OtherDisplay_AdviceAndTheSameWindow) {
    scripted().displayWidth = 1280;
    scripted().displayHeight = 1024;
    run();
    EXPECT_TRUE(printed(std::string(kStarting) + kNoPlaylists +
                        "Current screen resolution : 1280 x 1024\n" + kHdmiAdvice +
                        "Current app resolution : 1280 x 720\n"))
        << output_;
    EXPECT_EQ(scripted().modeCalls[0], (ModeCall{1280, 720, 16, 0}));
}

TEST_F(Main, CompositeDisplay_MessageAdviceAndItsOwnSize) {
    scripted().displayWidth = 720;
    scripted().displayHeight = 480;
    run();
    EXPECT_TRUE(printed(std::string(kStarting) + kNoPlaylists + kComposite +
                        "Current screen resolution : 720 x 480\n" + kHdmiAdvice +
                        "Current app resolution : 720 x 480\n"))
        << output_;
    EXPECT_EQ(scripted().modeCalls[0], (ModeCall{720, 480, 16, 0}));
    EXPECT_EQ(scripted().modeCalls[1], (ModeCall{720, 480, 16, 0}));
    EXPECT_EQ(all->composite, 1);
}

TEST_F(Main, Playlists_ReadAndScanned) {
    writeFile("userdata/playlists.xml",
              "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n\t<playlist>\n"
              "\t\t<name>one</name>\n\t\t<track>gone.m19</track>\n\t</playlist>\n</all>\n");
    run();
    EXPECT_EQ(familleNames(), std::vector<std::string>{"one"});
    EXPECT_EQ(playlist->familles[0].nbMissing, 1);
}

TEST_F(Main, SavedSize_OpensTheModeOnceMore) {
    writeFile("userdata/prefs.xml",
              "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n\t<mode>0</mode>\n"
              "\t<topbar>0</topbar>\n\t<fps>0</fps>\n\t<res_w>1024</res_w>\n\t<res_h>768</res_h>\n"
              "</all>\n");
    run();
    ASSERT_EQ(scripted().modeCalls.size(), 3U);  // two for every start
    EXPECT_EQ(scripted().modeCalls[2].width, 1024);
    EXPECT_EQ(scripted().modeCalls[2].height, 768);
}

TEST_F(Main, WithoutData_StartsAllTheSame) {
    std::filesystem::remove("data");
    run();
    EXPECT_EQ(_textureUI, nullptr);
    EXPECT_EQ(_home->background, nullptr);
    EXPECT_EQ(_intro->logo, nullptr);
    EXPECT_EQ(_intro->counter, 49);
}

int openPictures() {
    int count = 0;
    for (const auto& each : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;  // the handle of this very walk
        const auto file = std::filesystem::read_symlink(each.path(), gone);
        count += file.extension() == ".png" ? 1 : 0;
    }
    return count;
}

// The font stays open for as long as it is used; pictures are read once.
TEST_F(Main, Start_ClosesItsPictures) {
    const int before = openPictures();
    run();
    EXPECT_EQ(openPictures(), before);
}

TEST_F(Main, quirk_video_mode_is_opened_twice) {
    run();
    EXPECT_EQ(scripted().modeCalls,
              (std::vector<ModeCall>{{1280, 720, 16, 0}, {1280, 720, 16, 0}}));
    // What was shown went to the second surface.
    EXPECT_EQ(scripted().updated, std::vector<SDL_Surface*>{screen[1]});
}

TEST_F(Main, quirk_exit_status_is_always_1) {
    run();
    EXPECT_EQ(status_, 1);
    EXPECT_EQ(isExit, 0);
}

TEST_F(Main, Quit_FinishesAndShowsTheFrame) {
    run();
    EXPECT_EQ(scripted().updated.size(), 1u);
    EXPECT_EQ(scripted().calls.back(), "SDL_Quit");
}

constexpr const char* kNoDisplay =
    "No display found. Start Velmora on this machine's desktop or X server (see "
    "raspberry-pi.md).\n";

// SDL is asked for nothing more, and nothing else is said.
void expectNoDisplay(const std::string& output, int status) {
    EXPECT_EQ(status, 1);
    EXPECT_EQ(output, std::string(kStarting) + kNoDisplay);
    EXPECT_EQ(scripted().calls, (std::vector<std::string>{"SDL_Init 544", "SDL_Quit"}));
    EXPECT_EQ(all, nullptr);
}

TEST_F(Main, NoVideoDriver_NoDisplay) {
    scripted().initResult = -1;
    scripted().videoDriver = nullptr;
    run();
    expectNoDisplay(output_, status_);
}

TEST_F(Main, DriverWithoutPicture_NoDisplay) {
    for (const char* driver : {"aalib", "caca", "dummy", "offscreen"}) {
        SCOPED_TRACE(driver);
        scripted().calls.clear();
        scripted().videoDriver = driver;
        run();
        expectNoDisplay(output_, status_);
        destroyGlobals();
    }
}

// The text driver's library does nothing then.
TEST_F(Main, TextDriver_LeavesTheTerminalAlone) {
    unsetenv("CACA_DRIVER");
    run();
    EXPECT_STREQ(getenv("CACA_DRIVER"), "null");
}

// Any other part of SDL may fail: the picture is there.
TEST_F(Main, NoJoysticks_PlaysAllTheSame) {
    scripted().initResult = -1;
    run();
    EXPECT_EQ(scripted().updated.size(), 1U);
}

void expectFailure(const std::string& output, int status, const char* line) {
    EXPECT_EQ(status, 1);
    EXPECT_EQ(scripted().calls.back(), "SDL_Quit");
    EXPECT_NE(output.find(std::string("\n") + line + "\n"), std::string::npos) << output;
    EXPECT_EQ(output.substr(output.size() - 2), std::string(line).substr(29) + "\n");
    EXPECT_TRUE(scripted().updated.empty());
    EXPECT_EQ(ttf, nullptr);
}

TEST_F(Main, FirstModeRefused_WindowA) {
    scripted().refusals = {true};
    run();
    expectFailure(output_, status_, "Could not create main window A");
    EXPECT_EQ(scripted().modeCalls.size(), 1u);
}

// SDL makes no surface of 65536 rows.
TEST_F(Main, WorkSurfaceImpossible_WindowB) {
    scripted().displayWidth = 16;
    scripted().displayHeight = 65536;
    run();
    expectFailure(output_, status_, "Could not create main window B");
}

TEST_F(Main, SecondModeRefused_WindowC) {
    scripted().refusals = {false, true};
    run();
    expectFailure(output_, status_, "Could not create main window C");
    EXPECT_EQ(scripted().modeCalls.size(), 2u);
}

}  // namespace
