#include "tools/record/recorder.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <utility>

#include "core/all.h"
#include "core/globals.h"
#include "files/playlists.h"
#include "support/folder.h"
#include "tools/record/score_writer.h"

namespace {

using maker::Recorder;

SDL_Event keyEvent(bool down, SDLKey key, uint16_t character = 0) {
    SDL_Event event = {};
    event.type = down ? SDL_KEYDOWN : SDL_KEYUP;
    event.key.keysym.sym = key;
    event.key.keysym.unicode = character;
    return event;
}

SDL_Event motion(int x, int y) {
    SDL_Event event = {};
    event.type = SDL_MOUSEMOTION;
    event.motion.x = static_cast<uint16_t>(x);
    event.motion.y = static_cast<uint16_t>(y);
    return event;
}

SDL_Event mouse(bool down, int button, int x, int y) {
    SDL_Event event = {};
    event.type = down ? SDL_MOUSEBUTTONDOWN : SDL_MOUSEBUTTONUP;
    event.button.button = static_cast<uint8_t>(button);
    event.button.x = static_cast<uint16_t>(x);
    event.button.y = static_cast<uint16_t>(y);
    return event;
}

// A recorder on a window of 1280 x 720.
class Recording : public testing::Test {
protected:
    Recording() {
        app_.screenW = 1920;
        app_.screenH = 1080;
        app_.appW = 1280;
        app_.appH = 720;
        all = &app_;
        _nbJoySticks = 0;
    }
    ~Recording() override { all = nullptr; }

    // An event, and SDL's array with it.
    void hear(const SDL_Event& event) {
        if (event.type == SDL_KEYDOWN || event.type == SDL_KEYUP) {
            keys_[event.key.keysym.sym] = event.type == SDL_KEYDOWN ? 1 : 0;
        }
        recorder_.hear(event);
    }
    // The lines since the last call.
    std::string taken() { return std::exchange(lines_, ""); }
    // A frame that has begun, past the head.
    void begin(int rate = 25) {
        recorder_.frameBegins(rate, keys_.data());
        taken();
    }

