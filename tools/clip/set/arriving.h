#pragma once
// Files on their way into Velmora's folder: written beside their places, then named one after the
// other. Unless they are told to stay, the new ones and the new folders go again. Faults and
// interrupts are thrown.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <set>
#include <span>
#include <vector>

#include "tools/base/atomic_file.h"

namespace maker {

class Arriving {
public:
    Arriving() = default;
    ~Arriving();
    Arriving(const Arriving&) = delete;
    Arriving& operator=(const Arriving&) = delete;

    // Makes the folder when it is missing, and removes what killed runs left there.
    void prepare(const std::filesystem::path& folder);
    void write(const std::filesystem::path& target, std::span<const uint8_t> bytes, bool replaces);
    // Gives them their names: nothing is written over but what `replaces`.
    void name();
    void stay();

private:
    struct File {
        std::filesystem::path target;
        files::PendingFile pending;
        bool replaces;
    };

    std::vector<File> files_;
    std::vector<std::unique_ptr<FolderInMaking>> folders_;
    std::set<std::filesystem::path> prepared_;
    std::vector<std::filesystem::path> named_;
};

}  // namespace maker
