// The foretold loading steps against the program's own loader.
#include <gtest/gtest.h>

#include <fstream>

#include "clip/survey.h"
#include "playlists/playlist.h"
#include "tests/support/clip_stage.h"
#include "tools/base/atomic_file.h"
#include "tools/clip/reports/check_set.h"
#include "tools/clip/reports/describe.h"

namespace {

namespace fs = std::filesystem;

constexpr int kFirstClipBudget = 65000;
constexpr int kOtherClipBudget = 2000;
constexpr int kReady = 2;

int stepsOf(c_moxel& clip, const std::string& name, int budget) {
    clip.init("", name);
    int steps = 1;
    while (clip.loopLoad(budget) != kReady) {
        ++steps;
    }
    clip.killRAM();
    return steps;
}

TEST(LoadSteps, EveryTestClip_LoadsInTheStepsForetold) {
    const fs::path clips = fs::path(TEST_DATA) / "clips";
    ClipStage stage(clips);
    int compared = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(clips)) {
        if (entry.path().extension() != ".m19") {
            continue;
        }
        const std::string name = entry.path().filename().string();
        maker::Description description;
        ASSERT_TRUE(maker::describe(maker::readWholeFile(entry.path()), description));
        EXPECT_EQ(stepsOf(*stage.clip, name, kOtherClipBudget), description.cost.steps) << name;
        EXPECT_EQ(stepsOf(*stage.clip, name, kFirstClipBudget), description.cost.stepsAsFirst)
            << name;
        ++compared;
    }
    EXPECT_EQ(compared, 12);
}

constexpr size_t kLook = 1000;  // bytes

clip::SurveyState survey(const fs::path& path, clip::Survey& found) {
    FILE* file = fopen(path.c_str(), "rb");
    clip::SurveyState state = clip::SURVEY_GOES_ON;
    while (state == clip::SURVEY_GOES_ON) {
        state = found.look(file, kLook);
    }
    fclose(file);
    return state;
}

TEST(LoadSteps, EveryTestClip_IsSurveyedAsItLoads) {
    const fs::path clips = fs::path(TEST_DATA) / "clips";
    ClipStage stage(clips);
    for (const fs::directory_entry& entry : fs::directory_iterator(clips)) {
        if (entry.path().extension() != ".m19") {
            continue;
        }
        const std::string name = entry.path().filename().string();
        clip::Survey found;
        EXPECT_EQ(survey(entry.path(), found), clip::SURVEY_PLAYS) << name;
        EXPECT_EQ(stepsOf(*stage.clip, name, kOtherClipBudget), found.steps()) << name;
        EXPECT_EQ(stage.clip->frameCount, found.frames()) << name;
    }
}

// A file that ends early loads, with what is missing as zeros; all else that is broken for one is
// broken for the other, but for what only drawing looks at.
TEST(LoadSteps, EveryBrokenClip_IsSurveyedAsItLoads) {
    const fs::path clips = fs::path(TEST_DATA) / "broken";
    ClipStage stage(clips);
    int refused = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(clips)) {
        if (entry.path().extension() != ".m19") {
            continue;
        }
        const std::string name = entry.path().filename().string();
        const bool cut = name.find("cut") != std::string::npos || name == "header-only.m19" ||
                         name == "second-block-gone.m19";
        clip::Survey found;
        const bool plays = survey(entry.path(), found) == clip::SURVEY_PLAYS;
        stage.clip->init("", name);
        int result = 1;
        while (result == 1) {
            result = stage.clip->loopLoad(kOtherClipBudget);
        }
        EXPECT_EQ(plays, result == kReady && !cut) << name;
        refused += plays ? 0 : 1;
        stage.clip->killRAM();
    }
    EXPECT_GT(refused, 20);
}

// Frames until the program has loaded its first playlist; `first` gets those until one clip plays.
int framesToLoad(int& first) {
    playlist->lireXML();
    playlist->initLoad(0);
    int frames = 0;
    for (first = 0; playlist->loading != 0; ++frames) {
        first += playlist->loadSlot == 0 ? 1 : 0;
        playlist->loopLoadPlaylist();
    }
    return frames;
}

TEST(LoadSteps, Playlist_LoadsInTheSecondsForetold) {
    ClipStage stage{fs::path(TEST_DATA)};
    fs::create_directory("userdata");
    std::ofstream("userdata/playlists.xml")
        << "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n<playlist><name>a</name>"
           "<track>clips/gone.m19</track><track>clips/rgba-all-360.m19</track>"
           "<track>broken/version-18.m19</track><track>clips/long-256.m19</track>"
           "<track>clips/gaps-64.m19</track></playlist>\n</all>\n";
    const maker::SetReport report = maker::checkSet(".");
    ASSERT_EQ(report.playlists.size(), 1u);
    int first = 0;
    const int frames = framesToLoad(first);
    EXPECT_EQ(playlist->loadSlot, report.playlists[0].ready);
    EXPECT_NEAR(report.playlists[0].seconds, frames * maker::kStepSeconds, 1e-9);
    EXPECT_NEAR(report.playlists[0].firstSeconds, first * maker::kStepSeconds, 1e-9);
}

}  // namespace
