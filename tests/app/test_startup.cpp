// What the program says and does from its start to its end.
#include <X11/keysym.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <stdexcept>

#include "app/pictures.h"
#include "app/screens.h"
#include "app/stage.h"
#include "app/tiny_clip.h"

namespace {

using app::Screen;
using app::Stage;

constexpr const char* kStarting = "Starting Velmora\n\n";
constexpr const char* kNoPlaylists = "can't find playlists XML file\n";
constexpr const char* kComposite = "Composite OutPut detected, adjusting app resolution.\n";
// The options' two files are missing in every run here.
constexpr const char* kNoUserFiles = "can't find prefs file\ncan't find controller xml file\n";
constexpr const char* kAdvice =
    "When using HDMI, please set the screen resolution to 1280 x 720.\n"
    "Overscan should be disabled ( see: "
    "https://www.raspberrypi.com/documentation/computers/configuration.html ).\n";

std::string sizes(const std::string& display, const std::string& advice, const std::string& app) {
    return "Current screen resolution : " + display + "\n" + advice +
           "Current app resolution : " + app + "\n";
}

// After kStarting come `sizes`, the two lines about the options' files, and `end`.
void expectOutput(Stage& stage, const std::string& sizes, const std::string& end = "") {
    EXPECT_EQ(stage.output(), kStarting + sizes + kNoUserFiles + end);
}

void expectWindow(Stage& stage, int width, int height) {
    const app::WindowPlace place = stage.window();
    EXPECT_EQ(place.width, width);
    EXPECT_EQ(place.height, height);
}

constexpr const char* kClip = "one.m19";

// One clip loads, which prints its name; then the window is closed.
void playOneClip(Stage& stage) {
    stage.folder.addClip(kClip, app::tinyClip({{app::flatPicture(0xF800), {}}}));
    stage.folder.addPlaylist("ONE", {kClip});
    stage.folder.writePlaylists();
    stage.startMix(1);
    EXPECT_EQ(stage.closeWindow(), 1);
}

// A pipe by name, with a reader that stops reading.
class Pipe {
public:
    explicit Pipe(const std::string& path) : path_(path) {
        if (mkfifo(path.c_str(), 0600) != 0) {
            throw std::runtime_error("no pipe " + path);
        }
        file_ = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    }
    ~Pipe() { stopReading(); }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    void stopReading() {
        close(file_);
        file_ = -1;
    }
    const std::string& path() const { return path_; }

private:
    std::string path_;
    int file_ = -1;
};

// Runs the program on a terminal of its own without any display. The shell adds a line when the
// terminal's settings are others than before.
std::string sayOnTerminal(const std::vector<std::string>& environment, int* status) {
    const app::RunFolder folder;
    app::ChildSetup setup;
    setup.command = {"script", "-qec",
                     "before=$(stty -g); \"$PROGRAM\"; status=$?; "
                     "[ \"$(stty -g)\" = \"$before\" ] || echo other settings; exit $status",
                     "/dev/null"};
    setup.environment = environment;
    setup.environment.emplace_back(std::string("PROGRAM=") + APP_PROGRAM);
    setup.environment.emplace_back("TERM=xterm");
    setup.environment.emplace_back("XDG_RUNTIME_DIR=" + folder.path());
    setup.environment.emplace_back("ASAN_OPTIONS=detect_leaks=0");
    setup.folder = folder.path();
    setup.output = folder.path() + "/stdout";
    app::Child script;
    script.start(setup);
    *status = script.waitExit(app::kPatienceMs).value_or(-1);
    return folder.read("stdout");
}

constexpr const char* kNoDisplayOnTerminal =
    "Starting Velmora\r\n\r\n"
    "No display found. Start Velmora on this machine's desktop or X server (see raspberry-pi.md)."
    "\r\n";

}  // namespace

TEST(Startup, HdmiSizeWithPlaylists_PrintsSizesOnly) {
    Stage stage;
    stage.folder.writePlaylists();
    stage.start();
    expectWindow(stage, 1280, 720);
    EXPECT_EQ(stage.closeWindow(), 1);
    expectOutput(stage, sizes("1280 x 720", "", "1280 x 720"));
}

TEST(Startup, HdmiSizeWithoutPlaylists_SaysThatTheFileIsMissing) {
    Stage stage;
    stage.start();
    expectWindow(stage, 1280, 720);
    EXPECT_EQ(stage.closeWindow(), 1);
    expectOutput(stage, kNoPlaylists + sizes("1280 x 720", "", "1280 x 720"));
}

TEST(Startup, OtherHeight_AdvisesAndOpensHdmiWindow) {
    Stage stage(Screen{1280, 1024});
    stage.folder.writePlaylists();
    stage.start();
    expectWindow(stage, 1280, 720);
    EXPECT_EQ(stage.closeWindow(), 1);
    expectOutput(stage, sizes("1280 x 1024", kAdvice, "1280 x 720"));
}

TEST(Startup, FullHd_AdvisesAndOpensHdmiWindow) {
    Stage stage(Screen{1920, 1080});
    stage.folder.writePlaylists();
    stage.start();
    expectWindow(stage, 1280, 720);
    EXPECT_EQ(stage.closeWindow(), 1);
    expectOutput(stage, sizes("1920 x 1080", kAdvice, "1280 x 720"));
}

