// Files that appear whole, descriptions of clips, the export of the demo loops.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "clip/validate.h"
#include "clip_tool/pictures.h"
#include "clip_tool/reference.h"
#include "support/folder.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/clip/jobs/export_demo.h"
#include "tools/clip/reports/describe.h"

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<uint8_t>;

std::string textOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

size_t filesIn(const fs::path& folder) {
    return static_cast<size_t>(std::distance(fs::directory_iterator(folder), {}));
}

class Files : public testing::Test {
protected:
    TemporaryFolder folder_;
};

TEST_F(Files, WriteWhole_LeavesTheFileAlone) {
    maker::writeWholeFile("a.m19", Bytes{1, 2, 3});
    EXPECT_EQ(textOf("a.m19"), "\1\2\3");
    EXPECT_EQ(filesIn("."), 1u);
    struct stat facts {};
    stat("a.m19", &facts);
    const mode_t mask = umask(0);
    umask(mask);
    EXPECT_EQ(facts.st_mode & 0777, 0666 & ~mask);
}

TEST_F(Files, WriteWhole_ReplacesAnOlderFile) {
    maker::writeWholeFile("a.m19", Bytes(100000, 7));
    maker::writeWholeFile("a.m19", Bytes{9});
    EXPECT_EQ(textOf("a.m19"), "\x09");
    EXPECT_EQ(maker::readWholeFile("a.m19"), Bytes{9});
}

TEST_F(Files, WriteWhole_LargeFileComesBack) {
    Bytes bytes(3 << 20);
    for (size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<uint8_t>(i * 31 >> 3);
    }
    maker::writeWholeFile("a.m19", bytes);
    EXPECT_EQ(maker::readWholeFile("a.m19"), bytes);
}

TEST_F(Files, WriteWhole_NoFolderIsAnError) {
    EXPECT_THROW(maker::writeWholeFile("no/a.m19", Bytes{1}), maker::ToolError);
    fs::create_directory("folder");
    EXPECT_THROW(maker::writeWholeFile("folder", Bytes{1}), maker::ToolError);
    EXPECT_EQ(filesIn("."), 1u);
}

// A device would be replaced by a file just as well.
TEST_F(Files, WriteWhole_PipeIsLeftAlone) {
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    EXPECT_THROW(maker::writeWholeFile("pipe", Bytes{1}), maker::ToolError);
    EXPECT_THROW(maker::checkWritable("pipe"), maker::ToolError);
    EXPECT_TRUE(std::filesystem::is_fifo("pipe"));
}

// No process has the number 4194304: one past the largest that the kernel gives.
TEST_F(Files, WriteWhole_RemovesOnlyWhatEndedRunsLeft) {
    const std::string running = std::to_string(getpid());
    const std::vector<std::string> kept = {
        ".a.m19.velmora-" + running + "-AbCd12",
        ".a.m19.velmora-4194304-AbCd123",
        ".a.m19.velmora-4194304",
        ".a.m19.velmora--AbCd12",
        ".a.m19.backup",
        ".b.m19.velmora-4194304-AbCd12",
        ".a.m19.velmora-99999999999999999999-AbCd12",
    };
    for (const std::string& name : kept) {
        std::ofstream(name) << "kept";
    }
    std::ofstream(".a.m19.velmora-4194304-AbCd12") << "left";
    maker::writeWholeFile("a.m19", Bytes{1});
    EXPECT_FALSE(fs::exists(".a.m19.velmora-4194304-AbCd12"));
    for (const std::string& name : kept) {
        EXPECT_EQ(textOf(name), "kept") << name;
    }
    EXPECT_EQ(filesIn("."), kept.size() + 1);
}

TEST_F(Files, ReadWhole_MissingFileIsAnError) {
    EXPECT_THROW(maker::readWholeFile("no.m19"), maker::ToolError);
    EXPECT_THROW(maker::readWholeFile("."), maker::ToolError);
    maker::writeWholeFile("empty", {});
    EXPECT_EQ(maker::readWholeFile("empty"), Bytes{});
}

// 17 frames of 8 lines in flat colours: no records; headers of 10 + 2 x (10 + 20 + 512) bytes,
// 15 run bytes, 80 + 15 x 0 + 80 entries, 16 code words a frame.
// The file takes no room: nothing was ever written to it.
TEST_F(Files, ReadWhole_LargerThanAnyClipIsRefused) {
    std::ofstream("a.m19").close();
    std::filesystem::resize_file("a.m19", size_t{300} << 20);
    try {
        maker::readWholeFile("a.m19");
        ADD_FAILURE();
    } catch (const maker::ToolError& error) {
        EXPECT_STREQ(error.what(), "cannot read a.m19: it is larger than any clip");
    }
}

TEST(Describe, FlatClip_HasItsBytesBySection) {
    const Bytes bytes =
        pictures::encode(std::vector<maker::Frame>(17, pictures::flat(8, 0x1234)), 80);
    maker::Description description;
    ASSERT_TRUE(maker::describe(bytes, description));
    const nlohmann::json json = nlohmann::json::parse(maker::asJson("x.m19", description));
    EXPECT_EQ(json.at("file"), "x.m19");
    EXPECT_EQ(json.at("quality"), 80);
    EXPECT_EQ(json.at("height"), 8);
    EXPECT_EQ(json.at("frames"), 17);
    EXPECT_EQ(json.at("bytes"), bytes.size());
    EXPECT_EQ(json.at("ok"), true);
    ASSERT_EQ(json.at("blocks").size(), 2u);
    const nlohmann::json& block = json.at("blocks").at(0);
    EXPECT_EQ(block.at("offset"), 10);
    EXPECT_EQ(block.at("frames"), 16);
    EXPECT_EQ(block.at("records"), 0);
    EXPECT_EQ(block.at("recordsByType"), nlohmann::json(std::vector<int>(10, 0)));
    const nlohmann::json sizes{
        {"header", 542}, {"runs", 15}, {"map", 160}, {"codes", 512}, {"records", 0}};
    EXPECT_EQ(block.at("bytes"), sizes);
    EXPECT_EQ(json.at("blocks").at(1).at("bytes").at("runs"), 0);
}

