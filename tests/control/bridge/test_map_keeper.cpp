#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/folder.h"
#include "tools/base/errors.h"
#include "tools/control/bridge/map_keeper.h"
#include "tools/control/map/default_map.h"

namespace control {

namespace {

namespace fs = std::filesystem;

class MapKeeperTest : public testing::Test {
protected:
    // Each text is newer than the one before.
    void write(const std::string& text) {
        std::ofstream(file) << text;
        time_ += std::chrono::seconds(10);
        fs::last_write_time(file, time_);
    }

    TemporaryFolder folder;
    const fs::path file = fs::path("sub") / "folder" / "control.toml";
    MapKeeper keeper{file};

private:
    fs::file_time_type time_ = fs::file_time_type::clock::now();
};

}  // namespace

TEST_F(MapKeeperTest, FirstStart_WritesTheDefaultMapAndItsFolders) {
    EXPECT_TRUE(keeper.makeWhenMissing());
    std::stringstream text;
    text << std::ifstream(file).rdbuf();
    EXPECT_EQ(text.str(), defaultMap());
    EXPECT_FALSE(keeper.makeWhenMissing());
    EXPECT_EQ(keeper.changed(), ControlMap{});
    EXPECT_TRUE(keeper.faults().empty());
}

TEST_F(MapKeeperTest, OwnMap_Stays) {
    fs::create_directories(file.parent_path());
    write("# mine\n");
    EXPECT_FALSE(keeper.makeWhenMissing());
    EXPECT_EQ(fs::file_size(file), 7U);
}

TEST_F(MapKeeperTest, Map_IsGivenOnceForEachChange) {
    EXPECT_FALSE(keeper.changed());
    fs::create_directories(file.parent_path());
    write("[osc]\nport = 1234\n");
    EXPECT_EQ(keeper.changed().value_or(ControlMap{}).port, 1234);
    EXPECT_FALSE(keeper.changed());
    write("[osc]\nport = 1235\n");
    EXPECT_EQ(keeper.changed().value_or(ControlMap{}).port, 1235);
}

TEST_F(MapKeeperTest, Faults_AreNamedAndTheRestCounts) {
    fs::create_directories(file.parent_path());
    write("[osc]\nport = 1234\n[[on]]\nnote = 300\ndo = \"flash\"\n");
    EXPECT_EQ(keeper.changed().value_or(ControlMap{}).port, 1234);
    ASSERT_EQ(keeper.faults().size(), 1U);
    EXPECT_EQ(keeper.faults()[0].substr(0, file.string().size() + 3), file.string() + ":4:");
    write("[osc]\nport = 1235\n");
    EXPECT_TRUE(keeper.changed());
    EXPECT_TRUE(keeper.faults().empty());
}

TEST_F(MapKeeperTest, NoToml_ChangesNothing) {
    fs::create_directories(file.parent_path());
    write("[osc\n");
    EXPECT_FALSE(keeper.changed());
    EXPECT_EQ(keeper.faults().size(), 1U);
}

TEST_F(MapKeeperTest, FolderInItsPlace_CannotBeRead) {
    fs::create_directories(file);
    EXPECT_FALSE(keeper.changed());
    ASSERT_EQ(keeper.faults().size(), 1U);
    EXPECT_EQ(keeper.faults()[0], "cannot read " + file.string());
}

TEST_F(MapKeeperTest, FileInTheFoldersPlace_IsAnError) {
    std::ofstream("sub") << "a file";
    EXPECT_THROW(keeper.makeWhenMissing(), maker::ToolError);
}

}  // namespace control
