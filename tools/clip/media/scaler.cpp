#include "tools/clip/media/scaler.h"

#include <algorithm>
#include <cmath>
#include <cstring>

extern "C" {
#include <libavutil/pixdesc.h>
}

#include "common/limits.h"
#include "tools/base/errors.h"

namespace maker {

namespace {

constexpr int kChannels = 4;
constexpr int kOpaque = 255;
constexpr size_t kRowAlign = 64;  // bytes
constexpr int kHdLines = 720;     // from here on pictures that name no matrix use the HD one

size_t bytesOf(int width, int height) {
    return static_cast<size_t>(width) * static_cast<size_t>(height) * kChannels;
}

void multiplyByAlpha(std::vector<uint8_t>& rgba) {
    for (size_t i = 0; i < rgba.size(); i += kChannels) {
        for (size_t c = 0; c < 3; ++c) {
            rgba[i + c] = static_cast<uint8_t>((rgba[i + c] * rgba[i + 3] + kOpaque / 2) / kOpaque);
        }
    }
}

void divideByAlpha(std::vector<uint8_t>& rgba) {
    for (size_t i = 0; i < rgba.size(); i += kChannels) {
        const int alpha = rgba[i + 3];
        for (size_t c = 0; c < 3 && alpha > 0; ++c) {
            rgba[i + c] = static_cast<uint8_t>(
                std::min((rgba[i + c] * kOpaque + alpha / 2) / alpha, kOpaque));
        }
    }
}

bool fullRange(const AVFrame& picture) {
    switch (picture.format) {
        case AV_PIX_FMT_YUVJ420P:
        case AV_PIX_FMT_YUVJ422P:
        case AV_PIX_FMT_YUVJ444P:
        case AV_PIX_FMT_YUVJ440P:
        case AV_PIX_FMT_YUVJ411P:
            return true;
        default:
            return picture.color_range == AVCOL_RANGE_JPEG;
    }
}

// A picture that names no matrix has that of its size, which it must name before it is cut.
void nameMatrix(AVFrame& picture) {
    if (picture.colorspace == AVCOL_SPC_UNSPECIFIED && picture.height >= kHdLines) {
        picture.colorspace = AVCOL_SPC_BT709;
    }
}

struct Pixel {
    int x;
    int y;
};

// The pixel that comes to (x, y) when an image of this size is turned clockwise.
Pixel turnedFrom(int x, int y, int turns, int width, int height) {
    switch (turns) {
        case 1:
            return {y, height - 1 - x};
        case 2:
            return {width - 1 - x, height - 1 - y};
        case 3:
            return {width - 1 - y, x};
        default:
            return {x, y};
    }
}

int rounded(double value) {
    return static_cast<int>(std::lround(value));
}

// How far the pixels of a side that is cut are to be cut at its beginning and its end. The middle
// of what is kept is as near to `middle` as can be.
struct Cut {
    size_t before;
    size_t after;

