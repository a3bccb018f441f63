#include "tools/base/velmora_folder.h"

#include <cstdlib>

#include "tools/base/errors.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

bool isFolder(const fs::path& path) {
    std::error_code ignored;
    return fs::is_directory(path, ignored);
}

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

}  // namespace

fs::path velmoraFolderToBe(const std::string& asked, const char* option) {
    const std::string home = environment("VELMORA_HOME");
    if (!asked.empty() || !home.empty()) {
        const std::string named = asked.empty() ? home : asked;
        if (!isFolder(named)) {
            throw ToolError((asked.empty() ? "VELMORA_HOME" : option) + (": no folder " + named));
        }
        return named;
    }
    if (isFolder("videos") && (isFolder("userdata") || isFolder("data"))) {
        return ".";
    }
    return fs::path(environment("HOME")) / "Velmora";
}

fs::path velmoraFolder(const std::string& asked, const char* option) {
    fs::path folder = velmoraFolderToBe(asked, option);
    if (!isFolder(folder)) {
        throw ToolError("there is no folder " + folder.string() +
                        ": start Velmora once, or name its folder, " + option + " FOLDER");
    }
    return folder;
}

std::vector<std::string> enterFolder(const fs::path& folder, std::vector<std::string> paths) {
    std::error_code error;
    if (fs::equivalent(folder, ".", error)) {
        return paths;
    }
    for (std::string& path : paths) {
        path = fs::absolute(path, error).string();
    }
    fs::current_path(folder, error);
    if (error) {
        throw ToolError("cannot use the folder " + folder.string() + ": " + error.message());
    }
    return paths;
}

fs::path userMapFile() {
    const std::string config = environment("XDG_CONFIG_HOME");
    const std::string home = environment("HOME");
    const fs::path folder = !config.empty() ? fs::path(config)
                            : !home.empty() ? fs::path(home) / ".config"
                                            : fs::path(".");
    return folder / "velmora" / "control.toml";
}

}  // namespace maker
