// Folders that are taken away while the pages that show them are open, as when a stick is pulled,
// and folders that may not be read or written any more.
#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "draw/painter.h"
#include "faults/hands.h"
#include "layout/page_layout.h"

namespace faults {

namespace fs = std::filesystem;

namespace {

// Takes from root what lets it pass by the permissions of files; others do not have it.
bool bindToPermissions() {
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct rights[_LINUX_CAPABILITY_U32S_3] = {};
    if (syscall(SYS_capget, &header, rights) != 0) {
        return false;
    }
    rights[0].effective &= ~((1u << CAP_DAC_OVERRIDE) | (1u << CAP_DAC_READ_SEARCH));
    return syscall(SYS_capset, &header, rights) == 0;
}

// A folder without the permissions, until this goes.
class Locked {
public:
    Locked(const char* folder, mode_t mode) : folder_(folder) { chmod(folder_, mode); }
    ~Locked() { chmod(folder_, 0755); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;

private:
    const char* folder_;
};

class GoneFolders : public StageTest {
protected:
    GoneFolders() {
        fs::create_directories("userdata");
        fs::create_directories("videos/live");
        _textureUI = loadPicture("data/textureUI.png");
        placeClip("seventeen-200.m19", "a.m19");
        placeClip("rgb-all-360.m19", "live/b.m19");
        addFamille("two", {"a.m19", "live/b.m19"});
        addFamille("other", {"a.m19"});
        playlist->saveFamille();
        all->state = STATE_HOME;
    }
    void openEditor() {
        hands.click(424, 122);
        ASSERT_EQ(all->state, STATE_PLAYLISTS);
    }
    void openTracks() {
        openEditor();
        hands.click(90, 240);
        ASSERT_EQ(playlist->editPage, page::TRACKS);
    }
    // Every button, every list and the keys of the page, a few times.
    std::string useEverything() {
        return printedBy([this] {
            for (int round = 0; round < 2; ++round) {
                for (int x = 20; x < 500; x += 64) {
                    hands.click(x, 240);
                    hands.tap(SDLK_z);
                    hands.click(x, 268);
                    hands.tap(SDLK_z);
                }
                for (const SDLKey key : {SDLK_RIGHT, SDLK_DOWN, SDLK_x, SDLK_RETURN, SDLK_LEFT}) {
                    hands.tap(key);
                }
            }
        });
    }

