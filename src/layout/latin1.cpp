#include "layout/latin1.h"

#include <cstdint>

namespace latin1 {

namespace {

constexpr uint32_t kFirstAccent = 0x300;
constexpr uint32_t kLastAccent = 0x36F;
constexpr uint32_t kFirstLatin1 = 0xA0;
constexpr uint32_t kLastLatin1 = 0xFF;
constexpr unsigned char kUnknown = '?';

struct Character {
    size_t bytes;  // 0: no valid UTF-8 begins here
    uint32_t code;
};

unsigned char byteAt(std::string_view text, size_t at) {
    return static_cast<unsigned char>(text[at]);
}

// First bytes of UTF-8 by their length, and the smallest code that needs it.
struct Form {
    size_t bytes;
    unsigned char mask;
    unsigned char lead;
    uint32_t smallest;
};
constexpr Form kForms[] = {
    {1, 0x80, 0x00, 0}, {2, 0xE0, 0xC0, 0x80}, {3, 0xF0, 0xE0, 0x800}, {4, 0xF8, 0xF0, 0x10000}};

bool isCharacter(uint32_t code) {
    return code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

Character decode(std::string_view text) {
    for (const Form& form : kForms) {
        if (text.size() < form.bytes || (byteAt(text, 0) & form.mask) != form.lead) {
            continue;
        }
        uint32_t code = byteAt(text, 0) & static_cast<unsigned char>(~form.mask);
        for (size_t i = 1; i < form.bytes; ++i) {
            if ((byteAt(text, i) & 0xC0) != 0x80) {
                return {0, 0};
            }
            code = code << 6 | (byteAt(text, i) & 0x3FU);
        }
        return code >= form.smallest && isCharacter(code) ? Character{form.bytes, code}
                                                          : Character{0, 0};
    }
    return {0, 0};
}

// Letters that have an accent of their own in Latin-1, and what the two are together.
struct Accent {
    uint32_t code;
    const char* plain;
    const char* accented;
};
constexpr Accent kAccents[] = {
    {0x300, "AEIOUaeiou", "\xC0\xC8\xCC\xD2\xD9\xE0\xE8\xEC\xF2\xF9"},            // grave
    {0x301, "AEIOUYaeiouy", "\xC1\xC9\xCD\xD3\xDA\xDD\xE1\xE9\xED\xF3\xFA\xFD"},  // acute
    {0x302, "AEIOUaeiou", "\xC2\xCA\xCE\xD4\xDB\xE2\xEA\xEE\xF4\xFB"},            // circumflex
    {0x303, "ANOano", "\xC3\xD1\xD5\xE3\xF1\xF5"},                                // tilde
    {0x308, "AEIOUaeiouy", "\xC4\xCB\xCF\xD6\xDC\xE4\xEB\xEF\xF6\xFC\xFF"},       // diaeresis
    {0x30A, "Aa", "\xC5\xE5"},                                                    // ring
    {0x327, "Cc", "\xC7\xE7"},                                                    // cedilla
};

// The letter stays as it is where the two have no place together.
unsigned char withAccent(unsigned char letter, uint32_t code) {
    for (const Accent& accent : kAccents) {
        const size_t at = std::string_view(accent.plain).find(static_cast<char>(letter));
        if (accent.code == code && at != std::string_view::npos) {
            return static_cast<unsigned char>(accent.accented[at]);
        }
    }
    return letter;
}

unsigned char drawnAs(uint32_t code) {
    const bool ascii = code < 0x80;
    const bool latin = code >= kFirstLatin1 && code <= kLastLatin1;
    return ascii || latin ? static_cast<unsigned char>(code) : kUnknown;
}

}  // namespace

Letter firstLetter(std::string_view text) {
    const Character first = decode(text);
    if (first.bytes == 0) {
        return {1, byteAt(text, 0)};
    }
    Letter letter = {first.bytes, drawnAs(first.code)};
    while (letter.bytes < text.size()) {
        const Character next = decode(text.substr(letter.bytes));
        if (next.bytes == 0 || next.code < kFirstAccent || next.code > kLastAccent) {
            break;
        }
        letter = {letter.bytes + next.bytes, withAccent(letter.drawn, next.code)};
    }
    return letter;
}

size_t lettersOf(std::string_view text, char* out, size_t room) {
    size_t letters = 0;
    while (!text.empty() && letters + 1 < room) {
        const Letter letter = firstLetter(text);
        out[letters++] = static_cast<char>(letter.drawn);
        text.remove_prefix(letter.bytes);
    }
    out[letters] = '\0';
    return letters;
}

}  // namespace latin1
