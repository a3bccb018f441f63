#pragma once
// The test's own connection to the X server: finds the program's window, presses keys and mouse
// buttons as a performer would, looks at the screen, and does to windows what others do to them.
// Positions are pixels of the screen. Keys are X key symbols (XK_a, XK_Left).

#include <functional>
#include <memory>
#include <string>

#include "app/shot.h"

namespace app {

struct WindowPlace {
    unsigned long id = 0;  // 0: there is no such window
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

class XLink {
public:
    // Throws std::runtime_error when the server does not answer or cannot do what is asked here.
    explicit XLink(const std::string& display);
    ~XLink();
    XLink(const XLink&) = delete;
    XLink& operator=(const XLink&) = delete;

    // The visible top-level window of that title.
    WindowPlace findWindow(const std::string& title);
    // A full-screen window of that size is there: one that window managers leave alone.
    bool isCovered(int width, int height);
    // Gives it the keyboard: nothing else does, there is no window manager. True once it has it.
    bool focus(unsigned long window);
    // Asks it to close, as the close button of a window manager does.
    void askToClose(unsigned long window);

    void key(unsigned long symbol, bool down);
    void pointerTo(int x, int y);
    void button(bool down);

    // The part of the rectangle that lies on the screen.
    Shot look(int x, int y, int width, int height);
    // The same in two steps: taken at once, and read when it is called for, which takes longer.
    std::function<Shot()> capture(int x, int y, int width, int height);

    // A window of another program, flat in that colour, in front of all others.
    unsigned long cover(WindowPlace place, uint16_t colour);
    void uncover(unsigned long cover);
    void move(unsigned long window, int x, int y);
    void raise(unsigned long window);
    void hide(unsigned long window);
    void show(unsigned long window);

private:
    struct Connection;
    std::unique_ptr<Connection> x_;
};

}  // namespace app
