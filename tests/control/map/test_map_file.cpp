#include <gtest/gtest.h>

#include "tools/control/map/map_file.h"

namespace control {
namespace {

// "line:column: text" of each fault.
std::string faultsOf(std::string_view text) {
    std::string lines;
    for (const MapFault& fault : readMap(text).faults) {
        lines += lineOf("", fault).substr(1) + "\n";
    }
    return lines;
}

TEST(ReadMap, Empty_HasTheDefaults) {
    const MapReading reading = readMap("");
    EXPECT_TRUE(reading.faults.empty());
    EXPECT_EQ(reading.map, ControlMap{});
    EXPECT_TRUE(reading.map.osc);
    EXPECT_EQ(reading.map.listen, "127.0.0.1");
    EXPECT_EQ(reading.map.port, 7770);
    EXPECT_TRUE(reading.map.clock);
    EXPECT_EQ(reading.map.bar, 4);
}

TEST(ReadMap, Sections_AreRead) {
    const MapReading reading = readMap(
        "[osc]\nenabled = false\nlisten = \"192.168.1.20\"\nport = 9000\n"
        "[midi]\nonly = [\"nano\"]\nignore = [\"Through\", \"x\"]\n"
        "[beat]\ntempo = 127.5\nclock = false\nbar = 3\n");
    EXPECT_TRUE(reading.faults.empty());
    EXPECT_EQ(reading.map, (ControlMap{.osc = false,
                                       .listen = "192.168.1.20",
                                       .port = 9000,
                                       .ignoredDevices = {"Through", "x"},
                                       .onlyDevices = {"nano"},
                                       .tempo = 127.5,
                                       .clock = false,
                                       .bar = 3,
                                       .bindings = {},
                                       .rules = {}}));
    EXPECT_EQ(readMap("[beat]\ntempo = 120").map.tempo, 120.0);
}

TEST(ReadMap, Bindings_AreRead) {
    const MapReading reading = readMap(
        "[[on]]\nnote = 36\nchannel = 10\ndevice = \"pad\"\ndo = \"top.next\"\nat = \"bar\"\n"
        "\n[[on]]\nknob = 127\ndo = \"top.scrub\"\n[[on]]\nbend = true\ndo = \"scrub\"\n"
        "[[on]]\nprogram = 0\ndo = \"playlist 3\"\nat = \"beat\"\n"
        "[[on]]\nosc = \"/1/push1\"\ndo = \"fade\"\nat = \"now\"\n");
    EXPECT_TRUE(reading.faults.empty());
    const std::vector<Binding> expected{
        {.channel = 10,
         .number = 36,
         .device = "pad",
         .action = {.kind = ActionKind::NEXT, .layer = Layer::TOP},
         .at = Quantum::BAR,
         .line = 1},
        {.kind = HeardKind::KNOB,
         .number = 127,
         .action = {.kind = ActionKind::SCRUB, .layer = Layer::TOP},
         .line = 8},
        {.kind = HeardKind::BEND, .action = {.kind = ActionKind::SCRUB}, .line = 11},
        {.kind = HeardKind::PROGRAM,
         .action = {.kind = ActionKind::PLAYLIST, .number = 3},
         .at = Quantum::BEAT,
         .line = 14},
        {.kind = HeardKind::OSC,
         .address = "/1/push1",
         .action = {.kind = ActionKind::FADE},
         .line = 18}};
    EXPECT_EQ(reading.map.bindings, expected);
    EXPECT_EQ(reading.lastLines, (std::vector<int>{6, 10, 13, 17, 21}));
}

TEST(ReadMap, Rules_AreRead) {
    const MapReading reading = readMap(
        "[[every]]\ndo = \"flash\"\n"
        "[[every]]\nbeats = 256\noffset = 255\ndo = [\"mode.add\", \"tempo 90\"]\nchance = 1\n");
    EXPECT_TRUE(reading.faults.empty());
    const std::vector<Rule> expected{{.actions = {{.kind = ActionKind::FLASH}}, .line = 1},
                                     {.beats = 256,
                                      .offset = 255,
                                      .actions = {{.kind = ActionKind::MODE, .mode = MODE_ADD},
                                                  {.kind = ActionKind::TEMPO, .number = 90}},
                                      .chance = 1,
                                      .line = 3}};
    EXPECT_EQ(reading.map.rules, expected);
}

TEST(ReadMap, AFault_HasItsPlaceAndTheOthersStand) {
    const std::string_view text =
        "[[on]]\nnote = 36\ndo = \"top.nxt\"\n[[on]]\nnote = 37\ndo = \"flash\"\n"
        "[osc]\nport = 0\nlisten = \"0.0.0.0\"\n";
    EXPECT_EQ(faultsOf(text),
              "8:8: [osc] port is a whole number from 1 to 65535\n"
              "3:6: there is no action 'top.nxt'; did you mean top.next?\n");
    const ControlMap map = readMap(text).map;
    ASSERT_EQ(map.bindings.size(), 1u);
    EXPECT_EQ(map.bindings[0].number, 37);
    EXPECT_EQ(map.listen, "0.0.0.0");
    EXPECT_EQ(map.port, 7770);
}

TEST(LineOf, AFault_HasPathAndPlace) {
    EXPECT_EQ(lineOf("a/control.toml", {12, 8, "no"}), "a/control.toml:12:8: no");
}

TEST(ReadMap, UnknownKey_NamesTheNearest) {
    EXPECT_EQ(faultsOf("[[on]]\nnote = 1\nchanel = 2\ndo = \"flash\"\n"),
              "3:1: [[on]] has no key 'chanel'; did you mean channel?\n");
    EXPECT_EQ(faultsOf("[something]\n"), "1:2: the map has no key 'something'\n");
}

// Each is one fault and no binding.
TEST(ReadMap, WrongBinding_IsAFault) {
    for (const char* wrong : {"",
                              "note = 1\n",
                              "do = \"flash\"\n",
                              "note = 1\nknob = 1\ndo = \"flash\"\n",
                              "note = 128\ndo = \"flash\"\n",
                              "note = -1\ndo = \"flash\"\n",
                              "note = 1.0\ndo = \"flash\"\n",
                              "note = \"C3\"\ndo = \"flash\"\n",
                              "note = 1\nchannel = 0\ndo = \"flash\"\n",
                              "note = 1\nchannel = 17\ndo = \"flash\"\n",
                              "note = 1\ndevice = 3\ndo = \"flash\"\n",
                              "note = 1\ndo = 3\n",
                              "note = 1\ndo = [\"flash\"]\n",
                              "note = 1\ndo = \"flash\"\nat = \"noon\"\n",
                              "note = 1\ndo = \"fade\"\nat = \"bar\"\n",
                              "knob = 1\ndo = \"scrub\"\nat = \"beat\"\n",
                              "note = 1\ndo = \"scrub\"\n",
                              "program = 1\ndo = \"top.scrub\"\n",
                              "program = 1\ndo = \"hold\"\n",
                              "bend = false\ndo = \"flash\"\n",
                              "bend = 1\ndo = \"flash\"\n",
                              "osc = \"1\"\ndo = \"flash\"\n",
                              "osc = 1\ndo = \"flash\"\n",
                              "osc = \"/a\"\nchannel = 1\ndo = \"flash\"\n"}) {
        const MapReading reading = readMap("[[on]]\n" + std::string(wrong));
        EXPECT_GE(reading.faults.size(), 1u) << wrong;
        EXPECT_LE(reading.faults.size(), *wrong == 0 ? 2u : 1u) << wrong;
        EXPECT_TRUE(reading.map.bindings.empty()) << wrong;
    }
}

TEST(ReadMap, WrongRule_IsAFault) {
    for (const char* wrong :
         {"beats = 4\n", "beats = 0\ndo = \"flash\"\n", "beats = 257\ndo = \"flash\"\n",
          "beats = 4\noffset = 4\ndo = \"flash\"\n", "offset = -1\ndo = \"flash\"\n",
          "chance = 0\ndo = \"flash\"\n", "chance = 1.1\ndo = \"flash\"\n",
          "chance = nan\ndo = \"flash\"\n", "do = []\n", "do = [\"flash\", 1]\n",
          "do = [\"flash\", \"flsh\"]\n", "do = \"fade\"\n", "do = \"top.scrub\"\n",
          "do = \"tap\"\n", "do = \"flash\"\nat = \"bar\"\n"}) {
        const MapReading reading = readMap("[[every]]\n" + std::string(wrong));
        EXPECT_EQ(reading.faults.size(), 1u) << wrong;
        EXPECT_TRUE(reading.map.rules.empty()) << wrong;
    }
}

TEST(ReadMap, WrongSection_IsAFault) {
    for (const char* wrong :
         {"osc = 1", "[[osc]]", "on = []", "on = [{note = 1, do = \"flash\"}]", "every = 3", "[on]",
          "[osc]\nenabled = 1", "[osc]\nlisten = \"localhost\"",
          "[osc]\nlisten = \"127.0.0.1\\u0000x\"", "[osc]\nport = 65536", "[midi]\nonly = \"x\"",
          "[midi]\nonly = [1]", "[midi]\nignore = [\"\"]", "[beat]\ntempo = 19",
          "[beat]\ntempo = nan", "[beat]\ntempo = \"fast\"", "[beat]\nclock = 1", "[beat]\nbar = 0",
          "[beat]\nbar = 17"}) {
        const MapReading reading = readMap(wrong);
        EXPECT_EQ(reading.faults.size(), 1u) << wrong;
        EXPECT_EQ(reading.map, ControlMap{}) << wrong;
    }
}

TEST(ReadMap, NoToml_IsOneFault) {
    using std::string_view_literals::operator""sv;
    for (const std::string_view wrong :
         {"[osc"sv, "a = 1\na = 2"sv, "x = \"\xff\""sv, "\0"sv, "a = \"\0\""sv, "\xff\xfe"sv,
          "= 3"sv, "a = 99999999999999999999"sv}) {
        EXPECT_EQ(readMap(wrong).faults.size(), 1u) << wrong;
    }
    EXPECT_TRUE(faultsOf("[osc]\nport = \n").starts_with("2:")) << faultsOf("[osc]\nport = \n");
}

TEST(ReadMap, TooLarge_IsAFault) {
    EXPECT_TRUE(readMap(std::string(kLargestMap, '\n')).faults.empty());
    EXPECT_EQ(readMap(std::string(kLargestMap + 1, '\n')).faults.size(), 1u);
}

TEST(ReadMap, Depth_DoesNotFillTheStack) {
    EXPECT_EQ(readMap("a = " + std::string(500000, '[')).faults.size(), 1u);
    std::string deep = "a";
    for (int i = 0; i < 300000; ++i) {
        deep += ".a";
    }
    EXPECT_EQ(readMap("[" + deep + "]\n").faults.size(), 1u);
    const std::string key = deep.substr(0, 2 * 64 + 1);
    std::string nested = "[" + key + "]\n" + key + "=";
    for (int i = 0; i < 120; ++i) {
        nested += "[\n{" + key + "=";
    }
    nested += "1";
    for (int i = 0; i < 120; ++i) {
        nested += "}\n]";
    }
    EXPECT_EQ(faultsOf(nested), "1:2: the map has no key 'a'; did you mean on?\n");
}

TEST(ReadMap, ManyFaults_FirstHundredAreKept) {
    std::string text;
    for (int i = 0; i < 20000; ++i) {
        text += "[[on]]\nnote = 1\ndo = \"top.nxt\"\n";
    }
    const MapReading reading = readMap(text);
    EXPECT_EQ(reading.faults.size(), 100u);
    EXPECT_TRUE(reading.map.bindings.empty());
}

}  // namespace
}  // namespace control
