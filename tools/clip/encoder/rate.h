#pragma once
// What a quality means: the exchange rates between error, bytes and records.
//
// The encoder minimises squared error + perByte x bytes, where a tile record counts for more than
// its bytes because it costs time when the clip is loaded. This is rate-distortion optimisation,
// and perByte its Lagrangian multiplier. Quality 100 is exact and has no rate.

namespace maker {

inline constexpr int kBestQuality = 100;
inline constexpr double kMapEntryBytes = 2;  // that a tile takes when it changes

struct Rate {
    double perByte;       // squared error (all channels, scale 0 to 255) that a byte is worth
    double recordBytes;   // what a record costs beyond its own bytes
    double noise = 0;     // of the source, its standard deviation: what of an error is not kept
    bool dither = false;  // a smooth colour may be a pattern of those next to it
    double noisePictures = 1;  // of it that a block shows of a tile that stands still, in the mean

    // For fewer records: they are so many times as dear, and bytes somewhat, so that no tile goes
    // flat beside others that keep their noise.
    Rate forFewerRecords(double factor) const;

    // The most that the source of a held tile may move, in any channel of any pixel.
    int visibleLimit() const;
};

// `quality` 0 to 100.
Rate rateOf(int quality);

}  // namespace maker
