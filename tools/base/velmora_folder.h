#pragma once
// Where Velmora's clips and playlists are, and the map of velmora-control.

#include <filesystem>
#include <string>
#include <vector>

namespace maker {

// The one asked for; else that of VELMORA_HOME, the current one when it is Velmora's, or ~/Velmora,
// where the launcher starts the program. Throws ToolError when it is not there;
// `option` is what asks for one.
std::filesystem::path velmoraFolder(const std::string& asked, const char* option = "--to");

// The same for who can wait until Velmora makes it: ~/Velmora need not be there yet.
std::filesystem::path velmoraFolderToBe(const std::string& asked, const char* option);

// Makes it the current one. Returns the paths as they are called from there.
std::vector<std::string> enterFolder(const std::filesystem::path& folder,
                                     std::vector<std::string> paths);

// velmora-control's map: ~/.config/velmora/control.toml, or below XDG_CONFIG_HOME.
std::filesystem::path userMapFile();

}  // namespace maker
