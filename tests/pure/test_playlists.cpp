#include "files/playlists.h"

#include <gtest/gtest.h>

namespace {

const std::string kStart = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n";

std::string playlistText(const std::string& name, int tracks) {
    std::string text = "\t<playlist>\n\t\t<name>" + name + "</name>\n";
    for (int t = 0; t < tracks; ++t) {
        text += "\t\t<track>" + std::to_string(t) + "</track>\n";
    }
    return text + "\t</playlist>\n";
}

TEST(Playlists, Print_ByteForByte) {
    const files::Playlist playlists[] = {{"one & <b>", {"a.m19", "%d/b.m19"}}, {"none", {}}};
    EXPECT_EQ(files::printPlaylists(playlists), kStart +
                                                    "\t<playlist>\n"
                                                    "\t\t<name>one & <b></name>\n"
                                                    "\t\t<track>a.m19</track>\n"
                                                    "\t\t<track>%d/b.m19</track>\n"
                                                    "\t</playlist>\n"
                                                    "\t<playlist>\n"
                                                    "\t\t<name>none</name>\n"
                                                    "\t</playlist>\n"
                                                    "</all>\n");
    EXPECT_EQ(files::printPlaylists({}), kStart + "</all>\n");
}

TEST(Playlists, Parse_NamesAndTracksInOrder) {
    const std::vector<files::Playlist> read =
        files::parsePlaylists(kStart + playlistText("one", 2) + playlistText("two", 0) + "</all>");
    ASSERT_EQ(read.size(), 2u);
    EXPECT_EQ(read[0].name, "one");
    EXPECT_EQ(read[0].tracks, (std::vector<std::string>{"0", "1"}));
    EXPECT_EQ(read[1].name, "two");
    EXPECT_TRUE(read[1].tracks.empty());
}

// The tracks of the dropped one belong to none.
TEST(Playlists, ParseUnclosed_Dropped) {
    const std::string open = "\t<playlist>\n\t\t<name>open</name>\n\t\t<track>a</track>\n";
    EXPECT_EQ(files::parsePlaylists(kStart + playlistText("one", 1) + open + "</all>\n").size(),
              1u);
}

TEST(Playlists, ParseMoreThanFits_50PlaylistsOf51Tracks) {
    std::string text = kStart;
    for (int p = 0; p < 53; ++p) {
        text += playlistText("p", 52);
    }
    const std::vector<files::Playlist> read = files::parsePlaylists(text + "</all>\n");
    ASSERT_EQ(read.size(), 50u);
    EXPECT_EQ(read[49].tracks.size(), 51u);
    EXPECT_EQ(read[49].tracks[50], "50");
}

// 92 and 91 bytes of the end for each of 50 names and 51 tracks: the limits end the search.
TEST(Playlists, ParseNothing_EndsWithAllThatTheLimitsAllow) {
    const std::vector<files::Playlist> read = files::parsePlaylists("");
    ASSERT_EQ(read.size(), 50u);
    EXPECT_EQ(read[0].name, std::string(92, '\xFF'));
    EXPECT_EQ(read[49].tracks, std::vector<std::string>(51, std::string(91, '\xFF')));
}

}  // namespace
