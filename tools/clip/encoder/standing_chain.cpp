#include "tools/clip/encoder/standing_chain.h"

#include <exception>
#include <utility>

#include "tools/clip/encoder/still.h"

namespace maker {

StandingChain::Link StandingChain::next(std::vector<int16_t> from) {
    Link link;
    link.from_ = std::move(from);
    link.before_ = shown_;
    shown_.push_back(link.shown_->get_future().share());
    return link;
}

CodedBlock StandingChain::Link::code(const SourceBlock& block, const CodingPlan& plan) const {
    try {
        StandingTiles standing(from_.size());
        for (size_t position = 0; position < from_.size(); ++position) {
            if (from_[position] != kMoves) {
                const auto& earlier = before_[static_cast<size_t>(from_[position])];
                standing[position] = &earlier.get()[position];
            }
        }
        CodedBlock coded = codeBlock(block, plan, standing);
        shown_->set_value(lastShown(coded));
        return coded;
    } catch (...) {
        shown_->set_exception(std::current_exception());
        throw;
    }
}

}  // namespace maker
