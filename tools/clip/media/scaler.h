#pragma once
// One decoded picture of any size and pixel format to a 640 x 360 RGBA frame.
//
// The picture is cut, scaled and turned as its plan says. Colours keep the range and the
// matrix that the picture names. Scaling weighs colours by their alpha, so that what a transparent
// pixel hides never bleeds into its neighbours. What cannot be converted is thrown as ToolError.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

extern "C" {
#include <libswscale/swscale.h>
}

#include "tools/clip/media/decoder.h"
#include "tools/clip/media/look.h"

namespace maker {

// How a source picture of any size and pixel shape fills the 640 x 360 frame.
//
// Sizes are those of the picture as displayed, after turning it upright. The plan first cuts the
// source, then scales what is left and places it.
enum class Fit {
    COVER,    // fill the frame, cut what is too much
    CONTAIN,  // show the whole source, bars on two sides
    STRETCH,  // fill the frame, ignore the source's proportions
    WHOLE,    // the largest whole multiple of the source that fits, or a whole part of it, centred
};

struct FitPlan {
    int cutX;  // source pixels cut from the left, and as many from the right
    int cutY;
    int width;  // of the scaled picture
    int height;
    int left;  // its place in the frame
    int top;
};

// pixelAspect is the width of a source pixel divided by its height; WHOLE takes pixels as square.
FitPlan planFit(int width, int height, double pixelAspect, Fit fit);

struct FreeScaler {
    void operator()(SwsContext* context) const { sws_freeContext(context); }
};

struct ScalerOptions {
    std::string path;  // of the source, for errors
    Fit fit = Fit::COVER;
    Look look = {};
    bool alpha = false;    // keep alpha and make bars transparent; else everything lies over black
    bool nearest = false;  // every pixel of the frame is a pixel of the source, unmixed
};

class Scaler {
public:
    explicit Scaler(const ScalerOptions& options) : options_(options) {}

    // Writes 640 x 360 x 4 bytes. The picture is cut in place. `turns` are clockwise quarter turns.
    void render(AVFrame& picture, int turns, std::vector<uint8_t>& rgba);

    // Whether any pixel of the picture is not opaque.
    bool seesThrough(const AVFrame& picture);

private:
    // Rows are padded: FFmpeg's scalers may write a little past the end of one.
    struct Image {
        int width = 0;
        int height = 0;
        size_t pitch = 0;  // bytes from row to row
        std::vector<uint8_t> rgba;

        void resize(int newWidth, int newHeight);
        const uint8_t* at(int x, int y) const {
            return rgba.data() + pitch * static_cast<size_t>(y) + static_cast<size_t>(x) * 4;
        }
    };
    using ContextPtr = std::unique_ptr<SwsContext, FreeScaler>;

    void convert(const AVFrame& picture, int width, int height, Image& to);
    void scaleImage(const Image& from, int width, int height, Image& to);
    void scaleSeeThrough(const AVFrame& picture, int width, int height);
    void scaleNearest(const AVFrame& picture, int width, int height);
    void prepare(ContextPtr& context, int width, int height, AVPixelFormat format,
                 const Image& to) const;
    FitPlan planAndCut(AVFrame& picture, int turns) const;
    [[noreturn]] void fail(const char* what) const;
    void place(const Image& image, int turns, const FitPlan& plan, std::vector<uint8_t>& rgba);

    ScalerOptions options_;
    ContextPtr toRgba_;
    ContextPtr toSize_;
    Image image_;
    Image scaled_;
};

bool formatHasAlpha(const AVFrame& picture);

}  // namespace maker
