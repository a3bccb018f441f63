// The files explorer: links, long folders, what a clip takes to load, the double click.
#include <dirent.h>
#include <sys/stat.h>

#include "moxel/moxel.h"
#include "state/editor_hands.h"

namespace {

bool typesUnknown = false;

}  // namespace

// Some file systems do not say what an entry is. Where this is not the program's own structure the
// library's function stays.
#if __SIZEOF_POINTER__ == 8
extern "C" dirent* readdir(DIR* folder) {
    auto* entry = reinterpret_cast<dirent*>(readdir64(folder));
    if (entry != nullptr && typesUnknown) {
        entry->d_type = DT_UNKNOWN;
    }
    return entry;
}
#endif

namespace {

using Paths = std::vector<std::string>;

class Listing : public EditorTest {
protected:
    ~Listing() override { typesUnknown = false; }

    // Clips and folders of ./videos as listed, each with its kind, sorted.
    static Paths kinds() {
        playlist->curDir = playlist->baseDir;
        playlist->readDir("videos");
        Paths result;
        for (int row = 0; row < playlist->nbEntries; ++row) {
            EXPECT_NE(playlist->entryIsDir[row], playlist->entryIsClip[row]);
            result.push_back((playlist->entryIsDir[row] != 0 ? "folder " : "clip ") +
                             playlist->entries[row]);
        }
        std::sort(result.begin(), result.end());
        return result;
    }
    static void placeOneOfEach() {
        writeFile("videos/a.m19", "");
        writeFile("videos/film.mp4", "");
        writeFile("videos/live/b.m19", "");
        std::filesystem::create_directories("videos/folder.m19");
        const struct {
            const char* target;
            const char* name;
        } links[] = {
            {"a.m19", "to-clip.m19"},  {"a.m19", "to-clip.txt"},  {"film.mp4", "to-film"},
            {"film.mp4", "other.m19"}, {"a.m19", "._hidden.m19"}, {"live", "to-folder"},
            {"live", "._folder"},      {"nowhere", "dangling"},   {"nowhere", "dangling.m19"},
            {"loop.m19", "loop.m19"},
        };
        for (const auto& link : links) {
            std::filesystem::create_symlink(link.target, std::string("videos/") + link.name);
        }
        ASSERT_EQ(mkfifo("videos/pipe.m19", 0600), 0);
        std::filesystem::create_symlink("pipe.m19", "videos/to-pipe.m19");
    }
};

// A link goes by its own name and by what it leads to.
const Paths kOneOfEach = {"clip a.m19",        "clip other.m19", "clip to-clip.m19",
                          "folder folder.m19", "folder live",    "folder to-folder"};

TEST_F(Listing, Links_CountAsWhatTheyLeadTo) {
    placeOneOfEach();
    EXPECT_EQ(kinds(), kOneOfEach);
    EXPECT_EQ(editor->explorer.found, 6);
}

TEST_F(Listing, FileSystemThatNamesNoTypes_ListsTheSame) {
    if (sizeof(void*) != 8) {
        GTEST_SKIP() << "the library's own function is in use";
    }
    placeOneOfEach();
    typesUnknown = true;
    EXPECT_EQ(kinds(), kOneOfEach);
}

TEST_F(Listing, LinkedFolder_IsEnteredAndItsClipsAddedUnderItsName) {
    placeOneOfEach();
    addFamille("set");
    frame();
    editFirst();
    click(rightRow(rowOfEntry("to-folder")));
    EXPECT_EQ(playlist->browseDir, playlist->baseDir + "/videos/to-folder");
    click(rightRow(rowOfEntry("b.m19")));
    tap(KEY_RETURN);
    EXPECT_EQ(paths(0), Paths{"to-folder/b.m19"});
}

// The first hundred that the directory gives, in its order.
TEST_F(Listing, LongFolder_ShowsTheFirstHundred) {
    for (int clip = 0; clip < 150; ++clip) {
        writeFile(numbered("videos/long/c", clip) + ".m19", "");
        writeFile(numbered("videos/long/film", clip) + ".mp4", "");
    }
    std::filesystem::create_directories("videos/long/sub");
    Paths wanted = {".. back"};
    DIR* folder = opendir("videos/long");
    while (const dirent* entry = readdir(folder)) {
        const std::string name = entry->d_name;
        if (wanted.size() < 100 && (name.ends_with(".m19") || name == "sub")) {
            wanted.push_back(name);
        }
    }
    closedir(folder);
    playlist->readDir("videos");
    EXPECT_EQ(editor->explorer.found, 1);
    EXPECT_EQ(editor->explorer.listed, 1);
    playlist->readDir("long");
    EXPECT_EQ(Paths(playlist->entries, playlist->entries + playlist->nbEntries), wanted);
    EXPECT_EQ(editor->explorer.listed, 99) << "the way back takes a row";
    EXPECT_EQ(editor->explorer.found, 151);
    playlist->readDir("gone");
    EXPECT_EQ(editor->explorer.found, 0);
    EXPECT_EQ(editor->explorer.listed, 0);
}

TEST_F(Listing, OpenedFromTheEditor_IsTheVideosFolderOfTheStart) {
    writeFile("videos/live/deep/x.m19", "");
    addFamille("set");
    frame();
    for (int opening = 0; opening < 3; ++opening) {
        editFirst();
        EXPECT_EQ(playlist->browseDir, playlist->baseDir + "/videos");
        EXPECT_EQ(playlist->entries[0], "live");
        EXPECT_EQ(playlist->nbEntries, 1);
        click(rightRow(0));
        click(rightRow(1));
        EXPECT_EQ(playlist->browseDir, playlist->baseDir + "/videos/live/deep");
        tap(KEY_Z);
    }
    std::filesystem::create_directories("elsewhere/videos");
    std::filesystem::current_path("elsewhere");
    editFirst();
    EXPECT_EQ(playlist->entries[0], "live") << "wherever the program is by now";
    std::filesystem::current_path("..");
}

class ExplorerPage : public EditorTest {
protected:
    ExplorerPage() {
        placeClip("long-256.m19", "a/long.m19");  // 256 frames
        placeClip("dense-360.m19", "b/dense.m19");
        writeFile("videos/c/broken.m19", std::string(300, '\x13'));
        addFamille("set", {"A", "B", "C"});
        frame();
        editFirst();
    }
    void enter(const std::string& folder) { click(rightRow(rowOfEntry(folder))); }
    static void letLook() {
        for (int i = 0; i < 40; ++i) {
            draw();
        }
    }
    // The words right-aligned in the visible row, their letters in this colour and nothing else.
    static void expectWords(int row, int right, const char* words, int rgb) {
        Lettering lettering;
        Picture wanted = copyOf(screen[0]);
        const int width = lettering.width(words, 0);
        const int top = 180 + 18 + 13 * row;
        fill(wanted.get(), 320 + right - 44, top, 44, 13, pixelAt(screen[0], 320 + 323, top));
        lettering.paint(wanted.get(), words, 320 + right - width, top + 2, rgb, 0);
        EXPECT_TRUE(samePixels(screen[0], wanted.get())) << words;
    }
    static std::string title() {
        Lettering lettering;
        for (const char* part : {"first 99 of 150", "first 100 of 150"}) {
            Picture wanted = copyOf(screen[0]);
            const int x = 320 + 327 + lettering.width("files explorer", 0) + 8;
            fill(wanted.get(), x, 184, lettering.width(part, 0), 12, 0x18C3);
            lettering.paint(wanted.get(), part, x, 184, 0xFFFFFF, 0);
            if (samePixels(screen[0], wanted.get())) {
                return part;
            }
        }
        return "";
    }
    static constexpr int kRight = 624;  // end of the right list
};

TEST_F(ExplorerPage, Clip_ShowsItsFramesAndItsSeconds) {
    enter("a");
    click(rightRow(0));
    enter("a");
    pointAt(kNowhere);
    draw();
    letLook();
    // 16 blocks of few records: 3 + 16 steps of 39 ms.
    EXPECT_EQ(editor->explorer.facts[1].frames, 256);
    EXPECT_EQ(editor->explorer.facts[1].steps, 19);
    expectWords(1, kRight, "0.7 s", 0x888888);
    expectWords(1, kRight - 46, "256", 0x888888);
    click(rightRow(1));
    pointAt(kNowhere);
    draw();
    expectWords(1, kRight, "0.7 s", 0);
    expectWords(1, kRight - 46, "256", 0);
    EXPECT_EQ(editor->explorer.facts[0].frames, 0) << "the way back is no clip";
}

TEST_F(ExplorerPage, BrokenClip_SaysSo) {
    enter("c");
    pointAt(kNowhere);
    letLook();
    EXPECT_EQ(editor->explorer.facts[1].state, clip::SURVEY_BROKEN);
    expectWords(1, kRight, "broken", 0xFE00C3);
}

TEST_F(ExplorerPage, PipeInTheClipsPlace_DoesNotHoldThePageUp) {
    enter("a");
    std::filesystem::remove("videos/a/long.m19");
    ASSERT_EQ(mkfifo("videos/a/long.m19", 0600), 0);
    draw();
    EXPECT_EQ(editor->explorer.facts[1].state, clip::SURVEY_BROKEN);
}

// A frame looks into one clip, into 256 KB of it at most and what a block begins with.
TEST_F(ExplorerPage, LookingInto_TakesOneClipAFrame) {
    for (int clip = 0; clip < 20; ++clip) {
        placeClip("one-frame-8.m19", numbered("many/c", clip) + ".m19");
    }
    tap(KEY_Z);
    editFirst();
    enter("many");
    const auto known = [] {
        return std::count_if(editor->explorer.facts, editor->explorer.facts + 100,
                             [](const ClipFacts& f) { return f.state != clip::SURVEY_GOES_ON; });
    };
    EXPECT_EQ(known(), 0) << "entering a folder opens no clip";
    for (int frames = 1; frames <= 14; ++frames) {
        draw();
        EXPECT_EQ(known(), frames);
    }
    draw();
    EXPECT_EQ(known(), 14) << "what is not in view waits";
    playlist->scroll[1].pos = 6;
    letLook();
    EXPECT_EQ(known(), 20);
    playlist->scroll[1].pos = 0;
    enter(".. back");
    EXPECT_EQ(known(), 0) << "another folder";
}

TEST_F(ExplorerPage, LargeClip_TakesSeveralFrames) {
    // One frame, 8 lines, 20,000 records of 64 bytes: 1,280,000 bytes, five looks.
    std::string bytes("\x13\x4B\x80\x02\x08\0\0\x01\x01\0", 10);
    bytes += std::string("\x20\x4E\0\xE2\x04\0\x28\0\0\0\0\0\x20\x4E", 14) + std::string(16, '\0');
    bytes.append(512 + 160 + 32 + 20000 * 64, '\0');
    writeFile("videos/a/large.m19", bytes);
    std::filesystem::remove("videos/a/long.m19");
    enter("a");
    for (int frames = 1; frames <= 4; ++frames) {
        draw();
        EXPECT_EQ(editor->explorer.facts[1].state, clip::SURVEY_GOES_ON) << frames;
    }
    letLook();
    EXPECT_EQ(editor->explorer.facts[1].state, clip::SURVEY_PLAYS);
    EXPECT_EQ(editor->explorer.facts[1].steps, 13) << "3 and 20000 / 2000";
}

TEST_F(ExplorerPage, Title_TellsWhenThereIsMoreThanTheList) {
    for (int clip = 0; clip < 150; ++clip) {
        writeFile(numbered("videos/long/c", clip) + ".m19", "");
    }
    tap(KEY_Z);
    editFirst();
    draw();
    EXPECT_EQ(title(), "");
    enter("long");
    draw();
    EXPECT_EQ(title(), "first 99 of 150");
    std::filesystem::remove_all("videos");
    for (int clip = 0; clip < 150; ++clip) {
        writeFile(numbered("videos/c", clip) + ".m19", "");
    }
    tap(KEY_Z);
    editFirst();
    draw();
    EXPECT_EQ(title(), "first 100 of 150");
}

class DoubleClick : public ExplorerPage {
protected:
    DoubleClick() {
        placeClip("one-frame-8.m19", "x.m19");
        tap(KEY_Z);
        editFirst();
        clip = rightRow(rowOfEntry("x.m19"));
        tempsActuel = 100000;
    }
    static void pressAt(int time, Spot at) {
        tempsActuel = time - 40;  // the frame comes 40 ms later
        press(at);
        keys->mouseHeld = 0;
        keys->mouseClick = 0;
        frame();
    }

