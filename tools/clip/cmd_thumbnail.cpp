// velmora-clip thumbnail: one small picture of a clip, as file managers show it.

#include <memory>
#include <string>

#include "common/limits.h"
#include "tools/base/atomic_file.h"
#include "tools/clip/commands.h"
#include "tools/clip/reports/thumbnail.h"

namespace maker {

namespace {

struct ThumbnailOptions {
    std::string clip;
    std::string output;
    int size = 256;
};

}  // namespace

void addThumbnail(CLI::App& app, int& status) {
    auto options = std::make_shared<ThumbnailOptions>();
    CLI::App* command =
        app.add_subcommand("thumbnail", "a small picture of a clip, as file managers show it");
    command->add_option("clip", options->clip, "the clip")
        ->required()
        ->option_text("CLIP REQUIRED");
    command->add_option("-o,--output", options->output, "the PNG file, whatever its name ends in")
        ->required()
        ->option_text("FILE REQUIRED");
    command->add_option("--size", options->size, "pixels, 8 to 640, of its width (default 256)")
        ->check(CLI::Range(8, kFrameWidth))
        ->option_text("N");
    command->callback([options, &status] {
        checkOutput(options->output);
        writeWholeFile(options->output, thumbnail(openClip(options->clip), options->size));
        status = kExitOk;
    });
}

}  // namespace maker
