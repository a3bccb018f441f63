#include "files/preferences.h"

#include "files/xmlscan.h"
#include "layout/options_layout.h"

namespace files {

namespace {

void takeFlag(int& flag, const std::string& text) {
    if (text == "0" || text == "1") {
        flag = text == "1" ? 1 : 0;
    }
}

void takeSize(int& size, const std::string& text, int smallest) {
    const int number = xml::numberOf(text);
    if (number >= smallest) {
        size = number;
    }
}

std::string line(const std::string& name, int value) {
    std::string text = "\t";
    text += xml::element(name, std::to_string(value));
    return text;
}

// Deliberate: a flag that is neither 0 nor 1 leaves its line out.
// [quirk_odd_flags_are_not_saved]
std::string flagLine(const std::string& name, int value) {
    return value == 0 || value == 1 ? line(name, value) : "";
}

}  // namespace

Preferences parsePreferences(std::string_view bytes, Preferences before) {
    const std::vector<std::string> texts = xml::readNodes(bytes, kPreferenceElements);
    // The mixing mode always starts at 0.
    takeFlag(before.topbar, texts[PREF_TOPBAR]);
    takeFlag(before.fps, texts[PREF_FPS]);
    takeSize(before.width, texts[PREF_WIDTH], kSmallestWidth);
    takeSize(before.height, texts[PREF_HEIGHT], kSmallestHeight);
    for (size_t slot = 0; slot < kFilterSlots; ++slot) {
        before.filters[slot] = xml::numberOf(texts[kSinglePreferences + slot]);
    }
    return before;
}

std::string printPreferences(const Preferences& preferences) {
    const auto& names = kPreferenceElements;
    std::string text = xml::kDocumentStart + line(names[PREF_MODE], 0) +
                       flagLine(names[PREF_TOPBAR], preferences.topbar) +
                       flagLine(names[PREF_FPS], preferences.fps) +
                       line(names[PREF_WIDTH], preferences.width) +
                       line(names[PREF_HEIGHT], preferences.height);
    for (const int filter : preferences.filters) {
        text += line(names.back(), filter);
    }
    return text + xml::kDocumentEnd;
}

ControllerMap parseController(std::string_view bytes) {
    ControllerMap map{};
    const std::vector<std::string> texts = xml::readNodes(bytes, kControllerElements);
    for (size_t i = 0; i < kPadEntries; ++i) {
        map[static_cast<size_t>(layout::kMapEntries[i])] = xml::numberOf(texts[i]);
    }
    return map;
}

std::string printController(const ControllerMap& map) {
    std::string text = xml::kDocumentStart;
    for (const int entry : layout::kMapEntries) {
        text += line(kControllerElements[0], map[static_cast<size_t>(entry)]);
    }
    return text + xml::kDocumentEnd;
}

}  // namespace files
