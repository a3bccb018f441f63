#include "tools/clip/reports/clip_frames.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "clip/mapbuild.h"
#include "clip/paint.h"
#include "clip/reader.h"
#include "clip/tile.h"
#include "clip/validate.h"
#include "common/rgb565.h"
#include "tools/clip/base/atomic_file.h"
#include "tools/clip/base/errors.h"
#include "tools/clip/reports/describe.h"

namespace maker {

namespace {

constexpr int kAlphaStep = 17;  // 15 levels over 255

struct CloseFile {
    void operator()(FILE* file) const { std::fclose(file); }
};

// The program reads clips from streams; this one reads memory.
std::unique_ptr<FILE, CloseFile> streamOf(std::span<const uint8_t> bytes) {
    std::unique_ptr<FILE, CloseFile> stream(
        fmemopen(const_cast<uint8_t*>(bytes.data()), bytes.size(), "rb"));
    if (!stream) {
        throw std::bad_alloc();
    }
    return stream;
}

int tilesOf(const clip::FileHeader& header) {
    return clip::tilesFor(header.height);
}

}  // namespace

ClipFrames::ClipFrames(std::span<const uint8_t> bytes) {
    Description description;
    describe(bytes, description);
    if (!description.plays()) {
        throw ToolError(verdictText(description));
    }
    const auto stream = streamOf(bytes);
    header_ = clip::readFileHeader(stream.get());
    blocks_.resize(header_.blockCount);
    for (int i = 0; i < header_.blockCount; ++i) {
        readBlock(stream.get(), clip::framesInBlock(i, header_.blockCount, header_.frameCount),
                  blocks_[static_cast<size_t>(i)]);
    }
}

void ClipFrames::readBlock(FILE* file, int frames, Block& block) const {
    const int tiles = tilesOf(header_);
    const size_t mapEntries = static_cast<size_t>(frames) * static_cast<size_t>(tiles);
    clip::readBlockHeader(file, header_.alpha, block.header);
    uint32_t start = 0;
    for (int type = 0; type < clip::kMaxTypeSlots; ++type) {
        block.typeStarts[type] = start;
        start += block.header.typeCounts[type];
    }

    std::vector<uint8_t> runs(clip::kMaxRunBytes);
    clip::ChangeRuns read{};
    clip::readChangeRuns(file, frames - 1, tiles, runs.data(), runs.size(), read);
    std::vector<uint16_t> entries(static_cast<size_t>(tiles + read.changed));
    clip::readWords(file, entries.data(), entries.size());
    block.maps.resize(mapEntries);
    clip::rebuildAllMaps(entries.data(), runs.data(), tiles, frames, block.maps.data(), tiles);
    block.codes.resize(static_cast<size_t>(frames * clip::codeWordsFor(tiles)));
    clip::readWords(file, block.codes.data(), block.codes.size());

    const int slots = clip::typeSlots(header_.alpha);
    size_t used = 0;
    block.records.resize(size_t{block.header.recordCount} * clip::kMaxRecordBytes +
                         clip::kMaxRecordBytes);
    for (uint32_t record = 0; record < block.header.recordCount; ++record) {
        block.recordOffsets.push_back(used);
        used += static_cast<size_t>(
            clip::readRecord(file, clip::recordType(block.typeStarts, slots, record),
                             block.records.data() + used, clip::kMaxRecordBytes));
    }
    // Decoding may look as far as the longest record goes.
    block.records.resize(used + clip::kMaxRecordBytes);
    block.records.shrink_to_fit();
}

// An empty tile (code 7) shows a raw or palette record all the same, fully transparent.
void ClipFrames::drawRecord(const Block& block, uint16_t number, int code, uint16_t* out,
                            uint8_t* alphaOut) const {
    if (number >= block.header.recordCount) {
        return;
    }
    const int type = clip::recordType(block.typeStarts, clip::typeSlots(header_.alpha), number);
    const uint8_t* record = block.records.data() + block.recordOffsets[number];
    size_t length = 0;
    if (type % clip::kColourTypes == clip::TYPE_RAW) {
        length = clip::drawRawTile(record, out);
    } else if (type % clip::kColourTypes == clip::TYPE_PALETTE) {
        length = clip::drawPaletteTile(record, block.header.palette, out);
    } else {
        clip::TileRuns runs;
        const int colourType = type % clip::kColourTypes;
        length = clip::decodeRuns(record, colourType, block.header.palette, runs);
        if (code != clip::CODE_EMPTY) {
            clip::paintRuns(out, runs, code, colourType % 2);
        }
    }
    if (alphaOut != nullptr && type >= clip::kColourTypes && code != clip::CODE_EMPTY) {
        uint8_t levels[clip::kTilePixels];
        clip::decodeAlpha(record + length, levels);
        clip::copyTileAlpha(alphaOut, levels);
    }
}

void ClipFrames::draw(int index, Frame& frame) const {
    const Block& block = blocks_[static_cast<size_t>(index / clip::kFramesPerBlock)];
    const int frameInBlock = index % clip::kFramesPerBlock;
    const int tiles = tilesOf(header_);
    const uint16_t* map = block.maps.data() + frameInBlock * tiles;
    const uint16_t* codes = block.codes.data() + frameInBlock * clip::codeWordsFor(tiles);
    const size_t pixels = static_cast<size_t>(kFrameWidth) * header_.height;
    frame.height = header_.height;
    frame.pixels.assign(pixels, 0);
    frame.alpha.assign(alpha() ? pixels : 0, clip::kAlphaOpaque);
    for (int tile = 0; tile < tiles; ++tile) {
        const int at =
            (tile / clip::kTilesAcross * kFrameWidth + tile % clip::kTilesAcross) * clip::kTileSize;
        uint16_t* out = frame.pixels.data() + at;
        uint8_t* alphaOut = alpha() ? frame.alpha.data() + at : nullptr;
        const int code = clip::codeAt(codes, tile);
        if (code == clip::CODE_FLAT) {
            clip::fillTile(out, map[tile]);
            continue;
        }
        if (code == clip::CODE_EMPTY && alphaOut != nullptr) {
            clip::fillTileAlpha(alphaOut, 0);
        }
        drawRecord(block, map[tile], code, out, alphaOut);
    }
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
