#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "common/limits.h"
#include "px/output.h"

namespace {

constexpr uint16_t kUntouched = 0x5A5A;

// A surface with guard rows and a guard at the end of each row.
struct Surface {
    Surface(int w, int h, bool composite, int spare = 3)
        : width(w),
          height(h),
          stride(w + spare),
          pixels(static_cast<size_t>(stride * (h + 2)), kUntouched),
          view{pixels.data() + stride, w, h, static_cast<size_t>(stride) * 2, composite} {}

    uint16_t at(int x, int y) const { return pixels[static_cast<size_t>((y + 1) * stride + x)]; }
    bool guardsIntact() const {
        for (int x = 0; x < stride; ++x) {
            if (at(x, -1) != kUntouched || at(x, height) != kUntouched) {
                return false;
            }
        }
        for (int y = 0; y < height; ++y) {
            for (int x = width; x < stride; ++x) {
                if (at(x, y) != kUntouched) {
                    return false;
                }
            }
        }
        return true;
    }

    int width;
    int height;
    int stride;
    std::vector<uint16_t> pixels;
    px::OutputView view;
};

// A pixel that says where it came from: never 0, never kUntouched.
uint16_t sourcePixel(int x, int y) {
    return static_cast<uint16_t>(0x8000 | (x * 7 + y * 13));
}

std::vector<uint16_t> picture() {
    std::vector<uint16_t> frame(kFramePixels);
    for (int y = 0; y < kFrameHeight; ++y) {
        for (int x = 0; x < kFrameWidth; ++x) {
            frame[static_cast<size_t>(y * kFrameWidth + x)] = sourcePixel(x, y);
        }
    }
    return frame;
}

TEST(Doubled, At1280x720_EveryPixelBecomesTwoByTwo) {
    Surface surface(1280, 720, false);
    px::placePicture(surface.view, picture().data());
    for (int y = 0; y < 720; ++y) {
        for (int x = 0; x < 1280; ++x) {
            ASSERT_EQ(surface.at(x, y), sourcePixel(x / 2, y / 2)) << x << " " << y;
        }
    }
    EXPECT_TRUE(surface.guardsIntact());
}

// 512 source columns fit, so the picture starts at column (640 - 512) / 2 = 64.
TEST(Doubled, At1024x768_ShowsTheCentreAndLeavesTheRowsBelow) {
    Surface surface(1024, 768, false);
    px::placePicture(surface.view, picture().data());
    for (int y = 0; y < 720; ++y) {
        for (int x = 0; x < 1024; ++x) {
            ASSERT_EQ(surface.at(x, y), sourcePixel(64 + x / 2, y / 2)) << x << " " << y;
        }
    }
    for (int y = 720; y < 768; ++y) {
        ASSERT_EQ(surface.at(5, y), kUntouched);
    }
    EXPECT_TRUE(surface.guardsIntact());
}

// 80 columns to the left and right, 60 rows above and below.
TEST(Composite, At720x480_IsCentredOnBlack) {
    Surface surface(720, 480, true);
    px::placePicture(surface.view, picture().data());
    for (int y = 0; y < 480; ++y) {
        for (int x = 0; x < 720; ++x) {
            const bool inside = x >= 40 && x < 680 && y >= 60 && y < 420;
            ASSERT_EQ(surface.at(x, y), inside ? sourcePixel(x - 40, y - 60) : 0) << x << " " << y;
        }
    }
    EXPECT_TRUE(surface.guardsIntact());
}

TEST(Composite, EveryFrame_BorderIsBlackAgain) {
    Surface surface(720, 576, true);
    px::placePicture(surface.view, picture().data());
    surface.view.pixels[0] = 0x1234;
    px::placePicture(surface.view, picture().data());
    EXPECT_EQ(surface.at(0, 0), 0);
}

// 121 spare rows: the start is (121 * 720) / 2 + 40 = 43600 pixels in, which is row 60, column 400.
TEST(Composite, quirk_odd_composite_height_shifts_picture) {
    Surface surface(720, 481, true);
    px::placePicture(surface.view, picture().data());
    EXPECT_EQ(surface.at(399, 60), 0);
    EXPECT_EQ(surface.at(400, 60), sourcePixel(0, 0));
    EXPECT_EQ(surface.at(719, 60), sourcePixel(319, 0));
    EXPECT_EQ(surface.at(0, 61), sourcePixel(320, 0));
    EXPECT_EQ(surface.at(319, 61), sourcePixel(639, 0));
    EXPECT_EQ(surface.at(320, 61), 0);
    EXPECT_TRUE(surface.guardsIntact());
}

// Any size: nothing outside the surface is touched and rows are never skewed, so a row shows source
// columns in order from one source row.
TEST(Placement, EverySize_StaysInsideAndUnskewed) {
    const std::vector<uint16_t> source = picture();
    for (const bool composite : {false, true}) {
        for (const int w :
             {1, 2, 3, 319, 320, 639, 640, 641, 719, 721, 799, 1023, 1279, 1281, 1360, 1920}) {
            for (const int h : {1, 2, 100, 240, 359, 361, 480, 600, 719, 721, 1080}) {
                if (composite && w >= 640 && h >= 360) {
                    continue;  // the shifted picture of odd heights has its own test
                }
                Surface surface(w, h, composite);
                px::placePicture(surface.view, source.data());
                ASSERT_TRUE(surface.guardsIntact()) << w << " x " << h;
                const int scale = composite ? 1 : 2;
                for (int y = 1; y < h; y += 7) {
                    for (int x = 2 * scale; x < w; x += 5) {
                        const uint16_t here = surface.at(x, y);
                        const uint16_t left = surface.at(x - scale, y);
                        if (here == kUntouched || here == 0 || left == kUntouched || left == 0) {
                            continue;
                        }
                        ASSERT_EQ(here - left, 7) << w << " x " << h << " at " << x << " " << y;
                    }
                }
            }
        }
    }
}

// 200 rows: the first shown is output row (720 - 200) / 2 = 260 of the doubled picture.
TEST(Doubled, FewerThan720Rows_ShowTheCentreRows) {
    Surface surface(1280, 200, false);
    px::placePicture(surface.view, picture().data());
    EXPECT_EQ(surface.at(0, 0), sourcePixel(0, 130));
    EXPECT_EQ(surface.at(0, 199), sourcePixel(0, 229));
}

TEST(Doubled, WiderThan1280_IsCentredOnBlack) {
    Surface surface(1920, 1080, false);
    px::placePicture(surface.view, picture().data());
    EXPECT_EQ(surface.at(319, 180), 0);
    EXPECT_EQ(surface.at(320, 180), sourcePixel(0, 0));
    EXPECT_EQ(surface.at(1599, 899), sourcePixel(639, 359));
    EXPECT_EQ(surface.at(1600, 899), 0);
    EXPECT_EQ(surface.at(320, 179), 0);
    EXPECT_EQ(surface.at(320, 900), 0);
}

// 801 columns: 400 source columns doubled from column (640 - 400) / 2 = 120 on, then one more.
TEST(Doubled, OddWidth_EndsInHalfAColumn) {
    Surface surface(801, 720, false);
    px::placePicture(surface.view, picture().data());
    EXPECT_EQ(surface.at(0, 0), sourcePixel(120, 0));
    EXPECT_EQ(surface.at(799, 0), sourcePixel(519, 0));
    EXPECT_EQ(surface.at(800, 0), sourcePixel(520, 0));
}

TEST(Composite, SmallerThanThePicture_ShowsItsCentre) {
    Surface surface(320, 240, true);
    px::placePicture(surface.view, picture().data());
    EXPECT_EQ(surface.at(0, 0), sourcePixel(160, 60));
    EXPECT_EQ(surface.at(319, 239), sourcePixel(479, 299));
}

// Below the 720 rows of a surface that is no wider than the picture, and nowhere else.
TEST(Outside, At1024x768_TheRowsBelowAreBlack) {
    Surface surface(1024, 768, false);
    px::blackenOutside(surface.view);
    for (int y = 0; y < 768; ++y) {
        for (const int x : {0, 511, 1023}) {
            ASSERT_EQ(surface.at(x, y), y < 720 ? kUntouched : 0) << x << ", " << y;
        }
    }
    EXPECT_TRUE(surface.guardsIntact());
}

// The picture starts at (320, 180).
TEST(Outside, At1920x1080_AllSidesAreBlack) {
    Surface surface(1920, 1080, false);
    px::blackenOutside(surface.view);
    for (int y = 0; y < 1080; ++y) {
        for (const int x : {0, 319, 320, 1599, 1600, 1919}) {
            const bool inside = x >= 320 && x < 1600 && y >= 180 && y < 900;
            ASSERT_EQ(surface.at(x, y), inside ? kUntouched : 0) << x << ", " << y;
        }
    }
    EXPECT_TRUE(surface.guardsIntact());
}

TEST(Outside, NoRoomBesideThePicture_NothingIsTouched) {
    const struct {
        int width, height;
        bool composite;
    } cases[] = {{1280, 720, false}, {1024, 600, false}, {720, 480, true}, {1, 1, false}};
    for (const auto& each : cases) {
        Surface surface(each.width, each.height, each.composite);
        px::blackenOutside(surface.view);
        EXPECT_EQ(std::count(surface.pixels.begin(), surface.pixels.end(), kUntouched),
                  static_cast<std::ptrdiff_t>(surface.pixels.size()))
            << each.width;
    }
}

TEST(RowStart, Length_IsCutAtTheRowsEnd) {
    Surface surface(100, 10, false);
    px::fillRowStart(surface.view, 5, 40, 0xFFFF);
    EXPECT_EQ(surface.at(39, 5), 0xFFFF);
    EXPECT_EQ(surface.at(40, 5), kUntouched);
    px::fillRowStart(surface.view, 6, 4000, 0xFFFF);
    EXPECT_EQ(surface.at(99, 6), 0xFFFF);
    EXPECT_EQ(surface.at(0, 7), kUntouched);
    px::fillRowStart(surface.view, 10, 4, 0xFFFF);
    px::fillRowStart(surface.view, 2, -3, 0xFFFF);
    EXPECT_EQ(surface.at(0, 2), kUntouched);
    EXPECT_TRUE(surface.guardsIntact());
}

}  // namespace
