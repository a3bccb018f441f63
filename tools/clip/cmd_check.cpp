// velmora-clip check: a whole set before the show.

#include <cstdio>
#include <memory>
#include <string>

#include "tools/clip/commands.h"
#include "tools/clip/reports/check_set.h"

namespace maker {

namespace {

struct CheckOptions {
    std::string folder = ".";
    bool json = false;
};

bool check(const CheckOptions& options) {
    const SetReport report = checkSet(options.folder);
    if (options.json) {
        std::puts(asJson(options.folder, report).c_str());
    } else {
        std::fputs(asText(report).c_str(), stdout);
    }
    return report.findings.problems() == 0;
}

}  // namespace

void addCheck(CLI::App& app, int& status) {
    auto options = std::make_shared<CheckOptions>();
    CLI::App* command = app.add_subcommand("check", "check a whole set before the show");
    command
        ->add_option("folder", options->folder,
                     "the folder with videos/ and userdata/ (default: this one)")
        ->option_text("FOLDER");
    command->add_flag("--json", options->json, "as a JSON object");
    command->footer(
        "Looks for clips that are missing or broken, clips too low for the top layer, values in\n"
        "the user's files that Velmora would ignore or misread, names that are too long, and\n"
        "clips that no playlist names; tells how long each playlist loads. The exit status is 1\n"
        "when something would go wrong on stage; notes alone leave it 0.");
    command->callback([options, &status] { status = check(*options) ? kExitOk : kExitFailed; });
}

}  // namespace maker
