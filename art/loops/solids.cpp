// Bodies in space: shaded solids on nothing, the turning hypercube, a field of heaving blocks.

#include <algorithm>
#include <array>
#include <span>

#include "art/loops/canvas.h"
#include "art/loops/families.h"
#include "art/loops/motion.h"

namespace demo {

namespace {

constexpr int kMostCorners = 12;

using Face = std::array<int, 4>;  // corners, seen from outside; a triangle ends in -1

struct Solid {
    std::span<const Vec3> corners;
    std::span<const Face> faces;
    std::array<Colour, 5> shades;  // from dark to light
    Colour edge;
    float size;
    float lean;  // turns that bring an axis of its symmetry upright
};

constexpr float kG = 1.618034F;  // the golden section

constexpr Vec3 kCubeCorners[] = {{-1, -1, -1}, {1, -1, -1}, {1, 1, -1}, {-1, 1, -1},
                                 {-1, -1, 1},  {1, -1, 1},  {1, 1, 1},  {-1, 1, 1}};
constexpr Face kCubeFaces[] = {{0, 1, 2, 3}, {5, 4, 7, 6}, {4, 0, 3, 7},
                               {1, 5, 6, 2}, {4, 5, 1, 0}, {3, 2, 6, 7}};
constexpr Vec3 kOctaCorners[] = {{1, 0, 0},  {-1, 0, 0}, {0, 1, 0},
                                 {0, -1, 0}, {0, 0, 1},  {0, 0, -1}};
constexpr Face kOctaFaces[] = {{0, 4, 2, -1}, {2, 4, 1, -1}, {1, 4, 3, -1}, {3, 4, 0, -1},
                               {2, 5, 0, -1}, {1, 5, 2, -1}, {3, 5, 1, -1}, {0, 5, 3, -1}};
constexpr Vec3 kIcosaCorners[] = {{-1, kG, 0}, {1, kG, 0}, {-1, -kG, 0}, {1, -kG, 0},
                                  {0, -1, kG}, {0, 1, kG}, {0, -1, -kG}, {0, 1, -kG},
                                  {kG, 0, -1}, {kG, 0, 1}, {-kG, 0, -1}, {-kG, 0, 1}};
constexpr Face kIcosaFaces[] = {{0, 5, 11, -1},  {0, 1, 5, -1},  {0, 7, 1, -1},  {0, 10, 7, -1},
                                {0, 11, 10, -1}, {1, 9, 5, -1},  {5, 4, 11, -1}, {11, 2, 10, -1},
                                {10, 6, 7, -1},  {7, 8, 1, -1},  {3, 4, 9, -1},  {3, 2, 4, -1},
                                {3, 6, 2, -1},   {3, 8, 6, -1},  {3, 9, 8, -1},  {4, 5, 9, -1},
                                {2, 11, 4, -1},  {6, 10, 2, -1}, {8, 7, 6, -1},  {9, 1, 8, -1}};

// An edge of the icosahedron's golden rectangle rises by this much: atan(1 / kG).
constexpr float kIcosaLean = 0.0881F;

constexpr Solid kIcosa{kIcosaCorners, kIcosaFaces, ramp<5>({kWine, kPink, kBlush}),
                       kWhite,        62.0F,       kIcosaLean};
constexpr Solid kOcta{kOctaCorners, kOctaFaces, ramp<5>({kEmber, kOrange, kCream}),
                      kWhite,       88.0F,      0.0F};
constexpr Solid kCube{kCubeCorners, kCubeFaces, ramp<5>({kSea, kBlue, kSky}), kWhite, 27.0F, 0.0F};

struct Seen {
    Point at;
    float scale;
};

// Looks along +z from `distance` in front of the picture's plane.
Seen projected(Vec3 v, float distance) {
    const float scale = distance / (distance + v.z);
    return {{kCentreX + v.x * scale, kCentreY + v.y * scale}, scale};
}

// Twice the area of a face on the picture, negative when its corners run backwards.
float turnArea(std::span<const Point> p) {
    return (p[1].x - p[0].x) * (p[2].y - p[0].y) - (p[1].y - p[0].y) * (p[2].x - p[0].x);
}

// The shade of a face, 0 to 4, by how squarely it meets the light from the upper left front.
int shadeOf(Vec3 a, Vec3 b, Vec3 c) {
    const Vec3 u{b.x - a.x, b.y - a.y, b.z - a.z};
    const Vec3 w{c.x - a.x, c.y - a.y, c.z - a.z};
    const Vec3 n{u.y * w.z - u.z * w.y, u.z * w.x - u.x * w.z, u.x * w.y - u.y * w.x};
    const float length = std::sqrt(n.x * n.x + n.y * n.y + n.z * n.z);
    // These corners run so that n points into the body; the light comes from -n.
    const float facing = (n.x * 0.45F + n.y * 0.65F + n.z * 0.61F) / length;
    return facing > 0.0F ? std::clamp(1 + floored(facing * 4.0F), 1, 4) : 0;
}

// Leaned over to the side first, then spun about the upright, then tipped towards the eye.
void drawSolid(Canvas& canvas, const Solid& solid, Point place, float spin, float tip) {
    std::array<Vec3, kMostCorners> body{};
    std::array<Point, kMostCorners> seen{};
    for (size_t i = 0; i < solid.corners.size(); ++i) {
        const Vec3 v = solid.corners[i];
        const Vec3 upright =
            turnedZ({v.x * solid.size, v.y * solid.size, v.z * solid.size}, solid.lean);
        body[i] = turnedX(turnedY(upright, spin), tip);
        const Point offset = projected(body[i], 640.0F).at;
        seen[i] = {place.x + offset.x - kCentreX, place.y + offset.y - kCentreY};
    }
    for (const Face& face : solid.faces) {
        const size_t count = face[3] < 0 ? 3 : 4;
        std::vector<Point> points;
        for (size_t i = 0; i < count; ++i) {
            points.push_back(seen[static_cast<size_t>(face[i])]);
        }
        if (turnArea(points) <= 0.0F) {
            continue;
        }
        const auto corner = [&](size_t i) { return body[static_cast<size_t>(face[i])]; };
        const int shade = shadeOf(corner(0), corner(1), corner(2));
        canvas.polygon(points, solid.shades[static_cast<size_t>(shade)]);
        for (size_t i = 0; i < count; ++i) {
            canvas.line(points[i], points[(i + 1) % count], 2.5F, solid.edge);
        }
    }
}

}  // namespace

void drawSolids(Canvas& canvas, const Moment& t) {
    // Every body turns by one of its own corners, so the loop is short and still has no seam.
    drawSolid(canvas, kCube, {206.0F, 52.0F + 6.0F * sinTurn(t)}, t / 4.0F, 0.08F);
    canvas.repeat(Half::TOP);
    drawSolid(canvas, kOcta, {100.0F, kCentreY}, t / 4.0F, 0.05F);
    canvas.repeat(Half::LEFT);
    drawSolid(canvas, kIcosa, {kCentreX, kCentreY}, -t / 5.0F, 0.04F);
}

void drawTesseract(Canvas& canvas, const Moment& t) {
    constexpr int kCorners = 16;
    static constexpr auto kDepth = ramp<6>({kSea, kBlue, kBlue, kPink, kPink});
    // A quarter turn in each of two planes brings the hypercube back to itself.
    const float turn = t / 4.0F;
    std::array<Point, kCorners> seen{};
    std::array<float, kCorners> near{};
    for (int i = 0; i < kCorners; ++i) {
        const auto side = [i](int bit) { return (i >> bit & 1) != 0 ? 1.0F : -1.0F; };
        const float x = side(0) * cosTurn(turn) - side(3) * sinTurn(turn);
        const float w = side(0) * sinTurn(turn) + side(3) * cosTurn(turn);
        const float y = side(1) * cosTurn(turn) - side(2) * sinTurn(turn);
        const float z = side(1) * sinTurn(turn) + side(2) * cosTurn(turn);
        const float grow = 172.0F / (2.85F - w);
        const Vec3 v = turnedX(turnedY({x * grow * 1.25F, y * grow, z * grow}, 0.08F), -0.06F);
        const Seen spot = projected(v, 560.0F);
        seen[static_cast<size_t>(i)] = spot.at;
        near[static_cast<size_t>(i)] = grow * spot.scale / 128.0F;
    }
    for (int pass = 0; pass < 6; ++pass) {  // the far edges first
        for (int i = 0; i < kCorners; ++i) {
            for (int bit = 1; bit < kCorners; bit *= 2) {
                const auto a = static_cast<size_t>(i);
                const auto b = static_cast<size_t>(i | bit);
                const float mean = (near[a] + near[b]) / 2.0F;
                const int level = std::clamp(floored((mean - 0.30F) * 6.5F), 0, 5);
                if ((i & bit) == 0 && level == pass) {
                    canvas.line(seen[a], seen[b], 2.5F + real(level) * 1.1F,
                                kDepth[static_cast<size_t>(level)]);
                }
            }
        }
    }
    for (size_t i = 0; i < kCorners; ++i) {
        canvas.disc(seen[i], 3.0F + near[i] * 7.0F, kWhite);
    }
}

void drawCubes(Canvas& canvas, const Moment& t) {
    constexpr int kHalf = 32;  // half the width of a block
    constexpr int kQuarter = 16;
    constexpr int kLevels = 8;
    static constexpr auto kTops = ramp<kLevels>({kViolet, kPink, kOrange, kCream});
    static constexpr auto kLefts = ramp<kLevels>({kInk, kPlum, kWine, kPink});
    static constexpr auto kRights = ramp<kLevels>({kInk, kInk, kPlum, kWine});
    canvas.clear(kInk);
    for (int sum = -16; sum <= 20; ++sum) {  // back to front
        for (int col = -10; col <= 10; ++col) {
            if ((sum + col) % 2 != 0) {
                continue;
            }
            const float far = std::sqrt(real(col * col) + real(sum * sum) * 0.7F);
            const float heave = 0.5F + 0.5F * sinTurn(far / 9.0F - t);
            const int level = std::clamp(floored(heave * kLevels), 0, kLevels - 1);
            const float x = real(320 + col * kHalf);
            const float y = real(216 + sum * kQuarter - nearest(heave * 14.0F) * 4);
            const auto tone = static_cast<size_t>(level);
            for (const float side : {-1.0F, 1.0F}) {
                const float out = x + side * kHalf;
                canvas.polygon({{out, y}, {x, y + kQuarter}, {x, y + 120.0F}, {out, y + 104.0F}},
                               (side < 0.0F ? kLefts : kRights)[tone]);
            }
            canvas.polygon({{x - kHalf, y}, {x, y - kQuarter}, {x + kHalf, y}, {x, y + kQuarter}},
                           kTops[tone]);
        }
    }
}

}  // namespace demo
