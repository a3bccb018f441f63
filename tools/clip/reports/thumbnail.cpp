#include "tools/clip/reports/thumbnail.h"

#include <algorithm>
#include <string>

#include "common/limits.h"
#include "tools/clip/media/movie.h"

namespace maker {

namespace {

constexpr int kLooks = 8;  // frames that are looked at

// Of the brightness of all pixels of the picture as it is seen over black.
double varianceOf(const Picture& picture) {
    const Picture seen = overBlack(picture);
    double sum = 0;
    double squares = 0;
    for (size_t i = 0; i < seen.rgba.size(); i += 4) {
        const double light =
            0.299 * seen.rgba[i] + 0.587 * seen.rgba[i + 1] + 0.114 * seen.rgba[i + 2];
        sum += light;
        squares += light * light;
    }
    const double count = static_cast<double>(seen.rgba.size()) / 4;
    return squares / count - sum / count * (sum / count);
}

}  // namespace

int tellingFrame(const ClipFrames& clip) {
    int best = 0;
    double most = -1;
    const int looks = std::min(kLooks, clip.count());
    for (int look = 0; look < looks; ++look) {
        const int frame = look * clip.count() / looks;
        const double variance = varianceOf(clip.picture(frame));
        if (variance > most) {
            most = variance;
            best = frame;
        }
    }
    return best;
}

std::vector<uint8_t> thumbnail(const ClipFrames& clip, int size) {
    const Picture picture = clip.picture(tellingFrame(clip));
    MovieShape shape;
    shape.width = picture.width;
    shape.height = picture.height;
    shape.alpha = clip.alpha();
    shape.fps = 1;
    if (size < kFrameWidth) {
        const int height = std::max(1, picture.height * size / picture.width);
        shape.filters =
            "scale=" + std::to_string(size) + ":" + std::to_string(height) + ":flags=area";
    }
    MovieWriter writer(kPng, shape);
    writer.add(picture);
    return writer.finish();
}

}  // namespace maker
