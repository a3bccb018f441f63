#include "tools/control/ears/osc_bytes.h"

#include <lo/lo.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace control {

namespace {

using Bytes = std::span<const uint8_t>;

constexpr size_t kWord = 4;  // everything in a packet is a multiple of it
constexpr std::string_view kBundle("#bundle\0", 8);
constexpr size_t kBundleHead = 16;  // its name and its time

struct FreeMessage {
    void operator()(lo_message message) const { lo_message_free(message); }
};
using Message = std::unique_ptr<std::remove_pointer_t<lo_message>, FreeMessage>;

// The text at the front without the zeros that end it. None when it does not end in `bytes`.
std::optional<std::string_view> textAtFront(Bytes bytes) {
    const auto end = std::find(bytes.begin(), bytes.end(), uint8_t{0});
    if (end == bytes.end()) {
        return std::nullopt;
    }
    return std::string_view(reinterpret_cast<const char*>(bytes.data()),
                            static_cast<size_t>(end - bytes.begin()));
}

size_t paddedLength(std::string_view text) {
    return (text.size() / kWord + 1) * kWord;
}

bool isAddress(std::string_view text) {
    return text.size() <= kLongestAddress && text.starts_with('/') &&
           std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c <= '~'; });
}

// Arguments lie at multiples of four bytes, which is too little for some of these types.
template <typename Number>
double numberAt(const lo_arg* argument) {
    Number number;
    std::memcpy(&number, static_cast<const void*>(argument), sizeof(number));
    return static_cast<double>(number);
}

std::optional<double> numberOf(char type, const lo_arg* argument) {
    switch (type) {
        case LO_INT32:
            return numberAt<int32_t>(argument);
        case LO_INT64:
            return numberAt<int64_t>(argument);
        case LO_FLOAT:
            return numberAt<float>(argument);
        case LO_DOUBLE:
            return numberAt<double>(argument);
        case LO_TRUE:
            return 1;
        case LO_FALSE:
            return 0;
        default:
            return std::nullopt;
    }
}

std::string heardText(const lo_arg* argument) {
    const auto* bytes = static_cast<const char*>(static_cast<const void*>(argument));
    std::string text(bytes, strnlen(bytes, kLongestText));
    std::replace_if(
        text.begin(), text.end(),
        [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }, '?');
    return text;
}

void readArguments(const Message& message, Heard& heard) {
    const char* types = lo_message_get_types(message.get());
    lo_arg** arguments = lo_message_get_argv(message.get());
    const int count = lo_message_get_argc(message.get());
    bool numberSeen = false;
    bool textSeen = false;
    for (int i = 0; i < count; ++i) {
        const auto number = numberOf(types[i], arguments[i]);
        if (number && !numberSeen) {
            numberSeen = true;
            heard.value = std::isfinite(*number) ? number : std::nullopt;
        }
        if ((types[i] == LO_STRING || types[i] == LO_SYMBOL) && !textSeen) {
            textSeen = true;
            heard.text = heardText(arguments[i]);
        }
    }
}

bool readMessage(Bytes bytes, std::vector<Heard>& into) {
    const auto address = textAtFront(bytes);
    if (!address || !isAddress(*address)) {
        return false;
    }
    Heard heard;
    heard.kind = HeardKind::OSC;
    heard.address = *address;
    const Bytes rest = bytes.subspan(paddedLength(*address));
    // Old senders leave out the types of a message that has no arguments.
    if (!rest.empty()) {
        const auto types = textAtFront(rest);
        if (!types || !types->starts_with(',')) {
            return false;
        }
        // It only reads the packet.
        const Message message(
            lo_message_deserialise(const_cast<uint8_t*>(bytes.data()), bytes.size(), nullptr));
        if (!message) {
            return false;
        }
        readArguments(message, heard);
    }
    into.push_back(std::move(heard));
    return true;
}

size_t sizeAt(Bytes bytes) {
    return size_t{bytes[0]} << 24 | size_t{bytes[1]} << 16 | size_t{bytes[2]} << 8 | bytes[3];
}

// `most`: how long `into` may become. `depth`: bundles around this one.
bool readPacket(Bytes packet, size_t most, int depth, std::vector<Heard>& into) {
    if (packet.empty() || packet.size() % kWord != 0 || into.size() >= most) {
        return false;
    }
    if (packet.size() < kBundle.size() ||
        std::memcmp(packet.data(), kBundle.data(), kBundle.size()) != 0) {
        return readMessage(packet, into);
    }
    if (packet.size() < kBundleHead || depth == kDeepestBundle) {
        return false;
    }
    Bytes rest = packet.subspan(kBundleHead);
    while (!rest.empty()) {
        const size_t size = sizeAt(rest);
        rest = rest.subspan(kWord);
        if (size > rest.size() || !readPacket(rest.first(size), most, depth + 1, into)) {
            return false;
        }
        rest = rest.subspan(size);
    }
    return true;
}

}  // namespace

bool heardOfOsc(std::span<const uint8_t> packet, std::vector<Heard>& into) {
    const size_t before = into.size();
    if (readPacket(packet, before + kMostOscMessages, 0, into)) {
        return true;
    }
    into.erase(into.begin() + static_cast<ptrdiff_t>(before), into.end());
    return false;
}

}  // namespace control
