#include "tools/clip/encoder/record_choice.h"

#include <algorithm>
#include <array>
#include <bit>

#include "tools/clip/encoder/record_forms.h"

namespace maker {

namespace {

constexpr int kPlainCode = clip::CODE_FIRST_RECORD;  // raw and palette records heed no code
constexpr int kParities = 2;

using MemberMask = uint32_t;  // bit g: the picture along walk g

// One of the eight sequences that a shape can be written as.
struct Reading {
    std::array<Run, clip::kTilePixels> runs;
    int count = 0;
    RunForm form{};
};

MemberMask memberMask(const Shape& shape) {
    MemberMask mask = 0;
    for (size_t g = 0; g < kWalks; ++g) {
        mask |= shape.members[g] != kNoPicture ? MemberMask{1} << g : 0;
    }
    return mask;
}

// The members that a record of reading `walk` paints with some code.
MemberMask covered(size_t walk, size_t parity) {
    MemberMask mask = 0;
    for (size_t g = 0; g < kWalks; ++g) {
        mask |= kCodeOfWalk[parity][kComposed[g][walk]] != 0 ? MemberMask{1} << g : 0;
    }
    return mask;
}

struct Choice {
    size_t walk = 0;
    size_t parity = 0;
    MemberMask members = 0;
    int bytes = 0;
};

// Adds the records of one shape after another to a set.
class Chooser {
public:
    Chooser(const std::vector<Tile>& pictures, const PaletteIndex& palette, RecordSet& set)
        : pictures_(pictures), palette_(palette), set_(set) {}

    void add(const Shape& shape);

private:
    Choice bestRuns(MemberMask wanted) const;
    void findReadings(const Shape& shape, int plain);
    void addPlain(const Shape& shape, int type);
    void addRuns(const Shape& shape, const Choice& choice);
    void begin(const Shape& shape, int colourType);
    void end(const Shape& shape);

