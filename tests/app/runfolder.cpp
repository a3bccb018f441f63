#include "app/runfolder.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace app {

namespace fs = std::filesystem;

RunFolder::RunFolder() {
    fs::create_directories(APP_RUN_DIR);
    path_ = std::string(APP_RUN_DIR) + "/run-XXXXXX";
    if (mkdtemp(path_.data()) == nullptr) {
        throw std::runtime_error("no run folder in " APP_RUN_DIR);
    }
    fs::create_directory(path_ + "/data");
    fs::create_directory(path_ + "/videos");
    fs::create_directory(path_ + "/userdata");
    for (const fs::directory_entry& file : fs::directory_iterator(APP_DATA_DIR)) {
        fs::create_symlink(file.path(), path_ + "/data/" + file.path().filename().string());
    }
}

RunFolder::~RunFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

void RunFolder::addClip(const std::string& name, const std::vector<uint8_t>& bytes) {
    std::ofstream file(path_ + "/videos/" + name, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    if (!file.good()) {
        throw std::runtime_error("cannot write the clip " + name);
    }
}

void RunFolder::addClipFile(const std::string& path) {
    fs::copy_file(path, path_ + "/videos/" + fs::path(path).filename().string());
}

void RunFolder::addPlaylist(const std::string& name, const std::vector<std::string>& tracks) {
    playlists_ += "\t<playlist>\n\t\t<name>" + name + "</name>\n";
    for (const std::string& track : tracks) {
        playlists_ += "\t\t<track>" + track + "</track>\n";
    }
    playlists_ += "\t</playlist>\n";
    ++count_;
}

void RunFolder::writePlaylists() {
    std::ofstream file(path_ + "/userdata/playlists.xml", std::ios::binary);
    file << "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n"
         << playlists_ << "</all>\n";
}

void RunFolder::addUserFile(const std::string& name, const std::string& text) {
    std::ofstream(path_ + "/userdata/" + name, std::ios::binary) << text;
}

void RunFolder::removeData(const std::string& name) {
    if (!name.empty()) {
        fs::remove(path_ + "/data/" + name);
        return;
    }
    fs::remove_all(path_ + "/data");
    fs::create_directory(path_ + "/data");
}

std::string RunFolder::read(const std::string& name) const {
    std::ifstream file(path_ + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace app
