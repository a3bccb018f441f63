// The built velmora-control, called as from a shell, on no display.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <thread>

#include "support/folder.h"
#include "tools/control/ears/osc.h"

namespace control {

namespace {

class Commands : public testing::Test {
protected:
    Commands() {
        setenv("HOME", ".", 1);
        unsetenv("XDG_CONFIG_HOME");
        unsetenv("DISPLAY");
        unsetenv("VELMORA_HOME");
        std::ofstream("map.toml") << "[osc]\nport = " << port << "\n";
    }

    // What it prints, errors too; its exit status to `status`.
    std::string run(const std::string& words, const std::string& input = "true") {
        const std::string line = input + " | " CONTROL " --map map.toml " + words + " 2>&1";
        FILE* pipe = popen(line.c_str(), "r");
        std::string all;
        std::array<char, 1024> part{};
        while (const size_t got = fread(part.data(), 1, part.size(), pipe)) {
            all.append(part.data(), got);
        }
        status = WEXITSTATUS(pclose(pipe));
        return all;
    }

    static std::string mapText() {
        std::stringstream text;
        text << std::ifstream("map.toml").rdbuf();
        return text.str();
    }

    TemporaryFolder folder;
    const int port = 40000 + getpid() % 20000;
    int status = -1;
};

}  // namespace

TEST_F(Commands, NoWayToVelmora_EndsAndSaysWhy) {
    const std::string said = run("run --folder .");
    EXPECT_EQ(status, 1);
    EXPECT_EQ(said.find("velmora-control: no way to Velmora: no DISPLAY is set; cannot open"), 0U)
        << said;
}

// Velmora makes its folder when it is started first.
TEST_F(Commands, RunBeforeVelmorasFirstStart_DoesNotAskForItsFolder) {
    EXPECT_EQ(run("run").find("velmora-control: no way to Velmora"), 0U);
    EXPECT_NE(run("run --folder nowhere").find("--folder: no folder nowhere"), std::string::npos);
}

TEST_F(Commands, Mistyped_NamesTheOneThatIsMeant) {
    EXPECT_NE(run("send top.nxt").find("there is no action 'top.nxt'; did you mean top.next?"),
              std::string::npos);
    EXPECT_EQ(status, 1);
    EXPECT_NE(run("moniter").find("did you mean monitor?"), std::string::npos);
    EXPECT_EQ(status, 2);
    EXPECT_NE(run("map pads").find("there is no map 'pads': pads-4x4, knobs-8, phone-osc"),
              std::string::npos);
    EXPECT_EQ(status, 1);
}

TEST_F(Commands, SendWithoutABridge_SaysSo) {
    const std::string said = run("send playlist 3");
    EXPECT_EQ(said, "velmora-control: no bridge answers at 127.0.0.1:" + std::to_string(port) +
                        "; start `velmora-control run`\n");
    EXPECT_EQ(status, 1);
}

TEST_F(Commands, Send_TellsWhatTheBridgeAnswers) {
    OscEar bridge("127.0.0.1", port);
    std::string asked;
    std::string answer = "/done";
    std::jthread answers([&](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            std::vector<Heard> heard;
            bridge.take(Clock::now(), heard);
            for (const Heard& each : heard) {
                asked = each.address + " " + each.text;
                bridge.answer(each.device, answer, std::nullopt, "the list is open");
            }
            std::this_thread::sleep_for(milliseconds(5));
        }
    });
    EXPECT_EQ(run("send playlist 3"), "");
    EXPECT_EQ(status, 0);
    EXPECT_EQ(asked, "/do playlist 3");
    answer = "/refused";
    EXPECT_EQ(run("send flash"), "velmora-control: the list is open\n");
    EXPECT_EQ(status, 1);
}

TEST_F(Commands, Learn_WritesWhatCameIn) {
    std::jthread phone([&](const std::stop_token& stop) {
        // Until it is heard: learn says nothing to us.
        for (int turn = 0; !stop.stop_requested(); ++turn) {
            sendOsc("127.0.0.1", port, "/1/push1", 1);
            sendOsc("127.0.0.1", port, "/1/fader1", turn % 2 == 0 ? 0 : 1);
            std::this_thread::sleep_for(milliseconds(20));
        }
    });
    const std::string said = run("learn flash top.scrub", "sleep 5");
    EXPECT_EQ(status, 0);
    EXPECT_NE(said.find("flash: play it; Return leaves it as it is, q ends\n"), std::string::npos);
    const std::string map = mapText();
    EXPECT_EQ(map.find("[osc]\nport = "), 0U);
    EXPECT_NE(map.find("osc = \"/1/fader1\"\ndo = \"top.scrub\"\n"), std::string::npos) << map;
    EXPECT_NE(map.find("do = \"flash\"\n"), std::string::npos) << map;
}

TEST_F(Commands, LearnSkipped_LeavesTheMap) {
    const std::string before = mapText();
    run("learn flash fade", "printf '\\n' ; sleep 0.2; printf 'q\\n'");
    EXPECT_EQ(status, 0);
    EXPECT_EQ(mapText(), before);
}

TEST_F(Commands, Doctor_NamesWhatIsMissing) {
    std::ofstream("map.toml", std::ios::app) << "[[on]]\nnote = 1\ndo = \"flsh\"\n";
    const std::string said = run("doctor");
    EXPECT_EQ(status, 1);
    for (const char* line : {"MISSING no way to Velmora",
                             "map.toml:5:6: there is no action 'flsh'; did you mean flash?",
                             "OSC: 127.0.0.1, port ", "MISSING there is no folder ./Velmora"}) {
        EXPECT_NE(said.find(line), std::string::npos) << line << " in\n" << said;
    }
}

TEST_F(Commands, Actions_ListsNames) {
    const std::string said = run("actions");
    EXPECT_EQ(status, 0);
    for (const char* line :
         {"top.next\n", "mode.add\n", "playlist N\n", "bottom.filter.hue.held\n"}) {
        EXPECT_NE(said.find(line), std::string::npos) << line;
    }
}

TEST_F(Commands, Map_IsPrintedWhole) {
    const std::string said = run("map pads-4x4");
    EXPECT_EQ(status, 0);
    EXPECT_NE(said.find("note = 51\ndo = \"mode.multiply\"\n"), std::string::npos);
}

}  // namespace control
