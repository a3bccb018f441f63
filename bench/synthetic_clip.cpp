#include "synthetic_clip.h"

#include <algorithm>
#include <random>

#include "clip/format.h"
#include "common/bytes.h"

namespace {

using Bytes = std::vector<uint8_t>;
using clip::kMaxTiles;
using clip::kTilePixels;

class Writer {
public:
    Writer(TileKind kind, int frames, int changed, bool alpha)
        : kind_(kind), frames_(frames), changed_(changed), alpha_(alpha) {}

    Bytes clip() {
        const int blocks = clip::blocksFor(frames_);
        byte(clip::kVersion);
        byte(100);
        word(kFrameWidth);
        word(kFrameHeight);
        byte(alpha_ ? 1 : 0);
        byte(blocks);
        word(frames_);
        for (int block = 0; block < blocks; ++block) {
            writeBlock(clip::framesInBlock(block, blocks, frames_));
        }
        return out_;
    }

private:
    void byte(int value) { out_.push_back(static_cast<uint8_t>(value)); }
    void word(int value) {
        byte(value & 255);
        byte(value >> 8 & 255);
    }
    int below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }

    // Records of both types of the pair, the first half of the even one.
    void writeRecords() {
        for (int record = 0; record < recordCount(); ++record) {
            writeRecord();
            if (alpha_) {
                byte(0);
                for (int covered = 0; covered < kTilePixels;) {
                    const int length = std::min(1 + below(16), kTilePixels - covered);
                    byte((length - 1) << 4 | below(16));
                    covered += length;
                }
            }
        }
    }

    void writeRecord() {
        switch (kind_) {
            case TileKind::kFlat:
                break;
            case TileKind::kRaw:
                for (int i = 0; i < kTilePixels; ++i) {
                    word(below(65536));
                }
                break;
            case TileKind::kPalette:
                for (int i = 0; i < kTilePixels; ++i) {
                    byte(below(256));
                }
                break;
            case TileKind::kFourRuns:
                writeFourRuns();
                break;
            case TileKind::kShortRuns:
                writeShortRuns();
                break;
            case TileKind::kPaletteRuns:
                writePaletteRuns();
                break;
            case TileKind::kTwoColours:
                byte(below(63) | 0x80);
                word(below(65536));
                byte(below(256));
                break;
        }
    }

    // Three runs of up to 20 pixels leave some for the fourth.
    void writeFourRuns() {
        const bool indexed = below(2) != 0;
        word(below(20) | below(20) << 5 | below(20) << 10 | (indexed ? 0x8000 : 0));
        for (int run = 0; run < 4; ++run) {
            indexed ? byte(below(256)) : word(below(65536));
        }
    }

    void writeShortRuns() {
        for (int covered = 0; covered < kTilePixels;) {
            const int first = std::min(1 + below(8), kTilePixels - covered);
            const int second =
                std::clamp(1 + below(8), 1, std::max(1, kTilePixels - covered - first));
            const int widths = below(4);
            byte((first - 1) << 5 | (second - 1) << 2 | widths);
            (widths & 2) != 0 ? byte(below(256)) : word(below(65536));
            covered += first;
            if (covered < kTilePixels) {
                (widths & 1) != 0 ? byte(below(256)) : word(below(65536));
                covered += second;
            }
        }
    }

    void writePaletteRuns() {
        for (int covered = 0, group = 0; covered < kTilePixels; ++group) {
            const int room = kTilePixels - covered;
            // Two complete groups come first: 10 pixels a run leave room for them.
            const int most = group < 2 ? 10 : 16;
            const int first = std::min(1 + below(most), room);
            const int second = std::clamp(1 + below(most), 1, std::max(1, room - first));
            byte((first - 1) << 4 | (second - 1));
            byte(below(256));
            covered += first;
            if (covered < kTilePixels) {
                byte(below(256));
                covered += second;
            }
        }
    }

