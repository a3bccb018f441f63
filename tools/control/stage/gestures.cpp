#include "tools/control/stage/gestures.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "common/slots.h"

namespace control {

namespace {

constexpr int kFarthestRandomClip = 3;

Key offset(Key first, int by) {
    return keyAt(indexOf(first) + static_cast<size_t>(by));
}

Key modeKey(MixMode mode) {
    const auto* row = std::ranges::find(kModes, mode, &ModeControl::mode);
    return row == std::end(kModes) ? Key::ONE : offset(Key::ONE, row->key - KEY_1);
}

Key layerKey(int layer) {
    return layer == 1 ? Key::UP : Key::DOWN;
}

class Builder {
public:
    void press(Key key, int times = 1) {
        for (int i = 0; i < times; ++i) {
            add(setOf(key));
        }
    }

    // The letter and what it is held for go down in this order within one step: the letter's bit is
    // the lower one.
    void chord(Key letter, Key key) { add(setOf(letter) | setOf(key)); }

    // Left and Right are the filter's only when the letter was down in the frame before.
    void chordOneByOne(Key letter, Key key) {
        add(setOf(letter));
        gesture_.push_back(setOf(letter) | setOf(key));
    }

    // Steps that are in order among themselves.
    void append(const Gesture& steps) {
        if (!steps.empty()) {
            add(steps[0]);
            gesture_.insert(gesture_.end(), steps.begin() + 1, steps.end());
        }
    }

    Gesture take() { return std::move(gesture_); }

private:
    void add(KeySet keys) {
        if (!gesture_.empty() && needsGap(gesture_.back(), keys)) {
            gesture_.push_back(0);
        }
        gesture_.push_back(keys);
    }

