#include "tools/clip/jobs/encode_job.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <optional>
#include <span>
#include <utility>

#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/clip/jobs/beats.h"
#include "tools/clip/jobs/clip_origin.h"
#include "tools/clip/jobs/looped_source.h"
#include "tools/clip/reports/describe.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

constexpr double kNoiseTold = 0.5;  // levels of 255: less changes nothing that anybody sees

using Pixels = std::vector<uint8_t>;

fs::path numbered(const fs::path& path, size_t number) {
    fs::path name = path.stem();
    name += "-";
    name += std::to_string(number);
    name += path.extension();
    return path.parent_path() / name;
}

// The numbered parts that are there, from this one on.
std::vector<fs::path> partsFrom(const fs::path& output, size_t number) {
    std::vector<fs::path> parts;
    std::error_code ignored;
    for (fs::path part = numbered(output, number); fs::exists(part, ignored);
         part = numbered(output, ++number)) {
        parts.push_back(part);
    }
    return parts;
}

void addNote(std::string& notes, const std::string& note) {
    notes += notes.empty() ? "" : "; ";
    notes += note;
}

class Job {
public:
    Job(const std::string& input, const fs::path& output, const EncodeSettings& settings,
        const EncodeEvents& events)
        : input_(input),
          output_(output),
          settings_(settings),
          events_(events),
          origin_(originOf(input, settings.given, output)),
          plan_(planEncode(input, settings, events.progress)),
          frames_(plan_, settings) {}

    EncodeReport run();

private:
    void encodePart();
    void feed(ClipEncoder& encoder, const Pixels& rgba);
    void tell(Stage stage, int ofPart, double searched);
    std::string noteOf(int given) const;
    void checkBeats(int frames) const;
    void checkBudget(const ClipStats& stats, size_t bytes) const;
    void checkEnd();
    void commit();
    void noteLeftOver(size_t number);

    const std::string& input_;
    const fs::path& output_;
    const EncodeSettings& settings_;
    const EncodeEvents& events_;
    ClipOrigin origin_;
    EncodePlan plan_;
    LoopedSource frames_;
    int given_ = 0;     // frames to the encoders of all parts
    int expected_ = 0;  // of them; 0 when nobody knows
    std::optional<FolderInMaking> folder_;
    std::deque<PendingFile> files_;
    EncodeReport report_;
};

void Job::feed(ClipEncoder& encoder, const Pixels& rgba) {
    encoder.add(rgba.data());
    if (events_.picture) {
        events_.picture(rgba);
    }
    ++given_;
    tell(Stage::ENCODING, encoder.added(), 0);
}

// The frames of the part under way are only gathered where a budget has to be searched for them.
void Job::tell(Stage stage, int ofPart, double searched) {
    if (!events_.progress) {
        return;
    }
    const double passes = encodingPasses(settings_);
    const double toDo = ofPart * (passes - 1) / passes * (1 - searched);
    const int all = stage == Stage::FITTING && frames_.atEnd() ? given_ : expected_;
    const double done = all > 0 ? std::min((given_ - toDo) / all, 1.0) : 0;
    const double part = all > 0 ? (plan_.passes + passes * done) / (plan_.passes + passes) : 0;
    events_.progress({given_, expected_, part, stage});
}

std::string Job::noteOf(int given) const {
    std::string note = frames_.source().note();
    if (plan_.seam) {
        const double fps = plan_.source.fps;
        const double from = settings_.start + plan_.seam->begin / fps;
        const double to = settings_.start + plan_.seam->end / fps;
        addNote(note, "loop from " + decimals(from, 2) + " to " + decimals(to, 2) +
                          " seconds, seam difference " +
                          decimals(std::sqrt(plan_.seam->difference), 1));
    }
    if (settings_.loop.kind == LoopKind::CROSSFADE) {
        addNote(note, std::to_string(frames_.taken() - given) + " frames blended");
    }
    if (plan_.speed > 1) {
        addNote(note, decimals(plan_.speed, 2) + " times as fast");
    }
    if (settings_.reverse) {
        addNote(note, "backwards");
    }
    if (settings_.beats > 0) {
        addNote(note, beatsText(settings_));
    }
    const bool cut = settings_.longInput == LongInput::CUT && settings_.duration <= 0;
    if (cut && !plan_.seam && frames_.source().goesOn()) {
        addNote(note, "the input goes on");
    }
    return note;
}