    Spot clip;
};

TEST_F(DoubleClick, OnAClip_AddsItBehindTheSelectedTrack) {
    click(leftRow(1));
    pressAt(10000, clip);
    EXPECT_EQ(paths(0), (Paths{"A", "B", "C"}));
    pressAt(10400, clip);
    EXPECT_EQ(paths(0), (Paths{"A", "B", "x.m19", "C"}));
    EXPECT_EQ(playlist->selRow, 2);
    EXPECT_EQ(editor->press, PRESS_NOTHING);
    pressAt(10500, clip);
    EXPECT_EQ(paths(0).size(), 4u) << "the third click is a first one";
}

TEST_F(DoubleClick, IntoAFullPlaylist_SaysSo) {
    playlist->familles[0].nbTracks = 49;
    pressAt(10000, clip);
    pressAt(10200, clip);
    EXPECT_EQ(playlist->familles[0].nbTracks, 49);
    EXPECT_EQ(editor->notice, "49 tracks is the most: remove one first");
}

TEST_F(DoubleClick, TooSlowOrAfterAStepOfTheClock_IsNone) {
    pressAt(10000, clip);
    pressAt(10401, clip);
    EXPECT_EQ(paths(0).size(), 3u);
    pressAt(5000, clip);
    EXPECT_EQ(paths(0).size(), 3u) << "the clock was put back";
    pressAt(5200, clip);
    EXPECT_EQ(paths(0).size(), 4u);
}

TEST_F(DoubleClick, OnFoldersAndOnTwoRows_AddsNothing) {
    placeClip("one-frame-8.m19", "y.m19");
    tap(KEY_Z);
    editFirst();
    pressAt(10000, rightRow(rowOfEntry("x.m19")));
    pressAt(10100, rightRow(rowOfEntry("y.m19")));
    EXPECT_EQ(paths(0).size(), 3u);
    pressAt(20000, rightRow(rowOfEntry("a")));
    pressAt(20100, rightRow(1));
    EXPECT_EQ(playlist->selItem, 0) << "the second click is not for what the first one opened";
    pressAt(20700, rightRow(1));
    EXPECT_EQ(playlist->selItem, 1);
    EXPECT_EQ(paths(0).size(), 3u);
}

TEST_F(DoubleClick, OnTracks_DoesNothing) {
    pressAt(10000, leftRow(1));
    pressAt(10100, leftRow(1));
    EXPECT_EQ(paths(0).size(), 3u);
    EXPECT_EQ(playlist->editPage, page::TRACKS);
}

// A press on a playlist and, on the page that a key opens, one on a clip of the same row.
TEST_F(DoubleClick, OverTwoPages_IsNone) {
    tap(KEY_Z);
    std::filesystem::remove_all("videos");
    placeClip("one-frame-8.m19", "x.m19");
    pressAt(10000, leftRow(0));
    tempsActuel = 10000;
    tap(KEY_X);
    ASSERT_EQ(playlist->editPage, page::TRACKS);
    pressAt(10200, rightRow(0));
    EXPECT_EQ(paths(0).size(), 3u);
}

}  // namespace
