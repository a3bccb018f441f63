// Short and palette runs, many tiles at once, where the processor looks up any byte of a register
// by 64 indices (AVX-512 with VBMI): what clip/tile_fast.cpp draws most of them with there.
// Included once for every vector width that is compiled; only tile_fast.cpp includes it.
//
// Nothing is walked. All groups of a record are found together, since a group's place is a look-up
// in places; sums of the lengths say where each run ends, and each pixel finds its run by halving
// among them. A step is done for all tiles before the next one, so that they overlap.
#if defined(VELMORA_TILE_BYTES_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VELMORA_TILE_BYTES_INL_H
#undef VELMORA_TILE_BYTES_INL_H
#else
#define VELMORA_TILE_BYTES_INL_H
#endif

#include <array>
#include <bit>
#include <cstdint>

#include "clip/paint.h"
#include "clip/tile_fast.h"
#include "clip/tile_lines-inl.h"

HWY_BEFORE_NAMESPACE();
namespace clip::fast::HWY_NAMESPACE {

#if defined(VELMORA_HIGHWAY) && HWY_TARGET == HWY_AVX3_DL

using Bytes = __m512i;
inline constexpr int kBytes = 64;
static_assert(kBytes == kTilePixels && kBytes < kMaxRecordBytes);

// The first runs of a record. Two tiles share a register.
inline constexpr int kMostRuns = 32;
static_assert(2 * kMostRuns == kBytes);
static_assert(kMostTogether <= 32, "a bit for each tile");
inline constexpr __mmask64 kRunMask = (uint64_t{1} << kMostRuns) - 1;

// A byte for each of them, as the steps below need it.
using RunBytes = uint8_t[kMostTogether][kMostRuns];
struct alignas(kBytes) BatchRuns {
    RunBytes starts;    // of the run's group in the record; 63 also stands for what lies behind
    RunBytes controls;  // the group's control byte
    RunBytes places;    // of the run's colour in the record
    RunBytes ends;      // pixels up to the run's end, at most 255
    RunBytes lows;      // of the colours
    RunBytes highs;
};

using ByteTable = std::array<uint8_t, kBytes>;

template <typename At>
constexpr ByteTable tableOf(At at) {
    ByteTable table{};
    for (unsigned i = 0; i < kBytes; ++i) {
        table[i] = static_cast<uint8_t>(at(i));
    }
    return table;
}

inline Bytes bytes(const ByteTable& table) {
    return _mm512_loadu_si512(table.data());
}
inline Bytes bytesAt(const void* from) {
    return _mm512_loadu_si512(from);
}
inline void storeBytes(void* to, Bytes value) {
    _mm512_storeu_si512(to, value);
}
inline Bytes lookUp(Bytes table, Bytes indices) {
    return _mm512_permutexvar_epi8(indices, table);
}
// The first half of a register.
inline void storeRuns(uint8_t* to, Bytes runs) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), _mm512_castsi512_si256(runs));
}
inline Bytes loadRuns(const uint8_t* from) {
    return _mm512_castsi256_si512(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(from)));
}

inline constexpr ByteTable kIota = tableOf([](unsigned i) { return i; });

// Lengths and places are made of control bytes in pairs, of a group's first and second run.
struct ShortRunBytes {
    // The group after the one at each byte; what lies behind the last byte counts as the last one.
    static Bytes next(Bytes record) {
        static constexpr ByteTable kLengths = tableOf([](unsigned i) {
            const unsigned low = i & 3;
            return 5 - (low & 1) - (low >> 1);
        });
        const Bytes lengths =
            _mm512_shuffle_epi8(bytes(kLengths), _mm512_and_si512(record, _mm512_set1_epi8(3)));
        return _mm512_min_epu8(_mm512_add_epi8(bytes(kIota), lengths),
                               _mm512_set1_epi8(kBytes - 1));
    }

