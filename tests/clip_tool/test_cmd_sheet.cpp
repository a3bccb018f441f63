// sheet on the command line; the tool has no data folder beside it here.
#include <sys/stat.h>

#include "clip_tool/tool.h"

namespace {

class SheetCommand : public Commands {
protected:
    SheetCommand() {
        fs::create_directory("set");
        fs::copy_file(TEST_DATA "/clips/flat-200.m19", "set/flat.m19");
        fs::copy_file(TEST_DATA "/broken/height-12.m19", "set/low.m19");
    }
};

TEST_F(SheetCommand, Folder_MakesPictureAndPage) {
    const Outcome outcome = tool("sheet set -o sheet.png --html sheet.html");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out.rfind("sheet.png: 2 clips, ", 0), 0u) << outcome.out;
    EXPECT_NE(outcome.out.find("\nsheet.html: 2 clips, "), std::string::npos);
    EXPECT_EQ(filesHere(), (Names{"set", "sheet.html", "sheet.png"}));
    EXPECT_EQ(textOf("sheet.png").substr(1, 3), "PNG");
    EXPECT_NE(textOf("sheet.html").find("<h1>set</h1>"), std::string::npos);
}

TEST_F(SheetCommand, Files_NeedNoFolder) {
    const Outcome outcome = tool("sheet set/flat.m19 set/flat.m19 -o sheet.png");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out.rfind("sheet.png: 2 clips, ", 0), 0u) << outcome.out;
}

TEST_F(SheetCommand, Failures_AreOneLineAndLeaveNothing) {
    fs::create_directory("empty");
    for (const char* arguments :
         {"sheet empty -o a.png", "sheet no.m19 -o a.png", "sheet set -o no/a.png",
          "sheet set --html no/a.html", "sheet set -o a.jpg"}) {
        const Outcome outcome = tool(arguments);
        EXPECT_EQ(outcome.status, 1) << arguments;
        EXPECT_EQ(outcome.err.rfind("velmora-clip: ", 0), 0u) << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
    EXPECT_EQ(filesHere(), (Names{"empty", "set"}));
}

TEST_F(SheetCommand, PictureOfTooManyClips_IsRefusedAtOnce) {
    std::string clips;
    for (int i = 0; i < 601; ++i) {
        clips += " set/flat.m19";
    }
    const Outcome outcome = tool("sheet" + clips + " -o sheet.png");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err,
              "velmora-clip: a picture has room for 600 clips, not for 601; a page, --html, takes "
              "any number\n");
}

TEST_F(SheetCommand, WithoutOutput_IsWrongUse) {
    EXPECT_EQ(tool("sheet set").status, 2);
    EXPECT_EQ(tool("sheet").status, 2);
    EXPECT_EQ(tool("sheet --help").status, 0);
}

// Told before any work: the clip is not there. Nothing takes the place of the pipe.
TEST_F(SheetCommand, OutputThatIsNoFile_IsRefusedAtOnce) {
    for (const char* option : {"-o", "--html"}) {
        const std::string output = std::string("pipe") + (option[1] == 'o' ? ".png" : ".html");
        ASSERT_EQ(mkfifo(output.c_str(), 0600), 0);
        const Outcome outcome = tool(std::string("sheet no.m19 ") + option + " " + output);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err,
                  "velmora-clip: cannot write " + output + ": it is no ordinary file\n");
        EXPECT_TRUE(fs::is_fifo(output));
    }
}

}  // namespace
