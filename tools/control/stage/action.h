#pragma once
// What a performer can ask for, by name: "top.next", "mode.add", "filter.mirror.toggle",
// "playlist 3". Maps, OSC addresses and `velmora-control send` all use these names.
//
// A name is words between points; a number may follow it behind a blank. "top." and "bottom." in
// front of what belongs to a layer choose that layer; without them it is the active one.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "px/filters.h"
#include "px/modes.h"

namespace control {

enum class ActionKind : uint8_t {
    LAYER,          // `layer` becomes the active one
    NEXT,           // clip
    PREVIOUS,       // clip
    RANDOM,         // a clip one to three places away
    REVERSE,        // the clip's direction
    SCRUB,          // goes by the value: 0 to 1
    MODE,           // `mode`
    FLASH,          //
    FADE,           // held
    HOLD,           // held
    FILTER_TOGGLE,  // `filter`
    FILTER_ON,
    FILTER_OFF,
    FILTER_HELD,       // on while it is held
    FILTER_DIRECTION,  // `filter`, `direction`
    PANEL,
    LIST,         // opens the list of playlists, or closes it
    PLAYLIST,     // `number`, 1 the first: is loaded
    HOME,         // the menu
    FULL_SCREEN,  //
    TAP,          // a beat of the performer's
    TEMPO,        // `number`: beats a minute
    STOP_BEAT,    // no more rules on the beat until tap, clock or tempo
};

enum class Layer : uint8_t { ACTIVE, BOTTOM, TOP };

// As filter slots hold it.
enum Direction : uint8_t { DIRECTION_UP, DIRECTION_RIGHT, DIRECTION_DOWN, DIRECTION_LEFT };

struct Action {
    ActionKind kind = ActionKind::FLASH;
    Layer layer = Layer::ACTIVE;
    MixMode mode = MODE_TOP;
    FilterId filter = FILTER_NONE;
    Direction direction = DIRECTION_UP;
    double number = 0;  // of PLAYLIST and TEMPO

    bool operator==(const Action&) const = default;
};

// Held as long as the pad is.
constexpr bool isHeld(ActionKind kind) {
    return kind == ActionKind::FADE || kind == ActionKind::HOLD || kind == ActionKind::FILTER_HELD;
}

// Goes by how far a knob is turned.
constexpr bool takesValue(ActionKind kind) {
    return kind == ActionKind::SCRUB;
}

// Needs a number behind its name.
constexpr bool takesNumber(ActionKind kind) {
    return kind == ActionKind::PLAYLIST || kind == ActionKind::TEMPO;
}

inline constexpr double kSlowestTempo = 20;  // beats a minute
inline constexpr double kFastestTempo = 400;
inline constexpr int kMostPlaylists = 256;  // numbers of playlists are 1 to this

// The action of a name, capitals or not. None when there is none, or its number is missing, out of
// range, or one too many.
std::optional<Action> actionNamed(std::string_view text);

// The action of an OSC address, "/top/next", "/playlist/3", or "/playlist" with the number beside
// it. None when there is none of that name.
std::optional<Action> actionOfAddress(std::string_view address, std::optional<double> number);

// The name that actionNamed reads.
std::string nameOf(const Action& action);

// Every name, in the order of the manual; "N" stands for the number of those that take one.
const std::vector<std::string>& actionNames();

// What is wrong with a name that actionNamed does not take, for people: "there is no action
// 'top.nxt'; did you mean top.next?"
std::string whyNoAction(std::string_view text);

}  // namespace control
