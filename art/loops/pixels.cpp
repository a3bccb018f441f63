#include "art/loops/pixels.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "sheets.h"

namespace demo {

namespace {

constexpr int kRows = 10;
constexpr int kAscent = 8;  // rows above the baseline
constexpr int kGap = 1;     // columns after every glyph

struct Glyph {
    int width = 0;
    std::array<uint16_t, kRows> rows{};  // bit 0 is the left column
};

using Font = std::array<Glyph, 128>;

// Takes the text before the separator off the front; all of it when there is none.
constexpr std::string_view takeUntil(std::string_view& text, char separator) {
    const size_t end = std::min(text.find(separator), text.size());
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

// The next word of a line, empty at its end.
constexpr std::string_view takeWord(std::string_view& line) {
    while (!line.empty() && line.front() == ' ') {
        line.remove_prefix(1);
    }
    return takeUntil(line, ' ');
}

// The blank is written "U+0020"; every other character stands for itself.
constexpr size_t codeOf(std::string_view name) {
    return name.size() == 1 ? static_cast<size_t>(name.front()) : size_t{' '};
}

// One row of cells under the names of a band.
constexpr void readRow(Font& font, std::string_view names, std::string_view cells, int row) {
    for (std::string_view cell = takeWord(cells); !cell.empty(); cell = takeWord(cells)) {
        Glyph& glyph = font[codeOf(takeWord(names))];
        glyph.width = static_cast<int>(cell.size());
        for (size_t x = 0; x < cell.size(); x++) {
            const uint16_t bit = cell[x] == '#' ? 1 : 0;
            auto& bits = glyph.rows[static_cast<size_t>(row)];
            bits = static_cast<uint16_t>(bits | (bit << x));
        }
    }
}

constexpr void readSheet(Font& font, std::string_view sheet) {
    std::string_view names;
    int row = 0;
    while (!sheet.empty()) {
        std::string_view line = takeUntil(sheet, '\n');
        if (line.starts_with("at ")) {  // "at TOP: NAMES", then rows up to an empty line
            row = kAscent - (line[3] - '0');
            names = line.substr(6);
        } else if (line.empty()) {
            names = {};
        } else if (!names.empty()) {
            readRow(font, names, line, row);
            row++;
        }
    }
}

constexpr Font readFont() {
    Font font;
    for (const char* sheet : kGlyphSheets) {
        readSheet(font, sheet);
    }
    return font;
}

constexpr Font kFont = readFont();
static_assert(kFont['M'].width == 5 && kFont['M'].rows[1] == 0b10001 && kFont[' '].width > 0);

const Glyph& glyphOf(char letter) {
    const auto code = static_cast<unsigned char>(letter);
    return kFont[code < kFont.size() ? code : 0];
}

}  // namespace

int pixelTextWidth(std::string_view text, int scale) {
    int width = 0;
    for (const char letter : text) {
        const Glyph& glyph = glyphOf(letter);
        width += glyph.width > 0 ? glyph.width + kGap : 0;
    }
    return std::max(0, width - kGap) * scale;
}

void drawPixelText(Canvas& canvas, std::string_view text, int left, int top, int scale,
                   Color color) {
    for (const char letter : text) {
        const Glyph& glyph = glyphOf(letter);
        for (int row = 0; row < kRows; row++) {
            for (int column = 0; column < glyph.width; column++) {
                if ((glyph.rows[static_cast<size_t>(row)] >> column & 1) != 0) {
                    canvas.rect(left + column * scale, top + (row - kAscent + kCapitalRows) * scale,
                                scale, scale, color);
                }
            }
        }
        left += glyph.width > 0 ? (glyph.width + kGap) * scale : 0;
    }
}

void drawPixelTextCentred(Canvas& canvas, std::string_view text, int middle, int top, int scale,
                          Color color) {
    drawPixelText(canvas, text, middle - pixelTextWidth(text, scale) / 2, top, scale, color);
}

}  // namespace demo
