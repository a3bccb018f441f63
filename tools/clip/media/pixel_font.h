#pragma once
// The interface's bitmap font: how wide texts are on stage, and texts in pictures.
//
// Sizes are those of the program: 9 for small texts, 18 for large ones; multiples of 9 stay sharp.
// Texts are code points (texts.h). The font is part of the tool.

#include <span>
#include <string_view>

#include "tools/clip/media/picture.h"

typedef struct FT_LibraryRec_* FT_Library;
typedef struct FT_FaceRec_* FT_Face;

namespace maker {

inline constexpr int kSmallText = 9;
inline constexpr int kLargeText = 18;

class PixelFont {
public:
    explicit PixelFont(int size);
    ~PixelFont();
    PixelFont(const PixelFont&) = delete;
    PixelFont& operator=(const PixelFont&) = delete;

    // Pixels that the program's own text takes.
    int widthOf(std::u32string_view text) const;
    // (x, y) is the top left of the line.
    void draw(Canvas& canvas, int x, int y, std::u32string_view text, Colour colour) const;

private:
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
};

// Its file, data/volter. The build makes the bytes.
extern const std::span<const unsigned char> kFontFile;

}  // namespace maker
