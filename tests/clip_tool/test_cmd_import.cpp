// velmora-clip import, run for real: clips in videos/, the playlists file, and going on later.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <sstream>
#include <thread>

#include "clip_tool/inputs.h"
#include "clip_tool/tool.h"

namespace {

const std::string kBegin = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n";
const std::string kEnd = "</all>\n";
const std::string kXml = "userdata/playlists.xml";

std::string playlist(const std::string& name, const std::vector<std::string>& tracks) {
    std::ostringstream text;
    text << "\t<playlist>\n\t\t<name>" << name << "</name>\n";
    for (const std::string& track : tracks) {
        text << "\t\t<track>" << track << "</track>\n";
    }
    text << "\t</playlist>\n";
    return text.str();
}

std::vector<std::string> clips(const std::string& name, int count) {
    std::vector<std::string> names;
    for (int i = 1; i <= count; ++i) {
        std::ostringstream text;
        text << name << i << ".m19";
        names.push_back(text.str());
    }
    return names;
}

void write(const std::string& path, const std::string& text) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

class Import : public Commands {
protected:
    Import() {
        setenv("VELMORA_HOME", ".", 1);
        fs::create_directory("films");
        inputs::levels("films/a.mkv", {1});
        inputs::levels("films/b.mkv", {2, 3});
    }