    Cut(int all, int kept, double middle)
        : before(static_cast<size_t>(std::clamp(rounded(middle - kept / 2.0), 0, all - kept))),
          after(static_cast<size_t>(all - kept) - before) {}
};

FitPlan planCover(int width, int height, double pixelAspect) {
    FitPlan plan{0, 0, kFrameWidth, kFrameHeight, 0, 0};
    // The size that has the frame's proportions, in source pixels.
    const double wide = height * static_cast<double>(kFrameWidth) / kFrameHeight / pixelAspect;
    const double high = width * pixelAspect * kFrameHeight / kFrameWidth;
    if (wide < width) {
        plan.cutX = std::min(rounded((width - wide) / 2), (width - 1) / 2);
    } else {
        plan.cutY = std::clamp(rounded((height - high) / 2), 0, (height - 1) / 2);
    }
    return plan;
}

FitPlan centred(int width, int height) {
    return {0, 0, width, height, (kFrameWidth - width) / 2, (kFrameHeight - height) / 2};
}

FitPlan planContain(int width, int height, double pixelAspect) {
    const double shown = width * pixelAspect;
    const double scale = std::min(kFrameWidth / shown, static_cast<double>(kFrameHeight) / height);
    return centred(std::clamp(rounded(shown * scale), 1, kFrameWidth),
                   std::clamp(rounded(height * scale), 1, kFrameHeight));
}

FitPlan planWhole(int width, int height) {
    const int times = std::min(kFrameWidth / width, kFrameHeight / height);
    if (times > 0) {
        return centred(width * times, height * times);
    }
    const int part = std::max((width + kFrameWidth - 1) / kFrameWidth,
                              (height + kFrameHeight - 1) / kFrameHeight);
    return centred(std::max(width / part, 1), std::max(height / part, 1));
}

}  // namespace

bool formatHasAlpha(const AVFrame& picture) {
    const AVPixFmtDescriptor* format =
        av_pix_fmt_desc_get(static_cast<AVPixelFormat>(picture.format));
    return format != nullptr && (format->flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
}

void Scaler::Image::resize(int newWidth, int newHeight) {
    width = newWidth;
    height = newHeight;
    pitch = (bytesOf(width, 1) + kRowAlign - 1) / kRowAlign * kRowAlign;
    rgba.resize(pitch * static_cast<size_t>(height) + kRowAlign);
}

void Scaler::fail(const char* what) const {
    throw ToolError("cannot read " + options_.path + ": pictures of this kind cannot be " + what);
}

void Scaler::prepare(ContextPtr& context, int width, int height, AVPixelFormat format,
                     const Image& to) const {
    const bool smaller = to.width < width || to.height < height;
    const int flags = (smaller ? SWS_AREA : SWS_BICUBIC) | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT;
    context.reset(sws_getCachedContext(context.release(), width, height, format, to.width,
                                       to.height, AV_PIX_FMT_RGBA, flags, nullptr, nullptr,
                                       nullptr));
    if (!context) {
        fail("converted");
    }
}

void Scaler::convert(const AVFrame& picture, int width, int height, Image& to) {
    to.resize(width, height);
    prepare(toRgba_, picture.width, picture.height, static_cast<AVPixelFormat>(picture.format), to);
    constexpr int kPlain = 1 << 16;  // contrast and saturation unchanged
    const int* matrix = sws_getCoefficients(picture.colorspace);
    sws_setColorspaceDetails(toRgba_.get(), matrix, fullRange(picture) ? 1 : 0, matrix, 1, 0,
                             kPlain, kPlain);
    uint8_t* const planes[] = {to.rgba.data(), nullptr, nullptr, nullptr};
    const int pitches[] = {static_cast<int>(to.pitch), 0, 0, 0};
    if (sws_scale(toRgba_.get(), picture.data, picture.linesize, 0, picture.height, planes,
                  pitches) < 0) {
        fail("converted");
    }
}

void Scaler::scaleImage(const Image& from, int width, int height, Image& to) {
    to.resize(width, height);
    prepare(toSize_, from.width, from.height, AV_PIX_FMT_RGBA, to);
    const uint8_t* const sources[] = {from.rgba.data(), nullptr, nullptr, nullptr};
    const int sourcePitches[] = {static_cast<int>(from.pitch), 0, 0, 0};
    uint8_t* const planes[] = {to.rgba.data(), nullptr, nullptr, nullptr};
    const int pitches[] = {static_cast<int>(to.pitch), 0, 0, 0};
    if (sws_scale(toSize_.get(), sources, sourcePitches, 0, from.height, planes, pitches) < 0) {
        fail("converted");
    }
}

// Colours are weighed by their alpha on the way.
void Scaler::scaleSeeThrough(const AVFrame& picture, int width, int height) {
    const bool sameSize = picture.width == width && picture.height == height;
    convert(picture, picture.width, picture.height, sameSize ? scaled_ : image_);
    if (!sameSize) {
        multiplyByAlpha(image_.rgba);
        scaleImage(image_, width, height, scaled_);
    } else if (!options_.alpha) {
        multiplyByAlpha(scaled_.rgba);
    }
    if (!sameSize && options_.alpha) {
        divideByAlpha(scaled_.rgba);
    }
}

// Each pixel takes the source pixel under its middle.
void Scaler::scaleNearest(const AVFrame& picture, int width, int height) {
    convert(picture, picture.width, picture.height, image_);
    if (!options_.alpha && formatHasAlpha(picture)) {
        multiplyByAlpha(image_.rgba);
    }
    scaled_.resize(width, height);
    for (int y = 0; y < height; ++y) {
        const int fromY = (2 * y + 1) * image_.height / (2 * height);
        uint8_t* row = scaled_.rgba.data() + scaled_.pitch * static_cast<size_t>(y);
        for (int x = 0; x < width; ++x, row += kChannels) {
            std::memcpy(row, image_.at((2 * x + 1) * image_.width / (2 * width), fromY), kChannels);
        }
    }
}

void Scaler::place(const Image& image, int turns, const FitPlan& plan, std::vector<uint8_t>& rgba) {
    const uint8_t bar[kChannels] = {0, 0, 0, static_cast<uint8_t>(options_.alpha ? 0 : kOpaque)};
    rgba.resize(bytesOf(kFrameWidth, kFrameHeight));
    for (int y = 0; y < kFrameHeight; ++y) {
        uint8_t* row = rgba.data() + bytesOf(kFrameWidth, y);
        for (int x = 0; x < kFrameWidth; ++x, row += kChannels) {
            const int inX = x - plan.left;
            const int inY = y - plan.top;
            const bool inside = inX >= 0 && inX < plan.width && inY >= 0 && inY < plan.height;
            const Pixel from = turnedFrom(inX, inY, turns, image.width, image.height);
            std::memcpy(row, inside ? image.at(from.x, from.y) : bar, kChannels);
            row[3] = options_.alpha ? row[3] : uint8_t{kOpaque};
        }
    }
}

// A zoom takes a part of the picture, of which the fit may cut off more.
FitPlan Scaler::planAndCut(AVFrame& picture, int turns) const {
    const bool sideways = turns % 2 != 0;
    const int width = sideways ? picture.height : picture.width;
    const int height = sideways ? picture.width : picture.height;
    const AVRational named = picture.sample_aspect_ratio;
    const double aspect = named.num > 0 && named.den > 0 ? av_q2d(named) : 1.0;
    const int inWidth = std::max(rounded(width / options_.look.zoom), 1);
    const int inHeight = std::max(rounded(height / options_.look.zoom), 1);
    const FitPlan plan = planFit(inWidth, inHeight, sideways ? 1 / aspect : aspect, options_.fit);
    const Look& look = options_.look;
    const double acrossAt = look.across * (look.inPixels ? 1 : width);
    const double downAt = look.down * (look.inPixels ? 1 : height);
    const Cut across(width, inWidth - 2 * plan.cutX, acrossAt);
    const Cut down(height, inHeight - 2 * plan.cutY, downAt);
    // Clockwise from the left, as shown; a turn moves each side on by one.
    const size_t shown[] = {across.before, down.before, across.after, down.after};
    const auto cutAt = [&shown, turns](int side) { return shown[(side + turns) % 4]; };
    nameMatrix(picture);
    picture.crop_left = cutAt(0);
    picture.crop_top = cutAt(1);
    picture.crop_right = cutAt(2);
    picture.crop_bottom = cutAt(3);
    if (av_frame_apply_cropping(&picture, AV_FRAME_CROP_UNALIGNED) < 0) {
        fail("cut");
    }
    return plan;
}

void Scaler::render(AVFrame& picture, int turns, std::vector<uint8_t>& rgba) {
    const bool sideways = turns % 2 != 0;
    const FitPlan plan = planAndCut(picture, turns);
    const int width = sideways ? plan.height : plan.width;
    const int height = sideways ? plan.width : plan.height;
    if (options_.nearest) {
        scaleNearest(picture, width, height);
    } else if (formatHasAlpha(picture)) {
        scaleSeeThrough(picture, width, height);
    } else {
        convert(picture, width, height, scaled_);
    }
    place(scaled_, turns, plan, rgba);
}

bool Scaler::seesThrough(const AVFrame& picture) {
    if (!formatHasAlpha(picture)) {
        return false;
    }
    convert(picture, picture.width, picture.height, image_);
    for (int y = 0; y < image_.height; ++y) {
        for (int x = 0; x < image_.width; ++x) {
            if (image_.at(x, y)[3] != kOpaque) {
                return true;
            }
        }
    }
    return false;
}

FitPlan planFit(int width, int height, double pixelAspect, Fit fit) {
    switch (fit) {
        case Fit::COVER:
            return planCover(width, height, pixelAspect);
        case Fit::CONTAIN:
            return planContain(width, height, pixelAspect);
        case Fit::WHOLE:
            return planWhole(width, height);
        default:
            return {0, 0, kFrameWidth, kFrameHeight, 0, 0};
    }
}

}  // namespace maker
