#pragma once
// What a clip needs around it: the layer buffers, the filters, and a working directory whose
// ./videos is a folder of the test data. One clip object of its own.

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "common/limits.h"
#include "core/filters.h"
#include "core/globals.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"
#include "tests/support/folder.h"

class ClipStage {
public:
    explicit ClipStage(const std::filesystem::path& videos)
        : tiles(kLayers * kFramePixels), alpha(2 * kFramePixels), clip(new c_moxel) {
        std::filesystem::create_directory_symlink(videos, "videos");
        moxelTiles16 = tiles.data();
        moxelAlpha16 = alpha.data();
        _filters = &filters;
        filters.initFilters();
    }
    ~ClipStage() {
        clip->killRAM();
        moxelTiles16 = nullptr;
        moxelAlpha16 = nullptr;
        _filters = nullptr;
    }
    ClipStage(const ClipStage&) = delete;
    ClipStage& operator=(const ClipStage&) = delete;

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
    std::vector<uint16_t> tiles;
    std::vector<uint8_t> alpha;
    c_filters filters;
    std::unique_ptr<c_moxel> clip;
};
