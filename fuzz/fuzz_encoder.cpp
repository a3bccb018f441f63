// Any pictures through the encoder: what it writes passes the validator, loads, and at quality 100
// without a budget shows exactly the pictures that went in.
//
// Input: settings, then for each frame a list of rectangles and how they are filled, drawn over the
// frame before.
#include <cstring>
#include <vector>

#include "clip/validate.h"
#include "fuzz/input.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"
#include "tests/support/stage_objects.h"
#include "tools/clip/encoder/encoder.h"
#include "tools/clip/reports/clip_frames.h"

namespace {

using fuzz::require;
using maker::Frame;

constexpr int kReady = 2;
constexpr int kBudget = 65000;
constexpr int kMostRows = 2;  // of tiles
constexpr int kMostFrames = 20;
constexpr int kMostFramesInBudget = 3;  // they are coded many times
constexpr int kMostFills = 6;

struct Job {
    maker::ClipSettings settings;
    std::vector<Frame> frames;

    bool exact() const {
        return settings.quality == maker::kBestQuality && !settings.dither &&
               settings.recordBudget == 0 && settings.byteBudget == 0;
    }
};

struct Stage {
    Stage() { fuzz::silenceOutput(); }

    StageObjects objects;
    fuzz::MemoryFile file;
};

// Where the level is 0 the colour is black, as it will be shown.
void setPixel(Frame& frame, size_t at, uint16_t colour, uint8_t level) {
    frame.pixels[at] = colour;
    if (!frame.alpha.empty()) {
        frame.alpha[at] = level;
        frame.pixels[at] = level == 0 ? uint16_t{0} : colour;
    }
}

// One rectangle: flat, noise, stripes of a few colours along rows or columns, or a gradient.
void fill(fuzz::Input& input, Frame& frame) {
    const int x = 2 * input.byte();
    const int y = input.below(frame.height);
    const int width = std::min(1 + input.byte(), kFrameWidth - x);
    const int height = std::min(1 + input.below(32), frame.height - y);
    const int kind = input.below(5);
    const unsigned colour = input.word();
    const unsigned step = input.word();
    const unsigned level = input.byte();
    const int stripe = 1 + static_cast<int>(level / 16);
    for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column) {
            const int along = kind == 2 ? column : row;
            const unsigned i = kind == 0 ? 0
                               : kind == 1
                                   ? static_cast<unsigned>(row * width + column) * 40503 >> 3
                               : kind == 4 ? static_cast<unsigned>(row + column)
                                           : static_cast<unsigned>(along / stripe);
            const auto at = static_cast<size_t>((y + row) * kFrameWidth + x + column);
            setPixel(frame, at, static_cast<uint16_t>(colour + step * i),
                     static_cast<uint8_t>((level + (kind == 0 ? 0 : i)) % 16));
        }
    }
}

Job readJob(fuzz::Input& input) {
    Job job;
    maker::ClipSettings& settings = job.settings;
    settings.height = clip::kTileSize * (1 + input.below(kMostRows));
    const int flags = input.byte();
    settings.alpha = (flags & 1) != 0;
    settings.dither = (flags & 2) != 0;
    settings.workers = 1;
    settings.content = static_cast<maker::Content>(input.below(3));
    settings.quality =
        (flags & 8) != 0 ? input.below(maker::kBestQuality + 1) : maker::kBestQuality;
    settings.recordBudget = (flags & 0x30) == 0x10 ? 1 + input.word() % 2000 : 0;
    settings.byteBudget = (flags & 0x30) == 0x20 ? 1 + input.word() : 0;
    const bool budget = settings.recordBudget + settings.byteBudget > 0;
    const int frames = 1 + input.below(budget ? kMostFramesInBudget : kMostFrames);
    Frame frame{settings.height, {}, {}};
    frame.pixels.resize(static_cast<size_t>(kFrameWidth * settings.height));
    frame.alpha.resize(settings.alpha ? frame.pixels.size() : 0);
    for (int i = 0; i < frames; ++i) {
        for (int fills = input.below(kMostFills); fills > 0 && !input.empty(); --fills) {
            fill(input, frame);
        }
        job.frames.push_back(frame);
    }
    return job;
}

void checkFrame(c_moxel& clip, const Job& job, int number) {
    clip.renderMoxel19(1, number, MODE_KEY);
    if (!job.exact()) {
        return;
    }
    const Frame& frame = job.frames[static_cast<size_t>(number)];
    require(std::equal(frame.pixels.begin(), frame.pixels.end(), moxelTiles16 + clip.pixelCount),
            "the picture comes back");
    require(std::equal(frame.alpha.begin(), frame.alpha.end(), moxelAlpha16),
            "its alpha comes back");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Stage stage;
    fuzz::Input input(data, size);
    const Job job = readJob(input);
    maker::ClipEncoder encoder(job.settings);
    std::vector<uint8_t> rgba;
    for (const Frame& frame : job.frames) {
        maker::toRgba(frame, rgba);
        encoder.add(rgba.data());
    }
    const std::vector<uint8_t> bytes = encoder.finish();
    const clip::Verdict verdict = clip::validate(bytes);
    require(verdict.ok, verdict.message.c_str());

    stage.file.write(bytes.data(), bytes.size());
    c_moxel& clip = moxel[0];
    clip.init("", "made.m19");
    clip.path = stage.file.path();
    int result = 1;
    while (result == 1) {
        result = clip.loopLoad(kBudget);
    }
    require(result == kReady, "what the encoder writes loads");
    const int frames = clip.frameCount;
    require(frames == static_cast<int>(job.frames.size()), "no frame is lost");
    for (int frame = 0; frame < frames; ++frame) {
        checkFrame(clip, job, frame);
    }
    for (int frame = frames; frame-- > 0;) {
        checkFrame(clip, job, frame);
    }
    for (int jump = 0; jump < frames; ++jump) {
        checkFrame(clip, job, jump * 7 % frames);
    }
    clip.killRAM();
    return 0;
}
