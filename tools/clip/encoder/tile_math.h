#pragma once
// The two sums that most of the encoder's time goes into, by the processor's vectors; every width
// gives what the plain loops give, so that a clip does not depend on the machine that made it.

#include <array>
#include <cstdint>

#include "tools/clip/encoder/run_costs.h"
#include "tools/clip/encoder/source_block.h"

namespace maker {

struct TileMath {
    const char* name;
    // Sum of the squared differences of all channels and pixels; once it has reached `limit`, at
    // least that.
    int32_t (*squaredDistance)(const ColourPlanes& a, const ColourPlanes& b, int32_t limit);
    // Fills in the costs of two sequences side by side, as each step of one waits for the last.
    // Whole numbers with the run's place in the lowest bits, so that the least of them names the
    // run; of equal costs the longest run is taken.
    void (*cutRuns)(const std::array<RunSums, 2>& sums, int32_t price,
                    std::array<RunCosts, 2>& costs);
};

const TileMath& tileMath();  // the processor's best
const TileMath& plainTileMath();

}  // namespace maker
