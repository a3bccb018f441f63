#include "tools/clip/encoder/soft_alpha.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "tools/clip/encoder/record_forms.h"

namespace maker {

namespace {

// What one level off costs: a fifteenth of 64, which the clip and what it covers differ by, squared
// and in three channels.
constexpr double kLevelError = 55;

bool isSoft(int level) {
    return level > 0 && level < clip::kAlphaOpaque;
}

struct LevelRun {
    int least = clip::kAlphaOpaque;
    int most = 0;
    int sum = 0;
    int squares = 0;
    int length = 0;

    // False when no level is one off at most.
    bool add(int level) {
        least = std::min(least, level);
        most = std::max(most, level);
        sum += level;
        squares += level * level;
        ++length;
        return least == most || (isSoft(least) && isSoft(most) && most - least <= 2);
    }

    // Within one of all of them.
    int level() const { return std::clamp((2 * sum + length) / (2 * length), most - 1, least + 1); }
    int error() const { return squares - 2 * level() * sum + length * level() * level(); }
};

bool withinOne(const AlphaTile& shown, const AlphaTile& wanted) {
    return std::equal(shown.begin(), shown.end(), wanted.begin(), [](int a, int b) {
        return a == b || (isSoft(a) && isSoft(b) && std::abs(a - b) <= 1);
    });
}

double errorOf(const AlphaTile& shown, const AlphaTile& wanted) {
    int squares = 0;
    for (size_t i = 0; i < clip::kTilePixels; ++i) {
        squares += (shown[i] - wanted[i]) * (shown[i] - wanted[i]);
    }
    return kLevelError * squares;
}

}  // namespace

AlphaTile fittedAlpha(const AlphaTile& alpha, const Rate& rate) {
    std::array<double, clip::kTilePixels + 1> best;
    std::array<LevelRun, clip::kTilePixels + 1> last;  // run of the cheapest cut before each pixel
    best.fill(std::numeric_limits<double>::infinity());
    best[0] = 0;
    for (size_t from = 0; from < clip::kTilePixels; ++from) {
        LevelRun run;
        const size_t end = std::min(from + kAlphaRunLongest, size_t{clip::kTilePixels});
        for (size_t to = from; to < end && run.add(alpha[to]); ++to) {
            const double cost = best[from] + rate.perByte + kLevelError * run.error();
            if (cost < best[to + 1]) {
                best[to + 1] = cost;
                last[to + 1] = run;
            }
        }
    }
    AlphaTile fitted;
    for (size_t to = clip::kTilePixels; to > 0;) {
        const LevelRun& run = last[to];
        to -= static_cast<size_t>(run.length);
        std::fill_n(fitted.begin() + static_cast<long>(to), run.length,
                    static_cast<uint8_t>(run.level()));
    }
    return fitted;
}

SourceBlock withSoftAlpha(const SourceBlock& block, const Rate& rate) {
    SourceBlock soft = block;
    for (size_t i = 0; i < soft.tiles.size(); ++i) {
        AlphaTile& alpha = soft.tiles[i].alpha;
        const AlphaTile fitted = fittedAlpha(alpha, rate);
        if (i >= block.tileCount) {
            const AlphaTile& before = soft.tiles[i - block.tileCount].alpha;
            const double record =
                rate.perByte * (kMapEntryBytes + rate.recordBytes + alphaBytes(fitted));
            if (withinOne(before, alpha) &&
                errorOf(before, alpha) <= errorOf(fitted, alpha) + record) {
                alpha = before;
                continue;
            }
        }
        alpha = fitted;
    }
    return soft;
}

bool hasSoftAlpha(const SourceBlock& block) {
    return std::any_of(block.tiles.begin(), block.tiles.end(), [](const SourceTile& tile) {
        return std::any_of(tile.alpha.begin(), tile.alpha.end(), isSoft);
    });
}

}  // namespace maker
