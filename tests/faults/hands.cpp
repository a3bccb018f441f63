#include "faults/hands.h"

#include <cstdlib>

#include "common/geometry.h"

namespace faults {

namespace {

constexpr SDLKey kKeys[] = {
    SDLK_UP, SDLK_RIGHT, SDLK_DOWN,  SDLK_LEFT, SDLK_RIGHT,  SDLK_a,         SDLK_z,      SDLK_x,
    SDLK_s,  SDLK_q,     SDLK_w,     SDLK_e,    SDLK_r,      SDLK_t,         SDLK_y,      SDLK_u,
    SDLK_i,  SDLK_o,     SDLK_1,     SDLK_2,    SDLK_3,      SDLK_4,         SDLK_5,      SDLK_6,
    SDLK_f,  SDLK_TAB,   SDLK_SPACE, SDLK_x,    SDLK_RETURN, SDLK_BACKSPACE, SDLK_ESCAPE, SDLK_g,
};
constexpr int kButtons = 20;
constexpr int kWaysOut = 40;
constexpr int kMostFramesOfALoad = 500;
constexpr int kFramesToSettle = 8;  // 300 ms, in which a page of the playlist screen takes no press

void post(const SDL_Event& event) {
    scripted().events.push_back(event);
}

Point corner() {
    return pictureOffset(all->appW, all->appH);
}

}  // namespace

int chosenCount(const char* variable, int usual) {
    const char* wanted = getenv(variable);
    return wanted != nullptr ? atoi(wanted) : usual;
}

void Hands::hold(SDLKey key, bool down) {
    scripted().keysDown[key] = down ? 1 : 0;
    post(keyEvent(down ? SDL_KEYDOWN : SDL_KEYUP, key));
}

// Mostly on the picture, sometimes beside it.
void Hands::moveAnywhere() {
    const Point at = corner();
    const bool inside = below(8) != 0;
    const int x = inside ? at.x + below(kFrameWidth) : below(all->appW);
    const int y = inside ? at.y + below(kFrameHeight + 40) : below(all->appH);
    post(mouseMoved(x, y));
}

void Hands::act() {
    const int kind = below(16);
    if (kind < 3) {
        moveAnywhere();
    } else if (kind < 5) {
        moveAnywhere();
        post(
            mouseButton(SDL_MOUSEBUTTONDOWN, keys->mouseX + corner().x, keys->mouseY + corner().y));
    } else if (kind < 7) {
        post(mouseButton(SDL_MOUSEBUTTONUP, keys->mouseX + corner().x, keys->mouseY + corner().y));
    } else if (kind < 9) {
        const int button = below(kButtons);
        if (scripted().buttonsDown.erase(button) == 0) {
            scripted().buttonsDown.insert(button);
        }
    } else {
        const SDLKey key = kKeys[static_cast<size_t>(below(std::size(kKeys)))];
        hold(key, scripted().keysDown[key] == 0);
    }
}

void Hands::letGo() {
    for (const SDLKey key : kKeys) {
        if (scripted().keysDown[key] != 0) {
            hold(key, false);
        }
    }
    scripted().buttonsDown.clear();
    post(mouseButton(SDL_MOUSEBUTTONUP, 0, 0));
    runFrame();
    runFrame();
}

void Hands::tap(SDLKey key) {
    hold(key, true);
    runFrame();
    hold(key, false);
    runFrame();
}

void Hands::click(int x, int y) {
    post(mouseButton(SDL_MOUSEBUTTONDOWN, corner().x + x, corner().y + y));
    runFrame();
    post(mouseButton(SDL_MOUSEBUTTONUP, corner().x + x, corner().y + y));
    runFrame();
    runFrame();
    for (int frame = 0; frame < kFramesToSettle && all->state == STATE_PLAYLISTS; ++frame) {
        runFrame();
    }
}

// One step out of the screen, with what is written on it.
void Hands::leaveScreen() {
    if (all->state == STATE_MIX && all->subState == SUB_PERFORMING) {
        tap(SDLK_RETURN);
    } else if (all->state == STATE_OPTIONS && _options->page == 1) {
        click(110, 240);  // "cancel", when it waits for a button
        click(600, 380);  // back
    } else if (all->state == STATE_PLAYLISTS && editor->question == ASK_DISCARD) {
        tap(SDLK_LEFT);  // yes
        tap(SDLK_x);
    } else if (all->state == STATE_PLAYLISTS && editor->question != ASK_NOTHING) {
        tap(SDLK_RIGHT);  // no
        tap(SDLK_x);
    } else if (all->state == STATE_PLAYLISTS && editor->takesLetters()) {
        tap(SDLK_ESCAPE);
    } else {
        tap(SDLK_z);
    }
}

void Hands::load() {
    tap(SDLK_x);
    int frames = 0;
    for (; playlist->loading != 0 && frames < kMostFramesOfALoad; ++frames) {
        runFrame();
    }
    EXPECT_LT(frames, kMostFramesOfALoad);
}

bool Hands::goHome() {
    letGo();
    for (int step = 0; step < kWaysOut && all->state != STATE_HOME; ++step) {
        leaveScreen();
    }
    return all->state == STATE_HOME;
}

}  // namespace faults
