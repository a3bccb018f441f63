#pragma once
// The mixer with its buffers, clips and an output surface, set up from one line of the pixel
// vectors.

#include <SDL.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/all.h"
#include "core/filters.h"
#include "core/globals.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"
#include "tests/support/frames.h"

using nlohmann::json;

inline std::vector<json> vectorsOf(const std::string& file) {
    std::vector<json> tests;
    std::ifstream stream(TEST_DATA "/pixels/" + file + ".jsonl");
    for (std::string line; std::getline(stream, line);) {
        tests.push_back(json::parse(line));
    }
    return tests;
}

// The mixer with its buffers and an output surface whose rows lie W pixels apart.
class MixerStage {
public:
    explicit MixerStage(const json& test)
        : layers(kLayers * kFramePixels),
          tracks(kLayers * kFramePixels),
          alpha(2 * kFramePixels),
          clips(new c_moxel[2]) {
        moxelTiles16 = layers.data();
        finalTilesTracks = tracks.data();
        moxelAlpha16 = alpha.data();
        moxel = clips.get();
        all = &application;
        _filters = &filters;
        mix = &mixer;
        filters.initFilters();
        application.appW = test.value("W", 1280);
        application.appH = test.value("H", 720);
        application.composite = test.value("composite", 0);
        mixer.initMix();
        mixer.layer[1].deck = 1;
        surface.assign(static_cast<size_t>(application.appW * application.appH), 0x5A5A);
        screen[1] = SDL_CreateRGBSurfaceFrom(surface.data(), application.appW, application.appH, 16,
                                             application.appW * 2, 0xF800, 0x07E0, 0x001F, 0);
        fill(tracks, 0, test, "slot0");
        fill(tracks, 1, test, "slot1");
        fillAlpha(test);
        setSlots(test);
    }
    ~MixerStage() {
        SDL_FreeSurface(screen[1]);
        screen[1] = nullptr;
        moxelTiles16 = finalTilesTracks = nullptr;
        moxelAlpha16 = nullptr;
        moxel = nullptr;
        all = nullptr;
        _filters = nullptr;
        mix = nullptr;
    }
    MixerStage(const MixerStage&) = delete;
    MixerStage& operator=(const MixerStage&) = delete;

    void fill(std::vector<uint16_t>& buffer, int slot, const json& source, const char* key) {
        if (source.contains(key)) {
            const std::vector<uint16_t> frame = frames::make(source.at(key));
            std::copy(frame.begin(), frame.end(), buffer.begin() + slot * kFramePixels);
        }
    }
    void fillAlpha(const json& source) {
        if (source.contains("alpha")) {
            const std::vector<uint8_t> plane = frames::makeAlpha(source.at("alpha"));
            std::copy(plane.begin(), plane.end(), alpha.begin());
        }
        if (source.contains("alphaFlag")) {
            moxel[1].alpha = source.at("alphaFlag").get<uint8_t>();
        }
    }
    void setSlots(const json& source) {
        for (const json& slot : source.value("slots", json::array())) {
            filters.slots[slot.at("layer").get<int>()][slot.at("slot").get<int>()] = {
                slot.at("id"), slot.at("dir"), slot.at("on"), slot.at("coef")};
        }
    }
    uint16_t* slot(int number) { return tracks.data() + number * kFramePixels; }

    void expect(const json& expected) {
        EXPECT_EQ(frames::crc(slot(0), kFrameBytes), expected.value("slot0", std::string()));
        EXPECT_EQ(frames::crc(slot(1), kFrameBytes), expected.value("slot1", std::string()));
        if (expected.contains("surface")) {
            EXPECT_EQ(frames::crc(surface.data(), surface.size() * 2),
                      expected.at("surface").get<std::string>());
        }
    }

    std::vector<uint16_t> layers;
    std::vector<uint16_t> tracks;
    std::vector<uint8_t> alpha;
    std::vector<uint16_t> surface;
    std::unique_ptr<c_moxel[]> clips;
    c_all application{};
    c_filters filters{};
    c_mix mixer{};
};

inline std::string idOf(const testing::TestParamInfo<json>& info) {
    std::string id = info.param.at("id");
    std::replace(id.begin(), id.end(), '-', '_');
    return id;
}