    // Which clips an import makes anew: those that are other files than before.
    Names madeBy(const std::string& arguments) {
        std::map<std::string, ino_t> before;
        for (const std::string& name : filesIn("videos")) {
            before[name] = inodeOf("videos/" + name);
        }
        const Outcome outcome = tool(arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        Names made;
        for (const std::string& name : filesIn("videos")) {
            if (name.ends_with(".m19") && before[name] != inodeOf("videos/" + name)) {
                made.push_back(name);
            }
        }
        std::ostringstream summary;
        summary << "\n" << made.size() << " made, ";
        EXPECT_NE(outcome.out.find(summary.str()), std::string::npos) << outcome.out;
        return made;
    }

    static ino_t inodeOf(const std::string& path) {
        struct stat facts {};
        stat(path.c_str(), &facts);
        return facts.st_ino;
    }
};

TEST_F(Import, Folder_BecomesClipsAndAPlaylist) {
    fs::create_directories("films/sub");
    fs::create_directories("films/.trash");
    inputs::levels("films/sub/A.MKV", {4});
    inputs::levels("films/.trash/gone.mkv", {5});
    inputs::levels("films/.hidden.mkv", {5});
    write("films/notes.txt", "words\n");
    inputs::picture("films/cover.png", 64, 36, [](int, int) { return 255U; });
    for (const char* number : {"08", "09", "10"}) {
        inputs::picture(std::string("films/sub/f") + number + ".png", 64, 36,
                        [](int, int) { return 0xFFFFFFFFU; });
    }
    const Outcome outcome = tool("import films --playlist live --preset graphics -j 2");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    EXPECT_NE(outcome.out.find("playlist 'live': 4 added, 4 in it\n"
                               "4 made, 0 unchanged, 0 failed\n"
                               "still pictures left: 1; name them to take them\n"),
              std::string::npos)
        << outcome.out;
    EXPECT_EQ(filesIn("videos"), (Names{"a.m19", "a_2.m19", "b.m19", "f.m19", "imported.jsonl"}));
    EXPECT_EQ(inputs::levelsOf("videos/a_2.m19"), std::vector<int>{4});
    EXPECT_EQ(inputs::levelsOf("videos/f.m19"), (std::vector<int>{31, 31, 31}));
    EXPECT_EQ(textOf(kXml),
              kBegin + playlist("live", {"a.m19", "b.m19", "a_2.m19", "f.m19"}) + kEnd);
    EXPECT_EQ(filesIn("userdata"), Names{"playlists.xml"});
}

TEST_F(Import, SecondRun_DoesOnlyWhatIsMissingOrChanged) {
    EXPECT_EQ(tool("import films --playlist live").status, 0);
    const std::string xml = textOf(kXml);
    EXPECT_EQ(madeBy("import films --playlist live"), Names{});
    EXPECT_EQ(madeBy("import ./films/../films/a.mkv --playlist live"), Names{});
    inputs::levels("films/c.mkv", {6});
    EXPECT_EQ(madeBy("import films --playlist live"), Names{"c.m19"});
    inputs::levels("films/a.mkv", {7, 8, 9});
    EXPECT_EQ(madeBy("import films --playlist live"), Names{"a.m19"});
    EXPECT_EQ(inputs::levelsOf("videos/a.m19").size(), 4u);  // 3 at 25 are 4 at 25.6
    // The same film with another time, and a clip that was made again otherwise.
    fs::last_write_time("films/b.mkv", fs::last_write_time("films/b.mkv") + std::chrono::hours(1));
    EXPECT_EQ(madeBy("import films --playlist live"), Names{});
    EXPECT_EQ(tool("remake videos/b.m19 --preset graphics --fps 400").status, 0);
    EXPECT_EQ(madeBy("import films --playlist live"), Names{});
    fs::remove("videos/c.m19");
    EXPECT_EQ(madeBy("import films --playlist live"), Names{"c.m19"});
    fs::resize_file("videos/c.m19", 10);
    EXPECT_EQ(madeBy("import films --playlist live"), Names{"c.m19"});
    EXPECT_EQ(madeBy("import films --playlist live --quality 90"),
              (Names{"a.m19", "b.m19", "c.m19"}));
    EXPECT_EQ(madeBy("import films --playlist live --quality 90 -j 1"), Names{});
    EXPECT_EQ(textOf(kXml), kBegin + playlist("live", {"a.m19", "b.m19", "c.m19"}) + kEnd);
}

// The second input keeps the tool busy: the first clip is there when the signal comes.
TEST_F(Import, Interrupted_GoesOnWhereItWas) {
    inputs::noise("long.mkv", 250);
    std::thread run([] {
        tool("import films/a.mkv long.mkv films/b.mkv --playlist live -j 1",
             "echo $$ > ../pid; exec ");
    });
    for (int i = 0; i < 6000 && !fs::exists("videos/a.m19"); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    kill(static_cast<pid_t>(std::stol(textOf("../pid"))), SIGINT);
    run.join();
    EXPECT_EQ(filesHere(), (Names{"films", "long.mkv", "videos"}));
    EXPECT_EQ(filesIn("videos"), (Names{"a.m19", "imported.jsonl"}));
    EXPECT_EQ(madeBy("import films --playlist live"), Names{"b.m19"});
    EXPECT_EQ(textOf(kXml), kBegin + playlist("live", {"a.m19", "b.m19"}) + kEnd);
}

// What a loss of power leaves: a clip that the log only announces, and a line that breaks off.
TEST_F(Import, LogThatBreaksOff_CostsOneClipOnly) {
    EXPECT_EQ(tool("import films --playlist live -j 1").status, 0);
    std::string log = textOf("videos/imported.jsonl");
    log.resize(log.size() - 30);
    write("videos/imported.jsonl", log);
    EXPECT_EQ(madeBy("import films --playlist live"), Names{"b.m19"});
    EXPECT_EQ(madeBy("import films --playlist live"), Names{});
}

TEST_F(Import, Names_FitThePanelAndAreNotInUse) {
    write("videos/A.m19", "another clip");
    const std::string wide = "films/" + std::string(20, 'm');
    inputs::levels(wide + "1.mkv", {3});
    inputs::levels(wide + "2.mkv", {4});
    EXPECT_EQ(tool("import films --playlist live").status, 0);
    EXPECT_EQ(filesIn("videos"),
              (Names{"A.m19", "a_2.m19", "b.m19", "imported.jsonl", std::string(14, 'm') + "_2.m19",
                     std::string(16, 'm') + ".m19"}));
    EXPECT_EQ(textOf("videos/A.m19"), "another clip");
}

TEST_F(Import, OtherPlaylists_StayAsTheyAre) {
    const std::string first =
        playlist("first \xE9", {"x.m19", "sub/y.m19"}) + playlist("empty", {});
    write(kXml, kBegin + first + playlist("live", {"old.m19", "b.m19"}) +
                    playlist("last", {"z.m19"}) + kEnd);
    const Outcome outcome = tool("import films --playlist live");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.out.find("playlist 'live': 1 added, 3 in it\n"), std::string::npos)
        << outcome.out;
    EXPECT_EQ(textOf(kXml), kBegin + first + playlist("live", {"old.m19", "b.m19", "a.m19"}) +
                                playlist("last", {"z.m19"}) + kEnd);
}

TEST_F(Import, Name_IsLatin1InTheFile) {
    EXPECT_EQ(tool("import films/a.mkv --playlist \"$(printf '\\303\\251t\\303\\251 2')\"").status,
              0);
    EXPECT_EQ(textOf(kXml), kBegin + playlist("\xE9t\xE9 2", {"a.m19"}) + kEnd);
}

TEST_F(Import, FullPlaylist_GoesOnInAnother) {
    std::vector<std::string> tracks = clips("old", 49);
    write(kXml, kBegin + playlist("live", tracks) + kEnd);
    const Outcome outcome = tool("import films --playlist live");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.out.find("playlist 'live': 1 added, 50 in it\n"
                               "playlist 'live 2': 1 added, 1 in it\n"),
              std::string::npos)
        << outcome.out;
    tracks.push_back("a.m19");
    const std::string both =
        kBegin + playlist("live", tracks) + playlist("live 2", {"b.m19"}) + kEnd;
    EXPECT_EQ(textOf(kXml), both);
    EXPECT_EQ(tool("import films --playlist live").status, 0);
    EXPECT_EQ(textOf(kXml), both);
}

TEST_F(Import, FiftyPlaylists_LeaveNoRoomAndItIsSaid) {
    std::string all = kBegin + playlist("live", clips("old", 49));
    for (int i = 0; i < 49; ++i) {
        all += playlist("other", {});
    }
    write(kXml, all + kEnd);
    const Outcome outcome = tool("import films --playlist live");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("1 clips are in no playlist, from b.m19 on: there are 50 already\n"),
              std::string::npos)
        << outcome.err;
    EXPECT_NE(textOf(kXml).find("<track>a.m19</track>"), std::string::npos);
}

