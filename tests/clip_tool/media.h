#pragma once
// Small media files for the tests, written by FFmpeg's libraries.
//
// The caller fills each frame's planes, which are zero at first; the codec and the pixel format
// must fit each other. Any failure ends the test program with a message.

#include <functional>
#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace media {

struct Recipe {
    std::string path;  // its ending tells the container
    AVCodecID codec = AV_CODEC_ID_FFV1;
    AVPixelFormat pixels = AV_PIX_FMT_BGR0;
    int width = 640;
    int height = 360;
    AVRational fps = {25, 1};
    AVRational pixelAspect = {1, 1};
    AVColorTransferCharacteristic transfer = AVCOL_TRC_UNSPECIFIED;
    bool interlaced = false;  // the file says so; upper lines first
    int turns = 0;            // quarter turns clockwise that a player must make
    int frames = 1;
    std::function<void(int frame, AVFrame& picture)> fill;
    std::function<int64_t(int frame)> time;  // in frames; null: one after the other
};

void write(const Recipe& recipe);

// One colour all over, for the formats of four bytes a pixel; `order` gives the bytes.
void fillBytes(AVFrame& picture, uint8_t a, uint8_t b, uint8_t c, uint8_t d);
// Bytes at random, the same ones for the same seed.
void fillNoise(AVFrame& picture, uint32_t seed);
uint8_t* pixelAt(AVFrame& picture, int x, int y, int bytes = 4);

}  // namespace media
