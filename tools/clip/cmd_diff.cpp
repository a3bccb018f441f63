// velmora-clip diff: how near a clip comes to its source.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "common/limits.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/clip/commands.h"
#include "tools/clip/jobs/clip_origin.h"
#include "tools/clip/jobs/feed.h"
#include "tools/clip/reports/compare.h"
#include "tools/clip/reports/side_by_side.h"

namespace maker {

namespace {

struct DiffOptions {
    std::string clip;
    std::string source;  // empty: what the clip was made of
    EncodeArguments arguments;
    bool json = false;
    bool brief = false;
    std::string beside;  // a file for the pictures; "" for none
};

// Fills in the source; the frames are those that the clip was encoded from.
Feed openSource(DiffOptions& options, bool alpha) {
    EncodeSettings settings;
    int part = 1;
    if (options.source.empty()) {
        const ClipOrigin origin = checkedOrigin(options.clip);
        settings = settingsOf(origin.options, options.arguments);
        part = std::max(origin.part, 1);
        options.source = origin.source;
    } else {
        settings = settingsOf(options.arguments);
    }
    if (!alpha && settings.alpha == AlphaFrom::SOURCE) {
        settings.alpha = AlphaFrom::NONE;  // such a clip shows its source over black
    }
    return openFeed(options.source, settings, false, part);
}

Comparison compare(DiffOptions& options) {
    Feed shown = openFeed(options.clip, {}, true);
    Feed source = openSource(options, shown.alpha);
    if (shown.height != source.height) {
        throw ToolError("cannot compare " + std::to_string(shown.height) + " lines with " +
                        std::to_string(source.height));
    }
    Comparison comparison;
    comparison.alpha = shown.alpha;
    const auto beside =
        options.beside.empty() ? nullptr : std::make_unique<SideBySide>(options.beside);
    std::vector<uint8_t> a;
    std::vector<uint8_t> b;
    bool more = shown.next(a);
    while (more && source.next(b)) {
        stopIfInterrupted();
        comparison.frames.push_back({colourError(a, b), alphaError(a, b), ssim(a, b, kFrameWidth)});
        if (beside) {
            beside->add(b, a);
        }
        more = shown.next(a);
    }
    if (source.sampling) {
        comparison.sampling = source.sampling();
    }
    if (comparison.frames.empty()) {
        throw ToolError("there is no frame to compare");
    }
    if (beside) {
        beside->finish();
    }
    if (more) {
        std::fprintf(stderr, "velmora-clip: warning: %s ends after %zu frames, %s goes on\n",
                     options.source.c_str(), comparison.frames.size(), options.clip.c_str());
    }
    return comparison;
}

void printText(const Comparison& comparison, bool brief) {
    if (!brief) {
        std::puts("frame       PSNR    SSIM");
        for (size_t i = 0; i < comparison.frames.size(); ++i) {
            const FrameScore& frame = comparison.frames[i];
            std::printf("%5zu %10s  %.4f\n", i, decibels(psnrOf(frame.colourError), 2).c_str(),
                        frame.ssim);
        }
    }
    const int worst = comparison.worstFrame();
    std::printf(
        "%zu frames: PSNR %s, SSIM %.4f, worst frame %d with %s\n", comparison.frames.size(),
        decibels(comparison.psnr(), 2).c_str(), comparison.meanSsim(), worst,
        decibels(psnrOf(comparison.frames[static_cast<size_t>(worst)].colourError), 2).c_str());
    if (comparison.alpha) {
        std::printf("alpha: PSNR %s\n", decibels(comparison.alphaPsnr(), 2).c_str());
    }
    if (comparison.sampling) {
        std::printf("pictures of the source: %d, %d of them left out, %d shown more than once\n",
                    comparison.sampling->pictures, comparison.sampling->leftOut,
                    comparison.sampling->repeated);
    }
}

using Json = nlohmann::ordered_json;

// null stands for no error at all.
Json psnrJson(double psnr) {
    return std::isinf(psnr) ? Json() : Json(psnr);
}

void printJson(const Comparison& comparison) {
    Json frames = Json::array();
    for (const FrameScore& frame : comparison.frames) {
        frames.push_back({{"psnr", psnrJson(psnrOf(frame.colourError))}, {"ssim", frame.ssim}});
        if (comparison.alpha) {
            frames.back()["alphaPsnr"] = psnrJson(psnrOf(frame.alphaError));
        }
    }
    Json json{{"frames", comparison.frames.size()},
              {"psnr", psnrJson(comparison.psnr())},
              {"ssim", comparison.meanSsim()},
              {"worstFrame", comparison.worstFrame()}};
    if (comparison.alpha) {
        json["alphaPsnr"] = psnrJson(comparison.alphaPsnr());
    }
    if (comparison.sampling) {
        json["source"] = {{"pictures", comparison.sampling->pictures},
                          {"leftOut", comparison.sampling->leftOut},
                          {"repeated", comparison.sampling->repeated}};
    }
    json["byFrame"] = std::move(frames);
    std::puts(json.dump(2).c_str());
}

}  // namespace

void addDiff(CLI::App& app, int& status) {
    auto options = std::make_shared<DiffOptions>();
    CLI::App* command = app.add_subcommand("diff", "tell how near a clip comes to its source");
    command->add_option("clip", options->clip, "the clip, or a video to be judged as one")
        ->required()
        ->option_text("CLIP REQUIRED");
    command
        ->add_option("source", options->source,
                     "video, image or clip to compare with; unless given, what the clip was made "
                     "of, with the options that it was made with")
        ->option_text("SOURCE");
    addEncodeOptions(*command, options->arguments);
    command->add_flag("--brief", options->brief, "only the line for the whole clip");
    command->add_flag("--json", options->json, "as a JSON object");
    addCompare(*command, options->beside);
    command->footer(
        "PSNR is that of the colours on stage, red, green and blue from 0 to 255, against the\n"
        "source at 640 x 360 before rounding to 16 bits. SSIM is that of the luma, 1 at best.\n"
        "With a SOURCE give the options that the clip was encoded with.");
    command->callback([options, &status] {
        const Comparison comparison = compare(*options);
        if (options->json) {
            printJson(comparison);
        } else {
            printText(comparison, options->brief);
        }
        status = kExitOk;
    });
}

}  // namespace maker