TEST(Startup, NarrowDisplay_IsCompositeAndOpensWindowOfItsSize) {
    Stage stage(Screen{720, 480});
    stage.folder.writePlaylists();
    stage.start();
    expectWindow(stage, 720, 480);
    EXPECT_EQ(stage.closeWindow(), 1);
    expectOutput(stage, kComposite + sizes("720 x 480", kAdvice, "720 x 480"), kComposite);
}

TEST(Startup, NarrowDisplayWithoutPlaylists_SaysSoBeforeComposite) {
    Stage stage(Screen{799, 600});
    stage.start();
    expectWindow(stage, 799, 600);
    EXPECT_EQ(stage.closeWindow(), 1);
    expectOutput(stage,
                 std::string(kNoPlaylists) + kComposite + sizes("799 x 600", kAdvice, "799 x 600"),
                 kComposite);
}

TEST(Startup, DisplayOf800_IsNotComposite) {
    Stage stage(Screen{800, 600});
    stage.folder.writePlaylists();
    stage.start();
    expectWindow(stage, 1280, 720);
    EXPECT_EQ(stage.closeWindow(), 1);
    expectOutput(stage, sizes("800 x 600", kAdvice, "1280 x 720"));
}

TEST(Startup, MissingAtlas_ReachesHome) {
    Stage stage;
    stage.folder.removeData("textureUI.png");
    stage.folder.writePlaylists();
    stage.startAtHome();
    EXPECT_EQ(stage.closeWindow(), 1);
    expectOutput(stage, sizes("1280 x 720", "", "1280 x 720"));
}

TEST(Startup, NoDataFilesAtAll_RunsWithoutPicturesAndWords) {
    Stage stage;
    stage.folder.removeData("");
    stage.folder.addPlaylist("ONE", {"missing.m19"});
    stage.folder.writePlaylists();
    stage.startAtHome();
    // Only the selection bars of "MIX" are on the black screen: 4 bars of 94 x 2 that share four
    // corners of 2 x 2.
    const app::Shot home = stage.look();
    EXPECT_EQ(app::countOf(home, {0, 0, 1280, 720}, app::kWhite), 4 * 188 - 4 * 4);
    EXPECT_EQ(app::countOf(home, {0, 0, 1280, 720}, 0), 1280 * 720 - (4 * 188 - 4 * 4));
    stage.tap(XK_x);
    EXPECT_EQ(app::overMenuSelection(stage.look(), 1), 0);
    EXPECT_EQ(stage.closeWindow(), 1);
}

TEST(Startup, NoDisplay_OneLineAndTheTerminalAsItWas) {
    int status = 0;
    EXPECT_EQ(sayOnTerminal({}, &status), kNoDisplayOnTerminal);
    EXPECT_EQ(status, 1);
}

// No server has so high a number.
TEST(Startup, DisplayThatNobodyAnswers_OneLineAndTheTerminalAsItWas) {
    int status = 0;
    EXPECT_EQ(sayOnTerminal({"DISPLAY=:64999"}, &status), kNoDisplayOnTerminal);
    EXPECT_EQ(status, 1);
}

// Not at the end: the last line before a fault names the clip.
TEST(Output, IntoAFile_ComesLineByLine) {
    Stage stage;
    stage.start();
    EXPECT_EQ(stage.output(),
              kStarting + (kNoPlaylists + sizes("1280 x 720", "", "1280 x 720")) + kNoUserFiles);
    EXPECT_EQ(stage.closeWindow(), 1);
}

TEST(Output, PipeThatNobodyReads_ShowGoesOn) {
    Stage stage;
    Pipe pipe(stage.folder.path() + "/pipe");
    stage.printsTo = pipe.path();
    stage.folder.addClip(kClip, app::tinyClip({{app::flatPicture(0xF800), {}}}));
    stage.folder.addPlaylist("ONE", {kClip});
    stage.folder.writePlaylists();
    stage.startAtOverMenu();
    pipe.stopReading();
    stage.tap(XK_x);
    stage.passPictures(app::kPicturesToSee);
    EXPECT_EQ(stage.closeWindow(), 1);
}

// Where no room is left for a line.
TEST(Output, FullDisk_ShowGoesOn) {
    Stage stage;
    stage.printsTo = "/dev/full";
    playOneClip(stage);
}

// Nothing else may take the place of the closed output: a line would go into it, and the display's
// own connection is the first that comes.
TEST(Output, Closed_ShowGoesOn) {
    Stage stage;
    stage.printsTo = "";
    playOneClip(stage);
}

TEST(Quit, KeyOnQuitItem_EndsWithStatus1) {
    Stage stage;
    stage.startAtHome();
    stage.tap(XK_Right);
    stage.tap(XK_Down);
    stage.await([](const app::Shot& shot) { return app::homeSelection(shot) == 4; },
                "QUIT selected");
    stage.keyDown(XK_x);
    EXPECT_EQ(stage.waitExit(), 1);
}

// The corners of the item's square belong to it: (377, 180) and (471, 274) in the picture.
TEST(Quit, ClickOnQuitItem_EndsWithStatus1) {
    Stage stage;
    stage.startAtHome();
    stage.click(320 + 376, 180 + 180);
    stage.click(320 + 377, 180 + 275);
    EXPECT_TRUE(stage.running());
    stage.pointerTo(320 + 471, 180 + 274);
    stage.passPictures(app::kPicturesToSee);
    stage.mouseDown();
    EXPECT_EQ(stage.waitExit(), 1);
}
