#include "tools/control/map/map_file.h"

#include <arpa/inet.h>
#include <toml++/toml.h>

#include <algorithm>
#include <initializer_list>

#include "tools/base/nearest.h"
#include "tools/base/texts.h"

namespace control {

namespace {

constexpr size_t kMostFaults = 100;  // nobody reads more, and each may need a search for a name

// A key with points in it makes one table in another for each; taking them apart goes as deep.
constexpr int kMostPoints = 64;  // of a line

std::string inSection(const char* section, const std::string& key) {
    return section + std::string(" ") + key;
}

class Reader {
public:
    MapReading reading;
    size_t faults = 0;  // all of them, in `reading` the first ones

    void fault(const toml::source_region& where, const std::string& text) {
        if (faults++ < kMostFaults) {
            reading.faults.push_back(
                {static_cast<int>(where.begin.line), static_cast<int>(where.begin.column), text});
        }
    }

    bool namesFaults() const { return faults < kMostFaults; }
};

// One section of the map, by the name that messages give it.
struct Section {
    Reader& reader;
    const toml::table& table;
    const char* name;

    void allow(std::initializer_list<const char*> keys) const {
        const std::vector<std::string> names(keys.begin(), keys.end());
        for (const auto& [key, value] : table) {
            if (std::ranges::find(names, key.str()) == names.end()) {
                constexpr size_t kLongestShown = 60;
                const std::string_view shown = key.str().substr(0, kLongestShown);
                const std::string nearest =
                    reader.namesFaults() ? maker::nearestName(shown, names) : std::string();
                std::string text = std::string(name) + " has no key " + maker::inQuotes(shown);
                reader.fault(key.source(),
                             nearest.empty()
                                 ? text
                                 : text.append("; did you mean ").append(nearest).append("?"));
            }
        }
    }

    const toml::node* find(const char* key) const { return table.get(key); }

    // A fault at the key's value, or at the section when there is none.
    void fault(const char* key, const std::string& text) const {
        const toml::node* node = find(key);
        reader.fault(node != nullptr ? node->source() : table.source(), text);
    }

    std::optional<int> whole(const char* key, int least, int most) const {
        const toml::node* node = find(key);
        if (node == nullptr) {
            return {};
        }
        const toml::value<int64_t>* number = node->as_integer();
        if (number == nullptr || number->get() < least || number->get() > most) {
            fault(key, inSection(name, key) + " is a whole number from " + std::to_string(least) +
                           " to " + std::to_string(most));
            return {};
        }
        return static_cast<int>(number->get());
    }

    // `isRight` also says no to what is not a number.
    template <class Test>
    std::optional<double> number(const char* key, Test isRight, const char* range) const {
        const toml::node* node = find(key);
        if (node == nullptr) {
            return {};
        }
        const std::optional<double> number =
            node->is_number() ? node->value<double>() : std::optional<double>();
        if (!number || !isRight(*number)) {
            fault(key, inSection(name, key) + " is a number " + range);
            return {};
        }
        return number;
    }

    std::optional<bool> flag(const char* key) const {
        const toml::node* node = find(key);
        if (node != nullptr && !node->is_boolean()) {
            fault(key, inSection(name, key) + " is true or false");
            return {};
        }
        return node != nullptr ? std::optional(node->as_boolean()->get()) : std::nullopt;
    }

    std::optional<std::string> text(const char* key) const {
        const toml::node* node = find(key);
        if (node != nullptr && !node->is_string()) {
            fault(key, inSection(name, key) + " is a text in quotes");
            return {};
        }
        return node != nullptr ? std::optional(node->as_string()->get()) : std::nullopt;
    }

