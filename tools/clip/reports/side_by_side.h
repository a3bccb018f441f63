#pragma once
// A clip beside its source: each frame's two pictures and how they differ, with its number and
// PSNR.
//
// A name that ends in .png gets a few frames, evenly spread, one below the other, the worst of all
// as the last; .mkv every frame, exact. Transparent parts lie over a checkerboard, and the
// difference is that of what is shown.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/clip/media/movie.h"
#include "tools/clip/media/picture.h"

namespace maker {

class SideBySide {
public:
    // Throws where the name has another ending or cannot be written.
    explicit SideBySide(const std::string& path);

    // The next frame: 640 x height x 4 bytes each, of the same height for all.
    void add(const std::vector<uint8_t>& source, const std::vector<uint8_t>& clip);

    // Writes the file; at least one frame must be there.
    void finish();

private:
    void keep(int frame, const Picture& row, double error);
    std::vector<uint8_t> sheet() const;

    std::string path_;
    const MovieKind* film_;  // null for a PNG
    std::optional<MovieWriter> writer_;
    int frames_ = 0;
    int step_ = 1;               // frames from row to row
    std::vector<Picture> rows_;  // of a PNG
    Picture worst_;
    double worstError_ = -1;
};

// How many times the difference is enlarged.
inline constexpr int kAmplified = 8;

}  // namespace maker
