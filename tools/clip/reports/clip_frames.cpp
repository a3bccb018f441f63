#include "tools/clip/reports/clip_frames.h"

#include "clip/block.h"
#include "clip/frame.h"
#include "clip/mapbuild.h"
#include "common/rgb565.h"
#include "tools/clip/base/atomic_file.h"
#include "tools/clip/base/errors.h"
#include "tools/clip/reports/describe.h"

namespace maker {

namespace {

constexpr int kAlphaStep = 17;  // 15 levels over 255

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

}  // namespace maker
