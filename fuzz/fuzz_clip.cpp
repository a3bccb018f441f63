// Any bytes as a clip: it loads or is refused, and what loads can be drawn, whatever it holds.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "clip/moxel.h"
#include "common/limits.h"
#include "core/globals.h"
#include "mixer/filters.h"
#include "mixer/mix.h"

namespace {

// The clip object takes its file from ./videos of the working directory.
class Stage {
public:
    Stage() : tiles_(kLayers * kFramePixels), alpha_(2 * kFramePixels), clip(new c_moxel) {
        char folder[] = "/tmp/velmora-fuzz-XXXXXX";
        if (mkdtemp(folder) == nullptr || chdir(folder) != 0 || system("mkdir videos") != 0) {
            abort();
        }
        if (freopen("/dev/null", "w", stdout) == nullptr) {
            abort();
        }
        moxelTiles16 = tiles_.data();
        moxelAlpha16 = alpha_.data();
        _filters = &filters_;
        filters_.initFilters();
    }

private:
    std::vector<uint16_t> tiles_;
    std::vector<uint8_t> alpha_;
    c_filters filters_{};

public:
    std::unique_ptr<c_moxel> clip;
};

void writeInput(const uint8_t* data, size_t size) {
    FILE* file = fopen("videos/input.m19", "wb");
    if (file == nullptr || (size != 0 && fwrite(data, 1, size, file) != size) ||
        fclose(file) != 0) {
        abort();
    }
}

void drawSome(c_moxel& clip) {
    for (int frame = 0; frame < clip.frameCount; frame += 3) {
        clip.renderMoxel19(1, frame, MODE_KEY);
        clip.renderMoxel19(0, clip.frameCount - 1 - frame, MODE_TOP);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Stage stage;
    c_moxel& clip = *stage.clip;
    writeInput(data, size);
    clip.init("", "input.m19");
    int result = 1;
    while (result == 1) {
        result = clip.loopLoad(60000);
    }
    if (result == 2) {
        drawSome(clip);
    }
    if (clip.hasRAM != 0) {
        clip.killRAM();
    }
    return 0;
}
