#include "app/xlink.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include <stdexcept>

#include "app/screen_reader.h"

namespace app {

namespace {

// Windows come and go while they are looked at; a request that names a vanished one is no reason to
// end the test.
int ignoreError(Display*, XErrorEvent*) {
    return 0;
}

Display* connectTo(const std::string& display) {
    XSetErrorHandler(ignoreError);
    Display* connection = XOpenDisplay(display.c_str());
    if (connection == nullptr) {
        throw std::runtime_error("the X server " + display + " refuses the connection");
    }
    return connection;
}

template <typename Visitor>
void forVisibleWindows(Display* display, Visitor visit) {
    Window root = 0;
    Window parent = 0;
    Window* windows = nullptr;
    unsigned count = 0;
    if (XQueryTree(display, DefaultRootWindow(display), &root, &parent, &windows, &count) == 0) {
        return;
    }
    for (unsigned i = 0; i < count; ++i) {
        XWindowAttributes state;
        if (XGetWindowAttributes(display, windows[i], &state) != 0 &&
            state.map_state == IsViewable) {
            visit(windows[i], state);
        }
    }
    XFree(windows);
}

}  // namespace

struct XLink::Connection {
    explicit Connection(const std::string& display) : main(connectTo(display)), reader(main) {}
    ~Connection() { XCloseDisplay(main); }

    Display* main;
    ScreenReader reader;
};

XLink::XLink(const std::string& display) : x_(std::make_unique<Connection>(display)) {
    int unused = 0;
    if (!XTestQueryExtension(x_->main, &unused, &unused, &unused, &unused)) {
        throw std::runtime_error("the X server has no XTEST extension");
    }
    // A held key is one press here: the server's repeats would only add to what the program hears.
    XAutoRepeatOff(x_->main);
    XSync(x_->main, False);
}

XLink::~XLink() = default;

WindowPlace XLink::findWindow(const std::string& title) {
    WindowPlace found;
    forVisibleWindows(x_->main, [&](Window window, const XWindowAttributes& state) {
        char* name = nullptr;
        if (XFetchName(x_->main, window, &name) != 0) {
            if (title == name) {
                found = {window, state.x, state.y, state.width, state.height};
            }
            XFree(name);
        }
    });
    return found;
}

bool XLink::isCovered(int width, int height) {
    bool covered = false;
    forVisibleWindows(x_->main, [&](Window, const XWindowAttributes& state) {
        covered = covered || (state.override_redirect && state.x == 0 && state.y == 0 &&
                              state.width == width && state.height == height);
    });
    return covered;
}

bool XLink::focus(unsigned long window) {
    XSetInputFocus(x_->main, window, RevertToPointerRoot, CurrentTime);
    XSync(x_->main, False);
    Window holder = 0;
    int revert = 0;
    XGetInputFocus(x_->main, &holder, &revert);
    return holder == window;
}

void XLink::askToClose(unsigned long window) {
    XEvent message = {};
    message.xclient.type = ClientMessage;
    message.xclient.window = window;
    message.xclient.message_type = XInternAtom(x_->main, "WM_PROTOCOLS", False);
    message.xclient.format = 32;
    message.xclient.data.l[0] = static_cast<long>(XInternAtom(x_->main, "WM_DELETE_WINDOW", False));
    XSendEvent(x_->main, window, False, NoEventMask, &message);
    XSync(x_->main, False);
}

void XLink::key(unsigned long symbol, bool down) {
    XTestFakeKeyEvent(x_->main, XKeysymToKeycode(x_->main, symbol), down ? True : False,
                      CurrentTime);
    XSync(x_->main, False);
}

void XLink::pointerTo(int x, int y) {
    XTestFakeMotionEvent(x_->main, -1, x, y, CurrentTime);
    XSync(x_->main, False);
}

void XLink::button(bool down) {
    XTestFakeButtonEvent(x_->main, Button1, down ? True : False, CurrentTime);
    XSync(x_->main, False);
}

Shot XLink::look(int x, int y, int width, int height) {
    return capture(x, y, width, height)();
}

std::function<Shot()> XLink::capture(int x, int y, int width, int height) {
    return
        [this, image = x_->reader.capture(x, y, width, height)] { return x_->reader.read(*image); };
}

unsigned long XLink::cover(WindowPlace place, uint16_t colour) {
    const int screen = DefaultScreen(x_->main);
    XSetWindowAttributes attributes = {};
    attributes.override_redirect = True;
    attributes.background_pixel = x_->reader.pixelFor(colour);
    const Window window = XCreateWindow(
        x_->main, DefaultRootWindow(x_->main), place.x, place.y, static_cast<unsigned>(place.width),
        static_cast<unsigned>(place.height), 0, DefaultDepth(x_->main, screen), InputOutput,
        DefaultVisual(x_->main, screen), CWOverrideRedirect | CWBackPixel, &attributes);
    XMapRaised(x_->main, window);
    XSync(x_->main, False);
    return window;
}

void XLink::uncover(unsigned long cover) {
    XDestroyWindow(x_->main, cover);
    XSync(x_->main, False);
}

void XLink::move(unsigned long window, int x, int y) {
    XMoveWindow(x_->main, window, x, y);
    XSync(x_->main, False);
}

void XLink::raise(unsigned long window) {
    XRaiseWindow(x_->main, window);
    XSync(x_->main, False);
}

void XLink::hide(unsigned long window) {
    XUnmapWindow(x_->main, window);
    XSync(x_->main, False);
}

void XLink::show(unsigned long window) {
    XMapWindow(x_->main, window);
    XSync(x_->main, False);
}

}  // namespace app
