#include "clip/validate.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

#include "clip/mapbuild.h"
#include "clip/record.h"
#include "clip/source.h"
#include "common/bytes.h"

namespace clip {

namespace {

// Every frame's change runs cover its tiles exactly, so at worst they are one tile long each: the
// limit on a block's run bytes then holds by itself.
static_assert(kMaxTiles * (kFramesPerBlock - 1) <= kMaxRunBytes);

constexpr uint8_t kAlphaFlatMask = 0xF0;

// By pairs of colour types.
constexpr const char* kRunFaults[kColourTypes / 2] = {
    nullptr,
    "the runs of a four-run record cover more than 64 pixels",
    "the runs of a short-run record pass the 64th pixel",
    "the runs of a palette-run record pass the 64th pixel",
    "the split of a two-colour record leaves nothing to the second colour",
};

// One record, read from the front of some bytes.
struct Parse {
    size_t length;      // with a fault, the offset of the byte at fault
    const char* fault;  // null when the record is in order
};

// The first fault is the one that counts, of those at bytes that are there.
class RecordFaults {
public:
    RecordFaults(const uint8_t* begin, size_t size) : begin_(begin), end_(begin + size) {}

    void check(bool inOrder, const uint8_t* at, const char* fault) {
        if (!inOrder && fault_ == nullptr && at < end_) {
            at_ = at;
            fault_ = fault;
        }
    }
    // The verdict on a record that ends at `end`.
    Parse parse(const uint8_t* end) const {
        if (fault_ != nullptr) {
            return {static_cast<size_t>(at_ - begin_), fault_};
        }
        return end > end_
                   ? Parse{static_cast<size_t>(end_ - begin_), "the file ends inside a tile record"}
                   : Parse{static_cast<size_t>(end - begin_), nullptr};
    }

private:
    const uint8_t* begin_;
    const uint8_t* end_;
    const uint8_t* at_ = nullptr;
    const char* fault_ = nullptr;
};

Parse parseRecord(std::span<const uint8_t> bytes, int type) {
    Source source(bytes);
    const uint8_t* const record = source.record();
    RecordFaults faults(record, std::min(bytes.size(), size_t{kMaxRecordBytes}));
    const int colourType = type % kColourTypes;
    int covered = 0;
    const uint8_t* end = walkColours<RecordForm::kFile>(record, colourType, [&](const Run& run) {
        if (run.colour != nullptr) {
            covered += run.length;
            faults.check(covered <= kTilePixels && run.length > 0, run.control,
                         kRunFaults[colourType / 2]);
        }
    });
    if (type >= kColourTypes) {
        const uint8_t first = *end;
        faults.check(!isOneAlphaByte(first) || (first & kAlphaFlatMask) == kAlphaFlatBit, end,
                     "the first byte of an alpha record is neither of its two forms");
        end = walkAlpha(end, [&](const uint8_t* run, int before) {
            faults.check(before + (*run >> 4) + 1 <= kTilePixels, run,
                         "the runs of an alpha record pass the 64th pixel");
        });
    }
    return faults.parse(end);
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
    bool checkRecordNumbers(int frame, const uint16_t* entries);
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
    layout_.headerBytes = blockHeaderBytes(file_.alpha);
    if (!need(layout_.headerBytes, "a block header")) {
        return false;
    }
    BlockHeader& header = layout_.header;
    Source source(bytes_.subspan(at_));
    readBlockHeader(source, file_.alpha, header);
    const int sum = std::accumulate(std::begin(header.typeCounts), std::end(header.typeCounts), 0);
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

// `entries` says where in the block's map entries each tile's own stands.
bool Checker::checkRecordNumbers(int frame, const uint16_t* entries) {
    const uint8_t* const words = bytes_.data() + codesAt_ + 2 * frame * codeWordsFor(tiles_);
    for (int tile = 0; tile < tiles_; ++tile) {
        const uint16_t word = le16(words + 2 * (tile / kCodesPerWord));
        const int code = (word >> (kCodeBits * (tile % kCodesPerWord))) & kCodeMask;
        if (code == CODE_FLAT || code == CODE_EMPTY) {
            continue;
        }
        const size_t at = mapAt_ + size_t{2} * entries[tile];
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
    // The maps of the frames, were each entry its own number.
    std::vector<uint16_t> numbers(layout_.mapBytes / 2);
    std::iota(numbers.begin(), numbers.end(), uint16_t{0});
    static_assert(kMaxTiles * kFramesPerBlock <= UINT16_MAX);
    std::vector<uint16_t> maps(static_cast<size_t>(layout_.frames * tiles_));
    rebuildAllMaps(numbers.data(), bytes_.data() + runsAt_, tiles_, layout_.frames, maps.data(),
                   tiles_);
    for (int frame = 0; frame < layout_.frames; ++frame) {
        if (!checkRecordNumbers(frame, maps.data() + frame * tiles_)) {
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
            const Parse record = parseRecord(bytes_.subspan(at_), type);
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
    Source source(bytes);
    header = readFileHeader(source);
    return true;
}

Verdict validate(std::span<const uint8_t> bytes, std::vector<BlockLayout>* layouts) {
    return Checker(bytes, layouts).run();
}

}  // namespace clip
