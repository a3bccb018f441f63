// velmora-clip sheet: contact sheets of clips.

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
#include "tools/clip/reports/clip_frames.h"
#include "tools/clip/reports/sheet.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

struct SheetOptions {
    std::vector<std::string> inputs;
    std::string picture;
    std::string page;
};

using Clips = std::vector<NamedClip>;

// The folder's name, or the clip's when there is only one.
std::string titleOf(const std::vector<std::string>& inputs) {
    const fs::path path = fs::absolute(inputs[0]).lexically_normal();
    const std::string name = (path.has_filename() ? path : path.parent_path()).filename().string();
    return inputs.size() == 1 ? name : std::to_string(inputs.size()) + " clips";
}

std::vector<uint8_t> pictureOf(const std::string& title, const Clips& clips) {
    if (clips.size() > kMostSheetClips) {
        throw ToolError("a picture has room for " + std::to_string(kMostSheetClips) +
                        " clips, not for " + std::to_string(clips.size()) +
                        "; a page, --html, takes any number");
    }
    std::vector<SheetClip> read;
    for (const auto& [name, path] : clips) {
        read.push_back(readSheetClip(name, path, kSheetMoments, kSheetShrink));
    }
    return pictureFile(kPng, drawSheet(title, read), false);
}

std::string pageOf(const std::string& title, const Clips& clips) {
    SheetPage page;
    for (const auto& [name, path] : clips) {
        page.add(readSheetClip(name, path, kPageMoments, kPageShrink));
    }
    return page.finish(title);
}

void report(const std::string& path, size_t clips, size_t bytes) {
    std::printf("%s: %s, %zu bytes\n", path.c_str(), counted(clips, "clip").c_str(), bytes);
}

void makeSheets(const SheetOptions& options) {
    if (!options.picture.empty() && fs::path(options.picture).extension() != kPng.ending) {
        throw ToolError("a sheet is a PNG picture: give " + options.picture + " the ending " +
                        kPng.ending);
    }
    for (const std::string& output : {options.picture, options.page}) {
        if (!output.empty()) {
            checkOutput(output);
        }
    }
    Clips clips;
    for (const std::string& input : options.inputs) {
        const Clips found = clipsOf(input);
        clips.insert(clips.end(), found.begin(), found.end());
    }
    const std::string title = titleOf(options.inputs);
    if (!options.picture.empty()) {
        const std::vector<uint8_t> file = pictureOf(title, clips);
        writeWholeFile(options.picture, file);
        report(options.picture, clips.size(), file.size());
    }
    if (!options.page.empty()) {
        const std::string page = pageOf(title, clips);
        writeWholeFile(options.page, {reinterpret_cast<const uint8_t*>(page.data()), page.size()});
        report(options.page, clips.size(), page.size());
    }
}

}  // namespace

void addSheet(CLI::App& app, int& status) {
    auto options = std::make_shared<SheetOptions>();
    CLI::App* command = app.add_subcommand("sheet", "make a contact sheet of clips");
    command->add_option("inputs", options->inputs, "clips, or a folder of them")
        ->required()
        ->option_text("CLIP|FOLDER... REQUIRED");
    command->add_option("-o,--output", options->picture, "the sheet as a PNG picture")
        ->option_text("FILE.png");
    command
        ->add_option("--html", options->page,
                     "the sheet as a web page with moving pictures, in one file")
        ->option_text("FILE.html");
    command->footer("At least one of --output and --html is needed.");
    command->callback([options, &status] {
        if (options->picture.empty() && options->page.empty()) {
            throw CLI::RequiredError("--output or --html");
        }
        makeSheets(*options);
        status = kExitOk;
    });
}

}  // namespace maker
