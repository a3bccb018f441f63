#include "tools/clip/reports/clip_frames.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <optional>
#include <string_view>

#include "clip/block.h"
#include "clip/frame.h"
#include "clip/mapbuild.h"
#include "common/rgb565.h"
#include "layout/clipname.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/clip/reports/describe.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

constexpr int kAlphaStep = 17;  // 15 levels over 255

struct Range {
    int first;
    int last;
};

// Takes a number from the front of the text.
bool takeNumber(std::string_view& text, int& number) {
    const char* end = text.data() + text.size();
    const auto [next, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || number < 0) {
        return false;
    }
    text.remove_prefix(static_cast<size_t>(next - text.data()));
    return true;
}

bool takeMark(std::string_view& text, char mark) {
    const bool found = !text.empty() && text[0] == mark;
    text.remove_prefix(found ? 1 : 0);
    return found;
}

std::optional<std::vector<Range>> rangesOf(std::string_view text) {
    std::vector<Range> ranges;
    do {
        Range range{};
        if (!takeNumber(text, range.first)) {
            return std::nullopt;
        }
        range.last = range.first;
        if (takeMark(text, '-') && !takeNumber(text, range.last)) {
            return std::nullopt;
        }
        ranges.push_back(range);
    } while (takeMark(text, ','));
    return text.empty() ? std::optional(ranges) : std::nullopt;
}

void checkFrame(int frame, int count) {
    if (frame >= count) {
        throw ToolError("there is no frame " + std::to_string(frame) + ": the clip's last one is " +
                        std::to_string(count - 1));
    }
}

}  // namespace

ClipFrames::ClipFrames(std::span<const uint8_t> bytes) {
    Description description;
    describe(bytes, description);
    if (!description.plays()) {
        throw ToolError(verdictText(description));
    }
    clip::Source source(bytes);
    header_ = clip::readFileHeader(source);
    blocks_.resize(header_.blockCount);
    for (int i = 0; i < header_.blockCount; ++i) {
        load(source, clip::framesInBlock(i, header_.blockCount, header_.frameCount),
             blocks_[static_cast<size_t>(i)]);
    }
}

void ClipFrames::load(clip::Source& source, int frames, LoadedBlock& loaded) const {
    const int tiles = clip::tilesFor(header_.height);
    const int slots = clip::typeSlots(header_.alpha);
    const clip::BlockHeader& header = loaded.header;
    clip::readBlockHeader(source, header_.alpha, loaded.header);
    const clip::BlockRoom room =
        clip::blockRoom(header.recordCount, header.recordWords, header.mapWords, frames, tiles);
    uint32_t typeStarts[clip::kMaxTypeSlots];
    clip::startTypes(header.typeCounts, slots, typeStarts);
    std::vector<uint16_t> entries(room.mapEntries);
    std::vector<uint8_t> runs(room.runBytes);
    loaded.maps.resize(static_cast<size_t>(frames * tiles));
    loaded.codes.resize(room.codeWords);
    loaded.records.resize(room.guardedRecordBytes());
    loaded.recordOffsets.resize(room.records);
    loaded.recordTypes.resize(room.records);
    clip::Block block{.frames = frames,
                      .tiles = tiles,
                      .slots = slots,
                      .room = room,
                      .typeStarts = typeStarts,
                      .map = entries.data(),
                      .runs = runs.data(),
                      .codes = loaded.codes.data(),
                      .records = loaded.records.data(),
                      .recordOffsets = loaded.recordOffsets.data(),
                      .recordTypes = loaded.recordTypes.data()};
    clip::loadMaps(source, block);
    clip::loadRecords(source, header.recordCount, block);
    clip::rebuildAllMaps(entries.data(), runs.data(), tiles, frames, loaded.maps.data(), tiles);
}

