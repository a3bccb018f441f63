#include "tools/clip/media/look.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace maker {

namespace {

void add(std::string& filters, const std::string& filter) {
    filters += (filters.empty() ? "" : ",") + filter;
}

[[gnu::format(printf, 1, 2)]] std::string print(const char* format, ...) {
    char text[300];
    va_list values;
    va_start(values, format);
    std::vsnprintf(text, sizeof text, format, values);
    va_end(values);
    return text;
}

// The fold lies between tiles of 8 x 8 pixels, so that those of one side are those of the other,
// mirrored. 360 lines have no such middle: the larger side has 184 of them.
const char* const kLeft =
    "split[a][b];[a]crop=320:360:0:0[c];[b]crop=320:360:0:0,hflip[d];[c][d]hstack";
const char* const kRight =
    "split[a][b];[a]crop=320:360:320:0,hflip[c];[b]crop=320:360:320:0[d];[c][d]hstack";
const char* const kTop =
    "split[e][f];[e]crop=640:184:0:0[g];[f]crop=640:176:0:8,vflip[h];[g][h]vstack";
const char* const kBottom =
    "split[e][f];[e]crop=640:176:0:176,vflip[g];[f]crop=640:184:0:176[h];[g][h]vstack";

void addFold(std::string& filters, Fold fold) {
    switch (fold) {
        case Fold::LEFT:
            return add(filters, kLeft);
        case Fold::RIGHT:
            return add(filters, kRight);
        case Fold::TOP:
            return add(filters, kTop);
        case Fold::BOTTOM:
            return add(filters, kBottom);
        case Fold::QUARTER:
            add(filters, kLeft);
            return add(filters, kTop);
        default:
            return;
    }
}

// Each channel is its grey and what it is apart from that, which is multiplied. Grey is weighed as
// HD video weighs it.
std::string saturationFilter(double times) {
    constexpr double kWeights[] = {0.2126, 0.7152, 0.0722};
    constexpr const char* kChannels = "rgb";
    std::string filter = "colorchannelmixer=";
    for (int to = 0; to < 3; ++to) {
        for (int from = 0; from < 3; ++from) {
            const double part = kWeights[from] * (1 - times) + (to == from ? times : 0);
            filter += print("%c%c=%.5f%s", kChannels[to], kChannels[from], part,
                            to == 2 && from == 2 ? "" : ":");
        }
    }
    return filter;
}

void addColours(std::string& filters, const Look& look) {
    if (look.brightness != 0 || look.contrast != 1) {
        const std::string value =
            print("'clip((val-127.5)*%.4f+127.5+255*%.4f,0,255)'", look.contrast, look.brightness);
        add(filters, "lutrgb=r=" + value + ":g=" + value + ":b=" + value);
    }
    if (look.saturation != 1) {
        add(filters, saturationFilter(look.saturation));
    }
}

}  // namespace

std::string frameFilters(const Look& look, double seconds) {
    std::string filters;
    if (look.flipAcross) {
        add(filters, "hflip");
    }
    if (look.flipDown) {
        add(filters, "vflip");
    }
    addFold(filters, look.fold);
    addColours(filters, look);
    if (look.fadeIn > 0) {
        add(filters, print("fade=t=in:d=%.4f", look.fadeIn));
    }
    if (look.fadeOut > 0) {
        const double start = std::max(seconds - look.fadeOut, 0.0);
        add(filters, print("fade=t=out:st=%.4f:d=%.4f", start, seconds - start));
    }
    return filters;
}

std::string textOf(const Look& look) {
    if (look == Look{}) {
        return "";
    }
    return print(" deinterlace %d slow %g zoom %g at %g %g %d flip %d %d fold %d ",
                 static_cast<int>(look.deinterlace), look.slow, look.zoom, look.across, look.down,
                 look.inPixels ? 1 : 0, look.flipAcross ? 1 : 0, look.flipDown ? 1 : 0,
                 static_cast<int>(look.fold)) +
           print("colours %g %g %g fades %g %g filter ", look.brightness, look.contrast,
                 look.saturation, look.fadeIn, look.fadeOut) +
           look.filter;
}

}  // namespace maker
