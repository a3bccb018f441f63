#pragma once
// Blocks that are coded side by side, each of which may go on showing what an earlier one shows: it
// waits for that one. Whoever codes them begins with the earlier ones.

#include <cstdint>
#include <future>
#include <memory>
#include <vector>

#include "tools/clip/encoder/block_coder.h"

namespace maker {

class StandingChain {
    using Shown = std::vector<Tile>;  // by a block's last frame

public:
    class Link {
    public:
        // Once, in any thread.
        CodedBlock code(const SourceBlock& block, const CodingPlan& plan) const;

    private:
        friend class StandingChain;
        std::vector<int16_t> from_;
        std::vector<std::shared_future<Shown>> before_;
        std::shared_ptr<std::promise<Shown>> shown_ = std::make_shared<std::promise<Shown>>();
    };

    // For the next block, with what StillTracker says of it; empty where nothing is to stand.
    Link next(std::vector<int16_t> from);

private:
    std::vector<std::shared_future<Shown>> shown_;
};

}  // namespace maker
