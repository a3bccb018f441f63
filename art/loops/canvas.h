#pragma once
// The drawing toolkit of the demo loops: shapes on a canvas of 640 x 360 pixels, paths, colours.
//
// Coordinates are pixels, y downwards; pixel (0, 0) covers 0..1. Angles are turns. Everything is
// clipped to the picture, so any finite coordinate is allowed. Edges are smoothed in five steps
// only: few colours in a tile make a small clip.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "tools/clip/media/picture.h"

namespace demo {

using maker::Colour;

inline constexpr int kWidth = 640;
inline constexpr int kHeight = 360;
inline constexpr float kCentreX = 320.0F;
inline constexpr float kCentreY = 180.0F;

struct Point {
    float x, y;
};

// The nearest value that survives 16-bit colour: `bits` bits, widened again by repetition.
constexpr uint8_t snapped(uint32_t value, uint32_t bits) {
    const uint32_t top = (1U << bits) - 1U;
    const uint32_t level = (value * top + 127U) / 255U;
    return static_cast<uint8_t>((level << (8U - bits)) | (level >> (2U * bits - 8U)));
}

// An opaque colour from 0x00RRGGBB, snapped to the 16-bit grid.
constexpr Colour rgb(uint32_t value) {
    return Colour{snapped((value >> 16) & 255U, 5), snapped((value >> 8) & 255U, 6),
                  snapped(value & 255U, 5), 255};
}

inline constexpr Colour kClear{0, 0, 0, 0};
// The five colours of the interface.
inline constexpr Colour kBlack = rgb(0x000000);
inline constexpr Colour kWhite = rgb(0xFFFFFF);
inline constexpr Colour kPink = rgb(0xFE00C3);
inline constexpr Colour kBlue = rgb(0x59B1FF);
inline constexpr Colour kOrange = rgb(0xFFB000);
// Their shades and tints, from dark to light. Ink is dark, yet not the key colour.
inline constexpr Colour kInk = rgb(0x180828);
inline constexpr Colour kPlum = rgb(0x3A0A50);
inline constexpr Colour kNavy = rgb(0x10205A);
inline constexpr Colour kWine = rgb(0x8A0068);
inline constexpr Colour kViolet = rgb(0x7A18D0);
inline constexpr Colour kSea = rgb(0x1C50B0);
inline constexpr Colour kEmber = rgb(0xD04800);
inline constexpr Colour kBlush = rgb(0xFFA8E6);
inline constexpr Colour kSky = rgb(0xB4DCFF);
inline constexpr Colour kCream = rgb(0xFFF0C0);

// The colour `step` of `steps` of the way from one to the other, snapped.
constexpr Colour mixed(Colour from, Colour to, int step, int steps) {
    const auto part = [step, steps](uint8_t a, uint8_t b) {
        return static_cast<uint32_t>(a + (b - a) * step / steps);
    };
    return rgb((part(from.red, to.red) << 16) | (part(from.green, to.green) << 8) |
               part(from.blue, to.blue));
}

// N colours through evenly spaced stops, the first and the last stop included.
template <int N, int Stops>
constexpr std::array<Colour, N> ramp(const Colour (&stops)[Stops]) {
    static_assert(N >= 2 && Stops >= 2);
    std::array<Colour, N> out{};
    for (int i = 0; i < N; ++i) {
        const int place = i * (Stops - 1);
        const int stop = place / (N - 1) < Stops - 1 ? place / (N - 1) : Stops - 2;
        out[static_cast<size_t>(i)] =
            mixed(stops[stop], stops[stop + 1], place - stop * (N - 1), N - 1);
    }
    return out;
}

// Closed outlines of straight edges; filled by the even-odd rule.
struct Path {
    std::vector<std::vector<Point>> contours;

    void move(Point to) { contours.push_back({to}); }  // begins a contour
    void line(Point to) { contours.back().push_back(to); }
    // Points along an arc, both ends included.
    void arc(Point middle, float radius, float from, float to);
    void circle(Point middle, float radius);
};

enum class Blend { OVER, ADD };

// The half of a picture that makes the other one.
enum class Half {
    LEFT,        // mirrored
    TOP,         // mirrored
    BOTH,        // the upper left quarter makes all
    TOP_TURNED,  // by half a turn
};

class Canvas : public maker::Canvas {
public:
    explicit Canvas(uint8_t* rgba) : maker::Canvas(rgba, kWidth, kHeight) {}

    void clear(Colour colour) { rect(0, 0, kWidth, kHeight, colour); }
    // `quarters` of the pixel, 0 to 4, are covered by the colour.
    void cover(int x, int y, Colour colour, int quarters, Blend blend = Blend::OVER);
    // The part of column x between two heights.
    void column(int x, float top, float bottom, Colour colour);

    void fill(const Path& path, Colour colour, Blend blend = Blend::OVER);
    void polygon(std::vector<Point> points, Colour colour, Blend blend = Blend::OVER);
    void line(Point from, Point to, float width, Colour colour, Blend blend = Blend::OVER);
    void disc(Point middle, float radius, Colour colour);
    void ring(Point middle, float outer, float inner, Colour colour);

    void repeat(Half half);
};

}  // namespace demo
