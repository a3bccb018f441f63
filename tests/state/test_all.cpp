// The application state: start values, composite outputs, the application resolution.
#include "core/all.h"

#include "state/stage.h"

namespace {

constexpr const char* kCompositeLine = "Composite OutPut detected, adjusting app resolution.\n";

class All : public StageTest {
protected:
    static std::string check(int width, int height) {
        all->screenW = width;
        all->screenH = height;
        return printedBy([] { all->checkComposite(); });
    }
};

TEST_F(All, Init_IntroAndTheDisplaysSize) {
    scripted().displayWidth = 1920;
    scripted().displayHeight = 1080;
    all->state = STATE_OPTIONS;
    all->subState = SUB_PERFORMING;
    all->appW = all->appH = 5;
    all->composite = 1;
    all->initAll();
    EXPECT_EQ(all->state, STATE_INTRO);
    EXPECT_EQ(all->subState, 2);
    EXPECT_EQ(all->prefix, "");
    EXPECT_EQ(all->screenW, 1920);
    EXPECT_EQ(all->screenH, 1080);
    EXPECT_EQ(all->appW, 1280);
    EXPECT_EQ(all->appH, 720);
    EXPECT_EQ(all->composite, 0);
}

TEST_F(All, DisplayOf799_IsComposite) {
    EXPECT_EQ(check(799, 600), kCompositeLine);
    EXPECT_EQ(all->composite, 1);
    EXPECT_EQ(all->appW, 799);
    EXPECT_EQ(all->appH, 600);
}

TEST_F(All, DisplayOf800_IsNot) {
    EXPECT_EQ(check(800, 480), "");
    EXPECT_EQ(all->composite, 0);
    EXPECT_EQ(all->appW, 1280);
    EXPECT_EQ(all->appH, 720);
}

TEST_F(All, CompositeDisplays_GiveTheirSize) {
    check(720, 480);
    EXPECT_EQ(all->appW, 720);
    EXPECT_EQ(all->appH, 480);
    check(720, 576);
    EXPECT_EQ(all->appW, 720);
    EXPECT_EQ(all->appH, 576);
}

// Once detected, every later check puts the display's size back.
TEST_F(All, CompositeOnce_CompositeForGood) {
    check(720, 480);
    all->applyResolution(1280, 720);
    EXPECT_EQ(check(1280, 1024), kCompositeLine);
    EXPECT_EQ(all->composite, 1);
    EXPECT_EQ(all->appW, 1280);
    EXPECT_EQ(all->appH, 1024);
}

TEST_F(All, ApplyResolution_SizeAndPictureOffset) {
    const struct {
        int w, h, x, y;
    } cases[] = {
        {1024, 768, 192, 204}, {1280, 720, 320, 180}, {720, 480, 40, 60}, {637, 357, -1, -1}};
    for (const auto& each : cases) {
        all->applyResolution(each.w, each.h);
        EXPECT_EQ(all->appW, each.w);
        EXPECT_EQ(all->appH, each.h);
        EXPECT_EQ(_options->offset.x, each.x);
        EXPECT_EQ(_options->offset.y, each.y);
    }
    EXPECT_TRUE(scripted().modeCalls.empty());
}

}  // namespace
