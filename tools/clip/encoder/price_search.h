#pragma once
// At which price a clip or a block keeps a limit: a search over the Lagrangian multiplier, by a
// sample that is cheap to code; and how much of such a search is done.

#include <functional>
#include <map>
#include <mutex>
#include <utility>

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

    // All of it took so much at this price. After a few times too much, every price found is above
    // the one before, whatever the sample says, and kDearest is reached soon.
    void took(double price, double share);

    double shareAt(double price);  // asked once a price

private:
    double bySample(double share);

    std::function<double(double)> share_;
    std::map<double, double> tried_;
    int shortfalls_ = 0;
    double lowest_ = 1;
    double step_ = 1.2;
};

// How much of a search for a clip's budget is done. Nobody knows how many codings it takes, so each
// has a part of what is left, in proportion to what usually follows: the sum only grows, and
// reaches 1 never.
class SearchProgress {
public:
    // Told from 0 to 1; may be empty.
    explicit SearchProgress(std::function<void(double)> tell) : tell_(std::move(tell)) {}

    void begin(double work);  // a coding of all (1) or of a sample
    void done(double part);   // so much more of this coding, 0 to 1; from any thread

private:
    std::function<void(double)> tell_;
    std::mutex mutex_;
    int codings_ = 0;
    int samples_ = 0;
    double from_ = 0;
    double to_ = 0;
    double part_ = 0;
};

}  // namespace maker
