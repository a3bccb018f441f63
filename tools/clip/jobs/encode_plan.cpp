#include "tools/clip/jobs/encode_job.h"

#include <algorithm>
#include <utility>

#include "clip/format.h"
#include "tools/base/errors.h"
#include "tools/clip/jobs/beats.h"

namespace maker {

namespace {

struct Survey {
    int frames = 0;
    double seconds = 0;
    bool seesThrough = false;
    std::vector<SmallPicture> pictures;
};

// What a film of so many beats may lack at its end, where its last picture stays.
constexpr int kMostHeld = 2;

struct SurveyWishes {
    bool alpha = false;
    bool length = false;
    bool pictures = false;

    bool any() const { return alpha || length || pictures; }
};

SourceOptions sourceOptions(const std::string& input, const EncodeSettings& settings) {
    SourceOptions source;
    source.path = input;
    source.start = settings.start;
    source.duration = settings.duration;
    source.fps = settings.fps;
    source.pictureFps = settings.beats > 0 ? kStageFps : settings.fps;
    source.hold = settings.beats > 0 && settings.loop.kind != LoopKind::BEST ? kMostHeld : 0;
    source.fit = settings.fit;
    source.nearest = settings.nearest;
    source.alpha = settings.alpha != AlphaFrom::NONE;
    source.threads = settings.workers;
    source.look = settings.look;
    if (settings.reverse) {
        std::swap(source.look.fadeIn, source.look.fadeOut);
    }
    if (settings.longInput == LongInput::CUT) {
        source.limit = framesTaken(settings.loop);
    }
    return source;
}

using ProgressEvent = std::function<void(const ProgressStep&)>;

// The input may be gone through once more, for what is wished later.
Survey surveyOf(EncodePlan& plan, SurveyWishes wishes, SurveyWishes later,
                const EncodeSettings& settings, const ProgressEvent& progress) {
    VideoSource source(plan.source);
    wishes.alpha = wishes.alpha && source.canSeeThrough();
    later.alpha = later.alpha && source.canSeeThrough();
    Survey survey;
    ProgressStep step{.expected = source.expectedFrames(), .stage = Stage::LOOKING};
    const double all = plan.passes + 1 + (later.any() ? 1 : 0) + encodingPasses(settings);
    const int before = plan.passes;
    plan.passes += wishes.any() ? 1 : 0;
    while (wishes.any() && source.step()) {
        step.frames = ++survey.frames;
        step.part = step.expected > 0
                        ? (before + std::min(1.0 * step.frames / step.expected, 1.0)) / all
                        : 0;
        if (progress) {
            progress(step);
        }
        if (wishes.alpha && source.seesThrough()) {
            survey.seesThrough = true;
            wishes.alpha = false;
        }
        if (wishes.pictures) {
            std::vector<uint8_t> rgba = source.picture();
            applyKey(settings, rgba);
            survey.pictures.push_back(smallPicture(rgba));
        }
    }
    survey.seconds = source.seconds();
    return survey;
}

// All of the input in as many frames as a clip can take.
void retime(EncodePlan& plan, const EncodeSettings& settings, SurveyWishes later,
            const ProgressEvent& progress) {
    const LoopSettings& loop = settings.loop;
    const int most = loop.kind == LoopKind::BEST ? clip::kMaxFrames : framesTaken(loop);
    const Survey survey = surveyOf(plan, {.length = true}, later, settings, progress);
    if (survey.frames > most) {
        plan.source.fps = most / survey.seconds;
        plan.speed = settings.fps / plan.source.fps;
        plan.source.limit = most;
    }
}

}  // namespace

void applyKey(const EncodeSettings& settings, std::vector<uint8_t>& rgba) {
    if (settings.alpha == AlphaFrom::BRIGHTNESS) {
        keyByBrightness(rgba);
    } else if (settings.alpha == AlphaFrom::COLOUR) {
        keyByColour(settings.key, rgba);
    }
}

ClipSettings clipSettings(const EncodeSettings& settings, bool alpha) {
    return {
        .alpha = alpha,
        .quality = settings.quality,
        .content = settings.content,
        .dither = settings.dither,
        .noise = settings.denoise,
        .recordBudget = settings.records,
        .byteBudget = settings.bytes,
        .workers = settings.workers,
    };
}

double encodingPasses(const EncodeSettings& settings) {
    constexpr double kFittingPasses = 4;
    return 1 + (settings.records > 0 || settings.bytes > 0 ? kFittingPasses : 0);
}

EncodePlan planEncode(const std::string& input, const EncodeSettings& settings,
                      const ProgressEvent& progress) {
    EncodePlan plan;
    plan.source = sourceOptions(input, settings);
    const bool best = settings.loop.kind == LoopKind::BEST;
    const SurveyWishes wishes{
        .alpha = settings.alpha == AlphaFrom::SOURCE,
        .length = settings.loop.kind == LoopKind::CROSSFADE || plan.source.look.fadeOut > 0,
        .pictures = best,
    };
    if (settings.longInput == LongInput::FIT) {
        retime(plan, settings, wishes, progress);
    }
    if (!wishes.any()) {
        return plan;
    }
    const Survey survey = surveyOf(plan, wishes, {}, settings, progress);
    if (wishes.alpha) {
        plan.source.alpha = survey.seesThrough;
    }
    if (wishes.length || wishes.pictures) {
        plan.frames = survey.frames;
        plan.source.length = survey.frames / plan.source.fps;
    }
    if (best && survey.frames < settings.frames) {
        throw ToolError(tooFewBeats(settings, input, survey.frames));
    }
    if (best) {
        plan.seam = findSeam(survey.pictures, settings.frames);
    }
    return plan;
}

}  // namespace maker
