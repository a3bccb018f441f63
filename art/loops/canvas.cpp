#include "art/loops/canvas.h"

#include <algorithm>
#include <cmath>
#include <cstring>

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

struct Crossings {
    std::array<float, Path::kMaxPoints> x;
    int count = 0;
};

// Where the outline crosses the height y, from left to right.
void findCrossings(const Path& path, float y, Crossings& out) {
    out.count = 0;
    for (int c = 0; c < path.contourCount(); ++c) {
        const std::span<const Point> points = path.contour(c);
        if (points.empty()) {
            continue;
        }
        Point from = points.back();
        for (const Point to : points) {
            if ((from.y <= y) != (to.y <= y)) {
                const float share = (y - from.y) / (to.y - from.y);
                out.x[static_cast<size_t>(out.count++)] = from.x + share * (to.x - from.x);
            }
            from = to;
        }
    }
    std::sort(out.x.begin(), out.x.begin() + out.count);
}

struct Rows {
    int first, end;
};

Rows rowsOf(const Path& path) {
    float low = real(kHeight);
    float high = 0.0F;
    for (int c = 0; c < path.contourCount(); ++c) {
        for (const Point p : path.contour(c)) {
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

void Path::move(float x, float y) {
    if (contours_ < kMaxContours) {
        starts_[static_cast<size_t>(contours_++)] = count_;
    }
    line(x, y);
}

void Path::line(float x, float y) {
    if (count_ < kMaxPoints) {
        points_[static_cast<size_t>(count_++)] = {x, y};
    }
}

void Path::arc(float x, float y, float radius, float from, float to) {
    // A chord of about two pixels is not seen as straight.
    const float length = std::fabs(to - from) * 6.3F * radius;
    const int steps = std::clamp(floored(length / 2.5F) + 2, 2, 160);
    for (int i = 0; i <= steps; ++i) {
        const float angle = from + (to - from) * real(i) / real(steps);
        line(x + radius * cosTurn(angle), y + radius * sinTurn(angle));
    }
}

void Path::circle(float x, float y, float radius) {
    move(x + radius, y);
    arc(x, y, radius, 0.0F, 1.0F);
}

std::span<const Point> Path::contour(int index) const {
    const int start = starts_[static_cast<size_t>(index)];
    const int end = index + 1 < contours_ ? starts_[static_cast<size_t>(index) + 1] : count_;
    return {points_.data() + start, static_cast<size_t>(end - start)};
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
    Crossings crossings;
    for (int y = rows.first; y < rows.end; ++y) {
        RowCover row;
        for (int s = 0; s < kSub; ++s) {
            findCrossings(path, real(y) + (real(s) + 0.5F) / kSub, crossings);
            for (int i = 0; i + 1 < crossings.count; i += 2) {
                row.add(crossings.x[static_cast<size_t>(i)],
                        crossings.x[static_cast<size_t>(i) + 1]);
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

void Canvas::polygon(std::span<const Point> points, Colour colour, Blend blend) {
    Path path;
    path.move(points.front().x, points.front().y);
    for (const Point p : points.subspan(1)) {
        path.line(p.x, p.y);
    }
    fill(path, colour, blend);
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
    const std::array<Point, 4> quad{{{from.x + nx, from.y + ny},
                                     {to.x + nx, to.y + ny},
                                     {to.x - nx, to.y - ny},
                                     {from.x - nx, from.y - ny}}};
    polygon(quad, colour, blend);
}

void Canvas::disc(float x, float y, float radius, Colour colour) {
    Path path;
    path.circle(x, y, radius);
    fill(path, colour);
}

void Canvas::ring(float x, float y, float outer, float inner, Colour colour) {
    Path path;
    path.circle(x, y, outer);
    path.circle(x, y, inner);
    fill(path, colour);
}

void Canvas::mirrorLeftRight() {
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth / 2; ++x) {
            std::memcpy(at(kWidth - 1 - x, y), at(x, y), 4);
        }
    }
}

void Canvas::mirrorTopBottom() {
    for (int y = 0; y < kHeight / 2; ++y) {
        std::memcpy(at(0, kHeight - 1 - y), at(0, y), kWidth * 4);
    }
}

void Canvas::turnTopHalf() {
    for (int y = 0; y < kHeight / 2; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            std::memcpy(at(kWidth - 1 - x, kHeight - 1 - y), at(x, y), 4);
        }
    }
}

}  // namespace demo
