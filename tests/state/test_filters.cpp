// The filter registry, and which filters run in what order.
#include <cstdlib>

#include "state/stage.h"

namespace {

class Filters : public StageTest {
protected:
    static uint16_t* layer(int number) { return finalTilesTracks + number * kFramePixels; }
    static void put(int onLayer, int slot, FilterId id, int dir, int on = 1) {
        _filters->slots[onLayer][slot] = {id, dir, on, 0};
    }
    static void fillLayers(uint16_t bottom, uint16_t top) {
        std::fill_n(layer(0), kFramePixels, bottom);
        std::fill_n(layer(1), kFramePixels, top);
    }
};

TEST_F(Filters, AfterInit_EveryQueryAnswersOff) {
    put(0, 3, FILTER_HUE, 2);
    _filters->selected = 4;
    _filters->initFilters();
    for (int onLayer = 0; onLayer < kLayers; ++onLayer) {
        for (int id = 0; id < kFilterIds; ++id) {
            EXPECT_EQ(_filters->isFilterFXOn(onLayer, id), 0);
            EXPECT_EQ(_filters->getFilterDir(onLayer, id), 0);
            EXPECT_EQ(_filters->getFilterCoef(onLayer, id), 0);
        }
    }
    EXPECT_EQ(_filters->selected, 0);
}

TEST_F(Filters, Init_ClearsEveryFieldOfEverySlot) {
    for (auto& layerSlots : _filters->slots) {
        for (FilterSlot& slot : layerSlots) {
            slot = {FILTER_SCROLL, 3, 1, 638};
        }
    }
    _filters->initFilters();
    for (const auto& layerSlots : _filters->slots) {
        for (const FilterSlot& slot : layerSlots) {
            EXPECT_EQ(slot.id, FILTER_NONE);
            EXPECT_EQ(slot.dir, 0);
            EXPECT_EQ(slot.on, 0);
            EXPECT_EQ(slot.coef, 0);
        }
    }
}

TEST_F(Filters, SameIdInTwoSlots_TheFirstThatIsOnDecides) {
    put(0, 2, FILTER_HUE, 1, 0);
    put(0, 5, FILTER_HUE, 3);
    EXPECT_EQ(_filters->isFilterFXOn(0, FILTER_HUE), 1);
    EXPECT_EQ(_filters->getFilterDir(0, FILTER_HUE), 3);
    _filters->slots[0][2].on = 1;
    EXPECT_EQ(_filters->getFilterDir(0, FILTER_HUE), 1);
}

TEST_F(Filters, Coefficient_LivesInTheSlotThatAnswers) {
    put(1, 4, FILTER_SCROLL, 1, 0);
    put(1, 6, FILTER_SCROLL, 1);
    _filters->setFilterCoef(1, FILTER_SCROLL, 77);
    EXPECT_EQ(_filters->slots[1][4].coef, 0);
    EXPECT_EQ(_filters->slots[1][6].coef, 77);
    EXPECT_EQ(_filters->getFilterCoef(1, FILTER_SCROLL), 77);
    _filters->setFilterCoef(0, FILTER_SCROLL, 5);
    EXPECT_EQ(_filters->getFilterCoef(0, FILTER_SCROLL), 0) << "no slot: nothing is stored";
}

TEST_F(Filters, SlotSwitchedOnWithNone_ChangesNothing) {
    put(0, 0, FILTER_NONE, 2);
    put(1, 0, FILTER_NONE, 2);
    fillLayers(0x1234, 0x4321);
    _filters->applyAll(0);
    EXPECT_EQ(layer(0)[7], 0x1234);
    EXPECT_EQ(layer(1)[7], 0x4321);
}

TEST_F(Filters, Names_AreTheTenAndNoneForAnyOther) {
    const char* names[] = {"NONE", "MIRROR", "SCROLL",   "INVERT", "BURNED",
                           "ZOOM", "HUE",    "GAME BOY", "GLITCH", "SNOW"};
    for (int id = 0; id < kFilterIds; ++id) {
        EXPECT_STREQ(_filters->getFilterName(id), names[id]);
    }
    EXPECT_STREQ(_filters->getFilterName(10), "NONE");
    EXPECT_STREQ(_filters->getFilterName(-1), "NONE");
}

TEST_F(Filters, Layers_AreIndependent) {
    put(1, 0, FILTER_INVERT, 0);
    EXPECT_EQ(_filters->isFilterFXOn(0, FILTER_INVERT), 0);
    fillLayers(0x1234, 0x1234);
    _filters->applyAll(0);
    EXPECT_EQ(layer(0)[9], 0x1234);
    EXPECT_EQ(layer(1)[9], 0xEDCB);
}

// White: INVERT first makes it black, which GAME BOY turns into its darkest shade. The other way
// round white would become its lightest shade, inverted.
TEST_F(Filters, quirk_filters_run_in_a_fixed_order_on_both_layers) {
    for (int onLayer = 0; onLayer < kLayers; ++onLayer) {
        put(onLayer, 0, FILTER_GAME_BOY, 0);
        put(onLayer, 1, FILTER_INVERT, 0);
    }
    fillLayers(0xFFFF, 0xFFFF);
    _filters->applyAll(0);
    EXPECT_EQ(layer(0)[0], 0x39E0);
    EXPECT_EQ(layer(1)[0], 0x39E0);
}

// The mixer's order, pairwise: the result of running `first` before `second` by hand is what the
// mixer makes of both, whichever slots they sit in.
TEST_F(Filters, EveryPairOfNeighbours_RunsInTheMixersOrder) {
    struct Step {
        FilterId id;
        void (*run)();
    };
    const Step order[] = {
        {FILTER_INVERT, [] { _filters->fx_invert(1); }},
        {FILTER_BURNED, [] { _filters->fx_brulure(1, 2); }},
        {FILTER_SNOW, [] { _filters->fx_snow(1, 2); }},
        {FILTER_ZOOM, [] { _filters->fx_zoom(1, 2); }},
        {FILTER_GAME_BOY, [] { _filters->fx_gameBoy(1, 2); }},
        {FILTER_MIRROR, [] { _filters->fx_mirror(1, 2, 0); }},
        {FILTER_HUE, [] { _filters->fx_hue(1, 2); }},
        {FILTER_SCROLL, [] { _filters->fx_scroll(1, 2, 0); }},
    };
    const auto fillNoise = [] {
        for (int i = 0; i < kFramePixels; ++i) {
            layer(1)[i] = static_cast<uint16_t>(static_cast<uint32_t>(i) * 2654435761u >> 16);
        }
    };
    for (size_t i = 0; i + 1 < std::size(order); ++i) {
        SCOPED_TRACE(_filters->getFilterName(order[i].id));
        const auto switchOn = [&] {
            _filters->initFilters();
            put(1, 0, order[i + 1].id, 2);
            put(1, 8, order[i].id, 2);
            srand(5);
            fillNoise();
        };
        switchOn();
        order[i].run();
        order[i + 1].run();
        const std::vector<uint16_t> expected(layer(1), layer(1) + kFramePixels);
        switchOn();
        _filters->applyAll(0);
        EXPECT_EQ(std::vector<uint16_t>(layer(1), layer(1) + kFramePixels), expected);
    }
}

TEST_F(Filters, GlitchMap_ChangesNothing) {
    uint16_t map[3] = {1, 2, 3};
    _filters->fx_glitchMap(map, 3);
    EXPECT_EQ(map[0], 1);
    EXPECT_EQ(map[2], 3);
}

TEST_F(Filters, MirrorOfAnotherVariant_ChangesNothing) {
    fillLayers(0, 0);
    layer(0)[0] = 0x1234;
    _filters->fx_mirror(0, 1, 1);
    EXPECT_EQ(layer(0)[639], 0);
}

// A held scroll shows the picture where it was.
TEST_F(Filters, ScrollHeld_StaysWhereItWas) {
    put(1, 0, FILTER_SCROLL, 1);
    const auto frameWithMark = [] {
        std::fill_n(layer(1), kFramePixels, uint16_t{0});
        layer(1)[100] = 0x1234;
    };
    for (int frame = 0; frame < 5; ++frame) {
        frameWithMark();
        _filters->applyAll(0);
    }
    EXPECT_EQ(layer(1)[110], 0x1234);
    for (int frame = 0; frame < 3; ++frame) {
        frameWithMark();
        _filters->applyAll(1);
        EXPECT_EQ(layer(1)[110], 0x1234);
    }
}

// The full turn across, which scrolling left reaches, is a wrap under the pause key as well: the
// picture moves once by the first step, then it stands.
TEST_F(Filters, ScrollHeldAt640_FirstStepOnceThenStays) {
    put(1, 0, FILTER_SCROLL, 3);
    _filters->slots[1][0].coef = 640;
    for (int frame = 0; frame < 3; ++frame) {
        std::fill_n(layer(1), kFramePixels, uint16_t{0});
        layer(1)[100] = 0x1234;
        _filters->applyAll(1);
        EXPECT_EQ(layer(1)[102], 0x1234) << frame;
        EXPECT_EQ(_filters->slots[1][0].coef, 2) << frame;
    }
}

// Seven pixels, then the same again: the noise repeats.
TEST_F(Filters, SnowInDirection3_RepeatsEverySevenPixels) {
    fillLayers(0x7BEF, 0x7BEF);
    srand(3);
    _filters->fx_snow(1, 3);
    for (int i = 7; i < kFramePixels; ++i) {
        ASSERT_EQ(layer(1)[i], layer(1)[i - 7]);
    }
}

}  // namespace