// The names that import gives are shorter; the log can be edited.
TEST_F(Import, NameThatTheProgramCannotReadBack_IsRefused) {
    EXPECT_EQ(tool("import films --playlist live").status, 0);
    const std::string fits = std::string(87, 'f') + ".m19";
    const std::string tooLong = std::string(88, 'l') + ".m19";
    std::string log = textOf("videos/imported.jsonl");
    log.replace(log.find("\"a.m19\"") + 1, 5, fits);
    log.replace(log.find("\"b.m19\"") + 1, 5, tooLong);
    write("videos/imported.jsonl", log);
    fs::rename("videos/a.m19", "videos/" + fits);
    fs::rename("videos/b.m19", "videos/" + tooLong);
    const Outcome outcome = tool("import films --playlist other");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "velmora-clip: '" + tooLong +
                               "' is in no playlist: the program cannot read such a name back, nor "
                               "any of more than 91 characters\n");
    EXPECT_NE(outcome.out.find("playlist 'other': 1 added, 1 in it\n"), std::string::npos)
        << outcome.out;
    EXPECT_EQ(textOf(kXml),
              kBegin + playlist("live", {"a.m19", "b.m19"}) + playlist("other", {fits}) + kEnd);
}

TEST_F(Import, PlaylistsFileThatCannotBeRead_IsLeftAlone) {
    fs::create_directories("userdata");
    ASSERT_EQ(mkfifo(kXml.c_str(), 0600), 0);
    const Outcome outcome = tool("import films --playlist live");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "velmora-clip: cannot read userdata/playlists.xml\n");
    EXPECT_TRUE(fs::is_fifo(kXml));
    EXPECT_EQ(filesIn("videos"), (Names{"a.m19", "b.m19", "imported.jsonl"}));
}

