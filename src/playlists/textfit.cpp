#include "playlists/textfit.h"

namespace {

constexpr const char* kEllipsis = "...";

}  // namespace

std::string fitText(const std::string& text, int room,
                    const std::function<int(const std::string&)>& widthOf) {
    if (text.empty() || widthOf(text) <= room) {
        return text;
    }
    if (widthOf(kEllipsis) > room) {
        return "";
    }
    // A longer beginning is never narrower: `fits` characters do, `tooLong` do not.
    size_t fits = 0;
    size_t tooLong = text.size();
    while (tooLong - fits > 1) {
        const size_t middle = fits + (tooLong - fits) / 2;
        if (widthOf(text.substr(0, middle) + kEllipsis) <= room) {
            fits = middle;
        } else {
            tooLong = middle;
        }
    }
    return text.substr(0, fits) + kEllipsis;
}