    TemporaryFolder folder_;
    c_all app_{};
    std::array<uint8_t, SDLK_LAST> keys_{};  // SDL's
    std::string lines_;
    Recorder recorder_{7, [this](std::string_view text) { lines_.append(text); }};
};

TEST_F(Recording, Head_HoldsDisplaySeedAndFiles) {
    std::filesystem::create_directory("userdata");
    std::ofstream("userdata/prefs.xml") << "<all>\n";
    recorder_.frameBegins(25, keys_.data());
    EXPECT_EQ(taken(),
              "velmora score 1\ndisplay 1920 1080\nseed 7\nfile userdata/prefs.xml\n|<all>\n|\n"
              "file userdata/gamecontroller.xml missing\nfile userdata/playlists.xml missing\n");
}

TEST_F(Recording, Head_NamesTheClipsOfThePlaylists) {
    std::filesystem::create_directory("userdata");
    std::filesystem::create_directories("videos/sea");
    std::ofstream("videos/sea/a b.m19") << "12345";
    const std::vector<files::Playlist> playlists = {{"one", {"sea/a b.m19", "gone.m19"}},
                                                    {"two", {"sea/a b.m19", " blank.m19"}}};
    std::ofstream("userdata/playlists.xml") << files::printPlaylists(playlists);
    recorder_.frameBegins(25, keys_.data());
    EXPECT_TRUE(taken().ends_with("\nclip 5 sea/a b.m19\nclip missing gone.m19\n"));
}

TEST_F(Recording, Frames_WithoutEventsTakeNoLine) {
    begin();
    recorder_.allRead();
    recorder_.frameBegins(25, keys_.data());
    recorder_.allRead();
    recorder_.frameBegins(25, keys_.data());
    hear(keyEvent(true, SDLK_q, 'q'));
    recorder_.allRead();
    EXPECT_EQ(recorder_.finish(), 3);
    EXPECT_EQ(taken(), "0 fps=25\n2 +q\n3 end\n");
}

TEST_F(Recording, Rate_IsTakenWhenItChanges) {
    begin(5);
    recorder_.frameBegins(25, keys_.data());
    recorder_.frameBegins(25, keys_.data());
    recorder_.frameBegins(24, keys_.data());
    recorder_.finish();
    EXPECT_EQ(taken(), "0 fps=5\n1 fps=25\n3 fps=24\n4 end\n");
}

TEST_F(Recording, Keys_RepeatWhileTheyAreDown) {
    begin();
    hear(keyEvent(true, SDLK_q, 'Q'));
    hear(keyEvent(true, SDLK_q, 'Q'));
    hear(keyEvent(false, SDLK_q));
    hear(keyEvent(true, SDLK_q, 'q'));
    recorder_.finish();
    EXPECT_EQ(taken(), "0 fps=25 +q/81 ~q/81 -q +q\n1 end\n");
}

TEST_F(Recording, KeysWithoutEvents_AreTakenBeforeTheFrame) {
    begin();
    hear(keyEvent(true, SDLK_q, 'q'));
    recorder_.allRead();
    keys_[SDLK_q] = 1;
    keys_[SDLK_f] = 1;
    recorder_.frameBegins(25, keys_.data());
    recorder_.allRead();
    keys_[SDLK_q] = 0;
    recorder_.frameBegins(25, keys_.data());
    recorder_.finish();
    EXPECT_EQ(taken(), "0 fps=25 +q\n1 !f=1\n2 !q=0\n3 end\n");
}

TEST_F(Recording, WhatComesBehindTheEvents_IsOfTheNextFramesBeginning) {
    begin();
    recorder_.allRead();
    hear(keyEvent(true, SDLK_w, 'w'));
    recorder_.hear(motion(330, 190));
    recorder_.frameBegins(25, keys_.data());
    hear(keyEvent(false, SDLK_w));
    recorder_.finish();
    EXPECT_EQ(taken(), "0 fps=25\n1 !+w !@10,10 -w\n2 end\n");
}

TEST_F(Recording, Pointer_IsOfThePictureAndTheLastPlaceCounts) {
    begin();
    recorder_.hear(motion(0, 0));
    recorder_.hear(motion(320, 180));
    recorder_.hear(motion(321, 182));
    recorder_.allRead();
    recorder_.frameBegins(25, keys_.data());
    recorder_.hear(motion(321, 182));  // where it was
    recorder_.allRead();
    recorder_.finish();
    EXPECT_EQ(taken(), "0 fps=25 @1,2\n2 end\n");
}

TEST_F(Recording, Presses_BringTheirPlace) {
    begin();
    recorder_.hear(motion(400, 300));
    recorder_.hear(mouse(true, 1, 420, 300));
    recorder_.hear(motion(430, 300));
    recorder_.hear(mouse(false, 1, 430, 300));
    recorder_.hear(mouse(true, 4, 430, 300));
    recorder_.finish();
    EXPECT_EQ(taken(), "0 fps=25 @100,120 +mouse @110,120 -mouse +mouse4\n1 end\n");
}

TEST_F(Recording, Pad_IsTakenWhenItChanges) {
    begin();
    recorder_.padAsked(3, false);
    recorder_.padAsked(3, true);
    recorder_.padAsked(3, true);
    recorder_.allRead();
    recorder_.padAsked(4, true);
    recorder_.padAsked(99, false);
    recorder_.frameBegins(25, keys_.data());
    recorder_.padAsked(3, false);
    recorder_.finish();
    EXPECT_EQ(taken(), "0 fps=25 !+pad3 +pad4\n1 !-pad3\n2 end\n");
}

TEST_F(Recording, Close_IsTaken) {
    begin();
    SDL_Event close = {};
    close.type = SDL_QUIT;
    recorder_.hear(close);
    recorder_.finish();
    EXPECT_EQ(taken(), "0 fps=25 close\n1 end\n");
}

// A performer who never rests, with the way into the file.
TEST_F(Recording, Cost_IsUnderAPercentOfACore) {
    constexpr int kFrames = 20000;
    constexpr double kFrameNs = 39e6;
    std::signal(SIGPIPE, SIG_IGN);
    maker::ScoreWriter file("busy.score");
    Recorder busy(7, [&file](std::string_view text) { file.write(text); });
    const auto begin = std::chrono::steady_clock::now();
    for (int frame = 0; frame < kFrames; ++frame) {
        busy.frameBegins(25, keys_.data());
        for (int button = 0; button < 14; ++button) {
            busy.padAsked(button, (frame + button) % 5 == 0);
        }
        busy.hear(motion(frame % 1280, 300));
        keys_[SDLK_q] = frame % 2 == 0 ? 1 : 0;
        busy.hear(keyEvent(frame % 2 == 0, SDLK_q, 'q'));
        busy.allRead();
    }
    const std::chrono::duration<double, std::nano> took = std::chrono::steady_clock::now() - begin;
    busy.finish();
    EXPECT_TRUE(file.finish());
    std::printf("%.0f ns a frame, %.4f %% of a core\n", took.count() / kFrames,
                took.count() / kFrames / kFrameNs * 100);
    EXPECT_LT(took.count() / kFrames, kFrameNs / 100);
}

TEST_F(Recording, Nothing_HasNoFrames) {
    EXPECT_EQ(recorder_.finish(), 0);
    EXPECT_EQ(taken(), "");
}

}  // namespace
