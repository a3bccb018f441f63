// velmora-clip encode, run for real, where it cannot succeed: one line that says why, its exit
// status, and nothing left behind.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "clip_tool/inputs.h"
#include "clip_tool/media.h"
#include "clip_tool/tool.h"

extern char** environ;

namespace {

using Levels = std::vector<int>;

void write(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string bigEndian(uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(value >> shift);
    }
    return bytes;
}

std::string littleEndian(uint32_t value) {
    const std::string bytes = bigEndian(value);
    return {bytes.rbegin(), bytes.rend()};
}

// Fails with one line that names the input and the reason; the files here stay as they were.
void expectRefused(const std::string& input, const std::string& reason) {
    const Names before = filesHere();
    for (const char* output : {"-o out.m19", "-d new/folder"}) {
        const Outcome outcome = tool("encode '" + input + "' " + output);
        EXPECT_EQ(outcome.status, 1) << output;
        EXPECT_EQ(outcome.out, "") << output;
        EXPECT_EQ(outcome.err.rfind("velmora-clip: cannot read ", 0), 0u) << outcome.err;
        EXPECT_NE(outcome.err.find(input + ": "), std::string::npos) << outcome.err;
        EXPECT_NE(outcome.err.find(reason), std::string::npos) << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
    EXPECT_EQ(filesHere(), before);
}

// A second of silence.
TEST_F(Commands, Encode_AudioOnlyIsRefused) {
    const uint32_t bytes = 16000;
    write("in.wav", "RIFF" + littleEndian(36 + bytes) + "WAVEfmt " + littleEndian(16) +
                        std::string("\1\0\1\0", 4) + littleEndian(8000) + littleEndian(16000) +
                        std::string("\2\0\x10\0", 4) + "data" + littleEndian(bytes) +
                        std::string(bytes, '\0'));
    expectRefused("in.wav", "there is no video in it");
}

// Eleven frames of MPEG audio behind a tag that holds a picture.
TEST_F(Commands, Encode_CoverPictureOfMusicIsNoVideo) {
    inputs::picture("cover.png", 64, 36, [](int, int) { return 0xFF0000FFU; });
    const std::string image = std::string("\0image/png\0\3\0", 13) + textOf("cover.png");
    const std::string entry =
        "APIC" + bigEndian(static_cast<uint32_t>(image.size())) + std::string(2, '\0') + image;
    std::string size;  // seven bits a byte
    for (int shift = 21; shift >= 0; shift -= 7) {
        size += static_cast<char>((entry.size() >> shift) & 0x7F);
    }
    std::string sound;
    for (int i = 0; i < 11; ++i) {
        sound += std::string("\xFF\xFB\x90\xC0", 4) + std::string(413, '\0');
    }
    write("in.mp3", "ID3" + std::string("\3\0\0", 3) + size + entry + sound);
    expectRefused("in.mp3", "there is no video in it");
}

TEST_F(Commands, Encode_VideoWithoutFramesIsRefused) {
    inputs::levels("in.avi", {});
    expectRefused("in.avi",
                  "no picture could be decoded; it is damaged or empty, so export it anew");
}

TEST_F(Commands, Encode_OtherFilesAreRefused) {
    write("in.gif", "GIF89a but no more");
    write("words.txt", "hello\n");
    write("random.mp4", std::string(5000, '\x5A'));
    write("empty.mkv", "");
    const std::string damaged =
        "it is damaged, cut short, or neither film nor picture; if a player shows it, export it "
        "anew from there (";
    for (const char* input : {"words.txt", "random.mp4", "empty.mkv"}) {
        expectRefused(input, damaged + "Invalid data found when processing input)");
    }
    expectRefused("in.gif", "its pictures are damaged, or larger than ");
    expectRefused("missing.mp4", "No such file or directory");
    expectRefused("no%03d.png", "No such file or directory");
    expectRefused(".", "it is a folder");
}

TEST_F(Commands, Encode_TruncatedVideoIsRefusedUnlessAskedFor) {
    inputs::levels("in.mkv", std::vector<int>(40, 20));
    fs::resize_file("in.mkv", fs::file_size("in.mkv") / 2);
    expectRefused("in.mkv", "it is to last 1.6 seconds and ends after ");
    const Outcome outcome = tool("encode in.mkv -o out.m19 --partial --preset graphics");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.err.find("warning: in.mkv breaks off: "), std::string::npos) << outcome.err;
    EXPECT_EQ(filesHere(), (Names{"in.mkv", "out.m19"}));
}

TEST_F(Commands, Encode_PartBeforeTheBreakIsTaken) {
    inputs::levels("in.mkv", std::vector<int>(40, 20));
    fs::resize_file("in.mkv", fs::file_size("in.mkv") / 2);
    const Outcome outcome = tool("encode in.mkv -o out.m19 --duration 0.2");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
}

TEST_F(Commands, Encode_HugePicturesAreRefused) {
    media::Recipe wide;
    wide.path = "wide.mkv";
    wide.width = 17000;
    wide.height = 16;
    wide.fill = [](int, AVFrame& picture) { media::fillBytes(picture, 1, 2, 3, 0); };
    media::write(wide);
    expectRefused("wide.mkv",
                  "its pictures of 17000 x 16 pixels are larger than 16384 pixels on a side and "
                  "67108864 in all");
    // A bitmap of 100,000 x 100,000 that ends behind its header.
    write("huge.bmp", "BM" + littleEndian(54) + littleEndian(0) + littleEndian(54) +
                          littleEndian(40) + littleEndian(100000) + littleEndian(100000) +
                          std::string("\1\0\x18\0", 4) + std::string(24, '\0'));
    expectRefused("huge.bmp", "larger than 16384 pixels on a side and 67108864 in all");
}

// Reading the beginning of this file is an error for everyone; the other one only for some.
TEST_F(Commands, Encode_UnreadableFileIsRefused) {
    expectRefused("/proc/self/mem",
                  "the disk or card that it lies on does not give it; copy it elsewhere "
                  "(Input/output error)");
    if (geteuid() != 0) {
        inputs::levels("in.mkv", {1});
        fs::permissions("in.mkv", fs::perms::none);
        expectRefused("in.mkv", "Permission denied");
    }
}

TEST_F(Commands, Encode_StartBehindTheEndIsRefused) {
    inputs::levels("in.mkv", {1, 2, 3});
    for (const char* options : {"", "--loop crossfade:3", "--loop best", "--long fit"}) {
        const Outcome outcome = tool(std::string("encode in.mkv -o out.m19 --start 9 ") + options);
        EXPECT_EQ(outcome.status, 1) << options;
        EXPECT_EQ(outcome.err, "velmora-clip: cannot read in.mkv: it ends before the start asked\n")
            << options;
    }
    EXPECT_EQ(filesHere(), (Names{"in.mkv"}));
}

// Nobody, not even root, makes files in /proc.
TEST_F(Commands, Encode_FolderThatTakesNoFilesIsAnError) {
    inputs::levels("in.mkv", {1});
    for (const char* output : {"-o /proc/self/out.m19", "-d /proc/self", "-d /proc/self/new"}) {
        const Outcome outcome = tool(std::string("encode in.mkv ") + output);
        EXPECT_EQ(outcome.status, 1) << output;
        EXPECT_EQ(outcome.err.rfind("velmora-clip: cannot write /proc/self/", 0), 0u)
            << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
    if (geteuid() != 0) {
        fs::create_directory("locked");
        fs::permissions("locked", fs::perms::owner_read | fs::perms::owner_exec);
        const Outcome outcome = tool("encode in.mkv -d locked/new");
        EXPECT_EQ(outcome.status, 1);
        EXPECT_NE(outcome.err.find("Permission denied"), std::string::npos) << outcome.err;
        fs::permissions("locked", fs::perms::owner_all);
    }
}

TEST_F(Commands, Encode_OutputThatCannotBeIsAnError) {
    inputs::levels("in.mkv", {1});
    write("file", "");
    EXPECT_EQ(tool("encode in.mkv -o no/such/folder/a.m19").status, 1);
    EXPECT_EQ(tool("encode in.mkv -o in.mkv").status, 1);
    EXPECT_EQ(tool("encode in.mkv -o .").status, 1);
    EXPECT_EQ(tool("encode in.mkv -d file").status, 1);
    EXPECT_EQ(tool("encode in.mkv -d file/new").status, 1);
    EXPECT_EQ(filesHere(), (Names{"file", "in.mkv"}));
}

// Files of more than some kilobytes cannot be written: the older file stays as it was, folders that
// were made for the clip go, and of a split input no part stays.
TEST_F(Commands, Encode_FullDiskLeavesNothing) {
    const std::string full = "trap '' XFSZ; ulimit -f 8; ";
    inputs::noise("in.mkv", 1);
    write("out.m19", "older");
    const Outcome outcome = tool("encode in.mkv -o out.m19 --preset graphics", full);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "velmora-clip: cannot write out.m19: File too large\n");
    EXPECT_EQ(textOf("out.m19"), "older");
    EXPECT_EQ(tool("encode in.mkv -d new/folder --preset graphics", full).status, 1);
    EXPECT_EQ(filesHere(), (Names{"in.mkv", "out.m19"}));
}

// The first part is a black picture 256 times over: 16 blocks of 542 bytes of header, 435 of runs,
// 7200 of map and 23,040 of codes, 499,482 bytes in all. The second is noise, four times 460,800.
TEST_F(Commands, Encode_SplitInputIsWrittenWholeOrNotAtAll) {
    media::Recipe recipe;
    recipe.path = "in.mkv";
    recipe.fps = {1, 1};
    recipe.frames = 5;
    recipe.time = [](int frame) -> int64_t { return frame == 0 ? 0 : 255 + frame; };
    recipe.fill = [](int frame, AVFrame& picture) {
        if (frame == 0) {
            media::fillBytes(picture, 0, 0, 0, 0);
        } else {
            media::fillNoise(picture, static_cast<uint32_t>(frame));
        }
    };
    media::write(recipe);
    const Outcome outcome = tool("encode in.mkv -o out.m19 --fps 1 --long split --preset graphics",
                                 "trap '' XFSZ; ulimit -f 1200; ");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "velmora-clip: cannot write out.m19: File too large\n");
    EXPECT_EQ(filesHere(), (Names{"in.mkv"}));
}

