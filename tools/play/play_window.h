#pragma once
// The window in which a clip is watched: 640 x 360 pictures, doubled where the display has room.

#include <optional>
#include <string>

#include "tools/clip/media/picture.h"

struct SDL_Surface;

namespace maker {

class PlayWindow {
public:
    PlayWindow();  // throws ToolError when there is no display
    ~PlayWindow();
    PlayWindow(const PlayWindow&) = delete;
    PlayWindow& operator=(const PlayWindow&) = delete;

    void setTitle(const std::string& title);
    // At the top; what is not as high has black below. The picture is opaque.
    void show(const Picture& picture);
    void toggleFullScreen();

private:
    void open(unsigned flags);

    int factor_ = 1;
    SDL_Surface* surface_ = nullptr;
};

}  // namespace maker
