#include "tools/clip/encoder/price_search.h"

#include <algorithm>
#include <cmath>

#include "tools/clip/encoder/source_block.h"

namespace maker {

namespace {

// Where between two prices, by their logarithms, the share will be. Shares fall about as a power
// of the price; noise falls off a cliff, which only halving finds.
double placeBetween(double over, double within, double share) {
    constexpr double kCliff = 0.5;
    constexpr double kAim = 0.97;
    if (within < kCliff * share) {
        return 0.5;
    }
    const double place = std::log(over / (kAim * share)) / std::log(over / within);
    return std::clamp(place, 0.1, 0.9);
}

}  // namespace

double PriceSearch::shareAt(double price) {
    const auto known = tried_.find(price);
    return known != tried_.end() ? known->second : tried_[price] = share_(price);
}

double PriceSearch::find(double share) {
    return std::max(bySample(share), lowest_);
}

void PriceSearch::took(double price, double share) {
    constexpr int kBySample = 4;  // times; then the sample is no guide: what costs is not in it
    shortfalls_ += share > 1 ? 1 : 0;
    if (share > 1 && shortfalls_ > kBySample) {
        lowest_ = price * step_;
        step_ *= step_;
    }
}

double PriceSearch::bySample(double share) {
    constexpr double kStep = 8;
    constexpr int kTries = 6;
    constexpr double kUsed = 0.94;
    if (shareAt(1) <= share) {
        return 1;
    }
    double over = 1;
    double within = kStep;
    while (shareAt(within) > share) {
        if (within >= kDearest) {
            return kDearest;
        }
        over = within;
        within *= kStep;
    }
    for (int i = 0; i < kTries && shareAt(within) < kUsed * share; ++i) {
        const double place = placeBetween(shareAt(over), shareAt(within), share);
        const double price = over * std::pow(within / over, place);
        (shareAt(price) > share ? over : within) = price;
    }
    return within;
}

void SearchProgress::begin(double work) {
    constexpr int kCodings = 3;
    constexpr int kSamples = 8;
    constexpr double kSample = 1.0 / kSampleEvery;
    constexpr double kSpare = 0.1;
    (work < 1 ? samples_ : codings_) += 1;
    const double after = std::max(kCodings - codings_, work < 1 ? 1 : 0) +
                         kSample * std::max(kSamples - samples_, 0) + kSpare;
    from_ = to_;
    to_ += (1 - to_) * work / (work + after);
    part_ = 0;
}

void SearchProgress::done(double part) {
    const std::lock_guard lock(mutex_);
    part_ += part;
    if (tell_) {
        tell_(from_ + (to_ - from_) * std::min(part_, 1.0));
    }
}

}  // namespace maker
