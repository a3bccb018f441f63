#include "tools/clip/base/texts.h"

#include <algorithm>

extern "C" {
#include <libavutil/avstring.h>
}

namespace maker {

namespace {

constexpr char32_t kFirstAfterAscii = 0x80;

// False when the bytes are no UTF-8.
bool decodeUtf8(std::string_view bytes, std::u32string& text) {
    const auto* at = reinterpret_cast<const uint8_t*>(bytes.data());
    const uint8_t* end = at + bytes.size();
    while (at < end) {
        int32_t point = 0;
        if (av_utf8_decode(&point, &at, end, AV_UTF8_FLAG_ACCEPT_ALL) < 0) {
            return false;
        }
        text += static_cast<char32_t>(point);
    }
    return true;
}

}  // namespace

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), av_tolower);
    return text;
}

bool isUtf8(std::string_view bytes) {
    std::u32string ignored;
    return decodeUtf8(bytes, ignored);
}

std::u32string fromLatin1(std::string_view bytes) {
    std::u32string text;
    for (const char byte : bytes) {
        text += static_cast<char32_t>(static_cast<unsigned char>(byte));
    }
    return text;
}

std::string latin1AsUtf8(std::string_view bytes) {
    std::string text;
    for (const char32_t point : fromLatin1(bytes)) {
        if (point < kFirstAfterAscii) {
            text += static_cast<char>(point);
        } else {
            text += static_cast<char>(0xC0 | point >> 6);
            text += static_cast<char>(0x80 | (point & 0x3F));
        }
    }
    return text;
}

std::u32string codePoints(std::string_view bytes) {
    std::u32string text;
    return decodeUtf8(bytes, text) ? text : fromLatin1(bytes);
}

std::string readable(std::string_view bytes) {
    std::string text = isUtf8(bytes) ? std::string(bytes) : latin1AsUtf8(bytes);
    std::replace_if(
        text.begin(), text.end(),
        [](char byte) { return static_cast<unsigned char>(byte) < ' ' || byte == 127; }, '?');
    return text;
}

std::string inQuotes(std::string_view bytes) {
    return std::string("'").append(readable(bytes)).append("'");
}

}  // namespace maker
