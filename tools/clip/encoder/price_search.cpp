#include "tools/clip/encoder/price_search.h"

#include <algorithm>
#include <cmath>

namespace maker {

double PriceSearch::shareAt(double price) {
    const auto known = tried_.find(price);
    return known != tried_.end() ? known->second : tried_[price] = share_(price);
}

double PriceSearch::find(double share) {
    constexpr double kStep = 8;
    constexpr int kHalvings = 5;
    constexpr double kUsed = 0.94;
    double over = 1;
    double within = kStep;
    while (shareAt(within) > share) {
        if (within >= kDearest) {
            return kDearest;
        }
        over = within;
        within *= kStep;
    }
    for (int i = 0; i < kHalvings && shareAt(within) < kUsed * share; ++i) {
        const double middle = std::sqrt(over * within);
        (shareAt(middle) > share ? over : within) = middle;
    }
    return within;
}

}  // namespace maker
