// velmora-doctor: why there is no picture, why a clip is skipped, why the controller does nothing.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

#include "tools/base/errors.h"
#include "tools/base/velmora_folder.h"
#include "tools/clip/reports/check_set.h"
#include "tools/doctor/bridge.h"
#include "tools/doctor/controller.h"
#include "tools/doctor/display.h"
#include "tools/doctor/machine.h"
#include "tools/doctor/pace.h"
#include "tools/doctor/remarks.h"
#include "tools/doctor/set.h"

namespace {

namespace fs = std::filesystem;
using namespace doctor;

enum Exit : int { EXIT_READY = 0, EXIT_HURT = 1, EXIT_USAGE = 2, EXIT_NO_SHOW = 3 };

constexpr const char* kScreens = "/sys/class/drm";
constexpr const char* kDevices = "/dev/input";

struct Options {
    std::string folder;
    bool json = false;
    bool quick = false;
};

void examineFolder(const Options& options, const ControllerFacts& controller, bool overSdl2,
                   Remarks& remarks) {
    const fs::path folder = maker::velmoraFolderToBe(options.folder, "--folder");
    std::error_code ignored;
    if (!fs::is_directory(folder, ignored)) {
        remarks.note("folder", said(fs::absolute(folder).string(), " is not there yet"),
                     "The first start makes it, with the demo set.");
        return;
    }
    remarks.fine("folder", fs::canonical(folder).string());
    judgeData(folder, remarks);
    judgeRights(folder, remarks);
    judgeController(controller, controllerMapIn(folder), overSdl2, remarks);
    const MachineFacts machine = machineAt({}, folder);
    judgeSet(maker::checkSet(folder), machine.freeMemory, controller.count > 0, remarks);
    judgeMachine(machine, remarks);
}

Remarks examine(const Options& options) {
    Remarks remarks;
    const DisplayFacts display = openDisplay();
    judgeDisplay(display, screensIn(kScreens), remarks);
    const SdlFacts sdl = linkedSdl();
    judgeSdl(sdl, remarks);
    const ControllerFacts controller = controllersHere(kDevices);
    examineFolder(options, controller, sdl.overSdl2, remarks);
    if (fs::exists(maker::userMapFile())) {
        judgeBridge(askBridge(), remarks);
    }
    if (!options.quick) {
        judgePace(measurePace(display.visible()), remarks);
    }
    closeDisplay();
    return remarks;
}

int statusOf(Grade worst) {
    return worst == Grade::STOPS ? EXIT_NO_SHOW : worst == Grade::HURTS ? EXIT_HURT : EXIT_READY;
}

int run(int argc, char** argv) {
    Options options;
    CLI::App app("Says what would stop or hurt the show, and how to mend it.", "velmora-doctor");
    app.set_version_flag("--version", "velmora-doctor " VELMORA_VERSION);
    app.add_option("--folder", options.folder,
                   "Velmora's folder; else that of VELMORA_HOME, the current one when it has "
                   "videos/ and userdata/, or ~/Velmora")
        ->option_text("FOLDER");
    app.add_flag("--json", options.json, "as a JSON object");
    app.add_flag("--quick", options.quick, "without the pace, for which a window comes up");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? EXIT_READY : EXIT_USAGE;
    }
    const Remarks remarks = examine(options);
    std::fputs((options.json ? asJson(remarks) + "\n" : asText(remarks)).c_str(), stdout);
    return statusOf(remarks.worst());
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velmora-doctor: %s\n", maker::lineOf(error));
        return EXIT_NO_SHOW;
    }
}
