#include "tools/control/stage/action.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <utility>

#include "tools/base/nearest.h"
#include "tools/base/texts.h"

namespace control {

namespace {

struct Row {
    std::string name;  // without its number
    Action action;
};

struct LayerName {
    const char* prefix;
    Layer layer;
};
constexpr LayerName kLayers[] = {
    {"", Layer::ACTIVE}, {"top.", Layer::TOP}, {"bottom.", Layer::BOTTOM}};

struct KindName {
    const char* name;
    ActionKind kind;
};
constexpr KindName kOfLayer[] = {{"next", ActionKind::NEXT},
                                 {"previous", ActionKind::PREVIOUS},
                                 {"random", ActionKind::RANDOM},
                                 {"reverse", ActionKind::REVERSE},
                                 {"scrub", ActionKind::SCRUB}};
constexpr KindName kOfBoth[] = {{"flash", ActionKind::FLASH},
                                {"fade", ActionKind::FADE},
                                {"hold", ActionKind::HOLD},
                                {"panel", ActionKind::PANEL},
                                {"list", ActionKind::LIST},
                                {"playlist", ActionKind::PLAYLIST},
                                {"home", ActionKind::HOME},
                                {"fullscreen", ActionKind::FULL_SCREEN},
                                {"tap", ActionKind::TAP},
                                {"tempo", ActionKind::TEMPO},
                                {"beat.stop", ActionKind::STOP_BEAT}};

struct FilterVerb {
    const char* name;
    ActionKind kind;
    Direction direction;
};
constexpr FilterVerb kVerbs[] = {{"toggle", ActionKind::FILTER_TOGGLE, DIRECTION_UP},
                                 {"on", ActionKind::FILTER_ON, DIRECTION_UP},
                                 {"off", ActionKind::FILTER_OFF, DIRECTION_UP},
                                 {"held", ActionKind::FILTER_HELD, DIRECTION_UP},
                                 {"up", ActionKind::FILTER_DIRECTION, DIRECTION_UP},
                                 {"right", ActionKind::FILTER_DIRECTION, DIRECTION_RIGHT},
                                 {"down", ActionKind::FILTER_DIRECTION, DIRECTION_DOWN},
                                 {"left", ActionKind::FILTER_DIRECTION, DIRECTION_LEFT}};

// "alpha /" of the panel is "alpha".
std::string firstWord(std::string_view label) {
    return std::string(label.substr(0, label.find(' ')));
}

// "GAME BOY" of the panel is "gameboy".
std::string oneWord(std::string_view label) {
    std::string word(label);
    std::erase(word, ' ');
    return maker::lowerCase(word);
}

void addFilters(std::vector<Row>& rows, const LayerName& layer) {
    for (const Filter& filter : kFilters) {
        if (filter.id == FILTER_NONE) {
            continue;
        }
        const std::string start =
            std::string(layer.prefix).append("filter.").append(oneWord(filter.name)).append(".");
        for (const FilterVerb& verb : kVerbs) {
            rows.push_back({start + verb.name,
                            {.kind = verb.kind,
                             .layer = layer.layer,
                             .filter = filter.id,
                             .direction = verb.direction}});
        }
    }
}

std::vector<Row> makeRows() {
    std::vector<Row> rows{{"top", {.kind = ActionKind::LAYER, .layer = Layer::TOP}},
                          {"bottom", {.kind = ActionKind::LAYER, .layer = Layer::BOTTOM}}};
    for (const LayerName& layer : kLayers) {
        for (const KindName& kind : kOfLayer) {
            rows.push_back(
                {std::string(layer.prefix) + kind.name, {.kind = kind.kind, .layer = layer.layer}});
        }
    }
    for (const ModeControl& mode : kModes) {
        rows.push_back({std::string("mode.").append(firstWord(mode.label)),
                        {.kind = ActionKind::MODE, .mode = mode.mode}});
    }
    for (const LayerName& layer : kLayers) {
        addFilters(rows, layer);
    }
    for (const KindName& kind : kOfBoth) {
        rows.push_back({kind.name, {.kind = kind.kind}});
    }
    return rows;
}

const std::vector<Row>& rows() {
    static const std::vector<Row> kRows = makeRows();
    return kRows;
}

const Row* rowNamed(std::string_view name) {
    const std::string lower = maker::lowerCase(std::string(name));
    const auto row = std::ranges::find(rows(), lower, &Row::name);
    return row != rows().end() ? &*row : nullptr;
}

std::optional<double> numberIn(std::string_view text) {
    double number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, std::chars_format::fixed);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

std::optional<Action> withNumber(Action action, std::optional<double> number) {
    const bool playlist = action.kind == ActionKind::PLAYLIST;
    const double least = playlist ? 1 : kSlowestTempo;
    const double most = playlist ? kMostPlaylists : kFastestTempo;
    if (!number || !(*number >= least && *number <= most) ||
        (playlist && std::trunc(*number) != *number)) {
        return std::nullopt;
    }
    action.number = *number;
    return action;
}

std::string withDots(std::string_view words) {
    std::string name(words);
    std::ranges::replace(name, '/', '.');
    return name;
}

}  // namespace

std::optional<Action> actionNamed(std::string_view text) {
    const size_t blank = text.find(' ');
    const Row* row = rowNamed(text.substr(0, blank));
    if (row == nullptr) {
        return std::nullopt;
    }
    if (takesNumber(row->action.kind)) {
        return blank == std::string_view::npos
                   ? std::nullopt
                   : withNumber(row->action, numberIn(text.substr(blank + 1)));
    }
    return blank == std::string_view::npos ? std::optional(row->action) : std::nullopt;
}

std::optional<Action> actionOfAddress(std::string_view address, std::optional<double> number) {
    if (!address.starts_with('/')) {
        return std::nullopt;
    }
    const std::string_view words = address.substr(1);
    const size_t last = words.rfind('/');
    if (last != std::string_view::npos &&
        words.substr(0, last).find('.') == std::string_view::npos) {
        const Row* row = rowNamed(withDots(words.substr(0, last)));
        if (row != nullptr && takesNumber(row->action.kind)) {
            return withNumber(row->action, numberIn(words.substr(last + 1)));
        }
    }
    if (words.find('.') != std::string_view::npos) {
        return std::nullopt;  // words stand between strokes
    }
    const Row* row = rowNamed(withDots(words));
    if (row == nullptr) {
        return std::nullopt;
    }
    // Beside an action without a number it is how far a pad or button is down.
    return takesNumber(row->action.kind) ? withNumber(row->action, number)
                                         : std::optional(row->action);
}

std::string nameOf(const Action& action) {
    Action plain = action;
    plain.number = 0;
    const auto row = std::ranges::find(rows(), plain, &Row::action);
    if (row == rows().end()) {
        return {};
    }
    if (!takesNumber(action.kind)) {
        return row->name;
    }
    char digits[64];
    const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), action.number,
                                            std::chars_format::fixed);
    return row->name + " " + std::string(digits, error == std::errc() ? end : digits);
}

