#include "tools/clip/encoder/record_forms.h"

#include <algorithm>
#include <cassert>

#include "tools/clip/encoder/writer.h"

namespace maker {

namespace {

constexpr int kFourRuns = 4;
constexpr int kFourRunsLongest = 32;  // of its first three runs; the last takes what is left
constexpr int kTooLong = 1 << 20;     // bytes of a form that cannot hold the tile

// The types of groups of two runs: where the control byte has the lengths, and its bits for colours
// in the palette. Runs of type 6 are all there.
struct GroupForm {
    int longest;
    int firstShift, secondShift;
    int firstIndexed, secondIndexed;
};
constexpr GroupForm kShortRuns = {8, 5, 2, 2, 1};
constexpr GroupForm kPaletteRuns = {16, 4, 0, 0, 0};

void appendColour(std::vector<uint8_t>& out, uint16_t colour, bool indexed,
                  const PaletteIndex& palette) {
    if (indexed) {
        out.push_back(palette.of(colour));
    } else {
        append16(out, colour);
    }
}

// Lays the runs out in the up to four pieces of types 2 and 3; 0 when they do not fit. Long runs
// are split as late as possible, and a single run over two pieces, since A and B are always there.
int fourPieces(const Run* runs, int count, Run* pieces) {
    int used = 0;
    for (int i = 0; i < count; ++i) {
        int left = runs[i].length;
        while (left > 0) {
            if (used == kFourRuns) {
                return 0;
            }
            const bool last = used == kFourRuns - 1;
            const int length = last ? left : std::min(left, kFourRunsLongest);
            pieces[used++] = {runs[i].colour, length};
            left -= length;
        }
    }
    return used;
}

bool allIndexed(const Run* runs, int count, const PaletteIndex& palette) {
    return std::all_of(runs, runs + count,
                       [&palette](const Run& run) { return palette.has(run.colour); });
}

// Runs cut into pieces of at most `longest` pixels.
int cutRuns(const Run* runs, int count, int longest, Run* pieces) {
    int used = 0;
    for (int i = 0; i < count; ++i) {
        for (int left = runs[i].length; left > 0; left -= longest) {
            pieces[used++] = {runs[i].colour, std::min(left, longest)};
        }
    }
    return used;
}

// Palette runs of at most 16 pixels make at least four pieces of a tile, so the two groups that are
// always complete are always there.
int groupsBytes(const GroupForm& form, const Run* runs, int count, const PaletteIndex& palette) {
    int pieces = 0;
    int colours = 0;
    for (int i = 0; i < count; ++i) {
        const int parts = (runs[i].length + form.longest - 1) / form.longest;
        pieces += parts;
        colours += parts * (palette.has(runs[i].colour) ? 1 : 2);
    }
    return (pieces + 1) / 2 + colours;
}

int twoColoursBytes(const Run* runs, int count, const PaletteIndex& palette) {
    return 1 + (palette.has(runs[0].colour) ? 1 : 2) +
           (palette.has(runs[count - 1].colour) ? 1 : 2);
}

void appendFourRuns(const Run* runs, int count, const PaletteIndex& palette,
                    std::vector<uint8_t>& out) {
    Run pieces[kFourRuns];
    const int used = fourPieces(runs, count, pieces);
    assert(used >= 2);
    const bool indexed = allIndexed(runs, count, palette);
    unsigned header = indexed ? clip::kFourRunsPaletteBit : 0;
    for (int i = 0; i < std::min(used, 3); ++i) {
        header |= static_cast<unsigned>(pieces[i].length - 1) << (5 * i);
    }
    append16(out, header);
    for (int i = 0; i < used; ++i) {
        appendColour(out, pieces[i].colour, indexed, palette);
    }
}

void appendGroups(const GroupForm& form, const Run* runs, int count, const PaletteIndex& palette,
                  std::vector<uint8_t>& out) {
    Run pieces[clip::kTilePixels];
    const int used = cutRuns(runs, count, form.longest, pieces);
    for (int i = 0; i < used; i += 2) {
        const bool pair = i + 1 < used;
        const bool first = palette.has(pieces[i].colour);
        const bool second = pair && palette.has(pieces[i + 1].colour);
        out.push_back(static_cast<uint8_t>(
            (pieces[i].length - 1) << form.firstShift |
            (pair ? pieces[i + 1].length - 1 : 0) << form.secondShift |
            (first ? form.firstIndexed : 0) | (second ? form.secondIndexed : 0)));
        appendColour(out, pieces[i].colour, first, palette);
        if (pair) {
            appendColour(out, pieces[i + 1].colour, second, palette);
        }
    }
}

// A tile of one colour is split after its first pixel: the split leaves the second colour at least
// one pixel.
void appendTwoColours(const Run* runs, int count, const PaletteIndex& palette,
                      std::vector<uint8_t>& out) {
    const int split = count == 1 ? 0 : runs[0].length - 1;
    const bool first = palette.has(runs[0].colour);
    const bool second = palette.has(runs[count - 1].colour);
    out.push_back(static_cast<uint8_t>(split | (first ? 64 : 0) | (second ? 128 : 0)));
    appendColour(out, runs[0].colour, first, palette);
    appendColour(out, runs[count - 1].colour, second, palette);
}

// Calls `take(length, level)` for each alpha run of at most 16 pixels.
template <typename Take>
void forAlphaRuns(const AlphaTile& alpha, Take take) {
    size_t from = 0;
    while (from < alpha.size()) {
        size_t to = from + 1;
        while (to < alpha.size() && to - from < kAlphaRunLongest && alpha[to] == alpha[from]) {
            ++to;
        }
        take(static_cast<int>(to - from), alpha[from]);
        from = to;
    }
}

}  // namespace

int findRuns(const Sequence& sequence, Run* runs) {
    int count = 0;
    for (size_t i = 0; i < sequence.size(); ++i) {
        if (i > 0 && sequence[i] == sequence[i - 1]) {
            ++runs[count - 1].length;
        } else {
            runs[count++] = {sequence[i], 1};
        }
    }
    return count;
}

RunForm smallestRunForm(const Run* runs, int count, const PaletteIndex& palette) {
    RunForm best{0, kTooLong};
    const auto offer = [&best](int type, int bytes) {
        if (bytes < best.bytes) {
            best = {type, bytes};
        }
    };
    if (count <= 2) {
        offer(clip::TYPE_TWO_COLOURS, twoColoursBytes(runs, count, palette));
    }
    const bool indexed = allIndexed(runs, count, palette);
    Run pieces[kFourRuns];
    const int used = count <= kFourRuns ? fourPieces(runs, count, pieces) : 0;
    if (used > 0) {
        offer(clip::TYPE_FOUR_RUNS, 2 + used * (indexed ? 1 : 2));
    }
    if (indexed) {
        offer(clip::TYPE_PALETTE_RUNS, groupsBytes(kPaletteRuns, runs, count, palette));
    }
    offer(clip::TYPE_SHORT_RUNS, groupsBytes(kShortRuns, runs, count, palette));
    return best;
}

void appendRuns(int type, const Run* runs, int count, const PaletteIndex& palette,
                std::vector<uint8_t>& out) {
    switch (type) {
        case clip::TYPE_FOUR_RUNS:
            return appendFourRuns(runs, count, palette, out);
        case clip::TYPE_SHORT_RUNS:
            return appendGroups(kShortRuns, runs, count, palette, out);
        case clip::TYPE_PALETTE_RUNS:
            return appendGroups(kPaletteRuns, runs, count, palette, out);
        default:
            assert(type == clip::TYPE_TWO_COLOURS);
            return appendTwoColours(runs, count, palette, out);
    }
}

int plainType(const Sequence& picture, const PaletteIndex& palette) {
    return std::all_of(picture.begin(), picture.end(),
                       [&palette](uint16_t colour) { return palette.has(colour); })
               ? clip::TYPE_PALETTE
               : clip::TYPE_RAW;
}

int plainBytes(int type) {
    return type == clip::TYPE_PALETTE ? clip::kTilePixels : 2 * clip::kTilePixels;
}

void appendPlain(int type, const Sequence& picture, const PaletteIndex& palette,
                 std::vector<uint8_t>& out) {
    for (const uint16_t colour : picture) {
        appendColour(out, colour, type == clip::TYPE_PALETTE, palette);
    }
}

int alphaBytes(const AlphaTile& alpha) {
    int bytes = 1;
    if (!allAre(alpha, alpha[0])) {
        forAlphaRuns(alpha, [&bytes](int, int) { ++bytes; });
    }
    return bytes;
}

void appendAlpha(const AlphaTile& alpha, std::vector<uint8_t>& out) {
    if (allAre(alpha, alpha[0])) {
        out.push_back(static_cast<uint8_t>(clip::kAlphaFlatBit | alpha[0]));
        return;
    }
    out.push_back(0);
    forAlphaRuns(alpha, [&out](int length, int level) {
        out.push_back(static_cast<uint8_t>((length - 1) << 4 | level));
    });
}

void appendFiller(int type, std::vector<uint8_t>& out) {
    const int colourType = type % clip::kColourTypes;
    switch (colourType & ~1) {
        case clip::TYPE_RAW:
            out.insert(out.end(), static_cast<size_t>(plainBytes(colourType)), 0);
            break;
        case clip::TYPE_FOUR_RUNS:
            out.insert(out.end(), {0xFF, 0x83, 0, 0});  // A and B of 32 pixels
            break;
        case clip::TYPE_SHORT_RUNS:
            for (int group = 0; group < 4; ++group) {
                out.insert(out.end(), {0xFF, 0, 0});  // 8 and 8 pixels
            }
            break;
        case clip::TYPE_PALETTE_RUNS:
            out.insert(out.end(), {0xFF, 0, 0, 0xFF, 0, 0});  // 16 pixels each
            break;
        default:
            out.insert(out.end(), {0xC0, 0, 0});  // 1 and 63 pixels
            break;
    }
    if (type >= clip::kColourTypes) {
        out.push_back(clip::kAlphaFlatBit | clip::kAlphaOpaque);
    }
}

}  // namespace maker
