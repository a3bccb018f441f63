#include "tools/clip/media/pixel_font.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <new>

#include "tools/base/errors.h"

namespace maker {

namespace {

constexpr FT_Int32 kLoad = FT_LOAD_RENDER | FT_LOAD_TARGET_MONO;

// FreeType counts in 64ths of a pixel.
int ceiled(FT_Pos value) {
    return static_cast<int>((value + 63) >> 6);
}

int floored(FT_Pos value) {
    return static_cast<int>(value >> 6);
}

void blitGlyph(const FT_GlyphSlot glyph, Canvas& canvas, int x, int y, Colour colour) {
    const FT_Bitmap& bitmap = glyph->bitmap;
    for (int row = 0; row < static_cast<int>(bitmap.rows); ++row) {
        const unsigned char* bits = bitmap.buffer + row * bitmap.pitch;
        for (int column = 0; column < static_cast<int>(bitmap.width); ++column) {
            if ((bits[column / 8] & (0x80 >> (column % 8))) != 0) {
                canvas.set(x + glyph->bitmap_left + column, y - glyph->bitmap_top + row, colour);
            }
        }
    }
}

}  // namespace

PixelFont::PixelFont(int size) {
    if (FT_Init_FreeType(&library_) != 0) {
        throw std::bad_alloc();
    }
    if (FT_New_Memory_Face(library_, kFontFile.data(), static_cast<FT_Long>(kFontFile.size()), 0,
                           &face_) != 0 ||
        FT_Set_Char_Size(face_, 0, size * 64, 0, 0) != 0) {
        FT_Done_FreeType(library_);
        throw ToolError("the built-in font cannot be read");
    }
}

PixelFont::~PixelFont() {
    FT_Done_FreeType(library_);
}

// A text begins at its leftmost pixel and ends at its rightmost one, or where the last character
// leaves off.
int PixelFont::widthOf(std::u32string_view text) const {
    int x = 0;
    int left = 0;
    int right = 0;
    for (const char32_t point : text) {
        if (FT_Load_Char(face_, point, FT_LOAD_DEFAULT) != 0) {
            continue;
        }
        const FT_Glyph_Metrics& glyph = face_->glyph->metrics;
        const int advance = ceiled(glyph.horiAdvance);
        left = std::min(left, x + floored(glyph.horiBearingX));
        right = std::max(right, x + std::max(advance, ceiled(glyph.horiBearingX + glyph.width)));
        x += advance;
    }
    return right - left;
}

void PixelFont::draw(Canvas& canvas, int x, int y, std::u32string_view text, Colour colour) const {
    const int baseline = y + ceiled(face_->size->metrics.ascender);
    for (const char32_t point : text) {
        if (FT_Load_Char(face_, point, kLoad) != 0) {
            continue;
        }
        blitGlyph(face_->glyph, canvas, x, baseline, colour);
        x += ceiled(face_->glyph->metrics.horiAdvance);
    }
}

}  // namespace maker
