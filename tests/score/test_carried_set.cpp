// A set that goes into a pack, out of it on an empty and on a full machine, loses clips and finds
// them again: every playlist of it plays the same pictures there.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "files/playlists.h"
#include "support/folder.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kSources[] = {"rgb-all-360",   "rgba-all-360", "dense-360", "runs-360",
                                    "seventeen-200", "shared-176",   "flat-200"};

std::string textOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

int run(const std::string& tool, const std::string& arguments) {
    const std::string line = "'" + tool + "' " + arguments + " >out.txt 2>err.txt </dev/null";
    const int status = std::system(line.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int clip(const std::string& arguments) {
    return run(VELMORA_CLIP, arguments);
}

void makeFolder(const std::string& folder) {
    fs::create_directories(folder + "/videos");
    fs::create_directories(folder + "/userdata");
    fs::create_directory_symlink(PRODUCT_DATA, folder + "/data");
}

void writePlaylists(const std::string& folder, const std::vector<files::Playlist>& playlists) {
    std::ofstream(folder + "/" + files::kPlaylistsName, std::ios::binary)
        << files::printPlaylists(playlists);
}

std::string sourceOf(int number) {
    return std::string(TEST_DATA "/clips/") +
           kSources[static_cast<size_t>(number) % std::size(kSources)] + ".m19";
}

// Forty clips in four playlists: names with blanks and of other alphabets, the same name in two
// folders, links, one that is missing and one that is broken.
std::vector<files::Playlist> makeSet(const std::string& folder) {
    makeFolder(folder);
    const std::vector<std::string> odd = {
        "two words.m19",    "\xC3\xA9t\xC3\xA9.m19",
        "\xE5\xA4\x9C.m19", "a/same.m19",
        "b/same.m19",       "a/deep/er/x.m19",
        "it's.m19",         "semi;colon.m19",
        "-dash.m19",        "UPPER.m19",
        "upper.m19",        "star*.m19",
        "quo\"te.m19",      "back\\slash.m19",
        "latin-\xE9.m19",   "...dots.m19",
    };
    std::vector<std::string> tracks;
    for (int number = 0; number < 38; ++number) {
        const auto index = static_cast<size_t>(number);
        tracks.push_back(index < odd.size() ? odd[index]
                                            : "clip " + std::to_string(number) + ".m19");
        const fs::path file = fs::path(folder) / "videos" / tracks.back();
        fs::create_directories(file.parent_path());
        if (number % 9 == 8) {
            fs::create_symlink(sourceOf(number), file);
        } else {
            fs::copy_file(sourceOf(number), file);
        }
    }
    tracks.insert(tracks.begin() + 5, "missing.m19");
    tracks.insert(tracks.begin() + 25, "broken.m19");
    std::ofstream(folder + "/videos/broken.m19") << "no clip";
    std::vector<files::Playlist> playlists;
    for (size_t first = 0; first < tracks.size(); first += 10) {
        playlists.push_back({"SET " + std::to_string(first / 10),
                             {tracks.begin() + static_cast<ptrdiff_t>(first),
                              tracks.begin() + static_cast<ptrdiff_t>(first) + 10}});
    }
    writePlaylists(folder, playlists);
    return playlists;
}

// Each clip of a playlist, with filters and modes over it.
std::string picturesOf(const std::string& folder, const std::string& playlist) {
    std::ofstream("carried.score")
        << "velmora score 1\nplaylist " << playlist
        << "\n0-90/9 right\n40 2 down\n44 right up\n60 e:6\n62 backspace\n"
           "80 3\n100 end\n";
    EXPECT_EQ(run(VELMORA_RENDER, "carried.score --sums --folder " + folder), 0)
        << textOf("err.txt");
    return textOf("out.txt");
}

class CarriedSet : public testing::Test {
protected:
    void SetUp() override {
        // The map of velmora-control is the user's.
        setenv("HOME", folder_.path().c_str(), 1);
        unsetenv("XDG_CONFIG_HOME");
        playlists_ = makeSet("home");
        for (const files::Playlist& playlist : playlists_) {
            pictures_.push_back(picturesOf("home", playlist.name));
        }
        // A clip is missing and one is broken, which is said.
        EXPECT_EQ(clip("pack --from home -o set.velmora"), 1);
        EXPECT_NE((textOf("out.txt") + textOf("err.txt")).find("broken.m19"), std::string::npos);
        EXPECT_NE((textOf("out.txt") + textOf("err.txt")).find("missing.m19"), std::string::npos);
        ASSERT_TRUE(fs::exists("set.velmora"));
    }
    void expectSamePictures(const std::string& folder, const std::string& ending) {
        for (size_t i = 0; i < playlists_.size(); ++i) {
            EXPECT_EQ(picturesOf(folder, playlists_[i].name + ending), pictures_[i])
                << playlists_[i].name;
        }
    }

    TemporaryFolder folder_;
    std::vector<files::Playlist> playlists_;
    std::vector<std::string> pictures_;
};

TEST_F(CarriedSet, EmptyMachine_PlaysTheSamePictures) {
    makeFolder("away");
    ASSERT_EQ(clip("unpack set.velmora --to away"), 0) << textOf("err.txt");
    expectSamePictures("away", "");
}

// Its clips of the same names are others, and its playlists too.
TEST_F(CarriedSet, FullMachine_PlaysTheSamePicturesBesideItsOwn) {
    makeFolder("club");
    fs::create_directories("club/videos/a");
    fs::copy_file(sourceOf(1), "club/videos/two words.m19");
    fs::copy_file(sourceOf(0), "club/videos/a/same.m19");
    fs::copy_file(sourceOf(2), "club/videos/clip 30.m19");
    writePlaylists("club", {{"SET 1", {"two words.m19", "a/same.m19", "clip 30.m19"}}});
    const std::string before = picturesOf("club", "SET 1");
    ASSERT_EQ(clip("unpack set.velmora --to club"), 0) << textOf("err.txt");
    EXPECT_EQ(picturesOf("club", "SET 1"), before);
    std::vector<std::string> names;
    for (const files::Playlist& playlist :
         files::parsePlaylists(textOf(std::string("club/") + files::kPlaylistsName))) {
        names.push_back(playlist.name);
    }
    ASSERT_EQ(names.size(), 5U);
    for (const size_t i : {0, 2, 3}) {
        EXPECT_EQ(picturesOf("club", playlists_[i].name), pictures_[i]) << playlists_[i].name;
    }
    // The one that had to take another name.
    std::string other;
    for (const std::string& name : names) {
        const bool known = name == "SET 0" || name == "SET 1" || name == "SET 2" || name == "SET 3";
        other = known ? other : name;
    }
    EXPECT_EQ(picturesOf("club", other), pictures_[1]) << other;
}

TEST_F(CarriedSet, LostClips_AreFoundAgainAndPlay) {
    makeFolder("away");
    ASSERT_EQ(clip("unpack set.velmora --to away"), 0);
    fs::create_directories("stick");
    fs::rename("away/videos/two words.m19", "stick/renamed.m19");  // by content
    fs::rename("away/videos/clip 30.m19", "stick/clip 30.m19");
    EXPECT_NE(picturesOf("away", "SET 0"), pictures_[0]);
    EXPECT_EQ(clip("relink stick --to away --write"), 1) << textOf("out.txt");  // two stay missing
    expectSamePictures("away", "");
}

}  // namespace
