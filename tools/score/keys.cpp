#include "tools/score/keys.h"

#include <charconv>

namespace maker {

namespace {

constexpr int kKeys = 323;  // SDL's last one and one more
constexpr int kSpace = 32;
constexpr int kDelete = 127;

struct KeyName {
    std::string_view name;
    int key;
};

constexpr KeyName kNames[] = {
    {"backspace", 8}, {"tab", 9},    {"return", 13},   {"escape", 27},   {"space", 32},
    {"delete", 127},  {"up", 273},   {"down", 274},    {"right", 275},   {"left", 276},
    {"insert", 277},  {"home", 278}, {"end-key", 279}, {"page-up", 280}, {"page-down", 281},
};

bool isNamedByItself(int key) {
    return (key >= 'a' && key <= 'z') || (key >= '0' && key <= '9');
}

}  // namespace

std::string keyName(int key) {
    if (isNamedByItself(key)) {
        return std::string(1, static_cast<char>(key));
    }
    for (const KeyName& each : kNames) {
        if (each.key == key) {
            return std::string(each.name);
        }
    }
    return "key" + std::to_string(key);
}

std::optional<int> keyOf(std::string_view name) {
    if (name.size() == 1 && isNamedByItself(name[0])) {
        return name[0];
    }
    for (const KeyName& each : kNames) {
        if (each.name == name) {
            return each.key;
        }
    }
    constexpr std::string_view kByNumber = "key";
    int key = 0;
    if (!name.starts_with(kByNumber)) {
        return std::nullopt;
    }
    const char* const end = name.data() + name.size();
    const auto [read, error] = std::from_chars(name.data() + kByNumber.size(), end, key);
    const bool isKey = error == std::errc() && read == end && key > 0 && key < kKeys;
    return isKey ? std::optional(key) : std::nullopt;
}

uint16_t usualCharacter(int key) {
    const bool control = key == 8 || key == 9 || key == 13 || key == 27;
    const bool given = control || (key >= kSpace && key <= kDelete);
    return given ? static_cast<uint16_t>(key) : uint16_t{0};
}

}  // namespace maker
