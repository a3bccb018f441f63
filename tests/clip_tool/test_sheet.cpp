// Contact sheets: the moments shown, where they stand, and what the page holds.
#include <gtest/gtest.h>

#include "clip_tool/pictures.h"
#include "support/folder.h"
#include "tools/base/atomic_file.h"
#include "tools/base/texts.h"
#include "tools/clip/reports/clip_frames.h"
#include "tools/clip/reports/sheet.h"

namespace {

class Sheet : public testing::Test {
protected:
    // A clip of 360 lines whose frame f is red, level f of 31.
    void makeClip(const std::string& path, int frames, bool alpha = false) {
        std::vector<maker::Frame> film;
        for (int f = 0; f < frames; ++f) {
            film.push_back(pictures::flat(360, static_cast<uint16_t>(f << 11), alpha));
        }
        maker::writeWholeFile(path, pictures::encode(film));
    }
    TemporaryFolder folder_;
};

std::vector<int> framesIn(const maker::SheetClip& clip) {
    std::vector<int> frames;
    for (const maker::Moment& moment : clip.moments) {
        frames.push_back(moment.frame);
    }
    return frames;
}

std::string pageOf(const std::string& title, const std::vector<maker::SheetClip>& clips) {
    maker::SheetPage page;
    for (const maker::SheetClip& clip : clips) {
        page.add(clip);
    }
    return page.finish(title);
}

size_t count(const std::string& text, const std::string& part) {
    size_t found = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++found;
    }
    return found;
}

TEST_F(Sheet, Moments_AreSpreadOverTheClip) {
    makeClip("a.m19", 20);
    const maker::SheetClip clip = maker::readSheetClip("a", "a.m19", 8, 4);
    EXPECT_EQ(framesIn(clip), (std::vector<int>{0, 2, 5, 7, 10, 12, 15, 17}));
    ASSERT_EQ(clip.moments[2].picture.width, 160);
    ASSERT_EQ(clip.moments[2].picture.height, 90);
    EXPECT_EQ(clip.moments[2].picture.at(80, 45)[0], 5 * 8 + 1);
}

TEST_F(Sheet, ShortClip_ShowsEachFrameOnce) {
    makeClip("a.m19", 3);
    EXPECT_EQ(framesIn(maker::readSheetClip("a", "a.m19", 8, 4)), (std::vector<int>{0, 1, 2}));
}

TEST_F(Sheet, BrokenClip_HasNoMoments) {
    maker::writeWholeFile("a.m19", std::vector<uint8_t>{19, 0});
    const maker::SheetClip clip = maker::readSheetClip("a", "a.m19", 8, 4);
    EXPECT_TRUE(clip.moments.empty());
    const std::string page = pageOf("t", {clip});
    EXPECT_NE(page.find("class=\"bad\">broken in the file header"), std::string::npos);
    EXPECT_GT(maker::drawSheet("t", {clip}).height, 100);
}

TEST_F(Sheet, Facts_AreInPlainWords) {
    makeClip("a.m19", 20);
    const maker::SheetClip clip = maker::readSheetClip("a", "a.m19", 8, 4);
    EXPECT_EQ(maker::lengthText(clip.facts), "20 frames, 0.8 s");
    EXPECT_EQ(maker::loadText(clip.facts), "ready after 0.2 s");
    EXPECT_EQ(maker::wholeKilobytes(1001), "2 kB");
    EXPECT_EQ(maker::wholeKilobytes(1000), "1 kB");
}

// Nothing else on the sheet is as red as the last frame of the clip.
TEST_F(Sheet, Picture_HoldsEveryMoment) {
    makeClip("a.m19", 4);
    const maker::Picture sheet =
        maker::drawSheet("title", {maker::readSheetClip("a", "a.m19", 8, 4)});
    int pixels[4] = {};
    for (size_t i = 0; i < sheet.rgba.size(); i += 4) {
        for (int f = 1; f < 4; ++f) {
            pixels[f] += sheet.rgba[i] == f * 8 && sheet.rgba[i + 1] == 0 ? 1 : 0;
        }
    }
    EXPECT_EQ(pixels[1], 160 * 90);
    EXPECT_EQ(pixels[2], 160 * 90);
    EXPECT_EQ(pixels[3], 160 * 90);
}

TEST_F(Sheet, Page_NeedsNoOtherFile) {
    makeClip("a.m19", 30, true);
    maker::SheetClip clip = maker::readSheetClip("<a> & \"b\"", "a.m19", 24, 2);
    const std::string page = pageOf("my videos", {clip, clip});
    EXPECT_EQ(count(page, "<article>"), 2u);
    EXPECT_EQ(count(page, "http"), 0u);
    EXPECT_EQ(count(page, "src: url(data:font/ttf;base64,"), 1u);
    EXPECT_EQ(count(page, "background-image: url(data:image/"), 2u);
    EXPECT_EQ(count(page, "&lt;a&gt; &amp; &quot;b&quot;"), 2u);
    EXPECT_EQ(count(page, "--moments: 24; --time: 1.17s;"), 2u);
    EXPECT_EQ(count(page, "<span class=\"alpha\">alpha</span>"), 2u);
    EXPECT_NE(page.find("<title>my videos</title>"), std::string::npos);
    // 60 frames at 25.6 a second
    EXPECT_NE(page.find("<p>2 clips, 2 s, "), std::string::npos);
}

TEST_F(Sheet, ClipsBelow_AreFoundInSubfolders) {
    std::filesystem::create_directories("v/b.m19");
    makeClip("v/b.m19/c.m19", 1);
    makeClip("v/a.m19", 1);
    maker::writeWholeFile("v/a.txt", std::vector<uint8_t>{1});
    maker::writeWholeFile("v/old.m17", std::vector<uint8_t>{1});
    EXPECT_EQ(maker::clipsBelow("v"),
              (std::vector<std::string>{"a.m19", "b.m19/c.m19", "old.m17"}));
    EXPECT_TRUE(maker::clipsBelow("none").empty());
    std::filesystem::create_directory_symlink("..", "v/b.m19/up");
    std::filesystem::create_directory_symlink("b.m19", "v/side");
    EXPECT_EQ(maker::clipsBelow("v"),
              (std::vector<std::string>{"a.m19", "b.m19/c.m19", "old.m17", "side/c.m19"}));
}

}  // namespace