TEST_F(Import, FileThatTheProgramReadsInPart_IsKeptAsACopy) {
    const std::string broken = kBegin + playlist("one", {"x.m19"}) +
                               "\t<playlist>\n\t\t<name>lost" +
                               "</name>\n\t\t<track>y.m19</track>\n" + kEnd;
    write(kXml, broken);
    const Outcome outcome = tool("import films/a.mkv --playlist live");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.err.find("kept as userdata/playlists.xml.old"), std::string::npos)
        << outcome.err;
    EXPECT_EQ(textOf(kXml + ".old"), broken);
    EXPECT_EQ(textOf(kXml),
              kBegin + playlist("one", {"x.m19"}) + playlist("live", {"a.m19"}) + kEnd);
}

// The playlists file outgrows what can be written; the clips are there already.
TEST_F(Import, FullDisk_KeepsThePlaylistsFile) {
    EXPECT_EQ(tool("import films --playlist live").status, 0);
    const std::string older = kBegin + playlist("old", clips("a long enough name ", 50)) + kEnd;
    write(kXml, older);
    const Outcome outcome = tool("import films --playlist live", "trap '' XFSZ; ulimit -f 1; ");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("cannot write userdata/playlists.xml\n"), std::string::npos)
        << outcome.err;
    EXPECT_EQ(textOf(kXml), older);
    EXPECT_EQ(filesIn("userdata"), Names{"playlists.xml"});
}

TEST_F(Import, BadInputs_FailAlone) {
    write("films/bad.mkv", "no video");
    const Outcome outcome = tool("import films --playlist live");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("cannot read films/bad.mkv: "), std::string::npos) << outcome.err;
    EXPECT_NE(outcome.out.find("\n2 made, 0 unchanged, 1 failed\n"), std::string::npos);
    EXPECT_EQ(textOf(kXml), kBegin + playlist("live", {"a.m19", "b.m19"}) + kEnd);
}

TEST_F(Import, NothingGood_LeavesNothing) {
    std::ofstream("bad.mkv") << "no video";
    EXPECT_EQ(tool("import bad.mkv --playlist live").status, 1);
    EXPECT_EQ(tool("import missing.mkv --playlist live").status, 1);
    EXPECT_EQ(tool("import films --playlist live", "trap '' XFSZ; ulimit -f 8; ").status, 1);
    EXPECT_EQ(filesHere(), (Names{"bad.mkv", "films"}));
}

TEST_F(Import, TwoAtOnce_AreNotAllowed) {
    fs::create_directory("videos");
    const int folder = open("videos", O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(flock(folder, LOCK_EX), 0);
    const Outcome outcome = tool("import films --playlist live");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "velmora-clip: another import into videos is at work\n");
    close(folder);
    EXPECT_EQ(filesHere(), (Names{"films", "videos"}));
}

