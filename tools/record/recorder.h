#pragma once
// Takes down what the program is played with: what SDL tells it of keys, mouse and controller, each
// with the frame that it comes in, as the lines of a score. It listens between the program and SDL
// (taps.cpp) and changes nothing of what passes.

#include <SDL.h>

#include <array>
#include <bitset>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "tools/score/score.h"

namespace maker {

class Recorder {
public:
    // `write` gets whole lines. The seed is that of rand(), for the head of the score.
    Recorder(uint32_t seed, std::function<void(std::string_view)> write);

    // A frame begins: its keys are sampled next, as they stand in `keys`, SDL's array. `rate` is
    // what the program runs at.
    void frameBegins(int rate, const uint8_t* keys);
    void hear(const SDL_Event& event);
    void padAsked(int button, bool down);
    void allRead();  // of this frame's events
    // Writes what is left. Returns how many frames there were.
    int finish();

private:
    void writeHead();
    void note(ScoreEvent event, bool early);
    void noteNow(ScoreEvent event);
    void compareKeys(const uint8_t* keys);
    void hearKey(const SDL_KeyboardEvent& event);
    void hearButton(const SDL_MouseButtonEvent& event);
    void movePointer(int windowX, int windowY);
    void flushPointer();
    void endLine();

    std::function<void(std::string_view)> write_;
    uint32_t seed_;
    int frame_ = -1;
    int rate_ = -1;
    bool read_ = true;    // this frame's events: what comes now is before the next one's keys
    bool moved_ = false;  // the pointer, to a place that is not in the score yet
    bool movedEarly_ = false;
    ScoreEvent pointer_;
    std::string line_;                           // of this frame
    std::string next_;                           // of the next one
    std::string out_;                            // a line on its way
    std::array<uint8_t, SDLK_LAST> keysDown_{};  // as SDL's array
    std::bitset<256> padDown_;
};

}  // namespace maker
