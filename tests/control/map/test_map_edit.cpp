#include <gtest/gtest.h>

#include <random>

#include "tools/control/map/map_edit.h"
#include "tools/control/map/map_file.h"

namespace control {
namespace {

Binding noteFor(int note, const char* action) {
    return {.number = note, .action = *actionNamed(action)};
}

TEST(PrintBinding, Plain_HasInputAndAction) {
    EXPECT_EQ(printBinding(noteFor(36, "top.next")), "[[on]]\nnote = 36\ndo = \"top.next\"\n");
}

TEST(PrintBinding, Full_HasAll) {
    EXPECT_EQ(printBinding({.kind = HeardKind::KNOB,
                            .channel = 2,
                            .number = 7,
                            .device = "a\"b\\c\n",
                            .action = *actionNamed("flash"),
                            .at = Quantum::BAR}),
              "[[on]]\nknob = 7\nchannel = 2\ndevice = \"a\\\"b\\\\c\\u000A\"\ndo = \"flash\"\n"
              "at = \"bar\"\n");
}

TEST(PrintBinding, DeviceThatIsNoUtf8_IsLeftOut) {
    Binding binding = noteFor(1, "flash");
    binding.device = "pad \xff";
    EXPECT_EQ(printBinding(binding), "[[on]]\nnote = 1\ndo = \"flash\"\n");
}

TEST(WithBinding, EmptyMap_IsTheBinding) {
    EXPECT_EQ(withBinding("", noteFor(1, "flash")), "[[on]]\nnote = 1\ndo = \"flash\"\n");
}

TEST(WithBinding, NoneOfThatAction_StandsBehindTheLast) {
    EXPECT_EQ(withBinding("# mine\n[[on]]\nnote = 1\ndo = \"flash\" # x\n# end\n[osc]\n",
                          noteFor(2, "tap")),
              "# mine\n[[on]]\nnote = 1\ndo = \"flash\" # x\n"
              "\n[[on]]\nnote = 2\ndo = \"tap\"\n# end\n[osc]\n");
    EXPECT_EQ(withBinding("# mine", noteFor(2, "tap")),
              "# mine\n\n[[on]]\nnote = 2\ndo = \"tap\"\n");
}

TEST(WithBinding, SameAction_IsReplacedAlone) {
    EXPECT_EQ(withBinding("# a\n[[on]]\nnote = 1\n# in\ndo = \"flash\"\n\n# b\n"
                          "[[on]] # c\nnote = 3\ndo = \"tap\"",
                          noteFor(2, "flash")),
              "# a\n[[on]]\nnote = 2\ndo = \"flash\"\n\n# b\n[[on]] # c\nnote = 3\ndo = \"tap\"");
    EXPECT_EQ(withBinding("[[on]]\nnote = 3\ndo = \"playlist 1\"", noteFor(2, "playlist 1")),
              "[[on]]\nnote = 2\ndo = \"playlist 1\"\n");
}

TEST(WithBinding, CarriageReturns_AreKept) {
    EXPECT_EQ(withBinding("# a\r\n[[on]]\r\nnote = 1\r\ndo = \"flash\"\r\n", noteFor(2, "tap")),
              "# a\r\n[[on]]\r\nnote = 1\r\ndo = \"flash\"\r\n"
              "\r\n[[on]]\r\nnote = 2\r\ndo = \"tap\"\r\n");
}

TEST(WithBinding, TextOfSeveralLines_IsReplacedWhole) {
    EXPECT_EQ(
        withBinding("[[on]]\nnote = 1\ndo = \"tap\"\ndevice = \"\"\"\na\n[[on]]\n\"\"\"\n[osc]",
                    noteFor(2, "tap")),
        "[[on]]\nnote = 2\ndo = \"tap\"\n[osc]");
}

class RandomMap {
public:
    explicit RandomMap(unsigned seed) : dice_(seed) {}

    int under(int end) { return std::uniform_int_distribution<int>(0, end - 1)(dice_); }

    Binding binding() {
        static const char* const kActions[] = {"flash", "tap",        "top.next", "fade",
                                               "home",  "playlist 7", "tempo 90", "mode.add"};
        Binding binding{.number = under(128), .action = *actionNamed(kActions[under(8)])};
        binding.kind = under(2) == 0 ? HeardKind::NOTE : HeardKind::KNOB;
        if (under(3) == 0) {
            binding.channel = 1 + under(16);
        }
        binding.device = under(3) == 0 ? "d\xc3\xa9v \"\\\t#" : "";
        binding.at = isHeld(binding.action.kind) ? Quantum::NOW : static_cast<Quantum>(under(3));
        return binding;
    }

    std::string text() {
        static const char* const kBetween[] = {
            "\n",
            "# c\n",
            "# do = \"flash\"\n",
            "# \xe2\x80\xa8 \xc2\x85 [[on]]\n",
            "  \t\n",
            "[[every]]\ndo = [\n\"flash\", # [[on]]\n\"tempo 60\"]\n"};
        std::string text = under(4) == 0 ? "\xef\xbb\xbf[osc]\nport = 1\n" : "";
        for (int i = under(6); i > 0; --i) {
            text += kBetween[under(6)];
            text += printBinding(binding());
            text += under(3) == 0 ? "# behind\n" : "";
        }
        if (under(3) == 0 && !text.empty() && text.back() == '\n') {
            text.pop_back();
        }
        return under(2) == 0 ? text : withReturns(text);
    }

private:
    static std::string withReturns(const std::string& text) {
        std::string result;
        for (const char c : text) {
            result.append(c == '\n' ? "\r\n" : std::string(1, c));
        }
        return result;
    }

    std::mt19937 dice_;
};

ControlMap withoutLines(ControlMap map) {
    for (Binding& binding : map.bindings) {
        binding.line = 0;
    }
    for (Rule& rule : map.rules) {
        rule.line = 0;
    }
    return map;
}

TEST(WithBinding, AnyMap_ReadsAsTheOldOneButForIt) {
    for (unsigned seed = 0; seed < 2000; ++seed) {
        RandomMap random(seed);
        const std::string text = random.text();
        const Binding binding = random.binding();
        const MapReading before = readMap(text);
        ASSERT_TRUE(before.faults.empty()) << seed << "\n" << text;
        const MapReading after = readMap(withBinding(text, binding));
        ASSERT_TRUE(after.faults.empty()) << seed << "\n" << withBinding(text, binding);
        ControlMap expected = withoutLines(before.map);
        const auto old = std::ranges::find(expected.bindings, binding.action, &Binding::action);
        if (old != expected.bindings.end()) {
            *old = binding;
        } else {
            expected.bindings.push_back(binding);
        }
        ASSERT_EQ(withoutLines(after.map), expected) << seed << "\n" << text;
    }
}

}  // namespace
}  // namespace control
