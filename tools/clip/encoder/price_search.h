#pragma once
// At which price a clip or a block keeps a limit: a search over the Lagrangian multiplier, by a
// sample that is cheap to code.

#include <functional>
#include <map>

namespace maker {

inline constexpr double kDearest = 1e9;  // times the quality's own price

class PriceSearch {
public:
    // What share of the limit a sample takes when everything is so many times as dear; falls with
    // it.
    explicit PriceSearch(std::function<double(double)> share) : share_(std::move(share)) {}

    // The lowest of a few prices tried, from 1 up, at which the sample takes no more than that:
    // nearly as much, where there is such a price. kDearest when there is none.
    double find(double share);

    double shareAt(double price);  // asked once a price

private:
    std::function<double(double)> share_;
    std::map<double, double> tried_;
};

}  // namespace maker
