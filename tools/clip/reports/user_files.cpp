#include "tools/clip/reports/user_files.h"

#include <cstdio>
#include <map>
#include <memory>
#include <pugixml.hpp>

#include "common/limits.h"
#include "files/xmlscan.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

struct CloseFile {
    void operator()(FILE* file) const { std::fclose(file); }
};
using FilePtr = std::unique_ptr<FILE, CloseFile>;

// Null for what is no regular file: a pipe would keep the tool waiting.
FilePtr openFile(const fs::path& path) {
    std::error_code ignored;
    return FilePtr(fs::is_regular_file(path, ignored) ? std::fopen(path.c_str(), "r") : nullptr);
}

// From its beginning, where the file then stands again: it may have no name any more.
std::string contentOf(FILE* file) {
    std::rewind(file);
    std::string text;
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
        text += static_cast<char>(c);
    }
    std::rewind(file);
    return text;
}

// The playlist is dropped when the document ends before it does.
bool readPlaylist(FILE* file, PlaylistText& playlist) {
    if (xml::skipTo(file, "<playlist>") == xml::kEndOfAll) {
        return false;
    }
    playlist.name = xml::readNode(file, "name");
    std::string text = playlist.name;
    for (int t = 0; t < kTracksRead && text != xml::kEndOfAll; ++t) {
        text = xml::readNode(file, "track");
        if (text == xml::kEndOfPlaylist || text == xml::kEndOfAll) {
            break;
        }
        if (t < kTrackSlots) {
            playlist.tracks.push_back(text);
        }
    }
    return text != xml::kEndOfAll;
}

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
    const FilePtr file = openFile(path);
    if (!file) {
        return result;
    }
    result.there = true;
    xml::readPrologue(file.get());
    PlaylistText playlist;
    while (result.read.size() < kPlaylists && readPlaylist(file.get(), playlist)) {
        result.read.push_back(std::move(playlist));
        playlist = {};
    }
    const std::string content = contentOf(file.get());
    pugi::xml_document document;
    result.fault = faultOf(parse(content, document));
    result.written = result.fault.empty() ? parsedPlaylists(document) : plainPlaylists(content);
    return result;
}

ElementsFile readElements(const fs::path& path, const std::vector<std::string>& names) {
    ElementsFile result;
    const FilePtr file = openFile(path);
    if (!file) {
        return result;
    }
    result.there = true;
    const std::string content = contentOf(file.get());
    pugi::xml_document document;
    result.fault = faultOf(parse(content, document));
    std::map<std::string, size_t> used;
    xml::readPrologue(file.get());
    for (const std::string& name : names) {
        ElementText element{name, xml::readNode(file.get(), name), "", false};
        const std::vector<std::string> written =
            result.fault.empty() ? parsedElements(document, name) : enclosed(content, name);
        const size_t number = used[name]++;
        if (number < written.size()) {
            element.there = true;
            element.written = written[number];
        }
        result.elements.push_back(element);
    }
    return result;
}

std::vector<std::string> prefsElements() {
    std::vector<std::string> names{"mode", "topbar", "fps", "res_w", "res_h"};
    names.insert(names.end(), kFilterSlots, "filter");
    return names;
}

std::vector<std::string> controllerElements() {
    return std::vector<std::string>(kPadEntries, "button");
}

}  // namespace maker