    // Run i is of group i / 2, which stands as many steps from the first one. Steps of 1, 2, 4 and
    // 8 groups make them all.
    static Bytes starts(Bytes record) {
        Bytes step = next(record);
        Bytes starts = _mm512_maskz_permutexvar_epi8(0xCCCCCCCC, _mm512_setzero_si512(), step);
        step = lookUp(step, step);
        starts = _mm512_mask_permutexvar_epi8(starts, 0xF0F0F0F0, starts, step);
        step = lookUp(step, step);
        starts = _mm512_mask_permutexvar_epi8(starts, 0xFF00FF00, starts, step);
        step = lookUp(step, step);
        return _mm512_mask_permutexvar_epi8(starts, 0xFFFF0000, starts, step);
    }

    static Bytes lengths(Bytes controls) {
        const Bytes first =
            _mm512_and_si512(_mm512_srli_epi16(controls, 5), _mm512_set1_epi16(0x0007));
        const Bytes second =
            _mm512_and_si512(_mm512_srli_epi16(controls, 2), _mm512_set1_epi16(0x0700));
        return _mm512_add_epi8(_mm512_or_si512(first, second), _mm512_set1_epi8(1));
    }

    static Bytes places(Bytes starts, Bytes controls) {
        const Bytes narrow =
            _mm512_and_si512(_mm512_srli_epi16(controls, 1), _mm512_set1_epi16(0x0100));
        return _mm512_add_epi8(starts, _mm512_sub_epi8(_mm512_set1_epi16(0x0301), narrow));
    }

    static __mmask64 indexed(Bytes controls) {
        return _mm512_test_epi8_mask(controls, _mm512_set1_epi16(0x0102));
    }
};

struct PaletteRunBytes {
    static Bytes starts(Bytes) {
        static constexpr ByteTable kStarts = tableOf([](unsigned i) { return i / 2 * 3; });
        return bytes(kStarts);
    }

    static Bytes lengths(Bytes controls) {
        const Bytes first =
            _mm512_and_si512(_mm512_srli_epi16(controls, 4), _mm512_set1_epi16(0x000F));
        const Bytes second = _mm512_and_si512(controls, _mm512_set1_epi16(0x0F00));
        return _mm512_add_epi8(_mm512_or_si512(first, second), _mm512_set1_epi8(1));
    }

    static Bytes places(Bytes starts, Bytes) {
        return _mm512_add_epi8(starts, _mm512_set1_epi16(0x0201));
    }

    static __mmask64 indexed(Bytes) { return ~__mmask64{0}; }
};

// Sums of each half from its first byte on. Eight runs have 128 pixels at most; more than 255 stay
// 255.
inline Bytes runEnds(Bytes lengths) {
    static constexpr ByteTable kLastOfEight = tableOf([](unsigned i) { return (i & ~7u) - 1; });
    static constexpr ByteTable kLastOfOther = tableOf([](unsigned i) { return (i & ~15u) - 1; });
    Bytes sums = _mm512_add_epi8(lengths, _mm512_slli_epi64(lengths, 8));
    sums = _mm512_add_epi8(sums, _mm512_slli_epi64(sums, 16));
    sums = _mm512_add_epi8(sums, _mm512_slli_epi64(sums, 32));
    sums = _mm512_adds_epu8(
        sums, _mm512_maskz_permutexvar_epi8(0xFF00FF00FF00FF00, bytes(kLastOfEight), sums));
    return _mm512_adds_epu8(
        sums, _mm512_maskz_permutexvar_epi8(0xFFFF0000FFFF0000, bytes(kLastOfOther), sums));
}

// The low and the high bytes of all colours of a palette.
struct PaletteBytes {
    static constexpr int kParts = kPaletteEntries / kBytes;
    Bytes lows[kParts];
    Bytes highs[kParts];

    explicit PaletteBytes(const uint16_t* palette) {
        static constexpr ByteTable kEven = tableOf([](unsigned i) { return 2 * i; });
        static constexpr ByteTable kOdd = tableOf([](unsigned i) { return 2 * i + 1; });
        for (int i = 0; i < kParts; ++i, palette += kBytes) {
            const Bytes first = bytesAt(palette);
            const Bytes second = bytesAt(palette + kBytes / 2);
            lows[i] = _mm512_permutex2var_epi8(first, bytes(kEven), second);
            highs[i] = _mm512_permutex2var_epi8(first, bytes(kOdd), second);
        }
    }

