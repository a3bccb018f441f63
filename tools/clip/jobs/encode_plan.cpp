#include "tools/clip/jobs/encode_job.h"

#include "clip/format.h"

namespace maker {

namespace {

struct Survey {
    int frames = 0;
    double seconds = 0;
    bool seesThrough = false;
    std::vector<SmallPicture> pictures;
};

struct SurveyWishes {
    bool alpha = false;
    bool length = false;
    bool pictures = false;
};

SourceOptions sourceOptions(const std::string& input, const EncodeSettings& settings) {
    SourceOptions source;
    source.path = input;
    source.start = settings.start;
    source.duration = settings.duration;
    source.fps = settings.fps;
    source.pictureFps = settings.fps;
    source.fit = settings.fit;
    source.nearest = settings.nearest;
    source.alpha = settings.alpha != AlphaFrom::NONE;
    source.threads = settings.workers;
    source.look = settings.look;
    if (settings.longInput == LongInput::CUT) {
        source.limit = framesTaken(settings.loop);
    }
    return source;
}

using ProgressEvent = std::function<void(const ProgressStep&)>;

Survey surveyOf(EncodePlan& plan, SurveyWishes wishes, const EncodeSettings& settings,
                const ProgressEvent& progress) {
    VideoSource source(plan.source);
    wishes.alpha = wishes.alpha && source.canSeeThrough();
    Survey survey;
    ProgressStep step{0, source.expectedFrames(), plan.passes, plan.passes + 2, true};
    plan.passes += wishes.alpha || wishes.length || wishes.pictures ? 1 : 0;
    while ((wishes.alpha || wishes.length || wishes.pictures) && source.step()) {
        step.frames = ++survey.frames;
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
void retime(EncodePlan& plan, const EncodeSettings& settings, const ProgressEvent& progress) {
    const LoopSettings& loop = settings.loop;
    const int most = loop.kind == LoopKind::BEST ? clip::kMaxFrames : framesTaken(loop);
    const Survey survey = surveyOf(plan, {.length = true}, settings, progress);
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

EncodePlan planEncode(const std::string& input, const EncodeSettings& settings,
                      const ProgressEvent& progress) {
    EncodePlan plan;
    plan.source = sourceOptions(input, settings);
    if (settings.longInput == LongInput::FIT) {
        retime(plan, settings, progress);
    }
    const bool best = settings.loop.kind == LoopKind::BEST;
    const SurveyWishes wishes{
        .alpha = settings.alpha == AlphaFrom::SOURCE,
        .length = settings.loop.kind == LoopKind::CROSSFADE || settings.look.fadeOut > 0,
        .pictures = best,
    };
    if (!wishes.alpha && !wishes.length && !wishes.pictures) {
        return plan;
    }
    const Survey survey = surveyOf(plan, wishes, settings, progress);
    if (wishes.alpha) {
        plan.source.alpha = survey.seesThrough;
    }
    if (wishes.length || wishes.pictures) {
        plan.frames = survey.frames;
        plan.source.length = survey.frames / plan.source.fps;
    }
    if (best) {
        plan.seam = findSeam(survey.pictures);
    }
    return plan;
}

}  // namespace maker
