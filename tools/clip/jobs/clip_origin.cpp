#include "tools/clip/jobs/clip_origin.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <vector>

#include "files/userfile.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/clip/jobs/clip_names.h"
#include "tools/clip/jobs/sha256.h"
#include "tools/clip/media/image_sequence.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

constexpr size_t kMostTextBytes = size_t{1} << 20;  // of a file that tells an origin
constexpr uint64_t kEndBytes = uint64_t{32} << 20;  // that count at each end of a large file

class Summer {
public:
    void addFile(const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        std::error_code error;
        const uint64_t size = fs::file_size(path, error);
        bytes_ += size;
        add(file, std::min(size, kEndBytes));
        if (size > 2 * kEndBytes) {
            file.seekg(-static_cast<std::streamoff>(kEndBytes), std::ios::end);
        }
        add(file, std::min(size - std::min(size, kEndBytes), kEndBytes));
    }

    SourceSum finish() { return {bytes_, sha_.finish()}; }

private:
    void add(std::ifstream& file, uint64_t bytes) {
        std::vector<char> piece(size_t{1} << 20);
        while (bytes > 0 && file) {
            stopIfInterrupted();
            file.read(piece.data(),
                      static_cast<std::streamsize>(std::min<uint64_t>(bytes, piece.size())));
            const auto got = static_cast<size_t>(file.gcount());
            sha_.add({reinterpret_cast<const uint8_t*>(piece.data()), got});
            bytes -= got;
        }
    }

    Sha256 sha_;
    uint64_t bytes_ = 0;
};

// Paths are bytes and JSON is UTF-8; the others are written as the Latin-1 that they may be.
constexpr const char* kSource = "source";
constexpr const char* kLatin1Source = "sourceInLatin1";

ClipOrigin parsed(const Json& json) {
    ClipOrigin origin;
    origin.source = json.contains(kLatin1Source)
                        ? latin1Of(json.at(kLatin1Source).get<std::string>())
                        : json.at(kSource).get<std::string>();
    origin.sum = {json.at("sourceBytes").get<uint64_t>(), json.at("sha256").get<std::string>()};
    for (const auto& [name, text] : json.at("options").items()) {
        origin.options.emplace_back(name, text.get<std::string>());
    }
    if (json.contains("part")) {
        origin.part = json.at("part").get<int>();
        // Whoever wrote the file: what is made again stays in the clip's folder.
        origin.output = fs::path(json.at("of").get<std::string>()).filename();
    }
    return origin;
}

std::optional<ClipOrigin> originIn(std::span<const uint8_t> text, uint64_t clipBytes) {
    const Json json = Json::parse(text.begin(), text.end(), nullptr, false);
    try {
        const bool same = json.at("bytes").get<uint64_t>() == clipBytes;
        return same ? std::optional(parsed(json)) : std::nullopt;
    } catch (const Json::exception&) {
        return std::nullopt;  // no file of ours
    }
}

}  // namespace

SourceSum sumOf(const std::string& input) {
    const std::optional<ImagePattern> pattern = imagePattern(input);
    std::error_code ignored;
    const auto files = pattern ? picturesOf(*pattern) : std::map<int, std::string>{{0, input}};
    Summer summer;
    for (const auto& [number, file] : files) {
        if (!fs::is_regular_file(file, ignored)) {
            return {};
        }
        summer.addFile(file);
    }
    return summer.finish();
}

ClipOrigin originOf(const std::string& input, const OptionTexts& options, const fs::path& output) {
    const SourceSum sum = sumOf(input);
    const std::string path =
        sum.sha256.empty() ? input : fs::absolute(input).lexically_normal().string();
    return {path, sum, options, output.filename().string(), 0};
}

fs::path originPath(fs::path clip) {
    files::followLinks(clip);
    clip += ".json";
    return clip;
}

std::string originText(const ClipOrigin& origin, const ClipReport& clip) {
    Json options = Json::object();
    for (const auto& [name, text] : origin.options) {
        options[name] = text;
    }
    const bool utf8 = isUtf8(origin.source);
    Json json{{utf8 ? kSource : kLatin1Source, utf8 ? origin.source : latin1AsUtf8(origin.source)},
              {"sourceBytes", origin.sum.bytes},
              {"sha256", origin.sum.sha256},
              {"options", std::move(options)}};
    if (origin.part > 0) {
        json["part"] = origin.part;
        json["of"] = origin.output;
    }
    json["frames"] = clip.frames;
    json["bytes"] = clip.bytes;
    json["records"] = clip.records;
    json["psnr"] = std::isinf(clip.psnr) ? Json("exact") : Json(clip.psnr);
    json["madeBy"] = "velmora-clip " VELMORA_VERSION;
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::optional<ClipOrigin> readOrigin(const fs::path& clip) {
    const fs::path path = originPath(clip);
    std::error_code error;
    if (!fs::is_regular_file(path, error)) {
        return std::nullopt;
    }
    const std::vector<uint8_t> bytes = readWholeFile(path);
    const uint64_t clipBytes = fs::file_size(clip, error);
    return error ? std::nullopt : originIn(bytes, clipBytes);
}

bool isOriginText(std::span<const uint8_t> text, uint64_t clipBytes) {
    return originIn(text, clipBytes).has_value();
}

std::string originTextOf(const fs::path& file, uint64_t clipBytes) {
    const std::optional<std::string> text = readRegular(file.string(), kMostTextBytes);
    const bool own =
        text &&
        isOriginText({reinterpret_cast<const uint8_t*>(text->data()), text->size()}, clipBytes);
    return own ? *text : "";
}

ClipOrigin checkedOrigin(const fs::path& clip) {
    std::error_code ignored;
    if (!fs::exists(clip, ignored)) {
        throw ToolError("cannot read " + clip.string() + ": No such file or directory");
    }
    const std::optional<ClipOrigin> origin = readOrigin(clip);
    if (!origin) {
        throw ToolError("nothing tells where " + clip.string() + " came from: " +
                        originPath(clip).string() + " is not there, or of another clip");
    }
    const SourceSum now = sumOf(origin->source);
    if (now.sha256.empty() && !origin->sum.sha256.empty()) {
        throw ToolError("the source of " + clip.string() +
                        " is not there any more: " + origin->source);
    }
    if (now != origin->sum) {
        throw ToolError("the source of " + clip.string() + " has changed since: " + origin->source);
    }
    return *origin;
}

}  // namespace maker