void Job::encodePart() {
    const int takenBefore = frames_.taken();
    ClipEncoder encoder(clipSettings(settings_, plan_.source.alpha));
    for (Pixels rgba; frames_.next(rgba);) {
        feed(encoder, rgba);
    }
    checkBeats(encoder.added());
    const auto searching = [&](double done) { tell(Stage::FITTING, encoder.added(), done); };
    const std::vector<uint8_t> bytes = encoder.finish(searching);
    const ClipStats& stats = encoder.stats();
    checkBudget(stats, bytes.size());
    Description facts;
    describe(bytes, facts);
    if (!folder_) {
        folder_.emplace(folderOf(output_));
    }
    files_.emplace_back(output_, bytes);
    report_.clips.push_back({output_, stats.frames, bytes.size(), stats.psnr(), stats.records,
                             facts.cost.memory, facts.cost.seconds, ""});
    std::string& note = report_.clips.back().note;
    note = noteOf(stats.frames + takenBefore);
    if (stats.noise >= kNoiseTold) {
        addNote(note, "noise of " + decimals(stats.noise, 1) + " left out");
    }
    if (stats.limitedBlocks > 0) {
        addNote(note, "less than quality " + std::to_string(settings_.quality) +
                          ", which would take too long to load");
    }
}

void Job::checkBeats(int frames) const {
    if (frames < settings_.frames) {
        throw ToolError(tooFewBeats(settings_, input_, frames - plan_.source.hold));
    }
}

// What was made last took as little as can be.
void Job::checkBudget(const ClipStats& stats, size_t bytes) const {
    if (stats.withinBudget) {
        return;
    }
    std::string least;
    if (settings_.bytes > 0 && static_cast<int64_t>(bytes) > settings_.bytes) {
        least += " --size " + std::to_string(bytes);
    }
    if (settings_.records > 0 && stats.records > settings_.records) {
        least += " --records " + std::to_string(stats.records);
    }
    throw ToolError(input_ + " does not fit: the least for " +
                    counted(static_cast<size_t>(stats.frames), "frame") + " is" + least +
                    "; fewer frames (--duration) take less");
}

void Job::checkEnd() {
    report_.damaged = frames_.source().damaged();
    report_.cutOff = frames_.source().cutOff();
    if (!report_.cutOff.empty() && !settings_.partial) {
        throw ToolError("cannot read all of " + input_ + ": " + report_.cutOff +
                        " (--partial takes what is there)");
    }
}

void Job::commit() {
    std::error_code ignored;
    const bool split = files_.size() > 1;
    for (size_t i = 0; i < files_.size(); ++i) {
        fs::path& path = report_.clips[i].path;
        path = split ? numbered(output_, i + 1) : output_;
        if (fs::equivalent(input_, path, ignored)) {
            throw ToolError("the output " + path.string() + " is the input");
        }
    }
    std::deque<PendingFile> origins;
    for (size_t i = 0; i < files_.size(); ++i) {
        origin_.part = split ? static_cast<int>(i) + 1 : 0;
        const std::string text = originText(origin_, report_.clips[i]);
        origins.emplace_back(originPath(report_.clips[i].path),
                             std::span(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
    }
    if (events_.beforeCommit) {
        events_.beforeCommit(report_);
    }
    // The first part comes last, so that it stands for all of them.
    for (size_t i = files_.size(); i-- > 0;) {
        origins[i].commit(originPath(report_.clips[i].path));
        files_[i].commit(report_.clips[i].path);
    }
    folder_->keep();
    if (settings_.longInput == LongInput::SPLIT) {
        noteLeftOver(split ? files_.size() + 1 : 1);
    }
}

// They may be the user's own, so they are named and stay.
void Job::noteLeftOver(size_t number) {
    const std::vector<fs::path> left = partsFrom(output_, number);
    if (!left.empty()) {
        const std::string last = left.size() > 1 ? " to " + left.back().filename().string() : "";
        addNote(report_.clips.back().note, left[0].filename().string() + last +
                                               (left.size() > 1 ? " are" : " is") +
                                               " from an earlier, longer run");
    }
}

EncodeReport Job::run() {
    expected_ = frames_.expectedFrames();
    if (!frames_.nextClip()) {
        throw ToolError("cannot read " + input_ + ": it ends before the start asked");
    }
    do {
        encodePart();
    } while (frames_.nextClip());
    checkEnd();
    commit();
    return std::move(report_);
}

}  // namespace

std::vector<fs::path> clipsThere(const fs::path& output, LongInput longInput) {
    std::error_code ignored;
    if (fs::exists(output, ignored)) {
        return {output};
    }
    return longInput == LongInput::SPLIT ? partsFrom(output, 1) : std::vector<fs::path>();
}

EncodeReport encodeFile(const std::string& input, const fs::path& output,
                        const EncodeSettings& settings, const EncodeEvents& events) {
    std::error_code ignored;
    if (fs::equivalent(input, output, ignored)) {
        throw ToolError("the output " + output.string() + " is the input");
    }
    // Numbers may make a name too long.
    const fs::path longest = settings.longInput == LongInput::SPLIT ? numbered(output, 10) : output;
    checkWritable(longest);
    checkWritable(originPath(longest));
    return Job(input, output, settings, events).run();
}

}  // namespace maker
