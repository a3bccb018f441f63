#pragma once
// Contact sheets: moments of clips with their names and facts, as a picture or as a web page.
//
// A clip is shown by up to so many moments, evenly spread over it; transparent parts lie over a
// checkerboard. A clip that does not play has no moments and says why.

#include <cstddef>
#include <string>
#include <vector>

#include "tools/clip/media/picture.h"
#include "tools/clip/reports/describe.h"

namespace maker {

struct Moment {
    int frame;
    Picture picture;
};

struct SheetClip {
    std::string name;
    Description facts;
    std::vector<Moment> moments;
};

// `shrink` divides both sides of the pictures; it divides 8.
SheetClip readSheetClip(const std::string& name, const std::string& path, int moments, int shrink);

// "128 frames, 5.0 s" and the like.
std::string lengthText(const Description& facts);
std::string loadText(const Description& facts);

inline constexpr int kSheetMoments = 8;
inline constexpr int kSheetShrink = 4;
inline constexpr size_t kMostSheetClips = 600;  // FFmpeg writes no picture of many more lines
Picture drawSheet(const std::string& title, const std::vector<SheetClip>& clips);

inline constexpr int kPageMoments = 24;
inline constexpr int kPageShrink = 2;
// One file that needs no other. The moments of each clip run as a film. Of a clip that was added
// only its part of the page is kept, so that there can be any number of them.
class SheetPage {
public:
    void add(const SheetClip& clip);
    std::string finish(const std::string& title) const;

private:
    std::string articles_;
    size_t clips_ = 0;
    size_t bytes_ = 0;  // of the clips' files
    int frames_ = 0;
};

}  // namespace maker
