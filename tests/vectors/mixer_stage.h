#pragma once
// The mixer with its buffers, clips and an output surface, set up from one line of the pixel
// vectors.

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/all.h"
#include "core/filters.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"
#include "tests/support/frames.h"
#include "tests/support/stage_objects.h"

using nlohmann::json;

inline std::vector<json> vectorsOf(const std::string& file) {
    std::vector<json> tests;
    std::ifstream stream(TEST_DATA "/pixels/" + file + ".jsonl");
    for (std::string line; std::getline(stream, line);) {
        tests.push_back(json::parse(line));
    }
    return tests;
}

class MixerStage {
public:
    explicit MixerStage(const json& test) : objects(test.value("W", 1280), test.value("H", 720)) {
        all->composite = test.value("composite", 0);
        mixer.layer[1].deck = 1;
        std::fill(objects.picture.begin(), objects.picture.end(), uint16_t{0x5A5A});
        fill(finalTilesTracks, 0, test, "slot0");
        fill(finalTilesTracks, 1, test, "slot1");
        fillAlpha(test);
        setSlots(test);
    }

    void fill(uint16_t* buffer, int slot, const json& source, const char* key) {
        if (source.contains(key)) {
            const std::vector<uint16_t> frame = frames::make(source.at(key));
            std::copy(frame.begin(), frame.end(), buffer + slot * kFramePixels);
        }
    }
    void fillAlpha(const json& source) {
        if (source.contains("alpha")) {
            const std::vector<uint8_t> plane = frames::makeAlpha(source.at("alpha"));
            std::copy(plane.begin(), plane.end(), moxelAlpha16);
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
    uint16_t* slot(int number) { return finalTilesTracks + number * kFramePixels; }

    void expect(const json& expected) {
        EXPECT_EQ(frames::crc(slot(0), kFrameBytes), expected.value("slot0", std::string()));
        EXPECT_EQ(frames::crc(slot(1), kFrameBytes), expected.value("slot1", std::string()));
        if (expected.contains("surface")) {
            EXPECT_EQ(frames::crc(objects.picture.data(), objects.picture.size() * 2),
                      expected.at("surface").get<std::string>());
        }
    }

    StageObjects objects;
    c_filters& filters = *_filters;
    c_mix& mixer = *mix;
};

inline std::string idOf(const testing::TestParamInfo<json>& info) {
    std::string id = info.param.at("id");
    std::replace(id.begin(), id.end(), '-', '_');
    return id;
}
