#include <gtest/gtest.h>

#include "tests/control/recording_hands.h"
#include "tools/control/bridge/state_teller.h"

namespace control {

namespace {

class StateTellerTest : public testing::Test {
protected:
    static Heard message(const std::string& address, std::optional<double> value = std::nullopt,
                         const std::string& text = "", const std::string& from = "phone") {
        Heard heard;
        heard.kind = HeardKind::OSC;
        heard.address = address;
        heard.value = value;
        heard.text = text;
        heard.device = from;
        heard.when = after(0);
        return heard;
    }
    std::string take() { return std::exchange(sent_, ""); }
    void mode(const char* name) {
        bridge.act(actionNamed(name).value(), std::nullopt, Quantum::NOW, after(0));
    }

    RecordingHands hands;
    StageFiles files;
    Bridge bridge{hands, {}, [this]() -> const StageFiles& { return files; }, 1};
    StateTeller teller{bridge, [this](const std::string& to, const std::string& address,
                                      std::optional<double> number, const std::string& text) {
                           sent_ +=
                               to + " " + address +
                               (number ? " " + std::to_string(static_cast<int>(*number)) : "") +
                               (text.empty() ? "" : " " + text) + "\n";
                       }};

private:
    std::string sent_;
};

}  // namespace

TEST_F(StateTellerTest, NobodyAsked_NobodyIsTold) {
    mode("mode.add");
    EXPECT_EQ(teller.advance(after(0)), Time::max());
    EXPECT_EQ(take(), "");
}

TEST_F(StateTellerTest, Subscriber_IsToldAllAndThenWhatChanges) {
    EXPECT_TRUE(teller.hear(message("/subscribe")));
    teller.advance(after(0));
    EXPECT_EQ(take(),
              "phone /state/layer top\nphone /state/mode none\n"
              "phone /state/playlist\nphone /state/beat\n");
    teller.advance(after(1));
    EXPECT_EQ(take(), "");
    mode("mode.add");
    teller.advance(after(2));
    EXPECT_EQ(take(), "phone /state/mode add\n");
    EXPECT_TRUE(teller.hear(message("/subscribe", 0)));
    mode("mode.blend");
    teller.advance(after(3));
    EXPECT_EQ(take(), "");
}

TEST_F(StateTellerTest, Asked_IsToldOnce) {
    EXPECT_TRUE(teller.hear(message("/state")));
    teller.advance(after(0));
    EXPECT_NE(take(), "");
    mode("mode.add");
    teller.advance(after(1));
    EXPECT_EQ(take(), "");
}

TEST_F(StateTellerTest, Beat_IsTold) {
    teller.hear(message("/subscribe"));
    teller.advance(after(0));
    take();
    bridge.act(actionNamed("tap").value(), std::nullopt, Quantum::NOW, after(5));
    teller.advance(after(5));
    EXPECT_EQ(take(), "phone /state/beat 1\n");
}

TEST_F(StateTellerTest, ThirtyASecond_AreTheMost) {
    teller.hear(message("/subscribe"));
    size_t lines = 0;
    Time next{};
    for (int i = 0; i < 100; ++i) {
        mode(i % 2 == 0 ? "mode.add" : "mode.blend");
        next = teller.advance(after(i));
        const std::string sent = take();
        lines += static_cast<size_t>(std::ranges::count(sent, '\n'));
    }
    EXPECT_EQ(lines, 30U);
    EXPECT_EQ(next, after(1000));
    teller.advance(after(1000));
    EXPECT_EQ(take(), "phone /state/mode blend\n");
}

TEST_F(StateTellerTest, TooManyListeners_TheFirstMakesRoom) {
    for (size_t i = 0; i <= kMostListeners; ++i) {
        teller.hear(message("/subscribe", 1, "", std::to_string(i)));
    }
    teller.advance(after(0));
    const std::string sent = take();
    EXPECT_EQ(sent.find("0 /state/layer"), sent.find("10 /state/layer") + 1);
    EXPECT_NE(sent.find("16 /state/layer"), std::string::npos);
}

TEST_F(StateTellerTest, Do_IsAnswered) {
    EXPECT_TRUE(teller.hear(message("/do", std::nullopt, "flash")));
    EXPECT_EQ(take(), "phone /done\n");
    bridge.advance(after(0));
    EXPECT_EQ(hands.take(), "+S");
    EXPECT_TRUE(teller.hear(message("/do", std::nullopt, "flsh")));
    EXPECT_EQ(take(), "phone /refused there is no action 'flsh'; did you mean flash?\n");
    EXPECT_TRUE(teller.hear(message("/do", std::nullopt, "playlist 9")));
    EXPECT_EQ(take(), "phone /refused there is no playlist 9; Velmora has 0\n");
}

TEST_F(StateTellerTest, OtherMessage_IsNotForIt) {
    EXPECT_FALSE(teller.hear(message("/flash")));
    EXPECT_EQ(take(), "");
}

}  // namespace control
