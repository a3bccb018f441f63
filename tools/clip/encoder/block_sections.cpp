#include "tools/clip/encoder/block_sections.h"

#include <algorithm>

#include "tools/clip/encoder/record_forms.h"

namespace maker {

namespace {

// What stands at each tile of each frame, in raster order.
struct FrameMap {
    std::vector<uint16_t> entries;  // flat colours and record numbers
    std::vector<uint8_t> codes;
};

bool isPicture(const Placement& placement) {
    return placement.fill == Fill::PICTURE;
}

// What records draw in each frame, but for the tiles that stay as they are. Sorted by record.
std::vector<TileUse> usesOf(const CodedBlock& coded) {
    const std::vector<Placement>& placements = coded.tiles.placements;
    const size_t tileCount = placements.size() / static_cast<size_t>(coded.frames);
    std::vector<uint64_t> looks;
    for (const Tile& picture : coded.tiles.pictures) {
        looks.push_back(hashTile(picture));
    }
    std::vector<TileUse> uses;
    for (size_t tile = 0; tile < placements.size(); ++tile) {
        const Placement& placement = placements[tile];
        if (isPicture(placement) &&
            (tile < tileCount || placements[tile - tileCount] != placement)) {
            const RecordUse& use = coded.set.uses[placement.value];
            uses.push_back({use.record, static_cast<uint16_t>(tile % tileCount), use.code,
                            looks[placement.value]});
        }
    }
    std::stable_sort(uses.begin(), uses.end(),
                     [](const TileUse& a, const TileUse& b) { return a.record < b.record; });
    return uses;
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

FrameMap mapsOf(const CodedBlock& coded, const Numbering& numbering, uint16_t emptyEntry) {
    FrameMap map;
    for (const Placement& placement : coded.tiles.placements) {
        if (isPicture(placement)) {
            const RecordUse& use = coded.set.uses[placement.value];
            map.entries.push_back(numbering.numberOf[use.record]);
            map.codes.push_back(use.code);
        } else {
            const bool flat = placement.fill == Fill::FLAT;
            map.entries.push_back(flat ? static_cast<uint16_t>(placement.value) : emptyEntry);
            map.codes.push_back(flat ? uint8_t{clip::CODE_FLAT} : uint8_t{clip::CODE_EMPTY});
        }
    }
    return map;
}

}  // namespace

void appendChanges(std::span<const uint16_t> before, std::span<const uint16_t> after,
                   std::vector<uint8_t>& runs, std::vector<uint16_t>& entries) {
    size_t from = 0;
    while (from < after.size()) {
        const bool changed = after[from] != before[from];
        size_t to = from + 1;
        while (to < after.size() && to - from < clip::kMaxRunLength &&
               (after[to] != before[to]) == changed) {
            ++to;
        }
        runs.push_back(static_cast<uint8_t>((changed ? clip::kRunChanged : 0) | (to - from - 1)));
        if (changed) {
            entries.insert(entries.end(), after.begin() + static_cast<std::ptrdiff_t>(from),
                           after.begin() + static_cast<std::ptrdiff_t>(to));
        }
        from = to;
    }
}

void appendCodeWords(std::span<const uint8_t> codes, std::vector<uint16_t>& words) {
    for (size_t tile = 0; tile < codes.size(); tile += clip::kCodesPerWord) {
        int word = 0;
        for (size_t i = 0; i < clip::kCodesPerWord; ++i) {
            word |= codes[tile + i] << (clip::kCodeBits * i);
        }
        words.push_back(static_cast<uint16_t>(word));
    }
}

NumberedBlock numberBlock(CodedBlock coded, NumberHistory& history) {
    const std::vector<Placement>& placements = coded.tiles.placements;
    const bool empties =
        std::any_of(placements.begin(), placements.end(),
                    [](const Placement& placement) { return placement.fill == Fill::EMPTY; });
    const uint32_t emptyRecord = empties ? emptyTileRecord(coded.set) : 0;
    std::vector<uint8_t> types;
    for (const Record& record : coded.set.records) {
        types.push_back(record.type);
    }
    const Numbering numbering = numberRecords(types, usesOf(coded), history);
    const FrameMap map =
        mapsOf(coded, numbering, empties ? numbering.numberOf[emptyRecord] : uint16_t{0});

    NumberedBlock block;
    block.records = static_cast<int>(numbering.recordAt.size());
    block.fillers = block.records - static_cast<int>(types.size());
    block.sections.typeCounts = numbering.typeCounts;
    block.sections.palette = coded.palette;
    block.sections.records = recordBytes(coded.set, numbering);
    const size_t tileCount = placements.size() / static_cast<size_t>(coded.frames);
    const std::span<const uint16_t> entries(map.entries);
    const std::span<const uint8_t> codes(map.codes);
    const auto firstMap = entries.first(tileCount);
    block.sections.entries.assign(firstMap.begin(), firstMap.end());
    for (size_t from = 0; from < entries.size(); from += tileCount) {
        if (from > 0) {
            appendChanges(entries.subspan(from - tileCount, tileCount),
                          entries.subspan(from, tileCount), block.sections.runs,
                          block.sections.entries);
        }
        appendCodeWords(codes.subspan(from, tileCount), block.sections.codeWords);
    }
    return block;
}

}  // namespace maker
