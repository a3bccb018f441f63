#pragma once
// The folder in which one program run lives: links to the repository's data files, and videos and
// user data of its own. Everything in it goes when the RunFolder goes.

#include <cstdint>
#include <string>
#include <vector>

namespace app {

class RunFolder {
public:
    RunFolder();  // throws std::runtime_error or filesystem_error when it cannot be made
    ~RunFolder();
    RunFolder(const RunFolder&) = delete;
    RunFolder& operator=(const RunFolder&) = delete;

    void addClip(const std::string& name, const std::vector<uint8_t>& bytes);
    void addClipFile(const std::string& path);  // a copy, under the file's own name
    // Names without the characters that XML would need escaped.
    void addPlaylist(const std::string& name, const std::vector<std::string>& tracks);
    // Writes userdata/playlists.xml from what was added, also when that is nothing.
    void writePlaylists();
    // A file of userdata/ with this text.
    void addUserFile(const std::string& name, const std::string& text);
    void removeData(const std::string& name);  // one file of data/, "" for all of them

    int playlists() const { return count_; }
    const std::string& path() const { return path_; }
    std::string read(const std::string& name) const;  // a whole file, empty when there is none

private:
    std::string path_;
    std::string playlists_;
    int count_ = 0;
};

}  // namespace app
