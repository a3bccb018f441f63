#pragma once
// Where a clip came from: a small JSON file beside it, CLIP.json, by which it can be made again and
// compared with its source. The program on stage does not look at it.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

#include "tools/clip/jobs/encode_job.h"

namespace maker {

// What a file holds, whatever its time. Of one larger than 64 MB the first and the last 32 MB
// count, so that no long film is read for ten seconds of it; of an image sequence all pictures.
struct SourceSum {
    uint64_t bytes = 0;
    std::string sha256;  // empty for what is no file

    bool operator==(const SourceSum&) const = default;
};

SourceSum sumOf(const std::string& input);

struct ClipOrigin {
    std::string source;  // an absolute path, or pattern of numbered pictures
    SourceSum sum;
    OptionTexts options;
    std::string output;  // the file name that was asked for; parts of a split input have numbers
    int part = 0;        // of a split input, from 1; 0 of others
};

ClipOrigin originOf(const std::string& input, const OptionTexts& options,
                    const std::filesystem::path& output);

// The file beside a clip; where the clip is a link, beside what it leads to.
std::filesystem::path originPath(std::filesystem::path clip);

std::string originText(const ClipOrigin& origin, const ClipReport& clip);

// Nothing where there is no such file, or one of another clip.
std::optional<ClipOrigin> readOrigin(const std::filesystem::path& clip);

// The text of such a file, which is that of a clip of so many bytes; empty where it is none.
std::string originTextOf(const std::filesystem::path& file, uint64_t clipBytes);

// Whether a text is one of a clip of so many bytes.
bool isOriginText(std::span<const uint8_t> text, uint64_t clipBytes);

// Throws ToolError where there is none, or where the source is gone or holds something else.
ClipOrigin checkedOrigin(const std::filesystem::path& clip);

}  // namespace maker
