// A minimal clip, cut off at every length and with every byte changed to every other value: it
// loads or is refused, what loads is drawn inside its layer, and what the validator accepts loads.
//
// Under the sanitizers every kStride-th change is tried; VELMORA_SEED picks where they start, so
// that as many seeds as the stride is long try them all.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "clip/validate.h"
#include "fuzz/input.h"
#include "minimal_clip.h"
#include "tests/support/clip_stage.h"

namespace {

using Bytes = std::vector<uint8_t>;

#ifdef __SANITIZE_ADDRESS__
constexpr int kStride = 7;
#else
constexpr int kStride = 1;
#endif

constexpr int kReady = 2;
constexpr int kBudget = 2000;
constexpr int kValues = 256;
constexpr uint16_t kMark = 0x5A5A;
constexpr uint8_t kAlphaMark = 0x5A;

int firstOfStride() {
    const char* seed = getenv("VELMORA_SEED");
    return seed == nullptr ? 0 : atoi(seed) % kStride;
}

// Loading prints the clip's path, hundreds of thousands of times here.
class Silence {
public:
    Silence() : before_(stdout) {
        static FILE* const nowhere = fopen("/dev/null", "w");
        stdout = nowhere;
    }
    ~Silence() { stdout = before_; }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

private:
    FILE* before_;
};

class EveryByte : public testing::Test {
protected:
    EveryByte() : stage(TEST_DATA "/clips") { mark(); }

    void mark() {
        std::fill(stage.tiles.begin(), stage.tiles.end(), kMark);
        std::fill(stage.alpha.begin(), stage.alpha.end(), kAlphaMark);
    }

    int load(const Bytes& bytes) {
        file.write(bytes.data(), bytes.size());
        c_moxel& clip = *stage.clip;
        clip.init("", "minimal.m19");
        clip.path = file.path();
        int result = 1;
        while (result == 1) {
            result = clip.loopLoad(kBudget);
        }
        return result;
    }

    // The pixels and levels behind the top layer's picture.
    bool marksStand() const {
        const auto from = static_cast<ptrdiff_t>(stage.clip->tileCount) * clip::kTilePixels;
        const auto pixels = stage.tiles.begin() + stage.clip->pixelCount + from;
        const auto levels = stage.alpha.begin() + from;
        return std::all_of(pixels, pixels + kFrameWidth, [](int p) { return p == kMark; }) &&
               std::all_of(levels, levels + kFrameWidth, [](int a) { return a == kAlphaMark; });
    }

    // Notes in `fault` what is wrong, if anything is.
    void tryBytes(const Bytes& bytes, const std::string& what) {
        const Silence silence;
        const int result = load(bytes);
        c_moxel& clip = *stage.clip;
        ++tried;
        loaded += result == kReady;
        if (result == kReady) {
            for (const int frame : {0, clip.frameCount - 1, clip.frameCount / 2, 0}) {
                clip.renderMoxel19(1, frame, MODE_KEY);
                clip.renderMoxel19(0, frame, MODE_TOP);
            }
            clip.killRAM();
            require(marksStand(), "drawn outside the layer", what);
            if (clip.pixelCount != minimal::kPixels) {
                mark();  // its top layer lies where the next clip's marks are
            }
        } else {
            require(result == 0, "an answer that there is not", what);
            require(clip.hasRAM == 0, "refused, but something stays allocated", what);
            require(!clip::validate(bytes).ok, "refused, though the validator accepts it", what);
        }
        require(clip.file == nullptr, "the file stays open", what);
    }

    void require(bool holds, const char* otherwise, const std::string& what) {
        if (!holds) {
            fault = otherwise + (": " + what);
        }
    }

    // Of the unchanged clip, both frames and back.
    void expectPictures(const Bytes& bytes) {
        ASSERT_EQ(load(bytes), kReady);
        for (const int frame : {0, 1, 0}) {
            stage.clip->renderMoxel19(1, frame, MODE_KEY);
            const minimal::Picture picture = minimal::picture(frame);
            EXPECT_TRUE(std::equal(picture.pixels.begin(), picture.pixels.end(),
                                   stage.tiles.begin() + minimal::kPixels))
                << "frame " << frame;
            EXPECT_TRUE(std::equal(picture.alpha.begin(), picture.alpha.end(), stage.alpha.begin()))
                << "alpha of frame " << frame;
        }
        stage.clip->killRAM();
    }

    ClipStage stage;
    fuzz::MemoryFile file;
    const Bytes original = minimal::clip();
    std::string fault;
    int tried = 0;
    int loaded = 0;
};

TEST_F(EveryByte, Unchanged_ShowsItsPictures) {
    ASSERT_EQ(original.size(), minimal::kBytes);
    EXPECT_TRUE(clip::validate(original).ok);
    expectPictures(original);
}

TEST_F(EveryByte, EveryPrefix_LoadsOrIsRefused) {
    for (size_t length = 0; length < original.size() && fault.empty(); ++length) {
        tryBytes(Bytes(original.begin(), original.begin() + static_cast<ptrdiff_t>(length)),
                 "cut to " + std::to_string(length) + " bytes");
    }
    EXPECT_EQ(fault, "");
    // The last byte, of the last record's alpha, reads as 0 when it is missing: 64 runs then, more
    // than there is room for.
    EXPECT_EQ(tried, static_cast<int>(minimal::kBytes));
    EXPECT_EQ(loaded, 0);
    expectPictures(original);
}

TEST_F(EveryByte, EveryChange_LoadsOrIsRefused) {
    const int changes = static_cast<int>(original.size()) * (kValues - 1);
    for (int change = firstOfStride(); change < changes && fault.empty(); change += kStride) {
        const int at = change / (kValues - 1);
        Bytes bytes = original;
        uint8_t& byte = bytes[static_cast<size_t>(at)];
        byte = static_cast<uint8_t>(byte + 1 + change % (kValues - 1));
        tryBytes(bytes, "byte " + std::to_string(at) + " is " + std::to_string(byte));
    }
    EXPECT_EQ(fault, "");
    // Quality, palette, colours and most of the map may be anything.
    EXPECT_GT(loaded, tried / 2);
    EXPECT_LT(loaded, tried);
    expectPictures(original);
}

}  // namespace