pid_t start(const std::vector<std::string>& arguments) {
    std::vector<char*> pointers;
    for (const std::string& argument : arguments) {
        pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);
    pid_t child = 0;
    EXPECT_EQ(posix_spawn(&child, kTool.c_str(), nullptr, nullptr, pointers.data(), environ), 0);
    return child;
}

// Whether a process has a file open.
bool holdsOpen(pid_t process, const fs::path& file) {
    std::error_code error;
    const fs::path open = "/proc/" + std::to_string(process) + "/fd";
    for (fs::directory_iterator at(open, error), end; !error && at != end; at.increment(error)) {
        std::error_code gone;
        if (fs::equivalent(at->path(), file, gone)) {
            return true;
        }
    }
    return false;
}

// Fifty seconds at a thousand frames each are 196 clips, minutes of work. Once the tool has opened
// the film, its handlers stand.
void expectStopped(int signal, std::vector<std::string> arguments) {
    inputs::levels("in.mkv", Levels(50, 7), 1);
    arguments.insert(arguments.begin(), {kTool, "encode", "--fps", "1000", "--long", "split"});
    const pid_t child = start(arguments);
    for (int i = 0; i < 1000 && !holdsOpen(child, "in.mkv"); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ASSERT_TRUE(holdsOpen(child, "in.mkv"));
    kill(child, signal);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 130);
    EXPECT_EQ(filesHere(), (Names{"in.mkv"}));
}

