#include "clip/validate.h"

#include <array>
#include <utility>

#include "common/bytes.h"

namespace clip {

namespace {

// Every frame's change runs cover its tiles exactly, so at worst they are one tile long each: the
// limit on a block's run bytes then holds by itself.
static_assert(kMaxTiles * (kFramesPerBlock - 1) <= kMaxRunBytes);

constexpr int kMaxSplit = 62;  // of the two-colour types
constexpr uint8_t kAlphaFlatMask = 0xF0;

// One record or a part of it, read from the front of `bytes`.
struct Parse {
    size_t length;      // bytes of the part; with a fault, the offset of the byte at fault
    const char* fault;  // null when the part is in order
};

constexpr const char* kCut = "the file ends inside a tile record";

Parse good(size_t length) {
    return {length, nullptr};
}
Parse bad(size_t at, const char* fault) {
    return {at, fault};
}

Parse fixedLength(std::span<const uint8_t> bytes, size_t length) {
    return bytes.size() < length ? bad(bytes.size(), kCut) : good(length);
}

Parse fourRuns(std::span<const uint8_t> bytes) {
    if (bytes.size() < 2) {
        return bad(bytes.size(), kCut);
    }
    const int header = le16(bytes.data());
    const int lenAB = (header & 31) + 1 + ((header >> 5) & 31) + 1;
    const int lenABC = lenAB + ((header >> 10) & 31) + 1;
    size_t colours = 2;
    if (lenAB < kTilePixels) {
        if (lenABC > kTilePixels) {
            return bad(0, "the runs of a four-run record cover more than 64 pixels");
        }
        colours = lenABC < kTilePixels ? 4 : 3;
    }
    return fixedLength(bytes, 2 + colours * ((header & kFourRunsPaletteBit) != 0 ? 1 : 2));
}

Parse shortRuns(std::span<const uint8_t> bytes) {
    size_t at = 0;
    int covered = 0;
    while (covered < kTilePixels) {
        if (at >= bytes.size()) {
            return bad(bytes.size(), kCut);
        }
        const int control = bytes[at];
        const size_t first = (control & 2) != 0 ? 1 : 2;
        const size_t second = (control & 1) != 0 ? 1 : 2;
        covered += (control >> 5) + 1;
        size_t length = 1 + first;
        if (covered < kTilePixels) {
            covered += ((control >> 2) & 7) + 1;
            length += second;
        }
        if (covered > kTilePixels) {
            return bad(at, "the runs of a short-run record pass the 64th pixel");
        }
        at += length;
    }
    return fixedLength(bytes, at);
}

Parse paletteRuns(std::span<const uint8_t> bytes) {
    size_t at = 0;
    int covered = 0;
    for (int group = 0; group < 2 || covered < kTilePixels; ++group) {
        if (at >= bytes.size()) {
            return bad(bytes.size(), kCut);
        }
        const int control = bytes[at];
        covered += (control >> 4) + 1;
        size_t length = 2;
        if (group < 2 || covered < kTilePixels) {
            covered += (control & 15) + 1;
            length = 3;
        }
        if (covered > kTilePixels) {
            return bad(at, "the runs of a palette-run record pass the 64th pixel");
        }
        at += length;
    }
    return fixedLength(bytes, at);
}

Parse twoColours(std::span<const uint8_t> bytes) {
    if (bytes.empty()) {
        return bad(0, kCut);
    }
    if ((bytes[0] & 63) > kMaxSplit) {
        return bad(0, "the split of a two-colour record leaves nothing to the second colour");
    }
    return fixedLength(
        bytes, size_t{1} + ((bytes[0] & 64) != 0 ? 1 : 2) + ((bytes[0] & 128) != 0 ? 1 : 2));
}

Parse colourRecord(std::span<const uint8_t> bytes, int type) {
    switch (type) {
        case TYPE_RAW:
            return fixedLength(bytes, 2 * kTilePixels);
        case TYPE_PALETTE:
            return fixedLength(bytes, kTilePixels);
        case TYPE_FOUR_RUNS:
        case TYPE_FOUR_RUNS + 1:
            return fourRuns(bytes);
        case TYPE_SHORT_RUNS:
        case TYPE_SHORT_RUNS + 1:
            return shortRuns(bytes);
        case TYPE_PALETTE_RUNS:
        case TYPE_PALETTE_RUNS + 1:
            return paletteRuns(bytes);
        default:
            return twoColours(bytes);
    }
}

Parse alphaRecord(std::span<const uint8_t> bytes) {
    if (bytes.empty()) {
        return bad(0, kCut);
    }
    if ((bytes[0] & kAlphaOneByteMask) != 0) {
        return (bytes[0] & kAlphaFlatMask) == kAlphaFlatBit
                   ? good(1)
                   : bad(0, "the first byte of an alpha record is neither of its two forms");
    }
    size_t at = 1;
    for (int covered = 0; covered < kTilePixels; ++at) {
        if (at >= bytes.size()) {
            return bad(bytes.size(), kCut);
        }
        covered += (bytes[at] >> 4) + 1;
        if (covered > kTilePixels) {
            return bad(at, "the runs of an alpha record pass the 64th pixel");
        }
    }
    return good(at);
}

Parse wholeRecord(std::span<const uint8_t> bytes, int type) {
    const Parse colour = colourRecord(bytes, type % kColourTypes);
    if (colour.fault != nullptr || type < kColourTypes) {
        return colour;
    }
    const Parse alpha = alphaRecord(bytes.subspan(colour.length));
    return {colour.length + alpha.length, alpha.fault};
}

class Checker {
public:
    Checker(std::span<const uint8_t> bytes, std::vector<BlockLayout>* layouts)
        : bytes_(bytes), layouts_(layouts) {}

