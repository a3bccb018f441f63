#include "tools/clip/set/pack_reader.h"

#include <sys/stat.h>
#include <zip.h>

#include <algorithm>

#include "common/limits.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/clip/jobs/sha256.h"
#include "tools/clip/set/manifest.h"
#include "tools/clip/set/pack_names.h"
#include "tools/clip/set/zip_error.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

// No file of a set but its clips is larger; the longest list of checksums fits.
constexpr uint64_t kMostTextBytes = uint64_t{1} << 20;
// Each track a clip of its own with its origin, the files beside them, and folders that other tools
// write as well.
constexpr zip_int64_t kMostEntries = 3 * kPlaylists * kTrackSlots + 64;
constexpr const char* kTwice = "it holds two files of one name";
constexpr zip_int64_t kPieceBytes = zip_int64_t{1} << 20;

struct CloseEntry {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};

zip_t* openedZip(zip_source_t* source, ZipError& error) {
    zip_t* zip = source == nullptr
                     ? nullptr
                     : zip_open_from_source(source, ZIP_RDONLY | ZIP_CHECKCONS, error.get());
    if (zip == nullptr) {
        const std::string reason = zip_error_code_zip(error.get()) == ZIP_ER_EXISTS
                                       ? kTwice
                                       : "it is no whole set: " + error.text();
        zip_source_free(source);
        throw ToolError(reason);
    }
    return zip;
}

// Other tools may mark their files as anything that is not an ordinary file.
bool isOrdinary(zip_t* zip, zip_uint64_t place) {
    zip_uint8_t system = 0;
    zip_uint32_t attributes = 0;
    if (zip_file_get_external_attributes(zip, place, 0, &system, &attributes) != 0) {
        return false;
    }
    const mode_t kind = attributes >> 16 & S_IFMT;
    return system != ZIP_OPSYS_UNIX || kind == 0 || kind == S_IFREG;
}

void checkEntry(zip_t* zip, const std::string& name, const zip_stat_t& facts) {
    constexpr zip_uint64_t kNeeded =
        ZIP_STAT_SIZE | ZIP_STAT_COMP_METHOD | ZIP_STAT_ENCRYPTION_METHOD;
    if (!isPackedName(name)) {
        throw ToolError("it holds " + inQuotes(name) + ", which is nothing of a set");
    }
    if (!isOrdinary(zip, facts.index)) {
        throw ToolError("its " + inQuotes(name) + " is a link or no ordinary file");
    }
    if ((facts.valid & kNeeded) != kNeeded || facts.encryption_method != ZIP_EM_NONE ||
        (facts.comp_method != ZIP_CM_STORE && facts.comp_method != ZIP_CM_DEFLATE)) {
        throw ToolError("its " + inQuotes(name) + " is packed in a way that is not read");
    }
    if (facts.size > (trackOfPacked(name).empty() ? kMostTextBytes : kMostBytesRead)) {
        throw ToolError("its " + inQuotes(name) + " is larger than any can be");
    }
}

}  // namespace

void PackReader::Discard::operator()(zip* archive) const {
    zip_discard(archive);
}

PackReader::PackReader(const fs::path& path) {
    ZipError error;
    zip_.reset(openedZip(zip_source_file_create(path.c_str(), 0, -1, error.get()), error));
    readDirectory();
}

PackReader::PackReader(std::span<const uint8_t> bytes) {
    ZipError error;
    zip_.reset(
        openedZip(zip_source_buffer_create(bytes.data(), bytes.size(), 0, error.get()), error));
    readDirectory();
}

void PackReader::readDirectory() {
    const zip_int64_t entries = zip_get_num_entries(zip_.get(), 0);
    if (entries > kMostEntries) {
        throw ToolError("it holds more files than a set can");
    }
    for (zip_int64_t place = 0; place < entries; ++place) {
        const auto index = static_cast<zip_uint64_t>(place);
        zip_stat_t facts;
        const char* name = zip_get_name(zip_.get(), index, ZIP_FL_ENC_RAW);
        if (name == nullptr || zip_stat_index(zip_.get(), index, 0, &facts) != 0) {
            throw ToolError(std::string("it is damaged: ") + zip_strerror(zip_.get()));
        }
        // A folder: other tools list them, and a set needs none.
        const std::string text = name;
        if (!text.ends_with('/')) {
            checkEntry(zip_.get(), text, facts);
            files_.push_back({text, facts.size, index, ""});
        }
    }
    std::ranges::sort(files_, {}, &PackedFile::name);
    if (std::ranges::adjacent_find(files_, {}, &PackedFile::name) != files_.end()) {
        throw ToolError(kTwice);
    }
    addChecksums();
}

void PackReader::addChecksums() {
    const PackedFile* list = find(kManifestName);
    if (list == nullptr) {
        throw ToolError("it has no list of checksums: no set of velmora-clip");
    }
    const std::vector<uint8_t> text = bytesOf(*list);
    Manifest manifest = parseManifest({reinterpret_cast<const char*>(text.data()), text.size()});
    files_.erase(files_.begin() + (list - files_.data()));
    for (PackedFile& file : files_) {
        file.sha256 = manifest[file.name];
        if (file.sha256.empty()) {
            throw ToolError("its " + inQuotes(file.name) + " has no checksum");
        }
        manifest.erase(file.name);
    }
    if (!manifest.empty()) {
        throw ToolError("its " + inQuotes(manifest.begin()->first) + " is missing");
    }
}

// One byte more than announced is asked for: that is what a file that grows while it is unpacked
// gives away.
std::vector<uint8_t> PackReader::bytesOf(const PackedFile& file) {
    const std::unique_ptr<zip_file_t, CloseEntry> entry(zip_fopen_index(zip_.get(), file.place, 0));
    std::vector<uint8_t> bytes;
    uint64_t used = 0;
    for (zip_int64_t got = entry ? 1 : -1; got > 0 && used <= file.bytes;) {
        stopIfInterrupted();
        bytes.resize(static_cast<size_t>(used) + static_cast<size_t>(kPieceBytes));
        const zip_uint64_t wanted =
            std::min<zip_uint64_t>(static_cast<zip_uint64_t>(kPieceBytes), file.bytes + 1 - used);
        got = zip_fread(entry.get(), bytes.data() + used, wanted);
        if (got < 0) {
            used = file.bytes + 1;
        }
        used += got > 0 ? static_cast<uint64_t>(got) : 0;
    }
    if (!entry || used != file.bytes) {
        throw ToolError("its " + inQuotes(file.name) + " is damaged");
    }
    bytes.resize(static_cast<size_t>(used));
    return bytes;
}

std::vector<uint8_t> PackReader::read(const PackedFile& file) {
    std::vector<uint8_t> bytes = bytesOf(file);
    if (sha256Of(bytes) != file.sha256) {
        throw ToolError("its " + inQuotes(file.name) + " is not what its checksum says");
    }
    return bytes;
}

}  // namespace maker
