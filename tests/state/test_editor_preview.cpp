// The preview: which clip, its pixels, its texts, its end.
#include <sys/stat.h>

#include "moxel/moxel.h"
#include "state/editor_hands.h"

namespace {

class Preview : public EditorTest {
protected:
    Preview() { prepare(); }
    Preview(int width, int height) : EditorTest(width, height) { prepare(); }

    void prepare() {
        placeClip("rgb-all-360.m19", "full.m19");
        placeClip("rgba-all-360.m19", "live/alpha.m19");
        writeFile("videos/broken.m19", "no clip");
        addFamille("set", {"full.m19", "live/alpha.m19", "broken.m19", "gone.m19"});
        frame();
    }
    static void start() {
        printedBy([] { playlist->startPreview(); });
    }
    // The layer as the clip left it, with each pixel twice in both directions.
    static Picture doubledLayer() {
        Picture wanted = newPicture(1280, 720);
        for (int y = 0; y < 720; ++y) {
            for (int x = 0; x < 1280; ++x) {
                setPixel(wanted.get(), x, y, moxelTiles16[230400 + y / 2 * 640 + x / 2]);
            }
        }
        return wanted;
    }
    static void line(SDL_Surface* on, const char* words, int x, int y) {
        Lettering lettering;
        fill(on, x - 1, y, lettering.width(words, 0) + 2, lettering.height(words, 0), 0);
        lettering.paint(on, words, x, y, 0xFFFFFF, 0);
    }
};

TEST_F(Preview, OfATrackOnTheBrowsePage_LoadsIt) {
    click(rightRow(1));
    click(kPreview);
    EXPECT_EQ(playlist->previewActive, 1);
    EXPECT_EQ(playlist->previewFrame, 0);
    EXPECT_EQ(playlist->previewClip->state, CLIP_READY);
    EXPECT_EQ(playlist->previewClip->name, "live/alpha.m19");
}

TEST_F(Preview, OfAPlaylist_IsNone) {
    start();
    EXPECT_EQ(playlist->previewActive, 0);
    drag(leftRow(0), kPreview);
    EXPECT_EQ(playlist->previewActive, 0);
    EXPECT_EQ(editor->notice, "");
}

TEST_F(Preview, OfATrackOfTheShownPlaylist_LoadsIt) {
    editFirst();
    drag(leftRow(1), kTrackPreview);
    EXPECT_EQ(playlist->previewActive, 1);
    EXPECT_EQ(playlist->previewClip->name, "live/alpha.m19");
    EXPECT_EQ(playlist->editPage, page::TRACKS);
}

TEST_F(Preview, OfAnExplorerEntry_HasItsFolder) {
    editFirst();
    drag(rightRow(rowOfEntry("full.m19")), kTrackPreview);
    EXPECT_EQ(playlist->previewClip->name, "full.m19");
    tap(KEY_Z);
    click(rightRow(rowOfEntry("live")));
    click(rightRow(rowOfEntry("alpha.m19")));
    tap(KEY_X);
    EXPECT_EQ(playlist->previewActive, 1);
    EXPECT_EQ(playlist->previewClip->path, "./videos/live/alpha.m19");
}

TEST_F(Preview, OfAFolder_IsNone) {
    editFirst();
    drag(rightRow(rowOfEntry("live")), kTrackPreview);
    EXPECT_EQ(playlist->previewActive, 0);
}

TEST_F(Preview, OnTheNewPlaylistPage_IsNone) {
    playlist->editPage = page::NEW_PLAYLIST;
    start();
    EXPECT_EQ(playlist->previewActive, 0);
}

TEST_F(Preview, OfBrokenAndMissingClips_TheEditorStaysAndSaysSo) {
    for (const int row : {2, 3}) {
        click(rightRow(row));
        tap(KEY_X);
        EXPECT_EQ(playlist->previewActive, 0);
        EXPECT_EQ(playlist->previewClip->hasRAM, 0);
        EXPECT_EQ(editor->notice,
                  row == 2 ? "'broken.m19' could not be loaded" : "'gone.m19' could not be loaded");
        draw();
        // In the page, 320 and 180 pixels from the surface's corner.
        EXPECT_GT(countPixels(screen[0], 324, 476, 200, 12, 0xFD80), 20) << "the line is there";
    }
    click(rightRow(0));
    EXPECT_EQ(editor->notice, "");
}

TEST_F(Preview, OfAPipe_DoesNotWaitForIt) {
    std::filesystem::remove("videos/full.m19");
    ASSERT_EQ(mkfifo("videos/full.m19", 0600), 0);
    click(rightRow(0));
    tap(KEY_X);
    EXPECT_EQ(playlist->previewActive, 0);
}

TEST_F(Preview, Frame_FillsTheSurfaceUnderItsTexts) {
    playlist->dragSource = 1;
    start();
    const c_moxel& clip = *playlist->previewClip;
    ASSERT_EQ(playlist->previewActive, 1);
    const int frames = clip.frameCount;
    for (int shown = 1; shown <= 3; ++shown) {
        fillAll(screen[0], 0x1234);
        draw();
        EXPECT_EQ(playlist->previewFrame, shown % frames);
        Picture wanted = doubledLayer();
        fill(wanted.get(), 0, 5, shown % frames * 1280 / frames, 1, 0xFFFF);
        line(wanted.get(), "full.m19", 30, 40);
        line(wanted.get(), "RVB", 30, 60);
        line(wanted.get(), ("Quality " + std::to_string(clip.quality)).c_str(), 65, 60);
        line(wanted.get(), (std::to_string(clip.fileSize / 1024) + " kbytes").c_str(), 30, 80);
        line(wanted.get(), (std::to_string(frames) + " frames").c_str(), 30, 100);
        line(wanted.get(), "X, Z or a click : back", 30, 120);
        EXPECT_TRUE(samePixels(screen[0], wanted.get())) << shown;
        EXPECT_TRUE(
            std::equal(moxelTiles16 + 230400, moxelTiles16 + 460800, finalTilesTracks + 230400));
    }
}

TEST_F(Preview, LastFrame_IsFollowedByTheFirst) {
    playlist->dragSource = 1;
    start();
    playlist->previewFrame = playlist->previewClip->frameCount - 1;
    draw();
    EXPECT_EQ(playlist->previewFrame, 0);
}

TEST_F(Preview, ClipWithAlpha_SaysRVBA) {
    playlist->dragSource = 1;
    playlist->selItem = 1;
    start();
    draw();
    Picture wanted = copyOf(screen[0]);
    line(wanted.get(), "RVBA", 30, 60);
    line(wanted.get(), ("Quality " + std::to_string(playlist->previewClip->quality)).c_str(), 65,
         60);
    EXPECT_TRUE(samePixels(screen[0], wanted.get()));
}

TEST_F(Preview, FileOf2048000Bytes_Is2000Kbytes) {
    playlist->dragSource = 1;
    start();
    playlist->previewClip->fileSize = 2048000;
    draw();
    Picture wanted = copyOf(screen[0]);
    line(wanted.get(), "2000 kbytes", 30, 80);
    EXPECT_TRUE(samePixels(screen[0], wanted.get()));
}

TEST_F(Preview, ClickXAndZ_EndItAndDoNothingElse) {
    for (const int slot : {KEY_X, KEY_Z, PAD_CONFIRM, PAD_BACK}) {
        click(rightRow(0));
        click(kPreview);
        ASSERT_EQ(playlist->previewActive, 1);
        tap(slot);
        EXPECT_EQ(playlist->previewActive, 0) << slot;
        EXPECT_EQ(all->state, STATE_PLAYLISTS);
    }
    click(kPreview);
    tap(KEY_DOWN);
    tap(KEY_BACKSPACE);
    EXPECT_EQ(playlist->previewActive, 1) << "no other key ends it";
    EXPECT_EQ(playlist->selItem, 0);
    click(kBack);
    EXPECT_EQ(playlist->previewActive, 0);
    EXPECT_EQ(all->state, STATE_PLAYLISTS) << "the click reached no button";
}

TEST_F(Preview, AfterIt_NothingStaysAroundThePage) {
    click(rightRow(0));
    click(kPreview);
    draw();
    tap(KEY_X);
    draw();
    EXPECT_EQ(countPixels(screen[0], 0, 0, 1280, 180, 0), 1280 * 180);
    EXPECT_EQ(countPixels(screen[0], 0, 540, 1280, 180, 0), 1280 * 180);
    EXPECT_EQ(countPixels(screen[0], 0, 180, 320, 360, 0), 320 * 360);
    EXPECT_EQ(countPixels(screen[0], 960, 180, 320, 360, 0), 320 * 360);
}

// Displays that are not 16 bits deep.
TEST_F(Preview, OnASurfaceOf32Bits_HasTheSameColours) {
    SDL_FreeSurface(screen[0]);
    screen[0] = SDL_CreateRGBSurface(SDL_SWSURFACE, 1280, 720, 32, 0xFF0000, 0x00FF00, 0x0000FF, 0);
    const auto at = [](int x, int y) {
        const auto* row = static_cast<const uint8_t*>(screen[0]->pixels) + y * screen[0]->pitch;
        return reinterpret_cast<const uint32_t*>(row)[x] & 0xFFFFFF;
    };
    playlist->dragSource = 1;
    draw();
    EXPECT_EQ(at(330, 530), 0x181818u);
    start();
    std::fill_n(moxelTiles16 + 230400, 230400, uint16_t{0});
    moxelTiles16[230400 + 100 * 640 + 200] = 0xFFFF;
    playlist->finRenderPreview();
    // The low bits are the blit's.
    EXPECT_EQ(at(400, 200) & 0xF8FCF8, 0xF8FCF8u);
    EXPECT_EQ(at(401, 201) & 0xF8FCF8, 0xF8FCF8u);
    EXPECT_EQ(at(402, 200), 0u);
    EXPECT_EQ(at(399, 200), 0u);
}

TEST_F(Preview, Again_FreesTheClipBefore) {
    for (int i = 0; i < 3; ++i) {
        click(rightRow(i % 2));
        click(kPreview);
        ASSERT_EQ(playlist->previewActive, 1);
        tap(KEY_Z);
        EXPECT_EQ(playlist->previewClip->hasRAM, 1) << "kept until the next one";
    }
}

TEST_F(Preview, OfAClipWithoutFrames_DrawsNothing) {
    playlist->previewActive = 1;
    playlist->previewClip->state = CLIP_READY;
    playlist->previewClip->frameCount = 0;
    playlist->finRenderPreview();
    draw();
    EXPECT_EQ(playlist->previewFrame, 0);
}

TEST_F(Preview, AfterTheApplicationGotSmallerOrLarger_StaysInsideTheSurface) {
    playlist->dragSource = 1;
    start();
    constexpr int kSizes[][2] = {{1920, 1080}, {1024, 768}, {800, 600},
                                 {720, 480},   {640, 480},  {320, 200}};
    for (const auto& size : kSizes) {
        all->appW = size[0];
        all->appH = size[1];
        draw();
    }
    EXPECT_EQ(playlist->previewActive, 1);
}

class CompositePreview : public Preview {
protected:
    CompositePreview() : Preview(720, 480) {}
};

// 40 pixels to the left, 60 rows above; 19 of 20 frames are 684 of 720 pixels.
TEST_F(CompositePreview, Frame_IsCentredOnBlack) {
    playlist->dragSource = 1;
    start();
    ASSERT_EQ(screen[0]->w, 720);
    ASSERT_EQ(playlist->previewClip->frameCount, 20);
    playlist->previewClip->renderMoxel19(1, 0, 0);
    playlist->previewFrame = 19;
    fillAll(screen[0], 0x1234);
    playlist->finRenderPreview();
    Picture wanted = newPicture(720, 480);
    for (int y = 0; y < 360; ++y) {
        for (int x = 0; x < 640; ++x) {
            setPixel(wanted.get(), x + 40, y + 60, moxelTiles16[230400 + y * 640 + x]);
        }
    }
    fill(wanted.get(), 0, 5, 684, 1, 0xFFFF);
    EXPECT_TRUE(samePixels(screen[0], wanted.get()));
}

// The work surface keeps its 1280 pixels; the window shows the first 1024 of them.
TEST_F(Preview, In1024By768_ProgressAndTextsAreInsideTheWindow) {
    const std::string name = std::string(200, 'W') + ".m19";
    placeClip("rgb-all-360.m19", name);
    addFamille("long", {name});
    editor->select(page::LEFT, 1);
    playlist->dragSource = 1;
    start();
    ASSERT_EQ(playlist->previewActive, 1);
    all->appW = 1024;
    all->appH = 768;
    playlist->previewFrame = 9;
    fillAll(screen[0], 0x1234);
    draw();
    EXPECT_EQ(countPixels(screen[0], 0, 5, 1280, 1, 0xFFFF), 512) << "10 of 20 frames";
    EXPECT_EQ(countPixels(screen[0], 1024, 0, 256, 720, 0x1234), 256 * 720);
    EXPECT_GT(countPixels(screen[0], 960, 40, 34, 12, 0xFFFF), 20) << "the name goes on to there";
    EXPECT_EQ(pixelAt(screen[0], 997, 50), pixelAt(screen[0], 996, 50)) << "behind it the picture";
    Picture wanted = copyOf(screen[0]);
    line(wanted.get(), "X, Z or a click : back", 30, 120);
    EXPECT_TRUE(samePixels(screen[0], wanted.get()));
}

TEST_F(CompositePreview, LongName_EndsInsideTheWindow) {
    const std::string name = std::string(200, 'W') + ".m19";
    placeClip("rgb-all-360.m19", name);
    addFamille("long", {name});
    editor->select(page::LEFT, 1);
    playlist->dragSource = 1;
    start();
    draw();
    EXPECT_GT(countPixels(screen[0], 640, 40, 50, 12, 0xFFFF), 20);
    EXPECT_EQ(countPixels(screen[0], 692, 36, 28, 20, 0), 28 * 20) << "30 pixels are kept free";
    Picture wanted = copyOf(screen[0]);
    line(wanted.get(), "X, Z or a click : back", 30, 120);
    EXPECT_TRUE(samePixels(screen[0], wanted.get()));
}

// All frames, each as another slot of the same clip draws it, twice over; below the texts.
TEST_F(Preview, EachFrame_IsRenderedAndDrawnInItsTurn) {
    loadClip(0, "full.m19");
    playlist->dragSource = 1;
    playlist->previewFrame = 7;
    start();
    ASSERT_EQ(playlist->previewClip->frameCount, 20);
    for (int shown = 0; shown < 40; ++shown) {
        std::fill_n(moxelTiles16 + 230400, 230400, uint16_t{0x0F0F});
        moxel[0].redrawCount = 2;
        moxel[0].renderMoxel19(1, shown % 20, 0);
        Picture wanted = doubledLayer();
        std::fill_n(moxelTiles16 + 230400, 230400, uint16_t{0x0F0F});
        playlist->previewClip->redrawCount = 2;
        draw();
        fill(wanted.get(), 0, 0, 1280, 140, 0);
        fill(screen[0], 0, 0, 1280, 140, 0);
        ASSERT_TRUE(samePixels(screen[0], wanted.get())) << shown;
    }
}

TEST_F(Preview, Start_BeginsWithTheFirstFrame) {
    click(rightRow(0));
    playlist->previewFrame = 7;
    click(kPreview);
    EXPECT_EQ(playlist->previewFrame, 0);
    draw();
    EXPECT_EQ(playlist->previewFrame, 1);
}

void put16(std::string& bytes, int value) {
    bytes += static_cast<char>(value & 0xFF);
    bytes += static_cast<char>(value >> 8);
}

// One frame, 8 lines high, with 200 records of 64 bytes and room for 100 of them: record 100 is
// refused, and what was counted before it is the steps that were done.
TEST_F(Preview, LoadStep_TakesSixtyRecords) {
    std::string bytes("\x13\x4B\x80\x02\x08\0\0\x01\x01\0", 10);
    put16(bytes, 200);
    put16(bytes, 1600);  // words of record room
    put16(bytes, 0);
    put16(bytes, 40);  // words of map room
    put16(bytes, 0);
    for (int type = 0; type < 10; ++type) {
        put16(bytes, type == 1 ? 200 : 0);
    }
    bytes.append(512 + 160 + 32 + 200 * 64, '\0');
    writeFile("videos/full.m19", bytes);
    playlist->dragSource = 1;
    start();
    EXPECT_EQ(playlist->previewActive, 0);
    EXPECT_EQ(playlist->previewClip->recordsDone, 60);
}

}  // namespace
