#include "tools/control/hands/xtest.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XTest.h>

#include <algorithm>

#include "tools/base/errors.h"
#include "tools/control/hands/key_codes.h"

namespace control {

namespace {

// Windows may vanish at any time.
int ignoreError(Display*, XErrorEvent*) {
    return 0;
}

int ignoreEnd(Display*) {
    return 0;
}

void noteEnd(Display*, void* broken) {
    *static_cast<bool*>(broken) = true;
}

bool hasXTest(Display* display) {
    int ignored = 0;
    return XTestQueryExtension(display, &ignored, &ignored, &ignored, &ignored) != 0;
}

}  // namespace

XConnection::XConnection() {
    XSetErrorHandler(ignoreError);
    XSetIOErrorHandler(ignoreEnd);
    display_ = XOpenDisplay(nullptr);
    if (display_ == nullptr) {
        throw maker::ToolError(std::string("no X server at ").append(XDisplayName(nullptr)));
    }
    XSetIOErrorExitHandler(display_, noteEnd, &broken_);
    if (!hasXTest(display_)) {
        XCloseDisplay(display_);
        throw maker::ToolError("the X server has no XTest");
    }
}

XConnection::~XConnection() {
    XCloseDisplay(display_);
}

std::array<uint8_t, kKeys> keyCodesOf(Display* display) {
    std::array<uint8_t, kKeys> codes{};
    int first = 0;
    int last = 0;
    XDisplayKeycodes(display, &first, &last);
    for (int code = last; code >= first; --code) {
        const KeySym symbol = XkbKeycodeToKeysym(display, static_cast<::KeyCode>(code), 0, 0);
        const auto* row = std::ranges::find(kKeyCodes, symbol, &KeyCode::symbol);
        if (row != kKeyCodes.end()) {
            codes[static_cast<size_t>(row - kKeyCodes.begin())] = static_cast<uint8_t>(code);
        }
    }
    return codes;
}

std::string missingOf(const std::array<uint8_t, kKeys>& codes) {
    std::string missing;
    for (size_t i = 0; i < kKeys; ++i) {
        if (codes[i] == 0) {
            missing.append(missing.empty() ? "" : ", ").append(kKeyNames[i]);
        }
    }
    return missing;
}

XTestHands::XTestHands() {
    XSelectInput(x_.display(), DefaultRootWindow(x_.display()),
                 SubstructureNotifyMask | PropertyChangeMask | FocusChangeMask);
    codes_ = keyCodesOf(x_.display());
    stage_ = findStage(x_.display());
    watched_ = stage_.window;
    watchStage();
}

XTestHands::~XTestHands() {
    letGo();
}

void XTestHands::send(uint8_t code, bool down) {
    if (x_.broken()) {
        return;
    }
    // The guardian knows of a press before it is made, and of its end after.
    if (down) {
        guardian_.note(code, true);
    }
    if (code == kButtonCode) {
        XTestFakeButtonEvent(x_.display(), Button1, down ? True : False, CurrentTime);
    } else {
        XTestFakeKeyEvent(x_.display(), code, down ? True : False, CurrentTime);
    }
    XFlush(x_.display());
    if (!down) {
        guardian_.note(code, false);
    }
}

void XTestHands::key(Key key, bool down) {
    uint8_t& code = down_[indexOf(key)];
    if (down && code == 0 && reachesVelmora() && codes_[indexOf(key)] != 0) {
        code = codes_[indexOf(key)];
        send(code, true);
    } else if (!down && code != 0) {
        send(code, false);
        code = 0;
    }
}

void XTestHands::button(bool down) {
    if (down != buttonDown_ && (!down || reachesVelmora())) {
        send(kButtonCode, down);
        buttonDown_ = down;
    }
}

void XTestHands::point(int x, int y) {
    if (!x_.broken() && reachesVelmora()) {
        XTestFakeMotionEvent(x_.display(), -1, stage_.picture.x + x, stage_.picture.y + y,
                             CurrentTime);
        XFlush(x_.display());
    }
}

void XTestHands::letGo() {
    for (size_t i = 0; i < kKeys; ++i) {
        key(keyAt(i), false);
    }
    button(false);
}

std::string XTestHands::road() const {
    return std::string("XTest on ").append(DisplayString(x_.display()));
}

// Without a window manager the keyboard goes with the pointer.
void XTestHands::watchStage() {
    if (stage_.window != 0) {
        XSelectInput(x_.display(), stage_.window,
                     FocusChangeMask | StructureNotifyMask | EnterWindowMask | LeaveWindowMask);
        stage_ = findStage(x_.display());  // what has changed before it was watched
    }
}

// Who grabs the keyboard, as a lock screen does, has it while the focus stays where it is.
void XTestHands::noteGrab(const XFocusChangeEvent& event) {
    if (event.window == watched_ && event.detail != NotifyInferior) {
        grabbed_ = event.type == FocusOut && event.mode == NotifyGrab;
    }
}

// True when anything has changed that matters here.
bool XTestHands::drainEvents() {
    bool any = false;
    while (!x_.broken() && XPending(x_.display()) > 0) {
        XEvent event;
        XNextEvent(x_.display(), &event);
        if (event.type == MappingNotify) {
            XRefreshKeyboardMapping(&event.xmapping);
            codes_ = keyCodesOf(x_.display());
        } else if (event.type == FocusIn || event.type == FocusOut) {
            noteGrab(event.xfocus);
        }
        any = true;
    }
    return any;
}

void XTestHands::findAndWatch() {
    stage_ = findStage(x_.display());
    if (stage_.window != watched_) {
        letGo();
        watched_ = stage_.window;
        grabbed_ = false;
        watchStage();
    }
    if (!reachesVelmora()) {
        letGo();
    }
    XFlush(x_.display());
}

void XTestHands::look(Time now) {
    // What comes along with the server's answers does not wake anybody: it is seen here.
    constexpr int kTurns = 8;
    bool changed = drainEvents() || now - looked_ >= milliseconds(1000);
    for (int turn = 0; changed && turn < kTurns; ++turn) {
        looked_ = now;
        findAndWatch();
        changed = drainEvents();
    }
    if (x_.broken()) {
        stage_ = {};
        throw maker::ToolError("the X server has ended");
    }
}

}  // namespace control
