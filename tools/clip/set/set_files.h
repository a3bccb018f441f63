#pragma once
// The files of a set that is to be unpacked, by the names that they have in Velmora's folder: those
// of a packed set (pack_reader.h), or of a folder of clips (clip_folder.h).
//
// Every fault is a ToolError with a short line that goes behind "cannot unpack FILE: ".

#include <cstdint>
#include <string>
#include <vector>

namespace maker {

struct PackedFile {
    std::string name;  // as isPackedName() has it
    uint64_t bytes = 0;
    uint64_t place = 0;  // in the zip
    std::string sha256;
};

class SetFiles {
public:
    SetFiles() = default;
    virtual ~SetFiles() = default;
    SetFiles(const SetFiles&) = delete;
    SetFiles& operator=(const SetFiles&) = delete;

    // All but the list of checksums, sorted by name; a name comes once.
    const std::vector<PackedFile>& files() const { return files_; }
    // Null when there is none of this name.
    const PackedFile* find(const std::string& name) const;
    // The clips among them.
    size_t clips() const;

    // What the file holds, which is what its checksum says.
    virtual std::vector<uint8_t> read(const PackedFile& file) = 0;

    // Whether all clips have been looked at already, and play.
    virtual bool lookedAt() const { return false; }

protected:
    std::vector<PackedFile> files_;
};

}  // namespace maker
