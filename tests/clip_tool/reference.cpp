#include "clip_tool/reference.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace reference {

namespace {

class Reader {
public:
    explicit Reader(const std::vector<uint8_t>& bytes) : bytes_(bytes) {}

    unsigned byte() { return bytes_.at(at_++); }
    unsigned word() {
        const unsigned low = byte();
        return low + 256 * byte();
    }
    unsigned dword() {
        const unsigned low = word();
        return low + 65536 * word();
    }
    size_t at() const { return at_; }
    std::vector<uint8_t> since(size_t from) const {
        return {bytes_.begin() + static_cast<long>(from), bytes_.begin() + static_cast<long>(at_)};
    }

private:
    const std::vector<uint8_t>& bytes_;
    size_t at_ = 0;
};

using Colours = std::vector<unsigned>;  // one a pixel

void add(Colours& colours, unsigned length, unsigned colour) {
    colours.insert(colours.end(), length, colour);
}

struct Palette {
    const std::vector<unsigned>& colours;
    unsigned read(Reader& in, bool indexed) const {
        return indexed ? colours.at(in.byte()) : in.word();
    }
};

Colours readFourRuns(Reader& in, const Palette& palette) {
    const unsigned header = in.word();
    const bool indexed = header / 32768 == 1;
    const unsigned a = header % 32 + 1;
    const unsigned b = header / 32 % 32 + 1;
    const unsigned c = header / 1024 % 32 + 1;
    Colours colours;
    add(colours, a, palette.read(in, indexed));
    add(colours, b, palette.read(in, indexed));
    if (a + b < 64) {
        add(colours, c, palette.read(in, indexed));
        if (a + b + c < 64) {
            add(colours, 64 - a - b - c, palette.read(in, indexed));
        }
    }
    return colours;
}

Colours readShortRuns(Reader& in, const Palette& palette) {
    Colours colours;
    while (colours.size() < 64) {
        const unsigned control = in.byte();
        add(colours, control / 32 + 1, palette.read(in, control / 2 % 2 == 1));
        if (colours.size() != 64) {
            add(colours, control / 4 % 8 + 1, palette.read(in, control % 2 == 1));
        }
    }
    return colours;
}

Colours readPaletteRuns(Reader& in, const Palette& palette) {
    Colours colours;
    for (int group = 0; group < 2 || colours.size() < 64; ++group) {
        const unsigned control = in.byte();
        add(colours, control / 16 + 1, palette.read(in, true));
        if (group < 2 || colours.size() != 64) {
            add(colours, control % 16 + 1, palette.read(in, true));
        }
    }
    return colours;
}

Colours readTwoColours(Reader& in, const Palette& palette) {
    const unsigned control = in.byte();
    Colours colours;
    add(colours, control % 64 + 1, palette.read(in, control / 64 % 2 == 1));
    add(colours, 63 - control % 64, palette.read(in, control / 128 == 1));
    return colours;
}

Colours readColours(Reader& in, unsigned type, const Palette& palette) {
    Colours colours;
    switch (type) {
        case 0:
        case 1:
            for (int i = 0; i < 64; ++i) {
                add(colours, 1, palette.read(in, type == 1));
            }
            break;
        case 2:
        case 3:
            colours = readFourRuns(in, palette);
            break;
        case 4:
        case 5:
            colours = readShortRuns(in, palette);
            break;
        case 6:
        case 7:
            colours = readPaletteRuns(in, palette);
            break;
        case 8:
        case 9:
            colours = readTwoColours(in, palette);
            break;
        default:
            throw std::out_of_range("record type");
    }
    if (colours.size() != 64) {
        throw std::out_of_range("a record that does not cover 64 pixels");
    }
    return colours;
}

std::vector<unsigned> readAlpha(Reader& in) {
    std::vector<unsigned> levels;
    const unsigned first = in.byte();
    if (first >= 32) {
        levels.assign(64, first - 32);
    }
    while (levels.size() < 64) {
        const unsigned run = in.byte();
        levels.insert(levels.end(), run / 16 + 1, run % 16);
    }
    if (levels.size() != 64 || levels[0] > 15) {
        throw std::out_of_range("alpha record");
    }
    return levels;
}

struct Place {
    int x, y;
};

// Where the i-th pixel of a run record goes, as a table of the two starting corners and directions.
Place placeOf(int i, unsigned code, bool oddType) {
    const int slow = i / 8;
    const int fast = i % 8;
    const Place byRows[] = {{fast, slow}, {7 - fast, slow}, {fast, 7 - slow}, {7 - fast, 7 - slow}};
    const Place byColumns[] = {
        {slow, fast}, {7 - slow, fast}, {slow, 7 - fast}, {7 - slow, 7 - fast}};
    if (code >= 1 && code <= 4) {
        return oddType ? byColumns[code - 1] : byRows[code - 1];
    }
    if (code != 5 && code != 6) {
        throw std::out_of_range("code");
    }
    // Codes 5 and 6 walk like codes 3 and 4 of the other kind.
    return oddType ? byRows[code - 3] : byColumns[code - 3];
}

void drawTile(const Block& block, unsigned entry, unsigned code, size_t tile, Picture& picture) {
    std::array<unsigned, 64> pixels{};
    std::array<unsigned, 64> alpha{};
    if (code == 0) {
        pixels.fill(entry);
        alpha.fill(15);
    } else if (code <= 6 || (entry < block.types.size() && block.types[entry] % 10 < 2)) {
        // A raw or palette record shows even under the code of an empty tile.
        alpha.fill(15);
        const unsigned type = block.types.at(entry);
        Reader in(block.records.at(entry));
        const Colours colours = readColours(in, type % 10, {block.palette});
        for (int i = 0; i < 64; ++i) {
            const Place place =
                type % 10 < 2 ? Place{i % 8, i / 8} : placeOf(i, code, type % 2 == 1);
            pixels[static_cast<size_t>(place.y * 8 + place.x)] = colours[static_cast<size_t>(i)];
        }
        if (type >= 10) {
            const std::vector<unsigned> levels = readAlpha(in);
            std::copy(levels.begin(), levels.end(), alpha.begin());
        }
    }
    if (code == 7) {
        alpha.fill(0);
    }
    for (size_t i = 0; i < 64; ++i) {
        const size_t at = (tile / 80 * 8 + i / 8) * 640 + tile % 80 * 8 + i % 8;
        picture.pixels[at] = static_cast<uint16_t>(pixels[i]);
        picture.alpha[at] = static_cast<uint8_t>(alpha[i]);
    }
}

void readMaps(Reader& in, Block& block, size_t tiles, size_t frames) {
    block.frames.assign(frames, {});
    std::vector<std::vector<bool>> changed(frames);
    for (size_t f = 1; f < frames; ++f) {
        while (changed[f].size() < tiles) {
            const unsigned run = in.byte();
            changed[f].insert(changed[f].end(), run % 128 + 1, run >= 128);
        }
        if (changed[f].size() != tiles) {
            throw std::out_of_range("change runs past the frame");
        }
    }
    const size_t from = in.at();
    for (size_t f = 0; f < frames; ++f) {
        for (size_t tile = 0; tile < tiles; ++tile) {
            const bool own = f == 0 || changed[f][tile];
            block.frames[f].entries.push_back(own ? in.word() : block.frames[f - 1].entries[tile]);
        }
    }
    block.mapEntries = static_cast<unsigned>((in.at() - from) / 2);
    for (Frame& frame : block.frames) {
        for (size_t tile = 0; tile < tiles; tile += 5) {
            unsigned word = in.word();
            for (int i = 0; i < 5; ++i, word /= 8) {
                frame.codes.push_back(word % 8);
            }
        }
    }
}

void readRecords(Reader& in, Block& block) {
    const size_t from = in.at();
    for (unsigned type = 0; type < block.typeCounts.size(); ++type) {
        for (unsigned i = 0; i < block.typeCounts[type]; ++i) {
            const size_t start = in.at();
            readColours(in, type % 10, {block.palette});
            if (type >= 10) {
                readAlpha(in);
            }
            block.types.push_back(type);
            block.records.push_back(in.since(start));
        }
    }
    block.recordBytes = static_cast<unsigned>(in.at() - from);
}

}  // namespace

