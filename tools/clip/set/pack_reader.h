#pragma once
// A packed set read. Whoever made it, nothing of it is believed: names, sizes and kinds of its
// files are checked when it is opened, and what a file holds each time that it is read.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "tools/clip/set/set_files.h"

struct zip;

namespace maker {

class PackReader : public SetFiles {
public:
    explicit PackReader(const std::filesystem::path& path);
    // `bytes` outlive the reader.
    explicit PackReader(std::span<const uint8_t> bytes);

    std::vector<uint8_t> read(const PackedFile& file) override;

private:
    struct Discard {
        void operator()(zip* archive) const;
    };

    void readDirectory();
    void addChecksums();
    std::vector<uint8_t> bytesOf(const PackedFile& file);

    std::unique_ptr<zip, Discard> zip_;
};

}  // namespace maker
