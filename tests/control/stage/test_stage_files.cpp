#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "files/playlists.h"
#include "files/preferences.h"
#include "support/folder.h"
#include "tools/control/stage/stage_files.h"

namespace control {

namespace {

namespace fs = std::filesystem;

class StageFilesTest : public testing::Test {
protected:
    StageFilesTest() { fs::create_directories("userdata"); }

    // Each is newer than the one before.
    void write(const char* name, const std::string& text) {
        std::ofstream(name) << text;
        time_ += std::chrono::seconds(10);
        fs::last_write_time(name, time_);
    }
    void writeFilters(int first) {
        files::Preferences preferences;
        for (size_t slot = 0; slot < preferences.filters.size(); ++slot) {
            preferences.filters[slot] = first + static_cast<int>(slot);
        }
        write(files::kPreferencesName, files::printPreferences(preferences));
    }

    TemporaryFolder folder;
    StageFilesReader reader{"."};

private:
    fs::file_time_type time_ = fs::file_time_type::clock::now();
};

}  // namespace

TEST_F(StageFilesTest, NoFiles_AreEmpty) {
    EXPECT_TRUE(reader.now().tracks.empty());
    EXPECT_EQ(reader.now().filters, (std::array<int, 9>{}));
}

TEST_F(StageFilesTest, Files_TellFiltersAndPlaylists) {
    writeFilters(1);
    const std::vector<files::Playlist> playlists = {{"a", {"x.m19", "y.m19"}}, {"b", {}}};
    write(files::kPlaylistsName, files::printPlaylists(playlists));
    EXPECT_EQ(reader.now().filters, (std::array{1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_EQ(reader.now().tracks, (std::vector{2, 0}));
}

TEST_F(StageFilesTest, ChangedFiles_AreReadAgain) {
    writeFilters(1);
    EXPECT_EQ(reader.now().filters[0], 1);
    writeFilters(0);
    EXPECT_EQ(reader.now().filters[0], 0);
    fs::remove(files::kPreferencesName);
    EXPECT_EQ(reader.now().filters, (std::array<int, 9>{}));
}

TEST_F(StageFilesTest, AnyBytes_AreHarmless) {
    write(files::kPreferencesName, std::string("\xff\0<all><filter>", 15));
    write(files::kPlaylistsName, "<all><nodes>");
    // As many as the program itself would take them for.
    EXPECT_EQ(reader.now().tracks.size(), files::parsePlaylists("<all><nodes>").size());
}

}  // namespace control
