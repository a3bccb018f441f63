#include "tools/clip/encoder/clusters.h"

#include <algorithm>
#include <span>

#include "common/rgb565.h"
#include "tools/clip/encoder/quantise.h"

namespace maker {

namespace {

using Point = std::array<float, kChannels>;
using Entries = std::array<std::array<int16_t, clip::kPaletteEntries>, kChannels>;

struct Spot {
    Point at;  // 0 to 255
    float weight;
};

// A group of spots that will share one palette entry.
struct Group {
    std::span<Spot> spots;
    Point mean{};
    size_t widest = 0;  // the channel that spreads the most
    float spread = 0;   // squared distance from the mean along it

    explicit Group(std::span<Spot> members) : spots(members) {
        Point squares{};
        float weight = 0;
        for (const Spot& spot : spots) {
            weight += spot.weight;
            for (size_t c = 0; c < kChannels; ++c) {
                mean[c] += spot.at[c] * spot.weight;
                squares[c] += spot.at[c] * spot.at[c] * spot.weight;
            }
        }
        for (size_t c = 0; c < kChannels; ++c) {
            mean[c] /= weight;
            const float along = squares[c] - mean[c] * mean[c] * weight;
            if (along > spread) {
                spread = along;
                widest = c;
            }
        }
        spread = spots.size() > 1 ? spread : 0;
    }
};

std::vector<Spot> spotsOf(const ColourCounts& counts) {
    std::vector<Spot> spots;
    for (const ColourCounts::Bin& bin : counts.bins()) {
        if (bin.weight > 0) {
            const float weight = static_cast<float>(bin.weight);
            spots.push_back({{static_cast<float>(bin.sums[0]) / weight,
                              static_cast<float>(bin.sums[1]) / weight,
                              static_cast<float>(bin.sums[2]) / weight},
                             weight});
        }
    }
    return spots;
}

std::vector<Group> splitIntoGroups(std::vector<Spot>& spots) {
    std::vector<Group> groups{Group(spots)};
    while (groups.size() < clip::kPaletteEntries) {
        const auto widest =
            std::max_element(groups.begin(), groups.end(),
                             [](const Group& a, const Group& b) { return a.spread < b.spread; });
        if (widest->spread <= 0) {
            break;
        }
        const Group whole = *widest;
        const auto middle =
            std::partition(whole.spots.begin(), whole.spots.end(), [&whole](const Spot& spot) {
                return spot.at[whole.widest] < whole.mean[whole.widest];
            });
        const size_t first = static_cast<size_t>(middle - whole.spots.begin());
        if (first == 0 || first == whole.spots.size()) {
            widest->spread = 0;  // rounding has put all spots on one side
            continue;
        }
        *widest = Group(whole.spots.first(first));
        groups.push_back(Group(whole.spots.subspan(first)));
    }
    return groups;
}

size_t nearest(const Entries& entries, size_t count, int red, int green, int blue) {
    // The distance and the entry in one number: the least of them names the nearest.
    int32_t least = INT32_MAX;
    for (size_t entry = 0; entry < count; ++entry) {
        const int r = entries[0][entry] - red;
        const int g = entries[1][entry] - green;
        const int b = entries[2][entry] - blue;
        least = std::min(least, ((r * r + g * g + b * b) << 8) | static_cast<int32_t>(entry));
    }
    return static_cast<size_t>(least & 0xFF);
}

void setEntry(Entries& entries, size_t entry, const Point& mean) {
    for (size_t c = 0; c < kChannels; ++c) {
        entries[c][entry] = static_cast<int16_t>(mean[c] + 0.5F);
    }
}

// One round: every spot goes to its nearest entry, every entry to the mean of its spots.
void settle(std::span<const Spot> spots, size_t count, Entries& entries) {
    std::array<Point, clip::kPaletteEntries> sums{};
    std::array<float, clip::kPaletteEntries> weights{};
    for (const Spot& spot : spots) {
        const size_t entry =
            nearest(entries, count, static_cast<int>(spot.at[0] + 0.5F),
                    static_cast<int>(spot.at[1] + 0.5F), static_cast<int>(spot.at[2] + 0.5F));
        weights[entry] += spot.weight;
        for (size_t c = 0; c < kChannels; ++c) {
            sums[entry][c] += spot.at[c] * spot.weight;
        }
    }
    for (size_t entry = 0; entry < count; ++entry) {
        if (weights[entry] > 0) {
            Point mean = sums[entry];
            for (float& channel : mean) {
                channel /= weights[entry];
            }
            setEntry(entries, entry, mean);
        }
    }
}

}  // namespace

ColourCounts::ColourCounts() : bins_(kColours) {}

void ColourCounts::add(const ColourPlanes& colours, int weight) {
    const uint32_t times = static_cast<uint32_t>(weight);
    for (size_t i = 0; i < clip::kTilePixels; ++i) {
        Bin& bin = bins_[nearestColour(colours[0][i], colours[1][i], colours[2][i])];
        bin.weight += times;
        for (size_t c = 0; c < kChannels; ++c) {
            bin.sums[c] += colours[c][i] * times;
        }
    }
}

PaletteColours clusterColours(const ColourCounts& counts) {
    constexpr int kRounds = 3;
    std::vector<Spot> spots = spotsOf(counts);
    const std::vector<Group> groups = splitIntoGroups(spots);
    Entries entries{};
    for (size_t entry = 0; entry < groups.size(); ++entry) {
        setEntry(entries, entry, groups[entry].mean);
    }
    // With no more colours than entries every group is one colour already.
    for (int round = 0; round < kRounds && spots.size() > groups.size(); ++round) {
        settle(spots, groups.size(), entries);
    }
    PaletteColours palette{};
    for (size_t entry = 0; entry < groups.size(); ++entry) {
        palette[entry] = nearestColour(entries[0][entry], entries[1][entry], entries[2][entry]);
    }
    std::sort(palette.begin(), palette.begin() + static_cast<long>(groups.size()));
    return palette;
}

NearestEntry::NearestEntry(const PaletteColours& palette)
    : channels_{}, known_(kColours, kUnknown) {
    for (size_t entry = 0; entry < palette.size(); ++entry) {
        channels_[0][entry] = static_cast<int16_t>(px::red8Of(palette[entry]));
        channels_[1][entry] = static_cast<int16_t>(px::green8Of(palette[entry]));
        channels_[2][entry] = static_cast<int16_t>(px::blue8Of(palette[entry]));
    }
}

uint8_t NearestEntry::find(uint16_t colour) {
    const size_t entry = nearest(channels_, clip::kPaletteEntries, px::red8Of(colour),
                                 px::green8Of(colour), px::blue8Of(colour));
    known_[colour] = static_cast<uint16_t>(entry);
    return static_cast<uint8_t>(entry);
}

}  // namespace maker
