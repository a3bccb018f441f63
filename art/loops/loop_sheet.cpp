// velmora-loop-sheet: a contact sheet of a demo playlist as a PPM picture on standard output.
//
//   velmora-loop-sheet PLAYLIST
//
// One row a loop, kColumns frames of it evenly spaced, halved in size, the name on the first. What
// is transparent shows a checker of two greys. Status 2 when there is no such playlist.

#include <array>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <vector>

#include "art/loops/canvas.h"
#include "art/loops/loops.h"
#include "art/loops/pixels.h"

namespace {

constexpr int kColumns = 4;
constexpr int kGap = 4;
constexpr int kPictureWidth = demo::kWidth / 2;
constexpr int kPictureHeight = demo::kHeight / 2;
constexpr int kSheetWidth = kColumns * (kPictureWidth + kGap) - kGap;

struct Sheet {
    int height;
    std::vector<uint8_t> rgb;

    explicit Sheet(size_t rows)
        : height(static_cast<int>(rows) * (kPictureHeight + kGap) - kGap),
          rgb(static_cast<size_t>(kSheetWidth) * static_cast<size_t>(height) * 3, 0x30) {}

    uint8_t* at(int x, int y) { return rgb.data() + (y * kSheetWidth + x) * 3; }
};

// A channel of a pixel over the checker.
int shown(const uint8_t* rgba, int x, int y, int channel) {
    const uint8_t* pixel = rgba + (y * demo::kWidth + x) * 4;
    const int grey = ((x / 16 + y / 16) & 1) != 0 ? 0x60 : 0x48;
    return (pixel[channel] * pixel[3] + grey * (255 - pixel[3])) / 255;
}

void place(Sheet& sheet, const uint8_t* rgba, int left, int top) {
    for (int y = 0; y < kPictureHeight; y++) {
        for (int x = 0; x < kPictureWidth; x++) {
            for (int c = 0; c < 3; c++) {
                const int sum = shown(rgba, 2 * x, 2 * y, c) + shown(rgba, 2 * x + 1, 2 * y, c) +
                                shown(rgba, 2 * x, 2 * y + 1, c) +
                                shown(rgba, 2 * x + 1, 2 * y + 1, c);
                sheet.at(left + x, top + y)[c] = static_cast<uint8_t>(sum / 4);
            }
        }
    }
}

void drawRow(Sheet& sheet, const demo::Loop& loop, int top) {
    constexpr int kScale = 4;  // halved with the picture
    std::vector<uint8_t> rgba(size_t{demo::kWidth} * demo::kHeight * 4);
    for (int column = 0; column < kColumns; column++) {
        loop.render(loop.frames * column / kColumns, loop.frames, rgba.data());
        if (column == 0) {
            demo::Canvas canvas(rgba.data());
            canvas.rect(0, 0, demo::pixelTextWidth(loop.name, kScale) + 24, 48, demo::kBlack);
            demo::drawPixelText(canvas, loop.name, 12, 8, kScale, demo::kWhite);
        }
        place(sheet, rgba.data(), column * (kPictureWidth + kGap), top);
    }
}

bool writeSheet(const demo::Playlist& playlist) {
    Sheet sheet(playlist.tracks.size());
    int top = 0;
    for (const std::string_view track : playlist.tracks) {
        for (const demo::Loop& loop : demo::loops()) {
            if (loop.name == track) {
                drawRow(sheet, loop, top);
            }
        }
        top += kPictureHeight + kGap;
    }
    std::printf("P6 %d %d 255\n", kSheetWidth, sheet.height);
    return std::fwrite(sheet.rgb.data(), 1, sheet.rgb.size(), stdout) == sheet.rgb.size();
}

}  // namespace

int main(int argc, char** argv) {
    for (const demo::Playlist& playlist : demo::playlists()) {
        if (argc == 2 && std::string_view(playlist.name) == argv[1]) {
            return writeSheet(playlist) ? 0 : 1;
        }
    }
    std::fprintf(stderr, "velmora-loop-sheet: name one of the demo playlists\n");
    return 2;
}
