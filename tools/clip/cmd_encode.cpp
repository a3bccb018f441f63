// velmora-clip encode: a clip from a video, an animated image or an image sequence.

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "tools/clip/atomic_file.h"
#include "tools/clip/commands.h"
#include "tools/clip/encoder.h"
#include "tools/clip/errors.h"
#include "tools/clip/source.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

struct EncodeOptions {
    SourceOptions source;
    std::string output;
    std::string fit = "cover";
    std::string alpha = "auto";
    bool dither = false;
    int quality = kBestQuality;
};

// The line of progress, on a terminal only.
class Progress {
public:
    explicit Progress(int expected) : expected_(expected), shown_(isatty(STDERR_FILENO) != 0) {}
    ~Progress() {
        if (shown_) {
            std::fputs("\r\033[K", stderr);
        }
    }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void show(int frame) const {
        if (shown_ && expected_ > 0) {
            std::fprintf(stderr, "\rframe %d of %d", frame, expected_);
        } else if (shown_) {
            std::fprintf(stderr, "\rframe %d", frame);
        }
    }

private:
    int expected_;
    bool shown_;
};

Fit fitOf(const std::string& name) {
    return name == "contain" ? Fit::CONTAIN : name == "stretch" ? Fit::STRETCH : Fit::COVER;
}

void checkPaths(const EncodeOptions& options) {
    std::error_code ignored;
    if (fs::equivalent(options.source.path, options.output, ignored)) {
        throw ToolError("the output " + options.output + " is the input");
    }
    const fs::path folder = fs::path(options.output).parent_path();
    if (!folder.empty() && !fs::is_directory(folder, ignored)) {
        throw ToolError("cannot write " + options.output + ": no folder " + folder.string());
    }
    if (fs::path(options.output).extension() != ".m19") {
        std::fprintf(stderr, "velmora-clip: warning: only names that end in .m19 are played\n");
    }
}

void report(const EncodeOptions& options, const ClipStats& stats, size_t bytes) {
    const double raw = static_cast<double>(stats.frames) * static_cast<double>(kFrameBytes);
    std::printf("%s: %d frames, %d blocks, %d records, %zu bytes, %.1f %% of raw\n",
                options.output.c_str(), stats.frames, stats.blocks, stats.records, bytes,
                100 * static_cast<double>(bytes) / raw);
}

void encode(const EncodeOptions& options) {
    checkPaths(options);
    VideoSource source(options.source);
    ClipEncoder encoder(
        {.alpha = source.alpha(), .quality = options.quality, .dither = options.dither});
    std::vector<uint8_t> rgba;
    {
        const Progress progress(source.expectedFrames());
        while (source.next(rgba)) {
            encoder.add(rgba.data());
            progress.show(encoder.added());
        }
    }
    if (encoder.added() == 0) {
        throw ToolError("cannot read " + options.source.path + ": it ends before the start asked");
    }
    if (source.damaged() > 0) {
        std::fprintf(stderr, "velmora-clip: warning: %d damaged packets skipped\n",
                     source.damaged());
    }
    const std::vector<uint8_t> bytes = encoder.finish();
    writeWholeFile(options.output, bytes);
    report(options, encoder.stats(), bytes.size());
}

}  // namespace

void addEncode(CLI::App& app, int& status) {
    constexpr double kLongest = 1e6;  // seconds
    auto options = std::make_shared<EncodeOptions>();

    CLI::App* command = app.add_subcommand("encode", "make a clip from a video or animated image");
    command->add_option("input", options->source.path, "video, image or pattern like img%03d.png")
        ->required()
        ->option_text("INPUT REQUIRED");
    command->add_option("-o,--output", options->output, "the clip to write")
        ->required()
        ->option_text("CLIP REQUIRED");
    command->add_option("--start", options->source.start, "begin at this second of the input")
        ->check(CLI::Range(0.0, kLongest))
        ->option_text("SECONDS");
    command->add_option("--duration", options->source.duration, "take this many seconds")
        ->check(CLI::Range(1e-3, kLongest))
        ->option_text("SECONDS");
    command
        ->add_option("--fps", options->source.fps,
                     "frames a second of the clip (default 25.6, the stage's pace)")
        ->check(CLI::Range(0.01, 1000.0))
        ->option_text("RATE");
    command
        ->add_option("--fit", options->fit,
                     "fill the frame (default), show the whole picture, or distort")
        ->check(CLI::IsMember({"cover", "contain", "stretch"}))
        ->option_text("cover|contain|stretch");
    command
        ->add_option("--alpha", options->alpha,
                     "keep transparency where there is some (default), or none")
        ->check(CLI::IsMember({"auto", "none"}))
        ->option_text("auto|none");
    command
        ->add_option("--quality", options->quality,
                     "below 100 (default) small differences are given up")
        ->check(CLI::Range(0, kBestQuality))
        ->option_text("0-100");
    command->add_flag("--dither", options->dither, "dither colours to 16 bits");
    command->callback([options, &status] {
        options->source.fit = fitOf(options->fit);
        options->source.alpha = options->alpha == "auto";
        encode(*options);
        status = kExitOk;
    });
}

}  // namespace maker
