#pragma once
// A packed set read. Whoever made it, nothing of it is believed: names, sizes and kinds of its
// files are checked when it is opened, and what a file holds each time that it is read.
//
// Every fault is a ToolError with a short line that goes behind "cannot unpack FILE: ".

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

struct zip;

namespace maker {

struct PackedFile {
    std::string name;  // as isPackedName() has it
    uint64_t bytes = 0;
    uint64_t place = 0;  // in the zip
    std::string sha256;
};

class PackReader {
public:
    explicit PackReader(const std::filesystem::path& path);
    // `bytes` outlive the reader.
    explicit PackReader(std::span<const uint8_t> bytes);

    // All but the list of checksums, sorted by name; a name comes once.
    const std::vector<PackedFile>& files() const { return files_; }
    // Null when there is none of this name.
    const PackedFile* find(const std::string& name) const;

    // What the file holds, which is what its checksum says.
    std::vector<uint8_t> read(const PackedFile& file);

private:
    struct Discard {
        void operator()(zip* archive) const;
    };

    void readDirectory();
    void addChecksums();
    std::vector<uint8_t> bytesOf(const PackedFile& file);

    std::unique_ptr<zip, Discard> zip_;
    std::vector<PackedFile> files_;
};

}  // namespace maker
