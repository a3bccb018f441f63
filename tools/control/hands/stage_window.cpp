#include "tools/control/hands/stage_window.h"

#include <X11/Xutil.h>
#include <strings.h>

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace control {

namespace {

constexpr const char* kClass = "velmora";
constexpr int kDeepest = 4;  // window managers put frames around windows

struct XFreed {
    void operator()(void* memory) const { XFree(memory); }
};

std::vector<Window> childrenOf(Display* display, Window window) {
    Window root = 0;
    Window parent = 0;
    Window* list = nullptr;
    unsigned count = 0;
    if (XQueryTree(display, window, &root, &parent, &list, &count) == 0) {
        return {};
    }
    const std::unique_ptr<Window, XFreed> freed(list);
    const std::span<const Window> all(list, count);
    return {all.begin(), all.end()};
}

Window parentOf(Display* display, Window window) {
    Window root = 0;
    Window parent = 0;
    Window* list = nullptr;
    unsigned count = 0;
    if (XQueryTree(display, window, &root, &parent, &list, &count) == 0) {
        return 0;
    }
    XFree(list);
    return parent;
}

bool isVelmoras(Display* display, Window window) {
    XClassHint hint{};
    if (XGetClassHint(display, window, &hint) == 0) {
        return false;
    }
    const std::unique_ptr<char, XFreed> name(hint.res_name);
    const std::unique_ptr<char, XFreed> group(hint.res_class);
    return strcasecmp(hint.res_class, kClass) == 0 || strcasecmp(hint.res_name, kClass) == 0;
}

std::optional<XWindowAttributes> shown(Display* display, Window window) {
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(display, window, &attributes) == 0 ||
        attributes.map_state != IsViewable) {
        return std::nullopt;
    }
    return attributes;
}

Window search(Display* display, Window from, int depth) {
    for (const Window child : childrenOf(display, from)) {
        if (isVelmoras(display, child) && shown(display, child)) {
            return child;
        }
        const Window below = depth > 1 ? search(display, child, depth - 1) : 0;
        if (below != 0) {
            return below;
        }
    }
    return 0;
}

// Who makes a window gives it an identifier of his own range. A range has 18 bits at the least, and
// SDL makes its windows among the first.
bool sameOwner(Window one, Window other) {
    constexpr int kRangeBits = 18;
    return one >> kRangeBits == other >> kRangeBits;
}

// In full screen SDL 1.2 keeps the picture in a window of its own that covers the screen and that
// window managers leave alone; the window that they know is empty then. Screens are locked by such
// windows as well, of other programs.
Window coverOf(Display* display, Window stage, const XWindowAttributes& root) {
    for (const Window child : childrenOf(display, DefaultRootWindow(display))) {
        const auto attributes = sameOwner(child, stage) ? shown(display, child) : std::nullopt;
        if (attributes && attributes->override_redirect != 0 && attributes->width >= root.width &&
            attributes->height >= root.height && childrenOf(display, child).size() == 1) {
            return child;
        }
    }
    return 0;
}

bool isBelow(Display* display, Window window, Window ancestor) {
    for (int depth = 0; window != 0 && depth < kDeepest; ++depth) {
        if (window == ancestor) {
            return true;
        }
        window = parentOf(display, window);
    }
    return false;
}

// With the focus on the window, in it, or on its frame; or wherever the pointer is, when nobody
// manages windows.
bool hasFocus(Display* display, Window window) {
    Window focus = 0;
    int revert = 0;
    XGetInputFocus(display, &focus, &revert);
    if (focus == PointerRoot) {
        Window root = 0;
        Window under = 0;
        int ignored = 0;
        unsigned mask = 0;
        XQueryPointer(display, DefaultRootWindow(display), &root, &under, &ignored, &ignored,
                      &ignored, &ignored, &mask);
        focus = under;
    }
    if (focus == None || focus == DefaultRootWindow(display)) {
        return false;
    }
    return isBelow(display, focus, window) || isBelow(display, window, focus);
}

}  // namespace

StageWindow findStage(Display* display) {
    const Window rootWindow = DefaultRootWindow(display);
    StageWindow stage;
    stage.window = search(display, rootWindow, kDeepest);
    const auto root = shown(display, rootWindow);
    if (stage.window == 0 || !root) {
        return {};
    }
    std::vector<Window> inner = childrenOf(display, stage.window);
    const Window cover = inner.empty() ? coverOf(display, stage.window, *root) : 0;
    if (cover != 0) {
        inner = childrenOf(display, cover);
    }
    stage.fullScreen = cover != 0;
    stage.focused = cover != 0 || hasFocus(display, stage.window);
    const Window picture = inner.size() == 1 ? inner[0] : stage.window;
    const auto attributes = shown(display, picture);
    if (!attributes) {
        return {};
    }
    Window ignored = 0;
    int x = 0;
    int y = 0;
    XTranslateCoordinates(display, picture, rootWindow, 0, 0, &x, &y, &ignored);
    const Point offset = pictureOffset(attributes->width, attributes->height);
    stage.picture = {x + offset.x, y + offset.y};
    return stage;
}

}  // namespace control
