#include "control/hands/test_window.h"

#include <X11/XKBlib.h>
#include <X11/Xutil.h>

#include <bit>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "app/clock.h"

namespace control {

namespace {

constexpr long kHeard = KeyPressMask | KeyReleaseMask | ButtonPressMask | ButtonReleaseMask |
                        PointerMotionMask | StructureNotifyMask;

}  // namespace

TestWindow::TestWindow(Place place, const char* name) : display_(XOpenDisplay(nullptr)) {
    if (display_ == nullptr) {
        throw std::runtime_error("no display for the test's window");
    }
    XAutoRepeatOff(display_);
    outer_ = make(DefaultRootWindow(display_), place, false);
    inner_ = make(outer_, {0, 0, place.width, place.height}, false);
    XClassHint hint = {const_cast<char*>(name), const_cast<char*>(name)};
    XSetClassHint(display_, outer_, &hint);
    XSelectInput(display_, outer_, KeyPressMask | KeyReleaseMask | StructureNotifyMask);
    XSelectInput(display_, inner_, ButtonPressMask | ButtonReleaseMask | PointerMotionMask);
    XMapWindow(display_, inner_);
    XMapWindow(display_, outer_);
    XSync(display_, False);
}

TestWindow::~TestWindow() {
    XCloseDisplay(display_);
}

Window TestWindow::make(Window parent, Place place, bool cover) {
    XSetWindowAttributes attributes{};
    attributes.override_redirect = cover ? True : False;
    return XCreateWindow(display_, parent, place.x, place.y, static_cast<unsigned>(place.width),
                         static_cast<unsigned>(place.height), 0, CopyFromParent, InputOutput,
                         CopyFromParent, CWOverrideRedirect, &attributes);
}

void TestWindow::focus() {
    XSetInputFocus(display_, outer_, RevertToNone, CurrentTime);
    XSync(display_, False);
}

void TestWindow::hide() {
    XUnmapWindow(display_, outer_);
    XSync(display_, False);
}

void TestWindow::move(int x, int y) {
    XMoveWindow(display_, outer_, x, y);
    XSync(display_, False);
}

void TestWindow::enterFullScreen() {
    const int screen = DefaultScreen(display_);
    const Place whole = {0, 0, DisplayWidth(display_, screen), DisplayHeight(display_, screen)};
    const Window cover = make(DefaultRootWindow(display_), whole, true);
    XMapRaised(display_, cover);
    XReparentWindow(display_, inner_, cover, 0, 0);
    XSelectInput(display_, inner_, kHeard);
    XSetInputFocus(display_, inner_, RevertToNone, CurrentTime);
    XSync(display_, False);
}

void TestWindow::focusFollowsPointer() {
    XSetInputFocus(display_, PointerRoot, RevertToPointerRoot, CurrentTime);
    XSync(display_, False);
}

void TestWindow::pointerTo(int x, int y) {
    XWarpPointer(display_, None, DefaultRootWindow(display_), 0, 0, 0, 0, x, y);
    XSync(display_, False);
}

void TestWindow::note(XEvent& event) {
    std::string what;
    if (event.type == MappingNotify) {
        XRefreshKeyboardMapping(&event.xmapping);
    } else if (event.type == KeyPress || event.type == KeyRelease) {
        const auto code = static_cast<KeyCode>(event.xkey.keycode);
        const char* symbol = XKeysymToString(XkbKeycodeToKeysym(display_, code, 0, 0));
        what = std::string(event.type == KeyPress ? "+" : "-").append(symbol);
    } else if (event.type == ButtonPress || event.type == ButtonRelease) {
        what = event.type == ButtonPress ? "+button" : "-button";
    } else if (event.type == MotionNotify) {
        what.append("at ").append(std::to_string(event.xmotion.x_root));
        what.append(" ").append(std::to_string(event.xmotion.y_root));
    }
    if (!what.empty()) {
        noted_.append(noted_.empty() ? "" : " ").append(what);
    }
}

std::string TestWindow::waitFor(const std::string& expected) {
    app::waitUntil(
        [&] {
            while (XPending(display_) > 0) {
                XEvent event;
                XNextEvent(display_, &event);
                note(event);
            }
            return noted_ == expected;
        },
        3000 * app::slowness());
    return std::exchange(noted_, "");
}

int TestWindow::down() {
    char keys[32] = {};
    XQueryKeymap(display_, keys);
    int count = 0;
    for (const char each : keys) {
        count += std::popcount(static_cast<unsigned char>(each));
    }
    Window window = 0;
    int ignored = 0;
    unsigned mask = 0;
    XQueryPointer(display_, DefaultRootWindow(display_), &window, &window, &ignored, &ignored,
                  &ignored, &ignored, &mask);
    return count + ((mask & Button1Mask) != 0 ? 1 : 0);
}

TestServer::TestServer() : server_({.width = 1280, .height = 720, .depth = 24}) {
    setenv("DISPLAY", server_.display().c_str(), 1);
}

TestServer::~TestServer() {
    unsetenv("DISPLAY");
}

bool setLayout(const std::string& layout) {
    app::Child program;
    app::ChildSetup setup;
    setup.command = {"setxkbmap", "-display", getenv("DISPLAY"), "-layout", layout};
    setup.environment = {std::string("DISPLAY=").append(getenv("DISPLAY"))};
    program.start(setup);
    return program.waitExit(app::kPatienceMs) == 0;
}

}  // namespace control
