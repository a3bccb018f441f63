#include "tools/clip/encoder/writer.h"

#include <numeric>

namespace maker {

namespace {

constexpr size_t kRoomUnit = 4;  // bytes

void append32(std::vector<uint8_t>& out, unsigned value) {
    append16(out, value & 0xFFFF);
    append16(out, value >> 16);
}

// A reader reserves what is announced; no room at all is never announced.
unsigned roomFor(size_t bytes) {
    return bytes == 0 ? 1 : static_cast<unsigned>((bytes + kRoomUnit - 1) / kRoomUnit);
}

}  // namespace

void append16(std::vector<uint8_t>& out, unsigned value) {
    out.push_back(static_cast<uint8_t>(value & 0xFF));
    out.push_back(static_cast<uint8_t>((value >> 8) & 0xFF));
}

void appendFileHeader(std::vector<uint8_t>& out, const clip::FileHeader& header) {
    out.push_back(header.version);
    out.push_back(header.quality);
    append16(out, header.storedWidth);
    append16(out, header.height);
    out.push_back(header.alpha);
    out.push_back(header.blockCount);
    append16(out, header.frameCount);
}

void appendBlock(std::vector<uint8_t>& out, const BlockSections& block, int alpha) {
    append16(out, std::accumulate(block.typeCounts.begin(), block.typeCounts.end(), 0U));
    append32(out, roomFor(block.records.size()));
    append32(out, roomFor(block.entries.size() * sizeof(uint16_t)));
    for (int type = 0; type < clip::typeSlots(alpha); ++type) {
        append16(out, block.typeCounts[static_cast<size_t>(type)]);
    }
    for (const uint16_t colour : block.palette) {
        append16(out, colour);
    }
    out.insert(out.end(), block.runs.begin(), block.runs.end());
    for (const uint16_t entry : block.entries) {
        append16(out, entry);
    }
    for (const uint16_t word : block.codeWords) {
        append16(out, word);
    }
    out.insert(out.end(), block.records.begin(), block.records.end());
}

}  // namespace maker