    Gesture gesture_;
};

int layerOf(const Action& action, const StageModel& stage) {
    return action.layer == Layer::ACTIVE ? stage.active : action.layer == Layer::TOP ? 1 : 0;
}

// Up from the menu's other items, then left, leads to MIX from each of them.
void openMix(Builder& keys) {
    for (const Key key : {Key::RIGHT, Key::UP, Key::LEFT, Key::X}) {
        keys.press(key);
    }
}

void openList(Builder& keys, StageModel& stage) {
    if (stage.screen == Screen::HOME) {
        openMix(keys);  // MIX opens with its list
    } else if (stage.screen != Screen::LIST) {
        keys.press(Key::RETURN);
        stage.panel = false;
    }
    stage.screen = Screen::LIST;
}

// Where the choice in the list is not known it is taken to the top first, where it stops.
void chooseRow(Builder& keys, StageModel& stage, int row, int rows) {
    if (!stage.selected || *stage.selected >= rows) {
        keys.press(Key::UP, rows - 1);
        stage.selected = 0;
    }
    const int moves = row - *stage.selected;
    keys.press(moves < 0 ? Key::UP : Key::DOWN, std::abs(moves));
    stage.selected = row;
}

// Return and Z are the way home from the mix; where the list may have been open instead, the same
// again. In the menu neither does anything.
void goHome(Builder& keys, StageModel& stage) {
    const int turns = stage.screen == Screen::UNSURE ? 2 : stage.screen == Screen::MIX ? 1 : 0;
    for (int i = 0; i < turns; ++i) {
        keys.press(Key::RETURN);
        keys.press(Key::Z);
    }
    if (stage.screen == Screen::LIST) {
        keys.press(Key::Z);
    }
    stage.screen = Screen::HOME;
    stage.panel = false;
}

std::string loadPlaylist(Builder& keys, int number, StageModel& stage, const StageFiles& files) {
    const int rows = static_cast<int>(files.tracks.size());
    if (number > rows) {
        return "there is no playlist " + std::to_string(number) + "; Velmora has " +
               std::to_string(rows);
    }
    if (stage.screen == Screen::UNSURE) {
        goHome(keys, stage);  // in another page's list X would do something else
    }
    openList(keys, stage);
    chooseRow(keys, stage, number - 1, rows);
    keys.press(Key::X);
    // What loading starts afresh with; filters stay.
    const StageModel fresh;
    stage.screen = Screen::MIX;
    stage.active = fresh.active;
    stage.mode = fresh.mode;
    stage.backwards = fresh.backwards;
    stage.panel = fresh.panel;
    return "";
}

std::string elsewhere(Builder& keys, const Action& action, StageModel& stage,
                      const StageFiles& files) {
    switch (action.kind) {
        case ActionKind::PLAYLIST:
            return loadPlaylist(keys, static_cast<int>(action.number), stage, files);
        case ActionKind::HOME:
            goHome(keys, stage);
            break;
        case ActionKind::FULL_SCREEN:
            keys.press(Key::F);
            break;
        case ActionKind::LIST:
            if (stage.screen == Screen::UNSURE) {
                keys.press(Key::RETURN);
            } else if (stage.screen == Screen::LIST) {
                keys.press(Key::RETURN);
                stage.screen = Screen::MIX;
            } else {
                openList(keys, stage);
            }
            break;
        default:
            break;
    }
    return "";
}

// A filter may sit on several letters: one switch is enough for it, and the leftmost that is on
// gives the direction.
std::string playFilter(Builder& keys, const Action& action, const StageFiles& files,
                       std::array<FilterSwitch, kFilterSlots>& slots) {
    std::vector<size_t> all;
    std::vector<size_t> on;
    for (size_t slot = 0; slot < slots.size(); ++slot) {
        if (files.filters[slot] == action.filter) {
            all.push_back(slot);
            if (slots[slot].on) {
                on.push_back(slot);
            }
        }
    }
    if (all.empty()) {
        return std::string(filterOf(action.filter).name)
            .append(" is on no letter; OPTIONS in the menu puts it on one");
    }
    const auto letterOf = [](size_t slot) { return offset(Key::Q, static_cast<int>(slot)); };
    if (action.kind == ActionKind::FILTER_DIRECTION) {
        const size_t slot = on.empty() ? all[0] : on[0];
        keys.chordOneByOne(letterOf(slot), offset(Key::UP, action.direction));
        slots[slot].direction = action.direction;
        return "";
    }
    const bool wanted = action.kind == ActionKind::FILTER_ON ||
                        (action.kind == ActionKind::FILTER_TOGGLE && on.empty());
    const std::vector<size_t> one = {all[0]};
    const std::vector<size_t> none;
    for (const size_t slot : !wanted ? on : on.empty() ? one : none) {
        keys.chord(letterOf(slot), Key::BACKSPACE);
        slots[slot].on = wanted;
    }
    return "";
}

// Never as far as the clip itself is, where it is known how many there are.
void playRandomClip(Builder& keys, const StageModel& stage, const StageFiles& files,
                    const std::function<int(int)>& lot) {
    int farthest = kFarthestRandomClip;
    if (stage.selected && *stage.selected < static_cast<int>(files.tracks.size())) {
        farthest = std::min(farthest, files.tracks[static_cast<size_t>(*stage.selected)] - 1);
    }
    if (farthest > 0) {
        const int drawn = lot(2 * farthest);
        keys.press(drawn % 2 == 0 ? Key::RIGHT : Key::LEFT, 1 + drawn / 2);
    }
}

std::string onLayer(Builder& keys, const Action& action, int layer, StageModel& stage,
                    const StageFiles& files, const std::function<int(int)>& lot) {
    const size_t side = static_cast<size_t>(layer);
    switch (action.kind) {
        case ActionKind::NEXT:
            keys.press(Key::RIGHT);
            return "";
        case ActionKind::PREVIOUS:
            keys.press(Key::LEFT);
            return "";
        case ActionKind::RANDOM:
            playRandomClip(keys, stage, files, lot);
            return "";
        case ActionKind::REVERSE:
            keys.press(Key::Z);
            stage.backwards[side] = !stage.backwards[side];
            return "";
        default:
            return playFilter(keys, action, files, stage.filters[side]);
    }
}

// The active layer is left for the action, and returned to.
std::string withItsLayer(Builder& keys, const Action& action, StageModel& stage,
                         const StageFiles& files, const std::function<int(int)>& lot) {
    const int layer = layerOf(action, stage);
    Builder itself;
    std::string why = onLayer(itself, action, layer, stage, files, lot);
    const Gesture steps = itself.take();
    const bool away = layer != stage.active && !steps.empty();
    if (away) {
        keys.press(layerKey(layer));
    }
    keys.append(steps);
    if (away) {
        keys.press(layerKey(stage.active));
    }
    return why;
}

std::string onMix(Builder& keys, const Action& action, StageModel& stage, const StageFiles& files,
                  const std::function<int(int)>& lot) {
    switch (action.kind) {
        case ActionKind::LAYER:
            // Pressed in any case: it puts right what the bridge may have missed.
            stage.active = action.layer == Layer::TOP ? 1 : 0;
            keys.press(layerKey(stage.active));
            return "";
        case ActionKind::MODE:
            stage.mode = action.mode;
            keys.press(modeKey(action.mode));
            return "";
        case ActionKind::FLASH:
            keys.press(Key::S);
            return "";
        case ActionKind::PANEL:
            stage.panel = !stage.panel;
            keys.press(Key::TAB);
            return "";
        default:
            return withItsLayer(keys, action, stage, files, lot);
    }
}

bool leavesMix(ActionKind kind) {
    return kind == ActionKind::PLAYLIST || kind == ActionKind::HOME || kind == ActionKind::LIST ||
           kind == ActionKind::FULL_SCREEN;
}

}  // namespace

std::string whyNoMix(const StageModel& stage) {
    return stage.screen == Screen::HOME   ? "Velmora shows its menu"
           : stage.screen == Screen::LIST ? "the list of playlists is open"
                                          : "";
}

Played gestureOf(const Action& action, StageModel& stage, const StageFiles& files,
                 const std::function<int(int)>& lot) {
    Builder keys;
    std::string why;
    if (leavesMix(action.kind)) {
        why = elsewhere(keys, action, stage, files);
    } else {
        why = whyNoMix(stage);
        if (why.empty()) {
            why = onMix(keys, action, stage, files, lot);
        }
    }
    return {keys.take(), why};
}

Gesture gestureToLayer(int layer, StageModel& stage) {
    if (stage.active == layer) {
        return {};
    }
    stage.active = layer;
    return {setOf(layerKey(layer))};
}

}  // namespace control
