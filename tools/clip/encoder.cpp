#include "tools/clip/encoder.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>

#include "clip/validate.h"
#include "common/rgb565.h"
#include "tools/clip/dictionary.h"
#include "tools/clip/maps.h"
#include "tools/clip/palette.h"
#include "tools/clip/quantise.h"
#include "tools/clip/records.h"
#include "tools/clip/tiles.h"
#include "tools/clip/writer.h"

namespace maker {

namespace {

// The tiles of a block as their codes draw them: what stays the same whatever number a record gets.
struct BlockDrawing {
    std::vector<uint32_t> records;  // of each tile; kFiller for flat and empty ones
    std::vector<uint8_t> codes;
    std::vector<uint64_t> looks;
};

BlockDrawing drawingOf(const BlockTiles& block, const RecordSet& set) {
    std::vector<uint64_t> pictureLooks;
    for (const Tile& picture : block.pictures) {
        pictureLooks.push_back(hashTile(picture));
    }
    BlockDrawing drawing;
    for (const Placement& tile : block.placements) {
        const bool picture = tile.fill == Fill::PICTURE;
        drawing.records.push_back(picture ? set.uses[tile.value].record : kFiller);
        drawing.codes.push_back(picture                   ? set.uses[tile.value].code
                                : tile.fill == Fill::FLAT ? uint8_t{clip::CODE_FLAT}
                                                          : uint8_t{clip::CODE_EMPTY});
        drawing.looks.push_back(picture ? pictureLooks[tile.value] : 0);
    }
    return drawing;
}

// The bans of the two seams that playing backwards crosses: from the block's first frame to the
// block before, and, for the clip's last block, from the clip's first frame to the block's last.
std::vector<Ban> seamBans(const BlockDrawing& drawing, size_t tileCount, const SeamFrame* before,
                          const SeamFrame* wrap) {
    std::vector<Ban> bans;
    const auto addFrame = [&](const SeamFrame& beside, size_t from) {
        addSeamBans(beside, std::span(drawing.records).subspan(from, tileCount),
                    std::span(drawing.codes).subspan(from, tileCount),
                    std::span(drawing.looks).subspan(from, tileCount), bans);
    };
    if (before != nullptr) {
        addFrame(*before, 0);
    }
    if (wrap != nullptr) {
        addFrame(*wrap, drawing.records.size() - tileCount);
    }
    return bans;
}

Numbering numberSet(const RecordSet& set, std::vector<Ban> bans) {
    std::vector<uint8_t> types;
    for (const Record& record : set.records) {
        types.push_back(record.type);
    }
    return numberRecords(types, std::move(bans));
}

std::vector<uint16_t> mapEntries(const BlockTiles& block, const BlockDrawing& drawing,
                                 const Numbering& numbering, uint16_t emptyEntry) {
    std::vector<uint16_t> entries;
    for (size_t tile = 0; tile < block.placements.size(); ++tile) {
        const Placement& placement = block.placements[tile];
        entries.push_back(placement.fill == Fill::PICTURE
                              ? numbering.numberOf[drawing.records[tile]]
                          : placement.fill == Fill::FLAT ? static_cast<uint16_t>(placement.value)
                                                         : emptyEntry);
    }
    return entries;
}

std::vector<uint8_t> recordBytes(const RecordSet& set, const Numbering& numbering) {
    std::vector<uint8_t> bytes;
    size_t number = 0;
    for (size_t type = 0; type < numbering.typeCounts.size(); ++type) {
        for (int i = 0; i < numbering.typeCounts[type]; ++i, ++number) {
            const uint32_t record = numbering.recordAt[number];
            if (record == kFiller) {
                appendFiller(static_cast<int>(type), bytes);
                continue;
            }
            const auto from = set.bytes.begin() + set.records[record].offset;
            bytes.insert(bytes.end(), from, from + set.records[record].length);
        }
    }
    return bytes;
}

BlockSections assemble(const RecordSet& set, const Numbering& numbering,
                       const PaletteColours& palette, std::span<const uint16_t> entries,
                       std::span<const uint8_t> codes, size_t tileCount) {
    BlockSections sections;
    sections.typeCounts = numbering.typeCounts;
    sections.palette = palette;
    sections.records = recordBytes(set, numbering);
    sections.entries.assign(entries.begin(), entries.begin() + static_cast<long>(tileCount));
    for (size_t from = 0; from < entries.size(); from += tileCount) {
        if (from > 0) {
            appendChanges(entries.subspan(from - tileCount, tileCount),
                          entries.subspan(from, tileCount), sections.runs, sections.entries);
        }
        appendCodeWords(codes.subspan(from, tileCount), sections.codeWords);
    }
    return sections;
}

SeamFrame seamFrame(std::span<const uint16_t> entries, const BlockDrawing& drawing, size_t from,
                    size_t tileCount) {
    const auto cut = [from, tileCount](const auto& values) {
        const auto begin = values.begin() + static_cast<long>(from);
        return std::vector(begin, begin + static_cast<long>(tileCount));
    };
    return {cut(entries), cut(drawing.codes), cut(drawing.looks)};
}

}  // namespace

ClipEncoder::ClipEncoder(const ClipSettings& settings)
    : settings_(settings), bytes_(clip::kHeaderBytes) {
    assert(settings.height >= clip::kTileSize && settings.height <= kFrameHeight &&
           settings.height % clip::kTileSize == 0);
    assert(settings.quality >= 0 && settings.quality <= kBestQuality);
}

void ClipEncoder::add(const Frame& frame) {
    assert(frame.height == settings_.height && frame.alpha.empty() != settings_.alpha);
    if (stats_.frames == clip::kMaxFrames) {
        throw std::logic_error("a clip holds at most 256 frames");
    }
    // A full block waits for the next frame: only then is it known not to be the last.
    const size_t tileCount = static_cast<size_t>(clip::tilesFor(settings_.height));
    if (tiles_.size() == tileCount * clip::kFramesPerBlock) {
        flush(false);
    }
    const size_t from = tiles_.size();
    appendTiles(frame, tiles_);
    const std::span<Tile> all(tiles_);
    mergeTiles(all.subspan(from),
               from == 0 ? all.first(0) : all.subspan(from - tileCount, tileCount),
               toleranceOf(settings_.quality));
    ++stats_.frames;
}

void ClipEncoder::add(const uint8_t* rgba) {
    quantise(rgba, settings_.height, {settings_.alpha, settings_.dither}, quantised_);
    for (size_t i = 0; i < quantised_.pixels.size(); ++i) {
        const uint16_t colour = quantised_.pixels[i];
        const int shown[3] = {px::red8Of(colour), px::green8Of(colour), px::blue8Of(colour)};
        for (size_t c = 0; c < 3; ++c) {
            const int error = shown[c] - rgba[4 * i + c];
            stats_.squaredError += error * error;
        }
    }
    stats_.samples += 3.0 * static_cast<double>(quantised_.pixels.size());
    add(quantised_);
}

double ClipStats::psnr() const {
    return 10 * std::log10(255.0 * 255.0 * samples / squaredError);
}

void ClipEncoder::flush(bool last) {
    const size_t tileCount = static_cast<size_t>(clip::tilesFor(settings_.height));
    const BlockTiles block = collectTiles(tiles_);
    const std::vector<Shape> shapes = groupShapes(block.pictures);
    const PaletteColours palette = choosePalette(weighColours(shapes));
    RecordSet set = chooseRecords(block.pictures, shapes, PaletteIndex(palette));
    const bool empties = std::any_of(block.placements.begin(), block.placements.end(),
                                     [](const Placement& p) { return p.fill == Fill::EMPTY; });
    const uint32_t emptyRecord = empties ? emptyTileRecord(set) : 0;

    const BlockDrawing drawing = drawingOf(block, set);
    const Numbering numbering =
        numberSet(set, seamBans(drawing, tileCount, lastFrame_ ? &*lastFrame_ : nullptr,
                                last && firstFrame_ ? &*firstFrame_ : nullptr));
    const std::vector<uint16_t> entries = mapEntries(
        block, drawing, numbering, empties ? numbering.numberOf[emptyRecord] : uint16_t{0});
    appendBlock(bytes_, assemble(set, numbering, palette, entries, drawing.codes, tileCount),
                settings_.alpha ? 1 : 0);

    if (!firstFrame_) {
        firstFrame_ = seamFrame(entries, drawing, 0, tileCount);
    }
    lastFrame_ = seamFrame(entries, drawing, entries.size() - tileCount, tileCount);
    ++stats_.blocks;
    stats_.records += static_cast<int>(numbering.recordAt.size());
    stats_.fillers += static_cast<int>(numbering.recordAt.size() - set.records.size());
    tiles_.clear();
}

std::vector<uint8_t> ClipEncoder::finish() {
    if (stats_.frames == 0) {
        throw std::logic_error("a clip holds at least one frame");
    }
    flush(true);
    std::vector<uint8_t> header;
    appendFileHeader(
        header,
        {clip::kVersion, static_cast<uint8_t>(settings_.quality), kFrameWidth,
         static_cast<uint16_t>(settings_.height), static_cast<uint8_t>(settings_.alpha ? 1 : 0),
         static_cast<uint8_t>(stats_.blocks), static_cast<uint16_t>(stats_.frames)});
    std::copy(header.begin(), header.end(), bytes_.begin());
    const clip::Verdict verdict = clip::validate(bytes_);
    if (!verdict.ok) {
        throw std::logic_error("the encoder made a faulty clip: " + verdict.message + " (block " +
                               std::to_string(verdict.block) + ", offset " +
                               std::to_string(verdict.offset) + ")");
    }
    return std::move(bytes_);
}

void appendTiles(const Frame& frame, std::vector<Tile>& tiles) {
    for (int top = 0; top < frame.height; top += clip::kTileSize) {
        for (int left = 0; left < kFrameWidth; left += clip::kTileSize) {
            Tile& tile = tiles.emplace_back();
            for (size_t i = 0; i < clip::kTilePixels; ++i) {
                const size_t y = static_cast<size_t>(top) + i / clip::kTileSize;
                const size_t x = static_cast<size_t>(left) + i % clip::kTileSize;
                const size_t at = y * kFrameWidth + x;
                tile.colours[i] = frame.pixels[at];
                tile.alpha[i] = frame.alpha.empty() ? uint8_t{clip::kAlphaOpaque} : frame.alpha[at];
            }
        }
    }
}

}  // namespace maker
