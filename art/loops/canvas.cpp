#include "art/loops/canvas.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "art/loops/motion.h"

namespace demo {

namespace {

constexpr int kSub = 4;  // sample rows to a pixel row, and steps to a pixel's width

// The coverage of one pixel row, in kSub x kSub parts a pixel.
struct RowCover {
    std::array<int, kWidth + 2> part{};   // of single pixels
    std::array<int, kWidth + 2> delta{};  // changes of a running sum: whole runs
    int left = kWidth;
    int right = 0;

    void add(float from, float to) {
        const int a = std::clamp(nearest(from * kSub), 0, kWidth * kSub);
        const int b = std::clamp(nearest(to * kSub), 0, kWidth * kSub);
        if (a >= b) {
            return;
        }
        const auto first = static_cast<size_t>(a / kSub);
        const auto last = static_cast<size_t>(b / kSub);
        left = std::min(left, a / kSub);
        right = std::max(right, b / kSub + 1);
        if (first == last) {
            part[first] += b - a;
            return;
        }
        part[first] += kSub - a % kSub;
        delta[first + 1] += kSub;
        delta[last] -= kSub;
        part[last] += b % kSub;
    }
};

// Where the outline crosses the height y, from left to right.
void findCrossings(const Path& path, float y, std::vector<float>& out) {
    out.clear();
    for (const std::vector<Point>& contour : path.contours) {
        Point from = contour.back();
        for (const Point to : contour) {
            if ((from.y <= y) != (to.y <= y)) {
                out.push_back(from.x + (y - from.y) / (to.y - from.y) * (to.x - from.x));
            }
            from = to;
        }
    }
    std::sort(out.begin(), out.end());
}

struct Rows {
    int first, end;
};

Rows rowsOf(const Path& path) {
    float low = real(kHeight);
    float high = 0.0F;
    for (const std::vector<Point>& contour : path.contours) {
        for (const Point p : contour) {
            low = std::min(low, p.y);
            high = std::max(high, p.y);
        }
    }
    return {std::max(0, floored(std::max(low, 0.0F))),
            std::min(kHeight, floored(std::min(high, real(kHeight))) + 1)};
}

// One part in 255 of `over` laid on `under` by straight alpha.
void layOver(uint8_t* pixel, Colour colour, int alpha) {
    const int under = pixel[3] * (255 - alpha) / 255;
    const int sum = alpha + under;
    if (sum == 0) {
        return;
    }
    const auto channel = [alpha, under, sum](int below, int above) {
        return static_cast<uint8_t>((above * alpha + below * under + sum / 2) / sum);
    };
    pixel[0] = channel(pixel[0], colour.red);
    pixel[1] = channel(pixel[1], colour.green);
    pixel[2] = channel(pixel[2], colour.blue);
    pixel[3] = static_cast<uint8_t>(sum);
}

void addLight(uint8_t* pixel, Colour colour, int alpha) {
    const auto channel = [alpha](int below, int above) {
        return static_cast<uint8_t>(std::min(255, below + above * alpha / 255));
    };
    pixel[0] = channel(pixel[0], colour.red);
    pixel[1] = channel(pixel[1], colour.green);
    pixel[2] = channel(pixel[2], colour.blue);
}

}  // namespace

void Path::arc(Point middle, float radius, float from, float to) {
    // A chord of about two pixels is not seen as straight.
    const float length = std::fabs(to - from) * 6.3F * radius;
    const int steps = std::clamp(floored(length / 2.5F) + 2, 2, 160);
    for (int i = 0; i <= steps; ++i) {
        const float angle = from + (to - from) * real(i) / real(steps);
        line({middle.x + radius * cosTurn(angle), middle.y + radius * sinTurn(angle)});
    }
}

void Path::circle(Point middle, float radius) {
    move({middle.x + radius, middle.y});
    arc(middle, radius, 0.0F, 1.0F);
}

void Canvas::cover(int x, int y, Colour colour, int quarters, Blend blend) {
    if (x < 0 || x >= kWidth || y < 0 || y >= kHeight || quarters <= 0) {
        return;
    }
    const int alpha = colour.alpha * std::min(quarters, kSub) / kSub;
    if (blend == Blend::ADD) {
        addLight(at(x, y), colour, alpha);
    } else if (alpha == 255) {
        std::memcpy(at(x, y), &colour, 4);
    } else {
        layOver(at(x, y), colour, alpha);
    }
}

void Canvas::column(int x, float top, float bottom, Colour colour) {
    const int a = std::clamp(nearest(top * kSub), 0, kHeight * kSub);
    const int b = std::clamp(nearest(bottom * kSub), 0, kHeight * kSub);
    for (int y = a / kSub; y * kSub < b; ++y) {
        cover(x, y, colour, std::min(b, (y + 1) * kSub) - std::max(a, y * kSub));
    }
}

void Canvas::fill(const Path& path, Colour colour, Blend blend) {
    const Rows rows = rowsOf(path);
    std::vector<float> crossings;
    for (int y = rows.first; y < rows.end; ++y) {
        RowCover row;
        for (int s = 0; s < kSub; ++s) {
            findCrossings(path, real(y) + (real(s) + 0.5F) / kSub, crossings);
            for (size_t i = 0; i + 1 < crossings.size(); i += 2) {
                row.add(crossings[i], crossings[i + 1]);
            }
        }
        int running = 0;
        for (int x = row.left; x < std::min(row.right, kWidth); ++x) {
            running += row.delta[static_cast<size_t>(x)];
            const int parts = running + row.part[static_cast<size_t>(x)];
            cover(x, y, colour, (parts + kSub / 2) / kSub, blend);
        }
    }
}

void Canvas::polygon(std::vector<Point> points, Colour colour, Blend blend) {
    fill({{std::move(points)}}, colour, blend);
}

void Canvas::line(Point from, Point to, float width, Colour colour, Blend blend) {
    const float dx = to.x - from.x;
    const float dy = to.y - from.y;
    const float length = std::sqrt(dx * dx + dy * dy);
    if (length < 0.01F) {
        return;
    }
    const float nx = -dy / length * width / 2.0F;
    const float ny = dx / length * width / 2.0F;
    polygon({{from.x + nx, from.y + ny},
             {to.x + nx, to.y + ny},
             {to.x - nx, to.y - ny},
             {from.x - nx, from.y - ny}},
            colour, blend);
}

void Canvas::disc(Point middle, float radius, Colour colour) {
    Path path;
    path.circle(middle, radius);
    fill(path, colour);
}

void Canvas::ring(Point middle, float outer, float inner, Colour colour) {
    Path path;
    path.circle(middle, outer);
    path.circle(middle, inner);
    fill(path, colour);
}

void Canvas::repeat(Half half) {
    if (half == Half::BOTH) {
        repeat(Half::LEFT);
        return repeat(Half::TOP);
    }
    const bool across = half != Half::TOP;
    const bool down = half != Half::LEFT;
    for (int y = 0; y < (down ? kHeight / 2 : kHeight); ++y) {
        for (int x = 0; x < (down ? kWidth : kWidth / 2); ++x) {
            std::memcpy(at(across ? kWidth - 1 - x : x, down ? kHeight - 1 - y : y), at(x, y), 4);
        }
    }
}

}  // namespace demo
