#include "faults/wild_hands.h"

#include <X11/keysym.h>

#include <algorithm>
#include <iterator>

#include "app/screens.h"

namespace faults {

namespace {

constexpr unsigned long kKeys[] = {
    XK_Up, XK_Right, XK_Down, XK_Left, XK_Right, XK_a,   XK_z, XK_x,      XK_s,         XK_q,
    XK_w,  XK_e,     XK_r,    XK_t,    XK_y,     XK_u,   XK_i, XK_o,      XK_1,         XK_2,
    XK_3,  XK_4,     XK_5,    XK_6,    XK_f,     XK_Tab, XK_x, XK_Return, XK_BackSpace, XK_space,
};
constexpr int kWaysOut = 40;
constexpr int kEndStatus = 1;

}  // namespace

const std::vector<std::string>& screenNames() {
    static const std::vector<std::string> names = {"home",   "overmenu",  "mix",
                                                   "panel",  "playlists", "newplaylist",
                                                   "tracks", "options",   "controller"};
    return names;
}

void WildHands::start() {
    stage_.folder.writePlaylists();
    down_.clear();
    stage_.startAtHome();
}

void WildHands::clickPicture(int x, int y) {
    const app::WindowPlace place = stage_.window();
    stage_.click(app::pictureX(place.width) + x, app::pictureY(place.height) + y);
}

void WildHands::enter(const std::string& name) {
    if (name == "overmenu" || name == "mix" || name == "panel") {
        clickPicture(320, 122);
        stage_.tap(name == "overmenu" ? XK_Down : XK_x);
        if (name == "panel") {
            stage_.tap(XK_Tab);
        }
    } else if (name == "playlists" || name == "newplaylist" || name == "tracks") {
        clickPicture(424, 122);
        if (name != "playlists") {
            clickPicture(name == "tracks" ? 90 : 20, 240);
        }
    } else if (name == "options" || name == "controller") {
        clickPicture(200, 220);
        if (name == "controller") {
            clickPicture(20, 340);
        }
    }
}

void WildHands::act() {
    ++events_;
    const int kind = below(16);
    if (kind < 3) {
        stage_.pointerTo(below(kind == 0 ? 1280 : 640) + (kind == 0 ? 0 : 320),
                         below(kind == 0 ? 768 : 400) + (kind == 0 ? 0 : 180));
    } else if (kind < 5) {
        stage_.mouseDown();
    } else if (kind < 7) {
        stage_.mouseUp();
    } else {
        const unsigned long key = kKeys[static_cast<size_t>(below(std::size(kKeys)))];
        const auto held = std::find(down_.begin(), down_.end(), key);
        if (held != down_.end()) {
            stage_.keyUp(key);
            down_.erase(held);
        } else {
            stage_.keyDown(key);
            down_.push_back(key);
        }
    }
}

void WildHands::storm(int ms, int eventsAMinute) {
    const long long begin = app::nowMs();
    int done = 0;
    while (app::nowMs() < begin + ms && stage_.running()) {
        const auto due = static_cast<int>((app::nowMs() - begin) * eventsAMinute / 60000);
        for (; done < due; ++done) {
            act();
        }
        app::sleepMs(app::kPollMs);
    }
}

void WildHands::burst(int pictures, int perPicture) {
    const int end = stage_.picturesShown() + pictures;
    while (stage_.running() && stage_.picturesShown() < end) {
        for (int event = 0; event < perPicture; ++event) {
            act();
        }
        const int next = stage_.picturesShown() + 1;
        app::waitUntil([&] { return stage_.picturesShown() >= next || !stage_.running(); });
    }
}

void WildHands::letGo() {
    for (const unsigned long key : down_) {
        stage_.keyUp(key);
    }
    down_.clear();
    stage_.mouseUp();
    if (stage_.running()) {
        stage_.passPictures(app::kPicturesToSee);
    }
}

int WildHands::homeSelection() {
    const app::WindowPlace window = stage_.window();
    return app::homeSelection(stage_.look(), app::pictureX(window.width),
                              app::pictureY(window.height));
}

// One round of all the ways out; those of other screens do nothing here, or are taken back.
void WildHands::leaveScreen() {
    stage_.tap(XK_z);
    if (homeSelection() < 0) {
        clickPicture(90, 320);   // "no", when the first "z" made a page ask
        stage_.tap(XK_Escape);   // the name page, where it wrote a letter
        clickPicture(20, 320);   // "yes", the name may go
        clickPicture(110, 240);  // "cancel", when a button is awaited
        clickPicture(600, 380);  // back from the controller's page
        stage_.tap(XK_z);
        // "no", when only the second "z" did: the first took a question back.
        clickPicture(90, 320);
    }
    if (homeSelection() < 0) {
        stage_.tap(XK_Return);
    }
}

// There "f" writes too.
void WildHands::leaveNamePage() {
    if (stage_.isFullScreen()) {
        stage_.tap(XK_Escape);
        stage_.tap(XK_Left);  // "yes", the name may go
        stage_.tap(XK_x);
    }
}

bool WildHands::goHome() {
    try {
        letGo();
        for (int round = 0; round < kWaysOut && stage_.running(); ++round) {
            // Changing the window's kind may have cost the keyboard, so that comes first.
            stage_.focus();
            if (stage_.isFullScreen()) {
                stage_.tap(XK_f);
                leaveNamePage();
            } else if (homeSelection() >= 0) {
                return true;
            } else {
                leaveScreen();
            }
        }
    } catch (const std::runtime_error&) {
        // A program that ended meanwhile is looked at below.
        if (stage_.running()) {
            throw;
        }
    }
    if (stage_.running()) {
        ADD_FAILURE() << "no way home; seen: " << stage_.keepShot(stage_.look());
        return false;
    }
    ++ends_;
    EXPECT_EQ(stage_.waitExit(), kEndStatus);
    EXPECT_EQ(stage_.errors(), "");
    return false;
}

}  // namespace faults
