#include "layout/textfit.h"

#include <string_view>

#include "layout/latin1.h"

namespace {

constexpr const char* kEllipsis = "...";

// The end of the letter that byte `at` of the text belongs to, when letters begin at `from`.
size_t letterEnd(std::string_view text, size_t from, size_t at) {
    while (from <= at) {
        from += latin1::firstLetter(text.substr(from)).bytes;
    }
    return from;
}

}  // namespace

std::string fitText(const std::string& text, int room,
                    const std::function<int(const std::string&)>& widthOf) {
    if (text.empty() || widthOf(text) <= room) {
        return text;
    }
    if (widthOf(kEllipsis) > room) {
        return "";
    }
    // A longer beginning is never narrower: `fits` bytes do, `tooLong` do not; both end a letter.
    size_t fits = 0;
    size_t tooLong = text.size();
    while (letterEnd(text, fits, fits) < tooLong) {
        size_t middle = letterEnd(text, fits, fits + (tooLong - fits) / 2 - 1);
        if (middle >= tooLong) {
            middle = letterEnd(text, fits, fits);
        }
        if (widthOf(text.substr(0, middle) + kEllipsis) <= room) {
            fits = middle;
        } else {
            tooLong = middle;
        }
    }
    return text.substr(0, fits) + kEllipsis;
}
