#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tools/control/stage/action.h"

namespace control {
namespace {

Action action(std::string_view name) {
    const std::optional<Action> found = actionNamed(name);
    EXPECT_TRUE(found) << name;
    return found.value_or(Action{});
}

TEST(ActionNames, Whole_EachReadBackFromItsName) {
    for (std::string name : actionNames()) {
        const size_t number = name.find(" N");
        if (number != std::string::npos) {
            name.replace(number, 2, name.starts_with("tempo") ? " 120.5" : " 7");
        }
        EXPECT_EQ(nameOf(action(name)), name);
    }
}

TEST(ActionNames, Whole_NoneStandsTwice) {
    const auto& names = actionNames();
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
    // 2 layers, 5 of a layer and 9 filters of 7 verbs each for 3 layers, 6 modes, 11 others.
    EXPECT_EQ(names.size(), 2u + 3 * (5 + 9 * 8) + 6 + 11);
}

TEST(ActionNamed, OfALayer_HasIt) {
    EXPECT_EQ(action("top"), (Action{.kind = ActionKind::LAYER, .layer = Layer::TOP}));
    EXPECT_EQ(action("bottom"), (Action{.kind = ActionKind::LAYER, .layer = Layer::BOTTOM}));
    EXPECT_EQ(action("next"), (Action{.kind = ActionKind::NEXT}));
    EXPECT_EQ(action("top.next"), (Action{.kind = ActionKind::NEXT, .layer = Layer::TOP}));
    EXPECT_EQ(action("bottom.previous"),
              (Action{.kind = ActionKind::PREVIOUS, .layer = Layer::BOTTOM}));
    EXPECT_EQ(action("random"), (Action{.kind = ActionKind::RANDOM}));
    EXPECT_EQ(action("top.reverse"), (Action{.kind = ActionKind::REVERSE, .layer = Layer::TOP}));
    EXPECT_EQ(action("bottom.scrub"), (Action{.kind = ActionKind::SCRUB, .layer = Layer::BOTTOM}));
}

TEST(ActionNamed, OfAMode_HasIt) {
    const std::pair<const char*, MixMode> kExpected[] = {
        {"mode.none", MODE_TOP},  {"mode.blend", MODE_BLEND},
        {"mode.add", MODE_ADD},   {"mode.multiply", MODE_MULTIPLY},
        {"mode.alpha", MODE_KEY}, {"mode.half", MODE_HALF_HALF}};
    for (const auto& [name, mode] : kExpected) {
        EXPECT_EQ(action(name), (Action{.kind = ActionKind::MODE, .mode = mode})) << name;
    }
    EXPECT_FALSE(actionNamed("mode"));
    EXPECT_FALSE(actionNamed("top.mode.add"));
}

TEST(ActionNamed, OfAFilter_HasFilterAndDirection) {
    EXPECT_EQ(action("filter.mirror.toggle"),
              (Action{.kind = ActionKind::FILTER_TOGGLE, .filter = FILTER_MIRROR}));
    EXPECT_EQ(action("filter.gameboy.on"),
              (Action{.kind = ActionKind::FILTER_ON, .filter = FILTER_GAME_BOY}));
    EXPECT_EQ(
        action("top.filter.glitch.off"),
        (Action{.kind = ActionKind::FILTER_OFF, .layer = Layer::TOP, .filter = FILTER_GLITCH}));
    EXPECT_EQ(action("bottom.filter.scroll.left"), (Action{.kind = ActionKind::FILTER_DIRECTION,
                                                           .layer = Layer::BOTTOM,
                                                           .filter = FILTER_SCROLL,
                                                           .direction = DIRECTION_LEFT}));
    EXPECT_EQ(action("filter.zoom.up").direction, DIRECTION_UP);
    EXPECT_EQ(action("filter.zoom.right").direction, DIRECTION_RIGHT);
    EXPECT_EQ(action("filter.zoom.down").direction, DIRECTION_DOWN);
    EXPECT_FALSE(actionNamed("filter.none.toggle"));
    EXPECT_FALSE(actionNamed("filter.game boy.toggle"));
    EXPECT_FALSE(actionNamed("filter.mirror"));
}

TEST(ActionNamed, OfNoLayer_HasItsKind) {
    const std::pair<const char*, ActionKind> kExpected[] = {{"flash", ActionKind::FLASH},
                                                            {"fade", ActionKind::FADE},
                                                            {"hold", ActionKind::HOLD},
                                                            {"panel", ActionKind::PANEL},
                                                            {"list", ActionKind::LIST},
                                                            {"home", ActionKind::HOME},
                                                            {"tap", ActionKind::TAP},
                                                            {"fullscreen", ActionKind::FULL_SCREEN},
                                                            {"beat.stop", ActionKind::STOP_BEAT}};
    for (const auto& [name, kind] : kExpected) {
        EXPECT_EQ(action(name), (Action{.kind = kind})) << name;
    }
    EXPECT_FALSE(actionNamed("top.flash"));
}

TEST(ActionNamed, InCapitals_IsTheSame) {
    EXPECT_EQ(action("TOP.Next"), action("top.next"));
    EXPECT_EQ(action("Playlist 3"), action("playlist 3"));
}

TEST(ActionNamed, WithANumber_KeepsToItsRange) {
    EXPECT_EQ(action("playlist 1"), (Action{.kind = ActionKind::PLAYLIST, .number = 1}));
    EXPECT_EQ(action("playlist 256").number, 256);
    EXPECT_EQ(action("tempo 20").number, 20);
    EXPECT_EQ(action("tempo 127.25").number, 127.25);
    EXPECT_EQ(action("tempo 400").number, 400);
    for (const char* wrong : {"playlist",
                              "playlist ",
                              "playlist 0",
                              "playlist 257",
                              "playlist 1.5",
                              "playlist -1",
                              "playlist  3",
                              "playlist 3 ",
                              "playlist x",
                              "playlist nan",
                              "playlist 1e1",
                              "tempo",
                              "tempo 19.9",
                              "tempo 400.1",
                              "tempo inf",
                              "tempo nan",
                              "tempo 120x",
                              "next 1",
                              "top 1",
                              "next ",
                              " next",
                              "",
                              " ",
                              ".",
                              "top.",
                              "playlist N"}) {
        EXPECT_FALSE(actionNamed(wrong)) << wrong;
    }
}

TEST(NameOf, ANumber_HasNoMoreDigitsThanItNeeds) {
    EXPECT_EQ(nameOf({.kind = ActionKind::TEMPO, .number = 100}), "tempo 100");
    EXPECT_EQ(nameOf({.kind = ActionKind::TEMPO, .number = 127.3}), "tempo 127.3");
    EXPECT_EQ(nameOf({.kind = ActionKind::PLAYLIST, .number = 40}), "playlist 40");
}

TEST(ActionOfAddress, HasStrokesForPoints_EachNameHasOne) {
    for (std::string name : actionNames()) {
        const size_t number = name.find(" N");
        if (number != std::string::npos) {
            name.replace(number, 2, " 30");
        }
        std::string address = "/" + name;
        std::ranges::replace(address, '.', '/');
        std::ranges::replace(address, ' ', '/');
        EXPECT_EQ(actionOfAddress(address, {}), actionNamed(name)) << address;
    }
}

TEST(ActionOfAddress, WithANumber_TakesItFromTheAddressOrBesideIt) {
    EXPECT_EQ(actionOfAddress("/playlist/3", {}), actionNamed("playlist 3"));
    EXPECT_EQ(actionOfAddress("/playlist", 3), actionNamed("playlist 3"));
    EXPECT_EQ(actionOfAddress("/playlist/3", 1), actionNamed("playlist 3"));  // a button, down
    EXPECT_EQ(actionOfAddress("/tempo/120.5", {}), actionNamed("tempo 120.5"));
    EXPECT_EQ(actionOfAddress("/tempo", 120.5), actionNamed("tempo 120.5"));
    EXPECT_EQ(actionOfAddress("/top/next", 1), actionNamed("top.next"));
    EXPECT_FALSE(actionOfAddress("/playlist", {}));
    EXPECT_FALSE(actionOfAddress("/playlist", 0));
    EXPECT_FALSE(actionOfAddress("/playlist/", 3));
    EXPECT_FALSE(actionOfAddress("/tempo", 1e300));
}

TEST(ActionOfAddress, ThatIsNone_IsNotTaken) {
    for (const char* wrong : {"", "/", "//", "top/next", "/top.next", "/playlist 3", "/top/next/",
                              "//top/next", "/next/1", "/nxt", "/beat.stop"}) {
        EXPECT_FALSE(actionOfAddress(wrong, {})) << wrong;
    }
}

TEST(WhyNoAction, OfAMistypedName_NamesTheNearest) {
    EXPECT_EQ(whyNoAction("top.nxt"), "there is no action 'top.nxt'; did you mean top.next?");
    EXPECT_EQ(whyNoAction("Top.Nxt"), "there is no action 'Top.Nxt'; did you mean top.next?");
    EXPECT_EQ(whyNoAction("playlst 3"), "there is no action 'playlst 3'; did you mean playlist?");
    EXPECT_EQ(whyNoAction("nothing like it"), "there is no action 'nothing like it'");
    EXPECT_EQ(whyNoAction(std::string(100000, 'x')),
              "there is no action '" + std::string(60, 'x') + "'");
}

TEST(WhyNoAction, OfANumber_SaysItsRange) {
    EXPECT_EQ(whyNoAction("playlist"), "playlist takes a whole number from 1 to 256");
    EXPECT_EQ(whyNoAction("playlist 0"), "playlist takes a whole number from 1 to 256");
    EXPECT_EQ(whyNoAction("tempo 10"), "tempo takes a number from 20 to 400");
    EXPECT_EQ(whyNoAction("top.next 3"), "top.next takes no number");
}

}  // namespace
}  // namespace control
