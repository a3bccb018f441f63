// export on the command line: endings, names, and no file that is half there.
#include <sys/stat.h>

#include "clip_tool/tool.h"

namespace {

const std::string kClip = std::string("'") + TEST_DATA + "/clips/rgba-all-360.m19'";

class ExportCommand : public Commands {};

TEST_F(ExportCommand, Pictures_AreNumberedByFrame) {
    const Outcome outcome = tool("export " + kClip + " -o f-%02d.png --frames 3,0-1");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "f-%02d.png: 3 pictures of 640 x 360\n");
    EXPECT_EQ(filesHere(), (Names{"f-00.png", "f-01.png", "f-03.png"}));
}

TEST_F(ExportCommand, OnePicture_NeedsNoNumber) {
    EXPECT_EQ(tool("export " + kClip + " -o 100%.png --frames 2").status, 0);
    EXPECT_EQ(filesHere(), Names{"100%.png"});
}

TEST_F(ExportCommand, SeveralPicturesUnderOneName_AreRefused) {
    const Outcome outcome = tool("export " + kClip + " -o f.png --frames 0,1");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("frame-%03d.png"), std::string::npos);
    EXPECT_EQ(filesHere(), Names{});
}

TEST_F(ExportCommand, OneNameAlone_IsTheFirstPicture) {
    const Outcome outcome = tool("export " + kClip + " -o f.png");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "f.png: 1 picture of 640 x 360\n");
    EXPECT_EQ(tool("export " + kClip + " -o g.png --frames 0").status, 0);
    EXPECT_TRUE(textOf("f.png") == textOf("g.png"));
}

TEST_F(ExportCommand, Films_TellTheirFrames) {
    for (const char* kind : {"apng", "gif", "mkv", "mp4"}) {
        const std::string ending = kind;
        const Outcome outcome =
            tool("export " + kClip + " -o film." + ending + " --frames 0-2 --repeat 2 --fps 10");
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(outcome.out.rfind("film." + ending + ": 6 frames of 640 x 360, ", 0), 0u)
            << outcome.out;
    }
    EXPECT_EQ(filesHere(), (Names{"film.apng", "film.gif", "film.mkv", "film.mp4"}));
}

TEST_F(ExportCommand, ExportedFilm_EncodesToTheSamePictures) {
    const std::string opaque = std::string("'") + TEST_DATA + "/clips/rgb-all-360.m19'";
    EXPECT_EQ(tool("export " + opaque + " -o a.mkv").status, 0);
    const Outcome encoded = tool("encode a.mkv -o b.m19 --quality 100");
    EXPECT_EQ(encoded.status, 0) << encoded.err;
    EXPECT_EQ(tool("export b.m19 -o b.mkv").status, 0);
    EXPECT_TRUE(textOf("a.mkv") == textOf("b.mkv"));
}

TEST_F(ExportCommand, WrongUse_HasItsOwnStatus) {
    for (const std::string& arguments : std::vector<std::string>{
             "export", "export " + kClip, "export " + kClip + " -o a.gif --frames 3-",
             "export " + kClip + " -o a.gif --repeat 0", "export " + kClip + " -o a.gif --fps 0"}) {
        EXPECT_EQ(tool(arguments).status, 2) << arguments;
    }
    EXPECT_EQ(tool("export --help").status, 0);
    EXPECT_EQ(filesHere(), Names{});
}

TEST_F(ExportCommand, Failures_LeaveNothing) {
    std::ofstream("text.m19") << "hello";
    for (const std::string& arguments : std::vector<std::string>{
             "export text.m19 -o a.gif", "export no.m19 -o a.gif", "export " + kClip + " -o a.webm",
             "export " + kClip + " -o no/a.gif", "export " + kClip + " -o a.gif --frames 9999",
             "export " + kClip + " -o a.png --frames 1 --repeat 2"}) {
        const Outcome outcome = tool(arguments);
        EXPECT_EQ(outcome.status, 1) << arguments;
        EXPECT_EQ(outcome.err.rfind("velmora-clip: ", 0), 0u) << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
    EXPECT_EQ(filesHere(), Names{"text.m19"});
}

TEST_F(ExportCommand, FullDisk_KeepsTheOlderFile) {
    std::ofstream("a.mkv") << "older";
    const Outcome outcome = tool("export " + kClip + " -o a.mkv", "trap '' XFSZ; ulimit -f 8; ");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(textOf("a.mkv"), "older");
    EXPECT_EQ(filesHere(), Names{"a.mkv"});
}

// The second of work that a thousand repeats take is cut short.
TEST_F(ExportCommand, Interrupt_LeavesNothing) {
    const std::string line = "timeout -s INT 0.3 '" + kTool + "' export " + kClip +
                             " -o a.mp4 --repeat 1000 >../out.txt 2>../err.txt";
    const int status = std::system((line + "; test $? -eq 124").c_str());
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(textOf("../err.txt"), "");
    EXPECT_EQ(filesHere(), Names{});
}

// Told before any work: the clip is not there. Nothing takes the place of the pipe.
TEST_F(ExportCommand, OutputThatIsNoFile_IsRefusedAtOnce) {
    for (const char* output : {"pipe.png", "pipe.mkv"}) {
        ASSERT_EQ(mkfifo(output, 0600), 0);
        const Outcome outcome = tool(std::string("export no.m19 -o ") + output);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err, std::string("velmora-clip: cannot write ") + output +
                                   ": it is no ordinary file\n");
        EXPECT_TRUE(fs::is_fifo(output));
    }
}

}  // namespace
