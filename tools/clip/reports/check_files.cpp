#include "tools/clip/reports/check_files.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <limits>
#include <map>
#include <optional>
#include <pugixml.hpp>

#include "common/limits.h"
#include "files/preferences.h"
#include "files/userfile.h"
#include "files/xmlscan.h"
#include "layout/options_layout.h"
#include "px/filters.h"
#include "tools/base/texts.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

constexpr size_t kWhole = std::numeric_limits<size_t>::max();

// What is wrong with the XML. Bytes stay bytes: the parser neither decodes nor mends them.
std::string parse(const std::string& content, pugi::xml_document& document) {
    constexpr unsigned kOptions = pugi::parse_default | pugi::parse_ws_pcdata_single;
    const pugi::xml_parse_result result =
        document.load_buffer(content.data(), content.size(), kOptions, pugi::encoding_utf8);
    return result
               ? ""
               : std::string(result.description()) + " near byte " + std::to_string(result.offset);
}

// The texts that plain <name>...</name> tags enclose.
std::vector<std::string> enclosed(const std::string& content, const std::string& name) {
    const std::string open = "<" + name + ">";
    const std::string close = "</" + name + ">";
    std::vector<std::string> texts;
    size_t at = content.find(open);
    while (at != std::string::npos) {
        const size_t from = at + open.size();
        const size_t end = content.find(close, from);
        if (end == std::string::npos) {
            break;
        }
        texts.push_back(content.substr(from, end - from));
        at = content.find(open, end);
    }
    return texts;
}

std::vector<PlaylistText> plainPlaylists(const std::string& content) {
    std::vector<PlaylistText> playlists;
    for (const std::string& inside : enclosed(content, "playlist")) {
        const std::vector<std::string> names = enclosed(inside, "name");
        playlists.push_back({names.empty() ? "" : names[0], enclosed(inside, "track")});
    }
    return playlists;
}

std::vector<PlaylistText> parsedPlaylists(const pugi::xml_document& document) {
    std::vector<PlaylistText> playlists;
    for (const pugi::xpath_node& node : document.select_nodes("//playlist")) {
        PlaylistText playlist{node.node().child("name").child_value(), {}};
        for (const pugi::xml_node& track : node.node().children("track")) {
            playlist.tracks.emplace_back(track.child_value());
        }
        playlists.push_back(playlist);
    }
    return playlists;
}

std::vector<std::string> parsedElements(const pugi::xml_document& document,
                                        const std::string& name) {
    std::vector<std::string> texts;
    for (const pugi::xpath_node& node : document.select_nodes(("//" + name).c_str())) {
        texts.emplace_back(node.node().child_value());
    }
    return texts;
}

// Why one text is read as another, where the cause is plain.
std::string causeOf(const std::string& read, const std::string& written) {
    if (!read.empty() && written.size() > read.size() &&
        written.compare(0, read.size(), read) == 0) {
        return " (cut after " + counted(read.size(), "character") + ")";
    }
    return read.find('&') != std::string::npos ? " (entities such as &amp; are not understood)"
                                               : "";
}

std::string misread(const std::string& read, const std::string& written) {
    return "is read as " + inQuotes(read) + ", not as " + inQuotes(written) +
           causeOf(read, written);
}

void noteFault(const char* where, const std::string& fault, Findings& findings) {
    if (!fault.empty()) {
        findings.note(where, "is no well-formed XML: " + fault);
    }
}

std::string partlyRead(size_t read, size_t written, size_t most, const std::string& what) {
    return counted(written, what) +
           (read == most && written > most ? ", of which only the first " : ", but ") +
           std::to_string(read) + " are read";
}

