#include "clip/source.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "common/bytes.h"

namespace clip {

Source::~Source() {
    if (file_ != nullptr && real_ > at_) {
        fseek(file_, static_cast<long>(at_ - real_), SEEK_CUR);
    }
}

size_t Source::readFile(uint8_t* bytes, size_t count) {
    const size_t got = file_ == nullptr || ended_ ? 0 : fread(bytes, 1, count, file_);
    ended_ = got < count;
    memset(bytes + got, 0, count - got);
    return got;
}

void Source::refill() {
    const auto left = static_cast<size_t>(std::max(real_ - at_, ptrdiff_t{0}));
    std::copy_n(at_, left, window_);
    real_ = window_ + left + readFile(window_ + left, kWindow - left);
    at_ = window_;
    end_ = window_ + kWindow;
}

void Source::take(uint8_t* bytes, size_t count) {
    const size_t there = std::min(count, static_cast<size_t>(end_ - at_));
    std::copy_n(at_, there, bytes);
    at_ += there;
    if (there < count) {
        readFile(bytes + there, count - there);
    }
}

void Source::takeWords(uint16_t* words, size_t count) {
    uint8_t* bytes = reinterpret_cast<uint8_t*>(words);
    take(bytes, 2 * count);
    for (size_t i = 0; i < count; ++i) {
        words[i] = le16(bytes + 2 * i);
    }
}

FileHeader readFileHeader(Source& source) {
    uint8_t bytes[kHeaderBytes];
    source.take(bytes, sizeof bytes);
    return {bytes[0], bytes[1], le16(bytes + 2), le16(bytes + 4),
            bytes[6], bytes[7], le16(bytes + 8)};
}

bool headerFits(const FileHeader& header) {
    return header.frameCount >= 1 && header.frameCount <= kMaxFrames && header.alpha <= 1 &&
           header.height <= kFrameHeight && header.blockCount == blocksFor(header.frameCount);
}

void readBlockHeader(Source& source, int alpha, BlockHeader& header) {
    uint8_t fixed[kBlockHeaderBytes];
    source.take(fixed, sizeof fixed);
    header.recordCount = le16(fixed);
    header.recordWords = le32(fixed + 2);
    header.mapWords = le32(fixed + 6);
    std::fill(std::begin(header.typeCounts), std::end(header.typeCounts), uint16_t{0});
    source.takeWords(header.typeCounts, static_cast<size_t>(typeSlots(alpha)));
    source.takeWords(header.palette, kPaletteEntries);
}

}  // namespace clip
