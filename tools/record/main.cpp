// velmora-record: Velmora, and a score of what it is played with.

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <filesystem>
#include <string>

#include "core/globals.h"
#include "program.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/base/velmora_folder.h"
#include "tools/record/recorder.h"
#include "tools/record/score_writer.h"
#include "tools/record/taps.h"

namespace {

using namespace maker;

enum Exit : int { EXIT_DONE = 0, EXIT_FAILED = 1, EXIT_USAGE = 2 };

// The stage's pace, a frame each 40 ms.
constexpr double kFramesAMinute = 25 * 60;

struct Options {
    std::string output;
    std::string folder;
};

std::string nameOfNow() {
    const time_t now = time(nullptr);
    char name[64];
    const size_t length = strftime(name, sizeof name, "%Y-%m-%d-%H%M%S.score", localtime(&now));
    return {name, length};
}

// The launcher gives the program the same.
void setSurroundings() {
    setenv("SDL12COMPAT_USE_GAME_CONTROLLERS", "1", 0);
    setenv("SDL_VIDEO_X11_WMCLASS", "velmora", 0);
}

int record(const Options& options) {
    const std::string given = options.output.empty() ? nameOfNow() : options.output;
    const std::string path =
        enterFolder(velmoraFolder(options.folder, "--folder"), {given}).front();
    std::signal(SIGPIPE, SIG_IGN);
    setSurroundings();
    ScoreWriter file(path);
    const auto seed = static_cast<uint32_t>(time(nullptr));
    Recorder recorder(seed, [&file](std::string_view lines) { file.write(lines); });
    tapInto(recorder);
    srand(seed);
    loadWaits = false;
    runProgram();
    const int frames = recorder.finish();
    if (frames == 0) {
        file.discard();
        return EXIT_FAILED;
    }
    const bool whole = file.finish();
    std::printf("%s: %d frames, %s minutes%s\n", readable(given).c_str(), frames,
                decimals(frames / kFramesAMinute, 1).c_str(),
                whole ? "" : ", not all of them in it");
    return whole ? EXIT_DONE : EXIT_FAILED;
}

int run(int argc, char** argv) {
    Options options;
    CLI::App app("Starts Velmora and takes down what is played, as a score.", "velmora-record");
    app.set_version_flag("--version", "velmora-record " VELMORA_VERSION);
    app.add_option("-o,--output", options.output,
                   "the score, which is not there yet (default: date and time, .score)")
        ->option_text("FILE");
    app.add_option("--folder", options.folder,
                   "Velmora's folder; else that of VELMORA_HOME, the current one when it has "
                   "videos/ and userdata/, or ~/Velmora")
        ->option_text("FOLDER");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? EXIT_DONE : EXIT_USAGE;
    }
    return record(options);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fflush(stdout);
        std::fprintf(stderr, "velmora-record: %s\n", lineOf(error));
        return EXIT_FAILED;
    }
}
