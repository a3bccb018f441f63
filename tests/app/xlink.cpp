#include "app/xlink.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/record.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace app {

namespace {

constexpr int kShmPutImage = 3;  // request of the MIT-SHM extension

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

// One row of the image as RGB565. Rows of 16 bits a pixel are RGB565 already, rows of 32 bits hold
// 8 bits a channel; both in this machine's byte order, the server being on the same machine.
void copyRow(const XImage& image, int row, uint16_t* to) {
    const char* from = image.data + static_cast<ptrdiff_t>(row) * image.bytes_per_line;
    const auto width = static_cast<size_t>(image.width);
    if (image.bits_per_pixel == 16) {
        memcpy(to, from, width * sizeof *to);
        return;
    }
    for (size_t x = 0; x < width; ++x) {
        uint32_t pixel = 0;
        memcpy(&pixel, from + x * sizeof pixel, sizeof pixel);
        to[x] = static_cast<uint16_t>(((pixel >> 8) & 0xF800) | ((pixel >> 5) & 0x07E0) |
                                      ((pixel >> 3) & 0x001F));
    }
}

void countPicture(XPointer count, XRecordInterceptData* data) {
    if (data->category == XRecordFromClient) {
        ++*reinterpret_cast<int*>(count);
    }
    XRecordFreeData(data);
}

// Has the server report every shared-memory picture that any program puts on the screen.
XRecordContext recordPictures(Display* control, Display* data, int* count) {
    int opcode = 0;
    int unused = 0;
    if (!XQueryExtension(control, "MIT-SHM", &opcode, &unused, &unused) ||
        !XRecordQueryVersion(control, &unused, &unused)) {
        throw std::runtime_error("the X server has no MIT-SHM or no RECORD extension");
    }
    XRecordRange* range = XRecordAllocRange();
    range->ext_requests.ext_major.first = static_cast<unsigned char>(opcode);
    range->ext_requests.ext_major.last = static_cast<unsigned char>(opcode);
    range->ext_requests.ext_minor.first = kShmPutImage;
    range->ext_requests.ext_minor.last = kShmPutImage;
    XRecordClientSpec clients = XRecordAllClients;
    const XRecordContext context = XRecordCreateContext(control, 0, &clients, 1, &range, 1);
    XFree(range);
    XSync(control, False);
    if (context == 0 || !XRecordEnableContextAsync(data, context, countPicture,
                                                   reinterpret_cast<XPointer>(count))) {
        throw std::runtime_error("the X server does not record");
    }
    return context;
}

}  // namespace

struct XLink::Connections {
    explicit Connections(const std::string& display)
        : main(connectTo(display)), recorded(connectTo(display)) {
        recording = recordPictures(main, recorded, &pictures);
    }
    ~Connections() {
        XRecordDisableContext(main, recording);
        XSync(main, False);
        XCloseDisplay(recorded);
        XCloseDisplay(main);
    }

    Display* main;
    Display* recorded;
    XRecordContext recording = 0;
    int pictures = 0;
};

XLink::XLink(const std::string& display) : x_(std::make_unique<Connections>(display)) {
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
    const int screen = DefaultScreen(x_->main);
    width = std::min(width, DisplayWidth(x_->main, screen) - x);
    height = std::min(height, DisplayHeight(x_->main, screen) - y);
    XImage* image =
        XGetImage(x_->main, DefaultRootWindow(x_->main), x, y, static_cast<unsigned>(width),
                  static_cast<unsigned>(height), AllPlanes, ZPixmap);
    if (image == nullptr) {
        throw std::runtime_error("the X server does not show the screen");
    }
    Shot shot = blackShot(width, height);
    for (int row = 0; row < height; ++row) {
        copyRow(*image, row, &shot.at(0, row));
    }
    XDestroyImage(image);
    return shot;
}

int XLink::picturesShown() {
    XRecordProcessReplies(x_->recorded);
    return x_->pictures;
}

}  // namespace app
