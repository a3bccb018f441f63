#pragma once
// What is done to an input's pictures on their way into a clip, and the filters that do it.
//
// Some of it happens to the pictures as they are read (film.h), the framing where they are scaled
// (scaler.h), the rest to the finished frames (source.h).

#include <string>

namespace maker {

enum class Deinterlace { AUTO, ON, OFF };  // AUTO: pictures that are marked as interlaced

enum class Fold { NONE, LEFT, RIGHT, TOP, BOTTOM, QUARTER };  // the part that is mirrored

struct Look {
    Deinterlace deinterlace = Deinterlace::AUTO;
    std::string filter;     // a graph of FFmpeg's filters
    double slow = 1;        // times; pictures between are blended
    double zoom = 1;        // times
    double across = 0.5;    // the point of a picture that is cut that comes nearest to the middle:
    double down = 0.5;      // 0 its left and top, 1 its right and foot
    bool inPixels = false;  // or that point's pixel
    bool flipAcross = false;
    bool flipDown = false;
    Fold fold = Fold::NONE;
    double brightness = 0;  // added, -1 to 1
    double contrast = 1;    // times, around middle grey
    double saturation = 1;  // times, up to 2
    double fadeIn = 0;      // seconds, from black
    double fadeOut = 0;     // seconds, to black

    bool fades() const { return fadeIn > 0 || fadeOut > 0; }
    bool operator==(const Look&) const = default;
};

// The filters of finished frames, one after the other; "" for none. `seconds` is the whole length,
// which a fade at the end needs.
std::string frameFilters(const Look& look, double seconds);

// All that differs from a look that changes nothing, for comparing; "" when nothing does.
std::string textOf(const Look& look);

}  // namespace maker