void ClipFrames::draw(int index, Frame& frame) const {
    const LoadedBlock& loaded = blocks_[static_cast<size_t>(index / clip::kFramesPerBlock)];
    const int frameInBlock = index % clip::kFramesPerBlock;
    const int tiles = clip::tilesFor(header_.height);
    const size_t pixels = static_cast<size_t>(kFrameWidth) * header_.height;
    frame.height = header_.height;
    frame.pixels.resize(pixels);
    frame.alpha.resize(alpha() ? pixels : 0);
    std::vector<uint16_t> drawnMap(static_cast<size_t>(tiles));
    std::vector<uint16_t> drawnCodes(static_cast<size_t>(clip::codeWordsFor(tiles)));
    clip::drawFrame({.rows = tiles / clip::kTilesAcross,
                     .map = loaded.maps.data() + frameInBlock * tiles,
                     .codes = loaded.codes.data() + frameInBlock * clip::codeWordsFor(tiles),
                     .palette = loaded.header.palette,
                     .records = loaded.records.data(),
                     .recordOffsets = loaded.recordOffsets.data(),
                     .recordTypes = loaded.recordTypes.data(),
                     .recordCount = loaded.recordTypes.size(),
                     .out = frame.pixels.data(),
                     .levels = alpha() ? frame.alpha.data() : nullptr,
                     .keptLevels = nullptr,
                     .drawnMap = drawnMap.data(),
                     .drawnCodes = drawnCodes.data(),
                     .everything = true,
                     .flatOnly = false});
}

Picture ClipFrames::picture(int index) const {
    Frame frame;
    draw(index, frame);
    Picture picture(kFrameWidth, height());
    toRgba(frame, picture.rgba);
    return picture;
}

ClipFrames openClip(const std::string& path) {
    const std::vector<uint8_t> bytes = readWholeFile(path);
    try {
        return ClipFrames(bytes);
    } catch (const ToolError& error) {
        throw ToolError("cannot play " + path + ": " + error.what());
    }
}

void toRgba(const Frame& frame, std::vector<uint8_t>& rgba) {
    rgba.resize(frame.pixels.size() * 4);
    uint8_t* out = rgba.data();
    for (size_t i = 0; i < frame.pixels.size(); ++i, out += 4) {
        const uint16_t pixel = frame.pixels[i];
        out[0] = static_cast<uint8_t>(px::red8Of(pixel));
        out[1] = static_cast<uint8_t>(px::green8Of(pixel));
        out[2] = static_cast<uint8_t>(px::blue8Of(pixel));
        out[3] =
            frame.alpha.empty() ? uint8_t{255} : static_cast<uint8_t>(frame.alpha[i] * kAlphaStep);
    }
}

std::vector<std::string> clipsBelow(const fs::path& folder) {
    std::vector<std::string> paths;
    std::error_code error;
    fs::recursive_directory_iterator entry(folder,
                                           fs::directory_options::follow_directory_symlink |
                                               fs::directory_options::skip_permission_denied,
                                           error);
    // The folders that the entry stands in, from `folder` on, whatever links led there.
    std::vector<fs::path> above{fs::canonical(folder, error)};
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        stopIfInterrupted();
        std::error_code ignored;
        if (entry->is_directory(ignored)) {
            above.resize(static_cast<size_t>(entry.depth()) + 1);
            above.push_back(fs::canonical(entry->path(), ignored));
            if (std::find(above.begin(), above.end() - 1, above.back()) != above.end() - 1) {
                entry.disable_recursion_pending();
            }
        } else if (entry->is_regular_file(ignored) && clip::isClipName(entry->path().filename())) {
            paths.push_back(entry->path().lexically_relative(folder).string());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::vector<NamedClip> clipsOf(const std::string& input) {
    std::error_code ignored;
    if (!fs::is_directory(input, ignored)) {
        return {{fs::path(input).filename().string(), input}};
    }
    std::vector<NamedClip> clips;
    for (const std::string& name : clipsBelow(input)) {
        clips.push_back({name, (fs::path(input) / name).string()});
    }
    if (clips.empty()) {
        throw ToolError("there are no clips in " + input);
    }
    return clips;
}

bool isFrameList(const std::string& text) {
    return rangesOf(text).has_value();
}

std::vector<int> framesOf(const std::string& text, int count) {
    std::vector<int> frames;
    if (text.empty()) {
        frames.resize(static_cast<size_t>(count));
        std::iota(frames.begin(), frames.end(), 0);
        return frames;
    }
    const std::optional<std::vector<Range>> ranges = rangesOf(text);
    if (!ranges) {
        throw ToolError("frames are named like 0,5,10-20, not " + text);
    }
    for (const Range& range : *ranges) {
        checkFrame(range.first, count);
        checkFrame(range.last, count);
        const int step = range.first <= range.last ? 1 : -1;
        for (int frame = range.first; frame != range.last + step; frame += step) {
            frames.push_back(frame);
        }
    }
    return frames;
}

}  // namespace maker
