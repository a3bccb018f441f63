#include <gtest/gtest.h>

#include "tests/control/recording_hands.h"
#include "tools/control/bridge/bridge.h"

namespace control {

namespace {

class BridgeTest : public testing::Test {
protected:
    BridgeTest() {
        bridge.watch([this](const std::string& line) { said_ += line + "\n"; });
        files.filters = {1, 2, 3, 4, 5, 6, 7, 8, 9};
        files.tracks = {1, 1, 1};
    }

    static Heard note(int number, double value, int ms = 0) {
        Heard heard;
        heard.kind = HeardKind::NOTE;
        heard.channel = 10;
        heard.number = number;
        heard.value = value;
        heard.device = "pads";
        heard.when = after(ms);
        return heard;
    }
    static Heard knob(int number, double value, int ms = 0) {
        Heard heard = note(number, value, ms);
        heard.kind = HeardKind::KNOB;
        return heard;
    }
    static Heard osc(const std::string& address, std::optional<double> value = std::nullopt,
                     int ms = 0) {
        Heard heard;
        heard.kind = HeardKind::OSC;
        heard.address = address;
        heard.value = value;
        heard.device = "phone";
        heard.when = after(ms);
        return heard;
    }
    static Heard clock(HeardKind kind, int ms, const std::string& device = "drums") {
        Heard heard;
        heard.kind = kind;
        heard.device = device;
        heard.when = after(ms);
        return heard;
    }
    static Binding on(HeardKind kind, int number, const char* action, Quantum at = Quantum::NOW) {
        Binding binding;
        binding.kind = kind;
        binding.number = number;
        binding.action = actionNamed(action).value();
        binding.at = at;
        binding.line = number;
        return binding;
    }
    void bind(Binding binding) {
        ControlMap map = bridge.map();
        map.bindings.push_back(std::move(binding));
        bridge.useMap(std::move(map), after(0));
    }
    void every(int beats, const char* action) {
        ControlMap map = bridge.map();
        Rule rule;
        rule.beats = beats;
        rule.actions = {actionNamed(action).value()};
        map.rules.push_back(rule);
        bridge.useMap(std::move(map), after(0));
    }
    // What the hands do up to then.
    std::string until(int ms) {
        for (; ms_ <= ms; ++ms_) {
            bridge.advance(after(ms_));
        }
        return hands.take();
    }
    std::string said() { return std::exchange(said_, ""); }

