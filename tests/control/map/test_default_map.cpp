#include <gtest/gtest.h>

#include <map>

#include "tools/control/map/default_map.h"
#include "tools/control/map/map_file.h"

namespace control {
namespace {

ControlMap mapOf(std::string_view text) {
    EXPECT_FALSE(text.empty());
    const MapReading reading = readMap(text);
    for (const MapFault& fault : reading.faults) {
        ADD_FAILURE() << lineOf("map", fault);
    }
    return reading.map;
}

TEST(DefaultMap, AsItComes_BindsNothing) {
    EXPECT_EQ(mapOf(defaultMap()), ControlMap{});
}

// The comment sign is taken away where a key or a section follows it.
TEST(DefaultMap, ExamplesTakenIn_HaveNoFault) {
    std::string text;
    size_t at = 0;
    const std::string_view map = defaultMap();
    while (at < map.size()) {
        const size_t end = map.find('\n', at);
        const std::string_view line = map.substr(at, end - at);
        const size_t word = line.find(' ', 2);
        const bool example =
            line.starts_with("# [[") || (line.starts_with("# ") && word != std::string_view::npos &&
                                         line.substr(word).starts_with(" = "));
        text.append(example ? line.substr(2) : line).append("\n");
        at = end + 1;
    }
    const ControlMap taken = mapOf(text);
    EXPECT_EQ(taken.bindings.size(), 6u);
    EXPECT_EQ(taken.rules.size(), 2u);
    EXPECT_EQ(taken.tempo, 120.0);
}

TEST(MapNamed, Pads_EachNoteIsBoundOnce) {
    std::map<int, int> times;
    for (const Binding& binding : mapOf(mapNamed("pads-4x4")).bindings) {
        EXPECT_EQ(binding.kind, HeardKind::NOTE);
        EXPECT_FALSE(binding.channel);
        ++times[binding.number];
    }
    ASSERT_EQ(times.size(), 16u);
    EXPECT_EQ(times.begin()->first, 36);
    EXPECT_EQ(times.rbegin()->first, 51);
    for (const auto& [note, count] : times) {
        EXPECT_EQ(count, 1) << note;
    }
}

TEST(MapNamed, Knobs_Are16To23) {
    const ControlMap map = mapOf(mapNamed("knobs-8"));
    ASSERT_EQ(map.bindings.size(), 8u);
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(map.bindings[static_cast<size_t>(i)].kind, HeardKind::KNOB);
        EXPECT_EQ(map.bindings[static_cast<size_t>(i)].number, 16 + i);
    }
}

TEST(MapNamed, Phone_HasOscAlone) {
    const ControlMap map = mapOf(mapNamed("phone-osc"));
    EXPECT_EQ(map.bindings.size(), 16u);
    for (const Binding& binding : map.bindings) {
        EXPECT_EQ(binding.kind, HeardKind::OSC);
    }
}

TEST(MapNamed, NoSuchName_IsEmpty) {
    EXPECT_TRUE(mapNamed("").empty());
    EXPECT_TRUE(mapNamed("pads").empty());
}

}  // namespace
}  // namespace control