    const std::vector<Tile>& pictures_;
    const PaletteIndex& palette_;
    RecordSet& set_;
    std::array<Reading, kWalks> readings_{};
};

// A reading of so many runs that even palette runs, three bytes a pair, could not beat `plain`
// bytes is not measured: it counts as that long and loses against the plain records.
void Chooser::findReadings(const Shape& shape, int plain) {
    const Sequence picture = paintAlong(shape.sequence, 0);
    for (size_t walk = 0; walk < kWalks; ++walk) {
        Reading& reading = readings_[walk];
        reading.count = findRuns(readAlong(picture, walk), reading.runs.data());
        reading.form = reading.count * 3 / 2 < plain
                           ? smallestRunForm(reading.runs.data(), reading.count, palette_)
                           : RunForm{clip::TYPE_SHORT_RUNS, plain};
    }
}

// The run record that paints the most of the wanted members; of those the smallest.
Choice Chooser::bestRuns(MemberMask wanted) const {
    Choice best;
    for (size_t walk = 0; walk < kWalks; ++walk) {
        for (size_t parity = 0; parity < kParities; ++parity) {
            const Choice choice{walk, parity, covered(walk, parity) & wanted,
                                readings_[walk].form.bytes};
            const int more = std::popcount(choice.members) - std::popcount(best.members);
            if (more > 0 || (more == 0 && choice.bytes < best.bytes)) {
                best = choice;
            }
        }
    }
    return best;
}

void Chooser::begin(const Shape& shape, int colourType) {
    const int type =
        allAre(shape.alpha, clip::kAlphaOpaque) ? colourType : colourType + clip::kColourTypes;
    set_.records.push_back(
        {static_cast<uint8_t>(type), static_cast<uint32_t>(set_.bytes.size()), 0});
}

void Chooser::end(const Shape& shape) {
    Record& record = set_.records.back();
    if (record.type >= clip::kColourTypes) {
        appendAlpha(shape.alpha, set_.bytes);
    }
    record.length = static_cast<uint32_t>(set_.bytes.size()) - record.offset;
}

void Chooser::addPlain(const Shape& shape, int type) {
    for (const uint32_t picture : shape.members) {
        if (picture != kNoPicture) {
            set_.uses[picture] = {static_cast<uint32_t>(set_.records.size()), kPlainCode};
            begin(shape, type);
            appendPlain(type, pictures_[picture].colours, palette_, set_.bytes);
            end(shape);
        }
    }
}

void Chooser::addRuns(const Shape& shape, const Choice& choice) {
    for (size_t g = 0; g < kWalks; ++g) {
        if ((choice.members >> g & 1) != 0) {
            set_.uses[shape.members[g]] = {static_cast<uint32_t>(set_.records.size()),
                                           kCodeOfWalk[choice.parity][kComposed[g][choice.walk]]};
        }
    }
    const Reading& reading = readings_[choice.walk];
    begin(shape, reading.form.type + static_cast<int>(choice.parity));
    appendRuns(reading.form.type, reading.runs.data(), reading.count, palette_, set_.bytes);
    end(shape);
}

void Chooser::add(const Shape& shape) {
    const int type = plainType(shape.sequence, palette_);
    const int alpha = allAre(shape.alpha, clip::kAlphaOpaque) ? 0 : alphaBytes(shape.alpha);
    MemberMask wanted = memberMask(shape);
    const int plain = std::popcount(wanted) * (plainBytes(type) + alpha);
    findReadings(shape, plain);

    std::array<Choice, kWalks> choices{};
    size_t used = 0;
    int runBytes = 0;
    while (wanted != 0) {
        choices[used] = bestRuns(wanted);
        runBytes += choices[used].bytes + alpha;
        wanted &= ~choices[used].members;
        ++used;
    }
    if (runBytes >= plain) {
        addPlain(shape, type);
        return;
    }
    for (size_t i = 0; i < used; ++i) {
        addRuns(shape, choices[i]);
    }
}

}  // namespace

// Each run of a colour gains a byte, in whatever run type the picture ends up; so does each pixel
// of a picture too rich for runs, as there the runs are nearly the pixels.
std::vector<uint32_t> weighColours(std::span<const Shape> shapes) {
    std::vector<uint32_t> weights(kColours, 0);
    std::array<Run, clip::kTilePixels> byRows{};
    std::array<Run, clip::kTilePixels> byColumns{};
    for (const Shape& shape : shapes) {
        const int rows = findRuns(shape.sequence, byRows.data());
        const int columns = findRuns(readAlong(paintAlong(shape.sequence, 0), 4), byColumns.data());
        const int count = std::min(rows, columns);
        const Run* runs = rows <= columns ? byRows.data() : byColumns.data();
        for (int i = 0; i < count; ++i) {
            ++weights[runs[i].colour];
        }
    }
    return weights;
}

RecordSet chooseRecords(const std::vector<Tile>& pictures, std::span<const Shape> shapes,
                        const PaletteIndex& palette) {
    RecordSet set;
    set.uses.resize(pictures.size());
    Chooser chooser(pictures, palette, set);
    for (const Shape& shape : shapes) {
        chooser.add(shape);
    }
    return set;
}

uint32_t emptyTileRecord(RecordSet& set) {
    for (size_t i = 0; i < set.records.size(); ++i) {
        if (set.records[i].type % clip::kColourTypes >= clip::TYPE_FOUR_RUNS) {
            return static_cast<uint32_t>(i);
        }
    }
    const uint32_t offset = static_cast<uint32_t>(set.bytes.size());
    appendFiller(clip::TYPE_TWO_COLOURS, set.bytes);
    set.records.push_back(
        {clip::TYPE_TWO_COLOURS, offset, static_cast<uint32_t>(set.bytes.size()) - offset});
    return static_cast<uint32_t>(set.records.size() - 1);
}

}  // namespace maker
