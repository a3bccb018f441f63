// Pictures given by a rule for each point, most of them mirrored about both middle lines.

#include <algorithm>
#include <array>

#include "art/loops/canvas.h"
#include "art/loops/families.h"
#include "art/loops/field.h"
#include "art/loops/motion.h"

namespace demo {

namespace {

constexpr int kHalfWidth = kWidth / 2;
constexpr int kHalfHeight = kHeight / 2;

float lengthOf(float x, float y) {
    return std::sqrt(x * x + y * y);
}

}  // namespace

void drawTunnel(Canvas& canvas, const Moment& now) {
    // Three shades of each of four hues, from the far end to the near one.
    static constexpr std::array<Colour, 13> kPaints{kBlack,  kPlum,  kWine, kPink, kPlum,
                                                    kViolet, kBlush, kNavy, kSea,  kBlue,
                                                    kInk,    kPlum,  kWhite};
    constexpr float kRings = 4.0F;  // rings to a doubling of the size
    const float t = now * 4.0F;
    sampleField(canvas, kHalfWidth, kHalfHeight, kPaints, [t](float px, float py) {
        const float x = (kCentreX - px) / 320.0F;
        const float y = (kCentreY - py) / 200.0F;
        const float size = std::sqrt(std::sqrt(x * x * x * x + y * y * y * y));
        if (size < 0.035F) {
            return 0;
        }
        const int ring = floored(std::log2(size) * kRings - t);
        const int sector = floored(turnOf(x, y) * 16.0F);
        if ((ring + sector) % 2 != 0) {
            return 0;
        }
        const int shade = size < 0.12F ? 0 : size < 0.36F ? 1 : 2;
        return 1 + wrapped(ring, 4) * 3 + shade;
    });
}

void drawMoire(Canvas& canvas, const Moment& t) {
    static constexpr std::array<Colour, 4> kPaints{kBlack, kPink, kBlue, kWhite};
    constexpr float kPitch = 48.0F;
    const float apart = 150.0F + 110.0F * cosTurn(t);
    const float shift = t * 4.0F;
    sampleField(canvas, kHalfWidth, kHalfHeight, kPaints, [apart, shift](float px, float py) {
        const float x = kCentreX - px;
        const float y = kCentreY - py;
        const bool one = fraction(lengthOf(x - apart, y) / kPitch - shift) < 0.5F;
        const bool two = fraction(lengthOf(x + apart, y) / kPitch - shift) < 0.5F;
        return (one ? 1 : 0) + (two ? 2 : 0);
    });
}

void drawKaleido(Canvas& canvas, const Moment& t) {
    static constexpr std::array<Colour, 7> kPaints{kInk,   kPlum,   kPink, kOrange,
                                                   kCream, kViolet, kBlue};
    const float c = cosTurn(t);
    const float s = sinTurn(t);
    const Point lens{150.0F + 70.0F * c, 40.0F + 40.0F * s};
    sampleField(canvas, kHalfWidth, kHalfHeight, kPaints, [=](float px, float py) {
        float x = kCentreX - px;
        float y = kCentreY - py;
        if (y > x * 1.7320508F) {  // beyond 60 degrees: fold back
            const float fold = x * 0.5F + y * 0.8660254F;
            x = fold - x;
            y = 2.0F * fold * 0.8660254F - y;
        }
        if (y > x * 0.5773503F) {  // beyond 30 degrees: fold back
            const float fold = x * 0.8660254F + y * 0.5F;
            x = 2.0F * fold * 0.8660254F - x;
            y = fold - y;
        }
        const float u = (x - 180.0F) * c - (y - 30.0F) * s;
        const float v = (x - 180.0F) * s + (y - 30.0F) * c;
        const int square = floored(std::max(std::fabs(u), std::fabs(v)) / 34.0F);
        const int round = floored(lengthOf(x - lens.x, y - lens.y) / 34.0F);
        return wrapped(square + (round < 3 ? 2 + round : 0), 7);
    });
}

void drawChecker(Canvas& canvas, const Moment& t) {
    static constexpr std::array<Colour, 4> kPaints{kBlack, kWhite, kPink, kBlue};
    // A quarter turn brings the board back to itself, as it turns about the middle of a field.
    const float angle = t * 0.25F;
    const float scale = 1.0F / (84.0F + 44.0F * cosTurn(t));
    const float c = cosTurn(angle) * scale;
    const float s = sinTurn(angle) * scale;
    sampleField(canvas, kWidth, kHalfHeight, kPaints, [c, s](float px, float py) {
        const float x = px - kCentreX;
        const float y = py - kCentreY;
        const int col = floored(x * c - y * s + 0.5F);
        const int row = floored(x * s + y * c + 0.5F);
        if ((col + row) % 2 != 0) {
            return 0;
        }
        const int out = std::max(std::abs(col), std::abs(row));
        return out % 3 == 0 ? (out % 2 == 0 ? 2 : 3) : 1;
    });
}

void drawLava(Canvas& canvas, const Moment& t) {
    // The outermost shell is glass.
    static constexpr Colour kShell{kViolet.red, kViolet.green, kViolet.blue, 136};
    static constexpr std::array<Colour, 5> kPaints{kClear, kShell, kPink, kOrange, kCream};
    constexpr int kBlobs = 5;
    std::array<Vec3, kBlobs> blobs{};  // place and squared radius
    for (int i = 0; i < kBlobs; ++i) {
        const float radius = 26.0F + 26.0F * noiseUnit(i, 2);
        blobs[static_cast<size_t>(i)] = {kCentreX - 20.0F - 220.0F * fraction(real(i) * 0.618F) -
                                             60.0F * sinTurn(t + noiseUnit(i, 4)),
                                         kCentreY + 190.0F * sinTurn(t + real(i) * 3.0F / kBlobs),
                                         radius * radius};
    }
    sampleField(canvas, kHalfWidth, kHeight, kPaints, [&blobs](float px, float py) {
        float heat = 0.0F;
        for (const Vec3& b : blobs) {
            const float dx = px - b.x;
            const float dy = py - b.y;
            const float mx = kWidth - px - b.x;
            heat += b.z / (dx * dx + dy * dy + 1.0F) + b.z / (mx * mx + dy * dy + 1.0F);
        }
        return heat < 0.62F ? 0 : heat < 0.8F ? 1 : heat < 1.15F ? 2 : heat < 2.1F ? 3 : 4;
    });
}

void drawSwirl(Canvas& canvas, const Moment& t) {
    static constexpr std::array<Colour, 6> kPaints{kOrange, kCream, kPink, kCream, kWhite, kInk};
    constexpr float kRounds = 4.0F;  // of the pattern; the loop turns it on by one
    const float pulse = 1.0F - fraction(t * 2.0F);
    const float core = 52.0F + 26.0F * pulse * pulse;
    const float bend = 0.06F * sinTurn(t);
    sampleField(canvas, kWidth, kHalfHeight, kPaints, [=](float px, float py) {
        const float x = px - kCentreX;
        const float y = py - kCentreY;
        const float r = lengthOf(x, y);
        if (r < core) {
            return r < core * 0.42F ? 2 : r < core * 0.68F ? 4 : 2;
        }
        if (r < core + 9.0F) {
            return 5;
        }
        const float a = turnOf(x, y) + (0.2F + bend) * std::log2(r / 100.0F);
        return floored(fraction(a * kRounds - t) * 4.0F) % 4;
    });
}

}  // namespace demo
