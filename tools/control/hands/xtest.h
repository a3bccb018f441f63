#pragma once
// Hands on an X server, Xwayland included, by its XTest extension.

#include <X11/Xlib.h>

#include <array>
#include <memory>

#include "tools/control/hands/guardian.h"
#include "tools/control/hands/road.h"
#include "tools/control/hands/stage_window.h"

namespace control {

// A connection to the server of DISPLAY, whose end throws nothing and ends no process.
class XConnection {
public:
    XConnection();  // throws ToolError when there is none, or it has no XTest
    ~XConnection();
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;

    Display* display() const { return display_; }
    bool broken() const { return broken_; }

private:
    Display* display_ = nullptr;
    bool broken_ = false;
};

// The key code of each key in the keyboard's layout as SDL reads it: by the symbol of its first
// group, without Shift. 0 for keys that it lacks.
std::array<uint8_t, kKeys> keyCodesOf(Display* display);
std::string missingOf(const std::array<uint8_t, kKeys>& codes);

// A key that is pressed costs no answer of the server: what Velmora's window does is learned from
// its events.
class XTestHands : public Road {
public:
    XTestHands();  // throws ToolError
    ~XTestHands() override;

    void key(Key key, bool down) override;
    void button(bool down) override;
    void point(int x, int y) override;
    bool reachesVelmora() override {
        return stage_.window != 0 && stage_.focused && (!grabbed_ || stage_.fullScreen);
    }
    std::string road() const override;

    int fd() const override { return ConnectionNumber(x_.display()); }
    void look(Time now) override;
    uint64_t stage() const override { return stage_.window; }
    std::string missingKeys() const override { return missingOf(codes_); }

private:
    void send(uint8_t code, bool down);
    void letGo();
    void watchStage();
    bool drainEvents();
    void noteGrab(const XFocusChangeEvent& event);
    void findAndWatch();

    Guardian guardian_;  // first: before anything may start a thread
    XConnection x_;
    std::array<uint8_t, kKeys> codes_{};
    std::array<uint8_t, kKeys> down_{};  // by which code, 0: up
    bool buttonDown_ = false;
    StageWindow stage_;
    Window watched_ = 0;
    bool grabbed_ = false;  // another program has the keyboard to itself
    Time looked_{};
};

}  // namespace control
