#include "tools/render/film.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <vector>

#include "common/limits.h"
#include "files/pending_file.h"
#include "px/operations.h"
#include "px/widen.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/progress.h"
#include "tools/clip/media/movie.h"

namespace maker {

namespace {

// Pictures of one size, with the colours of a display of 24 bits. One of another size, which comes
// when the window changes, stands in the middle of it.
class FilmCanvas {
public:
    void take(const StagePicture& picture);
    int width() const { return width_; }
    int height() const { return height_; }
    const std::vector<uint32_t>& pixels() const { return pixels_; }

private:
    int width_ = 0;
    int height_ = 0;
    int lastWidth_ = 0;
    int lastHeight_ = 0;
    std::vector<uint32_t> pixels_;  // red, green and blue in the lower 24 bits
};

void FilmCanvas::take(const StagePicture& picture) {
    if (pixels_.empty()) {
        width_ = picture.width;
        height_ = picture.height;
        pixels_.resize(static_cast<size_t>(width_) * static_cast<size_t>(height_));
    }
    if (picture.width != lastWidth_ || picture.height != lastHeight_) {
        std::ranges::fill(pixels_, 0U);
    }
    lastWidth_ = picture.width;
    lastHeight_ = picture.height;
    const int columns = std::min(width_, picture.width);
    const int rows = std::min(height_, picture.height);
    for (int y = 0; y < rows; ++y) {
        const int from = (picture.height - rows) / 2 + y;
        const int to = (height_ - rows) / 2 + y;
        px::operations().widenChanged(
            pixels_.data() + static_cast<ptrdiff_t>(to) * width_ + (width_ - columns) / 2,
            picture.pixels + static_cast<ptrdiff_t>(from) * picture.pitch +
                (picture.width - columns) / 2,
            columns);
    }
}

// From the canvas to the film: the mix doubled exactly, a window as large as it fits.
std::string filtersOf(const FilmCanvas& canvas, const FilmSettings& settings) {
    const std::string size = std::to_string(settings.width) + ":" + std::to_string(settings.height);
    if (canvas.width() == settings.width && canvas.height() == settings.height) {
        return "";
    }
    if (canvas.width() * 2 == settings.width && canvas.height() * 2 == settings.height) {
        return "scale=" + size + ":flags=neighbor";
    }
    return "scale=" + size + ":flags=area:force_original_aspect_ratio=decrease,pad=" + size +
           ":-1:-1";
}

[[noreturn]] void fail(const std::string& path) {
    throw ToolError("cannot write " + path);
}

class Film {
public:
    explicit Film(const FilmSettings& settings) : settings_(settings) {
        if (!file_.createBeside(settings.output)) {
            fail(settings.output);
        }
    }

    void add(const StagePicture& picture);
    void finish();

private:
    const FilmSettings& settings_;
    files::PendingFile file_;
    FilmCanvas canvas_;
    std::optional<MovieWriter> movie_;
};

void Film::add(const StagePicture& picture) {
    canvas_.take(picture);
    if (!movie_) {
        MovieShape shape;
        shape.width = canvas_.width();
        shape.height = canvas_.height();
        shape.fps = kFilmFps;
        shape.form = AV_PIX_FMT_BGR0;
        shape.filters = filtersOf(canvas_, settings_);
        shape.file = file_.descriptor();
        if (!settings_.sound.empty()) {
            shape.sound = {settings_.sound, settings_.soundStart};
        }
        movie_.emplace(*movieKindOf(settings_.output), shape);
    }
    movie_->add(canvas_.pixels().data());
}

void Film::finish() {
    movie_->finish();
    if (!file_.finish() || !file_.commit(settings_.output)) {
        fail(settings_.output);
    }
}

void require(const Score& score, int frame) {
    if (frame >= score.frames) {
        throw ToolError("the score has " + std::to_string(score.frames) + " frames: there is no " +
                        std::to_string(frame));
    }
}

}  // namespace

int renderFilm(const Score& score, const FilmSettings& settings) {
    require(score, settings.from);
    checkOutput(settings.output);
    const int to = std::min(settings.to, score.frames);
    Film film(settings);
    Progress progress(1);
    int frames = 0;
    play(score, {settings.folder, settings.interface, [&](int frame, const StagePicture& picture) {
                     if (frame >= settings.from) {
                         film.add(picture);
                         ++frames;
                     }
                     progress.update(0, {.frames = frame + 1,
                                         .expected = to,
                                         .part = (frame + 1.0) / to,
                                         .stage = Stage::ENCODING});
                     return frame + 1 < to;
                 }});
    if (frames == 0) {
        throw ToolError("the score ends before frame " + std::to_string(settings.from));
    }
    film.finish();
    progress.finish(0);
    return frames;
}

void renderStill(const Score& score, const FilmSettings& settings, int frame) {
    require(score, frame);
    checkOutput(settings.output);
    FilmCanvas canvas;
    bool came = false;
    play(score, {settings.folder, settings.interface, [&](int at, const StagePicture& picture) {
                     came = at == frame;
                     if (came) {
                         canvas.take(picture);
                     }
                     return !came;
                 }});
    if (!came) {
        throw ToolError("the score ends before frame " + std::to_string(frame));
    }
    Picture still(canvas.width(), canvas.height());
    for (size_t i = 0; i < canvas.pixels().size(); ++i) {
        const uint32_t pixel = canvas.pixels()[i];
        for (size_t part = 0; part < 3; ++part) {
            still.rgba[i * 4 + part] = static_cast<uint8_t>(pixel >> (16 - 8 * part));
        }
    }
    writeWholeFile(settings.output, pictureFile(kPng, still, false));
}

}  // namespace maker
