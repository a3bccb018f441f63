#pragma once
// The names of playlists: copies' names, and those that the playlists file would not give back at
// the next start. Names are bytes.

#include <cstddef>
#include <string>

#include "playlists/playlist.h"

namespace names {

// The first so many bytes, and no character of UTF-8 cut in two.
std::string startOf(const std::string& name, size_t bytes);

// The name with the lowest number from 2 on that no playlist has, as long as a typed name may be.
std::string copyOf(const std::string& name, const c_playlist& model);

// Why the file would not give it back, as a line for the performer; empty for what it gives back.
std::string whyLost(const std::string& name);
std::string whyPathLost(const std::string& path);  // of a track, below ./videos/

}  // namespace names
