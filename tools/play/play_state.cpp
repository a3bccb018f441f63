#include "tools/play/play_state.h"

#include <algorithm>
#include <iterator>

#include "tools/score/keys.h"

namespace maker {

namespace {

struct Row {
    const char* name;
    PlayKey does;
};

// X and Z leave as they do in the program's preview.
constexpr Row kRows[] = {
    {"escape", PlayKey::LEAVE}, {"q", PlayKey::LEAVE},        {"x", PlayKey::LEAVE},
    {"z", PlayKey::LEAVE},      {"space", PlayKey::HOLD},     {"right", PlayKey::ON},
    {"left", PlayKey::BACK},    {"r", PlayKey::REVERSE},      {"tab", PlayKey::FACTS},
    {"i", PlayKey::FACTS},      {"down", PlayKey::NEXT_CLIP}, {"n", PlayKey::NEXT_CLIP},
    {"up", PlayKey::LAST_CLIP}, {"p", PlayKey::LAST_CLIP},    {"f", PlayKey::FULL_SCREEN},
};

void step(PlayState& state, int frames, int by) {
    state.frame = (state.frame + by + frames) % frames;
}

}  // namespace

std::optional<PlayKey> playKeyOf(int key) {
    const auto* const row =
        std::ranges::find_if(kRows, [key](const Row& each) { return keyOf(each.name) == key; });
    return row == std::end(kRows) ? std::nullopt : std::optional(row->does);
}

void advance(PlayState& state, int frames) {
    if (!state.held) {
        step(state, frames, state.backwards ? -1 : 1);
    }
}

void press(PlayState& state, PlayKey key, int frames) {
    const int forward = state.backwards ? -1 : 1;
    switch (key) {
        case PlayKey::HOLD:
            state.held = !state.held;
            break;
        case PlayKey::ON:
        case PlayKey::BACK:
            state.held = true;
            step(state, frames, key == PlayKey::ON ? forward : -forward);
            break;
        case PlayKey::REVERSE:
            state.backwards = !state.backwards;
            break;
        case PlayKey::FACTS:
            state.facts = !state.facts;
            break;
        case PlayKey::LEAVE:
        case PlayKey::NEXT_CLIP:
        case PlayKey::LAST_CLIP:
        case PlayKey::FULL_SCREEN:
            break;
    }
}

}  // namespace maker
