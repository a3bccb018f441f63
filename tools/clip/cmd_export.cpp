// velmora-clip export: a clip's frames as pictures, or the clip as a film for other programs.

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/clip/commands.h"
#include "tools/clip/media/movie.h"
#include "tools/clip/media/source.h"
#include "tools/clip/reports/clip_frames.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

constexpr int kMostRepeats = 1000;

struct ExportOptions {
    std::string clip;
    std::string output;
    std::string frames;
    double fps = kStageFps;
    int repeat = 1;
};

// The name for one of several pictures; the same for each where the name has no place for a number.
std::string numbered(const std::string& pattern, int number) {
    char name[4096];
    return av_get_frame_filename(name, sizeof(name), pattern.c_str(), number) == 0 ? name : pattern;
}

bool takesNumbers(const std::string& pattern) {
    return numbered(pattern, 0) != numbered(pattern, 1);
}

void exportPictures(const ExportOptions& options, const ClipFrames& clip,
                    const std::vector<int>& frames) {
    if (frames.size() > 1 && !takesNumbers(options.output)) {
        throw ToolError("the name " + options.output +
                        " has no place for the frame's number; try a name such as frame-%03d.png");
    }
    if (options.repeat > 1) {
        throw ToolError("single pictures cannot be repeated");
    }
    for (const int frame : frames) {
        stopIfInterrupted();
        writeWholeFile(numbered(options.output, frame),
                       pictureFile(kPng, clip.picture(frame), clip.alpha()));
    }
    std::printf("%s: %s of %d x %d\n", options.output.c_str(),
                counted(frames.size(), "picture").c_str(), kFrameWidth, clip.height());
}

void exportMovie(const ExportOptions& options, const MovieKind& kind, const ClipFrames& clip,
                 const std::vector<int>& frames) {
    MovieWriter writer(kind, kFrameWidth, clip.height(), clip.alpha(), options.fps);
    for (int round = 0; round < options.repeat; ++round) {
        for (const int frame : frames) {
            const Picture picture = clip.picture(frame);
            writer.add(clip.alpha() && !kind.keepsAlpha ? overBlack(picture) : picture);
        }
    }
    const std::vector<uint8_t> bytes = writer.finish();
    writeWholeFile(options.output, bytes);
    std::printf("%s: %zu frames of %d x %d, %zu bytes\n", options.output.c_str(),
                frames.size() * static_cast<size_t>(options.repeat), kFrameWidth, clip.height(),
                bytes.size());
}

void exportClip(const ExportOptions& options) {
    const MovieKind* kind = movieKindOf(options.output);
    const bool pictures = fs::path(options.output).extension() == kPng.ending;
    if (kind == nullptr && !pictures) {
        throw ToolError("cannot tell what " + options.output + " shall be: give it the ending " +
                        kPng.ending + ", " + movieEndings());
    }
    checkOutput(pictures ? numbered(options.output, 0) : options.output);
    const ClipFrames clip = openClip(options.clip);
    const bool first = pictures && options.frames.empty() && !takesNumbers(options.output);
    const std::vector<int> frames = framesOf(first ? "0" : options.frames, clip.count());
    if (pictures) {
        exportPictures(options, clip, frames);
    } else {
        exportMovie(options, *kind, clip, frames);
    }
}

}  // namespace

void addExport(CLI::App& app, int& status) {
    auto options = std::make_shared<ExportOptions>();
    CLI::App* command = app.add_subcommand("export", "turn a clip into pictures or a film");
    command->add_option("clip", options->clip, "the clip")
        ->required()
        ->option_text("CLIP REQUIRED");
    command
        ->add_option("-o,--output", options->output,
                     "what to write; for all pictures a name such as frame-%03d.png, while "
                     "frame.png is the first")
        ->required()
        ->option_text("FILE REQUIRED");
    command->add_option("--frames", options->frames, "these alone, counted from 0 (default: all)")
        ->check(CLI::Validator(
            [](const std::string& text) {
                return isFrameList(text) ? "" : "not of the form 0,5,10-20: " + text;
            },
            ""))
        ->option_text("0,5,10-20");
    command
        ->add_option("--fps", options->fps,
                     "frames a second of a film (default 25.6, the stage's pace)")
        ->check(CLI::Range(0.1, 1000.0))
        ->option_text("RATE");
    command->add_option("--repeat", options->repeat, "the film so many times over")
        ->check(CLI::Range(1, kMostRepeats))
        ->option_text("TIMES");
    command->footer(
        "The ending of the output tells what it will be:\n"
        "  .png   pictures, exact, with alpha\n"
        "  .apng  an animated picture, exact, with alpha\n"
        "  .gif   an animated picture of 256 colours a frame; alpha is on or off\n"
        "  .mkv   a film, exact (FFV1), with alpha\n"
        "  .mp4   a film for any player (H.264); what is transparent lies over black");
    command->callback([options, &status] {
        exportClip(*options);
        status = kExitOk;
    });
}

}  // namespace maker
