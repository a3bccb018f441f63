#include "app/stage.h"

#include <X11/keysym.h>

#include <cstdlib>
#include <stdexcept>

#include "app/screens.h"

namespace app {

namespace {

// VELMORA_PROGRAM in the environment: what to start instead, such as the program under a tool.
const char* program() {
    const char* other = getenv("VELMORA_PROGRAM");
    return other != nullptr ? other : APP_PROGRAM;
}

const int kLongPictureMs = 80 * slowness();  // two pictures and more
constexpr int kPicturesToRest = 10;          // within so many a program rests that ever does
constexpr int kPicturesPerTrack = 6;         // steps of loading one small clip, and one to spare

}  // namespace

Stage::Stage(Screen screen) : server_(screen), screen_(screen) {
    link_ = std::make_unique<XLink>(server_.display());
}

Stage::~Stage() {
    program_.stop(SIGTERM);
    const std::string complaints = errors();
    if (!complaints.empty()) {
        ADD_FAILURE() << "the program wrote on standard error:\n" << complaints;
    }
}

void Stage::startProgram(unsigned long addressSpace) {
    ChildSetup setup;
    setup.command = {program()};
    // Without the driver's name SDL would go on to a dummy display when the server refuses it.
    // Leaks at the end of the program are the end's: it releases nothing.
    setup.environment = {"DISPLAY=" + server_.display(), "SDL_VIDEODRIVER=x11",
                         "ASAN_OPTIONS=detect_leaks=0", "LD_PRELOAD=" APP_PRELOAD,
                         kFrameFileVariable + ("=" + frames_.path())};
    setup.folder = folder.path();
    setup.output = printsTo;
    setup.errors = folder.path() + "/stderr";
    setup.addressSpace = addressSpace;
    frames_.startAnew();
    program_.start(setup);
}

int Stage::startWithin(unsigned long addressSpace) {
    startProgram(addressSpace);
    return waitExit();
}

void Stage::start() {
    startProgram(0);
    if (!waitUntil([this] { return window().id != 0; })) {
        giveUp("the window did not come");
    }
    // What is said to the window while the program still opens its video mode goes unheard.
    passPictures(kPicturesToSee);
    focus();
}

void Stage::focus() {
    if (!waitUntil([this] { return link_->focus(window().id); })) {
        giveUp("the window does not take the keyboard");
    }
}

void Stage::startAtHome() {
    start();
    await([this](const Shot& shot) { return homeSelection(shot) == 0; }, "the home screen");
}

void Stage::startAtOverMenu() {
    startAtHome();
    tap(XK_x);
    await([this](const Shot& shot) { return overMenuShown(shot, folder.playlists()); },
          "the over-menu");
}

void Stage::startMix(int tracks) {
    startAtOverMenu();
    tap(XK_x);
    passPictures(tracks * kPicturesPerTrack);
}

void Stage::passPictures(int count) {
    const int last = picturesBegun() + count;
    if (!waitUntil([&] { return picturesShown() >= last || !running(); }, kPatienceMs, 1) ||
        !running()) {
        giveUp("the program stopped showing pictures");
    }
}

void Stage::press(unsigned long symbol) {
    link_->key(symbol, true);
    passPictures(kPicturesToSee);
}

void Stage::release(unsigned long symbol) {
    link_->key(symbol, false);
    passPictures(kPicturesToSee);
}

void Stage::tap(unsigned long symbol) {
    press(symbol);
    release(symbol);
}

void Stage::pointerTo(int x, int y) {
    const WindowPlace place = window();
    link_->pointerTo(place.x + x, place.y + y);
}

void Stage::click(int x, int y) {
    pointerTo(x, y);
    passPictures(kPicturesToSee);
    mouseDown();
    passPictures(kPicturesToSee);
    mouseUp();
    passPictures(kPicturesToSee);
}

Shot Stage::look() {
    int unused = 0;
    return lookInStep(&unused);
}

// Finding the window asks the server several times: in between it takes what the program has sent.
Shot Stage::lookInStep(int* pictures) {
    const auto take = [this] {
        const WindowPlace place = window();
        return link_->capture(place.x, place.y, place.width, place.height);
    };
    const Shot shot = inStep(take, pictures);
    failOnStrange(shot);
    return shot;
}

Shot Stage::lookAtScreen() {
    int unused = 0;
    return inStep(
        [this] {
            window();
            return link_->capture(0, 0, screen_.width, screen_.height);
        },
        &unused);
}

// Once: what is wrong with one picture is wrong with the next hundred.
void Stage::failOnStrange(const Shot& shot) {
    if (shot.strange.has_value() && !strangeSeen_) {
        strangeSeen_ = true;
        ADD_FAILURE() << describe(*shot.strange) << "; seen: " << keepShot(shot);
    }
}

// A picture may reach the server in parts: they are all there when the program rests. Where it has
// no time to rest, it is held before its next picture for as long as the look takes.
Shot Stage::inStep(const std::function<Capture()>& take, int* pictures) {
    Capture shot;
    bool taken = false;
    const int last = picturesBegun() + (restless_ ? 1 : kPicturesToRest);
    const auto takenAtRest = [&] {
        const int begun = picturesBegun();
        *pictures = picturesShown();
        if (begun == *pictures) {
            shot = take();
            taken = picturesBegun() == begun;
        }
        return taken || begun > last || !running();
    };
    const auto takenHeld = [&] {
        *pictures = picturesShown();
        taken = picturesBegun() == *pictures;
        if (taken || !running()) {
            shot = take();
        }
        return taken || !running();
    };
    waitUntil(takenAtRest, kPatienceMs, 1);
    restless_ = !taken;
    if (!taken) {
        frames_.hold(true);
        waitUntil(takenHeld, kPatienceMs, 1);
        frames_.hold(false);
    }
    if (!shot) {
        giveUp("the program does not end a picture");
    }
    return shot();
}

bool Stage::lookUntil(const std::function<bool(const Shot&)>& right, int timeoutMs, Shot* last) {
    const long long end = nowMs() + timeoutMs;
    for (;;) {
        const int seen = picturesShown();
        *last = look();
        if (right(*last)) {
            return true;
        }
        if (nowMs() >= end) {
            return false;
        }
        // A program that shows no more may still have another window soon.
        waitUntil([&] { return picturesShown() != seen; }, kLongPictureMs, 1);
    }
}

Shot Stage::await(const std::function<bool(const Shot&)>& condition, const std::string& what) {
    Shot shot;
    if (!lookUntil(condition, kPatienceMs, &shot)) {
        giveUp("never seen: " + what);
    }
    return shot;
}

void Stage::expectShows(const Shot& wanted, const std::string& what) {
    Shot shot;
    if (!lookUntil([&](const Shot& seen) { return seen == wanted; }, kPatienceMs / 4, &shot)) {
        ADD_FAILURE() << what << ": " << difference(shot, wanted) << "; seen: " << keepShot(shot)
                      << ", wanted: " << keepShot(wanted);
    }
}

void Stage::expectKeeps(const Shot& wanted, int pictures, const std::string& what) {
    const int last = picturesShown() + pictures;
    while (picturesShown() < last) {
        const Shot shot = look();
        if (shot != wanted) {
            ADD_FAILURE() << what << ": " << difference(shot, wanted)
                          << "; seen: " << keepShot(shot) << ", wanted: " << keepShot(wanted);
            return;
        }
        passPictures(1);
    }
}

int Stage::waitExit() {
    const std::optional<int> status = program_.waitExit(kPatienceMs);
    if (!status.has_value()) {
        giveUp("the program does not end");
    }
    return *status;
}

void Stage::askToClose() {
    link_->askToClose(window().id);
}

int Stage::closeWindow() {
    askToClose();
    return waitExit();
}

std::string Stage::keepShot(const Shot& shot) {
    static int count = 0;
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    const std::string path = std::string(APP_SHOT_DIR) + "/" + test->test_suite_name() + "-" +
                             test->name() + "-" + std::to_string(++count) + ".ppm";
    return writePpm(shot, path) ? path : "(not written)";
}

void Stage::giveUp(const std::string& what) {
    std::string message = what;
    if (program_.running()) {
        const Shot shot = link_->look(0, 0, screen_.width, screen_.height);
        message += "; the screen: " + keepShot(shot);
    } else if (program_.id() != 0) {
        message += "; the program ended with " + std::to_string(*program_.waitExit(0)) +
                   "; its standard error: " + errors();
    }
    throw std::runtime_error(message);
}

}  // namespace app
