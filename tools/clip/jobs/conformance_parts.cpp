#include "tools/clip/jobs/conformance_parts.h"

#include <algorithm>
#include <cassert>

#include "tools/clip/encoder/block_sections.h"
#include "tools/clip/encoder/writer.h"

namespace maker::conformance {

namespace {

constexpr uint8_t kQuality = 100;

const PaletteIndex& paletteIndex() {
    static const PaletteIndex index(palette());
    return index;
}

// The run byte of `length` tiles, with their entries when they change.
void appendRun(std::span<const uint16_t> after, size_t from, size_t length, bool changed,
               std::vector<uint8_t>& runs, std::vector<uint16_t>& entries) {
    runs.push_back(static_cast<uint8_t>((changed ? clip::kRunChanged : 0) | (length - 1)));
    if (changed) {
        const auto first = after.begin() + static_cast<std::ptrdiff_t>(from);
        entries.insert(entries.end(), first, first + static_cast<std::ptrdiff_t>(length));
    }
}

}  // namespace

PaletteColours palette() {
    PaletteColours colours;
    for (size_t i = 0; i < colours.size(); ++i) {
        colours[i] = colour(static_cast<int>(i));
    }
    return colours;
}

Bytes picture(int type, int firstColour) {
    Sequence colours;
    for (size_t i = 0; i < colours.size(); ++i) {
        colours[i] = colour(firstColour + static_cast<int>(i));
    }
    Bytes record;
    appendPlain(type, colours, paletteIndex(), record);
    return record;
}

Bytes runs(int type, std::initializer_list<Run> runs) {
    Bytes record;
    appendRuns(type & ~1, runs.begin(), static_cast<int>(runs.size()), paletteIndex(), record);
    return record;
}

Bytes runsOf(int type, std::initializer_list<int> lengths, int firstColour) {
    std::vector<Run> list;
    for (const int length : lengths) {
        list.push_back({colour(firstColour++), length});
    }
    Bytes record;
    appendRuns(type & ~1, list.data(), static_cast<int>(list.size()), paletteIndex(), record);
    return record;
}

Bytes sample(int type) {
    switch (type & ~1) {
        case clip::TYPE_RAW:
            return picture(type, type == clip::TYPE_RAW ? kBeside : 0);
        case clip::TYPE_FOUR_RUNS:
            return runsOf(type, {5, 11, 20, 28});
        case clip::TYPE_SHORT_RUNS:
            return runsOf(type, {1, 2, 3, 4, 5, 6, 7, 8, 7, 6, 5, 4, 3, 2, 1}, kBeside - 7);
        case clip::TYPE_PALETTE_RUNS:
            return runsOf(type, {16, 3, 1, 9, 12, 2, 14, 7});
        default:
            return runs(type, {{colour(1), 11}, {colour(kBeside), 53}});
    }
}

Bytes repeated(int type, int length, int firstColour) {
    std::vector<Run> list;
    for (int covered = 0; covered < clip::kTilePixels; covered += length) {
        list.push_back({colour(firstColour++), std::min(length, clip::kTilePixels - covered)});
    }
    Bytes record;
    appendRuns(type & ~1, list.data(), static_cast<int>(list.size()), paletteIndex(), record);
    return record;
}

Bytes levels(uint8_t first, std::initializer_list<std::pair<int, int>> lengthsAndLevels) {
    Bytes part{first};
    for (const auto& [length, level] : lengthsAndLevels) {
        part.push_back(static_cast<uint8_t>((length - 1) << 4 | level));
    }
    return part;
}

Bytes level(int level) {
    return {static_cast<uint8_t>(clip::kAlphaFlatBit | level)};
}

Bytes sampleLevels() {
    return levels(0,
                  {{1, 15}, {2, 0}, {3, 1}, {16, 14}, {5, 7}, {9, 8}, {12, 3}, {15, 12}, {1, 5}});
}

Bytes joined(Bytes front, const Bytes& back) {
    front.insert(front.end(), back.begin(), back.end());
    return front;
}

Bytes withByte(Bytes bytes, size_t at, uint8_t byte) {
    bytes.at(at) = byte;
    return bytes;
}

Bytes withWord(Bytes bytes, size_t at, uint16_t word) {
    bytes.at(at) = static_cast<uint8_t>(word & 0xFF);
    bytes.at(at + 1) = static_cast<uint8_t>(word >> 8);
    return bytes;
}

Bytes withoutEnd(Bytes bytes, size_t length) {
    assert(length < bytes.size());
    bytes.resize(length);
    return bytes;
}

void changeAll(std::span<const uint16_t>, std::span<const uint16_t> after,
               std::vector<uint8_t>& runs, std::vector<uint16_t>& entries) {
    for (size_t from = 0; from < after.size(); from += clip::kMaxRunLength) {
        appendRun(after, from, std::min(size_t{clip::kMaxRunLength}, after.size() - from), true,
                  runs, entries);
    }
}

void changeOneByOne(std::span<const uint16_t>, std::span<const uint16_t> after,
                    std::vector<uint8_t>& runs, std::vector<uint16_t>& entries) {
    for (size_t from = 0; from < after.size(); ++from) {
        appendRun(after, from, 1, true, runs, entries);
    }
}

void changeIncreasing(std::span<const uint16_t>, std::span<const uint16_t> after,
                      std::vector<uint8_t>& runs, std::vector<uint16_t>& entries) {
    constexpr size_t kUnchangedEvery = 3;
    for (size_t from = 0; from < after.size();) {
        const size_t length = std::min(runs.size() % clip::kMaxRunLength + 1, after.size() - from);
        appendRun(after, from, length, runs.size() % kUnchangedEvery != 0, runs, entries);
        from += length;
    }
}

Block::Block(int frames, int lines) : changes(appendChanges), maps_(static_cast<size_t>(frames)) {
    const auto tiles = static_cast<size_t>(clip::tilesFor(lines));
    for (Map& map : maps_) {
        map.entries.resize(tiles);
        map.codes.resize(tiles);
    }
}

uint16_t Block::add(int type, const Bytes& record) {
    assert(std::all_of(typeCounts_.begin() + type + 1, typeCounts_.end(),
                       [](uint16_t count) { return count == 0; }));
    ++typeCounts_[static_cast<size_t>(type)];
    records_.insert(records_.end(), record.begin(), record.end());
    return static_cast<uint16_t>(numbers_++);
}

void Block::set(int frame, int tile, int entry, int code) {
    for (size_t i = static_cast<size_t>(frame); i < maps_.size(); ++i) {
        maps_[i].entries.at(static_cast<size_t>(tile)) = static_cast<uint16_t>(entry);
        maps_[i].codes.at(static_cast<size_t>(tile)) = static_cast<uint8_t>(code);
    }
}

void Block::append(Bytes& out, int alpha) const {
    BlockSections sections;
    sections.typeCounts = typeCounts_;
    sections.palette = colours;
    sections.entries = maps_[0].entries;
    sections.records = records_;
    for (size_t i = 0; i < maps_.size(); ++i) {
        if (i > 0) {
            changes(maps_[i - 1].entries, maps_[i].entries, sections.runs, sections.entries);
        }
        appendCodeWords(maps_[i].codes, sections.codeWords);
    }
    for (uint16_t& word : sections.codeWords) {
        word |= codeBits;
    }
    appendBlock(out, sections, alpha);
}

Bytes clipOf(std::span<const Block> blocks, int alpha, int lines) {
    int frames = 0;
    for (const Block& block : blocks) {
        frames += block.frames();
    }
    Bytes bytes;
    appendFileHeader(bytes, {.version = clip::kVersion,
                             .quality = kQuality,
                             .storedWidth = kFrameWidth,
                             .height = static_cast<uint16_t>(lines),
                             .alpha = static_cast<uint8_t>(alpha),
                             .blockCount = static_cast<uint8_t>(blocks.size()),
                             .frameCount = static_cast<uint16_t>(frames)});
    for (const Block& block : blocks) {
        block.append(bytes, alpha);
    }
    return bytes;
}

Bytes clipOf(const Block& block, int alpha, int lines) {
    return clipOf(std::span(&block, 1), alpha, lines);
}

Bytes plainClip() {
    Block block(2);
    block.addShown(2, sample(2));
    block.set(1, 0, 0, 4);
    return clipOf(block);
}

}  // namespace maker::conformance