Clip parse(const std::vector<uint8_t>& bytes) {
    Reader in(bytes);
    Clip clip{};
    if (in.byte() != 19) {
        throw std::out_of_range("version");
    }
    clip.quality = in.byte();
    clip.storedWidth = in.word();
    clip.height = in.word();
    clip.alpha = in.byte();
    const unsigned blocks = in.byte();
    clip.frameCount = in.word();
    for (unsigned b = 0; b < blocks; ++b) {
        Block& block = clip.blocks.emplace_back();
        const unsigned records = in.word();
        block.announcedRecordBytes = 4 * in.dword();
        block.announcedEntries = 2 * in.dword();
        for (unsigned type = 0; type < 10 * (clip.alpha + 1); ++type) {
            block.typeCounts.push_back(in.word());
        }
        for (int i = 0; i < 256; ++i) {
            block.palette.push_back(in.word());
        }
        readMaps(in, block, clip.height / 8 * 80, std::min(clip.frameCount - 16 * b, 16U));
        readRecords(in, block);
        if (block.records.size() != records) {
            throw std::out_of_range("record count");
        }
    }
    clip.length = in.at();
    return clip;
}

std::vector<Picture> decode(const Clip& clip) {
    std::vector<Picture> pictures;
    for (const Block& block : clip.blocks) {
        for (const Frame& frame : block.frames) {
            Picture& picture = pictures.emplace_back();
            picture.pixels.resize(640 * clip.height);
            picture.alpha.resize(640 * clip.height);
            for (size_t tile = 0; tile < frame.entries.size(); ++tile) {
                drawTile(block, frame.entries[tile], frame.codes[tile], tile, picture);
            }
        }
    }
    return pictures;
}

Player::Player(const Clip& clip) : clip_(clip) {
    picture_.pixels.resize(640 * clip.height);
    picture_.alpha.resize(640 * clip.height);
}

const Picture& Player::show(int frame) {
    const Block& block = clip_.blocks.at(static_cast<size_t>(frame / 16));
    const Frame& next = block.frames.at(static_cast<size_t>(frame % 16));
    const bool all = last_ == nullptr || frame % 16 == 0;
    for (size_t tile = 0; tile < next.entries.size(); ++tile) {
        if (all || next.entries[tile] != last_->entries[tile] ||
            next.codes[tile] != last_->codes[tile]) {
            drawTile(block, next.entries[tile], next.codes[tile], tile, picture_);
        }
    }
    last_ = &next;
    return picture_;
}

}  // namespace reference
