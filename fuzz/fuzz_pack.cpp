// Any bytes as a packed set: what is opened has names that lead nowhere else and sizes that a clip
// can have, and what is read of it is what its checksum says. A list of checksums that is read is
// printed as one that reads alike.
//
// Input: the file.
#include <string_view>

#include "fuzz/input.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/clip/jobs/sha256.h"
#include "tools/clip/set/manifest.h"
#include "tools/clip/set/pack_names.h"
#include "tools/clip/set/pack_reader.h"

namespace {

using fuzz::require;

void readAll(std::span<const uint8_t> bytes) {
    maker::PackReader pack(bytes);
    for (const maker::PackedFile& file : pack.files()) {
        require(maker::isPackedName(file.name), "a file has a name of a set");
        require(file.name.find("..") == std::string::npos || file.name.starts_with("videos/"),
                "no name climbs");
        require(file.bytes <= maker::kMostBytesRead, "no file is larger than any clip");
        const std::vector<uint8_t> held = pack.read(file);
        require(held.size() == file.bytes, "a file has its size");
        require(maker::sha256Of(held) == file.sha256, "a file is what its checksum says");
    }
}

void readList(std::string_view text) {
    const maker::Manifest manifest = maker::parseManifest(text);
    require(maker::parseManifest(maker::printManifest(manifest)) == manifest,
            "a list that is printed reads alike");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    try {
        readAll({data, size});
    } catch (const maker::ToolError&) {
    }
    try {
        readList({reinterpret_cast<const char*>(data), size});
    } catch (const maker::ToolError&) {
    }
    return 0;
}