    std::vector<std::string> parts(const char* key) const {
        std::vector<std::string> parts;
        const toml::node* node = find(key);
        const toml::array* list = node != nullptr ? node->as_array() : nullptr;
        if (node != nullptr && list == nullptr) {
            fault(key, inSection(name, key) + " is a list of texts: [\"one\", \"two\"]");
        }
        for (size_t i = 0; list != nullptr && i < list->size(); ++i) {
            const toml::value<std::string>* part = list->get(i)->as_string();
            if (part == nullptr || part->get().empty()) {
                reader.fault(list->get(i)->source(),
                             inSection(name, key) + " holds parts of names in quotes");
            } else {
                parts.push_back(part->get());
            }
        }
        return parts;
    }
};

bool isAddress(const std::string& text) {
    in6_addr address{};
    return text.find('\0') == std::string::npos &&
           (inet_pton(AF_INET, text.c_str(), &address) == 1 ||
            inet_pton(AF_INET6, text.c_str(), &address) == 1);
}

void readOsc(const Section& osc, ControlMap& map) {
    osc.allow({"enabled", "listen", "port"});
    map.osc = osc.flag("enabled").value_or(map.osc);
    const std::optional<std::string> listen = osc.text("listen");
    if (listen && !isAddress(*listen)) {
        osc.fault("listen", "[osc] listen is an address in numbers, like \"192.168.1.20\"");
    } else {
        map.listen = listen.value_or(map.listen);
    }
    map.port = osc.whole("port", 1, 65535).value_or(map.port);
}

void readMidi(const Section& midi, ControlMap& map) {
    midi.allow({"only", "ignore"});
    map.onlyDevices = midi.parts("only");
    map.ignoredDevices = midi.parts("ignore");
}

void readBeat(const Section& beat, ControlMap& map) {
    beat.allow({"tempo", "clock", "bar"});
    const std::string range = "from " + maker::decimals(kSlowestTempo, 0) + " to " +
                              maker::decimals(kFastestTempo, 0) + ", of beats a minute";
    map.tempo = beat.number(
        "tempo", [](double tempo) { return tempo >= kSlowestTempo && tempo <= kFastestTempo; },
        range.c_str());
    map.clock = beat.flag("clock").value_or(map.clock);
    map.bar = beat.whole("bar", 1, 16).value_or(map.bar);
}

// The one input of an [[on]].
void readInput(const Section& on, Binding& binding) {
    constexpr std::pair<const char*, HeardKind> kInputs[] = {{"note", HeardKind::NOTE},
                                                             {"knob", HeardKind::KNOB},
                                                             {"program", HeardKind::PROGRAM},
                                                             {"bend", HeardKind::BEND},
                                                             {"osc", HeardKind::OSC}};
    int inputs = 0;
    for (const auto& [key, kind] : kInputs) {
        if (on.find(key) == nullptr) {
            continue;
        }
        binding.kind = kind;
        if (++inputs > 1) {
            on.fault(key, "an [[on]] has one of note, knob, program, bend and osc");
        } else if (kind == HeardKind::BEND) {
            if (on.flag(key) == false) {
                on.fault(key, "[[on]] bend is true or left out");
            }
        } else if (kind == HeardKind::OSC) {
            binding.address = on.text(key).value_or("/");
            if (!binding.address.starts_with('/')) {
                on.fault(key, "[[on]] osc begins with a /");
            }
        } else {
            binding.number = on.whole(key, 0, 127).value_or(0);
        }
    }
    if (inputs == 0) {
        on.fault("", "this [[on]] has none of note, knob, program, bend and osc");
    }
}

std::optional<Action> readAction(Reader& reader, const toml::node& node) {
    const toml::value<std::string>* name = node.as_string();
    const std::optional<Action> action = name != nullptr ? actionNamed(name->get()) : std::nullopt;
    if (!action) {
        reader.fault(node.source(), name == nullptr        ? "do is the name of an action in quotes"
                                    : reader.namesFaults() ? whyNoAction(name->get())
                                                           : std::string());
    }
    return action;
}

Quantum readQuantum(const Section& on) {
    const std::optional<std::string> at = on.text("at");
    if (at && *at != "now" && *at != "beat" && *at != "bar") {
        on.fault("at", "[[on]] at is \"now\", \"beat\" or \"bar\"");
    }
    return at == "beat" ? Quantum::BEAT : at == "bar" ? Quantum::BAR : Quantum::NOW;
}

// What one input cannot do.
void checkBinding(const Section& on, const Binding& binding) {
    const ActionKind kind = binding.action.kind;
    const std::string name = nameOf(binding.action);
    if (takesValue(kind) &&
        (binding.kind == HeardKind::NOTE || binding.kind == HeardKind::PROGRAM)) {
        on.fault("do", name + " goes by how far something is turned: by knob, bend or osc");
    }
    if (isHeld(kind) && binding.kind == HeardKind::PROGRAM) {
        on.fault("do", name + " is held, and a program change is never let go");
    }
    if ((takesValue(kind) || isHeld(kind)) && binding.at != Quantum::NOW) {
        on.fault("at", name + " cannot wait for a beat");
    }
    if (binding.channel && binding.kind == HeardKind::OSC) {
        on.fault("channel", "osc has no channel");
    }
}

int lastLineOf(const toml::table& table) {
    auto last = table.source().begin.line;
    for (const auto& [key, value] : table) {
        last = std::max({last, key.source().end.line, value.source().end.line});
    }
    return static_cast<int>(last);
}

void readOn(const Section& on) {
    Reader& reader = on.reader;
    const size_t before = reader.faults;
    on.allow({"note", "knob", "program", "bend", "osc", "channel", "device", "do", "at"});
    Binding binding;
    binding.line = static_cast<int>(on.table.source().begin.line);
    readInput(on, binding);
    binding.channel = on.whole("channel", 1, 16);
    binding.device = on.text("device").value_or("");
    binding.at = readQuantum(on);
    const toml::node* action = on.find("do");
    if (action == nullptr) {
        on.fault("do", "this [[on]] has no do");
    } else if (const std::optional<Action> read = readAction(reader, *action)) {
        binding.action = *read;
        checkBinding(on, binding);
    }
    if (reader.faults == before) {
        reader.reading.map.bindings.push_back(binding);
        reader.reading.lastLines.push_back(lastLineOf(on.table));
    }
}

void addRuleAction(const Section& every, const toml::node& node, Rule& rule) {
    const std::optional<Action> action = readAction(every.reader, node);
    if (!action) {
        return;
    }
    if (isHeld(action->kind) || takesValue(action->kind) || action->kind == ActionKind::TAP) {
        every.reader.fault(node.source(), nameOf(*action) + " is for hands, not for the beat");
    }
    rule.actions.push_back(*action);
}

void readEvery(const Section& every) {
    const size_t before = every.reader.faults;
    every.allow({"beats", "offset", "do", "chance"});
    Rule rule;
    rule.line = static_cast<int>(every.table.source().begin.line);
    rule.beats = every.whole("beats", 1, 256).value_or(rule.beats);
    rule.offset = every.whole("offset", 0, rule.beats - 1).value_or(rule.offset);
    rule.chance = every
                      .number(
                          "chance", [](double chance) { return chance > 0 && chance <= 1; },
                          "above 0, up to 1")
                      .value_or(rule.chance);
    const toml::node* action = every.find("do");
    const toml::array* list = action != nullptr ? action->as_array() : nullptr;
    if (action == nullptr || (list != nullptr && list->empty())) {
        every.fault("do", "this [[every]] has no do");
    } else if (list == nullptr) {
        addRuleAction(every, *action, rule);
    }
    for (size_t i = 0; list != nullptr && i < list->size(); ++i) {
        addRuleAction(every, *list->get(i), rule);
    }
    if (every.reader.faults == before) {
        every.reader.reading.map.rules.push_back(rule);
    }
}

template <class Read>
void readSection(const Section& root, const char* key, const char* name, Read read) {
    const toml::node* node = root.find(key);
    if (node == nullptr) {
        return;
    }
    if (const toml::table* table = node->as_table()) {
        read(Section{root.reader, *table, name}, root.reader.reading.map);
    } else {
        root.fault(key, std::string(key) + " is a section: " + name);
    }
}

// Only as [[name]]: what is written in one line cannot be changed by lines.
template <class Read>
void readEach(const Section& root, const char* key, const char* name, Read read) {
    const toml::node* node = root.find(key);
    const toml::array* list = node != nullptr ? node->as_array() : nullptr;
    if (node != nullptr && (list == nullptr || list->empty())) {
        root.fault(key, std::string(key) + " is written as " + name);
    }
    for (size_t i = 0; list != nullptr && i < list->size(); ++i) {
        const toml::table* table = list->get(i)->as_table();
        if (table == nullptr || table->is_inline()) {
            root.reader.fault(list->get(i)->source(), std::string(key) + " is written as " + name);
        } else {
            read(Section{root.reader, *table, name});
        }
    }
}

void readRoot(const Section& root) {
    root.allow({"osc", "midi", "beat", "on", "every"});
    readSection(root, "osc", "[osc]", readOsc);
    readSection(root, "midi", "[midi]", readMidi);
    readSection(root, "beat", "[beat]", readBeat);
    readEach(root, "on", "[[on]]", readOn);
    readEach(root, "every", "[[every]]", readEvery);
}

// The first line with too many points; 0 when there is none.
int lineOfPoints(std::string_view text) {
    int line = 1;
    int points = 0;
    for (const char c : text) {
        points = c == '\n' ? 0 : points + (c == '.' ? 1 : 0);
        line += c == '\n' ? 1 : 0;
        if (points > kMostPoints) {
            return line;
        }
    }
    return 0;
}

}  // namespace

MapReading readMap(std::string_view text) {
    Reader reader;
    if (text.size() > kLargestMap) {
        reader.reading.faults.push_back(
            {1, 1, "a map has at most " + std::to_string(kLargestMap) + " bytes"});
        return reader.reading;
    }
    if (const int line = lineOfPoints(text); line != 0) {
        reader.reading.faults.push_back(
            {line, 1, "a line has at most " + std::to_string(kMostPoints) + " points"});
        return reader.reading;
    }
    // Debian's build of the library tells faults by exceptions.
    try {
        const toml::table table = toml::parse(text);
        readRoot(Section{reader, table, "the map"});
    } catch (const toml::parse_error& error) {
        reader.fault(error.source(), maker::readable(error.description()));
    }
    return reader.reading;
}

std::string lineOf(const std::string& path, const MapFault& fault) {
    return path + ":" + std::to_string(fault.line) + ":" + std::to_string(fault.column) + ": " +
           fault.text;
}

}  // namespace control
