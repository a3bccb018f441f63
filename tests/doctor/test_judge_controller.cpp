#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "support/folder.h"
#include "tests/doctor/said.h"
#include "tools/doctor/controller.h"

namespace doctor {
namespace {

const std::string kConfigure = "OPTIONS, \"configure controller\": click through the squares.";

ControllerFacts pad() {
    return {1, "Pad", 14, 0, true, {}};
}

files::ControllerMap plainMap() {
    files::ControllerMap map;
    for (size_t entry = 0; entry < map.size(); ++entry) {
        map[entry] = static_cast<int>(entry);
    }
    return map;
}

Remarks judged(const ControllerFacts& facts,
               const std::optional<files::ControllerMap>& map = plainMap(), bool overSdl2 = false) {
    Remarks remarks;
    judgeController(facts, map, overSdl2, remarks);
    return remarks;
}

TEST(JudgeController, AllAssigned_IsInOrder) {
    const Remarks remarks = judged(pad());
    EXPECT_TRUE(atWorst(remarks, Grade::FINE));
    EXPECT_TRUE(says(remarks, Grade::FINE, "controller", "'Pad' plays, with 14 buttons"));
}

TEST(JudgeController, None_IsNoted) {
    const Remarks remarks = judged({}, std::nullopt);
    EXPECT_TRUE(atWorst(remarks, Grade::NOTE));
    EXPECT_TRUE(says(remarks, Grade::NOTE, "controller", "none is plugged in",
                     "One that is to play is plugged in before Velmora starts."));
}

TEST(JudgeController, Several_TheFirstPlays) {
    ControllerFacts facts = pad();
    facts.count = 2;
    EXPECT_TRUE(says(judged(facts), Grade::NOTE, "controller",
                     "2 are plugged in; the first plays, 'Pad'",
                     "Unplug the others if it is the wrong one."));
}

TEST(JudgeController, NotOpened_Hurts) {
    ControllerFacts facts = pad();
    facts.opens = false;
    EXPECT_TRUE(says(judged(facts), Grade::HURTS, "controller", "'Pad' cannot be opened",
                     "Plug it in anew."));
}

TEST(JudgeController, NoMap_IsSaidElsewhere) {
    EXPECT_EQ(judged(pad(), std::nullopt).worstFirst().size(), 0U);
}

TEST(JudgeController, FunctionsWithoutButton_Hurt) {
    files::ControllerMap map = plainMap();
    map[5] = 99;
    map[12] = -1;
    // Nothing hangs on this one.
    map[4] = 99;
    EXPECT_TRUE(says(judged(pad(), map), Grade::HURTS, "controller", "no button does: back, hold",
                     kConfigure));
}

TEST(JudgeController, ButtonsThatItLacks_Hurt) {
    files::ControllerMap map = plainMap();
    map[0] = 14;
    map[6] = 49;
    EXPECT_TRUE(says(judged(pad(), map), Grade::HURTS, "controller",
                     "it has 14 buttons, and the map asks for later ones: up, confirm",
                     kConfigure));
}

TEST(JudgeController, OneButtonForTwo_IsNoted) {
    files::ControllerMap map = plainMap();
    map[9] = 6;
    const Remarks remarks = judged(pad(), map);
    EXPECT_TRUE(atWorst(remarks, Grade::NOTE));
    EXPECT_TRUE(says(remarks, Grade::NOTE, "controller",
                     "button 6 does several things: confirm, block reverse", kConfigure));
}

TEST(JudgeController, Hat_IsNotedForTheClassicSdl) {
    ControllerFacts facts = pad();
    facts.hats = 1;
    EXPECT_TRUE(says(judged(facts), Grade::NOTE, "controller",
                     "'Pad' has its cross as a hat, which classic SDL 1.2 does not report as "
                     "buttons",
                     "Put up, down, left and right on other buttons in OPTIONS."));
    EXPECT_TRUE(atWorst(judged(facts, plainMap(), true), Grade::FINE));
}

TEST(JudgeController, LockedDevice_Hurts) {
    ControllerFacts facts;
    facts.locked = {"/dev/input/js0", "/dev/input/js1"};
    EXPECT_TRUE(says(judged(facts), Grade::HURTS, "controller",
                     "there is no right to read /dev/input/js0, /dev/input/js1",
                     "sudo usermod -aG input $USER, then log in anew."));
}

TEST(LockedDevices, JoysticksAlone_AreNamed) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "needs to give up rights";
    }
    const TemporaryFolder folder;
    for (const char* const name : {"js0", "js1", "event3", "mice"}) {
        std::ofstream(name) << "";
        chmod(name, std::string(name) == "js1" ? 0644 : 0600);
    }
    chmod(".", 0755);
    ASSERT_EQ(seteuid(65534), 0);
    const std::vector<std::string> locked = lockedIn(".");
    ASSERT_EQ(seteuid(0), 0);
    EXPECT_EQ(locked, std::vector<std::string>{"./js0"});
    EXPECT_TRUE(lockedIn("nowhere").empty());
}

}  // namespace
}  // namespace doctor
