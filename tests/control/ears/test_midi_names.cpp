#include "tools/control/ears/midi_names.h"

#include <gtest/gtest.h>

namespace control {
namespace {

std::vector<std::string> namesOf(const std::vector<std::string>& alsa,
                                 const std::vector<std::string>& jack) {
    std::vector<std::string> names;
    for (const MidiSource& source : midiSources(alsa, jack)) {
        names.push_back(std::string(source.api) + " " + source.name);
    }
    return names;
}

using Names = std::vector<std::string>;

TEST(MidiNames, AlsaNumbers_AreLeftOut) {
    EXPECT_EQ(namesOf({"pads:pads MIDI 1 20:0", "odd 20:", "plain", "x y:z"}, {}),
              (Names{"ALSA pads:pads MIDI 1", "ALSA odd", "ALSA plain", "ALSA x y:z"}));
    EXPECT_EQ(midiSources({"pads:pads MIDI 1 20:0"}, {})[0].port, "pads:pads MIDI 1 20:0");
}

TEST(MidiNames, OwnPortsAndThrough_AreLeftOut) {
    EXPECT_EQ(namesOf({"Midi Through:Midi Through Port-0 14:0", "Velmora:in 128:0"},
                      {"Velmora:out", "synth:out"}),
              (Names{"JACK synth:out"}));
}

TEST(MidiNames, BridgedPorts_AreLeftOutWhenAlsaHasDevices) {
    const Names jack = {"system:midi_capture_1", "a2j:pads", "Midi-Bridge:pads", "synth:out"};
    EXPECT_EQ(namesOf({"pads 20:0"}, jack), (Names{"ALSA pads", "JACK synth:out"}));
    EXPECT_EQ(namesOf({"Midi Through 14:0"}, jack),
              (Names{"JACK system:midi_capture_1", "JACK a2j:pads", "JACK Midi-Bridge:pads",
                     "JACK synth:out"}));
}

}  // namespace
}  // namespace control
