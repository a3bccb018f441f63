// The preview's picture on work surfaces of every size, with a margin that must stay as it is.
#include "layout/preview_place.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

constexpr uint16_t kUntouched = 0xABCD;

// The surface between two margins, each row longer than it is wide.
struct Canvas {
    Canvas(int w, int h, int spare) : width(w), height(h), stride(w + spare) {
        pixels.assign(static_cast<size_t>(stride) * static_cast<size_t>(h + 2), kUntouched);
    }
    px::OutputView view() {
        return {pixels.data() + stride, width, height,
                static_cast<size_t>(stride) * sizeof(uint16_t), false};
    }
    uint16_t at(int x, int y) const { return pixels[static_cast<size_t>((y + 1) * stride + x)]; }
    bool marginsKept() const {
        for (int y = -1; y <= height; ++y) {
            const bool inside = y >= 0 && y < height;
            for (int x = inside ? width : 0; x < stride; ++x) {
                if (at(x, y) != kUntouched) {
                    return false;
                }
            }
        }
        return true;
    }
    int width, height, stride;
    std::vector<uint16_t> pixels;
};

std::vector<uint16_t> picture() {
    std::vector<uint16_t> result(640 * 360);
    for (size_t i = 0; i < result.size(); ++i) {
        result[i] = static_cast<uint16_t>(1 + i * 7919 % 65535);
    }
    return result;
}

uint16_t pixelOf(const std::vector<uint16_t>& picture, int x, int y) {
    return picture[static_cast<size_t>(y * 640 + x)];
}

TEST(PreviewPlace, At1280By720_EveryPixelTwiceInBothDirections) {
    const auto shown = picture();
    Canvas canvas(1280, 720, 0);
    preview::place(canvas.view(), {1280, 720}, shown.data());
    for (int y = 0; y < 720; ++y) {
        for (int x = 0; x < 1280; ++x) {
            ASSERT_EQ(canvas.at(x, y), pixelOf(shown, x / 2, y / 2)) << x << ", " << y;
        }
    }
    EXPECT_TRUE(canvas.marginsKept());
}

void expectCentred(int height, int top) {
    const auto shown = picture();
    Canvas canvas(720, height, 6);
    preview::place(canvas.view(), {720, height}, shown.data());
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < 720; ++x) {
            const bool covered = x >= 40 && x < 680 && y >= top && y < top + 360;
            const uint16_t wanted = covered ? pixelOf(shown, x - 40, y - top) : uint16_t{0};
            ASSERT_EQ(canvas.at(x, y), wanted) << x << ", " << y;
        }
    }
    EXPECT_TRUE(canvas.marginsKept());
}

// (720 - 640) / 2 = 40; 360 x (480 - 360) pixels are 60 rows of 720, 360 x (576 - 360) are 108.
TEST(PreviewPlace, OnCompositeDisplays720Wide_CentredOnBlack) {
    expectCentred(480, 60);
    expectCentred(576, 108);
}

// 360 x (480 - 360) = 43200 pixels are 67 rows of 640 and 320 pixels.
TEST(PreviewPlace, quirk_preview_is_centred_at_720_only) {
    const auto shown = picture();
    Canvas canvas(640, 480, 0);
    preview::place(canvas.view(), {640, 480}, shown.data());
    EXPECT_EQ(canvas.at(319, 67), 0);
    EXPECT_EQ(canvas.at(320, 67), pixelOf(shown, 0, 0));
    EXPECT_EQ(canvas.at(639, 67), pixelOf(shown, 319, 0));
    EXPECT_EQ(canvas.at(0, 68), pixelOf(shown, 320, 0));
    EXPECT_EQ(canvas.at(319, 427), pixelOf(shown, 639, 359));
    EXPECT_EQ(canvas.at(320, 427), 0);
    EXPECT_TRUE(canvas.marginsKept());
}

// The application was made smaller or larger than the surface of the start.
TEST(PreviewPlace, ApplicationAndSurfaceOfDifferentSizes_NothingOutsideTheSurface) {
    const auto shown = picture();
    constexpr preview::AppSize kSizes[] = {{1280, 720}, {1920, 1080}, {1024, 768}, {800, 600},
                                           {720, 480},  {640, 480},   {320, 200},  {799, 100},
                                           {1, 1},      {640, 2000},  {0, 0},      {-5, 720}};
    for (const preview::AppSize surface : kSizes) {
        if (surface.width < 1) {
            continue;
        }
        for (const preview::AppSize app : kSizes) {
            Canvas canvas(surface.width, surface.height, 4);
            preview::place(canvas.view(), app, shown.data());
            EXPECT_TRUE(canvas.marginsKept()) << surface.width << " for " << app.width;
        }
    }
}

TEST(PreviewPlace, Composite720OnALargerSurface_StandsWhereTheWindowShowsIt) {
    const auto shown = picture();
    Canvas canvas(1280, 720, 0);
    preview::place(canvas.view(), {720, 480}, shown.data());
    EXPECT_EQ(canvas.at(40, 60), pixelOf(shown, 0, 0));
    EXPECT_EQ(canvas.at(679, 419), pixelOf(shown, 639, 359));
    EXPECT_EQ(canvas.at(39, 60), 0);
    EXPECT_EQ(canvas.at(700, 300), 0);
}

TEST(PreviewPlace, Progress_IsThePartOfTheWidth) {
    EXPECT_EQ(preview::progressLength(0, 7, 1280), 0);
    EXPECT_EQ(preview::progressLength(1, 7, 1280), 182);
    EXPECT_EQ(preview::progressLength(255, 256, 1280), 1275);
    EXPECT_EQ(preview::progressLength(255, 256, 1024), 1020);
    EXPECT_EQ(preview::progressLength(6, 7, 720), 617);
}

TEST(PreviewPlace, VisibleWidth_IsWhatSurfaceAndWindowShare) {
    EXPECT_EQ(preview::visibleWidth(1280, {1280, 720}), 1280);
    EXPECT_EQ(preview::visibleWidth(1280, {1024, 768}), 1024);
    EXPECT_EQ(preview::visibleWidth(1024, {1280, 720}), 1024);
    EXPECT_EQ(preview::visibleWidth(720, {-5, 720}), 0);
}

}  // namespace
