#include "clip_tool/inputs.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "clip_tool/media.h"

namespace inputs {

uint8_t grey(int level) {
    return static_cast<uint8_t>((level * 255 + 15) / 31);
}

void levels(const std::string& path, const std::vector<int>& levels, int fps) {
    media::Recipe recipe;
    recipe.path = path;
    recipe.width = 64;
    recipe.height = 36;
    recipe.fps = {fps, 1};
    recipe.frames = static_cast<int>(levels.size());
    recipe.fill = [&levels](int frame, AVFrame& picture) {
        const uint8_t value = grey(levels[static_cast<size_t>(frame)]);
        media::fillBytes(picture, value, value, value, 0);
    };
    media::write(recipe);
}

void noise(const std::string& path, int frames) {
    media::Recipe recipe;
    recipe.path = path;
    recipe.width = 64;
    recipe.height = 36;
    recipe.frames = frames;
    recipe.fill = [](int frame, AVFrame& picture) {
        uint32_t state = static_cast<uint32_t>(frame) + 7;
        for (int i = 0; i < 64 * 36; ++i) {
            state = state * 1664525 + 1013904223;
            uint8_t* pixel = media::pixelAt(picture, i % 64, i / 64);
            pixel[0] = static_cast<uint8_t>(state >> 24);
            pixel[1] = static_cast<uint8_t>(state >> 16);
            pixel[2] = static_cast<uint8_t>(i);
            pixel[3] = 0;
        }
    };
    media::write(recipe);
}

// The container is chosen by name; FFmpeg writes one image to each file of a pattern.
void picture(const std::string& path, int width, int height,
             const std::function<uint32_t(int x, int y)>& colour) {
    media::Recipe recipe;
    recipe.path = "made%d.png";
    recipe.codec = AV_CODEC_ID_PNG;
    recipe.pixels = AV_PIX_FMT_RGBA;
    recipe.width = width;
    recipe.height = height;
    recipe.fill = [width, height, &colour](int, AVFrame& picture) {
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const uint32_t rgba = colour(x, y);
                for (int c = 0; c < 4; ++c) {
                    media::pixelAt(picture, x, y)[c] = static_cast<uint8_t>(rgba >> (24 - 8 * c));
                }
            }
        }
    };
    media::write(recipe);
    std::filesystem::rename("made1.png", path);
}

reference::Clip readClip(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return reference::parse({std::istreambuf_iterator<char>(file), {}});
}

std::vector<int> levelsOf(const std::string& path) {
    std::vector<int> levels;
    for (const reference::Picture& picture : reference::decode(readClip(path))) {
        levels.push_back(picture.pixels[180 * 640 + 320] >> 11);
    }
    return levels;
}

}  // namespace inputs
