#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <map>

#include "common/limits.h"
#include "tools/base/texts.h"
#include "tools/doctor/controller.h"

namespace doctor {

namespace fs = std::filesystem;

namespace {

constexpr const char* kAbout = "controller";

struct Function {
    size_t entry;  // of the controller map
    const char* name;
};

// Those that do something.
constexpr Function kFunctions[] = {
    {0, "up"},
    {1, "right"},
    {2, "down"},
    {3, "left"},
    {5, "back"},
    {6, "confirm"},
    {9, "block reverse"},
    {12, "hold"},
    {13, "show the panel"},
};

std::string listed(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += said(text.empty() ? "" : ", ", name);
    }
    return text;
}

bool assigned(int button) {
    return button >= 0 && button != kPadUnassigned;
}

void judgeLocked(const ControllerFacts& facts, Remarks& remarks) {
    if (!facts.locked.empty()) {
        remarks.hurts(kAbout, said("there is no right to read ", listed(facts.locked)),
                      "sudo usermod -aG input $USER, then log in anew.");
    }
}

void judgeNumbers(const ControllerFacts& facts, const files::ControllerMap& map, Remarks& remarks) {
    std::vector<std::string> without;
    std::vector<std::string> beyond;
    std::map<int, std::vector<std::string>> users;
    for (const Function& function : kFunctions) {
        const int button = map[function.entry];
        if (!assigned(button)) {
            without.emplace_back(function.name);
        } else if (button >= facts.buttons) {
            beyond.emplace_back(function.name);
        } else {
            users[button].emplace_back(function.name);
        }
    }
    const std::string configure = "OPTIONS, \"configure controller\": click through the squares.";
    if (!without.empty()) {
        remarks.hurts(kAbout, "no button does: " + listed(without), configure);
    }
    if (!beyond.empty()) {
        remarks.hurts(kAbout,
                      said("it has ", std::to_string(facts.buttons),
                           " buttons, and the map asks for later ones: ", listed(beyond)),
                      configure);
    }
    for (const auto& [button, names] : users) {
        if (names.size() > 1) {
            remarks.note(
                kAbout,
                said("button ", std::to_string(button), " does several things: ", listed(names)),
                configure);
        }
    }
}

}  // namespace

std::vector<std::string> lockedIn(const fs::path& devices) {
    std::vector<std::string> locked;
    std::error_code error;
    for (fs::directory_iterator entry(devices, error), end; !error && entry != end;
         entry.increment(error)) {
        if (entry->path().filename().string().starts_with("js") &&
            faccessat(AT_FDCWD, entry->path().c_str(), R_OK, AT_EACCESS) != 0 && errno == EACCES) {
            locked.push_back(entry->path().string());
        }
    }
    std::ranges::sort(locked);
    return locked;
}

void judgeController(const ControllerFacts& facts, const std::optional<files::ControllerMap>& map,
                     bool overSdl2, Remarks& remarks) {
    judgeLocked(facts, remarks);
    if (facts.count == 0) {
        remarks.note(kAbout, "none is plugged in",
                     "One that is to play is plugged in before Velmora starts.");
        return;
    }
    const std::string name = maker::inQuotes(facts.name);
    if (facts.count > 1) {
        remarks.note(kAbout,
                     said(std::to_string(facts.count), " are plugged in; the first plays, ", name),
                     "Unplug the others if it is the wrong one.");
    }
    if (!facts.opens) {
        remarks.hurts(kAbout, name + " cannot be opened", "Plug it in anew.");
        return;
    }
    if (!map) {
        return;  // the look through the user's files says it
    }
    judgeNumbers(facts, *map, remarks);
    if (facts.hats > 0 && !overSdl2) {
        remarks.note(kAbout,
                     name +
                         " has its cross as a hat, which classic SDL 1.2 does not "
                         "report as buttons",
                     "Put up, down, left and right on other buttons in OPTIONS.");
    }
    remarks.fine(kAbout, said(name, " plays, with ",
                              maker::counted(static_cast<size_t>(facts.buttons), "button")));
}

}  // namespace doctor
