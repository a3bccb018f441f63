#pragma once
// One decoded picture of any size and pixel format to a 640 x 360 RGBA frame.
//
// The picture is cut, scaled and turned as its plan says (fit.h). Colours keep the range and the
// matrix that the picture names. Scaling weighs colours by their alpha, so that what a transparent
// pixel hides never bleeds into its neighbours. What cannot be converted is thrown as ToolError.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tools/clip/media/decoder.h"
#include "tools/clip/media/fit.h"

extern "C" {
#include <libswscale/swscale.h>
}

namespace maker {

struct FreeScaler {
    void operator()(SwsContext* context) const { sws_freeContext(context); }
};

struct ScalerOptions {
    std::string path;  // of the source, for errors
    Fit fit = Fit::COVER;
    bool alpha = false;    // keep alpha and make bars transparent; else everything lies over black
    bool nearest = false;  // every pixel of the frame is a pixel of the source, unmixed
};

class Scaler {
public:
    explicit Scaler(const ScalerOptions& options) : options_(options) {}

    // Writes 640 x 360 x 4 bytes. The picture is cut in place. `turns` are clockwise quarter turns.
    void render(AVFrame& picture, double pixelAspect, int turns, std::vector<uint8_t>& rgba);

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
