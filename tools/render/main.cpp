// velmora-render: plays a score without a display and makes a film of it.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "common/limits.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/base/velmora_folder.h"
#include "tools/clip/media/movie.h"
#include "tools/render/film.h"
#include "tools/render/played_clips.h"
#include "tools/render/sums.h"

namespace {

using namespace maker;
namespace fs = std::filesystem;

enum Exit : int { EXIT_DONE = 0, EXIT_FAILED = 1, EXIT_USAGE = 2, EXIT_STOPPED = 130 };

struct Options {
    std::string score;
    std::string output;
    std::string folder;
    std::string size = "1280x720";
    std::string other;
    std::string sound;
    double soundStart = 0;
    int still = -1;
    int from = 0;
    int to = kMostScoreFrames;
    bool interface = false;
    bool sums = false;
};

Score scoreIn(const std::string& path) {
    const std::vector<uint8_t> bytes = readWholeFile(path);
    try {
        return parseScore({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    } catch (const ToolError& error) {
        throw ToolError(path + ": " + error.what());
    }
}

FilmSettings settingsOf(const Options& options) {
    FilmSettings settings;
    settings.folder = velmoraFolder(options.folder, "--folder");
    settings.output = options.output;
    const bool large = options.size == "1280x720";
    settings.width = large ? kHdmiWidth : kFrameWidth;
    settings.height = large ? kHdmiHeight : kFrameHeight;
    settings.interface = options.interface;
    // The program runs in another folder.
    settings.sound = options.sound.empty() ? "" : fs::absolute(options.sound).string();
    settings.soundStart = options.soundStart;
    settings.from = options.from;
    settings.to = options.to;
    return settings;
}

// The program's lines go elsewhere while it plays, so these come behind.
void printSums(const Score& score, const FilmSettings& settings) {
    std::vector<uint64_t> sums;
    play(score, {settings.folder, settings.interface, [&](int frame, const StagePicture& picture) {
                     sums.push_back(sumOf(picture));
                     return frame + 1 < settings.to;
                 }});
    for (size_t frame = static_cast<size_t>(settings.from); frame < sums.size(); ++frame) {
        std::printf("%zu %016llx\n", frame, static_cast<unsigned long long>(sums[frame]));
    }
}

int compare(const Options& options, const FilmSettings& settings) {
    const std::optional<int> frame = firstDifference(scoreIn(options.score), scoreIn(options.other),
                                                     {settings.folder, settings.interface});
    if (!frame) {
        std::puts("the same pictures");
        return EXIT_DONE;
    }
    std::printf("frame %d differs\n", *frame);
    return EXIT_FAILED;
}

void film(const Score& score, const FilmSettings& settings) {
    const MovieKind* const kind = movieKindOf(settings.output);
    const std::string ending = kind != nullptr ? kind->ending : "";
    if (ending != ".mp4" && ending != ".mkv") {
        throw ToolError("cannot tell what " + settings.output +
                        " shall be: give it the ending .mp4 (H.264) or .mkv (FFV1)");
    }
    const int frames = renderFilm(score, settings);
    std::printf("%s: %d frames, %s s\n", settings.output.c_str(), frames,
                decimals(frames / kFilmFps, 1).c_str());
}

int render(const Options& options) {
    const FilmSettings settings = settingsOf(options);
    if (!options.other.empty()) {
        return compare(options, settings);
    }
    const Score score = scoreIn(options.score);
    for (const std::string& sentence : otherClips(score, settings.folder)) {
        std::fprintf(stderr, "velmora-render: %s\n", sentence.c_str());
    }
    if (options.sums) {
        printSums(score, settings);
    } else if (options.still >= 0) {
        renderStill(score, settings, options.still);
        std::printf("%s: frame %d\n", options.output.c_str(), options.still);
    } else {
        film(score, settings);
    }
    return EXIT_DONE;
}

void addFilmOptions(CLI::App& app, Options& options) {
    app.add_option("score", options.score, "what was played, by velmora-record or by hand")
        ->required()
        ->option_text("SCORE REQUIRED");
    app.add_option("-o,--output", options.output,
                   "the film, .mp4 (H.264) or .mkv (FFV1, exact), or the picture, .png")
        ->option_text("FILE");
    app.add_option("--size", options.size, "of the film (default: 1280x720)")
        ->check(CLI::IsMember({"1280x720", "640x360"}))
        ->option_text("1280x720|640x360");
    app.add_flag("--interface", options.interface,
                 "the whole window with menus and panel, instead of the mix alone");
    app.add_option("--from", options.from, "the first frame of the film (default: 0)")
        ->check(CLI::Range(0, kMostScoreFrames))
        ->option_text("FRAME");
    app.add_option("--to", options.to, "the frame behind the last (default: all)")
        ->check(CLI::Range(1, kMostScoreFrames))
        ->option_text("FRAME");
    app.add_option("--sound", options.sound, "a file whose sound is laid under the film")
        ->option_text("FILE");
    app.add_option("--sound-start", options.soundStart,
                   "leave out so many seconds of it; negative: let it begin so much later")
        ->check(CLI::Range(-86400.0, 86400.0))
        ->option_text("SECONDS");
    app.add_option("--folder", options.folder,
                   "Velmora's folder; else that of VELMORA_HOME, the current one when it has "
                   "videos/ and userdata/, or ~/Velmora")
        ->option_text("FOLDER");
}

// What takes the place of a film.
void addOtherOptions(CLI::App& app, Options& options) {
    CLI::Option* const output = app.get_option("--output");
    CLI::Option* const still =
        app.add_option("--still", options.still, "one picture instead of the film, counted from 0")
            ->check(CLI::Range(0, kMostScoreFrames))
            ->option_text("FRAME");
    CLI::Option* const diff =
        app.add_option("--diff", options.other,
                       "the first frame that this score shows differently; the exit status is 1 "
                       "when there is one")
            ->option_text("SCORE2");
    CLI::Option* const sums =
        app.add_flag("--sums", options.sums, "a checksum of each picture, and no film");
    sums->option_text(" ");
    still->needs(output)->excludes(diff)->excludes(sums);
    diff->excludes(output)->excludes(sums);
    sums->excludes(output);
    app.callback([output, diff, sums] {
        if (output->count() + diff->count() + sums->count() == 0) {
            throw CLI::RequiredError("-o FILE, --diff or --sums");
        }
    });
}

int run(int argc, char** argv) {
    Options options;
    CLI::App app("Plays a score without a display and makes a film of it.", "velmora-render");
    app.set_version_flag("--version", "velmora-render " VELMORA_VERSION);
    addFilmOptions(app, options);
    addOtherOptions(app, options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? EXIT_DONE : EXIT_USAGE;
    }
    return render(options);
}

}  // namespace

int main(int argc, char** argv) {
    catchInterrupts();
    try {
        return run(argc, argv);
    } catch (const Interrupted&) {
        return EXIT_STOPPED;
    } catch (const std::exception& error) {
        std::fflush(stdout);
        std::fprintf(stderr, "velmora-render: %s\n", lineOf(error));
        return EXIT_FAILED;
    }
}
