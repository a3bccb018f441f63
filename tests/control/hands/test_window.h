#pragma once
// An X client inside the test that makes windows as SDL 1.2 does: an outer one, which window
// managers know, with the picture in a child; in full screen the child moves to a window of its own
// that covers the screen. It writes down the keys, buttons and motions that reach it.

#include <X11/Xlib.h>

#include <string>

#include "app/xserver.h"

namespace control {

struct Place {
    int x = 0;
    int y = 0;
    int width = 1280;
    int height = 720;
};

// The server is that of DISPLAY.
class TestWindow {
public:
    explicit TestWindow(Place place = {}, const char* name = "velmora");
    ~TestWindow();  // the window vanishes
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;

    void focus();
    void hide();
    void move(int x, int y);
    // The picture's window moves into a window of this client that covers the screen.
    void enterFullScreen();
    // Focus where the pointer is, as on a server without a window manager.
    void focusFollowsPointer();
    void pointerTo(int x, int y);

    // What has come since the last call, "+q -q +button at 320 180", positions on the screen. Waits
    // until it is `expected`, or for too long.
    std::string waitFor(const std::string& expected);
    // How many keys and buttons are down on the server.
    int down();
    Window id() const { return outer_; }
    Display* display() const { return display_; }

private:
    Window make(Window parent, Place place, bool cover);
    void note(XEvent& event);

    Display* display_;
    Window outer_;
    Window inner_;
    std::string noted_;
};

// A server whose DISPLAY is that of the process while it lives.
class TestServer {
public:
    TestServer();
    ~TestServer();
    const std::string& display() const { return server_.display(); }

private:
    app::XServer server_;
};

// As setxkbmap takes it: "us,fr". True when it did.
bool setLayout(const std::string& layout);

}  // namespace control
