// The real velmora-render.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/folder.h"
#include "tools/clip/media/media_file.h"
#include "tools/clip/media/source.h"

namespace {

namespace fs = std::filesystem;

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

std::string textOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

Outcome render(const std::string& arguments) {
    const std::string line =
        std::string("'") + VELMORA_RENDER + "' " + arguments + " >out.txt 2>err.txt </dev/null";
    const int status = std::system(line.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, textOf("out.txt"), textOf("err.txt")};
}

void write(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

// Ten lines, by hand.
const std::string kVideo =
    "velmora score 1\n"
    "playlist FIVE\n"
    "seed 7\n"
    "0 2 down            # blend, the bottom layer\n"
    "+5 right right up\n"
    "20-180/16 right\n"
    "40 i:6\n"
    "+1 backspace right  # snow\n"
    "60-120/20 s 1:1 a:9\n"
    "200 end\n";

// Velmora's folder is "set".
class Render : public testing::Test {
protected:
    void SetUp() override {
        fs::create_directories("set/videos");
        fs::create_directories("set/userdata");
        fs::create_directory_symlink(PRODUCT_DATA, "set/data");
        std::string list = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n";
        list +=
            "\t<playlist>\n\t\t<name>ONE</name>\n\t\t<track>dense-360.m19</track>\n\t</playlist>\n";
        list += "\t<playlist>\n\t\t<name>EMPTY</name>\n\t</playlist>\n";
        list += "\t<playlist>\n\t\t<name>FIVE</name>\n";
        for (const char* clip :
             {"long-256", "rgb-all-360", "rgba-all-360", "dense-360", "runs-360"}) {
            const std::string name = std::string(clip) + ".m19";
            fs::copy_file(TEST_DATA "/clips/" + name, "set/videos/" + name);
            list += "\t\t<track>" + name + "</track>\n";
        }
        write("set/userdata/playlists.xml", list + "\t</playlist>\n</all>\n");
        write("video.score", kVideo);
    }
    TemporaryFolder folder_;
};

TEST_F(Render, SameScore_GivesTheSamePictures) {
    const Outcome first = render("video.score --sums --folder set");
    EXPECT_EQ(first.status, 0) << first.err;
    EXPECT_EQ(std::count(first.out.begin(), first.out.end(), '\n'), 200);
    EXPECT_EQ(render("video.score --sums --folder set").out, first.out);
    const Outcome same = render("video.score --diff video.score --folder set");
    EXPECT_EQ(same.status, 0);
    EXPECT_EQ(same.out, "the same pictures\n");
}

// Each picture is the one that it has always been. Where one is meant to change,
// "velmora-render tests/data/scores/NAME.score --sums OPTION" on this set gives the new ones.
void expectKnownPictures(const std::string& name, const std::string& option) {
    const std::string score = std::string(TEST_DATA "/scores/").append(name);
    const Outcome seen = render(score + ".score --sums --folder set " + option);
    ASSERT_EQ(seen.status, 0) << seen.err;
    const std::string wanted = textOf(score + ".sums");
    const auto [different, known] =
        std::mismatch(seen.out.begin(), seen.out.end(), wanted.begin(), wanted.end());
    EXPECT_TRUE(seen.out == wanted)
        << "the first frame that differs is " << std::count(seen.out.begin(), different, '\n');
}

TEST_F(Render, Tour_ShowsWhatItAlwaysShowed) {
    expectKnownPictures("tour", "");
}

TEST_F(Render, Screens_ShowWhatTheyAlwaysShowed) {
    expectKnownPictures("screens", "--interface");
}

TEST_F(Render, Seed_IsTheSnows) {
    write("snow.score", "velmora score 1\nplaylist ONE\nseed 1\n0 +o\n5 backspace\n50 end\n");
    fs::copy_file("snow.score", "same.score");
    write("other.score", "velmora score 1\nplaylist ONE\nseed 2\n0 +o\n5 backspace\n50 end\n");
    write("set/userdata/prefs.xml",
          "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n\t<mode>0</mode>\n"
          "\t<topbar>0</topbar>\n\t<fps>0</fps>\n\t<res_w>1280</res_w>\n\t<res_h>720</res_h>\n"
          "\t<filter>9</filter>\n\t<filter>9</filter>\n\t<filter>9</filter>\n\t<filter>9</filter>\n"
          "\t<filter>9</filter>\n\t<filter>9</filter>\n\t<filter>9</filter>\n\t<filter>9</filter>\n"
          "\t<filter>9</filter>\n</all>\n");
    EXPECT_EQ(render("snow.score --diff same.score --folder set").status, 0);
    const Outcome other = render("snow.score --diff other.score --folder set");
    EXPECT_EQ(other.status, 1);
    EXPECT_EQ(other.out, "frame 6 differs\n");
}

TEST_F(Render, OtherClips_AreNamed) {
    const std::string bytes = std::to_string(fs::file_size("set/videos/runs-360.m19"));
    write("named.score", "velmora score 1\nplaylist ONE\nclip " + bytes +
                             " runs-360.m19\nclip 5 dense-360.m19\nclip 7 gone.m19\n"
                             "clip missing long-256.m19\nclip missing nowhere.m19\n3 end\n");
    const Outcome outcome = render("named.score --sums --folder set");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 3);
    EXPECT_EQ(outcome.err,
              "velmora-render: 'dense-360.m19' is another clip than the one that was played: " +
                  std::to_string(fs::file_size("set/videos/dense-360.m19")) +
                  " bytes, not 5\n"
                  "velmora-render: 'gone.m19' is missing here\n"
                  "velmora-render: 'long-256.m19' was missing when this was played, and is there "
                  "now\n");
}

TEST_F(Render, Diff_NamesTheFirstFrame) {
    write("longer.score", kVideo.substr(0, kVideo.find("200 end")) + "210 end\n");
    EXPECT_EQ(render("video.score --diff longer.score --folder set").out, "frame 200 differs\n");
    write("later.score", kVideo + "150 left\n");
    EXPECT_EQ(render("later.score --diff video.score --folder set").out, "frame 151 differs\n");
}

// So many pictures into a film.
std::vector<uint8_t> pictureIn(const std::string& path, int frame) {
    maker::SourceOptions options;
    options.path = path;
    maker::VideoSource source(options);
    for (int i = 0; i <= frame; ++i) {
        EXPECT_TRUE(source.step());
    }
    return source.picture();
}

int framesIn(const std::string& path) {
    maker::SourceOptions options;
    options.path = path;
    maker::VideoSource source(options);
    int frames = 0;
    while (source.step()) {
        ++frames;
    }
    return frames;
}

TEST_F(Render, Film_HoldsEveryFrameExactly) {
    const Outcome film = render("video.score -o film.mkv --size 640x360 --folder set --from 90");
    ASSERT_EQ(film.status, 0) << film.err;
    EXPECT_EQ(film.out, "film.mkv: 110 frames, 4.3 s\n");
    EXPECT_EQ(framesIn("film.mkv"), 110);
    ASSERT_EQ(render("video.score -o still.png --still 100 --folder set").status, 0);
    EXPECT_TRUE(pictureIn("film.mkv", 10) == pictureIn("still.png", 0));
    EXPECT_FALSE(pictureIn("film.mkv", 10) == pictureIn("film.mkv", 11));
}

// Which is as large as the input of a clip is scaled down to again.
TEST_F(Render, LargeFilm_IsDoubled) {
    ASSERT_EQ(
        render("video.score -o small.mkv --size 640x360 --folder set --from 100 --to 103").status,
        0);
    ASSERT_EQ(render("video.score -o large.mkv --folder set --from 100 --to 103").status, 0);
    EXPECT_EQ(framesIn("large.mkv"), 3);
    maker::SourceOptions options;
    options.path = "large.mkv";
    options.nearest = true;
    maker::VideoSource large(options);
    ASSERT_TRUE(large.step());
    EXPECT_TRUE(large.picture() == pictureIn("small.mkv", 0));
}

TEST_F(Render, Mp4_HasTheFrames) {
    const Outcome film = render("video.score -o film.mp4 --size 640x360 --folder set --to 50");
    ASSERT_EQ(film.status, 0) << film.err;
    EXPECT_EQ(framesIn("film.mp4"), 50);
}

// Left samples of a sound of 16 bits.
std::vector<int16_t> soundIn(const std::string& path) {
    const maker::FormatPtr format = maker::openMedia(path, 0);
    const AVCodec* codec = nullptr;
    const int index = av_find_best_stream(format.get(), AVMEDIA_TYPE_AUDIO, -1, -1, &codec, 0);
    if (index < 0) {
        return {};
    }
    const maker::CodecPtr decoder(avcodec_alloc_context3(codec));
    avcodec_parameters_to_context(decoder.get(), format->streams[index]->codecpar);
    avcodec_open2(decoder.get(), codec, nullptr);
    const maker::PacketPtr packet(av_packet_alloc());
    const maker::FramePtr frame(av_frame_alloc());
    std::vector<int16_t> samples;
    for (bool more = true; more; av_packet_unref(packet.get())) {
        more = av_read_frame(format.get(), packet.get()) >= 0;
        if (more && packet->stream_index != index) {
            continue;
        }
        avcodec_send_packet(decoder.get(), more ? packet.get() : nullptr);
        while (avcodec_receive_frame(decoder.get(), frame.get()) >= 0) {
            const auto* both = reinterpret_cast<const int16_t*>(frame->data[0]);
            for (int i = 0; i < frame->nb_samples; ++i) {
                samples.push_back(both[2 * i]);
            }
        }
    }
    return samples;
}

// Noise of so many samples on two channels, 48,000 a second. Returns the left ones.
std::vector<int16_t> writeNoise(const std::string& path, uint32_t count) {
    std::string bytes = "RIFF....WAVEfmt ";
    const auto number = [&bytes](uint32_t value, int size) {
        for (int i = 0; i < size; ++i) {
            bytes.push_back(static_cast<char>(value >> (8 * i) & 0xFF));
        }
    };
    number(16, 4);
    number(1, 2);
    number(2, 2);
    number(48000, 4);
    number(48000 * 4, 4);
    number(4, 2);
    number(16, 2);
    bytes.append("data");
    number(count * 4, 4);
    std::vector<int16_t> samples;
    uint32_t noise = 1;
    for (uint32_t i = 0; i < count; ++i) {
        noise = noise * 1664525 + 1013904223;
        number(noise >> 16, 2);
        number(0, 2);
        samples.push_back(static_cast<int16_t>(noise >> 16));
    }
    write(path, bytes);
    return samples;
}

// 100 frames are 3.90625 seconds.
TEST_F(Render, Sound_LiesUnderTheFilmSampleForSample) {
    constexpr size_t kFilm = 187500;
    const std::vector<int16_t> noise = writeNoise("noise.wav", 400000);
    const auto filmed = [](const std::string& start) {
        const Outcome film = render(
            "video.score -o film.mkv --size 640x360 --folder set --to 100 "
            "--sound noise.wav " +
            start);
        EXPECT_EQ(film.status, 0) << film.err;
        return soundIn("film.mkv");
    };
    const auto begin = noise.begin();
    EXPECT_TRUE(filmed("") == std::vector<int16_t>(begin, begin + kFilm));
    EXPECT_TRUE(filmed("--sound-start 1.5") ==
                std::vector<int16_t>(begin + 72000, begin + 72000 + kFilm));
    std::vector<int16_t> later(24000, 0);
    later.insert(later.end(), begin, begin + kFilm - 24000);
    EXPECT_TRUE(filmed("--sound-start -0.5") == later);
    EXPECT_TRUE(filmed("--sound-start 8") == std::vector<int16_t>(begin + 384000, noise.end()));
    EXPECT_EQ(framesIn("film.mkv"), 100);
}

TEST_F(Render, Sound_GoesIntoAnMp4Too) {
    writeNoise("noise.wav", 400000);
    ASSERT_EQ(
        render("video.score -o film.mp4 --size 640x360 --folder set --to 100 --sound noise.wav")
            .status,
        0);
    // The coder begins with a few samples of its own.
    EXPECT_NEAR(static_cast<double>(soundIn("film.mp4").size()), 187500, 2048);
    EXPECT_EQ(framesIn("film.mp4"), 100);
}

TEST_F(Render, FilesWithoutSound_AreRefused) {
    ASSERT_EQ(render("video.score -o still.png --still 1 --folder set").status, 0);
    const Outcome film = render("video.score -o film.mp4 --folder set --sound still.png");
    EXPECT_EQ(film.status, 1);
    EXPECT_EQ(film.err,
              "velmora-render: there is no sound in " + fs::absolute("still.png").string() + "\n");
    EXPECT_FALSE(fs::exists("film.mp4"));
    EXPECT_EQ(render("video.score -o film.mp4 --folder set --sound none.wav").status, 1);
}

TEST_F(Render, Interface_IsFilmedOnDemand) {
    write("panel.score", "velmora score 1\nplaylist FIVE\n0 tab\n30 end\n");
    write("bare.score", "velmora score 1\nplaylist FIVE\n30 end\n");
    EXPECT_EQ(render("panel.score --diff bare.score --folder set").status, 0);
    EXPECT_EQ(render("panel.score --diff bare.score --interface --folder set").out,
              "frame 1 differs\n");
}

// On a display as small as the picture they would stand in it.
TEST_F(Render, Lines_OverTheMixAreInterface) {
    write("small.score",
          "velmora score 1\ndisplay 640 360\n" + kVideo.substr(kVideo.find('\n') + 1));
    write("set/userdata/prefs.xml",
          "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n"
          "\t<mode>0</mode>\n\t<topbar>1</topbar>\n\t<fps>1</fps>\n");
    const std::string lines = render("small.score --sums --folder set").out;
    const std::string window = render("small.score --sums --interface --folder set").out;
    fs::remove("set/userdata/prefs.xml");
    EXPECT_EQ(render("small.score --sums --folder set").out, lines);
    EXPECT_NE(window, lines);
}

TEST_F(Render, Displays_ShowTheSameMix) {
    const std::string sums = render("video.score --sums --folder set").out;
    for (const char* display : {"640 360", "720 576", "1024 768", "1920 1080"}) {
        write("other.score", std::string("velmora score 1\ndisplay ") + display + "\n" +
                                 kVideo.substr(kVideo.find('\n') + 1));
        EXPECT_EQ(render("other.score --sums --folder set").out, sums) << display;
    }
}

TEST_F(Render, Menus_AreBlackBehindTheMix) {
    write("menu.score", "velmora score 1\nplaylist ONE\n20 return\n30 z\n60 end\n");
    ASSERT_EQ(render("menu.score -o mix.png --still 25 --folder set").status, 0);
    ASSERT_EQ(render("menu.score -o menu.png --still 55 --folder set").status, 0);
    const auto blackOf = [](const std::vector<uint8_t>& picture) {
        return std::count(picture.begin(), picture.end(), 0);
    };
    EXPECT_LT(blackOf(pictureIn("mix.png", 0)), 640 * 360 * 3);
    EXPECT_EQ(blackOf(pictureIn("menu.png", 0)), 640 * 360 * 3);
}

// What the score holds counts, and what the program saves goes nowhere.
TEST_F(Render, UserFiles_AreTheScores) {
    const std::string before = textOf("set/userdata/playlists.xml");
    const std::string sums = render("video.score --sums --folder set").out;
    std::string held = "velmora score 1\nfile userdata/playlists.xml\n|";
    for (const char byte : before) {
        held.append(1, byte).append(byte == '\n' ? "|" : "");
    }
    write("held.score", held + "\n" + kVideo.substr(kVideo.find('\n') + 1));
    fs::remove("set/userdata/playlists.xml");
    EXPECT_EQ(render("held.score --sums --folder set").out, sums);
    EXPECT_FALSE(fs::exists("set/userdata/playlists.xml"));
    write("none.score",
          "velmora score 1\nfile userdata/playlists.xml missing\nplaylist FIVE\n9 end\n");
    write("set/userdata/playlists.xml", before);
    EXPECT_EQ(render("none.score --sums --folder set").err,
              "velmora-render: there is no playlist 'FIVE'\n");
    EXPECT_EQ(textOf("set/userdata/playlists.xml"), before);
}

TEST_F(Render, StartOfTheProgram_IsPlayedToo) {
    write("start.score", "velmora score 1\n60 x\n70 x\n120 end\n");
    ASSERT_EQ(render("start.score -o home.png --interface --still 58 --folder set").status, 0);
    ASSERT_EQ(render("start.score -o black.png --still 58 --folder set").status, 0);
    EXPECT_FALSE(pictureIn("home.png", 0) == pictureIn("black.png", 0));
    const std::vector<uint8_t> black = pictureIn("black.png", 0);
    EXPECT_EQ(std::count(black.begin(), black.end(), 0), 640 * 360 * 3);
}

TEST_F(Render, Closed_EndsTheFilm) {
    write("close.score", "velmora score 1\nplaylist ONE\n20 close\n100 end\n");
    const Outcome film = render("close.score -o film.mkv --size 640x360 --folder set");
    EXPECT_EQ(film.out, "film.mkv: 21 frames, 0.8 s\n");
    const Outcome late = render("close.score -o late.mkv --from 30 --folder set");
    EXPECT_EQ(late.status, 1);
    EXPECT_EQ(late.err, "velmora-render: the score ends before frame 30\n");
    EXPECT_FALSE(fs::exists("late.mkv"));
}

TEST_F(Render, Faults_AreOneLine) {
    const auto faultOf = [](const std::string& arguments, int status) {
        const Outcome outcome = render(arguments);
        EXPECT_EQ(outcome.status, status) << arguments;
        return outcome.err;
    };
    write("bad.score", "velmora score 1\n1 nothing\n");
    write("empty.score", "velmora score 1\nplaylist EMPTY\n9 end\n");
    const std::string name = "velmora-render: ";
    EXPECT_EQ(faultOf("bad.score --sums --folder set", 1),
              name + "bad.score: line 2: there is no 'nothing'\n");
    EXPECT_EQ(faultOf("empty.score --sums --folder set", 1),
              name + "the playlist 'EMPTY' is empty\n");
    EXPECT_EQ(faultOf("video.score -o film.gif --folder set", 1),
              name +
                  "cannot tell what film.gif shall be: give it the ending .mp4 (H.264) or .mkv "
                  "(FFV1)\n");
    EXPECT_EQ(faultOf("video.score -o a.png --still 200 --folder set", 1),
              name + "the score has 200 frames: there is no 200\n");
    EXPECT_EQ(faultOf("video.score -o no/film.mkv --folder set", 1),
              name + "cannot write no/film.mkv: no folder no\n");
    EXPECT_EQ(faultOf("video.score --sums --folder nowhere", 1),
              name + "--folder: no folder nowhere\n");
    EXPECT_NE(faultOf("video.score", 2), "");
    EXPECT_NE(faultOf("video.score --diff video.score -o film.mkv", 2), "");
    EXPECT_EQ(faultOf("nothing.score --sums --folder set", 1),
              name + "cannot read nothing.score: No such file or directory\n");
}

TEST_F(Render, Folders_AreLeftAsTheyWere) {
    const fs::path temporary = fs::absolute("temporary");  // others write to the machine's own
    fs::create_directory(temporary);
    setenv("TMPDIR", temporary.c_str(), 1);
    render("video.score --sums --folder set");
    render("video.score --diff video.score --folder set");
    unsetenv("TMPDIR");
    EXPECT_TRUE(fs::is_empty(temporary));
}

#ifdef NDEBUG
// The program's share, without an encoder: twenty times as fast as the stage, and far more.
TEST_F(Render, Speed_IsManyTimesTheStages) {
    constexpr int kFrames = 2560;  // 100 seconds of the stage
    write("long.score", kVideo.substr(0, kVideo.find("200 end")) + "2560 end\n");
    const auto begin = std::chrono::steady_clock::now();
    const Outcome sums = render("long.score --sums --folder set");
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    ASSERT_EQ(sums.status, 0);
    const double times = kFrames / 25.6 / took.count();
    std::printf("%.0f times as fast as the stage\n", times);
    EXPECT_GT(times, 20);
}
#endif

}  // namespace
