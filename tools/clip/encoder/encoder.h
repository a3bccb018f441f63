#pragma once
// The encoder: RGBA pictures in, the bytes of a clip out.
//
// Pictures are added one by one and coded block by block, side by side where there are workers; the
// result does not depend on their number. At quality 100 without a budget every decoder shows
// exactly the pictures added, each channel rounded to the nearest RGB565 level; below that,
// differences are given up where the bytes and records that they cost are best saved. A budget
// keeps all pictures in memory until the end, when they are coded up to four times. The finished
// bytes have passed the validator; should they ever fail it, finish() throws.

#include <cstdint>
#include <functional>
#include <future>
#include <optional>
#include <vector>

#include "tools/clip/encoder/block_coder.h"
#include "tools/clip/encoder/frame.h"
#include "tools/clip/encoder/numbering.h"
#include "tools/clip/encoder/price_search.h"
#include "tools/clip/encoder/standing_chain.h"
#include "tools/clip/encoder/still.h"

namespace maker {

inline constexpr int kDefaultQuality = 80;

struct ClipSettings {
    int height = kFrameHeight;   // a multiple of 8, at most 360
    bool alpha = false;          // else the pictures' alpha is ignored
    int quality = kBestQuality;  // 0 to 100, stored in the header
    Content content = Content::MIXED;
    bool dither = false;                         // spread the rounding to RGB565 over a pattern
    std::optional<double> noise = std::nullopt;  // of the source; not given: measured (CodingPlan)
    int64_t recordBudget = 0;                    // tile records of the whole clip; 0: no budget
    int64_t byteBudget = 0;                      // bytes of the whole clip; 0: no budget
    int workers = 1;                             // threads that code blocks
};

struct ClipStats {
    int frames = 0;
    int blocks = 0;
    int exactBlocks = 0;  // that show their pictures rounded to RGB565 and nothing else
    int records = 0;
    int fillers = 0;           // of the records, those that only take up a number
    double squaredError = 0;   // of every colour channel of every pixel shown, scale 0 to 255
    double samples = 0;        // channels compared
    int limitedBlocks = 0;     // that gave up more than the quality says, for fewer records
    double noise = 0;          // of the source that was not kept, in the mean over the frames
    bool withinBudget = true;  // false: even the coarsest coding takes more

    double psnr() const;  // decibels, as shown on stage; infinite without any error
};

class ClipEncoder {
public:
    explicit ClipEncoder(const ClipSettings& settings);

    // At most kMaxFrames times: 640 x height x 4 bytes, red, green, blue, straight alpha.
    void add(const uint8_t* rgba);

    int added() const { return added_; }  // frames

    // Once, after one frame or more. The search for a budget, which is most of the work, tells how
    // much of it is done, from 0 to 1 and from any thread.
    std::vector<uint8_t> finish(const std::function<void(double)>& searching = {});

    // Of what is finished.
    const ClipStats& stats() const { return clip_.stats; }

private:
    // The clip so far, or a sample of it.
    struct Coding {
        ClipStats stats;
        NumberHistory history;
        std::vector<uint8_t> bytes;  // behind the file's header
    };

    void finishBlock();
    void write(CodedBlock coded, Coding& clip) const;
    void fitBudget(SearchProgress& progress);
    std::vector<StandingChain::Link> linksOf(const std::vector<SourceBlock>& sources) const;
    Coding codeAll(const std::vector<SourceBlock>& sources, double factor,
                   SearchProgress& progress) const;
    double shareOf(double bytes, double records) const;
    double shareOf(const Coding& clip) const;

    ClipSettings settings_;
    CodingPlan plan_;
    int added_ = 0;  // frames
    std::vector<uint8_t> dithered_;
    SourceBlock block_;  // under way
    StillTracker tracker_;
    StandingChain chain_;
    std::vector<std::future<CodedBlock>> pending_;  // in order
    std::vector<SourceBlock> sources_;              // all blocks, where there is a budget
    std::vector<std::vector<int16_t>> still_;       // likewise, what stands still in them
    Coding clip_;
};

}  // namespace maker