void checkTracks(const PlaylistText& read, const PlaylistText& written, Findings& findings) {
    const std::string& where = written.name;
    if (read.tracks.size() != written.tracks.size()) {
        findings.problem(where, "has " + partlyRead(read.tracks.size(), written.tracks.size(),
                                                    kTrackSlots, "track"));
    }
    for (size_t t = 0; t < std::min(read.tracks.size(), written.tracks.size()); ++t) {
        if (read.tracks[t] != written.tracks[t]) {
            findings.problem(where, "track " + std::to_string(t + 1) + " " +
                                        misread(read.tracks[t], written.tracks[t]));
            return;  // what follows a misread track is misread as well
        }
    }
    if (read.tracks.empty()) {
        findings.problem(where, "has no tracks: the stage stays black");
    } else if (read.tracks.size() > kEditorTracks) {
        findings.note(where, "has " + counted(read.tracks.size(), "track") +
                                 "; the program's editor makes lists of at most " +
                                 std::to_string(kEditorTracks));
    }
}

// The number that the program makes of a text, when nobody would read it otherwise.
std::optional<int> plainNumber(const std::string& text) {
    char* end = nullptr;
    const long number = std::strtol(text.c_str(), &end, 10);
    const bool whole = end != text.c_str() &&
                       text.find_first_not_of(" \t\r\n", static_cast<size_t>(end - text.c_str())) ==
                           std::string::npos;
    return whole && number >= INT_MIN && number <= INT_MAX
               ? std::optional<int>(static_cast<int>(number))
               : std::nullopt;
}

// False, with a finding, for what the program does not read as it is written.
bool readAsWritten(const char* where, const ElementText& element, const std::string& label,
                   Findings& findings) {
    if (!element.there) {
        findings.problem(
            where, label + " is missing; " + inQuotes(element.read) + " is read in its place");
        return false;
    }
    if (element.read != element.written) {
        findings.problem(where, label + " " + misread(element.read, element.written) +
                                    ": the elements have a fixed order");
        return false;
    }
    return true;
}

void noteIgnored(const ElementText& element, const std::string& why, Findings& findings) {
    findings.problem(
        files::kPreferencesName,
        "<" + element.name + "> holds " + inQuotes(element.read) + ", which is ignored: " + why);
}

// The number, unless the program ignores it.
std::optional<int> checkSize(const ElementText& element, int smallest, Findings& findings) {
    const std::optional<int> number = plainNumber(element.read);
    if (number && *number >= smallest) {
        return number;
    }
    noteIgnored(element, "less than " + std::to_string(smallest), findings);
    return std::nullopt;
}

std::optional<int> checkNumber(const char* where, const ElementText& element,
                               const std::string& label, Findings& findings) {
    const std::optional<int> number = plainNumber(element.read);
    if (!number) {
        findings.problem(where, label + " is " + inQuotes(element.read) +
                                    ", which is no number: it counts as its beginning or 0");
    }
    return number;
}

void checkOffered(int width, int height, Findings& findings) {
    for (const layout::OfferedSize& size : layout::kOfferedSizes) {
        if (size.width == width && size.height == height) {
            return;
        }
    }
    findings.note(files::kPreferencesName, "the resolution " + std::to_string(width) + " x " +
                                               std::to_string(height) +
                                               " is none that the options screen offers");
}

void checkFilter(const ElementText& element, const std::string& label, Findings& findings) {
    const std::optional<int> id = checkNumber(files::kPreferencesName, element, label, findings);
    if (id && (*id < 0 || *id >= kFilterIds)) {
        findings.problem(
            files::kPreferencesName,
            label + " is " + std::to_string(*id) + ", which is no filter: the slot does nothing");
    }
}

}  // namespace

int Findings::problems() const {
    return static_cast<int>(std::count_if(all_.begin(), all_.end(),
                                          [](const Finding& finding) { return finding.problem; }));
}

PlaylistsFile readPlaylists(const fs::path& path) {
    PlaylistsFile result;
    const std::optional<std::string> content = readRegular(path, kWhole);
    if (!content) {
        return result;
    }
    result.there = true;
    result.read = files::parsePlaylists(*content);
    pugi::xml_document document;
    result.fault = parse(*content, document);
    result.written = result.fault.empty() ? parsedPlaylists(document) : plainPlaylists(*content);
    return result;
}

