#include "tools/control/hands/roads.h"

#include <cstdlib>

#include "tools/base/errors.h"
#include "tools/control/hands/uinput.h"
#include "tools/control/hands/xtest.h"

namespace control {

namespace {

bool hasDisplay() {
    const char* display = std::getenv("DISPLAY");
    return display != nullptr && *display != '\0';
}

}  // namespace

std::unique_ptr<Road> openRoad() {
    std::string why = "no DISPLAY is set";
    if (hasDisplay()) {
        try {
            return std::make_unique<XTestHands>();
        } catch (const maker::ToolError& error) {
            why = error.what();
        }
    }
    try {
        return std::make_unique<UinputHands>(openUinput());
    } catch (const maker::ToolError& error) {
        throw maker::ToolError(
            std::string("no way to Velmora: ").append(why).append("; ").append(error.what()));
    }
}

std::vector<Finding> examineRoad() {
    std::vector<Finding> findings;
    try {
        const std::unique_ptr<Road> road = openRoad();
        findings.push_back({true, "keys are pressed by " + road->road(), ""});
        if (road->stage() == 0) {
            findings.push_back({false, "Velmora is not to be seen there",
                                "start it, as the same user and on the same display"});
        } else if (!road->reachesVelmora()) {
            findings.push_back({false, "Velmora's window does not have the keyboard",
                                "click into it; nothing is pressed until then"});
        } else {
            findings.push_back({true, "Velmora listens", ""});
        }
        const std::string missing = road->missingKeys();
        if (!missing.empty()) {
            findings.push_back({false, "the keyboard's layout has no key for " + missing,
                                "`setxkbmap us`, or another layout that has them without Shift"});
        }
    } catch (const maker::ToolError& error) {
        findings.push_back({false, error.what(), ""});
    }
    return findings;
}

}  // namespace control
