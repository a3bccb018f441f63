#include "tools/clip/jobs/conformance.h"

extern "C" {
#include <libavutil/crc.h>
}

#include <nlohmann/json.hpp>

#include "clip/validate.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/clip/encoder/writer.h"
#include "tools/clip/jobs/conformance_cases.h"
#include "tools/clip/jobs/conformance_page.h"
#include "tools/clip/reports/clip_frames.h"

namespace maker::conformance {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

// That of zlib, as eight hexadecimal digits.
std::string crc32(std::span<const uint8_t> bytes) {
    const uint32_t sum =
        ~av_crc(av_crc_get_table(AV_CRC_32_IEEE_LE), UINT32_MAX, bytes.data(), bytes.size());
    char digits[9];
    std::snprintf(digits, sizeof digits, "%08x", sum);
    return digits;
}

std::string pixelSum(const Frame& frame) {
    std::vector<uint8_t> bytes;
    bytes.reserve(2 * frame.pixels.size());
    for (const uint16_t pixel : frame.pixels) {
        append16(bytes, pixel);
    }
    return crc32(bytes);
}

void describeFrames(std::span<const uint8_t> bytes, Json& json) {
    const ClipFrames frames(bytes);
    json["width"] = kFrameWidth;
    json["height"] = frames.height();
    json["frames"] = frames.count();
    json["alpha"] = frames.alpha();
    Json pixels = Json::array();
    Json levels = Json::array();
    Frame frame;
    for (int i = 0; i < frames.count(); ++i) {
        stopIfInterrupted();
        frames.draw(i, frame);
        pixels.push_back(pixelSum(frame));
        if (frames.alpha()) {
            levels.push_back(crc32(frame.alpha));
        }
    }
    json["pixels"] = pixels;
    if (frames.alpha()) {
        json["levels"] = levels;
    }
}

Json describeClip(const Case& each, std::span<const uint8_t> bytes) {
    Json json{{"file", fileOf(each)},
              {"what", each.what},
              {"expected", expectedText(each.expected)},
              {"bytes", bytes.size()}};
    if (each.expected == Expected::OK) {
        describeFrames(bytes, json);
    } else {
        const clip::Verdict verdict = clip::validate(bytes);
        json["fault"] = {{"offset", verdict.offset}, {"message", verdict.message}};
    }
    return json;
}

void writeText(const fs::path& path, const std::string& text) {
    writeWholeFile(path, {reinterpret_cast<const uint8_t*>(text.data()), text.size()});
}

}  // namespace

size_t writeCorpus(const fs::path& folder) {
    std::error_code error;
    if (fs::exists(folder, error) &&
        !(fs::is_directory(folder, error) && fs::is_empty(folder, error))) {
        throw ToolError(folder.string() + " is not an empty folder: name a new one");
    }
    FolderInMaking made(folder);
    Json clips = Json::array();
    for (const Chapter& chapter : chapters()) {
        for (const Case& each : chapter.cases) {
            const std::vector<uint8_t> bytes = each.make();
            clips.push_back(describeClip(each, bytes));
            writeWholeFile(folder / fileOf(each), bytes);
        }
    }
    writeText(folder / "README.md", page());
    writeText(folder / "conformance.json", Json{{"clips", clips}}.dump(2) + "\n");
    made.keep();
    return clips.size();
}

}  // namespace maker::conformance
