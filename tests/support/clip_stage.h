#pragma once
// What a clip needs around it, and a working directory whose ./videos is a folder of the test data.
// One clip object of its own.

#include <filesystem>
#include <memory>
#include <span>
#include <string>

#include "common/limits.h"
#include "core/filters.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"
#include "tests/support/folder.h"
#include "tests/support/stage_objects.h"

class ClipStage {
public:
    explicit ClipStage(const std::filesystem::path& videos) {
        std::filesystem::create_directory_symlink(videos, "videos");
    }
    ~ClipStage() { clip->killRAM(); }

    // Loads in steps of `budget` records; the last result of loopLoad.
    int load(const std::string& name, int budget) {
        clip->init("", name);
        int result = 1;
        while (result == 1) {
            result = clip->loopLoad(budget);
        }
        return result;
    }

    TemporaryFolder folder;
    StageObjects objects;
    std::span<uint16_t> tiles{moxelTiles16, size_t{kLayers} * kFramePixels};
    std::span<uint8_t> alpha{moxelAlpha16, size_t{2} * kFramePixels};
    c_filters& filters = *_filters;
    std::unique_ptr<c_moxel> clip{new c_moxel};
};