TEST_F(Commands, Encode_InterruptLeavesNothing) {
    expectStopped(SIGINT, {"in.mkv", "-d", "new/folder"});
}

TEST_F(Commands, Encode_TerminationLeavesNothing) {
    expectStopped(SIGTERM, {"in.mkv", "-o", "out.m19"});
}

TEST_F(Commands, Encode_InterruptReachesEveryWorker) {
    expectStopped(SIGINT, {"in.mkv", "in.mkv", "-d", "new", "-j", "2"});
}

// A link stays, and what it leads to is replaced, or made.
TEST_F(Commands, Encode_LinkIsWrittenThrough) {
    inputs::levels("in.mkv", {1});
    fs::create_directory("shelf");
    fs::create_symlink("shelf/new.m19", "link.m19");
    fs::create_symlink("link.m19", "chain.m19");
    for (const char* output : {"link.m19", "chain.m19"}) {
        const Outcome outcome = tool(std::string("encode in.mkv -o ") + output);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(fs::read_symlink("link.m19"), "shelf/new.m19");
        EXPECT_EQ(fs::read_symlink("chain.m19"), "link.m19");
        EXPECT_EQ(inputs::levelsOf("shelf/new.m19"), Levels{1});
        fs::remove("shelf/new.m19");
    }
    EXPECT_EQ(filesHere(), (Names{"chain.m19", "in.mkv", "link.m19", "shelf"}));
}

// Told before any work: the input is not there. Nothing takes the place of the device.
TEST_F(Commands, Encode_OutputThatIsNoFileIsRefusedAtOnce) {
    ASSERT_EQ(mkfifo("pipe.m19", 0600), 0);
    fs::create_symlink("pipe.m19", "link.m19");
    fs::create_symlink("round.m19", "round.m19");
    fs::create_directory("folder.m19");
    const std::pair<const char*, const char*> refused[] = {
        {"pipe.m19", ": it is no ordinary file\n"},
        {"link.m19", ": it is no ordinary file\n"},
        {"/dev/null", ": it is no ordinary file\n"},
        {"folder.m19", ": it is a folder\n"},
        {"round.m19", ": Too many levels of symbolic links\n"},
    };
    const Names before = filesHere();
    for (const auto& [output, reason] : refused) {
        const Outcome outcome = tool(std::string("encode no.mkv -o ") + output);
        EXPECT_EQ(outcome.status, 1) << output;
        EXPECT_EQ(outcome.err, std::string("velmora-clip: cannot write ") + output + reason);
    }
    EXPECT_EQ(tool("encode no.mkv -o -").err,
              "velmora-clip: cannot write to -: name a file; it gets its name when it is whole\n");
    EXPECT_EQ(filesHere(), before);
    EXPECT_TRUE(fs::is_fifo("pipe.m19"));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(Commands, Encode_InputFromAPipeIsRefused) {
    ASSERT_EQ(mkfifo("pipe.avi", 0600), 0);
    for (const char* input : {"pipe.avi", "-", "/dev/stdin"}) {
        expectRefused(input, "films are read more than once, so save it to a file first");
    }
}

}  // namespace