    // Of `bytes`, those that are `indexed` become that byte of the colours of `indices`.
    static Bytes overIndices(Bytes bytes, __mmask64 indexed, const Bytes* parts, Bytes indices) {
        const __mmask64 odd = _mm512_test_epi8_mask(indices, _mm512_set1_epi8(kBytes));
        const __mmask64 upper = _mm512_movepi8_mask(indices);
        Bytes low = lookUp(parts[0], indices);
        low = _mm512_mask_permutexvar_epi8(low, odd, indices, parts[1]);
        Bytes high = lookUp(parts[2], indices);
        high = _mm512_mask_permutexvar_epi8(high, odd, indices, parts[3]);
        return _mm512_mask_mov_epi8(bytes, indexed, _mm512_mask_mov_epi8(low, upper, high));
    }
};

// Which pixel in painting order each pixel of the tile is, row by row.
inline constexpr auto kPixelOrders = [] {
    std::array<ByteTable, 2 * kWalkCodes> orders{};
    for (size_t i = 0; i < orders.size(); ++i) {
        for (int step = 0; step < kTilePixels; ++step) {
            const int pixel = kWalks[i / 2][i % 2].pixelAt(step);
            orders[i][static_cast<size_t>(pixel)] = static_cast<uint8_t>(step);
        }
    }
    return orders;
}();

// How many runs end at or before each pixel: its run.
inline Bytes runsOf(Bytes pixels, Bytes ends) {
    Bytes runs = _mm512_setzero_si512();
    for (int half = kMostRuns / 2; half > 0; half /= 2) {
        const Bytes asked = _mm512_add_epi8(runs, _mm512_set1_epi8(static_cast<char>(half - 1)));
        const __mmask64 behind = _mm512_cmple_epu8_mask(lookUp(ends, asked), pixels);
        runs = _mm512_mask_add_epi8(runs, behind, runs, _mm512_set1_epi8(static_cast<char>(half)));
    }
    return runs;
}

// Interleaved, low and high bytes are the even and the odd rows.
inline void storeRows(uint16_t* out, Bytes lows, Bytes highs) {
    const Bytes even = _mm512_unpacklo_epi8(lows, highs);
    const Bytes odd = _mm512_unpackhi_epi8(lows, highs);
    const auto storeRow = [&out](__m128i row) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), row);
        out += kFrameWidth;
    };
    storeRow(_mm512_castsi512_si128(even));
    storeRow(_mm512_castsi512_si128(odd));
    storeRow(_mm512_extracti32x4_epi32(even, 1));
    storeRow(_mm512_extracti32x4_epi32(odd, 1));
    storeRow(_mm512_extracti32x4_epi32(even, 2));
    storeRow(_mm512_extracti32x4_epi32(odd, 2));
    storeRow(_mm512_extracti32x4_epi32(even, 3));
    storeRow(_mm512_extracti32x4_epi32(odd, 3));
}

template <typename Kind>
void findRuns(const TileTask* tasks, int count, BatchRuns& runs) {
    for (int i = 0; i < count; ++i) {
        const Bytes record = bytesAt(tasks[i].record);
        const Bytes starts = Kind::starts(record);
        storeRuns(runs.starts[i], starts);
        storeRuns(runs.controls[i], lookUp(record, starts));
    }
    for (int i = 0; i < count; i += 2) {
        const Bytes controls = bytesAt(runs.controls[i]);
        storeBytes(runs.places[i], Kind::places(bytesAt(runs.starts[i]), controls));
        storeBytes(runs.ends[i], runEnds(Kind::lengths(controls)));
    }
}

