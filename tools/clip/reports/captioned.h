#pragma once
// Pictures with a line of text above them, and the colours of what the tool draws.

#include <string>

#include "tools/clip/media/picture.h"

namespace maker {

// The interface's, and two greys.
inline constexpr Colour kWhite{0xFF, 0xFF, 0xFF};
inline constexpr Colour kPink{0xFE, 0x00, 0xC3};
inline constexpr Colour kBlue{0x59, 0xB1, 0xFF};
inline constexpr Colour kOrange{0xFF, 0xB0, 0x00};
inline constexpr Colour kBlack{0x00, 0x00, 0x00};
inline constexpr Colour kGround{0x14, 0x14, 0x14};
inline constexpr Colour kGrey{0x80, 0x80, 0x80};

inline constexpr int kPictureGap = 4;      // between two pictures
inline constexpr int kCaptionHeight = 24;  // of the text, above the picture

// Of the ground's colour.
Picture groundOf(int width, int height);

// The text at (x, y) and the picture below it.
void drawCaptioned(Picture& sheet, int x, int y, const Picture& picture, const std::string& caption,
                   Colour colour = kWhite);

}  // namespace maker
