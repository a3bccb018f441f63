// prefs.xml and gamecontroller.xml: read element by element, written as a whole.
#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "common/memory.h"
#include "common/messages.h"
#include "core/all.h"
#include "core/globals.h"
#include "files/xmlscan.h"
#include "input/keys.h"
#include "layout/options_layout.h"
#include "mixer/filters.h"
#include "options/options.h"

namespace {

// Deliberate: reading takes the path from the current directory, writing from the directory of the
// start-up. [quirk_prefs_are_read_here_and_written_there]
constexpr const char* kPrefsReadPath = "./userdata/prefs.xml";
constexpr const char* kPrefsWritePath = "/userdata/prefs.xml";
constexpr const char* kControllerReadPath = "./userdata/gamecontroller.xml";
constexpr const char* kControllerWritePath = "/userdata/gamecontroller.xml";
constexpr const char* kFileStart = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n";
constexpr const char* kFileEnd = "</all>\n";

constexpr int kSmallestWidth = 800;
constexpr int kSmallestHeight = 600;

// Text that is not a number counts as 0.
int numberOf(const std::string& text) {
    return static_cast<int>(strtol(text.c_str(), nullptr, 10));
}

void readFlag(int32_t& flag, const std::string& text) {
    if (text == "0" || text == "1") {
        flag = text == "1" ? 1 : 0;
    }
}

void readSize(int& size, const std::string& text, int smallest) {
    const int number = numberOf(text);
    if (number >= smallest) {
        size = number;
    }
}

std::string element(const std::string& name, int value) {
    return "\t<" + name + ">" + std::to_string(value) + "</" + name + ">\n";
}

// Deliberate: a flag that is neither 0 nor 1 leaves its line out.
// [quirk_odd_flags_are_not_saved]
std::string flagElement(const std::string& name, int value) {
    return value == 0 || value == 1 ? element(name, value) : "";
}

std::string prefsText(const c_options& options) {
    std::string text = kFileStart + element("mode", 0) + flagElement("topbar", options.topbar) +
                       flagElement("fps", options.fps) + element("res_w", all->appW) +
                       element("res_h", all->appH);
    for (const FilterSlot& slot : _filters->slots[0]) {
        text += element("filter", slot.id);
    }
    return text + kFileEnd;
}

std::string controllerText() {
    std::string text = kFileStart;
    for (const int entry : layout::kMapEntries) {
        text += element("button", keys->padButton[entry]);
    }
    return text + kFileEnd;
}

template <typename MakeText>
bool replaceOrReport(const UserFile& file, const std::string& folder, const char* name,
                     MakeText makeText) {
    bool saved = false;
    withinMemory([&] { saved = file.replace(folder + name, makeText()); });
    if (!saved) {
        printf(msg::kSaveFailedFormat, folder.c_str(), name);
    }
    return saved;
}

}  // namespace

std::string c_options::lireMot(const std::string& target) {
    return xml::skipTo(file, target);
}

std::string c_options::lireNoeud(const std::string& name) {
    return xml::readNode(file, name);
}

int c_options::finLigne() {
    return xml::skipChar(file);
}

void c_options::lireXML() {
    file = prefsFile.open(kPrefsReadPath);
    if (file == nullptr) {
        puts(msg::kNoPrefsFile);
        return;
    }
    xml::readPrologue(file);
    lireNoeud("mode");  // the mixing mode always starts at 0
    readFlag(topbar, lireNoeud("topbar"));
    readFlag(fps, lireNoeud("fps"));
    readSize(all->appW, lireNoeud("res_w"), kSmallestWidth);
    readSize(all->appH, lireNoeud("res_h"), kSmallestHeight);
    for (int slot = 0; slot < kFilterSlots; ++slot) {
        const int id = numberOf(lireNoeud("filter"));
        _filters->slots[0][slot].id = id;
        _filters->slots[1][slot].id = id;
    }
    fclose(file);
    file = nullptr;
}

bool c_options::saveXML() {
    return replaceOrReport(prefsFile, homeDir, kPrefsWritePath,
                           [this] { return prefsText(*this); });
}

void c_options::lireXMLController() {
    file = controllerFile.open(kControllerReadPath);
    if (file == nullptr) {
        puts(msg::kNoControllerFile);
        return;
    }
    xml::readPrologue(file);
    for (const int entry : layout::kMapEntries) {
        keys->padButton[entry] = numberOf(lireNoeud("button"));
    }
    fclose(file);
    file = nullptr;
}

bool c_options::saveXMLController() {
    return replaceOrReport(controllerFile, homeDir, kControllerWritePath, controllerText);
}
