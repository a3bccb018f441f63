#pragma once
// Places the rows of a 640 x 360 picture on an output surface of RGB565 pixels: doubled, or 1:1 and
// centred on composite displays. Knows nothing of SDL: a view says where the pixels are.
//
// Every write stays inside width x height of the view. Even widths up to 1280 with 720 rows and
// more (doubled), and composite displays of 640 x 360 and more, are the sizes the instrument is
// made for; any other size shows the centre of the picture, cropped or with black around it.

#include <cstddef>
#include <cstdint>

namespace px {

struct OutputView {
    uint16_t* pixels;  // top left
    int width;         // pixels, at least 1
    int height;        // rows, at least 1
    size_t pitch;      // bytes from row to row, even, at least 2 x width
    bool composite;    // 1:1 and centred, else doubled
};

uint16_t* outputRow(const OutputView& view, int row);

// Call once before the rows of a picture: blackens what the picture will not cover, where the
// display mode asks for that (always on composite displays).
void beginPicture(const OutputView& view);

// Black to all sides of the doubled picture, where the surface has room there. Composite displays
// stay as they are: their pictures begin with black.
void blackenOutside(const OutputView& view);

// Places source row `y` (0 to 359), 640 pixels.
void placeRow(const OutputView& view, const uint16_t* source, int y);

// A whole picture: beginPicture and its 360 rows, 640 pixels apart.
void placePicture(const OutputView& view, const uint16_t* frame);

// `length` pixels of `value` from the start of output row `row` on, cut at the end of that row.
void fillRowStart(const OutputView& view, int row, int length, uint16_t value);

}  // namespace px
