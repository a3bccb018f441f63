#pragma once
// What there is to import in files and folders.
//
// A file that is named is taken whatever it is called. Of a folder and those below it are taken, by
// their endings, videos and animated images, and numbered pictures that follow each other as one
// image sequence; other still pictures are counted and left. Names that begin with a point are
// passed over, and links to folders are not followed.

#include <cstdint>
#include <string>
#include <vector>

namespace maker {

struct Scan {
    std::vector<std::string> inputs;  // files and patterns, each once, sorted within a folder given
    int stills = 0;                   // pictures left
};

// Throws ToolError for a name that is not there or a folder that cannot be read.
Scan scanInputs(const std::vector<std::string>& given);

// Tells one state of an input from another. Of an image sequence all its pictures count.
struct InputState {
    uint64_t bytes = 0;
    int64_t changed = 0;  // nanoseconds since 1970

    bool operator==(const InputState&) const = default;
};

// All zeros for an input that is not there.
InputState stateOf(const std::string& input);

}  // namespace maker