ElementsFile readElements(const fs::path& path, std::span<const char* const> names) {
    ElementsFile result;
    const std::optional<std::string> content = readRegular(path, kWhole);
    if (!content) {
        return result;
    }
    result.there = true;
    pugi::xml_document document;
    result.fault = parse(*content, document);
    std::map<std::string, size_t> used;
    const std::vector<std::string> texts = xml::readNodes(*content, names);
    for (size_t i = 0; i < names.size(); ++i) {
        const std::string name = names[i];
        ElementText element{name, texts[i], "", false};
        const std::vector<std::string> written =
            result.fault.empty() ? parsedElements(document, name) : enclosed(*content, name);
        const size_t number = used[name]++;
        if (number < written.size()) {
            element.there = true;
            element.written = written[number];
        }
        result.elements.push_back(element);
    }
    return result;
}

void checkPlaylistsFile(const PlaylistsFile& file, Findings& findings) {
    if (!file.there) {
        findings.problem(files::kPlaylistsName, "is missing: there is nothing to play");
        return;
    }
    noteFault(files::kPlaylistsName, file.fault, findings);
    if (file.read.size() != file.written.size()) {
        findings.problem(
            files::kPlaylistsName,
            "holds " + partlyRead(file.read.size(), file.written.size(), kPlaylists, "playlist"));
    } else if (file.read.empty()) {
        findings.problem(files::kPlaylistsName, "holds no playlists: there is nothing to play");
    }
    for (size_t i = 0; i < std::min(file.read.size(), file.written.size()); ++i) {
        const PlaylistText& read = file.read[i];
        const PlaylistText& written = file.written[i];
        if (read.name != written.name) {
            findings.problem(files::kPlaylistsName, "the name of playlist " +
                                                        std::to_string(i + 1) + " " +
                                                        misread(read.name, written.name));
        }
        checkTracks(read, written, findings);
    }
}

void checkPrefsFile(const ElementsFile& file, Findings& findings) {
    if (!file.there) {
        findings.note(files::kPreferencesName,
                      "is missing: no filters are set, no lines are shown");
        return;
    }
    noteFault(files::kPreferencesName, file.fault, findings);
    const auto& names = files::kPreferenceElements;
    std::optional<int> width;
    std::optional<int> height;
    int slot = 0;
    for (const ElementText& element : file.elements) {
        const bool isFilter = element.name == names.back();
        const std::string label =
            isFilter ? "filter " + std::to_string(++slot) : "<" + element.name + ">";
        if (!readAsWritten(files::kPreferencesName, element, label, findings)) {
            return;
        }
        if (isFilter) {
            checkFilter(element, label, findings);
        } else if (element.name == names[files::PREF_WIDTH]) {
            width = checkSize(element, files::kSmallestWidth, findings);
        } else if (element.name == names[files::PREF_HEIGHT]) {
            height = checkSize(element, files::kSmallestHeight, findings);
        } else if (element.name != names[files::PREF_MODE] && element.read != "0" &&
                   element.read != "1") {
            noteIgnored(element, "only 0 and 1 count", findings);
        }
    }
    if (width && height) {
        checkOffered(*width, *height, findings);
    }
}

void checkControllerFile(const ElementsFile& file, Findings& findings) {
    if (!file.there) {
        findings.note(files::kControllerName, "is missing: a controller's buttons do nothing");
        return;
    }
    noteFault(files::kControllerName, file.fault, findings);
    std::map<int, int> firstUse;
    int entry = 0;
    for (const ElementText& element : file.elements) {
        const std::string label = "button " + std::to_string(++entry);
        if (!readAsWritten(files::kControllerName, element, label, findings)) {
            return;
        }
        const std::optional<int> button =
            checkNumber(files::kControllerName, element, label, findings);
        if (!button) {
            continue;
        }
        if (*button < 0) {
            findings.problem(files::kControllerName,
                             label + " is " + std::to_string(*button) + ": it does nothing");
        } else if (*button != kPadUnassigned && !firstUse.emplace(*button, entry).second) {
            findings.note(files::kControllerName, "buttons " + std::to_string(firstUse[*button]) +
                                                      " and " + std::to_string(entry) +
                                                      " are both " + std::to_string(*button));
        }
    }
}

}  // namespace maker