    Hands hands{1};
};

TEST_F(GoneFolders, VideosRemovedWithTheExplorerOpen_SaysSoAndGoesOn) {
    openTracks();
    ASSERT_EQ(playlist->nbEntries, 2);
    fs::remove_all("videos");
    // The rows are those of the last listing; entering a folder of them finds nothing.
    const int row = playlist->entries[0] == "live" ? 0 : 1;
    const std::string said = printedBy([&] {
        editor->select(page::RIGHT, row);
        hands.tap(SDLK_x);
    });
    EXPECT_EQ(said, "Couldn't open the directory\n");
    ASSERT_EQ(playlist->nbEntries, 1);
    EXPECT_EQ(playlist->entries[0], ".. back");
    useEverything();
    EXPECT_TRUE(hands.goHome());
}

TEST_F(GoneFolders, VideosRemoved_SavedListsMarkTheirTracksMissing) {
    openTracks();
    fs::remove_all("videos");
    hands.click(530, 268);  // confirm
    EXPECT_EQ(playlist->familles[0].nbMissing, 2);
    EXPECT_EQ(playlist->familles[1].nbMissing, 1);
    // Back again: the next save finds them.
    placeClip("seventeen-200.m19", "a.m19");
    playlist->saveFamille();
    EXPECT_EQ(playlist->familles[0].nbMissing, 1);
}

TEST_F(GoneFolders, VideosRemovedBeforeAPreview_StaysOnThePage) {
    openEditor();
    editor->select(page::RIGHT, 0);
    fs::remove_all("videos");
    printedBy([&] { hands.click(150, 240); });
    EXPECT_EQ(playlist->previewActive, 0);
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
    EXPECT_NE(editor->notice, "");
    useEverything();
    EXPECT_TRUE(hands.goHome());
}

TEST_F(GoneFolders, VideosBecomesAFile_SaysSoAndGoesOn) {
    openEditor();
    fs::remove_all("videos");
    writeFile("videos", "not a folder");
    const std::string said = printedBy([&] { hands.click(90, 240); });
    EXPECT_EQ(said, "Couldn't open the directory\n");
    EXPECT_EQ(playlist->nbEntries, 0);
    useEverything();
    EXPECT_TRUE(hands.goHome());
}

TEST_F(GoneFolders, VideosRemovedWhileAPlaylistLoads_PlaysWhatWasRead) {
    all->state = STATE_MIX;
    all->subState = SUB_OVERMENU;
    printedBy([&] {
        hands.tap(SDLK_x);
        for (int frame = 0; frame < 300 && playlist->loadSlot == 0; ++frame) {
            runFrame();
        }
    });
    ASSERT_EQ(playlist->loadSlot, 1);
    ASSERT_EQ(moxel[1].loadStage, 0);
    fs::remove_all("videos");
    printedBy([] {
        for (int frame = 0; frame < 10; ++frame) {
            runFrame();
        }
    });
    EXPECT_EQ(playlist->loading, 0);
    EXPECT_EQ(playlist->loadSlot, 1);
    EXPECT_EQ(moxel[0].state, CLIP_READY);
    EXPECT_TRUE(hands.goHome());
}

TEST_F(GoneFolders, VideosUnreadable_SaysSoMarksTracksMissingAndGoesOn) {
    ASSERT_TRUE(bindToPermissions());
    openEditor();
    const Locked videos("videos", 0);
    const std::string said = printedBy([&] { hands.click(90, 240); });
    EXPECT_EQ(said, "Couldn't open the directory\n");
    EXPECT_EQ(playlist->nbEntries, 0);
    hands.click(530, 268);  // confirm
    EXPECT_EQ(playlist->familles[0].nbMissing, 2);
    useEverything();
    EXPECT_TRUE(hands.goHome());
}

TEST_F(GoneFolders, UserdataUnwritable_OldFileStaysAndSavesAgainLater) {
    ASSERT_TRUE(bindToPermissions());
    const std::string before = readFile("userdata/playlists.xml");
    openTracks();
    playlist->removeTrack(0, 0);
    {
        const Locked userdata("userdata", 0555);
        const std::string lists = fs::current_path() / "userdata/playlists.xml";
        EXPECT_EQ(printedBy([&] { hands.click(530, 268); }), "Could not save " + lists + "\n");
        EXPECT_EQ(readFile("userdata/playlists.xml"), before);
    }
    EXPECT_EQ(printedBy([] { playlist->saveFamille(); }), "");
    EXPECT_EQ(readFile("userdata/playlists.xml").size(),
              before.size() - std::string("\t\t<track>a.m19</track>\n").size());
}

TEST_F(GoneFolders, UserdataUnreadable_ReadsNothingAndSavesNothing) {
    ASSERT_TRUE(bindToPermissions());
    const Locked userdata("userdata", 0);
    EXPECT_EQ(printedBy([] { playlist->lireXML(); }), "can't find playlists XML file\n");
    EXPECT_EQ(playlist->nbFamilles, 0);
    EXPECT_EQ(printedBy([] { _options->lireXML(); }), "can't find prefs file\n");
    EXPECT_TRUE(hands.goHome());
}

// A folder opens like a file and then cannot be read: there are no playlists, and what stands there
// is not written over.
TEST_F(GoneFolders, FoldersUnderTheFilesNames_PagesAnswerAndFoldersStay) {
    fs::remove_all("userdata");
    fs::create_directories("userdata/playlists.xml");
    fs::create_directories("userdata/prefs.xml");
    printedBy([] {
        playlist->lireXML();
        _options->lireXML();
    });
    EXPECT_EQ(playlist->nbFamilles, 0);
    openEditor();
    useEverything();
    EXPECT_TRUE(hands.goHome());
    const std::string lists = fs::current_path() / "userdata/playlists.xml";
    EXPECT_EQ(printedBy([] { playlist->saveXML(); }), "Could not save " + lists + "\n");
    EXPECT_TRUE(fs::is_directory("userdata/playlists.xml"));
    EXPECT_FALSE(fs::exists("userdata/playlists.xml.tmp"));
}

// The next save makes it again.
TEST_F(GoneFolders, UserdataRemoved_OptionsAndListsAreSavedAnew) {
    fs::remove_all("userdata");
    hands.click(200, 220);
    ASSERT_EQ(all->state, STATE_OPTIONS);
    hands.tap(SDLK_z);
    EXPECT_EQ(all->state, STATE_HOME);
    EXPECT_TRUE(fs::exists("userdata/prefs.xml"));
    fs::remove_all("userdata");
    openTracks();
    hands.click(530, 268);
    EXPECT_TRUE(fs::exists("userdata/playlists.xml"));
}

TEST_F(GoneFolders, UserdataBecomesAFile_EachSaveSaysSoAndTheListsStay) {
    fs::remove_all("userdata");
    writeFile("userdata", "not a folder");
    openTracks();
    const std::string lists = fs::current_path() / "userdata/playlists.xml";
    EXPECT_EQ(printedBy([&] { hands.click(530, 268); }), "Could not save " + lists + "\n");
    EXPECT_EQ(familleNames(), (std::vector<std::string>{"two", "other"}));
    EXPECT_TRUE(hands.goHome());
    hands.click(200, 220);
    const std::string prefs = fs::current_path() / "userdata/prefs.xml";
    EXPECT_EQ(printedBy([&] { hands.tap(SDLK_z); }), "Could not save " + prefs + "\n");
    EXPECT_EQ(all->state, STATE_OPTIONS) << "the page says so first";
    EXPECT_EQ(printedBy([&] { hands.tap(SDLK_z); }), "");
    EXPECT_EQ(all->state, STATE_HOME);
}

}  // namespace

}  // namespace faults