const std::vector<std::string>& actionNames() {
    static const std::vector<std::string> kNames = [] {
        std::vector<std::string> names;
        for (const Row& row : rows()) {
            names.push_back(takesNumber(row.action.kind) ? row.name + " N" : row.name);
        }
        return names;
    }();
    return kNames;
}

std::string whyNoAction(std::string_view text) {
    constexpr size_t kLongestShown = 60;  // no name is nearly as long
    const std::string_view shown = text.substr(0, kLongestShown);
    const std::string_view word = shown.substr(0, shown.find(' '));
    if (const Row* row = rowNamed(word); row != nullptr) {
        if (!takesNumber(row->action.kind)) {
            return row->name + " takes no number";
        }
        return row->action.kind == ActionKind::PLAYLIST
                   ? "playlist takes a whole number from 1 to " + std::to_string(kMostPlaylists)
                   : "tempo takes a number from " + maker::decimals(kSlowestTempo, 0) + " to " +
                         maker::decimals(kFastestTempo, 0);
    }
    std::vector<std::string> words;
    std::ranges::transform(rows(), std::back_inserter(words), &Row::name);
    const std::string nearest = maker::nearestName(maker::lowerCase(std::string(word)), words);
    std::string why = "there is no action " + maker::inQuotes(shown);
    return nearest.empty() ? why : why.append("; did you mean ").append(nearest).append("?");
}

}  // namespace control