    RecordingHands hands;
    StageFiles files;
    Bridge bridge{hands, {}, [this]() -> const StageFiles& { return files; }, 1};

private:
    int ms_ = 0;
    std::string said_;
};

}  // namespace

TEST_F(BridgeTest, Pad_PressesOnceAndItsReleaseNothing) {
    bind(on(HeardKind::NOTE, 36, "flash"));
    bridge.hear(note(36, 0.8));
    bridge.hear(note(36, 0, 10));
    EXPECT_EQ(until(500), "+S -S");
    EXPECT_EQ(said(), "pads: note 36, channel 10 -> flash\npads: note 36 let go, channel 10\n");
}

TEST_F(BridgeTest, PadOfAHeldAction_HoldsAsLongAsItIsDown) {
    bind(on(HeardKind::NOTE, 36, "fade"));
    bridge.hear(note(36, 0.8));
    EXPECT_EQ(until(3000), "+A");
    bridge.hear(note(36, 0, 3000));
    EXPECT_EQ(until(3200), "-A");
}

TEST_F(BridgeTest, HeldActionWithoutAnEnd_EndsByItself) {
    bridge.hear(osc("/fade"));
    EXPECT_EQ(until(599), "+A");
    EXPECT_EQ(until(700), "-A");
}

TEST_F(BridgeTest, FilterHeld_IsOnAsLongAsThePad) {
    bind(on(HeardKind::NOTE, 36, "filter.mirror.held"));
    bridge.hear(note(36, 0.8));
    EXPECT_EQ(until(1000), "+Q +Backspace -Q -Backspace");
    EXPECT_TRUE(bridge.stage().filters[1][0].on);
    bridge.hear(note(36, 0, 1000));
    EXPECT_EQ(until(2000), "+Q +Backspace -Q -Backspace");
    EXPECT_FALSE(bridge.stage().filters[1][0].on);
    // A name alone holds it a moment.
    bridge.act(actionNamed("filter.mirror.held").value(), std::nullopt, Quantum::NOW, after(2000));
    EXPECT_EQ(until(2500), "+Q +Backspace -Q -Backspace");
    EXPECT_EQ(until(3000), "+Q +Backspace -Q -Backspace");
}

TEST_F(BridgeTest, Knob_PressesAboveTheMiddleAndLetsGoBelow) {
    bind(on(HeardKind::KNOB, 20, "hold"));
    for (const double value : {0.1, 0.4, 0.5, 0.9, 1.0}) {
        bridge.hear(knob(20, value));
    }
    EXPECT_EQ(until(500), "+Space");
    bridge.hear(knob(20, 0.49, 500));
    bridge.hear(knob(20, 0.2, 500));
    EXPECT_EQ(until(700), "-Space");
}

TEST_F(BridgeTest, KnobOfAPress_ActsOnceEachTimeItRises) {
    bind(on(HeardKind::KNOB, 20, "next"));
    for (const double value : {0.6, 0.7, 0.4, 0.6}) {
        bridge.hear(knob(20, value));
    }
    EXPECT_EQ(until(1000), "+Right -Right +Right -Right");
}

TEST_F(BridgeTest, KnobOfAScrub_MovesThePointer) {
    bind(on(HeardKind::KNOB, 20, "scrub"));
    bridge.hear(knob(20, 0.5));
    EXPECT_EQ(until(1000), "at 320 215 +button -button");
}

TEST_F(BridgeTest, ScrubByAName_NeedsAValue) {
    EXPECT_EQ(bridge.act(actionNamed("scrub").value(), std::nullopt, Quantum::NOW, after(0)),
              "it needs a value from 0 to 1");
}

TEST_F(BridgeTest, ActionBeforeAScrubBegins_EndsIt) {
    bridge.act(actionNamed("bottom.scrub").value(), 0.5, Quantum::NOW, after(0));
    bridge.act(actionNamed("next").value(), std::nullopt, Quantum::NOW, after(0));
    EXPECT_EQ(until(2000), "+Down -Down +Up -Up +Right -Right");
}

TEST_F(BridgeTest, UnboundInput_IsShown) {
    bridge.hear(knob(9, 0.25));
    EXPECT_EQ(said(), "pads: knob 9 0.25, channel 10\n");
    EXPECT_EQ(until(500), "");
}

TEST_F(BridgeTest, OscAddress_IsAnActionsName) {
    bridge.hear(osc("/mode/add", 1));
    EXPECT_EQ(until(200), "+3 -3");
    EXPECT_EQ(said(), "phone: /mode/add 1.00 -> mode.add\n");
    // A button that is let go.
    bridge.hear(osc("/mode/add", 0, 200));
    EXPECT_EQ(until(400), "");
    bridge.hear(osc("/mode/ad", 1, 400));
    EXPECT_EQ(until(600), "");
}

TEST_F(BridgeTest, OscNumber_ChoosesThePlaylist) {
    bridge.stageBegins(after(0));
    bridge.hear(osc("/playlist", 2));
    EXPECT_EQ(until(5000), "+Right -Right +Up -Up +Left -Left +X -X +Down -Down +X -X");
}

TEST_F(BridgeTest, OscButtonOfAPlaylist_LoadsItOnce) {
    bridge.stageBegins(after(0));
    bridge.hear(osc("/playlist/1", 1));
    bridge.hear(osc("/playlist/1", 0));
    EXPECT_EQ(until(5000), "+Right -Right +Up -Up +Left -Left +X -X +X -X");
}

TEST_F(BridgeTest, StageThatBeginsUnreached_IsNotPlayed) {
    bridge.reaches(false);
    bridge.stageBegins(after(0));
    EXPECT_EQ(bridge.act(actionNamed("list").value(), std::nullopt, Quantum::NOW, after(0)),
              "Velmora does not have the keyboard");
    bridge.reaches(true);
    EXPECT_EQ(bridge.stage().screen, Screen::HOME);
    EXPECT_EQ(bridge.act(actionNamed("list").value(), std::nullopt, Quantum::NOW, after(0)), "");
}

TEST_F(BridgeTest, BoundOscAddress_IsTheMaps) {
    Binding binding = on(HeardKind::OSC, 0, "flash");
    binding.address = "/mode/add";
    bind(binding);
    bridge.hear(osc("/mode/add", 1));
    bridge.hear(osc("/mode/add", 0));
    // Buttons of some senders send 1 alone.
    bridge.hear(osc("/mode/add", 1));
    bridge.hear(osc("/mode/add", 1));
    EXPECT_EQ(until(2000), "+S -S +S -S +S -S");
}

TEST_F(BridgeTest, OscButtonFromAnotherPort_LetsGo) {
    Binding binding = on(HeardKind::OSC, 0, "fade");
    binding.address = "/1/push1";
    bind(binding);
    bridge.hear(osc("/1/push1", 1));
    EXPECT_EQ(until(1000), "+A");
    Heard release = osc("/1/push1", 0, 1000);
    release.device = "phone's next port";
    bridge.hear(release);
    EXPECT_EQ(until(1200), "-A");
}

TEST_F(BridgeTest, MapReadAgain_LetsGoOfWhatIsHeld) {
    bind(on(HeardKind::KNOB, 20, "hold"));
    bridge.hear(knob(20, 1));
    EXPECT_EQ(until(500), "+Space");
    bridge.useMap({}, after(500));
    EXPECT_EQ(until(700), "-Space");
}

TEST_F(BridgeTest, Intro_HoldsGesturesBack) {
    bridge.stageBegins(after(0));
    bridge.hear(osc("/list"));
    EXPECT_EQ(until(2499), "");
    EXPECT_EQ(until(2500), "+Right");
}

TEST_F(BridgeTest, NotReached_IsRefusedAndLeavesTheIdeaAlone) {
    bridge.reaches(false);
    const StageModel before = bridge.stage();
    for (const char* name : {"mode.add", "fade", "scrub"}) {
        EXPECT_EQ(bridge.act(actionNamed(name).value(), 0.5, Quantum::NOW, after(0)),
                  "Velmora does not have the keyboard");
    }
    EXPECT_EQ(bridge.stage(), before);
    EXPECT_EQ(until(200), "");
    bridge.reaches(true);
    EXPECT_EQ(bridge.act(actionNamed("mode.add").value(), 1, Quantum::NOW, after(200)), "");
    EXPECT_EQ(until(400), "+3 -3");
}

TEST_F(BridgeTest, ReachedNoMore_TheIdeaIsOfWhatWasPlayed) {
    for (const char* name : {"mode.add", "reverse", "mode.half", "bottom"}) {
        bridge.act(actionNamed(name).value(), std::nullopt, Quantum::NOW, after(0));
    }
    EXPECT_EQ(until(100), "+3 -3 +Z");
    bridge.reaches(false);
    EXPECT_EQ(bridge.stage().mode, MODE_ADD);
    EXPECT_TRUE(bridge.stage().backwards[1]);
    EXPECT_EQ(bridge.stage().active, 1);
}

TEST_F(BridgeTest, ReachedNoMore_ForgetsWhatWaits) {
    bridge.hear(osc("/next"));
    bridge.hear(osc("/next"));
    bridge.hear(osc("/fade", 1));
    EXPECT_EQ(until(0), "+A +Right");
    bridge.reaches(false);
    EXPECT_EQ(hands.take(), "-A -Right");
    EXPECT_EQ(until(1000), "");
}

TEST_F(BridgeTest, Rule_PlaysOnItsBeats) {
    every(2, "flash");
    bridge.act(actionNamed("tempo 120").value(), std::nullopt, Quantum::NOW, after(0));
    EXPECT_EQ(until(100), "+S -S");
    EXPECT_EQ(until(999), "");
    EXPECT_EQ(until(1000), "+S");
    EXPECT_EQ(bridge.lastBeat(), 2);
}

TEST_F(BridgeTest, ClockRules_PlayWithTheTick) {
    every(1, "flash");
    bridge.hear(clock(HeardKind::START, 0));
    for (int tick = 0; tick < 24; ++tick) {
        bridge.hear(clock(HeardKind::CLOCK, tick * 20));
        const std::string done = until(tick * 20);
        EXPECT_EQ(done, tick == 0 ? "+S" : tick == 4 ? "-S" : "") << tick;
    }
    bridge.hear(clock(HeardKind::CLOCK, 480));
    EXPECT_EQ(until(480), "+S");
}

TEST_F(BridgeTest, SecondClock_IsNotHeardWhileTheFirstRuns) {
    every(1, "flash");
    bridge.hear(clock(HeardKind::CLOCK, 0));
    for (int tick = 1; tick < 60; ++tick) {
        bridge.hear(clock(HeardKind::CLOCK, tick * 8, "other"));
    }
    EXPECT_EQ(until(1000), "+S -S");
    // The first has fallen silent.
    bridge.hear(clock(HeardKind::CLOCK, 2000, "other"));
    EXPECT_NEAR(bridge.beat().tempo(after(2000)), 0, 1e-9);
    bridge.hear(clock(HeardKind::START, 2010, "other"));
    bridge.hear(clock(HeardKind::CLOCK, 2020, "other"));
    until(2020);
    EXPECT_EQ(bridge.lastBeat(), 0);
}

TEST_F(BridgeTest, ClockSwitchedOff_IsNotFollowed) {
    every(1, "flash");
    ControlMap map = bridge.map();
    map.clock = false;
    bridge.useMap(map, after(0));
    bridge.hear(clock(HeardKind::CLOCK, 0));
    EXPECT_EQ(until(100), "");
}

TEST_F(BridgeTest, QuantisedPad_WaitsForTheBar) {
    bind(on(HeardKind::NOTE, 36, "next", Quantum::BAR));
    bridge.act(actionNamed("tempo 120").value(), std::nullopt, Quantum::NOW, after(0));
    until(600);
    bridge.hear(note(36, 1, 600));
    bridge.hear(note(36, 0, 650));
    EXPECT_EQ(until(1999), "");
    EXPECT_EQ(until(2100), "+Right -Right");
}

TEST_F(BridgeTest, QuantisedPadWithoutABeat_PlaysAtOnce) {
    bind(on(HeardKind::NOTE, 36, "next", Quantum::BAR));
    bridge.hear(note(36, 1, 0));
    EXPECT_EQ(until(0), "+Right");
}

TEST_F(BridgeTest, BeatStopped_PlaysWhatWaited) {
    bind(on(HeardKind::NOTE, 36, "next", Quantum::BAR));
    bridge.act(actionNamed("tempo 120").value(), std::nullopt, Quantum::NOW, after(0));
    until(600);
    bridge.hear(note(36, 1, 600));
    bridge.act(actionNamed("beat.stop").value(), std::nullopt, Quantum::NOW, after(700));
    EXPECT_EQ(until(800), "+Right -Right");
    EXPECT_EQ(until(5000), "");
}

TEST_F(BridgeTest, MapReadAgain_KeepsTheBeat) {
    ControlMap map;
    map.tempo = 120;
    bridge.useMap(map, after(0));
    until(700);
    map.bar = 3;
    bridge.useMap(map, after(700));
    EXPECT_EQ(bridge.beat().next(), after(1000));
    map.tempo = 60;
    bridge.useMap(map, after(700));
    EXPECT_EQ(bridge.beat().next(), after(700));
}

TEST_F(BridgeTest, TooMuch_IsRefusedAndLeavesTheIdeaAlone) {
    std::string why;
    for (size_t i = 0; i < kMostSteps && why.empty(); ++i) {
        why =
            bridge.act(actionNamed("bottom.reverse").value(), std::nullopt, Quantum::NOW, after(0));
    }
    EXPECT_EQ(why, "too much waits to be played already");
    const StageModel before = bridge.stage();
    bridge.act(actionNamed("bottom.reverse").value(), std::nullopt, Quantum::NOW, after(0));
    EXPECT_EQ(bridge.stage(), before);
}

}  // namespace control