// A bit for each tile that ends within the runs that were found, all of whose bytes are there.
inline uint32_t wholeTiles(const BatchRuns& runs, int count) {
    constexpr char kLongestGroup = 5;
    uint32_t whole = 0;
    for (int i = 0; i < count; ++i) {
        const __mmask64 there = _mm512_mask_cmple_epu8_mask(
            kRunMask, loadRuns(runs.starts[i]), _mm512_set1_epi8(kBytes - kLongestGroup));
        const __mmask64 last = _mm512_mask_cmpge_epu8_mask(there, loadRuns(runs.ends[i]),
                                                           _mm512_set1_epi8(kTilePixels));
        whole |= uint32_t{last != 0} << i;
    }
    return whole;
}

template <typename Kind>
void findColours(const TileTask* tasks, int count, const uint16_t* palette, BatchRuns& runs) {
    for (int i = 0; i < count; ++i) {
        const Bytes record = bytesAt(tasks[i].record);
        const Bytes places = loadRuns(runs.places[i]);
        storeRuns(runs.lows[i], lookUp(record, places));
        storeRuns(runs.highs[i], lookUp(record, _mm512_add_epi8(places, _mm512_set1_epi8(1))));
    }
    const PaletteBytes colours(palette);
    for (int i = 0; i < count; i += 2) {
        const Bytes indices = bytesAt(runs.lows[i]);
        const Bytes highs = bytesAt(runs.highs[i]);
        const __mmask64 indexed = Kind::indexed(bytesAt(runs.controls[i]));
        storeBytes(runs.lows[i], colours.overIndices(indices, indexed, colours.lows, indices));
        storeBytes(runs.highs[i], colours.overIndices(highs, indexed, colours.highs, indices));
    }
}

// Where the colours of each record end: behind that of the tile's last pixel.
template <typename Kind>
void findEnds(const TileTask* tasks, int count, const BatchRuns& runs, const uint8_t** ends) {
    for (int i = 0; i < count; ++i) {
        const __mmask64 before = _mm512_mask_cmplt_epu8_mask(kRunMask, loadRuns(runs.ends[i]),
                                                             _mm512_set1_epi8(kTilePixels));
        const int last = std::popcount(before) % kMostRuns;
        const bool indexed = (Kind::indexed(loadRuns(runs.controls[i])) >> last & 1) != 0;
        ends[i] = tasks[i].record + runs.places[i][last] + (indexed ? 1 : 2);
    }
}

template <typename Kind>
uint32_t drawGroups(const TileTask* tasks, int count, const TileTarget& target,
                    const uint8_t** ends) {
    BatchRuns runs;
    findRuns<Kind>(tasks, count, runs);
    const uint32_t whole = wholeTiles(runs, count);
    if (whole == 0) {
        return 0;
    }
    findColours<Kind>(tasks, count, target.palette, runs);
    for (uint32_t left = whole; left != 0; left &= left - 1) {
        const int i = std::countr_zero(left);
        const Bytes run = runsOf(bytes(kPixelOrders[tasks[i].walk]), loadRuns(runs.ends[i]));
        storeRows(target.frame + tasks[i].offset, lookUp(loadRuns(runs.lows[i]), run),
                  lookUp(loadRuns(runs.highs[i]), run));
    }
    if (ends != nullptr) {
        findEnds<Kind>(tasks, count, runs, ends);
    }
    return whole;
}

// Draws the tiles that it can, of short runs or of palette runs: a bit of the result for each, the
// lowest for the first. `ends` gets where the colours of these end; null when nobody asks.
inline uint32_t drawGroupsAtOnce(bool paletteRuns, const TileTask* tasks, int count,
                                 const TileTarget& target, const uint8_t** ends) {
    return paletteRuns ? drawGroups<PaletteRunBytes>(tasks, count, target, ends)
                       : drawGroups<ShortRunBytes>(tasks, count, target, ends);
}

#else

constexpr uint32_t drawGroupsAtOnce(bool, const TileTask*, int, const TileTarget&,
                                    const uint8_t**) {
    return 0;
}

#endif

}  // namespace clip::fast::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