TEST(Describe, Text_NamesFactsAndFault) {
    Bytes bytes = pictures::encode({pictures::flat(8, 3, true)});
    bytes.push_back(0);
    maker::Description description;
    ASSERT_TRUE(maker::describe(bytes, description));
    const std::string text = maker::asText("x.m19", description);
    EXPECT_NE(text.find("x.m19:\n  640 x 8, colour and alpha, quality 100, 1 frames in 1 blocks\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("1 bytes after the last block"), std::string::npos) << text;
}

TEST(Describe, OtherFiles_HaveNoDescription) {
    maker::Description description;
    EXPECT_FALSE(maker::describe(Bytes{}, description));
    EXPECT_FALSE(maker::describe(Bytes{19, 1, 2}, description));
    EXPECT_FALSE(maker::describe(Bytes(100, 18), description));
}

TEST(Describe, FileNameOutsideUtf8_StillMakesJson) {
    maker::Description description;
    ASSERT_TRUE(maker::describe(pictures::encode({pictures::flat(8, 3)}), description));
    EXPECT_TRUE(nlohmann::json::accept(maker::asJson("\xE9.m19", description)));
}

// A loop whose frame f is one colour: red 8 x f, and with alpha a transparent left half.
void renderPlain(demo::Canvas& canvas, const demo::Moment& moment) {
    canvas.clear({static_cast<uint8_t>(moment.frame * 8), 0, 0});
}

void renderClear(demo::Canvas& canvas, const demo::Moment& moment) {
    renderPlain(canvas, moment);
    canvas.rect(0, 0, 320, 360, {static_cast<uint8_t>(moment.frame * 8), 0, 0, 0});
}

const demo::Loop kLoops[] = {{"plain", 3, false, renderPlain}, {"clear", 18, true, renderClear}};

std::vector<std::string> exportTo(const fs::path& folder, bool force) {
    std::vector<std::string> log;
    maker::exportLoops(
        kLoops, folder, force, [&log](const fs::path& path, const std::string& what) {
            log.push_back(path.filename().string() + " " + what.substr(0, what.find(',')));
        });
    return log;
}

TEST_F(Files, ExportLoops_WritesEveryLoop) {
    EXPECT_EQ(exportTo("new/videos", false),
              (std::vector<std::string>{"plain.m19 3 frames", "clear.m19 18 frames"}));
    const Bytes plain = maker::readWholeFile("new/videos/plain.m19");
    ASSERT_TRUE(clip::validate(plain).ok);
    const std::vector<reference::Picture> shown = reference::decode(reference::parse(plain));
    ASSERT_EQ(shown.size(), 3u);
    EXPECT_EQ(shown[2].pixels[0], 0x1000);  // 16 of 255 is level 2 of 31
    const reference::Clip clear = reference::parse(maker::readWholeFile("new/videos/clear.m19"));
    EXPECT_EQ(clear.alpha, 1u);
    EXPECT_EQ(clear.height, 360u);
    EXPECT_EQ(reference::decode(clear)[17].alpha[0], 0);
    EXPECT_EQ(reference::decode(clear)[17].alpha[639], 15);
}

TEST_F(Files, ExportLoops_KeepsWhatIsThereUnlessForced) {
    maker::writeWholeFile("plain.m19", Bytes{1});
    EXPECT_EQ(exportTo(".", false),
              (std::vector<std::string>{"plain.m19 kept", "clear.m19 18 frames"}));
    EXPECT_EQ(textOf("plain.m19"), "\1");
    EXPECT_EQ(exportTo(".", true)[0], "plain.m19 3 frames");
    EXPECT_TRUE(clip::validate(maker::readWholeFile("plain.m19")).ok);
}

const char* const kTracks[] = {"grid", "clear"};
const demo::Playlist kPlaylists[] = {{"first", kTracks}, {"none", {}}};
constexpr const char* kXml =
    "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n"
    "\n"
    "<all>\n"
    "\t<playlist>\n"
    "\t\t<name>first</name>\n"
    "\t\t<track>grid.m19</track>\n"
    "\t\t<track>clear.m19</track>\n"
    "\t</playlist>\n"
    "\t<playlist>\n"
    "\t\t<name>none</name>\n"
    "\t</playlist>\n"
    "</all>\n";

TEST_F(Files, ExportPlaylists_WritesTheFileOnce) {
    EXPECT_TRUE(maker::exportPlaylists(kPlaylists, "a/b/playlists.xml"));
    EXPECT_EQ(textOf("a/b/playlists.xml"), kXml);
    EXPECT_EQ(filesIn("a/b"), 1u);
    EXPECT_FALSE(maker::exportPlaylists({}, "a/b/playlists.xml"));
    EXPECT_EQ(textOf("a/b/playlists.xml"), kXml);
}

}  // namespace