    int recordCount() const { return kind_ == TileKind::kFlat ? 0 : kMaxTiles; }

    void writeTypeCounts() {
        const int first = kind_ == TileKind::kFlat      ? 0
                          : kind_ == TileKind::kRaw     ? clip::TYPE_RAW
                          : kind_ == TileKind::kPalette ? clip::TYPE_PALETTE
                                                        : evenType();
        const int types = kind_ == TileKind::kRaw || kind_ == TileKind::kPalette ? 1 : 2;
        for (int type = 0; type < clip::typeSlots(alpha_ ? 1 : 0); ++type) {
            const int colourType = alpha_ ? type - clip::kColourTypes : type;
            word(colourType >= first && colourType < first + types ? recordCount() / types : 0);
        }
    }

    int evenType() const {
        switch (kind_) {
            case TileKind::kFourRuns:
                return clip::TYPE_FOUR_RUNS;
            case TileKind::kShortRuns:
                return clip::TYPE_SHORT_RUNS;
            case TileKind::kPaletteRuns:
                return clip::TYPE_PALETTE_RUNS;
            default:
                return clip::TYPE_TWO_COLOURS;
        }
    }

    void writeBlock(int frames) {
        constexpr int kRecordWords = kMaxTiles * clip::kMaxRecordBytes / 4;
        const int mapWords = frames * kMaxTiles / 2;
        word(recordCount());
        word(kRecordWords & 0xFFFF);
        word(kRecordWords >> 16);
        word(mapWords & 0xFFFF);
        word(mapWords >> 16);
        writeTypeCounts();
        for (int i = 0; i < clip::kPaletteEntries; ++i) {
            word(below(65536));
        }
        Bytes runs;
        std::vector<uint16_t> entries;
        for (int i = 0; i < kMaxTiles; ++i) {
            entries.push_back(
                static_cast<uint16_t>(kind_ == TileKind::kFlat ? below(entryValues()) : i));
        }
        makeChanges(frames, runs, entries);
        out_.insert(out_.end(), runs.begin(), runs.end());
        for (const uint16_t entry : entries) {
            word(entry);
        }
        for (int i = 0; i < frames * clip::codeWordsFor(kMaxTiles); ++i) {
            // Codes 1 to 5, the others a word on: every path has its turn, the same in each frame.
            word(kind_ == TileKind::kFlat ? 0 : i % 2 == 0 ? 0x58D1 : 0x5D1A);
        }
        writeRecords();
    }

    int entryValues() const { return kind_ == TileKind::kFlat ? 65536 : kMaxTiles; }

    // Records are numbered as the first frame needs them; later frames take others near by.
    void makeChanges(int frames, Bytes& runs, std::vector<uint16_t>& entries) {
        std::vector<uint16_t> map = entries;
        for (int frame = 1; frame < frames; ++frame) {
            std::vector<bool> changes(kMaxTiles);
            for (size_t i = 0; i < changes.size(); ++i) {
                changes[i] = below(100) < changed_;
                if (changes[i]) {
                    map[i] = static_cast<uint16_t>((map[i] + 1 + below(50)) % entryValues());
                    entries.push_back(map[i]);
                }
            }
            for (size_t start = 0; start < changes.size();) {
                size_t end = start + 1;
                while (end < changes.size() && changes[end] == changes[start] &&
                       end - start < clip::kMaxRunLength) {
                    ++end;
                }
                runs.push_back(static_cast<uint8_t>((changes[start] ? clip::kRunChanged : 0) |
                                                    (end - start - 1)));
                start = end;
            }
        }
    }

    TileKind kind_;
    int frames_;
    int changed_;
    bool alpha_;
    std::mt19937 random_{19};
    Bytes out_;
};

}  // namespace

std::vector<uint8_t> syntheticClip(TileKind kind, int frames, int changed, bool alpha) {
    return Writer(kind, frames, changed, alpha).clip();
}
