#include "editor/names.h"

#include <algorithm>
#include <cstdint>

#include "files/xmlscan.h"
#include "layout/page_layout.h"

namespace names {

namespace {

// "set-2" is a copy of "set": the next one is "set-3", not "set-2-2".
std::string withoutNumber(const std::string& name) {
    const size_t digits = name.find_last_not_of("0123456789");
    const bool numbered = digits != std::string::npos && digits > 0 && name[digits] == '-' &&
                          digits + 1 < name.size();
    return numbered ? name.substr(0, digits) : name;
}

std::string why(const std::string& text, const char* element, const char* tooLong) {
    if (xml::comesBack(text, element)) {
        return "";
    }
    const size_t most = xml::longestText(element);
    return text.size() > most ? std::to_string(most) + tooLong
                              : "a playlist cannot keep this name: use another one";
}

}  // namespace

std::string startOf(const std::string& name, size_t bytes) {
    if (name.size() <= bytes) {
        return name;
    }
    const auto continues = [](char byte) { return (static_cast<uint8_t>(byte) & 0xC0) == 0x80; };
    while (bytes > 0 && continues(name[bytes])) {
        --bytes;
    }
    return name.substr(0, bytes);
}

std::string copyOf(const std::string& name, const c_playlist& model) {
    const std::string stem = withoutNumber(name);
    const Famille* const end = model.familles + model.nbFamilles;
    std::string copy;
    // Guard: with 50 playlists at most one of the numbers is free.
    for (int number = 2; number <= kPlaylists + 2; ++number) {
        std::string ending = "-";
        ending += std::to_string(number);
        copy = startOf(stem, page::kLongestName - ending.size()) + ending;
        if (std::none_of(model.familles, end, [&](const Famille& f) { return f.name == copy; })) {
            break;
        }
    }
    return copy;
}

std::string whyLost(const std::string& name) {
    return why(name, "name", " signs is the most: use a shorter name");
}

std::string whyPathLost(const std::string& path) {
    return why(path, "track", " signs is the most with its folders: use shorter names");
}

}  // namespace names