    Verdict run();

private:
    bool fail(size_t offset, std::string message);
    bool cut(const char* section);
    bool need(uint64_t length, const char* section);
    bool checkHeader();
    bool checkBlock();
    bool checkBlockHeader();
    bool checkRuns();
    bool checkMap();
    bool checkCodes();
    bool checkRecordNumbers(int frame);
    void applyRuns();
    bool checkRecords();

    std::span<const uint8_t> bytes_;
    std::vector<BlockLayout>* layouts_;
    Verdict verdict_{true, FAULT_NONE, "", -1, 0};
    FileHeader file_{};
    int tiles_ = 0;
    size_t at_ = 0;  // the next byte to check

    // The block under check.
    int block_ = -1;
    BlockLayout layout_{};
    size_t runsAt_ = 0;
    size_t mapAt_ = 0;
    size_t codesAt_ = 0;
    size_t changedTotal_ = 0;
    size_t nextRun_ = 0;
    size_t nextEntry_ = 0;
    std::array<size_t, kMaxTiles> entryAt_{};  // where each tile's map entry of the frame stands
};

bool Checker::fail(size_t offset, std::string message) {
    verdict_ = {false, FAULT_BROKEN, std::move(message), block_, offset};
    return false;
}

bool Checker::cut(const char* section) {
    return fail(bytes_.size(), std::string("the file ends inside ") + section);
}

bool Checker::need(uint64_t length, const char* section) {
    return length <= bytes_.size() - at_ || cut(section);
}

bool Checker::checkHeader() {
    if (bytes_.empty()) {
        return fail(0, "the file is empty");
    }
    if (bytes_[0] != kVersion) {
        return fail(0, "version " + std::to_string(bytes_[0]) + ", not 19");
    }
    if (!readHeader(bytes_, file_)) {
        return cut("the file header");
    }
    if (file_.height < kTileSize || file_.height > kFrameHeight || file_.height % kTileSize != 0) {
        return fail(
            4, "height " + std::to_string(file_.height) + ", not a multiple of 8 from 8 to 360");
    }
    if (file_.alpha > 1) {
        return fail(6, "alpha " + std::to_string(file_.alpha) + ", neither 0 nor 1");
    }
    if (file_.frameCount < 1 || file_.frameCount > kMaxFrames) {
        return fail(8, std::to_string(file_.frameCount) + " frames, not 1 to 256");
    }
    if (file_.blockCount != blocksFor(file_.frameCount)) {
        return fail(7, std::to_string(file_.blockCount) + " blocks for " +
                           std::to_string(file_.frameCount) + " frames");
    }
    tiles_ = tilesFor(file_.height);
    at_ = kHeaderBytes;
    return true;
}

bool Checker::checkBlockHeader() {
    const int slots = typeSlots(file_.alpha);
    layout_.headerBytes =
        size_t{kBlockHeaderBytes} + 2 * static_cast<size_t>(slots) + size_t{kPaletteBytes};
    if (!need(layout_.headerBytes, "a block header")) {
        return false;
    }
    const uint8_t* from = bytes_.data() + at_;
    BlockHeader& header = layout_.header;
    header = {};
    header.recordCount = le16(from);
    header.recordWords = le32(from + 2);
    header.mapWords = le32(from + 6);
    uint32_t sum = 0;
    for (int type = 0; type < slots; ++type) {
        header.typeCounts[type] = le16(from + kBlockHeaderBytes + 2 * type);
        sum += header.typeCounts[type];
    }
    for (int i = 0; i < kPaletteEntries; ++i) {
        header.palette[i] = le16(from + kBlockHeaderBytes + 2 * (slots + i));
    }
    if (uint64_t{header.recordWords} * 4 > kMaxAnnouncedBytes) {
        return fail(at_ + 2, "more room announced for the tile records than any block can hold");
    }
    if (uint64_t{header.mapWords} * 4 > kMaxAnnouncedBytes) {
        return fail(at_ + 6, "more room announced for the map entries than any block can hold");
    }
    if (sum != header.recordCount) {
        return fail(at_ + kBlockHeaderBytes, "the type counts sum to " + std::to_string(sum) +
                                                 ", not to the record count " +
                                                 std::to_string(header.recordCount));
    }
    at_ += layout_.headerBytes;
    return true;
}

bool Checker::checkRuns() {
    runsAt_ = at_;
    changedTotal_ = 0;
    for (int frame = 1; frame < layout_.frames; ++frame) {
        for (int covered = 0; covered < tiles_; ++at_) {
            if (at_ >= bytes_.size()) {
                return cut("the change runs");
            }
            const int length = (bytes_[at_] & kRunLengthMask) + 1;
            covered += length;
            if (covered > tiles_) {
                return fail(at_, "frame " + std::to_string(frame) +
                                     " of the block: a change run passes the last tile");
            }
            if ((bytes_[at_] & kRunChanged) != 0) {
                changedTotal_ += static_cast<size_t>(length);
            }
        }
    }
    layout_.runBytes = at_ - runsAt_;
    return true;
}

bool Checker::checkMap() {
    mapAt_ = at_;
    const size_t entries = static_cast<size_t>(tiles_) + changedTotal_;
    if (entries > uint64_t{layout_.header.mapWords} * 2) {
        return fail(layout_.offset + 6, std::to_string(entries) + " map entries, room for " +
                                            std::to_string(uint64_t{layout_.header.mapWords} * 2));
    }
    layout_.mapBytes = entries * 2;
    if (!need(layout_.mapBytes, "the map entries")) {
        return false;
    }
    at_ += layout_.mapBytes;
    return true;
}

// Moves entryAt_ one frame on.
void Checker::applyRuns() {
    for (int tile = 0; tile < tiles_; ++nextRun_) {
        const uint8_t run = bytes_[nextRun_];
        const int end = tile + (run & kRunLengthMask) + 1;
        for (; tile < end; ++tile) {
            if ((run & kRunChanged) != 0) {
                entryAt_[static_cast<size_t>(tile)] = nextEntry_;
                nextEntry_ += 2;
            }
        }
    }
}

bool Checker::checkRecordNumbers(int frame) {
    const size_t frameWords = static_cast<size_t>(codeWordsFor(tiles_));
    const size_t from = codesAt_ + static_cast<size_t>(frame) * frameWords * 2;
    for (int tile = 0; tile < tiles_; ++tile) {
        const uint16_t word = le16(bytes_.data() + from + 2 * (tile / kCodesPerWord));
        const int code = (word >> (kCodeBits * (tile % kCodesPerWord))) & kCodeMask;
        if (code == CODE_FLAT || code == CODE_EMPTY) {
            continue;
        }
        const size_t at = entryAt_[static_cast<size_t>(tile)];
        const uint16_t number = le16(bytes_.data() + at);
        if (number >= layout_.header.recordCount) {
            return fail(at, "frame " + std::to_string(frame) + " of the block, tile " +
                                std::to_string(tile) + ": record " + std::to_string(number) +
                                " of " + std::to_string(layout_.header.recordCount));
        }
    }
    return true;
}

bool Checker::checkCodes() {
    codesAt_ = at_;
    layout_.codeBytes =
        2 * static_cast<size_t>(layout_.frames) * static_cast<size_t>(codeWordsFor(tiles_));
    if (!need(layout_.codeBytes, "the tile codes")) {
        return false;
    }
    at_ += layout_.codeBytes;
    for (size_t tile = 0; tile < static_cast<size_t>(tiles_); ++tile) {
        entryAt_[tile] = mapAt_ + 2 * tile;
    }
    nextRun_ = runsAt_;
    nextEntry_ = mapAt_ + 2 * static_cast<size_t>(tiles_);
    for (int frame = 0; frame < layout_.frames; ++frame) {
        if (frame > 0) {
            applyRuns();
        }
        if (!checkRecordNumbers(frame)) {
            return false;
        }
    }
    return true;
}

bool Checker::checkRecords() {
    const size_t recordsAt = at_;
    const uint64_t room = uint64_t{layout_.header.recordWords} * 4;
    for (int type = 0; type < typeSlots(file_.alpha); ++type) {
        for (int i = 0; i < layout_.header.typeCounts[type]; ++i) {
            const Parse record = wholeRecord(bytes_.subspan(at_), type);
            if (record.fault != nullptr) {
                return fail(at_ + record.length,
                            record.fault + (" (type " + std::to_string(type) + ")"));
            }
            if (at_ + record.length - recordsAt > room) {
                return fail(at_, "the tile records need more than the " + std::to_string(room) +
                                     " bytes of room announced");
            }
            at_ += record.length;
        }
    }
    layout_.recordBytes = at_ - recordsAt;
    return true;
}

bool Checker::checkBlock() {
    layout_ = {};
    layout_.offset = at_;
    layout_.frames = framesInBlock(block_, file_.blockCount, file_.frameCount);
    return checkBlockHeader() && checkRuns() && checkMap() && checkCodes() && checkRecords();
}

Verdict Checker::run() {
    if (!checkHeader()) {
        return verdict_;
    }
    for (block_ = 0; block_ < file_.blockCount; ++block_) {
        if (!checkBlock()) {
            return verdict_;
        }
        if (layouts_ != nullptr) {
            layouts_->push_back(layout_);
        }
    }
    if (at_ != bytes_.size()) {
        return {false, FAULT_TRAILING,
                std::to_string(bytes_.size() - at_) + " bytes after the last block",
                file_.blockCount - 1, at_};
    }
    return verdict_;
}

}  // namespace

bool readHeader(std::span<const uint8_t> bytes, FileHeader& header) {
    if (bytes.size() < kHeaderBytes) {
        return false;
    }
    header = {bytes[0], bytes[1], le16(bytes.data() + 2), le16(bytes.data() + 4),
              bytes[6], bytes[7], le16(bytes.data() + 8)};
    return true;
}

Verdict validate(std::span<const uint8_t> bytes, std::vector<BlockLayout>* layouts) {
    return Checker(bytes, layouts).run();
}

}  // namespace clip
