#include "tools/base/texts.h"

#include <unicode/utf8.h>

#include <algorithm>

namespace maker {

namespace {

constexpr char32_t kFirstAfterAscii = 0x80;

// False when the bytes are no UTF-8.
bool decodeUtf8(std::string_view bytes, std::u32string& text) {
    const auto* data = reinterpret_cast<const uint8_t*>(bytes.data());
    const size_t size = bytes.size();
    for (size_t at = 0; at < size;) {
        UChar32 point = 0;
        U8_NEXT(data, at, size, point);
        if (point < 0) {
            return false;
        }
        text += static_cast<char32_t>(point);
    }
    return true;
}

}  // namespace

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char each) {
        return each >= 'A' && each <= 'Z' ? static_cast<char>(each - 'A' + 'a') : each;
    });
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
