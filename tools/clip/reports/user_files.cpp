#include "tools/clip/reports/user_files.h"

#include <limits>
#include <map>
#include <pugixml.hpp>

#include "files/userfile.h"
#include "files/xmlscan.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

constexpr size_t kWhole = std::numeric_limits<size_t>::max();

// Bytes stay bytes: the parser neither decodes nor mends them.
pugi::xml_parse_result parse(const std::string& content, pugi::xml_document& document) {
    constexpr unsigned kKeepSpaces = pugi::parse_ws_pcdata_single;
    return document.load_buffer(content.data(), content.size(), pugi::parse_default | kKeepSpaces,
                                pugi::encoding_utf8);
}

std::string faultOf(const pugi::xml_parse_result& result) {
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

}  // namespace

PlaylistsFile readPlaylists(const fs::path& path) {
    PlaylistsFile result;
    const std::optional<std::string> content = readRegular(path, kWhole);
    if (!content) {
        return result;
    }
    result.there = true;
    result.read = files::parsePlaylists(*content);
    pugi::xml_document document;
    result.fault = faultOf(parse(*content, document));
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
    result.fault = faultOf(parse(*content, document));
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

}  // namespace maker
