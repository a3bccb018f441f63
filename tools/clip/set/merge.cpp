#include "tools/clip/set/merge.h"

#include <algorithm>

#include "common/limits.h"
#include "layout/page_layout.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"

namespace maker {

using files::Playlist;

namespace {

bool has(const std::vector<Playlist>& playlists, const std::string& name) {
    return std::ranges::find(playlists, name, &Playlist::name) != playlists.end();
}

bool hasSame(const std::vector<Playlist>& playlists, const std::string& name,
             const Playlist& like) {
    return std::ranges::any_of(playlists, [&](const Playlist& each) {
        return each.name == name && each.tracks == like.tracks;
    });
}

std::string numbered(const std::string& name, int number) {
    const size_t most = std::max(name.size(), static_cast<size_t>(page::kLongestName));
    return number == 1 ? name
                       : cutWith(name, std::string(" ").append(std::to_string(number)), most);
}

// Numbers count from 2 until one is free, or has this playlist already.
MergedPlaylist placed(const Playlist& playlist, const std::vector<Playlist>& there,
                      const std::vector<Playlist>& all, const std::vector<Playlist>& set) {
    MergedPlaylist part{MergeKind::NEW, playlist.name, playlist.name, playlist.tracks.size()};
    for (int number = 1;; ++number) {
        part.become = numbered(playlist.name, number);
        if (hasSame(there, part.become, playlist)) {
            part.kind = MergeKind::THERE;
            return part;
        }
        // Two of one name that came in one set stay so.
        const bool taken =
            number == 1 ? has(there, part.become) : has(all, part.become) || has(set, part.become);
        if (!taken) {
            part.kind = number == 1 ? MergeKind::NEW : MergeKind::RENAMED;
            return part;
        }
    }
}

}  // namespace

std::string cutWith(const std::string& text, const std::string& ending, size_t most) {
    size_t room = std::min(text.size(), most - std::min(most, ending.size()));
    while (room > 0 && isUtf8(text) && !isUtf8(text.substr(0, room))) {
        --room;
    }
    return text.substr(0, room) + ending;
}

Merge mergePlaylists(const std::vector<Playlist>& there, const std::vector<Playlist>& set) {
    Merge merge;
    merge.playlists = there;
    for (const Playlist& playlist : set) {
        const MergedPlaylist part = placed(playlist, there, merge.playlists, set);
        merge.parts.push_back(part);
        if (part.kind != MergeKind::THERE) {
            merge.playlists.push_back({part.become, playlist.tracks});
            merge.changed = true;
        }
    }
    if (merge.playlists.size() > kPlaylists) {
        throw ToolError("there would be " + std::to_string(merge.playlists.size()) +
                        " playlists, and there can be " + std::to_string(kPlaylists));
    }
    return merge;
}

}  // namespace maker
