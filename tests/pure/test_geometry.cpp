#include "common/geometry.h"

#include <gtest/gtest.h>

namespace {

void expectOffset(int width, int height, int x, int y) {
    const Point offset = pictureOffset(width, height);
    EXPECT_EQ(offset.x, x) << width << " x " << height;
    EXPECT_EQ(offset.y, y) << width << " x " << height;
}

TEST(Geometry, PictureOffset_CentresThePicture) {
    expectOffset(1280, 720, 320, 180);
    expectOffset(1024, 768, 192, 204);
    expectOffset(720, 480, 40, 60);
    expectOffset(720, 576, 40, 108);
    expectOffset(640, 360, 0, 0);
}

TEST(Geometry, PictureOffset_TruncatesTowardZero) {
    expectOffset(641, 361, 0, 0);
    expectOffset(643, 363, 1, 1);
    expectOffset(639, 359, 0, 0);
    expectOffset(637, 357, -1, -1);
    expectOffset(320, 240, -160, -60);
}

TEST(Geometry, InsideInclusive_BothEndsBelong) {
    EXPECT_TRUE(insideInclusive(10, 10, 10, 10, 5, 5));
    EXPECT_TRUE(insideInclusive(15, 15, 10, 10, 5, 5));
    EXPECT_FALSE(insideInclusive(16, 15, 10, 10, 5, 5));
    EXPECT_FALSE(insideInclusive(15, 16, 10, 10, 5, 5));
    EXPECT_FALSE(insideInclusive(9, 10, 10, 10, 5, 5));
    EXPECT_FALSE(insideInclusive(10, 9, 10, 10, 5, 5));
}

TEST(Geometry, InsideInclusive_NegativePositions) {
    EXPECT_TRUE(insideInclusive(-320, -180, -320, -180, 0, 0));
    EXPECT_FALSE(insideInclusive(-1, 0, 0, 0, 640, 360));
}

}  // namespace
