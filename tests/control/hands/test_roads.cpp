#include <gtest/gtest.h>
// GoogleTest comes before X's macros.
#include <unistd.h>

#include <cstdlib>

#include "control/hands/test_window.h"
#include "tools/control/hands/roads.h"

namespace {

using control::examineRoad;
using control::Finding;
using control::TestServer;
using control::TestWindow;

std::string inWords(const std::vector<Finding>& findings) {
    std::string all;
    for (const Finding& each : findings) {
        all.append(each.fine ? "fine: " : "not: ").append(each.what).append("\n");
        EXPECT_EQ(each.fine && !each.mend.empty(), false) << each.what;
    }
    return all;
}

TEST(Roads, NoDisplay_SaysWhatEachLacks) {
    unsetenv("DISPLAY");
    if (access("/dev/uinput", F_OK) == 0) {
        GTEST_SKIP() << "/dev/uinput is there";
    }
    EXPECT_EQ(inWords(examineRoad()),
              "not: no way to Velmora: no DISPLAY is set; cannot open /dev/uinput: No such file or "
              "directory; `sudo modprobe uinput` may bring it\n");
    setenv("DISPLAY", ":4242", 1);
    EXPECT_EQ(inWords(examineRoad()),
              "not: no way to Velmora: no X server at :4242; cannot open /dev/uinput: No such file "
              "or directory; `sudo modprobe uinput` may bring it\n");
    unsetenv("DISPLAY");
}

TEST(Roads, Display_SaysWhetherVelmoraListens) {
    TestServer server;
    const std::string pressed = "fine: keys are pressed by XTest on " + server.display() + "\n";
    TestWindow other({900, 500, 100, 100}, "other");
    other.focus();
    EXPECT_EQ(inWords(examineRoad()), pressed + "not: Velmora is not to be seen there\n");
    TestWindow window;
    EXPECT_EQ(inWords(examineRoad()),
              pressed + "not: Velmora's window does not have the keyboard\n");
    window.focus();
    EXPECT_EQ(inWords(examineRoad()), pressed + "fine: Velmora listens\n");
    ASSERT_TRUE(control::setLayout("fr"));
    EXPECT_EQ(inWords(examineRoad()), pressed + "fine: Velmora listens\n" +
                                          "not: the keyboard's layout has no key for 1, 2, 3, 4, "
                                          "5, 6\n");
}

}  // namespace
