// Names that the playlists file would not give back at the next start are refused with a line.
#include "state/editor_hands.h"

namespace {

using Paths = std::vector<std::string>;

class LostNames : public EditorTest {
protected:
    LostNames() {
        addFamille("set", {"A"});
        frame();
    }
    static void addEntry(const std::string& name) {
        click(rightRow(rowOfEntry(name)));
        tap(KEY_RETURN);
    }
    // As the next start has them.
    static Paths pathsAfterARestart() {
        playlist->saveXML();
        playlist->lireXML();
        return paths(0);
    }
    static std::string clip(size_t length) { return std::string(length - 4, 'c') + ".m19"; }
};

TEST_F(LostNames, PathOf91_IsAddedAndComesBack) {
    writeFile("videos/" + clip(91), "");
    editFirst();
    addEntry(clip(91));
    EXPECT_EQ(editor->notice, "");
    EXPECT_EQ(pathsAfterARestart(), (Paths{"A", clip(91)}));
}

TEST_F(LostNames, PathOf92_IsRefusedWithALine) {
    writeFile("videos/" + clip(92), "");
    editFirst();
    addEntry(clip(92));
    EXPECT_EQ(paths(0), Paths{"A"});
    EXPECT_EQ(editor->notice, "91 signs is the most with its folders: use shorter names");
    drag(rightRow(rowOfEntry(clip(92))), leftRow(0));
    EXPECT_EQ(paths(0), Paths{"A"});
    EXPECT_NE(editor->notice, "");
}

// "live/" takes five of the 91.
TEST_F(LostNames, Folders_Count) {
    writeFile("videos/live/" + clip(86), "");
    writeFile("videos/live/" + clip(87), "");
    editFirst();
    click(rightRow(rowOfEntry("live")));
    addEntry(clip(87));
    EXPECT_EQ(editor->notice, "91 signs is the most with its folders: use shorter names");
    addEntry(clip(86));
    EXPECT_EQ(editor->notice, "");
    EXPECT_EQ(pathsAfterARestart(), (Paths{"A", "live/" + clip(86)}));
}

TEST_F(LostNames, PathWithTheClosingTag_IsRefusedWithALine) {
    writeFile("videos/x</track>.m19", "");
    writeFile("videos/x</name>.m19", "");
    editFirst();
    click(rightRow(rowOfEntry("x<")));
    addEntry("track>.m19");
    EXPECT_EQ(editor->notice, "a playlist cannot keep this name: use another one");
    addEntry("name>.m19");
    EXPECT_EQ(editor->notice, "");
    EXPECT_EQ(pathsAfterARestart(), (Paths{"A", "x</name>.m19"}));
}

TEST_F(LostNames, NewPlaylist_IsRefusedWithALineAndThePageStays) {
    click(kCreate);
    for (const std::string& name : {std::string(93, 'n'), std::string("</all>"),
                                    std::string("</playlist>"), std::string("a</name>b")}) {
        playlist->newName = name;
        click(kOk);
        EXPECT_EQ(playlist->nbFamilles, 1) << name;
        EXPECT_EQ(playlist->editPage, page::NEW_PLAYLIST) << name;
        EXPECT_EQ(editor->notice, name.size() > 92
                                      ? "92 signs is the most: use a shorter name"
                                      : "a playlist cannot keep this name: use another one");
    }
    playlist->newName = std::string(92, 'n');
    click(kOk);
    EXPECT_EQ(editor->notice, "");
    playlist->lireXML();
    EXPECT_EQ(familleNames(), (std::vector<std::string>{"set", std::string(92, 'n')}));
}

}  // namespace
