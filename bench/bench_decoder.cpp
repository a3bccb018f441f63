// How fast clips are drawn: every tile of a frame, a frame after the other, and a frame that is
// there already; by kind of tile, and beside FFmpeg's HAP and MJPEG decoders on one thread with the
// same pictures. Ratios are to a copy of a frame's pixels in the same run.
//
//   bench_decoder [CLIP.m19...]     the tables go to standard error
#define HWY_WANT_AVX3_DL  // see vector_targets.h

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "common/limits.h"
#include "ffmpeg_codec.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"
#include "synthetic_clip.h"
#include "tests/support/folder.h"
#include "tests/support/stage_objects.h"
#include "timing.h"
#include "vector_targets.h"

namespace {

namespace fs = std::filesystem;

constexpr int kSyntheticFrames = 64;
constexpr int kPlayedTiles = 20;  // of 100 that change from frame to frame
constexpr int kRounds = 40;

// Loads ./videos/<name>; null when it cannot be played.
std::unique_ptr<c_moxel> load(const std::string& name) {
    auto clip = std::make_unique<c_moxel>();
    clip->init("", name);
    int result = 1;
    while (result == 1) {
        result = clip->loopLoad(65000);
    }
    return result == 2 ? std::move(clip) : nullptr;
}

std::unique_ptr<c_moxel> loadSynthetic(TileKind kind, int changed, bool alpha) {
    const std::vector<uint8_t> bytes = syntheticClip(kind, kSyntheticFrames, changed, alpha);
    std::ofstream("videos/synthetic.m19", std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return load("synthetic.m19");
}

void draw(c_moxel& clip, int frame, bool everything, int mode = MODE_TOP) {
    if (everything) {
        clip.redrawCount = 1;
    }
    clip.renderMoxel19(1, frame, mode);
}

// Frames in the order in which they are drawn.
std::vector<int> forwardOrder(const c_moxel& clip) {
    std::vector<int> order(clip.frameCount);
    std::iota(order.begin(), order.end(), 0);
    return order;
}

std::vector<int> backwardOrder(const c_moxel& clip) {
    std::vector<int> order = forwardOrder(clip);
    std::reverse(order.begin(), order.end());
    return order;
}

std::vector<int> randomOrder(const c_moxel& clip) {
    std::vector<int> order = forwardOrder(clip);
    std::shuffle(order.begin(), order.end(), std::mt19937(7));
    return order;
}

TimedPass drawing(c_moxel& clip, const std::vector<int>& order, bool everything,
                  int mode = MODE_TOP) {
    return {[&clip, order, everything, mode](size_t i) { draw(clip, order[i], everything, mode); },
            order.size()};
}

TimedPass copying() {
    static std::vector<uint16_t> from(kFramePixels, 1);
    static std::vector<uint16_t> to(kFramePixels, 2);
    return {[](size_t) { memcpy(to.data(), from.data(), kFrameBytes); }, 20};
}

struct Times {
    double copy, full, backward, random, play, still;  // microseconds a frame
};

// `whole` is timed for full redraws, `played` for play and for standing still.
Times timeClips(c_moxel& whole, c_moxel& played, int mode) {
    const int standing = played.frameCount / 2 + 1;
    std::vector<TimedPass> passes;
    passes.push_back(copying());
    passes.push_back(drawing(whole, forwardOrder(whole), true, mode));
    passes.push_back(drawing(whole, backwardOrder(whole), true, mode));
    passes.push_back(drawing(whole, randomOrder(whole), true, mode));
    passes.push_back(drawing(played, forwardOrder(played), false, mode));
    passes.push_back(drawing(played, std::vector<int>(20, standing), false, mode));
    takeTurns(passes, kRounds);
    passes[5].best[0] = passes[5].best[1];  // the first drawing is no repetition
    return {passes[0].mean(), passes[1].mean(), passes[2].mean(),
            passes[3].mean(), passes[4].mean(), passes[5].mean()};
}

void printHead(const char* what) {
    fprintf(stderr, "\n| %-20s | %6s | %-15s | %6s | %6s | %6s | %-13s | %6s |\n", what, "copy",
            "full redraw", "back", "random", "full/s", "play", "still");
    fprintf(stderr, "|---|---|---|---|---|---|---|---|\n");
}

void printTimes(const std::string& name, const Times& t) {
    fprintf(stderr,
            "| %-20s | %6.1f | %6.1f (%5.2f)  | %6.1f | %6.1f | %6.0f | %6.1f %6.0f | %6.2f |\n",
            name.c_str(), t.copy, t.full, t.full / t.copy, t.backward, t.random, 1e6 / t.full,
            t.play, 1e6 / t.play, t.still);
}

void timeKinds() {
    printHead("3600 tiles");
    for (const bool alpha : {false, true}) {
        for (const KindName& each : kTileKinds) {
            if (alpha && each.kind != TileKind::kFlat && each.kind != TileKind::kFourRuns) {
                continue;
            }
            const auto whole = loadSynthetic(each.kind, 100, alpha);
            const auto played = loadSynthetic(each.kind, kPlayedTiles, alpha);
            printTimes(std::string(each.name) + (alpha ? ", alpha" : ""),
                       timeClips(*whole, *played, alpha ? MODE_KEY : MODE_TOP));
        }
    }
}

// Full redraws with each of the vectors that the processor offers, the widest last and from then
// on.
void timeVectors() {
    const std::vector<VectorTarget> targets = vectorTargets();
    fprintf(stderr, "\n| %-20s |", "full redraw");
    for (const VectorTarget& target : targets) {
        fprintf(stderr, " %-14s |", target.name.c_str());
    }
    fprintf(stderr, "\n|---|");
    for (size_t i = 0; i < targets.size(); ++i) {
        fprintf(stderr, "---|");
    }
    for (const KindName& each : kTileKinds) {
        const auto clip = loadSynthetic(each.kind, 100, false);
        std::vector<TimedPass> passes = {copying()};
        for (const VectorTarget& target : targets) {
            passes.push_back(drawing(*clip, forwardOrder(*clip), true));
            passes.back().work = [&target, draw = passes.back().work](size_t i) {
                useTarget(target);
                draw(i);
            };
        }
        takeTurns(passes, kRounds / 2);
        fprintf(stderr, "\n| %-20s |", each.name);
        for (size_t i = 1; i < passes.size(); ++i) {
            fprintf(stderr, " %6.1f (%5.2f) |", passes[i].mean(),
                    passes[i].mean() / passes[0].mean());
        }
    }
    fprintf(stderr, "\n");
}

std::vector<Picture> picturesOf(c_moxel& clip) {
    std::vector<Picture> pictures;
    for (int frame = 0; frame < std::min<int>(clip.frameCount, kSyntheticFrames); ++frame) {
        draw(clip, frame, true);
        const uint16_t* first = moxelTiles16 + kFramePixels;
        pictures.emplace_back(first, first + kFramePixels);
    }
    return pictures;
}

TimedPass decoding(FfmpegCodec& codec) {
    return {[&codec](size_t i) { codec.decode(i); }, codec.pictures()};
}

// The clip's own pictures through FFmpeg: its frames a second and those of a full redraw.
void compareWithFfmpeg(const std::string& name, c_moxel& clip) {
    const std::vector<Picture> pictures = picturesOf(clip);
    FfmpegCodec hap(AV_CODEC_ID_HAP, AV_PIX_FMT_RGBA, pictures);
    FfmpegCodec mjpeg(AV_CODEC_ID_MJPEG, AV_PIX_FMT_YUVJ420P, pictures);
    std::vector<int> order = forwardOrder(clip);
    order.resize(pictures.size());
    std::vector<TimedPass> passes;
    passes.push_back(drawing(clip, order, true));
    passes.push_back(drawing(clip, order, false));
    passes.push_back(decoding(hap));
    passes.push_back(decoding(mjpeg));
    takeTurns(passes, kRounds / 4);
    const double redraw = 1e6 / passes[0].mean();
    const double play = 1e6 / passes[1].mean();
    const double haps = 1e6 / passes[2].mean();
    const double mjpegs = 1e6 / passes[3].mean();
    fprintf(stderr, "| %-20s | %6.0f (%4.1f) | %6.0f (%4.1f) | %6.0f | %6.0f |\n", name.c_str(),
            redraw, redraw / haps, play, play / haps, haps, mjpegs);
}

void printCompareHead() {
    fprintf(stderr, "\nFrames a second, and as often as HAP's.\n\n");
    fprintf(stderr, "| %-20s | %-13s | %-13s | %6s | %6s |\n", "", "full redraw", "play", "HAP",
            "MJPEG");
    fprintf(stderr, "|---|---|---|---|---|\n");
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<fs::path> clips;
    for (int i = 1; i < argc; ++i) {
        clips.push_back(fs::absolute(argv[i]));
    }
    const TemporaryFolder folder;
    fs::create_directory("videos");
    const StageObjects stage(kHdmiWidth, kHdmiHeight);
    fprintf(
        stderr,
        "Microseconds a frame, best of %d rounds of each frame; play: %d of 100 tiles change.\n",
        kRounds, kPlayedTiles);
    timeKinds();
    timeVectors();
    std::vector<std::unique_ptr<c_moxel>> loaded;
    std::vector<std::string> names;
    for (const fs::path& path : clips) {
        fs::copy_file(path, "videos" / path.filename());
        loaded.push_back(load(path.filename()));
        names.push_back(path.stem());
        if (loaded.back() == nullptr) {
            fprintf(stderr, "%s cannot be played\n", path.c_str());
            return 1;
        }
    }
    printHead("clips");
    for (size_t i = 0; i < loaded.size(); ++i) {
        printTimes(names[i], timeClips(*loaded[i], *loaded[i], MODE_TOP));
    }
    printCompareHead();
    for (const KindName& each : kTileKinds) {
        compareWithFfmpeg(each.name, *loadSynthetic(each.kind, 100, false));
    }
    for (size_t i = 0; i < loaded.size(); ++i) {
        compareWithFfmpeg(names[i], *loaded[i]);
    }
    return 0;
}
