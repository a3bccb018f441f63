#include "tools/clip/jobs/conformance_page.h"

namespace maker::conformance {

namespace {

constexpr const char* kBegin = R"(# Clips that test a reader

For who writes a program that reads `.m19` clips. Each clip here tests one matter of the format, and
`conformance.json` tells what a reader must make of it. Made by `velmora-clip conformance`, always
with the same bytes; the format is told in Velmora's `docs/clip-format.md`.

## The list

`conformance.json` holds one object, whose `clips` are these in the order of this page:

| Key | What |
|---|---|
| `file`, `bytes` | the clip's name and size |
| `what` | what it tests |
| `expected` | `ok`, `refused` or `broken`, see below |
| `width`, `height`, `frames`, `alpha` | of a clip that is `ok` |
| `pixels` | the checksum of each frame's pixels |
| `levels` | the checksum of each frame's alpha levels; clips with alpha only |
| `fault` | else: the `offset` of the byte at fault, counted from 0, and a `message` |

What is expected:

- `ok`: the reader plays the clip, and every frame has its checksum, in whichever order the frames
  are drawn. (Velmora leaves tiles as they are whose entry and code are those of the frame before,
  but for a block's first frame. So in `blocks-alike` it has the checksums only from first to last.)
- `refused`: no reader shows a frame of it. Velmora does not load it.
- `broken`: a reader that checks refuses it, as `velmora-clip verify` does. Velmora plays it, takes
  what is missing as zero bytes and a tile without its record as empty. No picture is prescribed; a
  reader must neither crash nor leave its memory.

## The checksums

CRC-32 as in zlib, gzip and PNG (polynomial 0xEDB88320, begun with 0xFFFFFFFF, complemented at the
end), in eight hexadecimal digits.

- `pixels`: over 640 x height pixels, row by row from the top, each as two bytes of RGB565, the low
  one first.
- `levels`: over as many bytes, one for each pixel, of 0 (transparent) to 15 (opaque).

In Python, with `frame` a list of RGB565 numbers and `alpha` one of levels:

    "%08x" % zlib.crc32(struct.pack("<%dH" % len(frame), *frame))
    "%08x" % zlib.crc32(bytes(alpha))

## How to use it

Begin with `flat-tiles`, which has no records, and `frames-1`; then the types, then the rest. All
clips but a few are one row of tiles high, and a tile that tests something stands as far left as it
can: where a checksum differs, look at the tiles from the left. `velmora-clip info CLIP` tells what a
clip holds, `velmora-clip export CLIP -o frame-%03d.png` draws its frames. The colours mean nothing;
each was chosen to differ from the others.
)";

std::string row(const Case& each, bool expected) {
    std::string text = "| `" + fileOf(each) + "` | ";
    if (expected) {
        text += expectedText(each.expected) + std::string(" | ");
    }
    return text + each.what + " |\n";
}

}  // namespace

std::vector<Chapter> chapters() {
    return {pathCases(), recordCases(), mapCases(), blockCases(), faultCases()};
}

std::string fileOf(const Case& each) {
    return std::string(each.name) + ".m19";
}

const char* expectedText(Expected expected) {
    switch (expected) {
        case Expected::OK:
            return "ok";
        case Expected::REFUSED:
            return "refused";
        default:
            return "broken";
    }
}

std::string page() {
    std::string text = kBegin;
    for (const Chapter& chapter : chapters()) {
        const bool faults = chapter.cases.front().expected != Expected::OK;
        text += std::string("\n## ") + chapter.title + "\n\n";
        text += faults ? "| Clip | Expected | What is wrong |\n|---|---|---|\n"
                       : "| Clip | What it tests |\n|---|---|\n";
        for (const Case& each : chapter.cases) {
            text += row(each, faults);
        }
    }
    return text;
}

}  // namespace maker::conformance
