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
    if (settings.longInput == LongInput::CUT) {
        source.limit = framesTaken(settings.loop);
    }
    return source;
}

Survey surveyOf(const SourceOptions& options, SurveyWishes wishes, const EncodeSettings& settings) {
    VideoSource source(options);
    wishes.alpha = wishes.alpha && source.canSeeThrough();
    Survey survey;
    while ((wishes.alpha || wishes.length || wishes.pictures) && source.step()) {
        ++survey.frames;
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
void retime(EncodePlan& plan, const EncodeSettings& settings) {
    const LoopSettings& loop = settings.loop;
    const int most = loop.kind == LoopKind::BEST ? clip::kMaxFrames : framesTaken(loop);
    const Survey survey = surveyOf(plan.source, {.length = true}, settings);
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

EncodePlan planEncode(const std::string& input, const EncodeSettings& settings) {
    EncodePlan plan;
    plan.source = sourceOptions(input, settings);
    if (settings.longInput == LongInput::FIT) {
        retime(plan, settings);
    }
    const bool best = settings.loop.kind == LoopKind::BEST;
    const SurveyWishes wishes{
        .alpha = settings.alpha == AlphaFrom::SOURCE,
        .length = settings.loop.kind == LoopKind::CROSSFADE,
        .pictures = best,
    };
    if (!wishes.alpha && !wishes.length && !wishes.pictures) {
        return plan;
    }
    const Survey survey = surveyOf(plan.source, wishes, settings);
    if (wishes.alpha) {
        plan.source.alpha = survey.seesThrough;
    }
    if (wishes.length || wishes.pictures) {
        plan.frames = survey.frames;
    }
    if (best) {
        plan.seam = findSeam(survey.pictures);
    }
    return plan;
}

}  // namespace maker