// No folder of Velmora's is here, and none in the home folder; "into" says which one was found.
TEST_F(Import, Folder_IsFoundOrAskedFor) {
    unsetenv("VELMORA_HOME");
    const std::string here = fs::current_path().string();
    const std::string home = "HOME='" + here + "/home' ";
    const std::string import = "import films/a.mkv --playlist live";
    const Outcome none = tool(import, home);
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err, "velmora-clip: there is no folder " + here +
                            "/home/Velmora: start Velmora once, or name its folder, --to FOLDER\n");
    EXPECT_EQ(filesHere(), Names{"films"});

    fs::create_directories("home/Velmora");
    EXPECT_EQ(tool(import, home).out.rfind("into " + here + "/home/Velmora\n", 0), 0u);
    EXPECT_EQ(filesIn("home/Velmora"), (Names{"userdata", "videos"}));
    EXPECT_EQ(filesHere(), (Names{"films", "home"}));

    fs::create_directories("videos");
    fs::create_directories("data");
    EXPECT_EQ(tool(import, home).out.rfind("into " + here + "\n", 0), 0u);
    EXPECT_TRUE(fs::exists("videos/a.m19"));

    fs::create_directory("other");
    const std::string other = "VELMORA_HOME=other " + home;
    EXPECT_EQ(tool(import, other).out.rfind("into " + here + "/other\n", 0), 0u);
    EXPECT_EQ(textOf("other/" + kXml), kBegin + playlist("live", {"a.m19"}) + kEnd);

    fs::create_directory("third");
    EXPECT_EQ(tool(import + " --to third", other).out.rfind("into " + here + "/third\n", 0), 0u);
    EXPECT_TRUE(fs::exists("third/videos/a.m19"));
    EXPECT_EQ(tool(import + " --to no", other).err, "velmora-clip: --to: no folder no\n");
}

TEST_F(Import, WrongUse_HasItsOwnStatus) {
    for (const char* arguments :
         {"import", "import films", "import --playlist live", "import films --playlist ''",
          "import films --playlist '  '", "import films --playlist 'a<b'",
          "import films --playlist 100%", "import films --playlist 123456789012345678901",
          "import films --playlist live -o x.m19"}) {
        EXPECT_EQ(tool(arguments).status, 2) << arguments;
    }
    EXPECT_EQ(filesHere(), Names{"films"});
}

// Waits up to a minute for a condition.
template <class Condition>
bool becomes(Condition condition) {
    for (int i = 0; i < 600 && !condition(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return condition();
}

// A film that is there, one that comes, one that changes; then Ctrl-C.
TEST_F(Import, Watch_MakesWhatComesAndChangesUntilItIsStopped) {
    fs::remove("films/b.mkv");
    const std::string line = "exec '" + kTool +
                             "' import films --playlist live --watch --preset graphics "
                             ">../watch.txt 2>&1 </dev/null & echo $! >../pid.txt";
    ASSERT_EQ(std::system(line.c_str()), 0);
    const auto done = [](int times) {
        const std::string text = textOf("../watch.txt");
        int found = 0;
        for (size_t at = text.find("1 made, "); at != std::string::npos;
             at = text.find("1 made, ", at + 1)) {
            ++found;
        }
        return found == times;
    };
    EXPECT_TRUE(becomes([&] { return done(1); })) << textOf("../watch.txt");
    inputs::levels("new.mkv", {4});
    // What grows is left alone.
    const std::string film = textOf("new.mkv");
    for (size_t bytes = 1; bytes <= 4; ++bytes) {
        write("films/c.mkv", film.substr(0, bytes * 100));
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
    }
    write("films/c.mkv", film);
    EXPECT_TRUE(becomes([&] { return done(2); })) << textOf("../watch.txt");
    inputs::levels("films/a.mkv", {9, 9, 9});
    EXPECT_TRUE(becomes([&] { return done(3); })) << textOf("../watch.txt");
    const pid_t tool = std::stoi(textOf("../pid.txt"));
    EXPECT_EQ(kill(tool, SIGTERM), 0);
    EXPECT_TRUE(becomes([&] { return kill(tool, 0) != 0; }));
    EXPECT_EQ(inputs::levelsOf("videos/a.m19").front(), 9);
    EXPECT_EQ(filesIn("videos"), (Names{"a.m19", "c.m19", "imported.jsonl"}));
    EXPECT_EQ(textOf("../watch.txt").find("cannot"), std::string::npos) << textOf("../watch.txt");
}

}  // namespace
