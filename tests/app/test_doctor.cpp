// velmora-doctor on displays, with a controller and with what is missing.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "app/child.h"
#include "app/pad.h"
#include "app/runfolder.h"
#include "app/xserver.h"

namespace {

namespace fs = std::filesystem;
using app::Screen;

constexpr int kPatienceMs = 60000;
constexpr const char* kClip = TEST_DATA "/clips/runs-360.m19";
constexpr int kReady = 0, kHurt = 1, kUsage = 2, kNoShow = 3;

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

class Doctor : public testing::Test {
protected:
    Doctor() {
        folder_.addClipFile(kClip);
        folder_.addPlaylist("one", {fs::path(kClip).filename().string()});
        folder_.writePlaylists();
        for (const char* const name : {"prefs.xml", "gamecontroller.xml"}) {
            fs::copy(fs::path(APP_DATA_DIR).parent_path() / "userdata" / name,
                     fs::path(folder_.path()) / "userdata");
        }
        fs::create_directories(config());
    }
    void plugDisplay(Screen screen) { server_.emplace(screen); }

    Outcome examine(const std::vector<std::string>& arguments) {
        app::ChildSetup setup;
        setup.command = {APP_DOCTOR};
        setup.command.insert(setup.command.end(), arguments.begin(), arguments.end());
        setup.folder = folder_.path();
        setup.environment = {"DISPLAY=" + (server_ ? server_->display() : ":tcp-nowhere"),
                             "WAYLAND_DISPLAY=",
                             "VELMORA_HOME=",
                             "HOME=" + config(),
                             "XDG_CONFIG_HOME=" + config(),
                             "LD_PRELOAD=" APP_PRELOAD};
        setup.output = folder_.path() + "/out";
        setup.errors = folder_.path() + "/err";
        app::Child child;
        child.start(setup);
        const int status = child.waitExit(kPatienceMs).value_or(-1);
        return {status, folder_.read("out"), folder_.read("err")};
    }
    std::string config() const { return folder_.path() + "/config"; }

    app::RunFolder folder_;
    std::optional<app::XServer> server_;
};

bool has(const Outcome& outcome, const std::string& text) {
    return outcome.out.find(text) != std::string::npos;
}

TEST_F(Doctor, WholeSetOnADisplay_IsReady) {
    plugDisplay({1280, 720, 16});
    const app::Pad pad(folder_.path() + "/pad");
    const app::Pad::Plugged plugged(pad);
    const Outcome outcome = examine({});
    EXPECT_EQ(outcome.status, kReady) << outcome.out << outcome.err;
    EXPECT_TRUE(has(outcome,
                    "In order\n  display: the screen has 1280 x 720, as the picture\n"
                    "  display: 16 bits a pixel, as Velmora draws, by x11\n"))
        << outcome.out;
    EXPECT_TRUE(has(outcome, "  folder: " + fs::canonical(folder_.path()).string() + "\n"));
    EXPECT_TRUE(has(outcome, "  controller: 'Velmora Test Pad' plays, with 100 buttons\n"));
    EXPECT_TRUE(has(outcome, "  one: 1 clip; the first after "));
    EXPECT_TRUE(has(outcome, "  memory: the largest playlist, 'one', takes "));
    EXPECT_TRUE(has(outcome, "  pace: with every filter on both layers a frame takes "));
    EXPECT_TRUE(has(outcome, " ms of them to show it)\n"));
    EXPECT_TRUE(outcome.out.ends_with("Ready for the show.\n")) << outcome.out;
}

TEST_F(Doctor, OtherDisplays_AreTold) {
    plugDisplay({1920, 1080, 24});
    EXPECT_TRUE(has(examine({"--quick"}),
                    "the screen has 1920 x 1080: the picture covers 1280 x 720 of it"));
    plugDisplay({720, 576, 16});
    EXPECT_TRUE(has(examine({"--quick"}), "the screen has 720 x 576: it counts as a composite"));
    plugDisplay({1024, 768, 24});
    const Outcome small = examine({"--quick"});
    EXPECT_EQ(small.status, kHurt);
    EXPECT_TRUE(small.out.starts_with("Hurts the show\n  display: the screen has 1024 x 768, less"))
        << small.out;
}

TEST_F(Doctor, NoDisplay_Stops) {
    const Outcome outcome = examine({});
    EXPECT_EQ(outcome.status, kNoShow) << outcome.err;
    EXPECT_TRUE(
        outcome.out.starts_with("Stops the show\n  display: \":tcp-nowhere\" does not answer\n"))
        << outcome.out;
    EXPECT_TRUE(has(outcome, "(the display not counted)")) << outcome.out;
    EXPECT_TRUE(outcome.out.ends_with("1 thing stops the show, 0 hurt it.\n")) << outcome.out;
}

TEST_F(Doctor, QuickLook_OpensNoWindow) {
    plugDisplay({1280, 720, 16});
    const Outcome outcome = examine({"--quick"});
    EXPECT_EQ(outcome.status, kReady) << outcome.out;
    EXPECT_FALSE(has(outcome, "pace"));
}

TEST_F(Doctor, MissingClip_HurtsInJsonToo) {
    plugDisplay({1280, 720, 16});
    fs::remove(folder_.path() + "/videos/" + fs::path(kClip).filename().string());
    const Outcome outcome = examine({"--quick", "--json"});
    EXPECT_EQ(outcome.status, kNoShow);  // it was the only one
    const auto json = nlohmann::json::parse(outcome.out);
    EXPECT_EQ(json["worst"], "stops");
    bool told = false;
    for (const auto& remark : json["remarks"]) {
        told = told || (remark["grade"] == "hurts" && remark["about"] == "one" &&
                        remark["text"] == "'runs-360.m19' is missing");
    }
    EXPECT_TRUE(told) << outcome.out;
}

TEST_F(Doctor, MapOfTheBridge_AsksTheBridge) {
    plugDisplay({1280, 720, 16});
    fs::create_directories(config() + "/velmora");
    EXPECT_FALSE(has(examine({"--quick"}), "velmora-control"));
    std::ofstream(config() + "/velmora/control.toml") << "this is no map\n";
    const Outcome outcome = examine({"--quick"});
    EXPECT_EQ(outcome.status, kHurt);
    EXPECT_TRUE(has(outcome, "  velmora-control: ")) << outcome.out;
    EXPECT_TRUE(has(outcome, "control.toml")) << outcome.out;
}

TEST_F(Doctor, NoFolder_ComesWithTheFirstStart) {
    plugDisplay({1280, 720, 16});
    fs::rename(folder_.path() + "/videos", folder_.path() + "/elsewhere");
    const Outcome outcome = examine({"--quick"});
    EXPECT_EQ(outcome.status, kReady) << outcome.err;
    EXPECT_TRUE(has(outcome, "  folder: " + config() +
                                 "/Velmora is not there yet\n"
                                 "      The first start makes it, with the demo set.\n"))
        << outcome.out;
}

TEST_F(Doctor, WrongCall_IsAnswered) {
    EXPECT_EQ(examine({"--nonsense"}).status, kUsage);
    const Outcome nowhere = examine({"--folder", "nowhere"});
    EXPECT_EQ(nowhere.status, kNoShow);
    EXPECT_EQ(nowhere.err, "velmora-doctor: --folder: no folder nowhere\n");
}

}  // namespace
